/// \file
/// The headers of an installed FastDB, without its comparison of everything with everything.
///
/// FastDB's array.h declares two templates in the global namespace, `operator<` and `operator>` for two objects of any
/// one type, which compare them with memcmp. A std::tuple or std::pair that somewhere holds a type of the global
/// namespace, such as QString, finds them by its arguments, and since C++20, where the standard's own comparison is
/// made from `operator<=>`, they win: sorting then goes by addresses. FastDB needs them for arrays of structures only,
/// which no table here has.
#pragma once

#ifdef __ARRAY_H__
#error \
    "include rtdb/backend.h before <fastdb.h>: FastDB's array.h brings an operator< that catches the standard's types"
#endif

// What array.h stands on; the rest of <fastdb.h> comes after it.
#include <database.h>

// Two macros of FastDB's own put the templates into a namespace where nobody looks for them: the first opens it in
// front of them, the second, which stands in array.h behind the `class` of the first class only, closes it.
#pragma push_macro("BEGIN_FASTDB_NAMESPACE")
#pragma push_macro("FASTDB_DLL_ENTRY")
#undef BEGIN_FASTDB_NAMESPACE
#undef FASTDB_DLL_ENTRY
#define BEGIN_FASTDB_NAMESPACE namespace fastdb_bytewise {
#define FASTDB_DLL_ENTRY \
  End;                   \
  }                      \
  class
#include <array.h>
#pragma pop_macro("FASTDB_DLL_ENTRY")
#pragma pop_macro("BEGIN_FASTDB_NAMESPACE")

#include <fastdb.h>
