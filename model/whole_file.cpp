#include "model/whole_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "include/write_whole.h"

namespace fs = std::filesystem;

namespace dtsdb {
namespace {

constexpr mode_t kNewFileMode = 0666;
constexpr int kMostLinks = 40;

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

/// The path that symbolic links lead to; the file itself needs not exist.
fs::path WithoutLinks(fs::path path) {
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return path;
}

std::string NewNameBeside(const std::string& path) {
  const fs::path target(path);
  return (target.parent_path() / NewTemporaryName("." + target.filename().string() + ".")).string();
}

std::string NameOfDescriptor(int file) { return "/proc/self/fd/" + std::to_string(file); }

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
  const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file == -1) return;
  struct stat about {};
  const bool isFile = ::fstat(file, &about) == 0 && S_ISREG(about.st_mode);
  if (isFile && ::flock(file, LOCK_EX | LOCK_NB) == 0 && IsAt(file, path)) ::unlink(path.c_str());
  ::close(file);
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

/// Gives a new file the permissions and, where that can be had, the owner of the one that it is to replace.
void TakeAfter(int file, const struct stat& old) {
  if (::fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;  // an ordinary user's file is the user's
  ::fchmod(file, old.st_mode & 07777U);
}

}  // namespace

WholeFile::WholeFile(const QString& path) : m_path(path) {}

WholeFile::~WholeFile() {
  if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
}

bool WholeFile::Fail(int error) { return Fail(QString::fromStdString(std::generic_category().message(error))); }

bool WholeFile::Fail(const QString& why) {
  if (m_error.isEmpty()) m_error = why;
  return false;
}

/// The first failure is the reason: what follows may fail for another one.
qint64 WholeFile::Bytes::writeData(const char* data, qint64 size) {
  if (m_hasFailed) return -1;
  const qint64 written = QFile::writeData(data, size);
  m_hasFailed = written != size;
  return written;
}

bool WholeFile::Open() {
  const std::string path = WithoutLinks(QFile::encodeName(m_path).toStdString()).string();
  struct stat about {};
  const bool isThere = ::stat(path.c_str(), &about) == 0;
  if (isThere && S_ISDIR(about.st_mode)) return Fail(EISDIR);
  if (isThere && !S_ISREG(about.st_mode)) {
    m_file.setFileName(m_path);
    return m_file.open(QIODevice::WriteOnly) || Fail(m_file.errorString());
  }
  if (isThere && ::access(path.c_str(), W_OK) != 0) return Fail(errno);
  m_target = path;
  if (!OpenBeside(isThere)) return false;
  if (isThere) TakeAfter(m_file.handle(), about);
  return true;
}

/// Opens a new file in the folder of the target, without a name where that can be had.
bool WholeFile::OpenBeside(bool isThere) {
  const std::string folder = FolderOf(m_target);
  RemoveLeftFiles(folder);
  // Nobody else is to read what may be a secret, until it has the permissions of the old one.
  const mode_t mode = isThere ? 0600 : kNewFileMode;
  int file = -1;
  if (HasNamesOfDescriptors()) file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
  for (bool isOwn = file != -1; !isOwn;) {
    std::string name = NewNameBeside(m_target);
    file = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file == -1 && errno == EEXIST) continue;
    if (file == -1) return Fail(errno);
    isOwn = LockAsOwn(file) && IsAt(file, name);
    if (isOwn) m_temporary = std::move(name);
    if (!isOwn) ::close(file);
  }
  if (m_file.open(file, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) return true;
  ::close(file);
  return Fail(m_file.errorString());
}

bool WholeFile::Finish() {
  if (!m_file.flush() || m_file.HasFailed()) return Fail(m_file.errorString());
  if (m_target.empty()) return true;
  if (const int error = SyncFile(m_file.handle()); error != 0) return Fail(error);
  const AllSignalsHeld held;
  if (!TakePlace()) return false;
  m_file.close();
  const int error = SyncFolder(FolderOf(m_target));
  return error == 0 || Fail(error);
}

bool WholeFile::TakePlace() {
  if (m_temporary.empty() && !GiveName()) return false;
  if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) return Fail(errno);
  m_temporary.clear();
  return true;
}

/// Gives the file a name, from which it can be moved over the old one.
bool WholeFile::GiveName() {
  LockAsOwn(m_file.handle());
  const std::string file = NameOfDescriptor(m_file.handle());
  std::string name;
  do {
    name = NewNameBeside(m_target);
    if (::linkat(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      m_temporary = std::move(name);
      return true;
    }
  } while (errno == EEXIST);
  return Fail(errno);
}

}  // namespace dtsdb
