/// \file
/// Where the breaker flow reads from: the rows of a realtime database, or the tables of a model.
///
/// A source has ForEachRow<T>(visit), T being a record class: it calls `visit` with each row of T's twin, in the order
/// of the identities. Rows that follow from a model's records are those that its exchange with the realtime database
/// would have stored, so both sources give the same flows to the last bit.
#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

#include "model/exchange.h"

namespace dtsdb::internal {

/// The rows of a realtime database. Leaves the transaction open.
class StoredRows {
 public:
  explicit StoredRows(dbDatabase* db) : m_db(db) {}

  template <class T, class Visit>
  void ForEachRow(Visit visit) const {
    using Row = typename Twin<T>::Row;
    dbCursor<Row> cursor(m_db, dbCursorViewOnly);
    cursor.select(Twin<T>::kReadingOrder);
    for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) visit(*row);
  }

 private:
  dbDatabase* m_db;
};

/// The rows that the tables of a model would be stored as, in a database that is empty before.
class ModelRows {
 public:
  explicit ModelRows(const DTSDB& model) : m_model(model) {}

  template <class T, class Visit>
  void ForEachRow(Visit visit) const {
    using Row = typename Twin<T>::Row;
    const tTable<T>& table = TableOf<T>(m_model);
    RowTexts texts;
    for (const int place : InRowOrder(table)) {
      Row row;
      texts.Begin(T::kTableName);
      StoreFields(&table[place], T::Fields(), &row, Row::Columns(), texts);
      visit(row);
    }
  }

 private:
  /// What the rows are sorted by: a text ends at its first zero byte there.
  static QByteArray RowKey(const QString& id) { return QByteArray(IdToBytes(id).constData()); }
  static int RowKey(i32 id) { return id; }

  /// The logical numbers of the records in the order of their rows, which is that of the table unless it was filled out
  /// of order or a text is cut off.
  template <class T>
  static std::vector<int> InRowOrder(const tTable<T>& table) {
    std::vector<int> places(static_cast<std::size_t>(table.GetCount()));
    std::iota(places.begin(), places.end(), 0);
    std::vector<decltype(RowKey(T().id))> keys;
    keys.reserve(places.size());
    for (const int place : places) keys.push_back(RowKey(table[place].id));
    if (!std::is_sorted(keys.begin(), keys.end())) {
      std::stable_sort(places.begin(), places.end(), [&keys](int a, int b) { return keys[a] < keys[b]; });
    }
    return places;
  }

  const DTSDB& m_model;
};

}  // namespace dtsdb::internal
