#include "rtdb/internal/store_file.h"

#include <fcntl.h>
#include <lmdb.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

#include "include/write_whole.h"
#include "rtdb/internal/file_check.h"

namespace dtsdb::internal::rtdb {
namespace {

/// Where the mark lies: a byte that no store reaches.
constexpr off_t kMarkOffset = off_t{1} << 62;

struct flock Mark(short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kMarkOffset;
  lock.l_len = 1;
  return lock;
}

bool MayNotWrite(int error) { return error == EACCES || error == EPERM || error == EROFS; }

Status Gone(const std::string& path, const std::string& what) {
  return Status::Error(dbErrors::FileError, path + ": " + what + " since it was opened; open it anew");
}

}  // namespace

std::optional<FileId> IdOf(const std::string& path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) return std::nullopt;
  return FileId{about.st_dev, about.st_ino};
}

std::optional<FileId> IdOf(int descriptor) {
  struct stat about {};
  if (::fstat(descriptor, &about) != 0) return std::nullopt;
  return FileId{about.st_dev, about.st_ino};
}

Status OpenRefused(const std::string& path, const std::string& why) {
  return Status::Error(dbErrors::DatabaseOpenError, path + ": " + why);
}

Status StoreFile::Open(const std::string& name, bool readOnly) {
  m_name = name;
  // Looked at first: opening something else, such as a pipe, could wait for ever.
  struct stat about {};
  const bool exists = ::stat(name.c_str(), &about) == 0;
  if (exists && !S_ISREG(about.st_mode)) return OpenRefused(name, Reason(MDB_INVALID));
  m_mayWrite = true;
  m_file = Descriptor(::open(name.c_str(), O_RDWR | O_CLOEXEC));
  if (!m_file.IsOpen() && readOnly && MayNotWrite(errno)) {
    m_mayWrite = false;
    m_file = Descriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
  } else if (!m_file.IsOpen() && !readOnly && errno == ENOENT) {
    m_file = Descriptor(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode));
    if (!m_file.IsOpen() && errno == ENOENT) return OpenRefused(name, "no such folder");
    m_made = m_file.IsOpen();
  }
  if (!m_file.IsOpen()) return OpenRefused(name, std::strerror(errno));
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(name.c_str(), nullptr), std::free);
  const auto id = IdOf(m_file.Get());
  if (real == nullptr || !id) return OpenRefused(name, std::strerror(errno));
  m_realPath = real.get();
  m_id = *id;
  return {};
}

bool StoreFile::IsEmpty() const {
  struct stat about {};
  return ::fstat(m_file.Get(), &about) == 0 && about.st_size == 0;
}

int StoreFile::Mark() const {
  struct flock mark = rtdb::Mark(F_RDLCK);
  return ::fcntl(m_file.Get(), F_SETLK, &mark) == 0 ? 0 : errno;
}

pid_t StoreFile::MarkedBy() const {
  struct flock mark = rtdb::Mark(F_WRLCK);
  return ::fcntl(m_file.Get(), F_GETLK, &mark) == 0 && mark.l_type != F_UNLCK ? mark.l_pid : 0;
}

Status StoreFile::CheckSingleName() const {
  struct stat about {};
  if (::fstat(m_file.Get(), &about) == 0 && about.st_nlink <= 1) return {};
  return OpenRefused(m_name, "the file has " + std::to_string(about.st_nlink) +
                                 " names (hard links), and each would have a lock of its own; remove all but one");
}

Status StoreFile::CheckPlace() const {
  const auto now = IdOf(m_realPath);
  if (!now) return Gone(m_name, "the store has been removed or renamed");
  if (*now != m_id) return Gone(m_name, "another file has taken the place of the store");
  struct stat lock {};
  if (!m_lock.IsOpen() || (::fstat(m_lock.Get(), &lock) == 0 && lock.st_nlink > 0)) return {};
  return Status::Error(dbErrors::FileError, m_name + ": its lock file " + LockPath() +
                                                " has been removed or replaced; end all programs that use the store");
}

void StoreFile::EmptyIfUnfinished() const {
  if (m_mayWrite && MarkedBy() == 0 && IsUnfinished(m_file.Get()) && ::ftruncate(m_file.Get(), 0) != 0) {
    return;  // then it is refused as it is
  }
}

int StoreFile::SyncNew() const {
  const int error = SyncFile(m_file.Get());
  return error != 0 ? error : SyncFolder(FolderOf(m_realPath));
}

void StoreFile::RemoveIfNew() const {
  if (m_made && IsEmpty() && IdOf(m_realPath) == m_id) ::unlink(m_realPath.c_str());
}

OpeningGuard::~OpeningGuard() {
  // Not left to the closing of the file: a forked process may have it open, too.
  if (m_taken) ::flock(m_file, LOCK_UN);
}

int OpeningGuard::Take(std::chrono::milliseconds patience) {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + patience;
  while (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR && (errno != EWOULDBLOCK || steady_clock::now() > end)) return errno;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  m_taken = true;
  return 0;
}

}  // namespace dtsdb::internal::rtdb
