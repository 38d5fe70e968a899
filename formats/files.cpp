#include "formats/files.h"

#include <QFile>
#include <QString>

#include "formats/failure.h"
#include "model/whole_file.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {

QString QtPath(const fs::path& path) { return QFile::decodeName(QByteArray::fromStdString(path.string())); }

void RefuseFile(const fs::path& path, const std::string& what) {
  throw Failure(kExitFile, path.string() + ": " + what);
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

std::string_view WithoutByteOrderMark(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  return bytes;
}

void WriteFile(const fs::path& path, const std::string& bytes) {
  WholeFile file(QtPath(path));
  if (file.Open()) {
    file.Device().write(bytes.data(), static_cast<qint64>(bytes.size()));  // a failure stays with the device
    if (file.Finish()) return;
  }
  RefuseFile(path, "can't be written: " + file.Error().toStdString());
}

}  // namespace dtsdb::tools
