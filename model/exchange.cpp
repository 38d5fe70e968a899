#include "model/exchange.h"

#include "model/dtsdb.h"

namespace dtsdb {

#define DTSDB_TWIN_KIND(T, twin, writer) KindOf<T>,
constexpr int kTwinKinds[] = {DTSDB_TWINS(DTSDB_TWIN_KIND)};
#undef DTSDB_TWIN_KIND

constexpr bool AreTwinsInTableOrder() {
  for (int i = 0; i < kTableCount; ++i) {
    if (kTwinKinds[i] != i + 1) return false;
  }
  return std::size(kTwinKinds) == kTableCount;
}
static_assert(AreTwinsInTableOrder());

char const* RowTexts::Keep(const QString& text) {
  const QByteArray& bytes = m_texts.emplace_back(IdToBytes(text));
  if (bytes.contains('\0')) {
    qWarning("a text of the table %s is cut off at its zero byte: \"%s\"", m_table, bytes.constData());
  }
  return bytes.constData();
}

#define DTSDB_EXCHANGE_TABLE(T, table, key, meaning) \
  bool DTSDB::Read##T##FromFastdb(dbDatabase* db) {  \
    ReadTable(db, *table);                           \
    return true;                                     \
  }                                                  \
  bool DTSDB::Write##T##ToFastdb(dbDatabase* db) {   \
    WriteTable(db, *table);                          \
    return true;                                     \
  }
DTSDB_TABLES(DTSDB_EXCHANGE_TABLE)
#undef DTSDB_EXCHANGE_TABLE

bool DTSDB::ReadFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
    // The log of the topology is not read back.
#define DTSDB_READ_TABLE(T, table, key, meaning) \
  if (KIND_##T != KIND_TPL) Read##T##FromFastdb(db);
  DTSDB_TABLES(DTSDB_READ_TABLE)
#undef DTSDB_READ_TABLE
  db->commit();
  return true;
}

bool DTSDB::WriteFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
#define DTSDB_WRITE_TABLE(T, table, key, meaning) Write##T##ToFastdb(db);
  DTSDB_TABLES(DTSDB_WRITE_TABLE)
#undef DTSDB_WRITE_TABLE
  db->commit();
  return true;
}

}  // namespace dtsdb
