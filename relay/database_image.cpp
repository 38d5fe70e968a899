#include "relay/database_image.h"

#include <chrono>
#include <utility>

#include "rtdb/volma_rtdb.h"

namespace dtsdb::relay {

std::vector<dbTableDescriptor*> CarriedTables() {
  std::vector<dbTableDescriptor*> tables;
  ForEachRowClass([&tables]<class Row> { tables.push_back(&Row::dbDescriptor); });
  return tables;
}

std::int64_t Now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

struct DatabaseImage::Reading {
  std::size_t table;
  std::uint64_t number;
  TableImage image;
};

DatabaseImage::DatabaseImage(const std::vector<dbTableDescriptor*>& tables) {
  for (dbTableDescriptor* table : tables) m_tables.emplace_back(table);
}

void DatabaseImage::Forget() { m_known = false; }

std::vector<DatabaseImage::Reading> DatabaseImage::ReadMoved(dbDatabase& database) const {
  std::vector<Reading> readings;
  for (std::size_t i = 0; i < m_tables.size(); ++i) {
    const Table& table = m_tables[i];
    dbTableDescriptor* const own = database.lookupTable(table.registered);
    const std::uint64_t number = rtdb::ChangeNumber(&database, own);
    // 0 is an unknown number, and such a table may have changed; but one that was never written to has it too.
    if (m_known && number == table.number && number != 0) continue;
    if (own != nullptr) readings.push_back({i, number, TableImage::Read(database, *own, table.layout)});
  }
  return readings;
}

std::optional<Commit> DatabaseImage::Read(dbDatabase& database, const std::function<void()>& check) {
  const std::int64_t time = Now();
  std::vector<Reading> readings = ReadMoved(database);
  check();
  database.commit();
  check();
  m_time = time;
  m_known = true;
  for (Table& table : m_tables) {
    table.before = {};
    table.keys.clear();
  }
  Commit commit;
  commit.time = time;
  for (Reading& reading : readings) {
    Table& table = m_tables[reading.table];
    table.number = reading.number;
    table.before = std::exchange(table.image, std::move(reading.image));
    TableChange change = Difference(table.before, table.image, table.layout, m_hash, table.keys);
    if (!change.IsEmpty()) commit.tables.push_back(std::move(change));
  }
  commit.after = m_hash;
  if (commit.tables.empty()) return {};
  return commit;
}

Commit DatabaseImage::Whole() const {
  Commit commit;
  commit.time = m_time;
  commit.after = m_hash;
  for (const Table& table : m_tables) {
    TableChange change;
    change.table = table.layout.Table();
    change.fingerprint = table.layout.Fingerprint();
    for (std::size_t i = 0; i < table.image.Size(); ++i) {
      change.inserted.push_back({table.image.NumberAt(i), table.image.BytesAt(i)});
    }
    commit.tables.push_back(std::move(change));
  }
  return commit;
}

}  // namespace dtsdb::relay
