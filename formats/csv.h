/// \file
/// Rows of comma-separated values after RFC 4180.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dtsdb::tools {

/// A field's bytes; nothing for an empty field without quotes, which stands for a value that was left out.
using CsvField = std::optional<std::string>;

struct CsvRow {
  int line = 0;  ///< number of the line on which the row begins, from 1
  std::vector<CsvField> fields;
};

/// A place where the text is no RFC 4180.
class CsvError : public std::runtime_error {
 public:
  CsvError(int line, std::size_t field, const char* what) : std::runtime_error(what), m_line(line), m_field(field) {}
  int Line() const { return m_line; }            ///< line on which the row begins, from 1
  std::size_t Field() const { return m_field; }  ///< number of the field in its row, from 0

 private:
  int m_line;
  std::size_t m_field;
};

/// Calls `visit` with every row of `bytes`. Lines may end in CR LF, LF or CR; blank lines are passed over, blanks
/// are part of their field. Throws CsvError, after the rows in front of the faulty one.
void ReadCsv(std::string_view bytes, const std::function<void(const CsvRow&)>& visit);

/// The same for a damaged text: `fault` gets what is wrong with a row, and reading goes on with the line behind the one
/// on which that row begins. A row of more than 64 lines counts as one whose closing quote is missing.
void SalvageCsv(std::string_view bytes, const std::function<void(const CsvRow&)>& visit,
                const std::function<void(const CsvError&)>& fault);

/// `text` as it is written where spreadsheets may read it, which take what begins with = + - @, a tabulator or a
/// carriage return for a formula: such a text, with any number of apostrophes in front, gets one more.
std::string GuardedText(const std::string& text);
/// The text that was guarded so.
std::string UnguardedText(const std::string& text);

/// Appends `field` to the row that ends `out`, in quotes where its bytes need them. An empty text gets quotes, so
/// that it can be distinguished from a field left out.
void AppendCsvField(std::string& out, const CsvField& field, bool first);

}  // namespace dtsdb::tools
