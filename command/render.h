/// \file
/// The results of a command, described once and written as text for people, as JSON or as CSV.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "formats/cell.h"

namespace dtsdb::tools {

enum class Format { kText, kJson, kCsv };

/// Rows of cells under named columns.
class Sheet {
 public:
  /// `name` is the sheet's key for programs, `title` its heading for people.
  Sheet(std::string name, std::string title, std::vector<std::string> columns);

  /// In text, the first `n` cells of a row are left blank while all of them repeat the row above.
  Sheet& GroupBy(std::size_t n);
  /// In text, column `column` is left out.
  Sheet& HideColumn(std::size_t column);
  /// In text, the columns are left out in which every row has what `defaults` has.
  Sheet& HideDefaults(const std::vector<Cell>& defaults);
  /// In text, nothing is printed of the sheet while it has no rows.
  Sheet& HideWhenEmpty();

  /// In text, the sheet is printed only when it is asked for by name.
  Sheet& HideUnlessNamed();

  /// Appends a row, a cell for each column.
  void Add(std::vector<Cell> row);

  const std::string& Name() const { return m_name; }
  const std::vector<std::string>& Columns() const { return m_columns; }
  const std::vector<std::vector<Cell>>& Rows() const { return m_rows; }

  /// True when the text of a whole report leaves the sheet out.
  bool IsHidden() const { return m_hideUnlessNamed || (m_hideWhenEmpty && m_rows.empty()); }
  std::string Text(bool colour) const;
  std::string Json() const;
  std::string Csv() const;

 private:
  struct Layout;
  bool Repeats(std::size_t row) const;
  Layout LayOut() const;

  std::string m_name;
  std::string m_title;
  std::vector<std::string> m_columns;
  std::vector<std::vector<Cell>> m_rows;
  std::size_t m_groupBy = 0;
  std::vector<bool> m_hidden;
  bool m_hideWhenEmpty = false;
  bool m_hideUnlessNamed = false;
};

/// All that a command has to print: facts, lines and sheets, in the order in which they were added.
class Report {
 public:
  /// A property of the JSON object.
  void Fact(const std::string& name, Cell value);
  /// A line of the text for people, shown as OneLine does.
  void Line(const std::string& line);
  /// A sheet, for all formats; the reference holds for the life of the report.
  Sheet& Add(Sheet sheet);

  /// Everything in `format`, or only the sheet named `sheet`; an unknown name is a Failure of usage that lists the
  /// sheets. CSV holds one sheet: the first, when none is named.
  std::string Render(Format format, bool colour = false, const std::string& sheet = "") const;

 private:
  std::string Text(bool colour) const;
  std::string Json(const std::vector<const Sheet*>& sheets) const;
  const Sheet& Named(const std::string& name) const;

  struct Part {
    std::string line;
    const Sheet* sheet = nullptr;  // or a line
  };
  std::deque<Sheet> m_sheets;
  std::vector<Part> m_parts;
  std::vector<std::pair<std::string, Cell>> m_facts;
};

/// Writes a command's result on the standard output: text in the terminal's encoding, the other formats in UTF-8.
/// A Failure when it can't be written.
void WriteResult(Format format, const std::string& utf8);
/// Writes what another program reads on the standard output, in UTF-8 whatever the terminal's encoding. A Failure when
/// it can't be written.
void WriteUtf8(const std::string& utf8);

/// Renders `report` and writes it, in colour where a terminal shows it and NO_COLOR doesn't forbid it.
void WriteReport(const Report& report, Format format, const std::string& sheet = "");

}  // namespace dtsdb::tools
