/// \file
/// Which transactions changed the tables last: a list of numbers, in which each table has a place that its schema
/// names.
///
/// The list stands in LMDB's main tree, beside the records of the tables' trees, of which every change of a table
/// writes one: so a commit notes its number in a page that it writes anyway. With an entry for each table, or a tree of
/// their own, it would write one page more. Constants and forms here reach the disk.
#pragma once

#include <lmdb.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dtsdb::internal::rtdb {

/// The key of the list. No table has such a name, and LMDB's own programs, which take every key without a zero byte for
/// the name of a tree, pass over it.
inline constexpr std::string_view kChangesKey{"@changes\0", 9};

// Both return LMDB's result. `main` is the handle of the main tree.

/// Notes that the running transaction has changed the tables of these places.
int PutChangeNumber(MDB_txn* transaction, MDB_dbi main, const std::vector<std::uint32_t>& places);
/// `number` becomes 0 where there is none that can be true.
int GetChangeNumber(MDB_txn* transaction, MDB_dbi main, std::uint32_t place, std::uint64_t& number);

}  // namespace dtsdb::internal::rtdb
