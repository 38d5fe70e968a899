#include <algorithm>
#include <cstring>

#include "model/exchange.h"

namespace dtsdb {

namespace {

constexpr char16_t kHighestByte = 0xFF;

/// What IdToBytes makes of a character.
char ByteOf(char16_t unit) { return unit <= kHighestByte ? static_cast<char>(unit) : '?'; }

/// Whether a column's text is a record's, which then has no zero byte and no character above 0xFF.
bool IsText(char const* bytes, const QString& text) {
  for (const QChar c : text) {
    const char16_t unit = c.unicode();
    if (unit == 0 || unit > kHighestByte || *bytes++ != ByteOf(unit)) return false;
  }
  return *bytes == '\0';
}

/// Compares a column's text with the bytes of a record's, up to the end of either.
int CompareText(char const* bytes, const QString& text) {
  for (const QChar c : text) {
    const int order = static_cast<unsigned char>(*bytes) - static_cast<unsigned char>(ByteOf(c.unicode()));
    if (order != 0) return order;
    if (*bytes++ == '\0') return 0;
  }
  return static_cast<unsigned char>(*bytes);
}

template <class Value>
bool AreSameBits(const Value& a, const Value& b) {
  return std::memcmp(&a, &b, sizeof(Value)) == 0;
}

bool HoldsField(const void* row, const ColumnInfo& column, const void* record, const FieldInfo& field) {
  switch (field.type) {
    case FieldType::kText:
      return IsText(column.In<char const*>(row), field.In<QString>(record));
    case FieldType::kI8:
      return column.In<int4>(row) == field.In<i8>(record);
    case FieldType::kU8:
      return column.In<int4>(row) == field.In<u8>(record);
    case FieldType::kI32:
      return column.In<int4>(row) == field.In<i32>(record);
    case FieldType::kU32:
      return column.In<nat4>(row) == field.In<u32>(record);
    case FieldType::kF32:
      return AreSameBits<f32>(column.In<real4>(row), field.In<f32>(record));
    case FieldType::kF64:
      break;
  }
  return AreSameBits<f64>(column.In<real8>(row), field.In<f64>(record));
}

}  // namespace

char* RowTexts::Room(std::size_t n) {
  if (m_bytes.size() - m_used < n) return m_large.emplace_back(n).data();
  char* const room = m_bytes.data() + m_used;
  m_used += n;
  return room;
}

char const* RowTexts::Keep(const QString& text) {
  char* const bytes = Room(static_cast<std::size_t>(text.size()) + 1);
  char* end = bytes;
  bool hasZero = false;
  for (const QChar c : text) {
    hasZero = hasZero || c.isNull();
    *end++ = ByteOf(c.unicode());
  }
  *end = '\0';
  if (hasZero) qWarning("a text of the table %s is cut off at its zero byte: \"%s\"", m_table, bytes);
  return bytes;
}

bool HoldsFields(const void* row, std::span<const ColumnInfo> columns, const void* record,
                 std::span<const FieldInfo> fields) {
  for (const ColumnInfo& column : columns) {
    if (column.field == ColumnInfo::kNoField) continue;
    if (!HoldsField(row, column, record, fields[static_cast<std::size_t>(column.field)])) return false;
  }
  return true;
}

int CompareIdentity(const void* row, std::span<const ColumnInfo> columns, const void* record,
                    std::span<const FieldInfo> fields) {
  const FieldInfo& id = fields.front();
  const ColumnInfo& column = ColumnAt(id.offset, fields, columns);
  if (id.type == FieldType::kText) return CompareText(column.In<char const*>(row), id.In<QString>(record));
  const i32 number = id.In<i32>(record);
  return column.In<int4>(row) < number ? -1 : (column.In<int4>(row) > number ? 1 : 0);
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
