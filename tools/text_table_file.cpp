#include "tools/text_table_file.h"

#include <QStringConverter>

#include "tools/failure.h"
#include "tools/files.h"
#include "tools/nearest.h"

namespace dtsdb::tools {

void RefuseText(const std::string& file, int line, const std::string& column, const std::string& what) {
  std::string place = file;
  if (line > 0) place += fmt::format(", row {}", line);
  if (!column.empty()) place += ", column " + OneLine(column);
  throw Failure(EXIT_FILE, place + ": " + what);
}

void RefuseRecord(const char* table, int row, const std::string& field, const std::string& what) {
  throw Failure(EXIT_FILE, fmt::format("table {}, record {}, field {}: {}", table, row, field, what));
}

std::string ParseIdentity(const std::string& bytes, QString& id) {
  using Flag = QStringConverter::Flag;
  QStringDecoder decoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
  const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  if (decoder.hasError()) return "the text is no valid UTF-8";
  const std::optional<QString> found = IdFromText(text);
  if (!found) return "GBK can't hold the text " + Quoted(bytes);
  id = found->isNull() ? QStringLiteral("") : *found;
  return "";
}

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

void CheckFieldCount(const std::string& file, const CsvRow& row, const std::vector<std::string>& header) {
  const std::size_t count = row.fields.size();
  if (count == header.size()) return;
  const std::string counts = fmt::format("the row has {} fields, the header {}", count, header.size());
  RefuseText(file, row.line, count < header.size() ? header[count] : fmt::format("{}", header.size() + 1), counts);
}

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

}  // namespace dtsdb::tools
