#include <algorithm>

#include "model/exchange.h"

namespace dtsdb {

char const* RowTexts::Keep(const QString& text) {
  const QByteArray& bytes = m_texts.emplace_back(IdToBytes(text));
  if (bytes.contains('\0')) {
    qWarning("a text of the table %s is cut off at its zero byte: \"%s\"", m_table, bytes.constData());
  }
  return bytes.constData();
}

void LoadField(void* record, const void* row, std::span<const FieldInfo> fields, const ColumnInfo& column) {
  const FieldInfo& field = fields[static_cast<std::size_t>(column.field)];
  switch (field.type) {
    case FieldType::kText:
      field.In<QString>(record) = IdFromBytes(column.In<char const*>(row));
      break;
    case FieldType::kI8:
      field.In<i8>(record) = static_cast<i8>(column.In<int4>(row));
      break;
    case FieldType::kU8:
      field.In<u8>(record) = static_cast<u8>(column.In<int4>(row));
      break;
    case FieldType::kI32:
      field.In<i32>(record) = column.In<int4>(row);
      break;
    case FieldType::kU32:
      field.In<u32>(record) = column.In<nat4>(row);
      break;
    case FieldType::kF32:
      field.In<f32>(record) = column.In<real4>(row);
      break;
    case FieldType::kF64:
      field.In<f64>(record) = column.In<real8>(row);
      break;
  }
}

void StoreField(const void* record, void* row, std::span<const FieldInfo> fields, const ColumnInfo& column,
                RowTexts& texts) {
  const FieldInfo& field = fields[static_cast<std::size_t>(column.field)];
  switch (field.type) {
    case FieldType::kText:
      column.In<char const*>(row) = texts.Keep(field.In<QString>(record));
      break;
    case FieldType::kI8:
      column.In<int4>(row) = field.In<i8>(record);  // NOLINT(bugprone-signed-char-misuse): it is meant to be extended
      break;
    case FieldType::kU8:
      column.In<int4>(row) = field.In<u8>(record);
      break;
    case FieldType::kI32:
      column.In<int4>(row) = field.In<i32>(record);
      break;
    case FieldType::kU32:
      column.In<nat4>(row) = field.In<u32>(record);
      break;
    case FieldType::kF32:
      column.In<real4>(row) = field.In<f32>(record);
      break;
    case FieldType::kF64:
      column.In<real8>(row) = field.In<f64>(record);
      break;
  }
}

void LoadFields(void* record, std::span<const FieldInfo> fields, const void* row, std::span<const ColumnInfo> columns) {
  for (const ColumnInfo& column : columns) {
    if (column.field != ColumnInfo::kNoField) LoadField(record, row, fields, column);
  }
}

void StoreFields(const void* record, std::span<const FieldInfo> fields, void* row, std::span<const ColumnInfo> columns,
                 RowTexts& texts) {
  for (const ColumnInfo& column : columns) {
    if (column.field != ColumnInfo::kNoField) StoreField(record, row, fields, column, texts);
  }
}

/// Fields are listed in the order in which they lie, and columns in that of their fields.
const ColumnInfo& ColumnAt(std::size_t offset, std::span<const FieldInfo> fields, std::span<const ColumnInfo> columns) {
  const auto field = std::partition_point(fields.begin(), fields.end(),
                                          [offset](const FieldInfo& other) { return other.offset < offset; });
  const int place = static_cast<int>(field - fields.begin());
  auto column = columns.begin() + place;
  while (column->field != place) ++column;
  return *column;
}

}  // namespace dtsdb
