/// \file
/// The fields of a record class as data, for work over all fields of any record: T::Fields() lists them.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <QString>

#include "model/basic_types.h"
#include "model/table_kinds.h"

namespace dtsdb {

/// The type of a field: an identity text (QString) or a number.
enum class FieldType : unsigned char { kText, kI8, kU8, kI32, kU32, kF32, kF64 };

/// One field of a record class.
struct FieldInfo {
  const char* name;     ///< of the field, as in the class
  FieldType type;       ///< of its value
  std::size_t offset;   ///< of the member in the record, in bytes
  TableKind refers;     ///< table whose identity or number the field holds; KIND_NONE for a value of its own
  const char* unit;     ///< such as "kV"; "" where there is none or it isn't known
  const char* writers;  ///< who writes the field, such as "validation, topology"; "input": it comes with the model
  const char* meaning;  ///< for people

  /// The field's value in `record`. `V` must be the C++ type of `type`.
  template <class V>
  V& In(void* record) const {
    return *reinterpret_cast<V*>(static_cast<std::byte*>(record) + offset);
  }
  template <class V>
  const V& In(const void* record) const {
    return *reinterpret_cast<const V*>(static_cast<const std::byte*>(record) + offset);
  }
  /// True when the field holds the number of a record.
  bool IsLink() const { return type == FieldType::kI32 && refers != KIND_NONE; }
};

/// The name of a field type for people: "text", "i32" and so on.
constexpr const char* TypeName(FieldType type) {
  constexpr const char* kNames[] = {"text", "i8", "u8", "i32", "u32", "f32", "f64"};
  return kNames[static_cast<std::size_t>(type)];
}

/// Calls `visit(value)` with the value of `field` in `record`, a reference to the field's own type, and returns what
/// `visit` returns. `Record` is a record class or void.
template <class Record, class Visitor>
decltype(auto) VisitValue(const FieldInfo& field, Record* record, Visitor&& visit) {
  switch (field.type) {
    case FieldType::kText:
      return visit(field.In<QString>(record));
    case FieldType::kI8:
      return visit(field.In<i8>(record));
    case FieldType::kU8:
      return visit(field.In<u8>(record));
    case FieldType::kI32:
      return visit(field.In<i32>(record));
    case FieldType::kU32:
      return visit(field.In<u32>(record));
    case FieldType::kF32:
      return visit(field.In<f32>(record));
    case FieldType::kF64:
      break;
  }
  return visit(field.In<f64>(record));
}

/// Calls `visit(field, value)` for every field of `record`, in order.
template <class Record, class Visitor>
void ForEachField(Record& record, Visitor&& visit) {
  for (const FieldInfo& field : std::remove_const_t<Record>::Fields()) {
    VisitValue(field, &record, [&](auto& value) { visit(field, value); });
  }
}

}  // namespace dtsdb
