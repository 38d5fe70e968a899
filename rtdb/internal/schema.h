/// \file
/// What the store keeps about a table: its columns, in the order in which row images hold them.
///
/// The text form reaches the disk, one line a column:
///
///     table 1            layouts so far, that is the newest one's number
///     long-keys          only where some row's key had to be shortened
///     changes 17         only in a file with numbers of changes: the table's place among them
///     id text 0 1 key    name, type, size of raw bytes, first layout that has the column, "key"
///
/// A layout has the columns whose first layout is not above its own number. Columns are only ever added at the end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/descriptors.h"

namespace dtsdb::internal::rtdb {

struct Column {
  std::string name;
  dbField::FieldTypes type = dbField::tpInt4;
  std::uint32_t rawSize = 0;  ///< for raw bytes only
  std::uint32_t since = 1;    ///< the first layout with this column
  bool key = false;
};

struct Schema {
  static constexpr std::uint32_t kMostPlaces = 1U << 16;

  std::vector<Column> columns;
  std::uint32_t layout = 1;
  bool longKeys = false;
  /// Below kMostPlaces, which is far beyond the tables that a file can have.
  std::optional<std::uint32_t> changePlace;

  std::string ToText() const;
  /// Nothing for a damaged text.
  static std::optional<Schema> FromText(std::string_view text);
};

/// The schema of a new table.
Schema SchemaOf(const dbTableDescriptor& table);

/// Makes a stored schema serve a program's table: columns that the store lacks are added as a new layout. Returns the
/// reason where the two don't fit, else an empty text. `grown` reports whether the schema has changed.
std::string Adopt(Schema& stored, const dbTableDescriptor& table, bool& grown);

}  // namespace dtsdb::internal::rtdb
