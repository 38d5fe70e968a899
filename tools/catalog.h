/// \file
/// The tables of a model by name.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// The names of the 46 tables, in order.
const std::vector<std::string>& TableNames();

/// The place of the table called `name` in that order, -1 when there is none.
int TablePlace(const std::string& name);

/// The same for a name that a user gave; upper and lower case count as equal. A Failure of usage with the nearest
/// names when there is no such table.
int NamedTable(const std::string& name);

/// What the records of the table at `place` are.
const char* TableMeaning(int place);

/// Calls `visit` with the table at `place`.
template <class Visitor>
void VisitTable(DTSDB& database, int place, Visitor&& visit) {
  int at = 0;
  ForEachTable(database, [&](auto& table) {
    if (at++ == place) visit(table);
  });
}

/// The record class of a table.
template <class T>
T RecordOf(tTable<T>&);
template <class Table>
using RecordClass = decltype(RecordOf(std::declval<Table&>()));

}  // namespace dtsdb::tools
