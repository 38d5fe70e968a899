/// \file
/// The realtime database that the system is built with: its own (rtdb/fastdb.h) or, configured with
/// -DDTSDB_RTDB=fastdb, an installed FastDB. Both have the same interface; nothing else asks which one it is.
/// docs/realtime-backends.md compares them.
#pragma once

#ifdef DTSDB_RTDB_FASTDB
#include "rtdb/installed_fastdb.h"
#else
#include "rtdb/fastdb.h"
#endif

namespace dtsdb::rtdb {

/// True where a program must close its database before it ends, whatever ends it: FastDB keeps the locks of one that
/// doesn't, for as long as others have the database open, and then refuses the file to readers.
#ifdef DTSDB_RTDB_FASTDB
inline constexpr bool kMustBeClosed = true;
#else
inline constexpr bool kMustBeClosed = false;
#endif

}  // namespace dtsdb::rtdb
