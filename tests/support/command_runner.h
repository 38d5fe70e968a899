/// \file
/// Running the command dtsdb as a user does, in a folder of its own.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>
#include <string>

#include "tests/support/bytes.h"
#include "tests/support/places.h"

namespace dtsdb::tools::test {

inline bool IsOneLine(const std::string& text) { return std::count(text.begin(), text.end(), '\n') == 1; }

inline bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

/// The sample network, as a folder of the source tree.
inline constexpr const char* kSample = "examples/ieee14";

struct CommandResult {
  int code = -1;
  std::string out;
  std::string err;
};

/// A temporary folder in which commands are run.
class Workplace {
 public:
  std::filesystem::path Path() const { return m_folder.path().toStdString(); }
  std::filesystem::path operator/(const std::string& name) const { return Path() / name; }

  /// Runs dtsdb with `arguments` here, with UTF-8 as the terminal's encoding.
  CommandResult Run(const QStringList& arguments, const char* terminal = "C.UTF-8") const {
    return RunOther(QString::fromUtf8(dtsdb::test::TestProgram()), arguments, terminal);
  }

  /// Runs another program; its code is -1 when there is none.
  CommandResult RunOther(const QString& program, const QStringList& arguments, const char* terminal = "C.UTF-8") const {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QString::fromLatin1(terminal));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder.path());
    process.start(program, arguments);
    process.waitForFinished(60000);
    const bool ended = process.exitStatus() == QProcess::NormalExit && process.state() == QProcess::NotRunning &&
                       process.error() != QProcess::FailedToStart;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
  }

  /// The same with the arguments as one text, parted by blanks.
  CommandResult Run(const char* arguments) const {
    return Run(QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
  }

  /// Copies the network of tests/command/two_stations, or another folder of the source tree, here as `name`.
  void CopyModel(const std::string& name, const std::string& from = "tests/command/two_stations") const {
    std::filesystem::copy(dtsdb::test::SourcePath(from), Path() / name, std::filesystem::copy_options::recursive);
  }

  void Write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((Path() / name).parent_path());
    dtsdb::test::WriteBytes(Path() / name, bytes);
  }

  std::string Read(const std::string& name) const { return dtsdb::test::ReadBytes(Path() / name); }

  bool Exists(const std::string& name) const { return std::filesystem::exists(Path() / name); }

  /// Number of entries of the folder, hidden ones included.
  int EntryCount() const {
    const auto entries = std::filesystem::directory_iterator(Path());
    return static_cast<int>(std::distance(begin(entries), end(entries)));
  }

 private:
  QTemporaryDir m_folder;
};

}  // namespace dtsdb::tools::test
