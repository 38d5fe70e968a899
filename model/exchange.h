/// \file
/// The exchange of tables with the realtime database, from the one list of fields.
///
/// DTSDB's Read<T>FromFastdb and Write<T>ToFastdb are ReadTable and WriteTable. Whoever writes only some columns
/// (the topology) takes MergeRows or a TwinWriter. Nothing here commits, and nothing reports a failure: the database
/// has its own error handling. docs/realtime-exchange.md tells which tables are written how.
#pragma once

#include <QByteArray>
#include <span>
#include <vector>

#include "include/template.h"
#include "model/dtsdb.h"
#include "model/records.h"
#include "model/text.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb {

/// How a table is written.
enum class Writer {
  Merging,    ///< rows that exist are updated and keep what no record holds; none is deleted
  Replacing,  ///< all rows are deleted and written anew
};

/// A field of record class `Record` and the column of the same name of its twin.
template <class Record, class Type, class Row, class Cell>
struct Column {
  Type Record::*field;
  Cell Row::*cell;
};
template <class Record, class Type, class Row, class Cell>
Column(Type Record::*, Cell Row::*) -> Column<Record, Type, Row, Cell>;

/// What is known of the twin of record class `Record`: its class, how its table is written and its columns, each
/// under its name, as in `Twin<LD>::tp_status`.
template <class Record>
struct Twin;

#define DTSDB_NAME_COLUMN(type, name, ...) static constexpr Column name{&Record::name, &Row::name};
#define DTSDB_VISIT_COLUMN(type, name, ...) visit(name);
#define DTSDB_TWIN(T, twin, writer)                      \
  template <>                                            \
  struct Twin<T> {                                       \
    using Record = T;                                    \
    using Row = twin;                                    \
    static constexpr Writer kWriter = Writer::writer;    \
    DTSDB_RECORD_FIELDS(T, DTSDB_NAME_COLUMN)            \
    /** Calls `visit` with the Column of every field. */ \
    template <class Visitor>                             \
    static void ForEachColumn(Visitor&& visit) {         \
      DTSDB_RECORD_FIELDS(T, DTSDB_VISIT_COLUMN)         \
    }                                                    \
  };
DTSDB_TWINS(DTSDB_TWIN)
#undef DTSDB_TWIN
#undef DTSDB_VISIT_COLUMN
#undef DTSDB_NAME_COLUMN

/// The query that a table is read with.
template <class Record>
inline constexpr const char* kReadingOrder = "order by id";
#define DTSDB_READING_ORDER(T, Parent, Child, parent, child, head, own) \
  template <>                                                           \
  inline constexpr const char* kReadingOrder<T> = "order by " #parent "_id," #child "_id";
DTSDB_RELATIONS(DTSDB_READING_ORDER)
#undef DTSDB_READING_ORDER

/// A column's value as that of its field; of a one-byte field the column's low byte.
inline void LoadCell(QString& field, char const* cell) { field = IdFromBytes(cell); }
template <class Number, class Cell>
void LoadCell(Number& field, Cell cell) {
  field = static_cast<Number>(cell);
}

/// Replaces the contents of `table` by the rows of its twin; its slots stay.
template <class T>
void ReadTable(dbDatabase* db, tTable<T>& table) {
  using Row = typename Twin<T>::Row;
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  dbCursor<Row> cursor(db, dbCursorViewOnly);
  table.Clear();
  const int n = cursor.select(kReadingOrder<T>);
  if (n <= 0) return;

  std::vector<T> records(static_cast<std::size_t>(n));
  int read = 0;
  for (const Row* row = cursor.get(); row != nullptr && read < n; row = cursor.next()) {
    T& record = records[static_cast<std::size_t>(read++)];
    Twin<T>::ForEachColumn([&](const auto& column) { LoadCell(record.*column.field, row->*column.cell); });
  }
  if (read > 0) table.SetData(records.data(), read, false);
}

/// Keeps the bytes of a row's texts until the row is written: the row has only pointers to them.
class RowTexts {
 public:
  /// Forgets the texts of the row before. `table` is named in warnings.
  void Begin(const char* table) {
    m_table = table;
    m_texts.clear();
  }
  /// The bytes of `text`. They end at a zero byte, which no column can hold: then there is a warning.
  char const* Keep(const QString& text);

 private:
  const char* m_table = "";
  std::vector<QByteArray> m_texts;  // moving a QByteArray leaves its bytes where they are
};

/// Finds the rows of records by their identity, through one cursor. `db` must outlive it and must not be null.
template <class T>
class TwinFinder {
 public:
  using Row = typename Twin<T>::Row;

  TwinFinder(dbDatabase* db, dbCursorType type) : m_cursor(db, type) {}

  /// Selects the rows with the identity of `record`; gives how many there are.
  int Select(const T& record) {
    if constexpr (T::kKey == RecordKey::Identified) {
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

  /// Selects the rows whose number is `id` or above; gives how many there are.
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
  using Row = typename Twin<T>::Row;

  explicit TwinWriter(dbDatabase* db) : m_db(db), m_rows(db, dbCursorForUpdate) {}

  /// True when the table has no row.
  bool IsEmpty() { return m_rows.Cursor().select(kReadingOrder<T>) <= 0; }

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
    if constexpr (KindOf<T> == KIND_ANALOG) {
      // Deliberate: a new analog row bears the record's name as its identity, and no name.
      row.id = row.name;
      row.name = Row().name;
    }
    m_db->insert(row);
  }

  /// Writes the given columns of `record`, or with none given all of them, into the one row that has its identity.
  /// Otherwise does nothing: a missing row isn't made and a doubled one not touched.
  template <class... Columns>
  void Update(const T& record, const Columns&... columns) {
    if (m_rows.Select(record) == 1) UpdateSelected(record, columns...);
  }

  /// The same, but a missing row is added whole, and doubled ones give way to one new row.
  template <class... Columns>
  void Merge(const T& record, const Columns&... columns) {
    const int count = m_rows.Select(record);
    if (count == 1) return UpdateSelected(record, columns...);
    if (count > 1) m_rows.Cursor().removeAllSelected();
    Insert(record);
  }

 private:
  template <class... Columns>
  void UpdateSelected(const T& record, const Columns&... columns) {
    Row* const row = m_rows.Cursor().get();
    if (row == nullptr) return;
    Store(record, *row, columns...);
    m_rows.Cursor().update();
  }

  /// The row's identity is what it was found by: to store it once more changes nothing.
  template <class... Columns>
  void Store(const T& record, Row& row, const Columns&... columns) {
    m_texts.Begin(T::kTableName);
    const auto store = [&](const auto& column) { StoreCell(row.*column.cell, record.*column.field); };
    if constexpr (sizeof...(columns) > 0) {
      (store(columns), ...);
    } else {
      Twin<T>::ForEachColumn(store);
    }
  }

  void StoreCell(char const*& cell, const QString& field) { cell = m_texts.Keep(field); }
  template <class Cell, class Number>
  void StoreCell(Cell& cell, Number field) {
    cell = static_cast<Cell>(field);  // NOLINT(bugprone-signed-char-misuse): a signed byte is meant to be extended
  }

  dbDatabase* m_db;
  TwinFinder<T> m_rows;
  RowTexts m_texts;
};

/// Merges the records of `table` into the rows of its twin: rows that exist get the given columns, or with none
/// given all.
template <class T, class... Columns>
void MergeRows(TwinWriter<T>& writer, tTable<T>& table, const Columns&... columns) {
  for (int i = 0; i < table.GetCount(); ++i) writer.Merge(table[i], columns...);
}
template <class T, class... Columns>
void MergeRows(dbDatabase* db, tTable<T>& table, const Columns&... columns) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  TwinWriter<T> writer(db);
  MergeRows(writer, table, columns...);
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

/// Writes `table` as a whole, in the way of its twin.
template <class T>
void WriteTable(dbDatabase* db, tTable<T>& table) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  TwinWriter<T> writer(db);
  if constexpr (Twin<T>::kWriter == Writer::Replacing) {
    writer.RemoveAll();
    InsertRows(writer, table);
  } else if (writer.IsEmpty()) {
    InsertRows(writer, table);
  } else {
    MergeRows(writer, table);
  }
  // Deliberate: of all numbered tables only the section list is cut to the model's length.
  if constexpr (KindOf<T> == KIND_BSL) writer.RemoveFrom(table.GetCount());
}

/// A member of DTSDB that reads or writes one table. Lists of tables are arrays of these, in the order of the calls.
using TableExchange = bool (DTSDB::*)(dbDatabase* db);
#define DTSDB_READER(T) &DTSDB::Read##T##FromFastdb
#define DTSDB_WRITER(T) &DTSDB::Write##T##ToFastdb

/// Reads or writes the listed tables of `model`, without a commit.
inline void ExchangeTables(DTSDB& model, dbDatabase* db, std::span<const TableExchange> tables) {
  for (const TableExchange exchange : tables) (model.*exchange)(db);
}

}  // namespace dtsdb
