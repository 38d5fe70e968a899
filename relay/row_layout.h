/// \file
/// How a row of a table lies in a message.
///
/// The columns follow one another in the order of the table's class: numbers little-endian in their own size, a bool as
/// 0 or 1 in one byte, ranges of bytes as they are, a text as its length in 4 bytes, its bytes and a zero byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/backend.h"

namespace dtsdb::relay {

class RowLayout {
 public:
  explicit RowLayout(const dbTableDescriptor& table);

  const std::string& Table() const { return m_table; }
  /// A number that two programs have in common exactly when their classes have the same columns, as far as 64 bits can
  /// show it.
  std::uint64_t Fingerprint() const { return m_fingerprint; }
  /// Of a record of the table's class, at least.
  std::size_t RecordSize() const { return m_recordSize; }

  /// Appends the row of a record.
  void Encode(const void* record, std::string& row) const;
  /// Appends the key columns alone.
  void EncodeKey(const void* record, std::string& key) const;
  /// Fills a record. Its texts lie in `row`. False, with the record in some state, for bytes that are no row.
  bool Decode(std::string_view row, void* record) const;
  /// The same with the key columns alone; the record's other columns stay.
  bool DecodeKey(std::string_view key, void* record) const;

 private:
  using Columns = std::vector<dbFieldDescriptor>;

  static void EncodeColumns(const Columns& columns, const void* record, std::string& bytes);
  static bool DecodeColumns(const Columns& columns, std::string_view bytes, void* record);

  std::string m_table;
  Columns m_columns;
  Columns m_key;
  std::uint64_t m_fingerprint = 0;
  std::size_t m_recordSize = 0;
};

/// A record of whatever class, all zero at first.
class RecordRoom {
 public:
  explicit RecordRoom(std::size_t size) : m_bytes(std::make_unique<std::byte[]>(size)) {}
  void* Get() const { return m_bytes.get(); }

 private:
  std::unique_ptr<std::byte[]> m_bytes;
};

}  // namespace dtsdb::relay
