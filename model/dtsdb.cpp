#include "model/dtsdb.h"

#include <algorithm>

namespace dtsdb {

/// The tables that a container makes, with the members' names.
struct DTSDB::Tables {
#define DTSDB_OWN_TABLE(T, table, key, meaning) tTable<T> table;
  DTSDB_TABLES(DTSDB_OWN_TABLE)
#undef DTSDB_OWN_TABLE
};

DTSDB::DTSDB() {
  const auto tables = std::make_shared<Tables>();
#define DTSDB_POINT_TABLE(T, table, key, meaning) table = &tables->table;
  DTSDB_TABLES(DTSDB_POINT_TABLE)
#undef DTSDB_POINT_TABLE
  m_owned.push_back(tables);
}

DTSDB& DTSDB::operator=(const DTSDB& other) {
  if (this == &other) return *this;
#define DTSDB_SHARE_TABLE(T, table, key, meaning) table = other.table;
  DTSDB_TABLES(DTSDB_SHARE_TABLE)
#undef DTSDB_SHARE_TABLE
  for (const auto& tables : other.m_owned) {
    if (std::find(m_owned.begin(), m_owned.end(), tables) == m_owned.end()) m_owned.push_back(tables);
  }
  return *this;
}

}  // namespace dtsdb
