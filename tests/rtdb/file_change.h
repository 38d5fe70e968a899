/// \file
/// Changes of a store's file without the library: what a program of another version makes of it.
#pragma once

#include <gtest/gtest.h>
#include <lmdb.h>

#include <string>

namespace dtsdb::test {

/// One transaction of LMDB on the file, committed when this goes.
class FileChange {
 public:
  explicit FileChange(const std::string& path) {
    EXPECT_EQ(mdb_env_create(&m_env), 0);
    mdb_env_set_maxdbs(m_env, 64);
    EXPECT_EQ(mdb_env_open(m_env, path.c_str(), MDB_NOSUBDIR, 0664), 0);
    EXPECT_EQ(mdb_txn_begin(m_env, nullptr, 0, &m_transaction), 0);
  }
  FileChange(const FileChange&) = delete;
  FileChange& operator=(const FileChange&) = delete;
  ~FileChange() {
    EXPECT_EQ(mdb_txn_commit(m_transaction), 0);
    mdb_env_close(m_env);
  }

  MDB_txn* Transaction() const { return m_transaction; }
  /// A tree by its name; null is the main tree.
  MDB_dbi Tree(const char* name) {
    MDB_dbi tree = 0;
    EXPECT_EQ(mdb_dbi_open(m_transaction, name, 0, &tree), 0);
    return tree;
  }
  void Put(const char* tree, std::string key, std::string value) {
    MDB_val at{key.size(), key.data()};
    MDB_val data{value.size(), value.data()};
    EXPECT_EQ(mdb_put(m_transaction, Tree(tree), &at, &data, 0), 0);
  }
  std::string Get(const char* tree, std::string key) {
    MDB_val at{key.size(), key.data()};
    MDB_val data{};
    EXPECT_EQ(mdb_get(m_transaction, Tree(tree), &at, &data), 0) << key;
    return {static_cast<const char*>(data.mv_data), data.mv_size};
  }
  bool Remove(const char* tree, std::string key) {
    MDB_val at{key.size(), key.data()};
    return mdb_del(m_transaction, Tree(tree), &at, nullptr) == 0;
  }
  void SetFormat(int format) { Put("@schema", "@format", "realtime-store " + std::to_string(format)); }

 private:
  MDB_env* m_env = nullptr;
  MDB_txn* m_transaction = nullptr;
};

}  // namespace dtsdb::test
