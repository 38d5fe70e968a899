// A whole model that two programs work on: one validates it, works out its topology and stores both again and again,
// the other reads it, or writes it, or is killed.

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <thread>

#include "model/dtsdb.h"
#include "rtdb/backend.h"
#include "tests/model/exchange/commit_marks.h"
#include "tests/support/process.h"

namespace dtsdb::test {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kStations = 20;
constexpr const char* kEndless = "5000";

/// How long a loop may last that waits for what another program does. A failure then; it is never waited out.
constexpr std::chrono::seconds kPatience(60);

class ExchangeProcesses : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunHelper({"make", Path(), std::to_string(kStations)}), "committed 1\ncommitted 2\n");
    m_db.setErrorHandler([](int error, char const* message, int, void*) {
      ADD_FAILURE() << "realtime database, error " << error << ": " << (message != nullptr ? message : "");
    });
    ASSERT_TRUE(Open());
  }
  void TearDown() override { m_db.close(); }

  std::string Path() const { return m_directory.filePath(QStringLiteral("store.fdb")).toStdString(); }
  bool Open() { return m_db.open(Path().c_str(), Path().c_str()); }
  qint64 FileSize() const { return QFileInfo(QString::fromStdString(Path())).size(); }

  /// Reads the whole model; the number of the commit it was in, -1 when it holds parts of several.
  int ReadCommit() {
    DTSDB model;
    model.ReadFastdb(&m_db);
    return CommitOf(model);
  }
  /// Writes the whole model `times` times, each time with other marks, as the topology would do.
  void Rewrite(int times) {
    DTSDB model;
    model.ReadFastdb(&m_db);
    const int first = CommitOf(model) + 2;
    for (int i = 0; i < times; ++i) {
      MarkForValidation(model, first + 2 * i - 1);
      MarkForTopology(model, first + 2 * i);
      model.WriteFastdb(&m_db);
    }
  }

  QTemporaryDir m_directory;
  dbDatabase m_db;
};

/// The number behind the last "committed" of what a helper has printed; 0 when it hasn't come to one.
int LastCommitted(const std::string& output) {
  const std::string word = "committed ";
  const std::size_t at = output.rfind(word);
  return at == std::string::npos ? 0 : std::atoi(output.c_str() + at + word.size());
}

TEST_F(ExchangeProcesses, MarksTellAModelReadFromTwoCommits) {
  DTSDB model;
  model.ReadFastdb(&m_db);
  EXPECT_EQ(CommitOf(model), 2);
  Rewrite(1);
  model.ReadCBFromFastdb(&m_db);
  EXPECT_EQ(CommitOf(model), -1);
  model.ReadFastdb(&m_db);
  EXPECT_EQ(CommitOf(model), 4);
}

TEST_F(ExchangeProcesses, ReadersSeeWholeCommitsOnlyWhileTheModelIsWorkedOn) {
  constexpr int kCommits = 30;
  Helper worker({"work", Path(), kEndless});
  const auto begin = steady_clock::now();
  int reads = 0;
  int commits = 0;
  int last = 2;
  while (commits < kCommits && steady_clock::now() - begin < kPatience) {
    const int commit = ReadCommit();
    ASSERT_NE(commit, -1) << "parts of several commits, read " << reads;
    ASSERT_GE(commit, last) << "an older commit than the one before";
    if (commit != last) ++commits;
    last = commit;
    ++reads;
  }
  EXPECT_EQ(commits, kCommits) << "the other program has hardly come forward";
  EXPECT_TRUE(worker.IsRunning());
  std::cout << reads << " reads of the whole model met " << commits << " of " << last << " commits\n";
}

TEST_F(ExchangeProcesses, ReadersCompleteWhileAWriteTransactionIsHeldOpen) {
  constexpr int kReads = 10;
  const auto read = [this] {
    const auto begin = steady_clock::now();
    for (int i = 0; i < kReads; ++i) EXPECT_EQ(ReadCommit(), 2);
    return duration_cast<milliseconds>(steady_clock::now() - begin).count();
  };
  const auto alone = read();
  Helper writer({"hold", Path()});
  ASSERT_EQ(writer.Line(), "holding");
  const auto beside = read();
  EXPECT_TRUE(writer.IsRunning()) << "the reads were to be done before the writer is";
  std::cout << kReads << " reads of the whole model took " << alone << " ms alone and " << beside
            << " ms beside an open write transaction\n";
  writer.Kill();
  EXPECT_EQ(ReadCommit(), 2) << "what was not committed is gone";
}

TEST_F(ExchangeProcesses, WritersCompleteWhileAReadTransactionIsHeldOpen) {
  Helper reader({"read", Path()});
  ASSERT_EQ(reader.Line(), "reading");
  Rewrite(3);
  EXPECT_TRUE(reader.IsRunning());
  EXPECT_EQ(ReadCommit(), 8);
}

/// Each round kills the other program somewhere in its work; RTDB_KILLS in the environment sets the number of rounds.
TEST_F(ExchangeProcesses, KilledWriterLeavesTheLastWholeCommit) {
  const char* wish = std::getenv("RTDB_KILLS");
  const int rounds = wish != nullptr ? std::atoi(wish) : 20;
  std::mt19937 random(20240501);
  std::uniform_int_distribution<int> pause(0, 300000);
  int last = 2;
  int progress = 0;
  for (int round = 0; round < rounds; ++round) {
    m_db.close();
    Helper worker({"work", Path(), kEndless});
    ASSERT_EQ(LastCommitted(worker.Line()), last + 1);
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    worker.Kill();
    const std::string output = worker.Rest();
    const int reported = output.empty() ? last + 1 : LastCommitted(output);
    ASSERT_TRUE(Open());
    const int commit = ReadCommit();
    // It may have been killed between a commit and telling of it.
    ASSERT_GE(commit, reported);
    ASSERT_LE(commit, reported + 1);
    progress += commit - last;
    last = commit;
  }
  EXPECT_GE(progress, rounds);
  std::cout << "killed a writer " << rounds << " times, " << progress << " commits\n";
}

TEST_F(ExchangeProcesses, KilledReaderBlocksNobodyAndItsPagesComeBack) {
  Rewrite(3);
  const qint64 settled = FileSize();
  Helper reader({"read", Path()});
  ASSERT_EQ(reader.Line(), "reading");
  Rewrite(5);
  const qint64 pinned = FileSize();
  EXPECT_GT(pinned, settled) << "the reader's pages are kept for it";
  reader.Kill();
  std::this_thread::sleep_for(milliseconds(1100));
  Rewrite(20);
  EXPECT_EQ(FileSize(), pinned);
  EXPECT_EQ(ReadCommit(), 2 + 2 * 28);
}

TEST_F(ExchangeProcesses, FullDiskIsReportedAndTheWholeOldModelStays) {
  const std::string output = RunHelper({"fill", Path(), std::to_string(FileSize() / 1024 / 2)});
  // The reason is the system's: a write that went in part, or not at all.
  EXPECT_EQ(output.find("realtime store: file: " + Path() + ": commit: "), 0U) << output;
  EXPECT_EQ(ReadCommit(), 2);
  Rewrite(1);
  EXPECT_EQ(ReadCommit(), 4) << "with room again the work goes on";
}

}  // namespace
}  // namespace dtsdb::test
