#include "formats/stored_rows.h"

#include <algorithm>
#include <cstring>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/text_table_file.h"
#include "model/exchange.h"

namespace dtsdb::tools {
namespace {

/// The table of record class `T`.
template <class T>
class StoredTableFor : public StoredTable {
 public:
  using Row = typename Twin<T>::Row;

  StoredTableFor() : StoredTable(T::kKind) {}

  std::span<const ColumnInfo> Columns() const override { return Row::Columns(); }

  std::shared_ptr<void> NewRow() const override {
    const T defaults;
    RowTexts noTexts;
    const auto row = std::make_shared<Row>();
    for (const ColumnInfo& column : Row::Columns()) {
      if (column.field == ColumnInfo::kNoField || column.type == ColumnType::kText) continue;
      StoreField(&defaults, row.get(), T::Fields(), column, noTexts);
    }
    return row;
  }

  int Count(dbDatabase* db) const override { return dbCursor<Row>(db).select(Twin<T>::kReadingOrder); }

  std::uint64_t ChangeNumber(dbDatabase* db) const override {
    return rtdb::ChangeNumber(db, db->lookupTable(&Row::dbDescriptor));
  }

  int ForEachRow(dbDatabase* db, const std::function<void(const void*)>& visit) const override {
    dbCursor<Row> cursor(db, dbCursorViewOnly);
    const int count = cursor.select(Twin<T>::kReadingOrder);
    for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) visit(row);
    return count;
  }

  void Put(dbDatabase* db, dbQuery& query, const std::function<void(int)>& check,
           const std::function<void(void*)>& change) const override {
    dbCursor<Row> cursor(db, dbCursorForUpdate);
    const int count = cursor.select(query);
    check(count);
    if (count == 1) {
      change(cursor.get());
      cursor.update();
    } else {
      const std::shared_ptr<void> row = NewRow();
      change(row.get());
      db->insert(*static_cast<const Row*>(row.get()));
    }
  }
};

/// Calls `visit(value)` with the value of `column` in `row`, a reference; of a range of bytes to its first one.
template <class Address, class Visitor>
auto VisitColumn(const ColumnInfo& column, Address* row, Visitor&& visit) {
  switch (column.type) {
    case ColumnType::kText:
      return visit(column.In<char const*>(row));
    case ColumnType::kInt4:
      return visit(column.In<int4>(row));
    case ColumnType::kNat4:
      return visit(column.In<nat4>(row));
    case ColumnType::kReal4:
      return visit(column.In<real4>(row));
    case ColumnType::kReal8:
      return visit(column.In<real8>(row));
    case ColumnType::kBytes:
      break;
  }
  return visit(column.In<char>(row));
}

/// Reads the bytes of a range from two hexadecimal digits each. Returns an empty text, or what is wrong.
std::string ParseRange(const std::string& text, char* range, std::size_t size) {
  const QByteArray digits = QByteArray::fromStdString(text);
  const QByteArray bytes = QByteArray::fromHex(digits);
  if (bytes.size() != static_cast<qsizetype>(size) || bytes.toHex() != digits.toLower()) {
    return fmt::format("{} is not {} hexadecimal digits", Quoted(text), 2 * size);
  }
  std::copy(bytes.begin(), bytes.end(), range);
  return "";
}

/// Reads a number of the type `V` into a column; a signed byte is sign-extended.
template <class V, class Stored>
std::string ParseInto(const std::string& text, Stored& cell) {
  V value{};
  std::string wrong = ParseNumber(text, value);
  cell = static_cast<Stored>(+value);
  return wrong;
}

Cell ColumnCell(const ColumnInfo& column, const void* row) {
  return VisitColumn(column, row, [&column]<class V>(const V& value) -> Cell {
    if constexpr (std::is_same_v<V, char const*>) {
      return FieldCell(IdFromBytes(value));
    } else if constexpr (std::is_same_v<V, char>) {
      return QByteArray(&value, static_cast<qsizetype>(column.size)).toHex().toStdString();
    } else {
      return FieldCell(value);
    }
  });
}

}  // namespace

const std::vector<std::unique_ptr<StoredTable>>& StoredTables() {
  static const auto tables = [] {
    std::vector<std::unique_ptr<StoredTable>> all;
    ForEachRecordClass([&all]<class T> { all.push_back(std::make_unique<StoredTableFor<T>>()); });
    return all;
  }();
  return tables;
}

const StoredTable& StoredTableOf(TableKind kind) { return *StoredTables()[static_cast<std::size_t>(kind) - 1]; }

StoredRowCounts CheckStoredRows(RealtimeDatabase& database, const std::string& name) {
  StoredRowCounts counts;
  for (const auto& table : StoredTables()) {
    long long read = 0;
    const int count = table->ForEachRow(database.Db(), [&read](const void*) { ++read; });
    database.Check();
    if (read != count) {
      throw Failure(kExitFile,
                    fmt::format("{}: table {}: only {} of {} rows can be read", name,
                                QString::fromLatin1(table->Info().name).toLower().toStdString(), read, count));
    }
    if (count > 0) ++counts.tables;
    counts.rows += count;
  }
  return counts;
}

std::vector<Cell> ColumnCells(std::span<const ColumnInfo> columns, const void* row) {
  std::vector<Cell> cells;
  cells.reserve(columns.size());
  for (const ColumnInfo& column : columns) cells.push_back(ColumnCell(column, row));
  return cells;
}

std::vector<std::string> RowNames(const StoredTable& table, const void* row) {
  std::vector<std::string> names;
  for (const ColumnInfo& column : table.Columns()) {
    if (column.isKey) names.push_back(CellText(ColumnCell(column, row)));
  }
  return names;
}

RowValues::RowValues(const StoredTable& table, const std::vector<std::string>& assignments)
    : m_table(table), m_values(table.NewRow()) {
  for (const std::string& assignment : assignments) Take(assignment);
  for (const ColumnInfo& column : m_table.Columns()) {
    if (column.isKey) RequireKey(column);
  }
}

void RowValues::Find(dbQuery& query) {
  query.reset();
  for (const ColumnInfo& column : m_table.Columns()) {
    if (!column.isKey) continue;
    m_conditions.push_back((m_conditions.empty() ? "" : "and ") + std::string(column.name) + " = ");
    query, m_conditions.back().c_str();
    if (column.type == ColumnType::kText) {
      query, column.In<char const*>(m_values.get());
    } else {
      query, column.In<int4>(m_values.get());
    }
  }
}

void RowValues::PutInto(void* row) const {
  for (const ColumnInfo& column : m_table.Columns()) {
    if (IsGiven(column)) std::memcpy(&column.In<char>(row), &column.In<char>(m_values.get()), column.size);
  }
}

std::string RowValues::Name() const {
  std::string name;
  for (const std::string& part : RowNames(m_table, m_values.get())) name += (name.empty() ? "" : " > ") + OneLine(part);
  return m_table.Info().name + (" " + name);
}

bool RowValues::IsGiven(const ColumnInfo& column) const {
  return std::find(m_given.begin(), m_given.end(), column.name) != m_given.end();
}

void RowValues::RequireKey(const ColumnInfo& column) const {
  const std::string name = column.name;
  if (!IsGiven(column)) throw Failure(kExitUsage, "which row is meant? " + name + "=... is missing");
  if (CellText(ColumnCell(column, m_values.get())).empty()) {
    throw Failure(kExitUsage, "column " + name + ": a row needs one");
  }
}

void RowValues::Take(const std::string& assignment) {
  const std::size_t sign = assignment.find('=');
  if (sign == std::string::npos || sign == 0) {
    throw Failure(kExitUsage, Quoted(assignment) + " is not of the form COLUMN=VALUE");
  }
  const std::string name = assignment.substr(0, sign);
  if (std::find(m_given.begin(), m_given.end(), name) != m_given.end()) {
    throw Failure(kExitUsage, "column " + name + " stands twice");
  }
  const std::span<const ColumnInfo> columns = m_table.Columns();
  const auto column =
      std::find_if(columns.begin(), columns.end(), [&name](const ColumnInfo& known) { return name == known.name; });
  const std::string wrong = column != columns.end() ? Parse(assignment.substr(sign + 1), *column)
                                                    : fmt::format("table {} has no such column{}", m_table.Info().name,
                                                                  DidYouMean(name, NamesOf(columns)));
  if (!wrong.empty()) throw Failure(kExitUsage, "column " + OneLine(name) + ": " + wrong);
  m_given.push_back(name);
}

/// A field of one byte takes the numbers of its own type, not of its wider column.
std::string RowValues::Parse(const std::string& text, const ColumnInfo& column) {
  void* const row = m_values.get();
  switch (column.type) {
    case ColumnType::kBytes:
      return ParseRange(text, &column.In<char>(row), column.size);
    case ColumnType::kText: {
      QString value;
      std::string wrong = ParseIdentity(text, value);
      column.In<char const*>(row) = m_texts.emplace_back(IdToBytes(value)).constData();
      return wrong;
    }
    case ColumnType::kInt4:
      break;
    case ColumnType::kNat4:
      return ParseInto<u32>(text, column.In<nat4>(row));
    case ColumnType::kReal4:
      return ParseInto<f32>(text, column.In<real4>(row));
    case ColumnType::kReal8:
      return ParseInto<f64>(text, column.In<real8>(row));
  }
  int4& cell = column.In<int4>(row);
  switch (m_table.Info().fields()[static_cast<std::size_t>(column.field)].type) {
    case FieldType::kI8:
      return ParseInto<i8>(text, cell);
    case FieldType::kU8:
      return ParseInto<u8>(text, cell);
    default:
      return ParseInto<i32>(text, cell);
  }
}

bool PutRow(RealtimeDatabase& database, const StoredTable& table, RowValues& values) {
  dbQuery query;
  values.Find(query);
  bool isThere = false;
  const auto check = [&](int count) {
    database.Check();
    if (count > 1) throw Failure(kExitUsage, fmt::format("{} stands {} times in the table", values.Name(), count));
    isThere = count == 1;
  };
  table.Put(database.Db(), query, check, [&values](void* row) { values.PutInto(row); });
  database.Check();
  database.Db()->commit();
  database.Check();
  return !isThere;
}

}  // namespace dtsdb::tools
