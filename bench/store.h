/// \file
/// A realtime store of one's own, for the benchmarks.
#pragma once

#include <QFile>
#include <QFileInfo>
#include <QString>
#include <cstdio>
#include <cstdlib>

#include "rtdb/volma_rtdb.h"

namespace dtsdb::bench {

/// An open store in a file that goes with it. An error of the database ends the program.
class Store {
 public:
  explicit Store(const QString& path) : m_path(path) {
    m_database.setErrorHandler([](int, char const* message, int, void*) {
      std::fprintf(stderr, "realtime store: %s\n", message);
      std::exit(1);
    });
    const QByteArray file = path.toLocal8Bit();
    m_database.open(file.constData(), file.constData());
  }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  ~Store() {
    m_database.close();
    QFile::remove(m_path);
    QFile::remove(m_path + QStringLiteral("-lock"));
  }
  dbDatabase* Db() { return &m_database; }
  double Megabytes() const { return static_cast<double>(QFileInfo(m_path).size()) / 1e6; }

 private:
  QString m_path;
  dbDatabase m_database;
};

}  // namespace dtsdb::bench
