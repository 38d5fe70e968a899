/// \file
/// Folders that a process has for itself, and that don't outlive it.
#pragma once

#include <sys/types.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

namespace dtsdb::tools {

/// Holds back the signals that end a program as long as this lives: what is done meanwhile is done whole.
class SignalsHeld {
 public:
  SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld();

 private:
  sigset_t m_before{};
};

/// An exclusive lock on a folder, which ends with this or with the process.
class FolderLock {
 public:
  /// Locks `folder` unless another process has locked it or its file system can't lock folders.
  explicit FolderLock(const std::filesystem::path& folder);
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();

  bool IsOpen() const { return m_descriptor != -1; }
  bool IsHeld() const { return m_error == 0; }
  /// True when another process has locked it.
  bool IsHeldElsewhere() const { return m_error == EWOULDBLOCK; }
  /// True when `folder` is still the one that was opened.
  bool IsOf(const std::filesystem::path& folder) const;

 private:
  int m_descriptor;
  int m_error;
};

/// A new folder under a name of its own. It is removed, with the files in it, when this goes and when a signal of the
/// terminal, of a pipe or SIGTERM ends the process. What a killed process leaves is removed by the next one that makes
/// such a folder in the same place: it is locked as long as its process lives.
///
/// For a process with one thread: the signal is handled on it.
class TemporaryFolder {
 public:
  /// Makes `parent`/FRONTdtsdb-XXXXXX with the permissions `mode`, and removes leftovers in `parent`. FRONT is empty
  /// or begins and ends with a dot. Throws Failure, about `parent`, when that can't be done.
  TemporaryFolder(const std::filesystem::path& parent, const std::string& front, mode_t mode);
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Where it is, from the root on.
  const std::filesystem::path& Path() const { return m_path; }

 private:
  bool Make(const std::filesystem::path& parent, const std::string& front, mode_t mode);

  std::filesystem::path m_path;
  std::unique_ptr<FolderLock> m_lock;
};

/// Removes a folder and the files in it; one with folders in it stays, with them alone. Safe in a signal handler.
void RemoveFolder(const char* path);

/// Makes a new temporary folder the current one for as long as it lives, for what writes files where it stands.
class TemporaryCurrentFolder {
 public:
  TemporaryCurrentFolder();
  TemporaryCurrentFolder(const TemporaryCurrentFolder&) = delete;
  TemporaryCurrentFolder& operator=(const TemporaryCurrentFolder&) = delete;
  ~TemporaryCurrentFolder();

 private:
  std::filesystem::path m_before;
  TemporaryFolder m_folder;
};

}  // namespace dtsdb::tools
