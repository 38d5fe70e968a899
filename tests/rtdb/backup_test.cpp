// Backups are whole states of a store in use, and a restore leaves the old store or the new one, whatever ends it.

#include "rtdb/restore.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>

#include "samples.h"
#include "tests/support/bytes.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

using dtsdb::rtdb::RestoreStore;
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

struct Backups : ::testing::Test {
  /// Makes a store of 400 rows with one value.
  void MakeStore() const { RunHelper({"make", folder.File()}); }
  /// Makes a store with the rows of these ids.
  void MakeStore(const std::string& name, std::initializer_list<int> ids) const {
    Database db;
    ASSERT_TRUE(db.open("store", folder.File(name).c_str())) << db.Reported();
    for (const int id : ids) AddEntry(db, id, id, "row");
    db.commit();
  }
  std::vector<int> IdsIn(const std::string& name) const {
    Database db(dbDatabase::dbReadOnly);
    EXPECT_TRUE(db.open("store", folder.File(name).c_str())) << db.Reported();
    return EntryIds(db);
  }
  std::set<std::string> Files() const {
    std::set<std::string> names;
    for (const auto& file : fs::directory_iterator(fs::path(folder.File()).parent_path())) {
      names.insert(file.path().filename());
    }
    return names;
  }
  std::string Restore(const std::string& backup, const std::string& keptAs = "") const {
    return RestoreStore(folder.File(backup), folder.File(), keptAs.empty() ? "" : folder.File(keptAs),
                        [](const std::string&) { return std::string(); });
  }

  Folder folder;
};

TEST_F(Backups, EachIsOneCommitWhileAnotherProgramWrites) {
  MakeStore();
  Helper writer({"write", folder.File()});
  ASSERT_EQ(writer.Line(), "writing");
  Database db(dbDatabase::dbReadOnly);
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  int last = 0;
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(db.backup(folder.File("copy.fdb").c_str(), round % 2 == 1)) << db.Reported();
    const std::string seen = RunHelper({"check", folder.File("copy.fdb")});
    ASSERT_TRUE(seen.starts_with("whole ")) << seen;
    const int value = std::stoi(seen.substr(6));
    EXPECT_GE(value, last);
    last = value;
  }
  EXPECT_TRUE(writer.IsRunning());
}

TEST_F(Backups, HaveThePagesOfTheStoreUnlessTheyAreCompact) {
  MakeStore("store.fdb", {1, 2});
  Database db(dbDatabase::dbReadOnly);
  ASSERT_TRUE(db.open("store", folder.File("store.fdb").c_str())) << db.Reported();
  ASSERT_TRUE(db.backup(folder.File("copy.fdb").c_str(), false)) << db.Reported();
  const std::string copy = ReadBytes(folder.File("copy.fdb"));
  EXPECT_EQ(copy, ReadBytes(folder.File("store.fdb")).substr(0, copy.size()));
}

TEST_F(Backups, HaveTheLastCommitAndNothingElseIsLeft) {
  MakeStore("store.fdb", {1, 2});
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  ASSERT_TRUE(db.backup(folder.File("copy.fdb").c_str(), false)) << db.Reported();
  EXPECT_EQ(Files(), (std::set<std::string>{"copy.fdb", "store.fdb", "store.fdb-lock"}));
  AddEntry(db, 3);
  EXPECT_FALSE(db.backup(folder.File("copy.fdb").c_str(), false));
  EXPECT_NE(db.Reported().find("changes that are not committed"), std::string::npos);
  db.commit();
  EXPECT_EQ(IdsIn("copy.fdb"), (std::vector{1, 2}));
}

TEST_F(Backups, RowsInsertedIntoACompactOneComeBehindItsOwn) {
  MakeStore("store.fdb", {5, 6});
  for (int i = 0; i < 5; ++i) MakeStore("store.fdb", {10 + i});
  {
    Database db;
    ASSERT_TRUE(db.open("store", folder.File().c_str()));
    ASSERT_TRUE(db.backup(folder.File("copy.fdb").c_str(), true)) << db.Reported();
  }
  MakeStore("copy.fdb", {1});
  Database db;
  ASSERT_TRUE(db.open("store", folder.File("copy.fdb").c_str()));
  EXPECT_EQ(EntryIds(db, ""), (std::vector{5, 6, 10, 11, 12, 13, 14, 1}));
}

TEST_F(Backups, ThatFindNoRoomAreReportedAndLeaveNothing) {
  MakeStore();
  WriteBytes(folder.File("copy.fdb"), "before");
  const std::string said = RunHelper({"backup", folder.File(), folder.File("copy.fdb"), "8192"});
  EXPECT_NE(said.find("backup to " + folder.File("copy.fdb") + ": "), std::string::npos) << said;
  EXPECT_EQ(Files(), (std::set<std::string>{"copy.fdb", "store.fdb", "store.fdb-lock"}));
  EXPECT_EQ(ReadBytes(folder.File("copy.fdb")), "before");
}

TEST_F(Backups, AreNotWrittenOverTheStore) {
  MakeStore("store.fdb", {1});
  fs::create_symlink(folder.File(), folder.File("link.fdb"));
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  EXPECT_FALSE(db.backup(folder.File("link.fdb").c_str(), false));
  EXPECT_NE(db.Reported().find("is the store itself"), std::string::npos);
  EXPECT_FALSE(db.backup(folder.File("none/copy.fdb").c_str(), false));
  EXPECT_NE(db.Reported().find("none/copy.fdb: No such file or directory"), std::string::npos);
}

TEST_F(Backups, AreRestoredWithUnknownNumbersOfChanges) {
  MakeStore("copy.fdb", {1, 2, 3});
  MakeStore("store.fdb", {7});
  ASSERT_EQ(::chmod(folder.File().c_str(), 0640), 0);
  EXPECT_EQ(Restore("copy.fdb"), "");
  EXPECT_EQ(IdsIn("store.fdb"), (std::vector{1, 2, 3}));
  EXPECT_EQ(fs::status(folder.File()).permissions(), static_cast<fs::perms>(0640));
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  EXPECT_EQ(db.changeNumber(db.lookupTable(&entry::dbDescriptor)), 0U);
  AddEntry(db, 9);
  db.commit();
  EXPECT_EQ(EntryIds(db), (std::vector{1, 2, 3, 9}));
  EXPECT_EQ(db.Reported(), "");
}

TEST_F(Backups, AreRestoredWhereThereIsNoStore) {
  MakeStore("copy.fdb", {1});
  EXPECT_EQ(Restore("copy.fdb"), "");
  EXPECT_EQ(IdsIn("store.fdb"), std::vector{1});
}

TEST_F(Backups, LeaveTheOldStoreUnderAnotherName) {
  MakeStore("copy.fdb", {1});
  MakeStore("store.fdb", {7});
  EXPECT_EQ(Restore("copy.fdb", "old.fdb"), "");
  EXPECT_EQ(IdsIn("store.fdb"), std::vector{1});
  EXPECT_EQ(IdsIn("old.fdb"), std::vector{7});
  EXPECT_EQ(Restore("copy.fdb", "old.fdb"), folder.File("old.fdb") + ": File exists");
  EXPECT_EQ(IdsIn("store.fdb"), std::vector{1});
}

TEST_F(Backups, AreNotRestoredOverAStoreInUse) {
  MakeStore("copy.fdb", {1});
  MakeStore("store.fdb", {7});
  {
    Helper other({"look", folder.File()});
    ASSERT_EQ(other.Line(), "reading");
    EXPECT_NE(Restore("copy.fdb").find("has the store open"), std::string::npos);
  }
  {
    Database db;
    ASSERT_TRUE(db.open("store", folder.File().c_str()));
    EXPECT_NE(Restore("copy.fdb").find("this program has the store open"), std::string::npos);
    AddEntry(db, 8);
    db.commit();
    EXPECT_EQ(db.Reported(), "");
  }
  EXPECT_EQ(IdsIn("store.fdb"), (std::vector{7, 8}));
}

TEST_F(Backups, ThatAreDamagedAreNotRestored) {
  MakeStore("copy.fdb", {1});
  MakeStore("store.fdb", {7});
  std::string bytes = ReadBytes(folder.File("copy.fdb"));
  const std::string whole = bytes;
  bytes.resize(bytes.size() - 4096);
  WriteBytes(folder.File("copy.fdb"), bytes);
  EXPECT_NE(Restore("copy.fdb").find("copy.fdb: the store is damaged"), std::string::npos);
  WriteBytes(folder.File("copy.fdb"), "no store");
  EXPECT_NE(Restore("copy.fdb").find("copy.fdb: not a store"), std::string::npos);
  WriteBytes(folder.File("copy.fdb"), whole);
  EXPECT_EQ(RestoreStore(folder.File("copy.fdb"), folder.File(), "", [](const std::string&) { return "rows"; }),
            folder.File("copy.fdb") + ": rows");
  EXPECT_EQ(RestoreStore(folder.File(), folder.File(), "", [](const std::string&) { return std::string(); }),
            folder.File() + ": is the store itself");
  EXPECT_EQ(IdsIn("store.fdb"), std::vector{7});
}

TEST_F(Backups, ThatAreKilledWhileTheyAreRestoredLeaveAWholeStore) {
  MakeStore("a.fdb", {1, 2});
  MakeStore("b.fdb", {3});
  MakeStore("store.fdb", {7});
  for (int round = 0; round < 15; ++round) {
    Helper restoring({"restore", folder.File(), folder.File("a.fdb"), folder.File("b.fdb")});
    ASSERT_EQ(restoring.Line(), "restoring");
    ::usleep(static_cast<useconds_t>(1000 * (round * 7 % 23)));
    restoring.Kill();
    const std::vector<int> ids = IdsIn("store.fdb");
    EXPECT_TRUE(ids == (std::vector{1, 2}) || ids == std::vector{3} || ids == std::vector{7}) << round;
  }
}

}  // namespace
