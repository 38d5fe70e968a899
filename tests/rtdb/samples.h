/// \file
/// Table classes and databases for the tests of the realtime store.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "rtdb/backend.h"

namespace sample {

/// A column of every type.
struct item {
  char const* id = nullptr;
  char const* name = nullptr;
  bool flag = false;
  int1 i1 = 0;
  nat1 n1 = 0;
  int2 i2 = 0;
  nat2 n2 = 0;
  int4 i4 = 0;
  nat4 n4 = 0;
  db_int8 i8 = 0;
  real4 r4 = 0;
  real8 r8 = 0;
  char spare[40] = {};
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(flag), FIELD(i1), FIELD(n1), FIELD(i2), FIELD(n2), FIELD(i4),
                   FIELD(n4), FIELD(i8), FIELD(r4), FIELD(r8), RAWFIELD(spare)));
};

/// A numbered row.
struct entry {
  int4 id = 0;
  int4 value = 0;
  char const* text = nullptr;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value), FIELD(text)));
};

/// A row found by two texts.
struct relation {
  char const* parent = nullptr;
  char const* child = nullptr;
  int4 next = -1;
  TYPE_DESCRIPTOR((KEY(parent, INDEXED), KEY(child, INDEXED), FIELD(next)));
};

/// Rows without a key, kept in the order of their insertion.
struct note {
  char const* text = nullptr;
  TYPE_DESCRIPTOR((FIELD(text)));
};

}  // namespace sample

namespace dtsdb::test {

/// A folder that is removed with it.
class Folder {
 public:
  explicit Folder(const std::filesystem::path& place = std::filesystem::temp_directory_path()) {
    std::string name = (place / "rtdb-XXXXXX").string();
    m_path = ::mkdtemp(name.data()) != nullptr ? name : "";
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  std::string File(const std::string& name = "store.fdb") const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

/// A database that collects its errors.
class Database : public dbDatabase {
 public:
  using dbDatabase::dbDatabase;

  void handleError(dbErrorClass error, char const* message, int) override {
    errors.push_back(error);
    messages.emplace_back(message);
  }
  /// The messages since the last call, one a line.
  std::string Reported() {
    std::string all;
    for (const std::string& message : messages) all += message + "\n";
    messages.clear();
    errors.clear();
    return all;
  }

  std::vector<dbErrorClass> errors;
  std::vector<std::string> messages;
};

/// An open database in a folder of its own.
struct OpenStore {
  OpenStore() { opened = Open(); }
  OpenStore(const OpenStore&) = delete;
  OpenStore& operator=(const OpenStore&) = delete;
  ~OpenStore() { db.close(); }
  bool Open() { return db.open(folder.File().c_str(), folder.File().c_str()); }

  Folder folder;
  Database db;
  bool opened = false;
};

/// Inserts an entry and returns its reference.
inline dbReference<sample::entry> AddEntry(dbDatabase& db, int id, int value = 0, char const* text = "") {
  sample::entry row;
  row.id = id;
  row.value = value;
  row.text = text;
  return db.insert(row);
}

/// What `value` gives for each selected row.
template <class Row, class Value>
auto Walk(dbCursor<Row>& cursor, Value value) {
  std::vector<decltype(value(*cursor.get()))> values;
  for (Row* row = cursor.get(); row != nullptr; row = cursor.next()) values.push_back(value(*row));
  return values;
}

/// The ids of the entries that a query selects, in its order.
inline std::vector<int> EntryIds(dbDatabase& db, char const* query = "order by id") {
  dbCursor<sample::entry> cursor(&db);
  cursor.select(query);
  return Walk(cursor, [](const sample::entry& row) { return row.id; });
}

}  // namespace dtsdb::test
