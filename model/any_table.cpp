#include "model/any_table.h"

namespace dtsdb {

std::vector<AnyTable> AllTables(DTSDB& database) {
  std::vector<AnyTable> tables;
  tables.reserve(kTableCount);
  ForEachTable(database, [&tables](auto& table) { tables.emplace_back(table); });
  return tables;
}

AnyTable TableOfKind(DTSDB& database, TableKind kind) {
  return AllTables(database)[static_cast<std::size_t>(kind) - 1];
}

}  // namespace dtsdb
