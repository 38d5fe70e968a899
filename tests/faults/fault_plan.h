/// \file
/// What the environment asks the fault library for, and which calls fail for it (tests/faults/fault_library.cpp).
#pragma once

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "tests/faults/record.h"

namespace dtsdb::test::fault {

/// The next function of this name, that of the C library.
template <class Function>
Function* Next(Function*& known, const char* name) {
  if (known == nullptr) known = reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
  return known;
}

/// What the environment asks for. Filled by the first call that needs it; nothing in it needs to be destroyed.
struct Plan {
  char folder[PATH_MAX] = {};
  std::size_t folderSize = 0;
  CallCounts* counts = nullptr;
  int kind = -1;
  long at = 0;
  int error = 0;
  bool stays = false;
  int record = -1;

  Plan() {
    const int before = errno;
    if (const char* text = std::getenv("FAULT_FOLDER")) {
      folderSize = std::min(std::strlen(text), sizeof folder - 1);
      std::memcpy(folder, text, folderSize);
    }
    kind = Number("FAULT_KIND", -1);
    at = Number("FAULT_AT", 0);
    error = Number("FAULT_ERROR", 0);
    stays = std::getenv("FAULT_STAYS") != nullptr;
    if (const char* path = std::getenv("FAULT_COUNTS")) MapCounts(path);
    if (const char* path = std::getenv("FAULT_RECORD")) OpenRecord(path);
    errno = before;
  }

  static int Number(const char* name, int none) {
    const char* const text = std::getenv(name);
    return text == nullptr ? none : std::atoi(text);
  }
  void MapCounts(const char* path);
  void OpenRecord(const char* path);
};

Plan& ThePlan();

/// The calls of the C library themselves.
int RealOpen(const char* path, int flags, mode_t mode);
ssize_t RealWrite(int file, const void* bytes, std::size_t size);
int RealClose(int file);

/// What an open descriptor or a path leads to, as a path.
class Place {
 public:
  explicit Place(int file) {
    char link[32];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    Take(::readlink(link, m_path, sizeof m_path - 1));
  }
  Place(int folder, const char* path) {
    if (path == nullptr) return;
    if (path[0] != '/') {
      if (folder == AT_FDCWD) {
        Take(::getcwd(m_path, sizeof m_path) == nullptr ? -1 : static_cast<ssize_t>(std::strlen(m_path)));
      } else {
        *this = Place(folder);
      }
      Add("/");
    }
    Add(path);
  }

  std::string_view Path() const { return {m_path, m_size}; }
  std::string_view Name() const { return Path().substr(Path().rfind('/') + 1); }
  bool IsBelow() const {
    const Plan& plan = ThePlan();
    return plan.folderSize != 0 && m_size >= plan.folderSize && std::memcmp(m_path, plan.folder, plan.folderSize) == 0;
  }
  /// The inode of the folder that it is in, or 0.
  std::uint64_t Folder() const {
    char folder[PATH_MAX + 2];
    const std::size_t size = Path().rfind('/');
    std::memcpy(folder, m_path, size);
    folder[size] = '\0';
    struct stat about {};
    return ::stat(folder, &about) == 0 ? about.st_ino : 0;
  }
  std::uint64_t Inode() const {
    struct stat about {};
    return ::lstat(m_path, &about) == 0 ? about.st_ino : 0;
  }

 private:
  void Take(ssize_t size) {
    m_size = size > 0 ? static_cast<std::size_t>(size) : 0;
    m_path[m_size] = '\0';
  }
  void Add(const char* text) {
    const std::size_t size = std::min(std::strlen(text), sizeof m_path - 1 - m_size);
    std::memcpy(m_path + m_size, text, size);
    Take(static_cast<ssize_t>(m_size + size));
  }

  char m_path[PATH_MAX] = {};
  std::size_t m_size = 0;
};

/// Counts a call. True when it is one that is to fail.
bool Fails(CallKind kind);

/// Whether the call of `kind` on an open file or on a path is to fail; errno is then the error, else what it was.
bool FileFails(CallKind kind, int file);
bool PathFails(CallKind kind, int folder, const char* path);

/// Keeps errno as it is.
class ErrnoKept {
 public:
  ErrnoKept() : m_errno(errno) {}
  ErrnoKept(const ErrnoKept&) = delete;
  ErrnoKept& operator=(const ErrnoKept&) = delete;
  ~ErrnoKept() { errno = m_errno; }

 private:
  int m_errno;
};

}  // namespace dtsdb::test::fault
