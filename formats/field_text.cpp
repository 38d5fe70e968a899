#include "formats/field_text.h"

namespace dtsdb::tools {

std::string UserText(const std::string& bytes) {
  const QByteArray written = QByteArray::fromStdString(bytes);
  if (ExactTextFromBytes(written, IdEncoding::kUtf8)) return bytes;
  return TextFromBytes(written, IdEncoding::kGbk).toStdString();
}

Cell FieldCell(const FieldInfo& field, const void* record) {
  return VisitValue(field, record, [](const auto& value) { return FieldCell(value); });
}

std::string FieldText(const FieldInfo& field, const void* record) { return CellText(FieldCell(field, record)); }

std::vector<Cell> FieldCells(std::span<const FieldInfo> fields, const void* record) {
  std::vector<Cell> cells;
  cells.reserve(fields.size());
  for (const FieldInfo& field : fields) cells.push_back(FieldCell(field, record));
  return cells;
}

std::vector<std::string> KeyTexts(const TableInfo& table, const void* record) {
  std::vector<std::string> texts;
  for (const FieldInfo& field : table.KeyFields()) texts.push_back(FieldText(field, record));
  return texts;
}

std::string KeyText(const TableInfo& table, const void* record) {
  return fmt::format("{}", fmt::join(KeyTexts(table, record), " > "));
}

}  // namespace dtsdb::tools
