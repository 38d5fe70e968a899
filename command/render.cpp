#include "command/render.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <QString>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include "formats/csv.h"
#include "formats/failure.h"
#include "formats/json_text.h"
#include "formats/text_layout.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

constexpr int kGap = 2;       // blanks between columns
constexpr int kWidest = 200;  // a wider cell doesn't widen its column: a single one would fill each row with blanks

// The words that stand out on a terminal.
constexpr struct {
  const char* word;
  const char* sequence;
} kColours[] = {{"error", "\033[31m"}, {"warning", "\033[33m"}};
constexpr const char* kBold = "\033[1m";
constexpr const char* kPlain = "\033[0m";

CsvField CsvCell(const Cell& cell) {
  if (std::holds_alternative<std::monostate>(cell)) return std::nullopt;
  return std::holds_alternative<std::string>(cell) ? GuardedText(CellText(cell)) : CellText(cell);
}

std::string TextCell(const Cell& cell) {
  if (const auto* yes = std::get_if<bool>(&cell)) return *yes ? "yes" : "no";
  return OneLine(CellText(cell));
}

std::string Coloured(const std::string& text, bool colour) {
  if (!colour) return text;
  for (const auto& entry : kColours) {
    if (text.starts_with(entry.word)) return entry.sequence + text + kPlain;
  }
  return text;
}

std::string Bold(const std::string& text, bool colour) { return colour ? kBold + text + kPlain : text; }

/// A column's key as a heading.
std::string Heading(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  return name;
}

void EndLine(std::string& text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  text += '\n';
}

bool TerminalShowsColour() {
  const char* const forbidden = std::getenv("NO_COLOR");
  if (forbidden != nullptr && *forbidden != '\0') return false;
  const char* const terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

}  // namespace

/// How a sheet stands in text: the texts of its cells, and for each column its width and whether it holds numbers.
struct Sheet::Layout {
  std::vector<std::vector<std::string>> texts;
  std::vector<int> widths;
  std::vector<bool> toRight;
};

Sheet::Sheet(std::string name, std::string title, std::vector<std::string> columns)
    : m_name(std::move(name)),
      m_title(std::move(title)),
      m_columns(std::move(columns)),
      m_hidden(m_columns.size(), false) {}

Sheet& Sheet::GroupBy(std::size_t n) {
  m_groupBy = n;
  return *this;
}

Sheet& Sheet::HideColumn(std::size_t column) {
  m_hidden[column] = true;
  return *this;
}

Sheet& Sheet::HideDefaults(const std::vector<Cell>& defaults) {
  for (std::size_t column = 0; column < m_columns.size(); ++column) {
    const std::string text = CellText(defaults[column]);
    const auto isDefault = [&](const auto& row) { return CellText(row[column]) == text; };
    if (std::all_of(m_rows.begin(), m_rows.end(), isDefault)) HideColumn(column);
  }
  return *this;
}

Sheet& Sheet::HideWhenEmpty() {
  m_hideWhenEmpty = true;
  return *this;
}

Sheet& Sheet::HideUnlessNamed() {
  m_hideUnlessNamed = true;
  return *this;
}

void Sheet::Add(std::vector<Cell> row) {
  row.resize(m_columns.size());
  m_rows.push_back(std::move(row));
}

bool Sheet::Repeats(std::size_t row) const {
  if (row == 0) return false;
  for (std::size_t i = 0; i < m_groupBy; ++i) {
    if (CsvCell(m_rows[row][i]) != CsvCell(m_rows[row - 1][i])) return false;
  }
  return true;
}

Sheet::Layout Sheet::LayOut() const {
  Layout layout;
  layout.widths.assign(m_columns.size(), 0);
  layout.toRight.assign(m_columns.size(), false);
  for (const auto& row : m_rows) {
    auto& texts = layout.texts.emplace_back();
    for (std::size_t i = 0; i < row.size(); ++i) {
      texts.push_back(TextCell(row[i]));
      layout.widths[i] = std::max(layout.widths[i], std::min(kWidest, DisplayWidth(texts.back())));
      if (std::holds_alternative<Number>(row[i])) layout.toRight[i] = true;
    }
  }
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    layout.widths[i] = std::max(layout.widths[i], DisplayWidth(Heading(m_columns[i])));
  }
  return layout;
}

std::string Sheet::Text(bool colour) const {
  if (m_rows.empty()) return m_title.empty() ? "" : m_title + ": none\n";
  std::string text = m_title.empty() ? "" : Bold(m_title, colour) + "\n";
  const Layout layout = LayOut();
  const std::string gap(kGap, ' ');
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (!m_hidden[i]) text += Padded(Heading(m_columns[i]), layout.widths[i], layout.toRight[i]) + gap;
  }
  EndLine(text);
  for (std::size_t row = 0; row < m_rows.size(); ++row) {
    const bool repeats = m_groupBy > 0 && Repeats(row);
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (m_hidden[i]) continue;
      const std::string shown = repeats && i < m_groupBy ? "" : layout.texts[row][i];
      text += Coloured(Padded(shown, layout.widths[i], layout.toRight[i]), colour) + gap;
    }
    EndLine(text);
  }
  return text;
}

std::string Sheet::Json() const {
  std::string text = "[";
  std::vector<std::string> keys;
  for (const std::string& column : m_columns) keys.push_back(JsonText(column) + ": ");
  for (const auto& row : m_rows) {
    text += text.size() == 1 ? "\n    {" : ",\n    {";
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text += ", ";
      text += keys[i];
      text += JsonCell(row[i]);
    }
    text += '}';
  }
  return text + (m_rows.empty() ? "]" : "\n  ]");
}

std::string Sheet::Csv() const {
  std::string text;
  for (std::size_t i = 0; i < m_columns.size(); ++i) AppendCsvField(text, m_columns[i], i == 0);
  text += "\r\n";
  for (const auto& row : m_rows) {
    for (std::size_t i = 0; i < row.size(); ++i) AppendCsvField(text, CsvCell(row[i]), i == 0);
    text += "\r\n";
  }
  return text;
}

void Report::Fact(const std::string& name, Cell value) { m_facts.emplace_back(name, std::move(value)); }

void Report::Line(const std::string& line) { m_parts.push_back({line, nullptr}); }

Sheet& Report::Add(Sheet sheet) {
  m_sheets.push_back(std::move(sheet));
  m_parts.push_back({"", &m_sheets.back()});
  return m_sheets.back();
}

const Sheet& Report::Named(const std::string& name) const {
  std::vector<std::string> names;
  for (const Sheet& sheet : m_sheets) {
    if (sheet.Name() == name) return sheet;
    names.push_back(sheet.Name());
  }
  throw Failure(kExitUsage,
                fmt::format("there is no sheet {} in this result; it has {}", Quoted(name), fmt::join(names, ", ")));
}

std::string Report::Text(bool colour) const {
  std::string text;
  for (const Part& part : m_parts) {
    if (part.sheet != nullptr && part.sheet->IsHidden()) continue;
    if (!text.empty() && part.sheet != nullptr) text += '\n';
    text += part.sheet != nullptr ? part.sheet->Text(colour) : OneLine(part.line) + "\n";
  }
  return text;
}

std::string Report::Json(const std::vector<const Sheet*>& sheets) const {
  std::string text;
  for (const auto& [name, value] : m_facts) text += ",\n  " + JsonText(name) + ": " + JsonCell(value);
  for (const Sheet* sheet : sheets) text += ",\n  " + JsonText(sheet->Name()) + ": " + sheet->Json();
  return "{" + text.substr(text.empty() ? 0 : 1) + "\n}\n";
}

std::string Report::Render(Format format, bool colour, const std::string& sheet) const {
  const Sheet* const chosen = sheet.empty() ? nullptr : &Named(sheet);
  switch (format) {
    case Format::kJson: {
      std::vector<const Sheet*> sheets;
      for (const Sheet& each : m_sheets) {
        if (chosen == nullptr || chosen == &each) sheets.push_back(&each);
      }
      return Json(sheets);
    }
    case Format::kCsv:
      if (chosen != nullptr) return chosen->Csv();
      return m_sheets.empty() ? "" : m_sheets.front().Csv();
    case Format::kText:
      break;
  }
  return chosen != nullptr ? chosen->Text(colour) : Text(colour);
}

void WriteUtf8(const std::string& utf8) {
  if (std::fwrite(utf8.data(), 1, utf8.size(), stdout) != utf8.size() || std::fflush(stdout) != 0) {
    throw Failure(kExitFile, fmt::format("standard output: {}", std::strerror(errno)));
  }
}

void WriteResult(Format format, const std::string& utf8) {
  WriteUtf8(format == Format::kText ? TerminalBytes(QString::fromStdString(utf8)).toStdString() : utf8);
}

void WriteReport(const Report& report, Format format, const std::string& sheet) {
  WriteResult(format, report.Render(format, format == Format::kText && TerminalShowsColour(), sheet));
}

}  // namespace dtsdb::tools
