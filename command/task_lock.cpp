#include "command/task_lock.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "formats/failure.h"
#include "formats/files.h"
#include "rtdb/file_name.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr mode_t kFileMode = 0664;

/// The file beside the database itself, whatever link leads to it.
std::string NumberFileOf(const std::string& file) {
  std::error_code error;
  const fs::path path = fs::canonical(file, error);
  return (error ? file : path.string()) + "-task";
}

/// The number in the file; 0 for a moment, until the process that has just taken the lock has written its own.
long HolderIn(const std::string& path) {
  long number = 0;
  std::ifstream(path) >> number;
  return number;
}

/// A Failure when that can't be done.
void WriteOwnNumber(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kFileMode);
  if (file == -1) RefuseFile(path, std::strerror(errno));
  const std::string text = fmt::format("{}\n", ::getpid());
  errno = EIO;
  const bool written = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const int error = errno;
  ::close(file);
  if (!written) RefuseFile(path, std::strerror(error));
}

/// Opens the database and locks it.
int Lock(const std::string& file, const std::string& numberFile) {
  const int lock = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (lock == -1) RefuseFile(file, std::strerror(errno));
  if (::flock(lock, LOCK_EX | LOCK_NB) == 0) return lock;
  const int error = errno;
  ::close(lock);
  if (error != EWOULDBLOCK) RefuseFile(file, std::strerror(error));
  const long holder = HolderIn(numberFile);
  RefuseFile(file, fmt::format("{} runs its topology task already; end that one first, or send it SIGHUP to have the "
                               "model read again",
                               holder > 0 ? fmt::format("process {}", holder) : "another process"));
}

}  // namespace

TaskLock::TaskLock(const std::string& database) {
  const std::string file = rtdb::FileOf(database);
  const std::string numberFile = NumberFileOf(file);
  m_file = Lock(file, numberFile);
  WriteOwnNumber(numberFile);
}

TaskLock::~TaskLock() { ::close(m_file); }

}  // namespace dtsdb::tools
