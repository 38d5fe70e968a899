/// \file
/// The LMDB environments that this process has open: one for each file, however often the file is opened.
#pragma once

#include <lmdb.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "rtdb/internal/status.h"
#include "rtdb/internal/store_file.h"

namespace dtsdb::internal {
class NewFile;
}

namespace dtsdb::internal::rtdb {

/// An open store file. Opening one file twice in a process would corrupt reading, so all databases of the process that
/// have the file open share one Environment, and the last to let go closes it: before anybody can open it anew.
class Environment {
 public:
  /// Opens the file at `path`, which is created where it does not exist unless `readOnly`. `sizeLimit` 0: as large as
  /// the address space allows. Null with the reason in `status` where that fails. A reader that may not write the lock
  /// file gets an environment of its own, with a copy of the store as it is now.
  static std::shared_ptr<Environment> Open(const std::string& path, bool readOnly, std::size_t sizeLimit,
                                           Status& status);

  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  /// The file's name as it was first opened, for messages.
  const std::string& Path() const { return m_file.Name(); }
  bool ReadOnly() const { return m_readOnly; }
  /// False in a process that was forked from the one which opened the file: LMDB can't be used there.
  bool OfThisProcess() const;
  /// Held while table handles are opened.
  std::mutex& HandleMutex() { return m_handles; }

  /// Begins a transaction, unless the file has gone from its place. A write transaction waits for that of another
  /// thread or program; a second one of this thread would wait for ever and is refused.
  Status Begin(bool write, MDB_txn*& transaction);
  /// Begins a reset read transaction anew.
  Status Renew(MDB_txn* transaction);
  /// Ends a read transaction but keeps it for Renew.
  void Reset(MDB_txn* transaction);
  /// Ends a transaction that has begun.
  Status Commit(MDB_txn* transaction, bool write);
  void Abort(MDB_txn* transaction, bool write);
  /// Writes the state of the last commit to a new file, which takes the place of `target` when it is whole and on the
  /// disk. Others may go on writing. `compact`: without free pages.
  Status Copy(const std::string& target, bool compact);

  /// Whether this process has the file at `path` open.
  static bool IsOpenHere(const std::string& path);

  /// Frees a read transaction that was reset.
  void Free(MDB_txn* transaction) const;

 private:
  friend class SoleUse;
  class Beginning;
  struct Registry;

  Environment() = default;
  ~Environment();

  static Registry& Known();
  static std::shared_ptr<Environment> Share(Environment* environment);
  static void Release(Environment* environment);
  Status OpenFile(const std::string& path, bool readOnly, std::size_t sizeLimit);
  Status OpenShared(bool readOnly, std::size_t sizeLimit, bool& retry, bool& copy);
  Status OpenCopy(std::size_t sizeLimit);
  Status OpenChecked(const std::string& path, std::size_t sizeLimit, unsigned flags);
  Status CheckOpened();
  void CloseFile();
  int TryMapSize(const std::string& path, std::size_t size, unsigned flags);
  template <class Start, class Undo>
  Status BeginWith(Start start, Undo undo);
  Status CopyTo(const NewFile& copy, const std::string& target, bool compact);
  void CheckReaders();
  void Ended();
  /// Whether several databases of this program have the file open.
  bool IsSharedHere() const;

  StoreFile m_file;
  MDB_env* m_env = nullptr;
  bool m_readOnly = false;
  bool m_isCopy = false;
  pid_t m_process = 0;
  int m_users = 0;  ///< guarded by the registry
  std::mutex m_handles;
  std::mutex m_mutex;                       ///< guards m_active
  int m_active = 0;                         ///< transactions that run or begin
  std::atomic<std::thread::id> m_writer{};  ///< given up before LMDB's lock is
  std::atomic<std::chrono::steady_clock::rep> m_lastReaderCheck{0};
};

/// The use of a file by one program alone, and there by one database when it begins. As long as it is held no other
/// program can open the file.
class SoleUse {
 public:
  /// False, without waiting, where others have the file open or are opening it.
  bool Take(const Environment& file);
  bool Held() const { return m_guard.has_value(); }

 private:
  std::optional<OpeningGuard> m_guard;
};

}  // namespace dtsdb::internal::rtdb
