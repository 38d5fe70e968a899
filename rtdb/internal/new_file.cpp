#include "rtdb/internal/new_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "include/write_whole.h"

namespace dtsdb::internal::rtdb {
namespace {

/// A hidden name beside `place` that nothing has, as far as one can know.
std::string HiddenName(const std::string& place, int attempt) {
  return FolderOf(place) + "/." + std::filesystem::path(place).filename().string() + ".dtsdb-" +
         std::to_string(::getpid()) + "-" + std::to_string(attempt);
}

constexpr int kNames = 100;

}  // namespace

NewFile::~NewFile() {
  if (!m_name.empty()) ::unlink(m_name.c_str());
}

int NewFile::Make() {
  m_file = Descriptor(::open(FolderOf(m_place).c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, kFileMode));
  if (m_file.IsOpen()) return 0;
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return errno;
  for (int attempt = 0; attempt < kNames; ++attempt) {
    const std::string name = HiddenName(m_place, attempt);
    m_file = Descriptor(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
    if (!m_file.IsOpen() && errno == EEXIST) continue;
    if (!m_file.IsOpen()) return errno;
    m_name = name;
    return 0;
  }
  return EEXIST;
}

int NewFile::GiveName() {
  if (const int error = SyncFile(m_file.Get()); error != 0) return error;
  for (int attempt = 0; m_name.empty() && attempt < kNames; ++attempt) {
    const std::string name = HiddenName(m_place, attempt);
    if (::linkat(AT_FDCWD, Path().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      m_name = name;
    } else if (errno != EEXIST) {
      return errno;
    }
  }
  return m_name.empty() ? EEXIST : 0;
}

int NewFile::Replace() {
  if (const int error = GiveName(); error != 0) return error;
  if (::rename(m_name.c_str(), m_place.c_str()) != 0) return errno;
  m_name.clear();
  return SyncFolder(FolderOf(m_place));
}

int NewFile::TakeFreePlace() {
  if (const int error = GiveName(); error != 0) return error;
  if (::renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, m_place.c_str(), RENAME_NOREPLACE) != 0) return errno;
  m_name.clear();
  return SyncFolder(FolderOf(m_place));
}

int NewFile::Exchange(const std::string& old) {
  if (const int error = GiveName(); error != 0) return error;
  if (::renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, m_place.c_str(), RENAME_EXCHANGE) != 0) return errno;
  // From here on the hidden name is that of the old file.
  const std::string hidden = std::exchange(m_name, {});
  if (::renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, old.c_str(), RENAME_NOREPLACE) == 0)
    return SyncFolder(FolderOf(m_place));
  const int error = errno;
  if (::renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, m_place.c_str(), RENAME_EXCHANGE) == 0) m_name = hidden;
  return error;
}

}  // namespace dtsdb::internal::rtdb
