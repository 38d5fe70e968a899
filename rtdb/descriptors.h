/// \file
/// Table classes and their columns.
///
/// A table class names its columns once and registers itself:
///
///     struct bus {
///       char const* id;
///       nat4 status;
///       char spare[40];
///       TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(status), RAWFIELD(spare)));
///     };
///     REGISTER_UNASSIGNED(bus);
///
/// The table's name is the class's name without its namespace. The key columns, in the order named, make the order in
/// which rows are kept. A table class has a default constructor; one record is made when the class is registered, which
/// is before main() begins, and one in each cursor.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

class dbDatabase;

/// Numbers of that many bytes: signed, unsigned, and floating.
using int1 = signed char;
using nat1 = unsigned char;
using int2 = short;
using nat2 = unsigned short;
using int4 = int;
using nat4 = unsigned int;
using int8 = long long;
using db_int8 = long long;
using real4 = float;
using real8 = double;

/// What a column holds.
struct dbField {
  /// The types of columns: a bool, numbers of that many bytes, texts and bytes.
  enum FieldTypes {
    tpBool,
    tpInt1,
    tpNat1,
    tpInt2,
    tpNat2,
    tpInt4,
    tpNat4,
    tpInt8,
    tpReal4,
    tpReal8,
    tpString,    ///< char const*, a text that ends at its first zero byte
    tpRawBinary  ///< a range of bytes that is kept as it is
  };
};

/// Kinds of index. Both make a column part of the order in which rows are kept.
enum dbIndexType { HASHED = 1, INDEXED = 2 };

/// The column type of a class member, or -1 where the type can't be a column.
template <class T>
inline constexpr int dbFieldTypeOf = -1;
template <>
inline constexpr int dbFieldTypeOf<bool> = dbField::tpBool;
template <>
inline constexpr int dbFieldTypeOf<int1> = dbField::tpInt1;
template <>
inline constexpr int dbFieldTypeOf<nat1> = dbField::tpNat1;
template <>
inline constexpr int dbFieldTypeOf<int2> = dbField::tpInt2;
template <>
inline constexpr int dbFieldTypeOf<nat2> = dbField::tpNat2;
template <>
inline constexpr int dbFieldTypeOf<int4> = dbField::tpInt4;
template <>
inline constexpr int dbFieldTypeOf<nat4> = dbField::tpNat4;
template <>
inline constexpr int dbFieldTypeOf<db_int8> = dbField::tpInt8;
template <>
inline constexpr int dbFieldTypeOf<real4> = dbField::tpReal4;
template <>
inline constexpr int dbFieldTypeOf<real8> = dbField::tpReal8;
template <>
inline constexpr int dbFieldTypeOf<char const*> = dbField::tpString;

/// One column of a table class.
struct dbFieldDescriptor {
  std::string name;                            ///< as the class has it
  dbField::FieldTypes type = dbField::tpInt4;  ///< of its value
  std::size_t appOffs = 0;                     ///< of the member in the class
  std::size_t appSize = 0;                     ///< of the member
  int indexType = 0;                           ///< 0, HASHED or INDEXED
};

/// The columns of a class in the order in which it names them.
using dbFieldList = std::vector<dbFieldDescriptor>;

/// Joins the columns that TYPE_DESCRIPTOR names, separated by commas.
dbFieldList operator,(dbFieldList first, dbFieldList second);

/// The column of a member that is a text, a bool or a number.
template <class T>
dbFieldList dbDescribeField(char const* name, void const* record, T const& member, int indexType) {
  static_assert(dbFieldTypeOf<T> >= 0, "a column is a char const*, a bool or a number; declare other members RAWFIELD");
  return {{name, static_cast<dbField::FieldTypes>(dbFieldTypeOf<T>),
           static_cast<std::size_t>(reinterpret_cast<char const*>(&member) - static_cast<char const*>(record)),
           sizeof(T), indexType}};
}

/// The column of a member that is a range of bytes.
template <class T>
dbFieldList dbDescribeRawField(char const* name, void const* record, T const& member) {
  static_assert(std::is_trivially_copyable_v<T>, "a raw column is copied byte by byte");
  return {{name, dbField::tpRawBinary,
           static_cast<std::size_t>(reinterpret_cast<char const*>(&member) - static_cast<char const*>(record)),
           sizeof(T), 0}};
}

/// Asks a class for its columns, through a record that is gone afterwards: where the columns lie follows from it.
template <class T>
dbFieldList dbDescribeClass() {
  return std::make_unique<T>()->dbDescribeComponents();
}

/// A table class as the databases know it.
class dbTableDescriptor {
 public:
  using Describe = dbFieldList (*)();  ///< what asks a class for its columns

  /// Registers a class for the databases that are opened from now on. A namespace in front of the name is dropped.
  dbTableDescriptor(char const* name, dbDatabase* database, std::size_t size, Describe describe);
  dbTableDescriptor(const dbTableDescriptor&) = delete;
  dbTableDescriptor& operator=(const dbTableDescriptor&) = delete;
  ~dbTableDescriptor();

  /// The table's name in the store.
  char const* getName() const { return m_name.c_str(); }
  /// The open database that the table belongs to, or null.
  dbDatabase* getDatabase() const { return m_database; }
  const dbFieldList& getFields() const { return m_fields; }
  /// The column of that name, or null.
  const dbFieldDescriptor* find(char const* name) const;

 private:
  friend class dbDatabase;

  /// A database's own copy of a class that was registered without one.
  dbTableDescriptor(const dbTableDescriptor& original, dbDatabase* database);

  static std::vector<dbTableDescriptor*>& Registered();
  /// Held while the registered classes are looked at, added or removed, and while databases take or leave them.
  static std::mutex& RegistryMutex();

  std::string m_name;
  dbDatabase* m_registeredFor;  ///< null for the first that is opened, DETACHED_TABLE for none
  dbDatabase* m_database;       ///< the open one, else null
  std::size_t m_size;
  dbFieldList m_fields;
  int m_slot = -1;  ///< of the table in its open database
};

/// Registered, but belonging to no database: each database that is opened makes a copy.
#define DETACHED_TABLE (reinterpret_cast<dbDatabase*>(-1))

/// A column in TYPE_DESCRIPTOR.
#define FIELD(x) dbDescribeField(#x, this, x, 0)
/// A column with an index, HASHED or INDEXED.
#define KEY(x, index) dbDescribeField(#x, this, x, index)
/// A range of bytes that is kept as it is.
#define RAWFIELD(x) dbDescribeRawField(#x, this, x)

/// What a row class contains: its columns, and its descriptor.
#define TYPE_DESCRIPTOR(fields)                               \
  dbFieldList dbDescribeComponents() const { return fields; } \
  static dbTableDescriptor dbDescriptor

/// Registers a class for `database`.
#define REGISTER_IN(table, database) \
  dbTableDescriptor table::dbDescriptor(#table, database, sizeof(table), &dbDescribeClass<table>)
/// Belongs to the first database that is opened, until that is closed.
#define REGISTER(table) REGISTER_IN(table, nullptr)
/// Each open database has a table of its own, found by dbDatabase::lookupTable.
#define REGISTER_UNASSIGNED(table) REGISTER_IN(table, DETACHED_TABLE)
