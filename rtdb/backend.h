/// \file
/// The realtime database that the system is built with: its own (rtdb/fastdb.h) or, configured with
/// -DDTSDB_RTDB=fastdb, an installed FastDB. Both have the same interface; nothing else asks which one it is.
/// docs/realtime-backends.md compares them.
#pragma once

#include <cstdint>

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

/// The number of the last transaction that changed rows of an open database's table, see dbDatabase::changeNumber, or
/// 0: unknown, as always with FastDB, which doesn't count.
inline std::uint64_t ChangeNumber([[maybe_unused]] dbDatabase* database, [[maybe_unused]] dbTableDescriptor* table) {
#ifdef DTSDB_RTDB_FASTDB
  return 0;
#else
  return database->changeNumber(table);
#endif
}

/// Which opening of a database this is, see dbDatabase::openingNumber, or 0.
inline std::uint64_t OpeningNumber([[maybe_unused]] const dbDatabase* database) {
#ifdef DTSDB_RTDB_FASTDB
  return 0;
#else
  return database->openingNumber();
#endif
}

/// The number of the calling thread's last commit that stored changed rows, see dbDatabase::lastCommitNumber, or 0.
inline std::uint64_t LastCommitNumber([[maybe_unused]] dbDatabase* database) {
#ifdef DTSDB_RTDB_FASTDB
  return 0;
#else
  return database->lastCommitNumber();
#endif
}

}  // namespace dtsdb::rtdb
