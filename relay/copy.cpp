#include "relay/copy.h"

#include <algorithm>

#include "relay/row_cursor.h"
#include "relay/table_image.h"

namespace dtsdb::relay {
namespace {

/// Changes rows of a table one by one.
class RowWriter {
 public:
  RowWriter(dbDatabase& database, dbTableDescriptor& table, const RowLayout& layout, StateHash& hash)
      : m_database(database),
        m_table(table),
        m_layout(layout),
        m_hash(hash),
        m_cursor(table, &database, dbCursorForUpdate, layout) {}

  // Each returns false where the table doesn't have the row that it should have, or the bytes are no row.
  bool Remove(const ChangedRow& row) {
    if (!m_layout.DecodeKey(row.bytes, m_cursor.Record()) || !m_cursor.Find(row.number)) return false;
    TakeOff(row.number);
    m_cursor.remove();
    return true;
  }
  bool Update(const ChangedRow& row) {
    if (!m_layout.Decode(row.bytes, m_cursor.Record()) || !m_cursor.Find(row.number)) return false;
    TakeOff(row.number);
    if (!m_layout.Decode(row.bytes, m_cursor.Record())) return false;
    m_cursor.update();
    m_hash += HashOf(m_layout.Table(), row.number, row.bytes);
    return true;
  }
  bool Insert(const ChangedRow& row) {
    if (!m_layout.Decode(row.bytes, m_cursor.Record()) || m_cursor.Find(row.number)) return false;
    if (!m_database.insertRecordAs(row.number, &m_table, m_cursor.Record())) return false;
    m_hash += HashOf(m_layout.Table(), row.number, row.bytes);
    return true;
  }

 private:
  /// The hash of the row that the cursor is on, as it stands in the store.
  void TakeOff(oid_t number) {
    m_bytes.clear();
    m_layout.Encode(m_cursor.Record(), m_bytes);
    m_hash -= HashOf(m_layout.Table(), number, m_bytes);
  }

  dbDatabase& m_database;
  dbTableDescriptor& m_table;
  const RowLayout& m_layout;
  StateHash& m_hash;
  RowCursor m_cursor;
  std::string m_bytes;
};

/// The rows of a snapshot that differ from those of the copy, as changes of the copy.
class Replacement {
 public:
  explicit Replacement(const RowLayout& layout) : m_layout(layout), m_record(layout.RecordSize()) {}

  /// False where bytes are no row.
  bool Compare(const TableImage& now, const std::vector<ChangedRow>& wanted, TableChange& change) {
    std::size_t i = 0;
    for (const ChangedRow& row : wanted) {
      for (; i < now.Size() && now.NumberAt(i) < row.number; ++i) Remove(now, i, change);
      if (i == now.Size() || now.NumberAt(i) != row.number) {
        change.inserted.push_back(row);
      } else if (!Change(now, i++, row, change)) {
        return false;
      }
    }
    for (; i < now.Size(); ++i) Remove(now, i, change);
    return true;
  }

 private:
  bool Change(const TableImage& now, std::size_t i, const ChangedRow& row, TableChange& change) {
    if (now.BytesAt(i) == row.bytes) return true;
    std::string key;
    if (!m_layout.Decode(row.bytes, m_record.Get())) return false;
    m_layout.EncodeKey(m_record.Get(), key);
    if (key == KeyOf(now.BytesAt(i))) {
      change.updated.push_back(row);
    } else {
      Remove(now, i, change);
      change.inserted.push_back(row);
    }
    return true;
  }
  void Remove(const TableImage& now, std::size_t i, TableChange& change) {
    change.removed.push_back({now.NumberAt(i), m_keys.emplace_back(KeyOf(now.BytesAt(i)))});
  }
  std::string KeyOf(std::string_view bytes) {
    std::string key;
    if (m_layout.Decode(bytes, m_record.Get())) m_layout.EncodeKey(m_record.Get(), key);
    return key;
  }

  const RowLayout& m_layout;
  RecordRoom m_record;
  std::deque<std::string> m_keys;
};

}  // namespace

Copy::Copy(dbDatabase& database, std::function<void()> check, const std::vector<dbTableDescriptor*>& tables)
    : m_database(database), m_check(std::move(check)) {
  for (dbTableDescriptor* table : tables) m_tables.emplace_back(table);
}

std::optional<CopyNote> Copy::Note() {
  const std::string text = m_database.copyNote();
  m_database.commit();
  m_check();
  return DecodeNote(text);
}

bool Copy::HasRows() {
  bool has = false;
  for (const Table& table : m_tables) {
    dbTableDescriptor* const own = m_database.lookupTable(table.registered);
    if (own == nullptr) continue;
    RowCursor cursor(*own, &m_database, dbCursorViewOnly, table.layout);
    has = has || cursor.select() > 0;
  }
  m_database.commit();
  m_check();
  return has;
}

const Copy::Table* Copy::Find(std::string_view name) const {
  const auto found = std::find_if(m_tables.begin(), m_tables.end(),
                                  [name](const Table& table) { return table.layout.Table() == name; });
  return found == m_tables.end() ? nullptr : &*found;
}

Copy::Outcome Copy::ApplyRows(const Table& table, const TableChange& change, StateHash& hash) {
  dbTableDescriptor* const own = m_database.lookupTable(table.registered);
  if (own == nullptr) return Outcome::kOtherLayout;
  RowWriter writer(m_database, *own, table.layout, hash);
  const auto all = [](const std::vector<ChangedRow>& rows, auto&& write) {
    return std::all_of(rows.begin(), rows.end(), write);
  };
  const bool isDone = all(change.removed, [&writer](const ChangedRow& row) { return writer.Remove(row); }) &&
                      all(change.updated, [&writer](const ChangedRow& row) { return writer.Update(row); }) &&
                      all(change.inserted, [&writer](const ChangedRow& row) { return writer.Insert(row); });
  return isDone ? Outcome::kApplied : Outcome::kDiffers;
}

Copy::Outcome Copy::ApplyTable(const TableChange& change, StateHash& hash) {
  const Table* const table = Find(change.table);
  if (table == nullptr || table->layout.Fingerprint() != change.fingerprint) return Outcome::kOtherLayout;
  return ApplyRows(*table, change, hash);
}

Copy::Outcome Copy::Apply(const Commit& commit, const CopyNote& before, const CopyNote& after) {
  StateHash hash = before.hash;
  if (!m_database.moveCopyNote(EncodeNote(before), EncodeNote(after))) return End(Outcome::kDiffers);
  Outcome outcome = Outcome::kApplied;
  for (const TableChange& change : commit.tables) {
    if (outcome == Outcome::kApplied) outcome = ApplyTable(change, hash);
  }
  if (outcome == Outcome::kApplied && hash != commit.after) outcome = Outcome::kDiffers;
  return End(outcome);
}

Copy::Outcome Copy::ReplaceTable(const Table& table, const TableChange* wanted, StateHash& hash) {
  dbTableDescriptor* const own = m_database.lookupTable(table.registered);
  if (own == nullptr) return Outcome::kOtherLayout;
  const TableImage now = TableImage::Read(m_database, *own, table.layout);
  hash += now.Hash(table.layout);
  Replacement replacement(table.layout);
  TableChange change;
  if (!replacement.Compare(now, wanted == nullptr ? std::vector<ChangedRow>() : wanted->inserted, change)) {
    return Outcome::kDiffers;
  }
  return change.IsEmpty() ? Outcome::kApplied : ApplyRows(table, change, hash);
}

Copy::Outcome Copy::Replace(const Commit& snapshot, const CopyNote& after) {
  for (const TableChange& wanted : snapshot.tables) {
    const Table* const table = Find(wanted.table);
    if (table == nullptr || table->layout.Fingerprint() != wanted.fingerprint) return Outcome::kOtherLayout;
  }
  StateHash hash;
  m_database.setCopyNote(EncodeNote(after));
  Outcome outcome = Outcome::kApplied;
  for (const Table& table : m_tables) {
    if (outcome != Outcome::kApplied) break;
    const auto wanted =
        std::find_if(snapshot.tables.begin(), snapshot.tables.end(),
                     [&table](const TableChange& change) { return change.table == table.layout.Table(); });
    outcome = ReplaceTable(table, wanted == snapshot.tables.end() ? nullptr : &*wanted, hash);
  }
  if (outcome == Outcome::kApplied && hash != snapshot.after) outcome = Outcome::kDiffers;
  return End(outcome);
}

Copy::Outcome Copy::End(Outcome outcome) {
  if (outcome != Outcome::kApplied) m_database.rollback();
  m_check();
  if (outcome == Outcome::kApplied) m_database.commit();
  m_check();
  return outcome;
}

Copy::Outcome Copy::Confirm(const CopyNote& before, const CopyNote& after) {
  const bool isMoved = m_database.moveCopyNote(EncodeNote(before), EncodeNote(after));
  return End(isMoved ? Outcome::kApplied : Outcome::kDiffers);
}

}  // namespace dtsdb::relay
