/// \file
/// The lock file beside a store: that it is there, and that it is this store's.
///
/// LMDB keeps its readers and its writers' lock in it, and nothing that names the store they belong to. A lock file
/// that outlives its store, or that programs with a removed store still use, would make a new one unreadable. So the
/// store's device and inode stand at its end, behind what LMDB uses.
#pragma once

#include <functional>

#include "rtdb/internal/store_file.h"

namespace dtsdb::internal::rtdb {

/// How the making ready of a lock file has ended.
struct LockOutcome {
  Status status;
  bool noRight = false;  ///< failed only because this program may not write the lock file
};

/// Makes the lock file of `store` ready for LMDB, under the OpeningGuard, and notes its identity in `store`. One that
/// belongs to another store is taken into use, or replaced where programs still use it. `usedHere` is true for the
/// lock files that this process has open: they must not be opened again, since closing them would end their locks.
LockOutcome PrepareLockFile(StoreFile& store, const std::function<bool(FileId)>& usedHere);

}  // namespace dtsdb::internal::rtdb
