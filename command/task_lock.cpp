#include "command/task_lock.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>

#include "formats/failure.h"
#include "formats/files.h"
#include "rtdb/file_name.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr mode_t kFileMode = 0664;

/// The file itself, whatever link leads to it: one database has one lock.
std::string LockFileOf(const std::string& file) {
  std::error_code error;
  const fs::path path = fs::canonical(file, error);
  return (error ? file : path.string()) + "-task";
}

/// The number in a lock file; 0 for a moment, until the process that has just taken the lock has written its own.
long HolderIn(int file) {
  std::array<char, 32> text{};
  const ssize_t length = ::pread(file, text.data(), text.size(), 0);
  long number = 0;
  if (length > 0) std::from_chars(text.data(), text.data() + length, number);
  return number;
}

/// False when the file can't take it.
bool WriteOwnNumber(int file) {
  const std::string text = fmt::format("{}\n", ::getpid());
  errno = EIO;
  return ::ftruncate(file, 0) == 0 && ::pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

}  // namespace

TaskLock::TaskLock(const std::string& database) {
  const std::string file = rtdb::FileOf(database);
  const std::string path = LockFileOf(file);
  m_file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
  if (m_file == -1) RefuseFile(path, std::strerror(errno));
  if (::flock(m_file, LOCK_EX | LOCK_NB) == 0 && WriteOwnNumber(m_file)) return;
  const int error = errno;
  const long holder = HolderIn(m_file);
  ::close(m_file);
  if (error != EWOULDBLOCK) RefuseFile(path, std::strerror(error));
  RefuseFile(file, fmt::format("{} runs its topology task already; end that one first, or send it SIGHUP to have the "
                               "model read again",
                               holder > 0 ? fmt::format("process {}", holder) : "another process"));
}

TaskLock::~TaskLock() { ::close(m_file); }

}  // namespace dtsdb::tools
