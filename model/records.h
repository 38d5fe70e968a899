/// \file
/// The record classes of the network model: plain values that tTable keeps by value.
///
/// One class stands for each table. Their fields are listed in model/record_fields.h, the classes and their
/// order in model/table_list.h; everything here is made from these two lists. docs/model.md describes the tables.
#pragma once

#include <QString>
#include <type_traits>

#include "model/basic_types.h"
#include "model/record_fields.h"
#include "model/table_list.h"

namespace dtsdb {

class QArchive;

/// How the records of a table are compared.
enum class RecordKey {
  Identified,  ///< by the text `id`, in code-unit order; a null and an empty text are equal
  Numbered,    ///< by the integer `id`
  Relation,    ///< by the identity text of the parent, then of the child
};

/// What is known of one field of record class `Record`: its name, where it lies and what it means.
template <class Record, class Type>
struct Field {
  using ValueType = Type;
  const char* name;
  Type Record::*member;
  const char* meaning;
};

#define DTSDB_MEMBER(type, name, meaning, ...) type name{__VA_ARGS__};
#define DTSDB_VISIT_FIELD(type, name, meaning, ...) visit(Field<Self, type>{#name, &Self::name, meaning});
#define DTSDB_COUNT_FIELD(type, name, meaning, ...) +1

/// The members that every record class has.
///
/// `Serialize` stores or loads all fields in their order; a field that can't be loaded refuses the archive
/// (QArchive::Refuse) and keeps what it had.
// clang-format off
#define DTSDB_RECORD_MEMBERS(T, key)                                              \
 public:                                                                          \
  using Self = T;                                                                 \
  static constexpr const char* kTableName = #T;                                   \
  static constexpr RecordKey kKey = RecordKey::key;                               \
  static constexpr int kFieldCount = DTSDB_RECORD_FIELDS(T, DTSDB_COUNT_FIELD);   \
  DTSDB_RECORD_FIELDS(T, DTSDB_MEMBER)                                            \
  T() = default;                                                                  \
  T(const T&) = default;                                                          \
  T(T&&) noexcept = default;                                                      \
  ~T() = default;                                                                 \
  T& operator=(const T&) = default;                                               \
  T& operator=(T&&) noexcept = default;                                           \
  void Serialize(QArchive& ar);                                                   \
  /** Calls `visit` with the Field of every field, in order. */                   \
  template <class Visitor>                                                        \
  static void ForEachField(Visitor&& visit) {                                     \
    DTSDB_RECORD_FIELDS(T, DTSDB_VISIT_FIELD)                                     \
  }
// clang-format on

#define DTSDB_DECLARE_Identified(T)                                  \
  class T {                                                          \
    DTSDB_RECORD_MEMBERS(T, Identified)                              \
    /** Implicit, so that a table can be searched by a name. */      \
    T(const QString& identity) : id(identity) {}                     \
    bool operator==(const T& other) const { return id == other.id; } \
    bool operator<(const T& other) const { return id < other.id; }   \
  };

#define DTSDB_DECLARE_Numbered(T)                                    \
  class T {                                                          \
    DTSDB_RECORD_MEMBERS(T, Numbered)                                \
    /** Implicit, so that a table can be searched by a number. */    \
    T(int number) : id(number) {}                                    \
    bool operator==(const T& other) const { return id == other.id; } \
    bool operator<(const T& other) const { return id < other.id; }   \
  };

#define DTSDB_DECLARE_Relation(T) class T;

#define DTSDB_DECLARE_RECORD(T, table, key, meaning) DTSDB_DECLARE_##key(T)
DTSDB_TABLES(DTSDB_DECLARE_RECORD)
#undef DTSDB_DECLARE_RECORD
#undef DTSDB_DECLARE_Identified
#undef DTSDB_DECLARE_Numbered
#undef DTSDB_DECLARE_Relation

#define DTSDB_DECLARE_RELATION(T, Parent, Child, parent, child, head, own)                             \
  class T {                                                                                            \
    DTSDB_RECORD_MEMBERS(T, Relation)                                                                  \
    T(const QString& parentId, const QString& childId) : parent##_id(parentId), child##_id(childId) {} \
    bool operator==(const T& other) const {                                                            \
      return parent##_id == other.parent##_id && child##_id == other.child##_id;                       \
    }                                                                                                  \
    bool operator<(const T& other) const {                                                             \
      const int order = parent##_id.compare(other.parent##_id);                                        \
      return order != 0 ? order < 0 : child##_id.compare(other.child##_id) < 0;                        \
    }                                                                                                  \
    /** The number of the child record. */                                                             \
    int ChildNumber() const { return i##child; }                                                       \
  };
DTSDB_RELATIONS(DTSDB_DECLARE_RELATION)
#undef DTSDB_DECLARE_RELATION

#undef DTSDB_RECORD_MEMBERS
#undef DTSDB_MEMBER
#undef DTSDB_VISIT_FIELD
#undef DTSDB_COUNT_FIELD

/// What is known of relation class `Row`: whom it joins and where the ends of its chains are kept. One routine
/// written on these names serves all 18 relations.
template <class Row>
struct Relation;

#define DTSDB_RELATION_TRAITS(T, ParentClass, ChildClass, parent, child, headField, ownField) \
  template <>                                                                                 \
  struct Relation<T> {                                                                        \
    using Parent = ParentClass;                                                               \
    using Child = ChildClass;                                                                 \
    static constexpr QString T::*parentId = &T::parent##_id;                                  \
    static constexpr QString T::*childId = &T::child##_id;                                    \
    static constexpr i32 T::*parentNumber = &T::i##parent;                                    \
    static constexpr i32 T::*childNumber = &T::i##child;                                      \
    static constexpr i32 ParentClass::*head = &ParentClass::headField;                        \
    static constexpr i32 ChildClass::*own = &ChildClass::ownField;                            \
  };
DTSDB_RELATIONS(DTSDB_RELATION_TRAITS)
#undef DTSDB_RELATION_TRAITS

/// Kind code of a table: its place in the alphabetical order of the record classes, counted from 1. It stands in
/// BSL `kind` and TPL `kind` and reaches the disk.
enum TableKind : int {
  KIND_NONE = 0,
#define DTSDB_KIND(T, table, key, meaning) KIND_##T,
  DTSDB_TABLES(DTSDB_KIND)
#undef DTSDB_KIND
};

#define DTSDB_COUNT_TABLE(T, table, key, meaning) +1
/// Number of tables in a model.
inline constexpr int kTableCount = DTSDB_TABLES(DTSDB_COUNT_TABLE);
#undef DTSDB_COUNT_TABLE

static_assert(kTableCount == 46);
static_assert(KIND_BS == 2 && KIND_BSL == 3 && KIND_BUS == 4 && KIND_CB2 == 6 && KIND_CP == 9 && KIND_DLN == 10 &&
              KIND_DLN2 == 11 && KIND_KV == 15 && KIND_LD == 16 && KIND_LN == 17 && KIND_LN2 == 18 && KIND_ST == 38 &&
              KIND_UN == 42 && KIND_XF == 43 && KIND_XF2 == 44 && KIND_ZBR == 45 && KIND_ZBR2 == 46);

/// Kind code of the table of record class `T`: KindOf<LN> is KIND_LN.
template <class T>
inline constexpr TableKind KindOf = KIND_NONE;
#define DTSDB_KIND_OF(T, table, key, meaning) \
  template <>                                 \
  inline constexpr TableKind KindOf<T> = KIND_##T;
DTSDB_TABLES(DTSDB_KIND_OF)
#undef DTSDB_KIND_OF

}  // namespace dtsdb
