/// \file
/// The columns of a row class as data: Row::Columns() lists them.
#pragma once

#include <cstddef>

namespace dtsdb {

/// What a column holds: a text, a number, or a range of bytes that other programs keep.
enum class ColumnType : unsigned char { kText, kInt4, kNat4, kReal4, kReal8, kBytes };

/// One column of a row class.
struct ColumnInfo {
  static constexpr int kNoField = -1;  ///< `field` of a column that no record has

  const char* name;    ///< of the column, as in the class
  ColumnType type;     ///< of its value
  std::size_t offset;  ///< of the member in the row, in bytes
  std::size_t size;    ///< of the member
  bool isKey;          ///< rows are found and ordered by it
  int field;           ///< place among the record's fields; kNoField when no record has it

  /// The column's value in `row`. `V` must be the C++ type of `type`.
  template <class V>
  V& In(void* row) const {
    return *reinterpret_cast<V*>(static_cast<std::byte*>(row) + offset);
  }
  template <class V>
  const V& In(const void* row) const {
    return *reinterpret_cast<const V*>(static_cast<const std::byte*>(row) + offset);
  }
};

}  // namespace dtsdb
