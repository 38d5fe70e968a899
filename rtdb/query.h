/// \file
/// Queries: a condition and an order, with values bound by address.
#pragma once

#include <concepts>
#include <memory>
#include <string>
#include <vector>

#include "rtdb/descriptors.h"

namespace dtsdb::internal::rtdb {
class CompiledQuery;
}  // namespace dtsdb::internal::rtdb

/// One piece of a query: a piece of text, or the address of a value.
struct dbQueryElement {
  /// What a piece is.
  enum ElementType {
    qExpression,    ///< a piece of the query's text
    qVariable,      ///< a bool or number
    qVarString,     ///< the bytes of a text
    qVarStringPtr,  ///< a pointer to a text
  };
  ElementType type = qExpression;                   ///< what the piece is
  dbField::FieldTypes valueType = dbField::tpInt4;  ///< of a value: its type
  std::string text;                                 ///< of a piece of text: the text
  void const* value = nullptr;                      ///< of a value: where it is
};

/// The types that a query takes by address beside texts.
template <class T>
concept dbBindable = std::integral<T> || std::same_as<T, float> || std::same_as<T, double>;

/// A query on any table.
///
///     dbQuery q;
///     q = "kv = ", kv, "and status <>", status, "order by id desc";
///
/// Bound values are read at each select, so they must live until then; a bound text keeps its pointer, and its bytes
/// are read at the select. In a list of texts every second one is a bound value. An empty query selects all rows.
///
/// Conditions: columns, numbers, 'texts', true and false compared with = <> != < <= > >= and like (% any bytes, _ one),
/// "between a and b", and, or, not, parentheses. Orders: "order by a, b desc". Column names are case-sensitive,
/// keywords lower case; texts are compared bytewise, unsigned.
class dbQuery {
 public:
  dbQuery() = default;
  /// A query that begins with a piece of text.
  explicit dbQuery(char const* text) { append(text); }

  /// Starts the query anew with a piece of text.
  dbQuery& operator=(char const* text) { return reset().append(text); }
  /// Forgets text and bound values.
  dbQuery& reset();

  /// Adds a piece of text.
  dbQuery& append(char const* text);

  /// Binds a text, or adds a piece of text where a bound value or nothing is in front.
  dbQuery& operator,(char const* text);
  /// Binds a pointer: both the pointer and its text are read at the select.
  dbQuery& operator,(char const* const* text);
  dbQuery& operator,(char** text);

  /// Binds a number.
  template <dbBindable T>
  dbQuery& operator,(T const& value) {
    return BindNumber(NumberType<T>(), &value);
  }
  /// A temporary would be gone before the select.
  template <dbBindable T>
  dbQuery& operator,(T const&& value) = delete;

  /// The pieces, for the store.
  const std::vector<dbQueryElement>& Elements() const { return m_elements; }
  /// The query's form for the table that it was last used on, kept between selects.
  std::shared_ptr<const dtsdb::internal::rtdb::CompiledQuery>& Compiled() { return m_compiled; }

 private:
  template <class T>
  static constexpr dbField::FieldTypes NumberType() {
    if constexpr (std::same_as<T, bool>) return dbField::tpBool;
    if constexpr (std::same_as<T, float>) return dbField::tpReal4;
    if constexpr (std::same_as<T, double>) return dbField::tpReal8;
    if constexpr (sizeof(T) == 1) return std::is_signed_v<T> ? dbField::tpInt1 : dbField::tpNat1;
    if constexpr (sizeof(T) == 2) return std::is_signed_v<T> ? dbField::tpInt2 : dbField::tpNat2;
    if constexpr (sizeof(T) == 4) return std::is_signed_v<T> ? dbField::tpInt4 : dbField::tpNat4;
    static_assert(sizeof(T) < 8 || std::is_signed_v<T> || !std::integral<T>, "no unsigned numbers of eight bytes");
    return dbField::tpInt8;
  }

  dbQuery& Bind(dbQueryElement::ElementType type, dbField::FieldTypes valueType, void const* value);
  dbQuery& BindNumber(dbField::FieldTypes type, void const* value) {
    return Bind(dbQueryElement::qVariable, type, value);
  }

  std::vector<dbQueryElement> m_elements;
  std::shared_ptr<const dtsdb::internal::rtdb::CompiledQuery> m_compiled;
};
