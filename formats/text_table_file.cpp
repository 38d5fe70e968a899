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

/// Ends the reading of the file `file`.
[[noreturn]] void RefuseText(const std::string& file, const TextFault& fault) {
  std::string place = file;
  if (fault.line > 0) place += fmt::format(", row {}", fault.line);
  if (!fault.column.empty()) place += ", column " + OneLine(fault.column);
  throw Failure(kExitFile, place + ": " + fault.what);
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
      return ParseIdentity(UnguardedText(*text), value);
    } else {
      return text->empty() ? "" : ParseNumber(*text, value);
    }
  });
}

/// The places of those of `n` records that are equal to one in front of them, each behind that one's, in the order of
/// the second; `isLess(i, k)` compares two.
template <class IsLess>
std::vector<std::pair<std::size_t, std::size_t>> Duplicates(std::size_t n, const IsLess& isLess) {
  bool ascending = true;
  for (std::size_t i = 1; i < n && ascending; ++i) ascending = isLess(i - 1, i);
  std::vector<std::pair<std::size_t, std::size_t>> found;
  if (ascending) return found;
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), isLess);
  for (std::size_t i = 1; i < n; ++i) {
    if (!isLess(order[i - 1], order[i])) found.emplace_back(order[i - 1], order[i]);
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  return found;
}

/// Reads the rows of a text table. Reports what is wrong; if that returns, it goes on without the row.
class TextTableReader {
 public:
  TextTableReader(const AnyTable& table, const OnTextFault& fault)
      : m_table(table),
        m_fields(table.Info().fields()),
        m_known(NamesOf(m_fields)),
        m_records(table.MakeRecords()),
        m_fault(fault) {}

  void Take(const CsvRow& row) {
    if (m_header.empty()) return TakeHeader(row);
    if (row.fields.size() != m_header.size()) return RefuseCount(row);
    void* const record = m_records->Add();
    m_lines.push_back(row.line);
    m_good.push_back(m_hasKey);
    for (std::size_t i = 0; i < m_header.size(); ++i) {
      if (!m_columns[i]) continue;
      const std::string wrong = ParseField(row.fields[i], m_fields[*m_columns[i]], record);
      if (wrong.empty()) continue;
      m_good.back() = false;
      m_fault({row.line, m_header[i], wrong, KeyOf(row)});
    }
  }

  void Refuse(const CsvError& error) {
    const std::size_t field = error.Field();
    ++m_lost;
    m_fault({error.Line(), field < m_header.size() ? m_header[field] : fmt::format("{}", field + 1), error.what()});
  }

  /// Fills the table. Returns the number of rows left out, nothing where it can't be known.
  std::optional<long long> Finish() {
    if (m_header.empty()) {
      m_fault({0, "", "the header with the names of the columns is missing"});
      return std::nullopt;
    }
    RefuseDuplicates();
    const auto bad = std::count(m_good.begin(), m_good.end(), false);
    if (bad > 0) DropBad();
    m_table.SetData(*m_records);
    return m_lost + bad;
  }

 private:
  /// Finds the columns that a header names.
  void TakeHeader(const CsvRow& row) {
    if (row.fields.size() > 4 * m_known.size()) return RefuseHeader(row);
    for (std::size_t i = 0; i < row.fields.size(); ++i) m_header.push_back(row.fields[i].value_or(""));
    m_columns.resize(m_header.size());
    bool isWhole = true;
    for (std::size_t i = 0; i < m_header.size(); ++i) {
      const std::string wrong = FindColumn(row.fields[i], i);
      if (wrong.empty()) continue;
      isWhole = false;
      m_fault({row.line, row.fields[i] ? m_header[i] : "", wrong});
    }
    if (isWhole) return;
    GuessColumns();
    const auto keys = static_cast<std::size_t>(m_table.Info().KeyFields().size());
    for (std::size_t key = 0; key < keys; ++key) m_hasKey = m_hasKey && IsTaken(key);
    if (!m_hasKey) m_fault({row.line, m_known[0], "without the column of the key no row can be saved"});
  }

  /// A row of nothing but separators isn't looked through name by name.
  void RefuseHeader(const CsvRow& row) {
    m_header.assign(row.fields.size(), "");
    m_columns.resize(m_header.size());
    m_hasKey = false;
    m_fault({row.line, "",
             fmt::format("the header has {} columns, the table {} fields", row.fields.size(), m_known.size())});
  }

  std::string FindColumn(const CsvField& name, std::size_t i) {
    if (!name) return fmt::format("column {} has no name", i + 1);
    const auto found = std::find(m_known.begin(), m_known.end(), *name);
    if (found == m_known.end()) return "the table has no such field" + DidYouMean(*name, m_known);
    const auto column = static_cast<std::size_t>(found - m_known.begin());
    if (IsTaken(column)) return "the column stands twice in the header";
    m_columns[i] = column;
    return "";
  }

  bool IsTaken(std::size_t column) const {
    return std::find(m_columns.begin(), m_columns.end(), column) != m_columns.end();
  }

  /// In a file with all fields a damaged name is known by its place: they are written in their order.
  void GuessColumns() {
    if (m_columns.size() != m_known.size()) return;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (m_columns[i] && *m_columns[i] != i) return;
    }
    for (std::size_t i = 0; i < m_columns.size(); ++i) m_columns[i] = i;
  }

  void RefuseCount(const CsvRow& row) {
    const std::size_t count = row.fields.size();
    ++m_lost;
    m_fault({row.line, count < m_header.size() ? m_header[count] : fmt::format("{}", m_header.size() + 1),
             fmt::format("the row has {} fields, the header {}", count, m_header.size()), KeyOf(row)});
  }

  void RefuseDuplicates() {
    const NewRecords& read = *m_records;
    const auto isLess = [&](std::size_t a, std::size_t b) { return m_table.IsLess(read[a], read[b]); };
    for (const auto& [first, second] : Duplicates(read.Count(), isLess)) {
      if (!m_good[first] || !m_good[second]) continue;
      const std::string key = KeyText(m_table.Info(), read[second]);
      m_good[second] = false;
      m_fault({m_lines[second], KeyName(m_table.Info()),
               fmt::format("{} stands already in row {}", Quoted(key), m_lines[first]), key});
    }
  }

  void DropBad() {
    std::unique_ptr<NewRecords> kept = m_table.MakeRecords();
    for (std::size_t i = 0; i < m_good.size(); ++i) {
      if (!m_good[i]) continue;
      void* const record = kept->Add();
      for (const FieldInfo& field : m_fields) {
        VisitValue(field, (*m_records)[i], [&]<class V>(const V& value) { field.In<V>(record) = value; });
      }
    }
    m_records = std::move(kept);
  }

  /// The key of a row as it is written, for a message.
  std::string KeyOf(const CsvRow& row) const {
    for (std::size_t i = 0; i < std::min(row.fields.size(), m_columns.size()); ++i) {
      if (m_columns[i] == std::size_t{0}) return UnguardedText(row.fields[i].value_or(""));
    }
    return "";
  }

  const AnyTable& m_table;
  std::span<const FieldInfo> m_fields;
  std::vector<std::string> m_known;
  std::unique_ptr<NewRecords> m_records;
  const OnTextFault& m_fault;
  std::vector<std::string> m_header;
  std::vector<std::optional<std::size_t>> m_columns;  // places in m_fields, in the order of the header
  std::vector<int> m_lines;                           // of the records
  std::vector<bool> m_good;
  bool m_hasKey = true;
  long long m_lost = 0;  // rows without a record
};

/// A field's value as it is written: nothing for a null text. False when its bytes are not valid.
bool WriteField(const FieldInfo& field, const void* record, CsvField& text) {
  text.reset();
  return VisitValue(field, record, [&text]<class V>(const V& value) {
    if constexpr (std::is_same_v<V, QString>) {
      if (value.isNull()) return true;
      const std::optional<QString> real = ExactTextFromId(value);
      if (!real) return false;
      text = GuardedText(real->toStdString());
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
  const OnTextFault refuse = [&file](const TextFault& fault) { RefuseText(file, fault); };
  TextTableReader reader(table, refuse);
  try {
    ReadCsv(WithoutByteOrderMark(bytes), [&reader](const CsvRow& row) { reader.Take(row); });
  } catch (const CsvError& error) {
    reader.Refuse(error);
  }
  reader.Finish();
}

std::optional<long long> SalvageTextTable(std::string_view bytes, const AnyTable& table, const OnTextFault& fault) {
  TextTableReader reader(table, fault);
  SalvageCsv(
      WithoutByteOrderMark(bytes), [&reader](const CsvRow& row) { reader.Take(row); },
      [&reader](const CsvError& error) { reader.Refuse(error); });
  return reader.Finish();
}

std::string TextTable(const AnyTable& table) {
  const TableInfo& info = table.Info();
  const auto twice = Duplicates(static_cast<std::size_t>(table.GetCount()), [&](std::size_t a, std::size_t b) {
    return table.IsLess(table[static_cast<int>(a)], table[static_cast<int>(b)]);
  });
  if (!twice.empty()) {
    const int row = static_cast<int>(twice.front().second);
    RefuseRecord(info.name, row, KeyName(info), Quoted(KeyText(info, table[row])) + " stands twice in the table");
  }
  std::string text;
  WriteHeader(info.fields(), text);
  for (int row = 0; row < table.GetCount(); ++row) WriteRow(info, table[row], row, text);
  return text;
}

}  // namespace dtsdb::tools
