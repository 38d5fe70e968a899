/// \file
/// The networks that the benchmarks work on.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <stdexcept>

#include "model/dtsdb.h"

namespace dtsdb::bench {

/// A generated network, kept as object files in the states from which the operations start. An iteration begins by
/// loading one of them, so that each finds the same state, whatever the one before has left.
class SampleNetwork {
 public:
  static constexpr const char* kInput = "/input.obj";
  static constexpr const char* kReady = "/ready.obj";

  /// The network of `stations` stations. It is made at the first call and kept until another size is asked for.
  static const SampleNetwork& Of(int stations);

  /// Makes the files input.obj and ready.obj of a network in a folder, which becomes the current one.
  static void Make(int stations, const QString& folder);

  /// As it was generated: input tables only.
  QString InputFile() const { return m_directory.path() + QLatin1String(kInput); }
  /// Validated, and with its topology worked out.
  QString ReadyFile() const { return m_directory.path() + QLatin1String(kReady); }
  /// Free for what a benchmark writes.
  QString OutputFile() const { return m_directory.filePath(QStringLiteral("output.obj")); }

 private:
  explicit SampleNetwork(int stations);

  QTemporaryDir m_directory;
};

/// Throws where something doesn't hold: what has gone wrong isn't measured.
inline void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

/// The rows of all tables.
long RowCount(DTSDB& model);

}  // namespace dtsdb::bench
