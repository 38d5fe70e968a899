#include "formats/text_table_file.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "formats/csv.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/nearest.h"

namespace dtsdb::tools {
namespace {

/// Ends the reading of the file `file`: `what` is wrong in row `line` (0: in the file as a whole), column `column`
/// (empty: in the row as a whole).
[[noreturn]] void RefuseText(const std::string& file, int line, const std::string& column, const std::string& what) {
  std::string place = file;
  if (line > 0) place += fmt::format(", row {}", line);
  if (!column.empty()) place += ", column " + OneLine(column);
  throw Failure(kExitFile, place + ": " + what);
}

/// Ends the writing of table `table`: `what` is wrong in its record `row`, counted from 0 in key order.
[[noreturn]] void RefuseRecord(const char* table, int row, const std::string& field, const std::string& what) {
  throw Failure(kExitFile, fmt::format("table {}, record {}, field {}: {}", table, row, field, what));
}

}  // namespace

std::string ParseIdentity(const std::string& bytes, QString& id) {
  const std::optional<QString> text = ExactTextFromBytes(
      QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())), IdEncoding::kUtf8);
  if (!text) return "the text is no valid UTF-8";
  const std::optional<QString> found = IdFromText(*text);
  if (!found) return fmt::format("{} can't hold the text {}", NameOf(CurrentIdEncoding()), Quoted(bytes));
  id = found->isNull() ? QStringLiteral("") : *found;
  return "";
}

namespace {

/// The name of the field that stands for a record's key in a message.
std::string KeyName(const TableInfo& table) { return table.KeyFields().front().name; }

/// Reads the value of `field` into `record`; nothing and, for a number, an empty text leave the default. Gives an empty
/// text, or what is wrong.
std::string ParseField(const CsvField& text, const FieldInfo& field, void* record) {
  if (!text) return "";
  return VisitValue(field, record, [&text]<class V>(V& value) -> std::string {
    if constexpr (std::is_same_v<V, QString>) {
      return ParseIdentity(*text, value);
    } else {
      return text->empty() ? "" : ParseNumber(*text, value);
    }
  });
}

/// The places of the two equal among `n` records, `isLess(i, k)` comparing two, of which the second comes first;
/// nothing when no two are equal.
template <class IsLess>
std::optional<std::pair<std::size_t, std::size_t>> FirstDuplicate(std::size_t n, const IsLess& isLess) {
  bool ascending = true;
  for (std::size_t i = 1; i < n && ascending; ++i) ascending = isLess(i - 1, i);
  if (ascending) return std::nullopt;
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), isLess);
  std::optional<std::pair<std::size_t, std::size_t>> found;
  for (std::size_t i = 1; i < n; ++i) {
    if (isLess(order[i - 1], order[i])) continue;
    if (!found || order[i] < found->second) found.emplace(order[i - 1], order[i]);
  }
  return found;
}

/// Finds the columns that a header names, in its order: places in `known`.
std::vector<std::size_t> ReadHeader(const std::string& file, const CsvRow& header,
                                    const std::vector<std::string>& known) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < header.fields.size(); ++i) {
    if (!header.fields[i]) RefuseText(file, header.line, "", fmt::format("column {} has no name", i + 1));
    const std::string& name = *header.fields[i];
    const auto found = std::find(known.begin(), known.end(), name);
    if (found == known.end()) {
      RefuseText(file, header.line, name, "the table has no such field" + DidYouMean(name, known));
    }
    columns.push_back(static_cast<std::size_t>(found - known.begin()));
    if (std::count(columns.begin(), columns.end(), columns.back()) > 1) {
      RefuseText(file, header.line, name, "the column stands twice in the header");
    }
  }
  return columns;
}

/// Refuses a row that has more or fewer fields than the header.
void CheckFieldCount(const std::string& file, const CsvRow& row, const std::vector<std::string>& header) {
  const std::size_t count = row.fields.size();
  if (count == header.size()) return;
  const std::string counts = fmt::format("the row has {} fields, the header {}", count, header.size());
  RefuseText(file, row.line, count < header.size() ? header[count] : fmt::format("{}", header.size() + 1), counts);
}

/// Calls `visit` with the rows of `bytes`. An error in the CSV itself is reported with the column of `header`, which
/// `visit` may fill.
void ReadRows(const std::string& file, std::string_view bytes, const std::vector<std::string>& header,
              const std::function<void(const CsvRow&)>& visit) {
  bytes = WithoutByteOrderMark(bytes);
  try {
    ReadCsv(bytes, visit);
  } catch (const CsvError& error) {
    const std::size_t field = error.Field();
    RefuseText(file, error.Line(), field < header.size() ? header[field] : fmt::format("{}", field + 1), error.what());
  }
}

/// A field's value as it is written: nothing for a null text. False when its bytes are not valid.
bool WriteField(const FieldInfo& field, const void* record, CsvField& text) {
  text.reset();
  return VisitValue(field, record, [&text]<class V>(const V& value) {
    if constexpr (std::is_same_v<V, QString>) {
      if (value.isNull()) return true;
      const std::optional<QString> real = ExactTextFromId(value);
      if (!real) return false;
      text = real->toStdString();
    } else {
      text = NumberText(value);
    }
    return true;
  });
}

void WriteHeader(std::span<const FieldInfo> fields, std::string& text) {
  for (const FieldInfo& field : fields) AppendCsvField(text, field.name, &field == fields.data());
  text += "\r\n";
}

void WriteRow(const TableInfo& table, const void* record, int row, std::string& text) {
  const std::span<const FieldInfo> fields = table.fields();
  CsvField written;
  for (const FieldInfo& field : fields) {
    if (!WriteField(field, record, written)) {
      RefuseRecord(table.name, row, field.name,
                   fmt::format("the bytes of the text are no valid {}", NameOf(CurrentIdEncoding())));
    }
    AppendCsvField(text, written, &field == fields.data());
  }
  text += "\r\n";
}

}  // namespace

void ReadTextTable(const std::string& file, std::string_view bytes, const AnyTable& table) {
  const TableInfo& info = table.Info();
  const std::span<const FieldInfo> fields = info.fields();
  const std::vector<std::string> known = NamesOf(fields);
  std::vector<std::size_t> columns;  // places in `fields`, in the order of the header
  std::vector<std::string> header;
  const std::unique_ptr<NewRecords> records = table.MakeRecords();
  std::vector<int> lines;
  ReadRows(file, bytes, header, [&](const CsvRow& row) {
    if (columns.empty()) {
      columns = ReadHeader(file, row, known);
      for (const std::size_t column : columns) header.push_back(known[column]);
      return;
    }
    CheckFieldCount(file, row, header);
    void* const record = records->Add();
    lines.push_back(row.line);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::string wrong = ParseField(row.fields[i], fields[columns[i]], record);
      if (!wrong.empty()) RefuseText(file, row.line, header[i], wrong);
    }
  });
  if (columns.empty()) RefuseText(file, 0, "", "the header with the names of the columns is missing");

  const NewRecords& read = *records;
  const auto twice =
      FirstDuplicate(read.Count(), [&](std::size_t a, std::size_t b) { return table.IsLess(read[a], read[b]); });
  if (twice) {
    RefuseText(
        file, lines[twice->second], KeyName(info),
        fmt::format("{} stands already in row {}", Quoted(KeyText(info, read[twice->second])), lines[twice->first]));
  }
  table.SetData(*records);
}

std::string TextTable(const AnyTable& table) {
  const TableInfo& info = table.Info();
  const auto twice = FirstDuplicate(static_cast<std::size_t>(table.GetCount()), [&](std::size_t a, std::size_t b) {
    return table.IsLess(table[static_cast<int>(a)], table[static_cast<int>(b)]);
  });
  if (twice) {
    const int row = static_cast<int>(twice->second);
    RefuseRecord(info.name, row, KeyName(info), Quoted(KeyText(info, table[row])) + " stands twice in the table");
  }
  std::string text;
  WriteHeader(info.fields(), text);
  for (int row = 0; row < table.GetCount(); ++row) WriteRow(info, table[row], row, text);
  return text;
}

}  // namespace dtsdb::tools
