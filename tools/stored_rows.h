/// \file
/// The rows of a realtime database with all their columns, those that no record has included.
#pragma once

#include <QByteArray>
#include <algorithm>
#include <deque>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/exchange.h"
#include "tools/failure.h"
#include "tools/field_text.h"
#include "tools/nearest.h"
#include "tools/text_table_file.h"

namespace dtsdb::tools {

/// What is known of one column of a row class: its name, where it lies and what its values are. `Type` is the type of
/// the record's field, or an array for a range of bytes that other programs keep.
template <class Row, class Type, class Stored>
struct StoredColumn {
  using ValueType = Type;
  const char* name;
  Stored Row::*member;

  /// True for the columns that a row is found by.
  bool IsKey() const { return IndexOf(Row::kTableName, name) != 0; }
};

/// The table of record class `Record` as it is stored.
template <class Record>
struct StoredTable;

#define DTSDB_VISIT_STORED(type, name, ...) visit(StoredColumn<Row, type, DTSDB_COLUMN_##type>{#name, &Row::name});
#define DTSDB_VISIT_RANGE(name, size) visit(StoredColumn<Row, char[size], char[size]>{#name, &Row::name});
#define DTSDB_STORED_TABLE(T, twin, writer)                                       \
  template <>                                                                     \
  struct StoredTable<T> {                                                         \
    using Record = T;                                                             \
    using Row = twin;                                                             \
    /** Calls `visit` with the StoredColumn of every column, in order. */         \
    template <class Visitor>                                                      \
    static void ForEachField(Visitor&& visit) {                                   \
      DTSDB_FIELDS_##T(DTSDB_VISIT_STORED, DTSDB_VISIT_RANGE, DTSDB_VISIT_STORED) \
    }                                                                             \
  };
DTSDB_TWINS(DTSDB_STORED_TABLE)
#undef DTSDB_STORED_TABLE
#undef DTSDB_VISIT_RANGE
#undef DTSDB_VISIT_STORED

/// Calls `visit` with the StoredTable of every table, in order.
template <class Visitor>
void ForEachStoredTable(Visitor&& visit) {
#define DTSDB_VISIT_STORED_TABLE(T, twin, writer) visit(StoredTable<T>());
  DTSDB_TWINS(DTSDB_VISIT_STORED_TABLE)
#undef DTSDB_VISIT_STORED_TABLE
}

/// Calls `visit` with the StoredTable of the table at `place`.
template <class Visitor>
void VisitStoredTable(int place, Visitor&& visit) {
  int at = 0;
  ForEachStoredTable([&](auto table) {
    if (at++ == place) visit(table);
  });
}

/// Calls `visit` with every row, in the order of the keys, and gives their number.
template <class Table, class Visitor>
int ForEachRow(dbDatabase* db, Visitor&& visit) {
  dbCursor<typename Table::Row> cursor(db, dbCursorViewOnly);
  const int count = cursor.select(kReadingOrder<typename Table::Record>);
  for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) visit(*row);
  return count;
}

/// The texts under which a row can be found: its identity or number, the identities of parent and child.
template <class Table>
std::vector<std::string> RowNames(const typename Table::Row& row) {
  std::vector<std::string> names;
  Table::ForEachField([&](const auto& column) {
    if (column.IsKey()) names.push_back(FieldText(row.*column.member));
  });
  return names;
}

/// A field's number as that of its column; a signed byte is sign-extended.
template <class Stored, class Value>
void StoreNumber(Stored& cell, Value value) {
  cell = static_cast<Stored>(+value);
}

/// Reads the bytes of a range from two hexadecimal digits each. Gives an empty text, or what is wrong.
std::string ParseRange(const std::string& text, char* range, std::size_t size);

/// Values for some columns of a row, as a user gives them.
template <class Table>
class RowValues {
 public:
  using Row = typename Table::Row;

  /// Takes texts of the form COLUMN=VALUE. A Failure of usage when one isn't right or the row's key is missing.
  explicit RowValues(const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments) Take(assignment);
    Table::ForEachField([&](const auto& column) {
      if (column.IsKey()) RequireKey(column.name, FieldText(m_values.*column.member));
    });
  }
  RowValues(const RowValues&) = delete;
  RowValues& operator=(const RowValues&) = delete;

  /// Makes `query` one for the rows with this key. It needs the values at every select.
  void Find(dbQuery& query) {
    query.reset();
    Table::ForEachField([&](const auto& column) {
      if (!column.IsKey()) return;
      m_conditions.push_back((m_conditions.empty() ? "" : "and ") + std::string(column.name) + " = ");
      if constexpr (!std::is_array_v<StoredType<decltype(column)>>) {
        query, m_conditions.back().c_str(), m_values.*column.member;
      }
    });
  }

  /// Puts the given values into `row`. Their texts belong to this object.
  void PutInto(Row& row) const {
    Table::ForEachField([&](const auto& column) {
      if (!IsGiven(column.name)) return;
      if constexpr (std::is_array_v<StoredType<decltype(column)>>) {
        std::copy(std::begin(m_values.*column.member), std::end(m_values.*column.member),
                  std::begin(row.*column.member));
      } else {
        row.*column.member = m_values.*column.member;
      }
    });
  }

  /// The row for people.
  std::string Name() const {
    std::string name;
    for (const std::string& part : RowNames<Table>(m_values)) name += (name.empty() ? "" : " > ") + OneLine(part);
    return Table::Record::kTableName + (" " + name);
  }

 private:
  template <class Column>
  using StoredType = std::remove_cvref_t<decltype(std::declval<Row&>().*std::declval<Column>().member)>;

  bool IsGiven(const std::string& column) const {
    return std::find(m_given.begin(), m_given.end(), column) != m_given.end();
  }

  void RequireKey(const std::string& column, const std::string& value) const {
    if (!IsGiven(column)) throw Failure(EXIT_USAGE, "which row is meant? " + column + "=... is missing");
    if (value.empty()) throw Failure(EXIT_USAGE, "column " + column + ": a row needs one");
  }

  void Take(const std::string& assignment) {
    const std::size_t sign = assignment.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw Failure(EXIT_USAGE, Quoted(assignment) + " is not of the form COLUMN=VALUE");
    }
    const std::string name = assignment.substr(0, sign);
    if (IsGiven(name)) throw Failure(EXIT_USAGE, "column " + name + " stands twice");
    std::string wrong = "table " + std::string(Table::Record::kTableName) + " has no such column" +
                        DidYouMean(name, FieldNames<Table>());
    Table::ForEachField([&](const auto& column) {
      if (name == column.name) wrong = Parse(assignment.substr(sign + 1), column);
    });
    if (!wrong.empty()) throw Failure(EXIT_USAGE, "column " + OneLine(name) + ": " + wrong);
    m_given.push_back(name);
  }

  template <class Column>
  std::string Parse(const std::string& text, const Column& column) {
    using Value = typename Column::ValueType;
    auto& cell = m_values.*column.member;
    if constexpr (std::is_array_v<Value>) {
      return ParseRange(text, cell, sizeof(Value));
    } else {
      Value value{};
      std::string wrong;
      if constexpr (std::is_same_v<Value, QString>) {
        wrong = ParseIdentity(text, value);
        cell = m_texts.emplace_back(IdToBytes(value)).constData();
      } else {
        wrong = ParseNumber(text, value);
        StoreNumber(cell, value);
      }
      return wrong;
    }
  }

  Row m_values;
  std::vector<std::string> m_given;  // names of columns
  std::deque<QByteArray> m_texts;    // what the texts of m_values point to
  std::deque<std::string> m_conditions;
};

/// A row with the defaults of the record's fields; what no record has is zero.
template <class Table>
typename Table::Row DefaultRow() {
  const typename Table::Record defaults;
  typename Table::Row row;
  Twin<typename Table::Record>::ForEachColumn([&](const auto& column) {
    if constexpr (!std::is_same_v<std::remove_cvref_t<decltype(row.*column.cell)>, char const*>) {
      StoreNumber(row.*column.cell, defaults.*column.field);
    }
  });
  return row;
}

}  // namespace dtsdb::tools
