/// \file
/// The command dtsdb run, and other programs that write into the trace meanwhile. The network is that of
/// tests/command/golden_test.cpp:
///
///     甲机 甲1 --甲开关-- 甲2 ------- 甲乙线 ------- 乙2 --乙开关-- 乙1 乙荷 --乙联络 (open)-- 乙3
#pragma once

#include <gtest/gtest.h>

#include <QDateTime>
#include <csignal>

#include "model/text.h"
#include "rtdb/volma_rtdb.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {

/// dtsdb run in a process of its own; killed when this goes.
class RunningTask {
 public:
  /// `variables` are added to its environment, by pairs of a name and a value. It looks each 50 ms unless `options`
  /// have an interval.
  RunningTask(const Workplace& here, const QStringList& options, const QStringList& variables = {}) {
    m_process.setWorkingDirectory(QString::fromStdString(here.Path().string()));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    for (qsizetype i = 0; i + 1 < variables.size(); i += 2) environment.insert(variables[i], variables[i + 1]);
    m_process.setProcessEnvironment(environment);
    QStringList arguments{QStringLiteral("run"), QStringLiteral("rtdb:x")};
    if (!options.contains(QLatin1String("--interval")))
      arguments << QStringLiteral("--interval") << QStringLiteral("50");
    m_process.start(QString::fromUtf8(dtsdb::test::TestProgram()), arguments + options);
  }
  RunningTask(const RunningTask&) = delete;
  RunningTask& operator=(const RunningTask&) = delete;
  ~RunningTask() {
    m_process.kill();
    m_process.waitForFinished();
  }

  /// The next line that it writes, empty when none comes for `milliseconds`.
  std::string WholeLine(int milliseconds = 30000) {
    while (!m_process.canReadLine()) {
      if (!m_process.waitForReadyRead(milliseconds)) return "";
    }
    return m_process.readLine().trimmed().toStdString();
  }
  /// The same without the time in front.
  std::string Line(int milliseconds = 30000) {
    const std::string line = WholeLine(milliseconds);
    return line.substr(std::min(line.find(' ') + 1, line.size()));
  }
  /// Its process; 0 once it has ended.
  long Number() const { return static_cast<long>(m_process.processId()); }
  void Signal(int signal) {
    const auto number = static_cast<pid_t>(m_process.processId());
    ASSERT_GT(number, 0) << "it has ended: " << Messages();  // number 0 would be everyone in the group
    ASSERT_EQ(::kill(number, signal), 0);
  }
  /// The exit code, -1 when it doesn't end by itself.
  int End() {
    m_process.waitForFinished(30000);
    const bool ended = m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit;
    return ended ? m_process.exitCode() : -1;
  }
  std::string Messages() { return m_process.readAllStandardError().toStdString(); }

 private:
  QProcess m_process;
};

/// Where it runs: the network as the folder m, and what other programs do with the database x.
class RunPlace : public testing::Test {
 protected:
  RunPlace() {
    here.CopyModel("m");
    std::filesystem::remove(here / "m/ANALOG.csv");
  }

  void Store() const { EXPECT_EQ(here.Run("validate m -o rtdb:x").code, 0); }

  /// Adds or changes a row of the trace, stamped `ago` seconds ago.
  void Trace(int id, const char* name, int type, int status, int ago = 0) const {
    dbDatabase database;
    ASSERT_TRUE(database.open((here / "x").c_str()));
    dbQuery query;
    query = "id = ", id;
    dbCursor<tptrace> cursor(&database, dbCursorForUpdate);
    const bool exists = cursor.select(query) > 0;
    tptrace added;
    tptrace& row = exists ? *cursor.get() : added;
    const QByteArray bytes = IdToBytes(IdFromLiteral(name));
    row.id = id;
    row.name = bytes.constData();
    row.type = static_cast<nat1>(type);
    row.status = static_cast<nat1>(status);
    row.time = static_cast<nat4>(QDateTime::currentSecsSinceEpoch() - ago);
    if (exists) {
      cursor.update();
    } else {
      database.insert(row);
    }
    database.commit();
    database.close();
  }
  /// Adds so many rows in one transaction that switch 乙荷 off and on in turns; the first of them is stamped `ago`
  /// seconds ago.
  void TraceMany(int firstId, int count, int ago = 0) const {
    dbDatabase database;
    ASSERT_TRUE(database.open((here / "x").c_str()));
    const QByteArray name = IdToBytes(IdFromLiteral("乙荷"));
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    for (int i = 0; i < count; ++i) {
      tptrace row;
      row.id = firstId + i;
      row.name = name.constData();
      row.type = 3;
      row.status = i % 2 == 0 ? 0 : 1;
      row.time = static_cast<nat4>(i == 0 ? now - ago : now);
      database.insert(row);
    }
    database.commit();
    database.close();
  }
  std::string Rows(const char* table, const char* id) const {
    return here.Run((std::string("rtdb show x ") + table + " --id " + id + " --format json").c_str()).out;
  }
  bool IsOpen(const char* breaker) const { return Contains(Rows("CB", breaker), "\"flags\": 257,"); }
  int LogCount() const {
    const std::string csv = here.Run("rtdb show x TPL --format csv").out;
    return static_cast<int>(std::count(csv.begin(), csv.end(), '\n')) - 1;
  }
  /// The number of log rows with an event word.
  int LogCount(const char* event) const {
    const QString csv = QString::fromStdString(here.Run("rtdb show x TPL --format csv").out);
    return static_cast<int>(csv.count(QStringLiteral(",%1").arg(QLatin1String(event))));
  }
  /// The lines of a run that ends by itself, without their times.
  std::string Once(const char* options = "", int code = 0) const {
    const CommandResult result = here.Run((std::string("run rtdb:x --once ") + options).c_str());
    EXPECT_EQ(result.code, code) << result.err;
    std::string lines;
    for (const QByteArray& line : QByteArray::fromStdString(result.out).split('\n')) {
      if (!line.isEmpty()) lines += line.mid(line.indexOf(' ') + 1).toStdString() + "\n";
    }
    return lines;
  }

  Workplace here;
};

}  // namespace dtsdb::tools::test
