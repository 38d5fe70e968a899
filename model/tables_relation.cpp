/// \file
/// The tables of Relation records, compiled once for all that use them.
#include "model/dtsdb.h"
#include "model/table_image.h"

namespace dtsdb {

#define DTSDB_DEFINE_Identified(T)
#define DTSDB_DEFINE_Numbered(T)
#define DTSDB_DEFINE_Relation(T) template class tTable<T>;
#define DTSDB_DEFINE_TABLE(T, table, key, meaning) DTSDB_DEFINE_##key(T)
DTSDB_TABLES(DTSDB_DEFINE_TABLE)
#undef DTSDB_DEFINE_TABLE

}  // namespace dtsdb
