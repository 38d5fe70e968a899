/// \file
/// The tables of a model as data.
#pragma once

#include <span>

#include "model/field_info.h"
#include "model/table_kinds.h"

namespace dtsdb {

/// What is known of one table.
struct TableInfo {
  TableKind kind;                          ///< kind code
  const char* name;                        ///< of its record class
  RecordKey key;                           ///< what its records are compared by
  const char* meaning;                     ///< what a record is
  std::span<const FieldInfo> (*fields)();  ///< the fields in the order of the object file

  /// The fields that a record is compared by: the first one, of a relation row the first two.
  std::span<const FieldInfo> KeyFields() const { return fields().first(key == RecordKey::kRelation ? 2 : 1); }
};

/// All tables, in the order of their kind codes.
std::span<const TableInfo, kTableCount> Tables();

/// The table of kind code `kind`, which must be one.
inline const TableInfo& TableOfKind(TableKind kind) { return Tables()[static_cast<std::size_t>(kind) - 1]; }

/// The name of a table; "" for what is no kind code.
inline const char* TableName(int kind) {
  return kind > KIND_NONE && kind <= kTableCount ? TableOfKind(static_cast<TableKind>(kind)).name : "";
}

}  // namespace dtsdb
