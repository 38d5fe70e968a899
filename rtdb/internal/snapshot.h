/// \file
/// A store as it is at one moment, for a program that may not write its lock file.
///
/// Without a place in the lock file, a reader's pages are used again under it. So such a program reads a copy in
/// memory. LMDB never writes into a page of its last state nor of the one before that, and has the heads of both; so a
/// copy is whole if the head of its state still stands in the file when the copying is done.
#pragma once

#include <lmdb.h>

#include <string>
#include <vector>

#include "rtdb/internal/store_file.h"

namespace dtsdb::internal::rtdb {

/// Copies what stands in the file `from` over the beginning of `to`. 0 or an error number.
int CopyBytes(int from, int to);

class Snapshot {
 public:
  /// Copies the file. 0 or an error number.
  int Take(int file);
  /// A path that leads to the copy as long as this lives, or as something has it open.
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_copy.Get()); }
  int Fd() const { return m_copy.Get(); }
  /// Whether the state that `env`, which has the copy open, shows has been in the file throughout the copying.
  bool IsWhole(MDB_env* env, int file) const;
  /// Whether the heads in the file are still those of the copy.
  bool IsNewest(int file) const;

 private:
  Descriptor m_copy;
  std::vector<char> m_heads;
};

}  // namespace dtsdb::internal::rtdb
