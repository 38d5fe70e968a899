#include "formats/csv.h"

#include <csv.h>

#include <algorithm>
#include <memory>
#include <new>

namespace dtsdb::tools {
namespace {

/// The parser of libcsv with the row that it is building. Its callbacks only collect: no exception may pass
/// through the C library.
class Parser {
 public:
  /// `line` is the number of the first line that it gets.
  explicit Parser(int line = 1) : m_line(line) {
    if (csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL) != 0) throw std::bad_alloc();
    csv_set_space_func(&m_parser, [](unsigned char) { return 0; });  // blanks are part of the field
  }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;
  ~Parser() { csv_free(&m_parser); }

  /// Takes the next line, its end included. True when that ended a row.
  bool Feed(std::string_view line) {
    if (m_complete && line.find_first_not_of("\r\n") == std::string_view::npos) {  // a blank line
      ++m_line;
      return false;
    }
    StartRow();
    if (csv_parse(&m_parser, line.data(), line.size(), &OnField, &OnRow, this) != line.size()) {
      Refuse("a quote stands inside a field that isn't quoted, or something behind the closing quote");
    }
    ++m_line;
    return m_complete;
  }

  /// Ends the last row. True when there was one.
  bool Finish() {
    StartRow();
    if (csv_fini(&m_parser, &OnField, &OnRow, this) != 0) Refuse("the closing quote is missing");
    return m_complete;
  }

  const CsvRow& Row() const { return m_row; }
  /// True between rows.
  bool IsComplete() const { return m_complete; }
  int LineOfRow() const { return m_row.line; }

 private:
  void StartRow() {
    if (!m_complete) return;
    m_row.line = m_line;
    m_row.fields.clear();
    m_complete = false;
  }

  [[noreturn]] void Refuse(const char* what) {
    if (csv_error(&m_parser) == CSV_ENOMEM) throw std::bad_alloc();
    throw CsvError(m_row.line, m_row.fields.size(), what);
  }

  static void OnField(void* bytes, std::size_t size, void* self) {
    auto& fields = static_cast<Parser*>(self)->m_row.fields;
    if (bytes == nullptr) {
      fields.emplace_back();
    } else {
      fields.emplace_back(std::string(static_cast<const char*>(bytes), size));
    }
  }

  static void OnRow(int, void* self) { static_cast<Parser*>(self)->m_complete = true; }

  csv_parser m_parser{};
  CsvRow m_row;
  int m_line;
  bool m_complete = true;  // m_row has been handed out
};

/// Length of the line at the front of `bytes`, its end included.
std::size_t LineLength(std::string_view bytes) {
  const std::size_t end = bytes.find_first_of("\r\n");
  if (end == std::string_view::npos) return bytes.size();
  return bytes.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
}

constexpr char kGuard = '\'';

/// Whether a spreadsheet would take `text` for a formula but for the guards in front.
bool IsFormula(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kGuard);
  return begin != std::string_view::npos && std::string_view("=+-@\t\r").find(text[begin]) != std::string_view::npos;
}

}  // namespace

std::string GuardedText(const std::string& text) { return IsFormula(text) ? kGuard + text : text; }

std::string UnguardedText(const std::string& text) {
  return text.starts_with(kGuard) && IsFormula(text) ? text.substr(1) : text;
}

void ReadCsv(std::string_view bytes, const std::function<void(const CsvRow&)>& visit) {
  Parser parser;
  while (!bytes.empty()) {
    const std::size_t length = LineLength(bytes);
    if (parser.Feed(bytes.substr(0, length))) visit(parser.Row());
    bytes.remove_prefix(length);
  }
  if (parser.Finish()) visit(parser.Row());
}

void SalvageCsv(std::string_view bytes, const std::function<void(const CsvRow&)>& visit,
                const std::function<void(const CsvError&)>& fault) {
  constexpr int kMostLines = 64;
  constexpr const char* kOpen = "the closing quote is missing";
  auto parser = std::make_unique<Parser>();
  std::string_view behind;  // the line on which the row began
  int lines = 0;
  const auto resume = [&](const CsvError& error) {
    fault(error);
    bytes = behind;
    parser = std::make_unique<Parser>(error.Line() + 1);
  };
  while (!bytes.empty() || !parser->IsComplete()) {
    if (bytes.empty() || (!parser->IsComplete() && lines == kMostLines)) {
      try {
        if (!bytes.empty()) throw CsvError(parser->LineOfRow(), parser->Row().fields.size(), kOpen);
        if (parser->Finish()) visit(parser->Row());
        return;
      } catch (const CsvError& error) {
        resume(error);
      }
      continue;
    }
    const std::string_view line = bytes.substr(0, LineLength(bytes));
    bytes.remove_prefix(line.size());
    if (parser->IsComplete()) {
      behind = bytes;
      lines = 0;
    }
    ++lines;
    try {
      if (parser->Feed(line)) visit(parser->Row());
    } catch (const CsvError& error) {
      resume(error);
    }
  }
}

void AppendCsvField(std::string& out, const CsvField& field, bool first) {
  if (!first) out += ',';
  if (!field) return;
  if (!field->empty() && field->find_first_of(",\"\r\n") == std::string::npos) {
    out += *field;
    return;
  }
  out += '"';
  for (const char c : *field) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

}  // namespace dtsdb::tools
