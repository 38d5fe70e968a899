/// \file
/// What a TP has stored of its results, so that the next storing writes only what has changed.
#pragma once

#include <QByteArray>
#include <QSet>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "include/template.h"
#include "model/field_info.h"
#include "model/records.h"
#include "model/text.h"
#include "model/twins.h"
#include "rtdb/backend.h"

namespace dtsdb::internal {

template <class Value>
bool AreSame(const Value& a, const Value& b) {
  // As bytes, since zeros of both signs are equal and not the same.
  if constexpr (std::is_trivially_copyable_v<Value>) return std::memcmp(&a, &b, sizeof(Value)) == 0;
  return a == b;
}

/// Whether two records are the same in the given fields, such as &UN::ibs, or with none given in all.
template <class Record, class... Values>
bool AreSameIn(const Record& a, const Record& b, Values Record::*... fields) {
  if constexpr (sizeof...(fields) > 0) return (AreSame(a.*fields, b.*fields) && ...);
  // The short way; what lies between the fields may differ all the same.
  if constexpr (std::is_trivially_copyable_v<Record>) {
    if (AreSame(a, b)) return true;
  }
  for (const FieldInfo& field : Record::Fields()) {
    const bool same = VisitValue(field, &a, [&](const auto& value) {
      return AreSame(value, field.In<std::remove_cvref_t<decltype(value)>>(&b));
    });
    if (!same) return false;
  }
  return true;
}

/// The records of one table as a TP has stored them in a realtime database.
///
/// Their rows stand there until somebody changes the table: while the database stays open and the number of the table's
/// last change is the one that the storing left. So long, the next storing needs only the records that have changed in
/// the model. Each storing is a Begin, then a Note for each record or one NoteAll, then a Seal before the commit and an
/// End behind it. With a database that counts no changes nothing ever stands.
template <class Record>
class StoredRows {
 public:
  /// Begins a storing of `table`: whether the rows stand, one for each record of `table` that is not new. If so the
  /// transaction writes from here on.
  /// `known`: the records are known to have the identities that were stored, and need no look at each.
  bool Begin(dbDatabase* db, tTable<Record>& table, bool known = false) {
    const bool stand = IsUnchanged(db) && (known ? table.GetCount() == m_stored : Fits(table));
    m_number = 0;
    if (!stand) return false;
    m_records.resize(static_cast<std::size_t>(table.GetCount()));
    m_stored = std::min(m_stored, table.GetCount());
    return true;
  }

  /// Where the rows stand: false if record `i` is stored as it is, else notes that it is going to be.
  template <class... Values>
  bool Note(int i, const Record& record, Values Record::*... fields) {
    Record& stored = m_records[static_cast<std::size_t>(i)];
    if (i < m_stored && AreSameIn(stored, record, fields...)) return false;
    stored = record;
    return true;
  }

  /// Notes that the table has been stored as a whole.
  void NoteAll(dbDatabase* db, tTable<Record>& table) {
    m_records.clear();
    if (dtsdb::rtdb::OpeningNumber(db) == 0 || !HasOwnRows(table)) return;
    m_records.reserve(static_cast<std::size_t>(table.GetCount()));
    for (int i = 0; i < table.GetCount(); ++i) m_records.push_back(table[i]);
  }

  /// Ends the storing, in its transaction.
  void Seal(dbDatabase* db) {
    m_opening = dtsdb::rtdb::OpeningNumber(db);
    m_sealed = m_records.empty() ? 0 : NumberIn(db);
    m_stored = static_cast<int>(m_records.size());
  }

  /// After the commit. A number above that of the last one is that of a transaction that was not committed.
  void End(dbDatabase* db) {
    const bool committed = m_sealed != 0 && m_sealed <= dtsdb::rtdb::LastCommitNumber(db);
    m_number = committed ? m_sealed : 0;
  }

 private:
  using Row = typename Twin<Record>::Row;

  static std::uint64_t NumberIn(dbDatabase* db) {
    return dtsdb::rtdb::ChangeNumber(db, db->lookupTable(&Row::dbDescriptor));
  }

  bool IsUnchanged(dbDatabase* db) const {
    if (m_number == 0 || m_opening != dtsdb::rtdb::OpeningNumber(db)) return false;
    // A select for an update: until the commit nobody else changes the table.
    dbCursor<Row> cursor(db, dbCursorForUpdate);
    cursor.select(Twin<Record>::kReadingOrder);
    return m_number == NumberIn(db);
  }

  /// Whether the records of `table` are those that were stored, and new ones of numbers of their own.
  bool Fits(tTable<Record>& table) const {
    const int count = table.GetCount();
    if (Record::kKey == RecordKey::kIdentified && count != m_stored) return false;
    for (int i = 0; i < count; ++i) {
      const bool fits =
          i < m_stored ? table[i].id == m_records[static_cast<std::size_t>(i)].id : IsNumbered(table[i], i);
      if (!fits) return false;
    }
    return true;
  }

  /// Whether no two records share a row.
  static bool HasOwnRows(tTable<Record>& table) {
    QSet<QByteArray> identities;
    for (int i = 0; i < table.GetCount(); ++i) {
      if constexpr (Record::kKey == RecordKey::kIdentified) {
        // A row's identity ends at a zero byte.
        const QByteArray id(IdToBytes(table[i].id).constData());
        if (identities.contains(id)) return false;
        identities.insert(id);
      } else if (!IsNumbered(table[i], i)) {
        return false;
      }
    }
    return true;
  }

  static bool IsNumbered(const Record& record, int i) {
    if constexpr (Record::kKey == RecordKey::kNumbered) return record.id == i;
    return false;
  }

  std::uint64_t m_opening = 0;
  std::uint64_t m_number = 0;  ///< of the table's last change while the rows stand, else 0
  std::uint64_t m_sealed = 0;
  std::vector<Record> m_records;
  int m_stored = 0;  ///< so many of the records have a row
};

/// The tables of which an incremental run stores the whole, and in which it mostly changes little.
struct StoredResults {
  StoredRows<BS> sections;
  StoredRows<BSL> entries;
  StoredRows<ISLAND> islands;
  StoredRows<UN> units;

  /// Commits a storing of all of them.
  void Commit(dbDatabase* db) {
    const auto forEach = [this](auto visit) {
      visit(sections);
      visit(entries);
      visit(islands);
      visit(units);
    };
    forEach([db](auto& rows) { rows.Seal(db); });
    db->commit();
    forEach([db](auto& rows) { rows.End(db); });
  }
};

}  // namespace dtsdb::internal
