/// \file
/// A working directory of one's own: the library writes its logs into the current directory.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace dtsdb::test {

/// Makes a fresh directory the current one for as long as it lives; then goes back and removes it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() : m_before(QDir::currentPath()) { QDir::setCurrent(m_directory.path()); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() { QDir::setCurrent(m_before); }

  QString Path() const { return m_directory.path(); }

  /// The bytes of a file in the directory; empty when there is no such file.
  QByteArray Read(const QString& name) const {
    QFile file(m_directory.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

 private:
  QString m_before;
  QTemporaryDir m_directory;
};

}  // namespace dtsdb::test
