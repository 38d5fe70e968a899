/// \file
/// The check of a condition that warns and goes on.
#pragma once

#include <QtGlobal>
#include <cassert>
#include <string_view>

namespace dtsdb {

/// Writes `ASSERT: "TEXT" in FILE (LINE)` through qWarning, FILE being the stem of `path`. Always returns false.
[[gnu::cold]] inline bool AssertFailed(const char* text, std::string_view path, int line) {
  path.remove_prefix(path.find_last_of('/') + 1);  // npos + 1 is 0: a path without a folder stays whole
  const std::string_view stem = path.substr(0, path.find('.'));
  qWarning("ASSERT: \"%s\" in %.*s (%d)", text, static_cast<int>(stem.size()), stem.data(), line);
  return false;
}

}  // namespace dtsdb

/// Checks `condition` and returns its value. When it doesn't hold, one warning with `text` is written and execution
/// goes on: the caller decides what the access behind the check then reads or writes.
/// The text is given apart from the condition because it is part of the interface, blanks included.
#define DTSDB_ASSERT(condition, text) DTSDB_ASSERT_IN(__FILE__, condition, text)

/// The same with the source file that the warning names: programs know the containers by the header that they include.
#define DTSDB_ASSERT_IN(source, condition, text) ((condition) || ::dtsdb::AssertFailed(text, source, __LINE__))

/// The standard `assert` with the source file that its message names.
#if defined(NDEBUG) || !defined(__GLIBC__)
#define DTSDB_END_UNLESS(source, condition) assert(condition)
#else
#define DTSDB_END_UNLESS(source, condition) \
  ((condition) ? static_cast<void>(0) : __assert_fail(#condition, source, __LINE__, __func__))
#endif
