#include "tools/files.h"

#include <fmt/format.h>
#include <stdlib.h>
#include <unistd.h>

#include <QFile>
#include <QString>
#include <system_error>

#include "tools/failure.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

/// A name in the folder of `beside` that nothing bears yet.
fs::path FreeSibling(const fs::path& beside) {
  fs::path path;
  int number = 0;
  std::error_code error;
  do {
    const std::string name = fmt::format(".{}.{}-{}", beside.filename().string(), getpid(), number++);
    path = beside.parent_path() / name;
  } while (fs::exists(fs::symlink_status(path, error)));
  return path;
}

}  // namespace

QString QtPath(const fs::path& path) { return QFile::decodeName(QByteArray::fromStdString(path.string())); }

void RefuseFile(const fs::path& path, const std::string& what) {
  throw Failure(EXIT_FILE, path.string() + ": " + what);
}

std::string ReadFile(const fs::path& path) {
  QFile file(QtPath(path));
  if (!file.open(QIODevice::ReadOnly)) RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  const QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError) {
    RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  }
  return bytes.toStdString();
}

void WriteFile(const fs::path& path, const std::string& bytes) {
  QFile file(QtPath(path));
  const auto size = static_cast<qint64>(bytes.size());
  const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.flush();
  if (!written) RefuseFile(path, "can't be written: " + file.errorString().toStdString());
}

SiblingFolder::SiblingFolder(const fs::path& beside) : m_path(FreeSibling(beside)) {
  std::error_code error;
  if (fs::is_directory(beside, error)) {
    fs::create_directory(m_path, beside, error);  // with the same permissions
  } else {
    fs::create_directory(m_path, error);
  }
  if (error) RefuseFile(beside, "can't be written: " + error.message());
}

SiblingFolder::~SiblingFolder() {
  std::error_code ignored;
  if (!m_path.empty()) fs::remove_all(m_path, ignored);
}

void SiblingFolder::TakePlaceOf(const fs::path& target) {
  std::error_code error;
  fs::path old;
  if (fs::exists(target, error)) {
    old = FreeSibling(target);
    fs::rename(target, old, error);
    if (error) RefuseFile(target, "can't be replaced: " + error.message());
  }
  fs::rename(m_path, target, error);
  if (error) {
    std::error_code ignored;
    if (!old.empty()) fs::rename(old, target, ignored);
    RefuseFile(target, "can't be written: " + error.message());
  }
  m_path = old;  // goes with this object
}

TemporaryCurrentFolder::TemporaryCurrentFolder() {
  std::error_code error;
  m_before = fs::current_path(error);
  std::string path = (fs::temp_directory_path(error) / "dtsdb-XXXXXX").string();
  if (error || mkdtemp(path.data()) == nullptr) RefuseFile(path, "can't be made");
  m_path = path;
  fs::current_path(m_path, error);
}

TemporaryCurrentFolder::~TemporaryCurrentFolder() {
  std::error_code ignored;
  fs::current_path(m_before, ignored);
  fs::remove_all(m_path, ignored);
}

}  // namespace dtsdb::tools
