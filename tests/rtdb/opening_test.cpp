// What the check on opening must take, whatever came before, and what it must refuse.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <lmdb.h>

#include <cstring>
#include <filesystem>
#include <utility>

#include "rtdb/internal/file_check.h"
#include "rtdb/internal/file_format.h"
#include "samples.h"
#include "tests/support/bytes.h"
#include "tests/support/process.h"

using dtsdb::internal::rtdb::format::Head;
using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::ReadBytes;
using dtsdb::test::RunHelper;
using dtsdb::test::WriteBytes;
using sample::entry;

namespace {

constexpr std::size_t kPage = 4096;

struct Opening : ::testing::Test {
  /// Commits one row after the other, until the newest transaction is this one.
  void CommitUpTo(std::uint64_t transaction) {
    Database db;
    ASSERT_TRUE(db.open("store", path.c_str())) << db.Reported();
    for (int id = 0; NewestNumber() < transaction; ++id) {
      AddEntry(db, id);
      db.commit();
    }
    ASSERT_EQ(db.Reported(), "");
  }
  Head HeadAt(std::size_t index) const {
    Head head{};
    std::memcpy(&head, ReadBytes(path).data() + index * kPage, sizeof(head));
    return head;
  }
  std::uint64_t NewestNumber() const { return std::max(HeadAt(0).transaction, HeadAt(1).transaction); }
  void SetNumber(std::size_t index, std::uint64_t transaction) const {
    std::string bytes = ReadBytes(path);
    std::memcpy(bytes.data() + index * kPage + offsetof(Head, transaction), &transaction, sizeof(transaction));
    WriteBytes(path, bytes);
  }
  std::string Refusal() const {
    Database db;
    return db.open("store", path.c_str()) ? "opened" : db.Reported();
  }
  void ExpectDamaged() const { EXPECT_EQ(Refusal(), path + ": the store is damaged; put a copy of it in its place\n"); }
  /// The ids of the entries, or -1 alone if the store can't be opened.
  std::vector<int> Ids() const {
    Database db;
    return db.open("store", path.c_str()) ? EntryIds(db) : std::vector{-1};
  }

  Folder folder;
  const std::string path = folder.File();
};

TEST_F(Opening, NewestHeadWhoseNumberWasLoweredIsNotTakenForTheOlder) {
  for (std::uint64_t newest = 2; newest < 8; ++newest) {
    CommitUpTo(newest);
    const std::string whole = ReadBytes(path);
    SetNumber(newest % 2, newest - 2);
    ExpectDamaged();
    WriteBytes(path, whole);
  }
}

TEST_F(Opening, FirstCommitWhoseNumberWasClearedIsNotLost) {
  CommitUpTo(1);
  SetNumber(1, 0);
  ExpectDamaged();
}

TEST_F(Opening, OlderHeadWhoseNumberWasRaisedIsNotTakenForTheNewest) {
  for (std::uint64_t newest = 2; newest < 8; ++newest) {
    CommitUpTo(newest);
    const std::string whole = ReadBytes(path);
    SetNumber((newest - 1) % 2, newest + 1);
    ExpectDamaged();
    WriteBytes(path, whole);
  }
}

TEST_F(Opening, HeadsOfTransactionsThatDoNotFollowEachOtherAreRefused) {
  CommitUpTo(6);
  const std::string whole = ReadBytes(path);
  for (const std::uint64_t other : {0U, 1U, 3U, 4U, 6U, 9U, 1U << 20}) {
    SetNumber(1, other);
    ExpectDamaged();
    WriteBytes(path, whole);
  }
  SetNumber(0, 5);
  SetNumber(1, 6);
  ExpectDamaged();
  WriteBytes(path, whole);
  EXPECT_NE(Ids(), std::vector{-1});
}

TEST_F(Opening, FirstHeadWithoutItsMarkIsDamage) {
  CommitUpTo(2);
  std::string bytes = ReadBytes(path);
  bytes[offsetof(Head, magic)] ^= 1;
  WriteBytes(path, bytes);
  ExpectDamaged();
}

TEST_F(Opening, OneHeadOfAnotherVersionIsDamage) {
  CommitUpTo(2);
  const std::string whole = ReadBytes(path);
  for (const std::size_t head : {0U, 1U}) {
    std::string bytes = whole;
    bytes[head * kPage + offsetof(Head, version)] ^= 1;
    WriteBytes(path, bytes);
    ExpectDamaged();
  }
}

TEST_F(Opening, HeadsWithWrongPageNumbersAreDamage) {
  CommitUpTo(2);
  const std::string whole = ReadBytes(path);
  for (const std::size_t head : {0U, 1U}) {
    std::string bytes = whole;
    bytes[head * kPage + offsetof(Head, number)] ^= 2;
    WriteBytes(path, bytes);
    ExpectDamaged();
  }
}

// Only what is a new head in all that it has is taken for a store that was being made.
TEST_F(Opening, PageThatIsHalfANewHeadIsLeftAlone) {
  MDB_env* env = nullptr;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, path.c_str(), MDB_NOSUBDIR, 0664), 0);
  mdb_env_close(env);
  const std::string made = ReadBytes(path).substr(0, kPage);
  for (const std::size_t place : {offsetof(Head, magic), offsetof(Head, pageFlags), offsetof(Head, transaction)}) {
    std::string bytes = made;
    bytes[place] ^= 1;
    WriteBytes(path, bytes);
    EXPECT_NE(Refusal(), "opened");
    EXPECT_EQ(ReadBytes(path), bytes);
  }
}

/// The files of this process that lie in a folder, and whether programs that it starts get them.
std::pair<int, int> OpenAndInherited(const std::string& folder) {
  int open = 0;
  int inherited = 0;
  for (int file = 0; file < 256; ++file) {
    std::error_code error;
    const std::string name = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error).string();
    if (error || !name.starts_with(folder)) continue;
    ++open;
    inherited += (::fcntl(file, F_GETFD) & FD_CLOEXEC) == 0 ? 1 : 0;
  }
  return {open, inherited};
}

TEST_F(Opening, StoreHoldsItsFilesAloneAndAsLongAsItIsOpen) {
  const std::string place = std::filesystem::path(path).parent_path().string();
  CommitUpTo(2);
  EXPECT_EQ(OpenAndInherited(place), (std::pair{0, 0}));
  Database db;
  ASSERT_TRUE(db.open("store", path.c_str()));
  AddEntry(db, 99);
  db.commit();
  EXPECT_GT(OpenAndInherited(place).first, 0);
  EXPECT_EQ(OpenAndInherited(place).second, 0);
  db.close();
  EXPECT_EQ(OpenAndInherited(place), (std::pair{0, 0}));
}

TEST_F(Opening, StoreThatWasNeverWrittenIsMade) {
  MDB_env* env = nullptr;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, path.c_str(), MDB_NOSUBDIR, 0664), 0);
  mdb_env_close(env);
  ASSERT_EQ(NewestNumber(), 0U);
  EXPECT_EQ(Ids(), std::vector<int>{});
  EXPECT_EQ(NewestNumber(), 1U);
  EXPECT_EQ(Ids(), std::vector<int>{});
}

TEST_F(Opening, FileThatWasCutShortWhileItWasMadeIsMadeAnew) {
  MDB_env* env = nullptr;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, path.c_str(), MDB_NOSUBDIR, 0664), 0);
  mdb_env_close(env);
  std::filesystem::resize_file(path, kPage);
  EXPECT_EQ(Ids(), std::vector<int>{});
  EXPECT_EQ(NewestNumber(), 1U);
}

TEST_F(Opening, ValueThatWasChangedTwiceInATransactionKeepsItsPages) {
  {
    Database db;
    ASSERT_TRUE(db.open("store", path.c_str()));
    AddEntry(db, 1, 0, std::string(40000, 'a').c_str());
    dbCursor<entry> cursor(&db, dbCursorForUpdate);
    ASSERT_EQ(cursor.select("id = 1"), 1);
    const std::string shorter(9000, 'b');
    cursor->text = shorter.c_str();
    cursor.update();
    db.commit();
  }
  EXPECT_EQ(Ids(), std::vector<int>{1});
}

/// A commit waits for its rows, not for its head: after a power failure the heads on the disk may be those of two
/// commits before, beside pages of the transaction that ran.
TEST_F(Opening, PowerFailureLosesTheLastCommitOnly) {
  Database db;
  ASSERT_TRUE(db.open("store", path.c_str()));
  std::vector<std::string> images;
  std::vector<std::vector<int>> states;
  for (int round = 0; round < 60; ++round) {
    for (int i = 0; i < 10; ++i) AddEntry(db, (round * 37 + i * 11) % 400, round, std::string(400, 'p').c_str());
    dbCursor<entry> cursor(&db, dbCursorForUpdate);
    cursor.select(round % 3 == 0 ? "id < 200" : "id >= 350");
    cursor.removeAllSelected();
    db.commit();
    images.push_back(ReadBytes(path));
    states.push_back(EntryIds(db));
    db.commit();
  }
  db.close();
  for (std::size_t round = 0; round + 2 < images.size(); ++round) {
    for (const std::size_t later : {round + 1, round + 2}) {
      WriteBytes(path, images[round].substr(0, 2 * kPage) + images[later].substr(2 * kPage));
      Database after;
      ASSERT_TRUE(after.open("store", path.c_str())) << after.Reported() << "heads " << round << ", pages " << later;
      ASSERT_EQ(EntryIds(after), states[round]);
      AddEntry(after, 1000);
      after.commit();
      ASSERT_EQ(after.Reported(), "");
    }
  }
}

TEST_F(Opening, LockFileOfTheStoreBeforeIsNamedAsTheCause) {
  CommitUpTo(3);
  const std::string other = folder.File("other.fdb");
  std::filesystem::copy_file(path, other);
  CommitUpTo(9);
  Helper reader({"read", path});
  ASSERT_EQ(reader.Line(), "reading");
  std::filesystem::rename(other, path);
  MDB_env* env = nullptr;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, path.c_str(), MDB_NOSUBDIR | MDB_NOTLS, 0664), 0);
  EXPECT_EQ(dtsdb::internal::rtdb::CheckPages(env),
            "other programs still use the store that was here before; close it there first");
  mdb_env_close(env);
}

/// RTDB_OPENS in the environment sets how often.
TEST_F(Opening, StoreThatOtherProgramsWriteIsNeverRefused) {
  const char* wish = std::getenv("RTDB_OPENS");
  const int opens = wish != nullptr ? std::atoi(wish) : 300;
  EXPECT_EQ(RunHelper({"make", path}), "");
  Helper writer({"write", path});
  ASSERT_EQ(writer.Line(), "writing");
  const std::uint64_t begin = NewestNumber();
  for (int i = 0; i < opens || NewestNumber() < begin + 50; ++i) {
    ASSERT_TRUE(writer.IsRunning());
    Database db;
    ASSERT_TRUE(db.open("store", path.c_str())) << db.Reported() << "open " << i;
    ASSERT_EQ(EntryIds(db).size(), 400U);
  }
}

}  // namespace
