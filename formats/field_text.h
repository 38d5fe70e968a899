/// \file
/// The values of record fields as text: digits that read back to the same value, and real text of identities.
#pragma once

#include <fmt/format.h>

#include <QString>
#include <charconv>
#include <concepts>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "formats/cell.h"
#include "formats/text_layout.h"
#include "model/table_info.h"
#include "model/text.h"

namespace dtsdb::tools {

template <class V>
concept FieldNumber = std::integral<V> || std::floating_point<V>;

/// The shortest digits that read back to the same number; -0, nan and inf included.
template <FieldNumber V>
std::string NumberText(V value) {
  return fmt::format("{}", +value);  // + makes numbers of bytes
}

/// Reads a whole number or, for a floating-point type, any number. The whole of `text` must be the number and lie
/// in the range of the type. Returns an empty text, or what is wrong; `value` is then as it was.
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

/// An identity as real text in UTF-8; bytes that are not valid in its encoding show as U+FFFD.
inline std::string IdText(const QString& id) { return TextFromId(id).toStdString(); }
/// The identity of a text in UTF-8, every character of it: nothing where the encoding in effect can't hold it.
inline std::optional<QString> IdFromUtf8(const std::string& text) {
  return IdFromText(TextFromBytes(QByteArray::fromStdString(text), IdEncoding::kUtf8));
}

/// What a user wrote, in UTF-8: taken as GBK where it is no UTF-8, as a GBK terminal sends it.
std::string UserText(const std::string& bytes);

/// A value as a cell: a null text is an empty cell.
template <class V>
Cell FieldCell(const V& value) {
  if constexpr (std::is_same_v<V, QString>) {
    return value.isNull() ? Cell() : Cell(IdText(value));
  } else {
    return Number{NumberText(value)};
  }
}
/// The value of `field` in `record` as a cell.
Cell FieldCell(const FieldInfo& field, const void* record);

/// The same as plain text.
template <class V>
std::string FieldText(const V& value) {
  return CellText(FieldCell(value));
}
std::string FieldText(const FieldInfo& field, const void* record);

/// The names of fields or columns.
template <class Info>
std::vector<std::string> NamesOf(std::span<const Info> infos) {
  std::vector<std::string> names;
  names.reserve(infos.size());
  for (const Info& info : infos) names.emplace_back(info.name);
  return names;
}

/// The values of all fields of a record.
std::vector<Cell> FieldCells(std::span<const FieldInfo> fields, const void* record);

/// The texts under which a record can be found: its identity or number, the identities of parent and child.
std::vector<std::string> KeyTexts(const TableInfo& table, const void* record);

/// The key of a record as one text.
std::string KeyText(const TableInfo& table, const void* record);
template <class T>
std::string KeyText(const T& record) {
  return KeyText(TableOfKind(T::kKind), &record);
}

}  // namespace dtsdb::tools
