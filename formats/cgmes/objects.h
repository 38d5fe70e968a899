/// \file
/// The objects of CGMES profiles: what all files of a set state together about each, as far as the import reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/cgmes/properties.h"

namespace dtsdb::tools::cgmes {

/// Objects by number, from 0 in the order in which they are first named. An object that is only referred to has no
/// class. Texts are UTF-8; the views hold until something is added.
class Objects {
 public:
  static constexpr int kNone = -1;

  Objects() = default;
  Objects(const Objects&) = delete;
  Objects& operator=(const Objects&) = delete;
  Objects(Objects&&) = default;
  Objects& operator=(Objects&&) = default;

  int Count() const { return static_cast<int>(m_objects.size()); }

  /// The object with this mRID (UTF-8), kNone without one.
  int Find(std::string_view mrid) const;
  /// The same, made when it isn't there.
  int FindOrMake(std::string_view mrid);

  const std::string& Mrid(int object) const { return *At(object).mrid; }
  /// The name, or else the mRID.
  std::string Name(int object) const;

  /// The number of a class, made when it isn't there.
  int ClassNumber(QStringView name);
  int ClassCount() const { return static_cast<int>(m_classes.size()); }
  const std::string& ClassName(int number) const { return m_classes[static_cast<std::size_t>(number)]; }
  /// The number of an object's class, kNone for an object that no file describes.
  int Class(int object) const { return At(object).type; }

  /// A file describes `object` in line `line`: it defines it, or adds to what another defines. The class of a
  /// definition counts; an addition may name a class above it.
  void Describe(int object, int type, bool defines, int file, long long line);
  /// A definition of an object that is defined as another class already. The first definition counts.
  struct Clash {
    int object;
    int type;  ///< the number of the other class
    int file;
    int line;
  };
  const std::vector<Clash>& Clashes() const { return m_clashes; }
  /// Where the object is defined: the number of the file, kNone for nowhere, and the line.
  int File(int object) const { return At(object).file; }
  int Line(int object) const { return At(object).line; }

  /// Sets a property; of one that isn't a list the last value counts. What follows doesn't look into lists. False when
  /// there is no room for more.
  bool SetText(int object, Property property, std::string_view text);
  bool SetTarget(int object, Property property, int target);

  bool Has(int object, Property property) const { return FindValue(object, property) != kNone; }
  /// The text of a property; empty without it.
  std::string_view Text(int object, Property property) const;
  /// The object that a property refers to; kNone without it, and for the object kNone.
  int Target(int object, Property property) const;
  /// A property that is a number; nothing without it, and for what is no finite number.
  std::optional<double> Number(int object, Property property) const;
  /// True where the property is "true".
  bool IsTrue(int object, Property property) const { return Text(object, property) == "true"; }
  bool IsFalse(int object, Property property) const { return Text(object, property) == "false"; }

  /// Calls `visit(property, target)` with all references of an object, those of its lists behind the others.
  template <class Visit>
  void ForEachTarget(int object, const Visit& visit) const {
    for (const int first : {At(object).first, At(object).listed}) {
      for (int i = first; i != kNone; i = m_values[static_cast<std::size_t>(i)].next) {
        const Value& value = m_values[static_cast<std::size_t>(i)];
        if (value.isReference) visit(value.property, static_cast<int>(value.place));
      }
    }
  }

 private:
  struct Object {
    const std::string* mrid;  ///< the key in m_byMrid
    int type = kNone;
    int first = kNone;   ///< its values, a chain with each property once
    int listed = kNone;  ///< the values of its lists, a chain
    int file = kNone;
    int line = 0;
    bool isDefined = false;
  };
  struct Value {
    Property property;
    bool isReference;
    int next;
    std::uint32_t length;  ///< of the text
    std::uint32_t place;   ///< of the text in m_text, or the object referred to
  };
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  const Object& At(int object) const { return m_objects[static_cast<std::size_t>(object)]; }
  int FindValue(int object, Property property) const;
  void Set(int object, const Value& value);

  std::vector<Object> m_objects;
  std::vector<Value> m_values;
  std::string m_text;
  std::unordered_map<std::string, int, TextHash, std::equal_to<>> m_byMrid;
  std::vector<Clash> m_clashes;
  std::vector<std::string> m_classes;
  std::unordered_map<std::string, int, TextHash, std::equal_to<>> m_classNumbers;
};

inline constexpr int kNone = Objects::kNone;  ///< no object

}  // namespace dtsdb::tools::cgmes
