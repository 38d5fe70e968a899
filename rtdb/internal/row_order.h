/// \file
/// The order in which a table's rows were inserted: a second tree beside the table's own, from the row's number in
/// 8 bytes, big-endian, to the row's key. Numbers rise with every insertion, so their order is that of the insertion.
///
/// Only tables that are found by one whole number have it: those are the lists of events, which grow at their end and
/// are read from there. For any other table a select without "order by" sorts the rows that it finds, which costs its
/// reader a little; the second tree would cost every writer of a model up to half as much again.
///
/// Constants and forms here reach the disk.
#pragma once

#include <lmdb.h>

#include <string>
#include <string_view>

#include "rtdb/internal/schema.h"

namespace dtsdb::internal::rtdb {

/// Whether the rows of a table with these columns have the second tree.
bool HasOrderTree(const Schema& schema);

/// The name of the tree beside the table's. No table has such a name.
std::string OrderTreeName(std::string_view table);

// All three return LMDB's result.

/// Notes the key of a row, in the place of the one that was noted before.
int PutOrder(MDB_cursor* order, std::string_view key);
/// Forgets a row by its key.
int DeleteOrder(MDB_txn* transaction, MDB_dbi order, std::string_view key);
/// Makes `order` anew from the rows of a table.
int BuildOrder(MDB_txn* transaction, MDB_dbi rows, MDB_dbi order);

}  // namespace dtsdb::internal::rtdb
