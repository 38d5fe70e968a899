/// \file
/// A store's file on the disk: which one it is, whatever name leads to it, and whether it still stands there.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <compare>
#include <optional>
#include <string>
#include <utility>

#include "include/internal/descriptor.h"
#include "rtdb/internal/status.h"

namespace dtsdb::internal::rtdb {

/// A file by what it is, not by a name.
struct FileId {
  dev_t device = 0;
  ino_t inode = 0;
  auto operator<=>(const FileId&) const = default;
};

/// The permissions of the files that are made, before the user's mask.
inline constexpr mode_t kFileMode = 0664;

/// The file that a path leads to, or nothing.
std::optional<FileId> IdOf(const std::string& path);
std::optional<FileId> IdOf(int descriptor);

/// The error of the opening of a store.
Status OpenRefused(const std::string& path, const std::string& why);

/// The open file of a store. A name is resolved once, when it is opened; the lock file stands beside the file itself,
/// so that all names lead to one lock.
///
/// Programs that have the file open mark it with a record lock, beside the locks that LMDB has in the lock file. So a
/// program that finds another lock file than they, or none, notices that they are there.
class StoreFile {
 public:
  /// Opens the file called `name`. Unless `readOnly`, the file must be writable and is made where there is none.
  Status Open(const std::string& name, bool readOnly);

  const std::string& Name() const { return m_name; }
  /// Its path without links.
  const std::string& RealPath() const { return m_realPath; }
  std::string LockPath() const { return m_realPath + "-lock"; }
  FileId Id() const { return m_id; }
  int Fd() const { return m_file.Get(); }
  bool MayWrite() const { return m_mayWrite; }
  /// Whether nothing has been stored in it yet.
  bool IsEmpty() const;

  /// Marks the file as used by this process until it is closed. 0 or an error number.
  int Mark() const;
  /// Another process that has marked the file, or 0.
  pid_t MarkedBy() const;

  /// Fails when the file has another name: a store of two names would have two locks.
  Status CheckSingleName() const;
  /// Fails when the path no longer leads to this file, or when the lock file has been removed or replaced. Runs with
  /// every transaction: two calls of the system, one of them by path.
  Status CheckPlace() const;

  /// Takes the lock file `descriptor`, open for nothing but looking at it, as the one in use with this file.
  void SetLockFile(Descriptor descriptor) { m_lock = std::move(descriptor); }
  std::optional<FileId> LockFile() const { return IdOf(m_lock.Get()); }

  /// Empties a file that was never finished, for one that nobody else has open. Under the guard.
  void EmptyIfUnfinished() const;
  /// Waits until a file that has been made, and its name, are on the disk. 0 or an error number.
  int SyncNew() const;
  /// Removes the file if it was made by Open and nothing has been stored in it. Under the guard.
  void RemoveIfNew() const;

 private:
  std::string m_name;
  std::string m_realPath;
  Descriptor m_file;
  FileId m_id;
  Descriptor m_lock;
  bool m_mayWrite = false;
  bool m_made = false;
};

/// Keeps other programs from opening the same file as long as it lives.
class OpeningGuard {
 public:
  explicit OpeningGuard(int file) : m_file(file) {}
  OpeningGuard(const OpeningGuard&) = delete;
  OpeningGuard& operator=(const OpeningGuard&) = delete;
  ~OpeningGuard();
  /// Waits for other programs that are opening the file, but no longer than `patience`. 0 or an error number.
  int Take(std::chrono::milliseconds patience = std::chrono::seconds(10));

 private:
  int m_file;
  bool m_taken = false;
};

}  // namespace dtsdb::internal::rtdb
