#include "rtdb/internal/row_image.h"

#include <cstring>

#include "rtdb/internal/key_code.h"

namespace dtsdb::internal::rtdb {
namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kOffsetSize = 4;

std::uint32_t ReadU32(const char* bytes) {
  std::uint32_t value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

void WriteU32(char* bytes, std::size_t value) {
  const auto narrow = static_cast<std::uint32_t>(value);
  std::memcpy(bytes, &narrow, sizeof(narrow));
}

std::size_t ImageSize(const Column& column) {
  if (column.type == dbField::tpString) return kOffsetSize;
  return column.type == dbField::tpRawBinary ? column.rawSize : NumberSize(column.type);
}

template <class T>
T ReadAs(const void* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

Value Integer(std::int64_t value) { return {Value::kInteger, value, 0, {}}; }
Value Real(double value) { return {Value::kReal, 0, value, {}}; }

}  // namespace

std::size_t NumberSize(dbField::FieldTypes type) {
  switch (type) {
    case dbField::tpBool:
    case dbField::tpInt1:
    case dbField::tpNat1:
      return 1;
    case dbField::tpInt2:
    case dbField::tpNat2:
      return 2;
    case dbField::tpInt4:
    case dbField::tpNat4:
    case dbField::tpReal4:
      return 4;
    case dbField::tpInt8:
    case dbField::tpReal8:
      return 8;
    case dbField::tpString:
    case dbField::tpRawBinary:
      break;
  }
  return 0;
}

Value NumberValue(dbField::FieldTypes type, const void* bytes) {
  switch (type) {
    case dbField::tpBool:
      return Integer(ReadAs<std::uint8_t>(bytes) != 0 ? 1 : 0);
    case dbField::tpInt1:
      return Integer(ReadAs<std::int8_t>(bytes));
    case dbField::tpNat1:
      return Integer(ReadAs<std::uint8_t>(bytes));
    case dbField::tpInt2:
      return Integer(ReadAs<std::int16_t>(bytes));
    case dbField::tpNat2:
      return Integer(ReadAs<std::uint16_t>(bytes));
    case dbField::tpInt4:
      return Integer(ReadAs<std::int32_t>(bytes));
    case dbField::tpNat4:
      return Integer(ReadAs<std::uint32_t>(bytes));
    case dbField::tpInt8:
      return Integer(ReadAs<std::int64_t>(bytes));
    case dbField::tpReal4:
      return Real(static_cast<double>(ReadAs<float>(bytes)));
    case dbField::tpReal8:
      return Real(ReadAs<double>(bytes));
    case dbField::tpString:
    case dbField::tpRawBinary:
      break;
  }
  return {};
}

RowPlan::RowPlan(Schema schema, const dbTableDescriptor& table) : m_schema(std::move(schema)) {
  m_fixedSizes.assign(m_schema.layout + 1, kHeaderSize);
  m_textCounts.assign(m_schema.layout + 1, 0);
  std::size_t offset = kHeaderSize;
  for (const Column& column : m_schema.columns) {
    const dbFieldDescriptor* field = table.find(column.name.c_str());
    const Place place{offset, field->appOffs};
    const std::size_t size = ImageSize(column);
    const bool text = column.type == dbField::tpString;
    if (text) {
      m_texts.push_back(place);
    } else if (column.type == dbField::tpBool) {
      m_bools.push_back(place);
    } else if (!m_runs.empty() && m_runs.back().image + m_runs.back().size == offset &&
               m_runs.back().record + m_runs.back().size == field->appOffs) {
      m_runs.back().size += size;
    } else {
      m_runs.push_back({offset, field->appOffs, size});
    }
    m_places.push_back(place);
    offset += size;
    for (std::uint32_t layout = column.since; layout <= m_schema.layout; ++layout) {
      m_fixedSizes[layout] = offset;
      if (text) ++m_textCounts[layout];
    }
  }
  // The order of the key is the order in which the class names its key columns; Adopt has seen that both agree.
  for (std::size_t i = 0; i < m_schema.columns.size(); ++i) {
    if (m_schema.columns[i].key && m_schema.columns[i].type != dbField::tpRawBinary) m_keys.push_back(i);
  }
}

int RowPlan::FindColumn(std::string_view name) const {
  for (std::size_t i = 0; i < m_schema.columns.size(); ++i) {
    if (m_schema.columns[i].name == name) return static_cast<int>(i);
  }
  return -1;
}

void RowPlan::Encode(const void* record, std::string& image) const {
  const char* const source = static_cast<const char*>(record);
  image.resize(m_fixedSizes[m_schema.layout]);
  WriteU32(image.data(), m_schema.layout);
  for (const Run& run : m_runs) std::memcpy(image.data() + run.image, source + run.record, run.size);
  for (const Place& place : m_bools) image[place.image] = source[place.record] != 0 ? '\1' : '\0';
  bool empties = false;
  for (const Place& place : m_texts) {
    const char* text = ReadAs<const char*>(source + place.record);
    if (text == nullptr || *text == '\0') {
      empties = true;
      continue;
    }
    WriteU32(image.data() + place.image, image.size());
    image.append(text, std::strlen(text) + 1);
  }
  if (!empties) return;
  if (image.size() == m_fixedSizes[m_schema.layout]) image.push_back('\0');
  const std::size_t last = image.size() - 1;
  for (const Place& place : m_texts) {
    const char* text = ReadAs<const char*>(source + place.record);
    if (text == nullptr || *text == '\0') WriteU32(image.data() + place.image, last);
  }
}

bool RowPlan::Key(const void* record, std::string& key) const {
  key.clear();
  for (const std::size_t column : m_keys) {
    const char* member = static_cast<const char*>(record) + m_places[column].record;
    if (m_schema.columns[column].type == dbField::tpString) {
      const char* text = ReadAs<const char*>(member);
      AppendText(key, text == nullptr ? std::string_view() : std::string_view(text));
    } else {
      AppendNumber(key, m_schema.columns[column].type, member);
    }
  }
  return Shorten(key);
}

bool RowPlan::IsSound(std::string_view image) const {
  if (image.size() < kHeaderSize) return false;
  const std::uint32_t layout = ReadU32(image.data());
  if (layout < 1 || layout > m_schema.layout || image.size() < m_fixedSizes[layout]) return false;
  if (m_textCounts[layout] == 0) return true;
  // The last zero byte ends every text that begins within the image.
  if (image.back() != '\0') return false;
  for (std::size_t i = 0; i < m_textCounts[layout]; ++i) {
    const std::uint32_t offset = ReadU32(image.data() + m_texts[i].image);
    if (offset < m_fixedSizes[layout] || offset >= image.size()) return false;
  }
  return true;
}

void RowPlan::CopyText(std::string_view image, const Place& text, void* record) const {
  const char* pointer = image.data() + ReadU32(image.data() + text.image);
  std::memcpy(static_cast<char*>(record) + text.record, static_cast<void*>(&pointer), sizeof(pointer));
}

void RowPlan::MoveTexts(std::string_view from, std::string_view to, void* record) const {
  const auto begin = reinterpret_cast<std::uintptr_t>(from.data());
  for (const Place& text : m_texts) {
    char* const member = static_cast<char*>(record) + text.record;
    const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(ReadAs<const char*>(member)) - begin;
    if (offset >= from.size()) continue;
    const char* const moved = to.data() + offset;
    std::memcpy(member, static_cast<const void*>(&moved), sizeof(moved));
  }
}

void RowPlan::Decode(std::string_view image, void* record) const {
  const std::uint32_t layout = ReadU32(image.data());
  if (layout != m_schema.layout) return DecodeOldLayout(image, layout, record);
  char* const target = static_cast<char*>(record);
  for (const Run& run : m_runs) std::memcpy(target + run.record, image.data() + run.image, run.size);
  for (const Place& place : m_bools) target[place.record] = image[place.image] != '\0' ? '\1' : '\0';
  for (const Place& place : m_texts) CopyText(image, place, record);
}

void RowPlan::DecodeOldLayout(std::string_view image, std::uint32_t layout, void* record) const {
  static constexpr std::size_t kPointerSize = sizeof(void*);
  static const char* const kEmpty = "";
  char* const target = static_cast<char*>(record);
  for (std::size_t i = 0; i < m_schema.columns.size(); ++i) {
    const Column& column = m_schema.columns[i];
    const Place& place = m_places[i];
    const bool stored = column.since <= layout;
    if (column.type == dbField::tpString) {
      if (stored) {
        CopyText(image, place, record);
      } else {
        std::memcpy(target + place.record, static_cast<const void*>(&kEmpty), kPointerSize);
      }
    } else if (!stored) {
      std::memset(target + place.record, 0, ImageSize(column));
    } else if (column.type == dbField::tpBool) {
      target[place.record] = image[place.image] != '\0' ? '\1' : '\0';
    } else {
      std::memcpy(target + place.record, image.data() + place.image, ImageSize(column));
    }
  }
}

Value RowPlan::ReadColumn(std::string_view image, std::size_t column) const {
  const Column& description = m_schema.columns[column];
  const bool stored = description.since <= ReadU32(image.data());
  const char* bytes = image.data() + m_places[column].image;
  if (description.type == dbField::tpString) {
    return {Value::kText, 0, 0, stored ? std::string_view(image.data() + ReadU32(bytes)) : std::string_view()};
  }
  static constexpr char kZeros[8] = {};
  return NumberValue(description.type, stored ? bytes : kZeros);
}

}  // namespace dtsdb::internal::rtdb
