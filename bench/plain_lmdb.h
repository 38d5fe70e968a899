/// \file
/// LMDB without the realtime store: what storing the same bytes costs at least.
#pragma once

#include <lmdb.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace dtsdb::bench {

inline void RequireDone(int result) {
  if (result != MDB_SUCCESS) throw std::runtime_error(std::string("plain LMDB: ") + mdb_strerror(result));
}

/// A table of an LMDB file: its name, flags, keys and values.
struct PlainTable {
  std::string name;
  unsigned flags = 0;
  std::vector<std::pair<std::string, std::string>> rows;
};

inline MDB_val ValueOf(const std::string& bytes) { return {bytes.size(), const_cast<char*>(bytes.data())}; }
inline std::string BytesOf(const MDB_val& value) { return {static_cast<const char*>(value.mv_data), value.mv_size}; }

/// Calls `visit` with the key and the value of each row of a table.
template <class Visitor>
void ForEachRow(MDB_txn* transaction, MDB_dbi table, Visitor visit) {
  MDB_cursor* cursor = nullptr;
  RequireDone(mdb_cursor_open(transaction, table, &cursor));
  MDB_val key{};
  MDB_val value{};
  while (mdb_cursor_get(cursor, &key, &value, MDB_NEXT) == MDB_SUCCESS) visit(key, value);
  mdb_cursor_close(cursor);
}

/// The names of the tables. What the store keeps beside them in their list has a zero byte in its key.
inline std::vector<std::string> TableNames(MDB_txn* transaction) {
  MDB_dbi list = 0;
  RequireDone(mdb_dbi_open(transaction, nullptr, 0, &list));
  std::vector<std::string> names;
  ForEachRow(transaction, list, [&names](const MDB_val& key, const MDB_val&) {
    if (std::string name = BytesOf(key); name.find('\0') == std::string::npos) names.push_back(std::move(name));
  });
  return names;
}

/// An LMDB environment in a file. What it makes anew goes with it.
class PlainStore {
 public:
  /// The file of a store that exists, for reading; nobody may write it meanwhile.
  static PlainStore Existing(const std::string& path) { return PlainStore(path, MDB_RDONLY | MDB_NOLOCK); }
  /// An empty file.
  explicit PlainStore(const std::string& path) : PlainStore(path, MDB_NOLOCK) { m_owned = path; }
  PlainStore(PlainStore&& other) noexcept
      : m_environment(std::exchange(other.m_environment, nullptr)), m_owned(std::exchange(other.m_owned, {})) {}
  PlainStore& operator=(PlainStore&&) = delete;
  ~PlainStore() {
    mdb_env_close(m_environment);
    if (!m_owned.empty()) std::remove(m_owned.c_str());
  }

  /// All tables, copied.
  std::vector<PlainTable> Tables() {
    std::vector<PlainTable> tables;
    MDB_txn* transaction = Begin(MDB_RDONLY);
    for (std::string& name : TableNames(transaction)) tables.push_back({std::move(name), 0, {}});
    for (PlainTable& table : tables) {
      MDB_dbi handle = 0;
      RequireDone(mdb_dbi_open(transaction, table.name.c_str(), 0, &handle));
      RequireDone(mdb_dbi_flags(transaction, handle, &table.flags));
      ForEachRow(transaction, handle, [&table](const MDB_val& key, const MDB_val& value) {
        table.rows.emplace_back(BytesOf(key), BytesOf(value));
      });
    }
    mdb_txn_abort(transaction);
    return tables;
  }

  /// Looks at every row; returns the number of their bytes.
  std::size_t Walk() {
    std::size_t bytes = 0;
    MDB_txn* transaction = Begin(MDB_RDONLY);
    std::vector<char> copy;
    for (const std::string& table : TableNames(transaction)) {
      MDB_dbi handle = 0;
      RequireDone(mdb_dbi_open(transaction, table.c_str(), 0, &handle));
      ForEachRow(transaction, handle, [&](const MDB_val& key, const MDB_val& value) {
        const char* first = static_cast<const char*>(value.mv_data);
        copy.assign(first, first + value.mv_size);
        bytes += key.mv_size + copy.size();
      });
    }
    mdb_txn_abort(transaction);
    return bytes;
  }

  /// Puts all rows of all tables, in one transaction.
  void Put(const std::vector<PlainTable>& tables) {
    MDB_txn* transaction = Begin(0);
    for (const PlainTable& table : tables) {
      MDB_dbi handle = 0;
      RequireDone(mdb_dbi_open(transaction, table.name.c_str(), table.flags | MDB_CREATE, &handle));
      for (const auto& [key, value] : table.rows) {
        MDB_val k = ValueOf(key);
        MDB_val v = ValueOf(value);
        RequireDone(mdb_put(transaction, handle, &k, &v, 0));
      }
    }
    RequireDone(mdb_txn_commit(transaction));
  }

  /// Puts one small row in a transaction of its own.
  void PutOne(unsigned number) {
    char image[200] = {};
    std::memcpy(image, &number, sizeof(number));
    MDB_txn* transaction = Begin(0);
    MDB_dbi handle = 0;
    RequireDone(mdb_dbi_open(transaction, "one", MDB_CREATE, &handle));
    MDB_val key{sizeof(number), &number};
    MDB_val value{sizeof(image), image};
    RequireDone(mdb_put(transaction, handle, &key, &value, 0));
    RequireDone(mdb_txn_commit(transaction));
  }

 private:
  PlainStore(const std::string& path, unsigned flags) {
    RequireDone(mdb_env_create(&m_environment));
    mdb_env_set_maxdbs(m_environment, 512);
    mdb_env_set_mapsize(m_environment, std::size_t{1} << 36);
    RequireDone(mdb_env_open(m_environment, path.c_str(), MDB_NOSUBDIR | MDB_NOTLS | MDB_NOSYNC | flags, 0664));
  }
  MDB_txn* Begin(unsigned flags) {
    MDB_txn* transaction = nullptr;
    RequireDone(mdb_txn_begin(m_environment, nullptr, flags, &transaction));
    return transaction;
  }

  MDB_env* m_environment = nullptr;
  std::string m_owned;
};

}  // namespace dtsdb::bench
