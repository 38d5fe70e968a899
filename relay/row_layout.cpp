#include "relay/row_layout.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "relay/bytes.h"
#include "relay/state_hash.h"

namespace dtsdb::relay {
namespace {

// Numbers go from the record into the message byte by byte.
static_assert(std::endian::native == std::endian::little);

const char* PlaceOf(const dbFieldDescriptor& column, const void* record) {
  return static_cast<const char*>(record) + column.appOffs;
}
char* PlaceOf(const dbFieldDescriptor& column, void* record) { return static_cast<char*>(record) + column.appOffs; }

void EncodeText(const char* place, ByteWriter& writer) {
  const char* text = nullptr;
  std::memcpy(static_cast<void*>(&text), place, sizeof(text));
  writer.PutCounted<std::uint32_t>(text == nullptr ? std::string_view() : std::string_view(text));
  writer.Put(std::uint8_t{0});
}

bool DecodeText(ByteReader& reader, char* place) {
  const auto bytes = reader.GetCounted<std::uint32_t>();
  const auto end = reader.Get<std::uint8_t>();
  if (!reader.IsGood() || end != 0 || bytes.find('\0') != std::string_view::npos) return false;
  const char* const text = bytes.data();
  std::memcpy(place, static_cast<const void*>(&text), sizeof(text));
  return true;
}

std::uint64_t FingerprintOf(const std::string& table, const std::vector<dbFieldDescriptor>& columns) {
  std::string text = table;
  for (const dbFieldDescriptor& column : columns) {
    text += '\n' + column.name + ' ' + std::to_string(column.type) + ' ' +
            (column.type == dbField::tpRawBinary ? std::to_string(column.appSize) : "0") +
            (column.indexType != 0 ? " key" : "");
  }
  return HashOf("layout", 0, text).low;
}

}  // namespace

RowLayout::RowLayout(const dbTableDescriptor& table) : m_table(table.getName()), m_columns(table.getFields()) {
  for (const dbFieldDescriptor& column : m_columns) {
    if (column.indexType != 0) m_key.push_back(column);
    m_recordSize = std::max(m_recordSize, column.appOffs + column.appSize);
  }
  m_fingerprint = FingerprintOf(m_table, m_columns);
}

void RowLayout::Encode(const void* record, std::string& row) const { EncodeColumns(m_columns, record, row); }
void RowLayout::EncodeKey(const void* record, std::string& key) const { EncodeColumns(m_key, record, key); }
bool RowLayout::Decode(std::string_view row, void* record) const { return DecodeColumns(m_columns, row, record); }
bool RowLayout::DecodeKey(std::string_view key, void* record) const { return DecodeColumns(m_key, key, record); }

void RowLayout::EncodeColumns(const Columns& columns, const void* record, std::string& bytes) {
  ByteWriter writer(bytes);
  for (const dbFieldDescriptor& column : columns) {
    const char* const place = PlaceOf(column, record);
    if (column.type == dbField::tpString) {
      EncodeText(place, writer);
    } else if (column.type == dbField::tpBool) {
      writer.Put(static_cast<std::uint8_t>(*place != 0 ? 1 : 0));
    } else {
      writer.Put(std::string_view(place, column.appSize));
    }
  }
}

bool RowLayout::DecodeColumns(const Columns& columns, std::string_view bytes, void* record) {
  ByteReader reader(bytes);
  for (const dbFieldDescriptor& column : columns) {
    char* const place = PlaceOf(column, record);
    if (column.type == dbField::tpString) {
      if (!DecodeText(reader, place)) return false;
      continue;
    }
    const std::string_view value = reader.Get(column.appSize);
    if (!reader.IsGood() || (column.type == dbField::tpBool && value[0] != 0 && value[0] != 1)) return false;
    std::memcpy(place, value.data(), value.size());
  }
  return reader.IsDone();
}

}  // namespace dtsdb::relay
