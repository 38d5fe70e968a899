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

/// Holds back the signals that end a program as long as this lives: what is done meanwhile is done whole. A signal that
/// comes on another thread waits there. One of these lives at a time; other threads wait for their turn.
class SignalsHeld {
 public:
  SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld();

 private:
  sigset_t m_before{};
};

/// A folder held open, to see whether a path still means it.
class OpenFolder {
 public:
  explicit OpenFolder(const std::filesystem::path& folder, int flags = 0);
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;
  ~OpenFolder();

  /// False when there was no folder, or it can't be opened.
  bool IsOpen() const { return m_descriptor != -1; }
  /// True when `folder` is this one.
  bool IsAt(const std::filesystem::path& folder) const;
  int Descriptor() const { return m_descriptor; }

 private:
  int m_descriptor;
};

/// An exclusive lock on a folder, which ends with this or with the process.
class FolderLock {
 public:
  /// Locks `folder` unless another process has locked it or its file system can't lock folders.
  explicit FolderLock(const std::filesystem::path& folder);

  const OpenFolder& Folder() const { return m_folder; }
  bool IsHeld() const { return m_error == 0; }
  /// True when another process has locked it.
  bool IsHeldElsewhere() const { return m_error == EWOULDBLOCK; }

 private:
  OpenFolder m_folder;
  int m_error;
};

/// A new folder under a name of its own. It is removed, with the files in it, when this goes and when a signal of the
/// terminal, of a pipe or SIGTERM ends the process. What a killed process leaves is removed by the next one that makes
/// such a folder in the same place: it is locked as long as its process lives.
///
/// Any thread may make one, and the signal may come on any.
class TemporaryFolder {
 public:
  /// Makes `parent`/FRONTdtsdb-XXXXXX with the permissions `mode`, and removes leftovers in `parent`. FRONT is empty
  /// or begins and ends with a dot. Throws Failure when that can't be done: `target`, for whose sake it is made, can't
  /// be written.
  TemporaryFolder(const std::filesystem::path& parent, const std::string& front, mode_t mode,
                  const std::filesystem::path& target);
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Where it is, from the root on.
  const std::filesystem::path& Path() const { return m_path; }

 private:
  bool Make(const std::filesystem::path& parent, const std::string& front, mode_t mode,
            const std::filesystem::path& target);

  std::filesystem::path m_path;
  std::unique_ptr<FolderLock> m_lock;
};

/// Removes the temporary folders of this process, for its early end, which must follow: no thread makes or leaves a
/// temporary folder any more. Safe in a signal handler.
void RemoveTemporaryFolders();

/// Removes a folder and the files in it; one with folders in it stays, with them alone. Safe in a signal handler.
void RemoveFolder(const char* path);

}  // namespace dtsdb::tools
