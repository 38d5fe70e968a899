/// \file
/// A file that is read with its progress shown.
#pragma once

#include <QFile>
#include <cstdint>
#include <filesystem>
#include <functional>

#include "formats/files.h"

namespace dtsdb::tools {

/// A file that calls `count` with the bytes that have been read from it since the last call. `count` must live as long.
class CountedFile : public QFile {
 public:
  CountedFile(const std::filesystem::path& path, const std::function<void(std::uint64_t)>& count)
      : QFile(QtPath(path)), m_count(count) {}

 protected:
  qint64 readData(char* data, qint64 size) override {
    const qint64 bytes = QFile::readData(data, size);
    if (bytes > 0) m_count(static_cast<std::uint64_t>(bytes));
    return bytes;
  }

 private:
  const std::function<void(std::uint64_t)>& m_count;
};

}  // namespace dtsdb::tools
