/// \file
/// The rows of a realtime database with all their columns, those that no record has included.
#pragma once

#include <QByteArray>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "formats/cell.h"
#include "formats/realtime.h"
#include "model/table_info.h"
#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb::tools {

/// A table as it is stored. Rows are handed on by their address; they are of the row class of the table.
class StoredTable {
 public:
  virtual ~StoredTable() = default;

  const TableInfo& Info() const { return *m_info; }
  virtual std::span<const ColumnInfo> Columns() const = 0;

  /// A row with the defaults of the record's fields; what no record has is zero.
  virtual std::shared_ptr<void> NewRow() const = 0;
  /// The number of rows.
  virtual int Count(dbDatabase* db) const = 0;
  /// The number of the last transaction that changed rows, see rtdb::ChangeNumber; 0 for unknown.
  virtual std::uint64_t ChangeNumber(dbDatabase* db) const = 0;
  /// Calls `visit` with every row, in the order of the keys, and returns the number of rows.
  virtual int ForEachRow(dbDatabase* db, const std::function<void(const void* row)>& visit) const = 0;
  /// Selects the rows of `query` and calls `check` with their number. Then changes the one row, or adds a new one when
  /// there is none, with what `change` puts into it.
  virtual void Put(dbDatabase* db, dbQuery& query, const std::function<void(int count)>& check,
                   const std::function<void(void* row)>& change) const = 0;

 protected:
  explicit StoredTable(TableKind kind) : m_info(&TableOfKind(kind)) {}

 private:
  const TableInfo* m_info;
};

/// All tables, in the order of their kind codes.
const std::vector<std::unique_ptr<StoredTable>>& StoredTables();

/// The table of kind code `kind`, which must be one.
const StoredTable& StoredTableOf(TableKind kind);

/// What a database contains.
struct StoredRowCounts {
  int tables = 0;  ///< that have rows
  long long rows = 0;
};

/// Reads every row of an open database. Throws Failure, in the name `name`, where one can't be read.
StoredRowCounts CheckStoredRows(RealtimeDatabase& database, const std::string& name);

/// The values of all columns of a row as cells: texts as real text, a range of bytes as hexadecimal digits.
std::vector<Cell> ColumnCells(std::span<const ColumnInfo> columns, const void* row);

/// The texts under which a row can be found: its identity or number, the identities of parent and child.
std::vector<std::string> RowNames(const StoredTable& table, const void* row);

/// Values for some columns of a row, as a user gives them.
class RowValues {
 public:
  /// Takes texts of the form COLUMN=VALUE. A Failure of usage when one isn't right or the row's key is missing.
  RowValues(const StoredTable& table, const std::vector<std::string>& assignments);
  RowValues(const RowValues&) = delete;
  RowValues& operator=(const RowValues&) = delete;

  /// Makes `query` one for the rows with this key. It needs the values at every select.
  void Find(dbQuery& query);

  /// Puts the given values into `row`. Their texts belong to this object.
  void PutInto(void* row) const;

  /// The row for people.
  std::string Name() const;

 private:
  bool IsGiven(const ColumnInfo& column) const;
  void RequireKey(const ColumnInfo& column) const;
  void Take(const std::string& assignment);
  std::string Parse(const std::string& text, const ColumnInfo& column);

  const StoredTable& m_table;
  std::shared_ptr<void> m_values;    // a row
  std::vector<std::string> m_given;  // names of columns
  std::deque<QByteArray> m_texts;    // what the texts of m_values point to
  std::deque<std::string> m_conditions;
};

/// Changes the row that `values` have the key of, or adds it, in one transaction. True when it was added. Throws
/// Failure when that can't be done, and when several rows have the key.
bool PutRow(RealtimeDatabase& database, const StoredTable& table, RowValues& values);

}  // namespace dtsdb::tools
