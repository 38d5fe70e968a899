#include "formats/files.h"

#include <fmt/format.h>

#include <QFile>
#include <QString>
#include <algorithm>

#include "formats/failure.h"
#include "model/whole_file.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {

QString QtPath(const fs::path& path) { return QFile::decodeName(QByteArray::fromStdString(path.string())); }

void RefuseFile(const fs::path& path, const std::string& what) {
  throw Failure(kExitFile, path.string() + ": " + what);
}

std::string ReadFile(const fs::path& path, std::size_t most) {
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  constexpr std::size_t kMebibyte = std::size_t{1} << 20;
  QFile file(QtPath(path));
  if (!file.open(QIODevice::ReadOnly)) RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  std::string bytes;
  for (qint64 got = 1; got > 0;) {
    const std::size_t before = bytes.size();
    const auto known = static_cast<std::size_t>(std::max<qint64>(0, file.bytesAvailable()));
    if (before + known > most) RefuseFile(path, fmt::format("has more than {} MiB", most / kMebibyte));
    bytes.resize(before + std::max(kPiece, known));
    got = file.read(bytes.data() + before, static_cast<qint64>(bytes.size() - before));
    bytes.resize(before + static_cast<std::size_t>(std::max<qint64>(0, got)));
  }
  if (file.error() != QFileDevice::NoError) {
    RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  }
  return bytes;
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
