#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <random>
#include <thread>

#include "samples.h"
#include "tests/support/process.h"

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::RunHelper;
using sample::entry;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

constexpr int kRows = 400;

struct Processes : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(Open());
    for (int id = 0; id < kRows; ++id) AddEntry(db, id, 0, "first");
    db.commit();
  }
  bool Open() { return db.open("store", folder.File().c_str()); }
  void SetAll(int value, const std::string& text) {
    dbCursor<entry> cursor(&db, dbCursorForUpdate);
    cursor.select();
    for (entry* row = cursor.get(); row != nullptr; row = cursor.next()) {
      row->value = value;
      row->text = text.c_str();
      cursor.update();
    }
    db.commit();
  }

  Folder folder;
  Database db;
};

/// The values that a reader meets in one transaction: one, if it sees whole commits only.
std::vector<int> ValuesSeen(dbDatabase& db) {
  dbCursor<entry> cursor(&db);
  cursor.select("order by id");
  std::vector<int> values = dtsdb::test::Walk(cursor, [](const entry& row) { return row.value; });
  EXPECT_EQ(values.size(), static_cast<std::size_t>(kRows));
  values.erase(std::unique(values.begin(), values.end()), values.end());
  db.commit();
  return values;
}

TEST_F(Processes, ReaderSeesWholeCommitsOnlyWhileAnotherProgramWrites) {
  Helper writer({"write", folder.File()});
  ASSERT_EQ(writer.Line(), "writing");
  int changes = 0;
  int last = 0;
  // As many reads as it takes to meet some commits: a busy machine may not let the writer run at once.
  const auto patience = steady_clock::now() + std::chrono::seconds(30);
  for (int round = 0; round < 300 || (changes <= 5 && steady_clock::now() < patience); ++round) {
    const std::vector<int> values = ValuesSeen(db);
    ASSERT_EQ(values.size(), 1U);
    ASSERT_GE(values[0], last);
    if (values[0] != last) ++changes;
    last = values[0];
  }
  EXPECT_GT(changes, 5) << "the writer has hardly come forward";
  EXPECT_EQ(db.Reported(), "");
}

TEST_F(Processes, ReaderDoesNotWaitForAnOpenWriteTransaction) {
  const auto read = [this] {
    const auto begin = steady_clock::now();
    for (int round = 0; round < 50; ++round) EXPECT_EQ(ValuesSeen(db), std::vector<int>{0});
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin).count();
  };
  const auto alone = read();
  Helper writer({"hold", folder.File()});
  ASSERT_EQ(writer.Line(), "holding");
  const auto beside = read();
  EXPECT_TRUE(writer.IsRunning()) << "the reads were to be done before the writer is";
  std::cout << "50 reads took " << alone << " ms alone and " << beside << " ms beside an open write transaction\n";
}

TEST_F(Processes, WriterWaitsForTheOtherProgramsWriterAndGoesOnWhenThatIsKilled) {
  Helper writer({"hold", folder.File()});
  ASSERT_EQ(writer.Line(), "holding");
  std::thread killer([&writer] {
    std::this_thread::sleep_for(milliseconds(100));
    writer.Kill();
  });
  AddEntry(db, kRows, 0);
  killer.join();
  db.commit();
  EXPECT_EQ(db.Reported(), "");
  dbCursor<entry> cursor(&db);
  EXPECT_EQ(cursor.select("value = 123456"), 0) << "the killed writer's changes";
  EXPECT_EQ(cursor.select(), kRows + 1);
}

/// Each round kills a writer somewhere in its work; RTDB_KILLS in the environment sets the number of rounds.
TEST_F(Processes, KilledWriterLeavesTheLastWholeCommit) {
  db.close();
  const char* wish = std::getenv("RTDB_KILLS");
  const int rounds = wish != nullptr ? std::atoi(wish) : 50;
  std::mt19937 random(20240501);
  std::uniform_int_distribution<int> pause(0, 20000);
  int last = 0;
  for (int round = 0; round < rounds; ++round) {
    Helper writer({"write", folder.File()});
    ASSERT_EQ(writer.Line(), "writing");
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    writer.Kill();
    ASSERT_TRUE(Open()) << db.Reported();
    const std::vector<int> values = ValuesSeen(db);
    ASSERT_EQ(values.size(), 1U);
    ASSERT_GE(values[0], last);
    last = values[0];
    db.close();
  }
  EXPECT_GT(last, 0) << "no writer has come to a commit";
  std::cout << "killed a writer " << rounds << " times, " << last << " commits\n";
}

std::uintmax_t FileSize(const std::string& path) {
  struct stat about {};
  return ::stat(path.c_str(), &about) == 0 ? static_cast<std::uintmax_t>(about.st_size) : 0;
}

TEST_F(Processes, PagesOfAKilledReaderComeBack) {
  SetAll(1, std::string(500, 'a'));
  for (int round = 0; round < 5; ++round) SetAll(round, std::string(500, 'b'));
  const auto settled = FileSize(folder.File());
  Helper reader({"read", folder.File()});
  ASSERT_EQ(reader.Line(), "reading");
  for (int round = 0; round < 20; ++round) SetAll(round, std::string(500, 'c'));
  const auto pinned = FileSize(folder.File());
  EXPECT_GT(pinned, settled * 2) << "a reader's pages are kept for it";
  reader.Kill();
  std::this_thread::sleep_for(milliseconds(1100));
  for (int round = 0; round < 20; ++round) SetAll(round, std::string(500, 'd'));
  EXPECT_EQ(FileSize(folder.File()), pinned);
  EXPECT_EQ(db.Reported(), "");
}

TEST_F(Processes, SizeThatAnotherProgramGaveTheStoreIsFollowed) {
  Folder other;
  Database small;
  small.setFileSizeLimit(1 << 20);
  ASSERT_TRUE(small.open("small", other.File().c_str()));
  for (int id = 0; id < kRows; ++id) AddEntry(small, id, 0);
  small.commit();
  {
    Helper writer({"write", other.File()});
    ASSERT_EQ(writer.Line(), "writing");
    std::this_thread::sleep_for(milliseconds(50));
  }
  const std::string grown = RunHelper({"full", other.File(), "1000000000"});
  EXPECT_EQ(grown, "whole 999999\n");
  EXPECT_EQ(ValuesSeen(small), std::vector<int>{999999});
  EXPECT_EQ(small.Reported(), "");
}

TEST_F(Processes, ForkedProcessMustOpenAnew) {
  const std::string file = folder.File();
  const pid_t child = ::fork();
  if (child == 0) {
    dbCursor<entry> cursor(&db);
    const bool refused = cursor.select() == 0 && db.Reported().find("forked") != std::string::npos;
    Database own;
    const bool opened = own.open("store", file.c_str());
    dbCursor<entry> fresh(&own);
    const bool read = fresh.select() == kRows;
    own.close();
    ::_exit(refused && opened && read ? 0 : 1);
  }
  int result = -1;
  ::waitpid(child, &result, 0);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ValuesSeen(db), std::vector<int>{0});
}

}  // namespace
