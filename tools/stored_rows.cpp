#include "tools/stored_rows.h"

namespace dtsdb::tools {

std::string ParseRange(const std::string& text, char* range, std::size_t size) {
  const QByteArray digits = QByteArray::fromStdString(text);
  const QByteArray bytes = QByteArray::fromHex(digits);
  if (bytes.size() != static_cast<qsizetype>(size) || bytes.toHex() != digits.toLower()) {
    return fmt::format("{} is not {} hexadecimal digits", Quoted(text), 2 * size);
  }
  std::copy(bytes.begin(), bytes.end(), range);
  return "";
}

}  // namespace dtsdb::tools
