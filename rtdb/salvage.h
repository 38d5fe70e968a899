/// \file
/// What can be read of a damaged store.
///
/// A damaged store is refused by dbDatabase::open, since LMDB would not survive it. Here its pages are read without
/// LMDB: whatever the newest state's trees still lead to. Time and memory are bounded by the size of the file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "rtdb/fastdb.h"

namespace dtsdb::rtdb {

/// A table whose rows are wanted.
struct SalvagedTable {
  const dbTableDescriptor* table = nullptr;
  void* row = nullptr;              ///< an object of the table's class, into which each row is decoded
  std::function<void()> take = {};  ///< called for each row that is whole; its texts hold during the call

  // What came of it.
  std::uint64_t saved = 0;
  std::optional<std::uint64_t> lost = {};  ///< nothing where the number of rows isn't known
};

/// A place at which a store is damaged.
struct StoreFault {
  std::string table = {};  ///< empty for the store as a whole
  std::uint64_t page = 0;  ///< 0 for none
  std::string id = {};     ///< first key column of the row that is lost, where that is a text that can be read
  std::string what = {};
};

/// Reads what can be read of the store in `file`, of which a copy is made in memory first, so that programs may write
/// it meanwhile. Calls `report` for each fault. Returns an empty text, or why nothing could be read.
std::string SalvageStore(const std::string& file, std::vector<SalvagedTable>& tables,
                         const std::function<void(const StoreFault&)>& report);

}  // namespace dtsdb::rtdb
