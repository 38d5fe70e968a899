#include "command/task_lock.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "formats/failure.h"
#include "formats/files.h"
#include "include/write_whole.h"
#include "rtdb/file_name.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr mode_t kFileMode = 0664;

/// What a lock file contains.
struct Holder {
  long process = 0;
  unsigned long device = 0;  ///< of its database
  unsigned long inode = 0;
};

/// The database, kept from the other tasks that want its lock as long as this lives: the contents of the lock file are
/// then those of whoever has its lock.
class GuardedDatabase {
 public:
  explicit GuardedDatabase(const std::string& file) : m_file(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (m_file == -1 || ::flock(m_file, LOCK_EX) != 0 || ::fstat(m_file, &m_about) != 0) {
      const int error = errno;
      if (m_file != -1) ::close(m_file);
      RefuseFile(file, std::strerror(error));
    }
  }
  GuardedDatabase(const GuardedDatabase&) = delete;
  GuardedDatabase& operator=(const GuardedDatabase&) = delete;
  ~GuardedDatabase() { ::close(m_file); }

  Holder ThisProcess() const { return {::getpid(), m_about.st_dev, m_about.st_ino}; }
  bool IsOf(const Holder& holder) const { return holder.device == m_about.st_dev && holder.inode == m_about.st_ino; }

 private:
  int m_file;
  struct stat m_about {};
};

/// The file itself, whatever link leads to it: one database has one lock.
std::string LockFileOf(const std::string& file) {
  std::error_code error;
  const fs::path path = fs::canonical(file, error);
  return (error ? file : path.string()) + "-task";
}

int OpenLockFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
  if (file == -1) RefuseFile(path, std::strerror(errno));
  return file;
}

Holder HolderIn(int file) {
  std::array<char, 128> text{};
  Holder holder;
  const bool read = ReadWhole(file, text.data(), text.size() - 1, 0) > 0;
  const bool whole =
      read && std::sscanf(text.data(), "%ld %lu %lu", &holder.process, &holder.device, &holder.inode) == 3;
  return whole ? holder : Holder();
}

/// 0 or an error number.
int WriteHolder(int file, const Holder& holder) {
  const std::string text = fmt::format("{} {} {}\n", holder.process, holder.device, holder.inode);
  return ::ftruncate(file, 0) == 0 ? WriteWhole(file, text.data(), text.size(), 0) : errno;
}

/// Takes the lock of an open lock file. 0 or an error number.
int TakeLock(int file) { return ::flock(file, LOCK_EX | LOCK_NB) == 0 ? 0 : errno; }

}  // namespace

TaskLock::TaskLock(const std::string& database) {
  const std::string file = rtdb::FileOf(database);
  const std::string path = LockFileOf(file);
  const GuardedDatabase guarded(file);
  m_file = OpenLockFile(path);
  int error = TakeLock(m_file);
  const Holder holder = HolderIn(m_file);
  if (error == EWOULDBLOCK && !guarded.IsOf(holder)) {
    // The task of a database that stood here before. It keeps the lock of its file, which loses its name.
    ::close(m_file);
    ::unlink(path.c_str());
    m_file = OpenLockFile(path);
    error = TakeLock(m_file);
  }
  if (error == 0) error = WriteHolder(m_file, guarded.ThisProcess());
  if (error == 0) return;
  ::close(m_file);
  if (error != EWOULDBLOCK) RefuseFile(path, std::strerror(error));
  RefuseFile(file, fmt::format("process {} runs its topology task already; end that one first, or send it SIGHUP to "
                               "have the model read again",
                               holder.process));
}

TaskLock::~TaskLock() { ::close(m_file); }

}  // namespace dtsdb::tools
