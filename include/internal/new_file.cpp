#include "include/internal/new_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "include/write_whole.h"

namespace dtsdb::internal {
namespace {

namespace fs = std::filesystem;

constexpr int kNames = 100;

/// Holds back all signals: what is done meanwhile is done whole.
class AllSignalsHeld {
 public:
  AllSignalsHeld() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, &m_before);
  }
  AllSignalsHeld(const AllSignalsHeld&) = delete;
  AllSignalsHeld& operator=(const AllSignalsHeld&) = delete;
  ~AllSignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

 private:
  sigset_t m_before{};
};

std::string NewNameBeside(const std::string& place) {
  const fs::path target(place);
  return (target.parent_path() / NewTemporaryName("." + target.filename().string() + ".")).string();
}

/// Whether `file` still has the name `path`.
bool IsAt(int file, const std::string& path) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file, &opened) == 0 && ::lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

/// Locks a file for as long as it is open, so that nobody takes it for a leftover. False when another process has it.
bool LockAsOwn(int file) { return ::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

void RemoveIfLeft(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat about {};
  const bool isFile = file.IsOpen() && ::fstat(file.Get(), &about) == 0 && S_ISREG(about.st_mode);
  if (isFile && ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0 && IsAt(file.Get(), path)) ::unlink(path.c_str());
}

/// Removes the files in `folder` that killed programs were writing.
void RemoveLeftFiles(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> found;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with('.') && IsTemporaryName(name)) found.push_back(entry->path().string());
  }
  for (const std::string& path : found) RemoveIfLeft(path);
}

bool HasNamesOfDescriptors() { return ::access("/proc/self/fd", X_OK) == 0; }

}  // namespace

NewFile::~NewFile() {
  if (!m_name.empty()) ::unlink(m_name.c_str());
}

int NewFile::Make(mode_t permissions) {
  const std::string folder = FolderOf(m_place);
  RemoveLeftFiles(folder);
  if (HasNamesOfDescriptors()) {
    m_file = Descriptor(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, permissions));
  }
  return m_file.IsOpen() ? 0 : MakeNamed(permissions);
}

int NewFile::MakeNamed(mode_t permissions) {
  for (int attempt = 0; attempt < kNames; ++attempt) {
    std::string name = NewNameBeside(m_place);
    Descriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
    if (!file.IsOpen() && errno != EEXIST) return errno;
    if (!file.IsOpen() || !LockAsOwn(file.Get()) || !IsAt(file.Get(), name)) continue;
    m_file = std::move(file);
    m_name = std::move(name);
    return 0;
  }
  return EEXIST;
}

/// Gives the file a name, from which it can be moved to its place.
int NewFile::GiveName() {
  if (!m_name.empty()) return 0;
  LockAsOwn(m_file.Get());
  for (int attempt = 0; attempt < kNames; ++attempt) {
    std::string name = NewNameBeside(m_place);
    if (::linkat(AT_FDCWD, Path().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      m_name = std::move(name);
      return 0;
    }
    if (errno != EEXIST) return errno;
  }
  return EEXIST;
}

/// Moves the file from the name it has to `target`, by the flags of renameat2.
int NewFile::Move(const std::string& target, unsigned flags) {
  if (const int error = GiveName(); error != 0) return error;
  return ::renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, target.c_str(), flags) == 0 ? 0 : errno;
}

int NewFile::TakePlace(unsigned flags) {
  if (const int error = SyncFile(m_file.Get()); error != 0) return error;
  const AllSignalsHeld held;
  if (const int error = Move(m_place, flags); error != 0) return error;
  m_name.clear();
  return SyncFolder(FolderOf(m_place));
}

int NewFile::Replace() { return TakePlace(0); }
int NewFile::TakeFreePlace() { return TakePlace(RENAME_NOREPLACE); }

/// The new file gets the name `old` first, so that the old one never has a name under which leftovers are removed.
int NewFile::Exchange(const std::string& old) {
  if (const int error = SyncFile(m_file.Get()); error != 0) return error;
  const AllSignalsHeld held;
  if (const int error = Move(old, RENAME_NOREPLACE); error != 0) return error;
  m_name = old;
  if (const int error = Move(m_place, RENAME_EXCHANGE); error != 0) return error;
  m_name.clear();
  const int error = SyncFolder(FolderOf(old));
  return error == 0 ? SyncFolder(FolderOf(m_place)) : error;
}

}  // namespace dtsdb::internal
