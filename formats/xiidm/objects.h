/// \file
/// The objects of an XIIDM file with the attributes that the import reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/xiidm/attributes.h"
#include "formats/xiidm/elements.h"

namespace dtsdb::tools::xiidm {

/// Objects by number, from 0 in the order of the file. Texts are UTF-8; the views hold until something is added.
class Objects {
 public:
  static constexpr int kNone = -1;

  Objects() = default;
  Objects(const Objects&) = delete;
  Objects& operator=(const Objects&) = delete;
  Objects(Objects&&) = default;
  Objects& operator=(Objects&&) = default;

  int Count() const { return static_cast<int>(m_objects.size()); }

  /// Makes room for so many objects.
  void Reserve(long long objects) { m_byId.reserve(static_cast<std::size_t>(objects)); }
  /// A new object in the object `parent`; kNone when there is one with this id.
  int Add(const ElementRow& row, int parent, long long line, std::string_view id);
  /// The object with this id, kNone without one.
  int Find(std::string_view id) const;

  const ElementRow& RowOf(int object) const { return *At(object).row; }
  Role RoleOf(int object) const { return At(object).row->role; }
  int Parent(int object) const { return At(object).parent; }
  int Line(int object) const { return At(object).line; }
  const std::string& Id(int object) const { return *At(object).id; }
  /// The name, or else the id.
  std::string Name(int object) const;

  /// Sets an attribute, which the object doesn't have yet. False when there is no room for more.
  bool Set(int object, Attribute attribute, std::string_view text);

  bool Has(int object, Attribute attribute) const { return FindValue(object, attribute) != kNone; }
  /// The text of an attribute; empty without it.
  std::string_view Text(int object, Attribute attribute) const;
  /// An attribute that is a number; nothing without it, and for what is no finite number.
  std::optional<double> Number(int object, Attribute attribute) const;
  /// The same, 0 for nothing.
  double NumberOrZero(int object, Attribute attribute) const { return Number(object, attribute).value_or(0); }
  bool IsTrue(int object, Attribute attribute) const;

  /// The objects of a role, in the order of their numbers.
  std::vector<int> WithRole(Role role) const;

 private:
  struct Object {
    const ElementRow* row;
    const std::string* id;  ///< the key in m_byId
    int parent;
    int line;
    int first = kNone;  ///< its values, a chain
  };
  struct Value {
    Attribute attribute;
    int next;
    std::uint32_t length;  ///< of the text
    std::uint32_t place;   ///< of the text in m_text
  };
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  const Object& At(int object) const { return m_objects[static_cast<std::size_t>(object)]; }
  int FindValue(int object, Attribute attribute) const;

  std::vector<Object> m_objects;
  std::vector<Value> m_values;
  std::string m_text;
  std::unordered_map<std::string, int, TextHash, std::equal_to<>> m_byId;
};

/// `text` as a finite number; nothing for anything else.
std::optional<double> NumberOf(std::string_view text);

/// `text` as the number of a node, from 0 to 2147483647; nothing for anything else.
std::optional<int> NodeNumberOf(std::string_view text);

inline constexpr int kNone = Objects::kNone;  ///< no object

}  // namespace dtsdb::tools::xiidm
