/// \file
/// Writing and reading at a place of an open file, all or an error; waiting until files and folders are on the disk;
/// the names that files have while they are written.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

namespace dtsdb {

/// Writes all the bytes at `offset` of the file `descriptor`, also where the system takes them in parts or interrupts
/// it. Returns 0 or the number of an error.
inline int WriteWhole(int descriptor, const void* bytes, std::size_t size, off_t offset) {
  const auto* left = static_cast<const char*>(bytes);
  while (size > 0) {
    const ssize_t written = ::pwrite(descriptor, left, size, offset);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : EIO;
    left += written;
    size -= static_cast<std::size_t>(written);
    offset += written;
  }
  return 0;
}

/// Reads all the bytes at `offset` likewise. Returns how many there are, fewer than `size` at the end of the file, or
/// -1 with the error in errno.
inline ssize_t ReadWhole(int descriptor, void* bytes, std::size_t size, off_t offset) {
  auto* const into = static_cast<char*>(bytes);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::pread(descriptor, into + done, size - done, offset + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return static_cast<ssize_t>(done);
}

/// Waits until an open file or folder is on the disk. Returns 0 or the number of an error. What can't be synchronised,
/// such as a pipe, is as good as it can be.
inline int SyncFile(int file) {
  while (::fsync(file) != 0) {
    if (errno == EINVAL || errno == ENOTSUP || errno == EROFS) return 0;
    if (errno != EINTR) return errno;
  }
  return 0;
}

/// The same for the folder `path`, an empty one meaning the current folder; one that may not be read is left to the
/// system.
inline int SyncFolder(const std::string& path) {
  const int folder = ::open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder == -1) return errno == EACCES ? 0 : errno;
  const int error = SyncFile(folder);
  ::close(folder);
  return error;
}

/// The folder in which `path` lies.
inline std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// A name for a file or folder that is being written: FRONTdtsdb- and six hexadecimal digits. FRONT is empty or begins
/// and ends with a dot. It is hardly in use.
std::string NewTemporaryName(const std::string& front);

/// Whether NewTemporaryName returns such names.
bool IsTemporaryName(std::string_view name);

}  // namespace dtsdb
