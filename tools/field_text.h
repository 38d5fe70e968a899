/// \file
/// The values of record fields as text: digits that read back to the same value, and real text of identities.
#pragma once

#include <fmt/format.h>

#include <QByteArray>
#include <QString>
#include <charconv>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "model/records.h"
#include "model/text.h"
#include "tools/render.h"
#include "tools/text_layout.h"

namespace dtsdb::tools {

template <class V>
concept FieldNumber = std::integral<V> || std::floating_point<V>;

/// The shortest digits that read back to the same number; -0, nan and inf included.
template <FieldNumber V>
std::string NumberText(V value) {
  return fmt::format("{}", +value);  // + makes numbers of bytes
}

/// Reads a whole number or, for a floating-point type, any number. The whole of `text` must be the number and lie
/// in the range of the type. Gives an empty text, or what is wrong; `value` is then as it was.
template <FieldNumber V>
std::string ParseNumber(std::string_view text, V& value) {
  using Wide = std::conditional_t<std::integral<V>, long long, V>;
  Wide number{};
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc::invalid_argument || behind != end) {
    return Quoted(text) + (std::integral<V> ? " is no whole number" : " is no number");
  }
  if constexpr (std::integral<V>) {
    using Limits = std::numeric_limits<V>;
    const bool fits = number >= Wide{Limits::min()} && number <= Wide{Limits::max()};
    if (error != std::errc() || !fits) {
      return fmt::format("{} is out of range, {} to {}", Quoted(text), +Limits::min(), +Limits::max());
    }
  } else if (error != std::errc()) {
    return fmt::format("{} is out of range for a number of {} bytes", Quoted(text), sizeof(V));
  }
  value = static_cast<V>(number);
  return "";
}

/// The name of a field's type for people.
template <class V>
constexpr const char* TypeName() {
  if constexpr (std::is_same_v<V, QString>) return "text";
  if constexpr (std::is_same_v<V, i8>) return "i8";
  if constexpr (std::is_same_v<V, u8>) return "u8";
  if constexpr (std::is_same_v<V, i32>) return "i32";
  if constexpr (std::is_same_v<V, u32>) return "u32";
  if constexpr (std::is_same_v<V, f32>) return "f32";
  if constexpr (std::is_same_v<V, f64>) return "f64";
}

/// An identity as real text in UTF-8; bytes that are no valid GBK show as U+FFFD.
inline std::string IdText(const QString& id) { return TextFromId(id).toStdString(); }

/// A field's value as a cell: a null text is an empty cell. Texts of stored rows are identities too; a range of bytes
/// shows as hexadecimal digits.
template <class V>
Cell FieldCell(const V& value) {
  if constexpr (std::is_same_v<V, QString>) {
    return value.isNull() ? Cell() : Cell(IdText(value));
  } else if constexpr (std::is_same_v<V, char const*>) {
    return FieldCell(IdFromBytes(value));
  } else if constexpr (std::is_array_v<V>) {
    return QByteArray(value, sizeof(value)).toHex().toStdString();
  } else {
    return Number{NumberText(value)};
  }
}

/// The same as plain text.
template <class V>
std::string FieldText(const V& value) {
  return CellText(FieldCell(value));
}

/// The names of all fields of `Fields`, a record class or a StoredTable.
template <class Fields>
std::vector<std::string> FieldNames() {
  std::vector<std::string> names;
  Fields::ForEachField([&names](const auto& field) { names.push_back(field.name); });
  return names;
}

/// The values of all fields of a row.
template <class Fields, class Row>
std::vector<Cell> FieldCells(const Row& row) {
  std::vector<Cell> cells;
  Fields::ForEachField([&](const auto& field) { cells.push_back(FieldCell(row.*field.member)); });
  return cells;
}

/// The key of a record as text: its identity, its number, or the identities of parent and child.
template <class T>
std::string KeyText(const T& record) {
  if constexpr (T::kKey == RecordKey::Relation) {
    return IdText(record.*Relation<T>::parentId) + " > " + IdText(record.*Relation<T>::childId);
  } else if constexpr (T::kKey == RecordKey::Numbered) {
    return NumberText(record.id);
  } else {
    return IdText(record.id);
  }
}

/// The name of the field that stands for a record's key in a message.
template <class T>
std::string KeyFieldName() {
  if constexpr (T::kKey != RecordKey::Relation) return "id";
  std::string name;
  T::ForEachField([&name](const auto& field) {
    if (name.empty()) name = field.name;
  });
  return name;
}

}  // namespace dtsdb::tools
