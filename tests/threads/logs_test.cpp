// The logs, which all objects of a program share.

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QString>
#include <mutex>
#include <string>
#include <vector>

#include "generate/generator.h"
#include "include/log_sink.h"
#include "model/dtsdb.h"
#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"
#include "tests/threads/side_by_side.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

/// A grid with as many warnings as it has measurements that are missing.
void MakeFaulty(DTSDB& model, int number) {
  tools::GenerateUtility(model, {.stations = 3, .seed = static_cast<quint64>(number) + 1});
  model.m_analogTable->Clear();
}

/// The lines of a log of `number`'s grid, without the dates in front.
std::string LogOf(int number, const LogSink* sink = nullptr) {
  DTSDB model;
  MakeFaulty(model, number);
  std::string log;
  const LogSink own = [&log](LogKind, std::string_view bytes) {
    const std::size_t text = bytes.find("--NMD");
    log += bytes.substr(text == std::string_view::npos ? 0 : text);
  };
  NMD validation(&model, sink != nullptr ? *sink : own);
  EXPECT_TRUE(validation.DetectAll());
  return log;
}

TEST(Logs, OfSeveralValidationsGoToTheSinkOfEach) {
  std::vector<std::string> alone;
  for (int i = 0; i < kThreads; ++i) alone.push_back(LogOf(i));
  std::vector<std::string> together(kThreads);
  SideBySide(kThreads, [&](int i) { together[static_cast<std::size_t>(i)] = LogOf(i); });
  EXPECT_GT(alone[0].size(), 1000U);
  EXPECT_TRUE(together == alone);
}

TEST(Logs, OfAllThreadsGoToTheSinkOfTheProgram) {
  std::mutex mutex;
  std::vector<std::string> lines;
  SetLogSink([&](LogKind, std::string_view bytes) {
    const std::lock_guard lock(mutex);
    lines.emplace_back(bytes);
  });
  std::vector<qsizetype> findings(kThreads);
  SideBySide(kThreads, [&](int i) {
    DTSDB model;
    MakeFaulty(model, i);
    NMD validation(&model);
    EXPECT_TRUE(validation.DetectAll());
    findings[static_cast<std::size_t>(i)] = validation.Findings().size();
  });
  SetLogSink({});
  qsizetype expected = 0;
  for (const qsizetype count : findings) expected += count;
  EXPECT_EQ(static_cast<qsizetype>(lines.size()), expected);
  for (const std::string& line : lines) EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
}

TEST(Logs, InOneFileStandBesideOneAnother) {
  const TemporaryDirectory here;
  SideBySide(kThreads, [](int i) {
    DTSDB model;
    MakeFaulty(model, i);
    NMD validation(&model);
    EXPECT_TRUE(validation.DetectAll());
    NMD copy(validation);
    EXPECT_TRUE(copy.DetectAll());
  });
  EXPECT_GT(here.Read(QStringLiteral("nmd.log")).size(), 1000);
}

TEST(Logs, OfTheBreakerFlowHaveEachObjectsLinesInOnePiece) {
  const TemporaryDirectory here;
  EXPECT_EQ(RunHelper({"log", "200"}), "done\n");
  QString rest = QString::fromLatin1(here.Read(QStringLiteral("cbFlow.txt")));
  int blocks = 0;
  const QRegularExpression block(QStringLiteral("\\Abegin (\\d+)\\n(line \\1\\n){20}end \\1\\n"));
  for (auto found = block.match(rest); found.hasMatch(); found = block.match(rest)) {
    rest.remove(0, found.capturedLength());
    ++blocks;
  }
  EXPECT_EQ(blocks, kThreads * 200);
  EXPECT_TRUE(rest.isEmpty()) << rest.left(200).toStdString();
}

}  // namespace
}  // namespace dtsdb::test
