// The log "cbFlow.txt", as a program of its own writes it in its working directory.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <string>

#include "tests/support/id_encoding.h"
#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::test {
namespace {

/// Runs the helper in `folder` and returns what it prints.
QByteArray RunIn(const QString& folder, const QStringList& arguments = {}) {
  QProcess process;
  process.setWorkingDirectory(folder);
  process.start(QString::fromUtf8(TestProgram()), arguments);
  EXPECT_TRUE(process.waitForFinished(60000));
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput();
}

const QByteArray kLog =
    "m_delta = 0.01\n\n"
    "bs No. =1\nwtotal = 10\nrtotal = 2.5\n\n"
    "\xBC\xC6\xCB\xE3\xC4\xB8\xCF\xDF 1 "                                               // 计算母线
    "\xBF\xAA\xB9\xD8\xBC\xAF\xBA\xCF\xB9\xA6\xC2\xCA\xB2\xBB\xC6\xBD\xBA\xE2\xA3\xAC"  // 开关集合功率不平衡，
    "\xB2\xBB\xC4\xDC\xBC\xC6\xCB\xE3\xA1\xA3\n"                                        // 不能计算。
    "nodeName = N3\nnodeName = \xB1\xE4\xB5\xE7\x81\n\n";

TEST(BreakerFlowLog, ReportsToleranceAndSetsThatDoNotBalanceInGbk) {
  const TemporaryDirectory here;
  EXPECT_EQ(RunIn(here.Path()), "computed\n");
  EXPECT_EQ(here.Read(QStringLiteral("cbFlow.txt")), kLog);
}

TEST(BreakerFlowLog, IsUtf8WhereIdentitiesAre) {
  const TemporaryDirectory here;
  const EncodingVariable variable("utf-8");
  EXPECT_EQ(RunIn(here.Path()), "computed\n");
  const QByteArray log = here.Read(QStringLiteral("cbFlow.txt"));
  EXPECT_TRUE(log.contains("计算母线 1 开关集合功率不平衡，不能计算。\n")) << log.constData();
  EXPECT_TRUE(log.endsWith("nodeName = \xB1\xE4\xB5\xE7\x81\n\n")) << "an identity is the bytes that it is";
}

TEST(BreakerFlowLog, LosesTheContentsOfAnEarlierRun) {
  const TemporaryDirectory here;
  RunIn(here.Path());
  RunIn(here.Path());
  EXPECT_EQ(here.Read(QStringLiteral("cbFlow.txt")), kLog);
}

TEST(BreakerFlowLog, StandsWhereTheLibraryWasLoaded) {
  const TemporaryDirectory here;
  const QTemporaryDir elsewhere;
  RunIn(here.Path(), {elsewhere.path()});
  EXPECT_EQ(here.Read(QStringLiteral("cbFlow.txt")), kLog);
  EXPECT_TRUE(QDir(elsewhere.path()).isEmpty());
}

TEST(BreakerFlowLog, HoldsNothingOfWhatAProgramWithoutStandardStreamsPrints) {
  const TemporaryDirectory here;
  const std::string command = std::string("exec ") + TestProgram() + " <&- >&- 2>&-";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(here.Read(QStringLiteral("cbFlow.txt")), kLog);
}

TEST(BreakerFlowLog, GoesToTheSinkOfTheProgramInPlaceOfTheFile) {
  const TemporaryDirectory here;
  EXPECT_EQ(RunIn(here.Path(), {QStringLiteral("--sink")}), kLog + "computed\n");
  EXPECT_TRUE(QDir(here.Path()).isEmpty());
}

TEST(BreakerFlowLog, IsAllThatIsLostWhereItCannotBeWritten) {
  const TemporaryDirectory here;
  ASSERT_TRUE(QDir(here.Path()).mkdir(QStringLiteral("cbFlow.txt")));  // a folder in its place
  EXPECT_EQ(RunIn(here.Path()), "computed\n");
}

}  // namespace
}  // namespace dtsdb::test
