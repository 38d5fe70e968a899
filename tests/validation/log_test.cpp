// The log "nmd.log" and the findings, of which it is a rendering.
#include <QDir>

#include "include/log_sink.h"
#include "tests/support/closed_streams.h"
#include "tests/support/id_encoding.h"
#include "tests/support/messages.h"
#include "tests/validation/run.h"

namespace dtsdb::test {
namespace {

const QString kLog = QStringLiteral("nmd.log");

TEST(Log, LinesAreGbkBytesDirectlyBehindTheStamp) {
  DTSDB database;
  const ValidationRun run(database);
  // 开始 (begin) and 校验 (check) as the installation's codec writes them
  EXPECT_TRUE(
      run.log.contains("--NMD \xCC\xE1\xCA\xBE:\xBF\xAA\xCA\xBC"
                       "\xD2\xBB\xB4\xCE\xC8\xAB\xCD\xF8\xD0\xA3\xD1\xE9... ...\n"));
  EXPECT_FALSE(run.log.contains(" --NMD"));
}

TEST(Log, LinesAreUtf8WhereIdentitiesAre) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  ModelBuilder m;
  m.Station("Łódź", "无");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.log.contains("--NMD 提示:开始一次全网校验... ...\n"));
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:ST Łódźdv字段在分区表中没有相应记录."});
}

TEST(Log, IdentityThatIsNoSoundTextIsWrittenByteForByte) {
  ModelBuilder m;
  const QByteArray bytes("A\xFF\x81");
  ST st(IdFromBytes(bytes));
  st.dv = Id("nowhere");
  m.Put(st);
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.log.contains("--NMD \xB4\xED\xCE\xF3:ST " + bytes + "dv\xD7\xD6\xB6\xCE"));
}

TEST(Log, ChineseIdentityIsTheSameBytesAndReadsWell) {
  ModelBuilder m;
  m.Station("北京站", "无");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:ST 北京站dv字段在分区表中没有相应记录."});
}

TEST(Log, HoldsNothingOfWhatAProgramWithoutStandardStreamsPrints) {
  const TemporaryDirectory directory;
  EXPECT_EQ(InProcessWithoutStreams([] {
              DTSDB database;
              NMD nmd(&database);
              for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
                if (::write(stream, "printed", 7) != -1) return 1;
              }
              nmd.DetectAll();
              return StreamsAreClosed() ? 0 : 2;
            }),
            0);
  const QByteArray log = directory.Read(kLog);
  EXPECT_TRUE(log.contains("--NMD ")) << log.toStdString();
  EXPECT_FALSE(log.contains("printed"));
}

/// Lets the logs go to `text` as long as it lives.
class KeptLog {
 public:
  KeptLog() {
    SetLogSink([this](LogKind log, std::string_view bytes) {
      EXPECT_EQ(log, LogKind::kValidation);
      text.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    });
  }
  KeptLog(const KeptLog&) = delete;
  KeptLog& operator=(const KeptLog&) = delete;
  ~KeptLog() { SetLogSink({}); }

  QByteArray text;
};

TEST(Log, GoesToTheSinkOfTheProgramInPlaceOfTheFile) {
  const TemporaryDirectory directory;
  ModelBuilder m;
  m.Station("北京站", "无");
  const Texts expected = ValidationRun(m.Db()).Lines();
  KeptLog kept;
  NMD nmd(&m.Db());
  nmd.DetectAll();
  EXPECT_EQ(LogLines(kept.text), expected);
  NMD copy(nmd);
  kept.text.clear();
  copy.DetectAll();
  EXPECT_EQ(LogLines(kept.text), expected) << "a copy writes on where the other does";
  EXPECT_FALSE(QFile::exists(kLog));
}

TEST(Log, OfAnObjectMadeBeforeTheSinkStaysAFile) {
  const TemporaryDirectory directory;
  DTSDB database;
  NMD nmd(&database);
  const KeptLog kept;
  nmd.DetectAll();
  EXPECT_TRUE(kept.text.isEmpty());
}

TEST(Log, CanBeReadWhileTheObjectLives) {
  const TemporaryDirectory directory;
  DTSDB database;
  NMD nmd(&database);
  EXPECT_TRUE(directory.Read(kLog).isEmpty());
  nmd.DetectAll();
  EXPECT_EQ(LogLines(directory.Read(kLog)).size(), 3U);
}

TEST(Log, NewObjectBeginsANewLog) {
  const TemporaryDirectory directory;
  DTSDB database;
  { NMD(&database).DetectAll(); }
  EXPECT_EQ(LogLines(directory.Read(kLog)).size(), 3U);
  const NMD next(&database);
  EXPECT_TRUE(directory.Read(kLog).isEmpty());
}

TEST(Log, ThatCannotBeOpenedTakesNothingAndDisturbsNothing) {
  const TemporaryDirectory directory;
  ASSERT_TRUE(QDir().mkdir(kLog));
  ModelBuilder m = GoodModel();
  const MessageCatcher catcher;
  NMD nmd(&m.Db());
  EXPECT_TRUE(nmd.DetectAll());
  EXPECT_FALSE(nmd.Findings().isEmpty());
  EXPECT_EQ(m.Db().m_globalTable->GetPh(0).valid, 1);
  EXPECT_TRUE(MessageCatcher::Lines().isEmpty()) << Utf8(MessageCatcher::Lines().join(u'\n'));
}

TEST(NmdCopy, WritesOnInTheSameLogAndKeepsBothObjectsLines) {
  const TemporaryDirectory directory;
  DTSDB database;
  NMD first(&database);
  first.DetectAll();
  NMD second(first);
  QDir::setCurrent(QDir::tempPath());  // the log stays the same wherever the process goes
  second.DetectAll();
  first.DetectAll();
  EXPECT_EQ(LogLines(directory.Read(kLog)).size(), 9U);
}

TEST(NmdCopy, SharesModelAndTakesOverLastErrorAndFindings) {
  ModelBuilder m = GoodModel();
  m.Db().m_rNdCb2Table->SetGrowBy(0);
  const TemporaryDirectory directory;
  NMD first(&m.Db());
  first.DetectAll();
  DTSDB other;
  NMD second(&other);
  second = first;
  EXPECT_EQ(second.GetLastError(), first.GetLastError());
  EXPECT_EQ(second.Findings().size(), first.Findings().size());
  m.Db().m_rNdCb2Table->SetGrowBy(10);
  EXPECT_TRUE(second.DetectAll());
  EXPECT_EQ(m.Db().m_globalTable->GetPh(0).valid, 1);
  EXPECT_EQ(other.m_globalTable->GetCount(), 0);
}

TEST(NmdCopy, AssignmentToItselfChangesNothing) {
  const TemporaryDirectory directory;
  DTSDB database;
  NMD nmd(&database);
  const NMD& same = nmd;
  nmd = same;
  nmd.DetectAll();
  EXPECT_EQ(LogLines(directory.Read(kLog)).size(), 3U);
}

TEST(Findings, AreTheLinesOfTheLog) {
  ModelBuilder m = GoodModel();
  m.Station("北京站", "无").Zbr("Z9", "nowhere");
  const ValidationRun run(m.Db());
  Texts texts;
  for (const Finding& finding : run.nmd.Findings()) texts.push_back(Utf8(finding.text));
  EXPECT_EQ(texts, run.Lines());
}

TEST(Findings, NameSeverityTableIdentityAndField) {
  ModelBuilder m;
  m.Station("北京站", "无");
  const ValidationRun run(m.Db());
  ASSERT_EQ(run.nmd.Findings().size(), 4);
  EXPECT_EQ(run.nmd.Findings()[0].severity, Severity::kNotice);
  EXPECT_EQ(run.nmd.Findings()[0].table, KIND_NONE);
  EXPECT_EQ(run.nmd.Findings()[0].field, nullptr);
  const Finding& error = run.nmd.Findings()[1];
  EXPECT_EQ(error.severity, Severity::kError);
  EXPECT_EQ(error.table, KIND_ST);
  EXPECT_EQ(error.id, Id("北京站"));
  EXPECT_STREQ(error.field, "dv");
}

TEST(Findings, OfAnUnsoundIdentityKeepItsBytesAndReadReplaced) {
  ModelBuilder m;
  ST st(IdFromBytes("A\x81\xFF"));
  st.dv = Id("nowhere");
  m.Put(st);
  const ValidationRun run(m.Db());
  const Finding& error = run.nmd.Findings()[1];
  EXPECT_EQ(IdToBytes(error.id), QByteArray("A\x81\xFF"));
  EXPECT_TRUE(error.text.startsWith(QString::fromUtf8("--NMD 错误:ST A\uFFFD")));
  EXPECT_TRUE(error.text.endsWith(QString::fromUtf8("dv字段在分区表中没有相应记录.")));
}

}  // namespace
}  // namespace dtsdb::test
