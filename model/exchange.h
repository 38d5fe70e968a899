/// \file
/// The exchange of tables with the realtime database, over the tables of fields and columns.
///
/// DTSDB's Read<T>FromFastdb and Write<T>ToFastdb are ReadTable and WriteTable. Whoever writes only some columns
/// (the topology) takes MergeRows or a TwinWriter. Nothing here commits, and nothing reports a failure: the database
/// has its own error handling. docs/realtime-exchange.md describes which tables are written how.
#pragma once

#include <QByteArray>
#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "include/template.h"
#include "model/dtsdb.h"
#include "model/text.h"
#include "model/twins.h"

namespace dtsdb {

/// Keeps the bytes of a row's texts until the row is written: the row has only pointers to them.
class RowTexts {
 public:
  /// Forgets the texts of the row before. `table` is named in warnings.
  void Begin(const char* table) {
    m_table = table;
    m_used = 0;
    m_large.clear();
  }
  /// The bytes of `text`. They end at a zero byte, which no column can hold: then there is a warning.
  char const* Keep(const QString& text);

 private:
  static constexpr std::size_t kRoom = 4096;

  char* Room(std::size_t n);

  const char* m_table = "";
  std::vector<char> m_bytes = std::vector<char>(kRoom);  // never moves
  std::size_t m_used = 0;
  std::deque<std::vector<char>> m_large;  // what m_bytes has no room for
};

/// Takes over all fields of a record from its row. Of a one-byte field the column's low byte counts.
void LoadFields(void* record, std::span<const FieldInfo> fields, const void* row, std::span<const ColumnInfo> columns);

/// Takes over the field of a column.
void LoadField(void* record, const void* row, std::span<const FieldInfo> fields, const ColumnInfo& column);

/// Puts all fields of a record into its row; a signed byte is sign-extended. The row points to texts of `texts`.
void StoreFields(const void* record, std::span<const FieldInfo> fields, void* row, std::span<const ColumnInfo> columns,
                 RowTexts& texts);

/// Puts the field of a column into it.
void StoreField(const void* record, void* row, std::span<const FieldInfo> fields, const ColumnInfo& column,
                RowTexts& texts);

/// Whether a row has in all columns what StoreFields would put there. One with a text that a row can't hold as it is (a
/// zero byte, a character above 0xFF) never has.
bool HoldsFields(const void* row, std::span<const ColumnInfo> columns, const void* record,
                 std::span<const FieldInfo> fields);

/// Compares the identity of a row with that of a record: below, equal to or above 0. For tables that have `id`.
int CompareIdentity(const void* row, std::span<const ColumnInfo> columns, const void* record,
                    std::span<const FieldInfo> fields);

/// The column of the field that lies at `offset` in a record.
const ColumnInfo& ColumnAt(std::size_t offset, std::span<const FieldInfo> fields, std::span<const ColumnInfo> columns);

/// The column of a field, such as &LD::ibs.
template <class T, class Value>
const ColumnInfo& ColumnOf(Value T::*field) {
  static const T record;
  const auto* const at = reinterpret_cast<const std::byte*>(&(record.*field));
  const auto offset = static_cast<std::size_t>(at - reinterpret_cast<const std::byte*>(&record));
  return ColumnAt(offset, T::Fields(), Twin<T>::Row::Columns());
}

/// Takes over the given fields of a record, such as &TPTRACE::id, from its row.
template <class T, class... Values>
void LoadSome(T& record, const typename Twin<T>::Row& row, Values T::*... fields) {
  (LoadField(&record, &row, T::Fields(), ColumnOf(fields)), ...);
}

/// How a record class and its rows lie in memory.
struct RowLayout {
  std::span<const FieldInfo> fields;    ///< of the record
  std::span<const ColumnInfo> columns;  ///< of the row
  std::size_t recordSize;               ///< in bytes
  std::size_t rowSize;                  ///< likewise
};

/// Loads up to `n` records, which lie behind each other at `records`, from the rows that `next` returns until it
/// returns null; returns how many. With several threads (ThreadCount) other threads load while the caller's takes row
/// after row. The texts of all these rows must stay where they are.
int LoadRecords(const RowLayout& layout, void* records, int n, const std::function<const void*()>& next);
/// The same on the caller's thread: the texts of a row must stay until the next one is taken.
int LoadRecordsOneByOne(const RowLayout& layout, void* records, int n, const std::function<const void*()>& next);

/// Whether the texts of the cursor's rows stay where they are, beyond its next move, while the transaction lasts and
/// changes nothing.
template <class Cursor>
bool DoTextsStay(const Cursor& cursor) {
  if constexpr (requires { cursor.textsStay(); }) return cursor.textsStay();
  return true;  // an installed FastDB leaves them in its own memory
}

/// Replaces the contents of `table` by its rows; its slots stay. Always true.
template <class T>
bool ReadTable(dbDatabase* db, tTable<T>& table) {
  using Row = typename Twin<T>::Row;
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
  dbCursor<Row> cursor(db, dbCursorViewOnly);
  table.Clear();
  const int n = cursor.select(Twin<T>::kReadingOrder);
  if (n <= 0) return true;

  std::vector<T> records;
  records.reserve(static_cast<std::size_t>(std::max(n, table.GetSize())));
  records.resize(static_cast<std::size_t>(n));
  const RowLayout layout = {T::Fields(), Row::Columns(), sizeof(T), sizeof(Row)};
  bool isFirst = true;
  const auto next = [&]() -> const void* { return std::exchange(isFirst, false) ? cursor.get() : cursor.next(); };
  const int read = DoTextsStay(cursor) ? LoadRecords(layout, records.data(), n, next)
                                       : LoadRecordsOneByOne(layout, records.data(), n, next);
  records.resize(static_cast<std::size_t>(read));
  if (read > 0) table.SetData(std::move(records));
  return true;
}

/// Finds the rows of records by their identity, through one cursor. `db` must outlive it and must not be null.
template <class T>
class TwinFinder {
 public:
  using Row = typename Twin<T>::Row;  ///< the row that stands for the record

  /// Looks in the table of `db`, which must outlive it.
  TwinFinder(dbDatabase* db, dbCursorType type) : m_cursor(db, type) {}

  /// Selects the rows with the identity of `record`; returns how many there are.
  int Select(const T& record) {
    if constexpr (T::kKey == RecordKey::kIdentified) {
      const QByteArray bytes = IdToBytes(record.id);
      char const* id = bytes.constData();
      m_query = "id = ", id;
      return m_cursor.select(m_query);
    } else {
      const int4 id = record.id;
      m_query = "id = ", id;
      return m_cursor.select(m_query);
    }
  }

  /// Selects the rows whose number is `id` or above; returns how many there are.
  int SelectFrom(int id) {
    const int4 first = id;
    m_query = "id >= ", first;
    return m_cursor.select(m_query);
  }

  /// The cursor, on what was selected last.
  dbCursor<Row>& Cursor() { return m_cursor; }

 private:
  dbCursor<Row> m_cursor;
  dbQuery m_query;
};

/// Writes records into the table of their twin, one by one, through one cursor. `db` must outlive it and must not
/// be null.
template <class T>
class TwinWriter {
 public:
  using Row = typename Twin<T>::Row;  ///< the row that stands for the record

  /// Writes into the table of `db`, which must outlive it.
  explicit TwinWriter(dbDatabase* db) : m_db(db), m_rows(db, dbCursorForUpdate) {}

  /// True when the table has no row.
  bool IsEmpty() { return m_rows.Cursor().select(Twin<T>::kReadingOrder) <= 0; }

  /// Deletes all rows.
  void RemoveAll() { m_rows.Cursor().removeAll(); }

  /// Deletes the rows whose number is `id` or above.
  void RemoveFrom(int id) {
    if (m_rows.SelectFrom(id) > 0) m_rows.Cursor().removeAllSelected();
  }

  /// Adds a row with all columns of `record`; what other programs keep in a row is zero.
  void Insert(const T& record) {
    Row row;
    Store(record, row);
    if constexpr (kKindOf<T> == KIND_ANALOG) {
      // A new analog row bears the record's name as its identity, and no name. Kept: K04.
      row.id = row.name;
      row.name = Row().name;
    }
    m_db->insert(row);
  }

  /// Writes the given fields of `record`, such as &LD::ibs, or with none given all of them, into the one row that has
  /// its identity. Otherwise does nothing: a missing row isn't made and a doubled one not touched.
  template <class... Values>
  void Update(const T& record, Values T::*... fields) {
    if (m_rows.Select(record) == 1) UpdateSelected(record, fields...);
  }

  /// The same, but a missing row is added whole, and doubled ones give way to one new row.
  template <class... Values>
  void Merge(const T& record, Values T::*... fields) {
    const int count = m_rows.Select(record);
    if (count == 1) return UpdateSelected(record, fields...);
    if (count > 1) m_rows.Cursor().removeAllSelected();
    Insert(record);
  }

 private:
  template <class... Values>
  void UpdateSelected(const T& record, Values T::*... fields) {
    Row* const row = m_rows.Cursor().get();
    if (row == nullptr) return;
    Store(record, *row, fields...);
    m_rows.Cursor().update();
  }

  /// The row's identity is what it was found by: to store it once more changes nothing.
  template <class... Values>
  void Store(const T& record, Row& row, Values T::*... fields) {
    m_texts.Begin(T::kTableName);
    if constexpr (sizeof...(fields) > 0) {
      (StoreField(&record, &row, T::Fields(), ColumnOf(fields), m_texts), ...);
    } else {
      StoreFields(&record, T::Fields(), &row, Row::Columns(), m_texts);
    }
  }

  dbDatabase* m_db;
  TwinFinder<T> m_rows;
  RowTexts m_texts;
};

/// Merges the records of `table` into its rows: rows that exist get the given fields, or with none given all.
template <class T, class... Values>
void MergeRows(TwinWriter<T>& writer, tTable<T>& table, Values T::*... fields) {
  for (int i = 0; i < table.GetCount(); ++i) writer.Merge(table[i], fields...);
}
template <class T, class... Values>
void MergeRows(dbDatabase* db, tTable<T>& table, Values T::*... fields) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  TwinWriter<T> writer(db);
  MergeRows(writer, table, fields...);
}

/// Deletes the rows of `table`'s twin that are numbered beyond the table's end.
template <class T>
void RemoveRowsBeyond(dbDatabase* db, tTable<T>& table) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  TwinWriter<T>(db).RemoveFrom(table.GetCount());
}

/// Adds a row for every record of `table`.
template <class T>
void InsertRows(TwinWriter<T>& writer, tTable<T>& table) {
  for (int i = 0; i < table.GetCount(); ++i) writer.Insert(table[i]);
}

/// Whether the rows of `table`'s twin are those that a writing of the table into an empty one would make. `db` must not
/// be null.
template <class T>
bool HoldsTable(dbDatabase* db, tTable<T>& table) {
  using Row = typename Twin<T>::Row;
  const auto columns = Row::Columns();
  for (const ColumnInfo& column : columns) {
    if (column.field == ColumnInfo::kNoField) return false;  // what others keep there would be emptied
  }
  dbCursor<Row> cursor(db, dbCursorForUpdate);
  if (static_cast<int>(cursor.select()) != table.GetCount()) return false;
  int i = 0;
  for (const Row* row = cursor.get(); row != nullptr && i < table.GetCount(); row = cursor.next()) {
    if (!HoldsFields(row, columns, &table[i++], T::Fields())) return false;
  }
  return i == table.GetCount();
}

/// For each record of `table` whether merging it would change nothing: one row has its identity, and holds it. `db`
/// must not be null. A record that isn't looked at, since rows or records stand in another order, counts as one that
/// would.
template <class T>
std::vector<bool> HeldRecords(dbDatabase* db, tTable<T>& table) {
  using Row = typename Twin<T>::Row;
  std::vector<bool> held(static_cast<std::size_t>(table.GetCount()), false);
  dbCursor<Row> cursor(db, dbCursorForUpdate);
  if (cursor.select("order by id") <= 0) return held;
  const Row* row = cursor.get();
  int found = -1;  // the last record that a row was found for
  for (int i = 0; row != nullptr && i < table.GetCount();) {
    const int order = CompareIdentity(row, Row::Columns(), &table[i], T::Fields());
    if (order > 0) {
      ++i;
      continue;
    }
    if (order == 0) {  // a second row with this identity gives way when the record is merged
      held[static_cast<std::size_t>(i)] = found != i && HoldsFields(row, Row::Columns(), &table[i], T::Fields());
      found = i;
    }
    row = cursor.next();
  }
  return held;
}

/// Merges the records of `table` that their rows don't hold already.
template <class T>
void MergeChangedRows(dbDatabase* db, TwinWriter<T>& writer, tTable<T>& table) {
  const std::vector<bool> held = HeldRecords(db, table);
  for (int i = 0; i < table.GetCount(); ++i) {
    if (!held[static_cast<std::size_t>(i)]) writer.Merge(table[i]);
  }
}

/// Writes `table` as a whole, in the way of its rows. Rows that hold their records already are left alone. Always true.
template <class T>
bool WriteTable(dbDatabase* db, tTable<T>& table) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
  TwinWriter<T> writer(db);
  if constexpr (Twin<T>::kWriter == Writer::kReplacing) {
    if (HoldsTable(db, table)) return true;
    writer.RemoveAll();
    InsertRows(writer, table);
  } else if (writer.IsEmpty()) {
    InsertRows(writer, table);
  } else {
    MergeChangedRows(db, writer, table);
  }
  // Of all numbered tables only the section list is cut to the model's length. Kept: K05.
  if constexpr (kKindOf<T> == KIND_BSL) writer.RemoveFrom(table.GetCount());
  return true;
}

/// Reads or writes the tables of the given kind codes, in this order, without a commit.
void ReadTables(DTSDB& model, dbDatabase* db, std::span<const TableKind> kinds);
void WriteTables(DTSDB& model, dbDatabase* db, std::span<const TableKind> kinds);

}  // namespace dtsdb
