#include "model/whole_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "include/internal/new_file.h"

namespace fs = std::filesystem;

namespace dtsdb {
namespace {

constexpr mode_t kNewFileMode = 0666;
constexpr int kMostLinks = 40;

/// The path that symbolic links lead to; the file itself needs not exist.
fs::path WithoutLinks(fs::path path) {
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return path;
}

/// Gives a new file the permissions and, where that can be had, the owner of the one that it is to replace.
void TakeAfter(int file, const struct stat& old) {
  if (::fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;  // an ordinary user's file is the user's
  ::fchmod(file, old.st_mode & 07777U);
}

}  // namespace

WholeFile::WholeFile(const QString& path) : m_path(path) {}

WholeFile::~WholeFile() = default;

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
  m_new = std::make_unique<internal::NewFile>(path);
  // Nobody else is to read what may be a secret, until it has the permissions of the old one.
  if (const int error = m_new->Make(isThere ? 0600 : kNewFileMode); error != 0) return Fail(error);
  if (isThere) TakeAfter(m_new->Fd(), about);
  return m_file.open(m_new->Fd(), QIODevice::WriteOnly) || Fail(m_file.errorString());
}

bool WholeFile::Finish() {
  if (!m_error.isEmpty()) return false;  // what has failed once isn't tried again: it may have its place already
  if (!m_file.flush() || m_file.HasFailed()) return Fail(m_file.errorString());
  if (!m_new) return true;
  const int error = m_new->Replace();
  m_file.close();
  return error == 0 || Fail(error);
}

}  // namespace dtsdb
