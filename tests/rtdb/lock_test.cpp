// A store or its lock file that goes away under the programs that use it, and lock files that are left behind.

#include <gtest/gtest.h>
#include <lmdb.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "samples.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::RunHelper;

namespace {

struct Vanished : ::testing::Test {
  void SetUp() override {
    ASSERT_EQ(RunHelper({"make", folder.File()}), "");
    ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
    EXPECT_EQ(EntryIds(db).size(), 400U);
    db.commit();
  }
  std::string Lock() const { return folder.File() + "-lock"; }

  /// Reading and writing fail with one message each, again and again, and nothing is done.
  void ExpectReported(const std::string& why) {
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(EntryIds(db).size(), 0U);
      ExpectOneError(why);
      EXPECT_EQ(AddEntry(db, 1000).getOid(), 0U);
      ExpectOneError(why);
      db.commit();
      EXPECT_EQ(db.Reported(), "");
    }
  }
  void ExpectOneError(const std::string& why) {
    EXPECT_EQ(db.errors, std::vector{dbDatabase::FileError});
    const std::string reported = db.Reported();
    EXPECT_EQ(reported.find(folder.File() + ": "), 0U) << reported;
    EXPECT_NE(reported.find(why), std::string::npos) << reported;
  }
  /// A new store where the old one stood works beside programs that still have the old one open.
  void ExpectNewStoreWorks() {
    EXPECT_EQ(RunHelper({"make", folder.File()}), "");
    EXPECT_EQ(RunHelper({"check", folder.File()}), "whole 7\n");
    Database fresh;
    ASSERT_TRUE(fresh.open("store", folder.File().c_str())) << fresh.Reported();
    EXPECT_EQ(EntryIds(fresh).size(), 400U);
    EXPECT_NE(AddEntry(fresh, 1000).getOid(), 0U);
    fresh.close();
    EXPECT_EQ(RunHelper({"add", folder.File(), "1001"}), "added\n");
    EXPECT_EQ(fresh.Reported(), "");
  }

  Folder folder;
  Database db;
};

TEST_F(Vanished, RemovedStoreIsReported) {
  fs::remove(folder.File());
  ExpectReported("the store has been removed or renamed");
  ExpectNewStoreWorks();
  ExpectReported("another file has taken the place of the store");
}

TEST_F(Vanished, RenamedStoreIsReportedUntilItIsBack) {
  fs::rename(folder.File(), folder.File("moved.fdb"));
  ExpectReported("the store has been removed or renamed");
  fs::rename(folder.File("moved.fdb"), folder.File());
  EXPECT_EQ(EntryIds(db).size(), 400U) << db.Reported();
}

TEST_F(Vanished, ReplacedStoreIsReportedAndTheOtherCanBeUsed) {
  ASSERT_EQ(RunHelper({"make", folder.File("other.fdb")}), "");
  fs::rename(folder.File("other.fdb"), folder.File());
  ExpectReported("another file has taken the place of the store");
  EXPECT_EQ(RunHelper({"check", folder.File()}), "whole 7\n");
  EXPECT_EQ(RunHelper({"add", folder.File(), "1000"}), "added\n");
  db.close();
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 401U);
}

TEST_F(Vanished, RemovedFolderIsReported) {
  fs::remove_all(fs::path(folder.File()).parent_path());
  ExpectReported("the store has been removed or renamed");
}

TEST_F(Vanished, RemovedLockFileIsReportedAndLetsNobodyElseIn) {
  fs::remove(Lock());
  ExpectReported("its lock file " + Lock() + " has been removed or replaced");
  for (const char* command : {"check", "add"}) {
    const std::string output = RunHelper({command, folder.File(), "1000"});
    EXPECT_NE(output.find("process " + std::to_string(::getpid()) + " has the store open with another lock file"),
              std::string::npos)
        << output;
  }
  db.close();
  EXPECT_EQ(RunHelper({"add", folder.File(), "1000"}), "added\n");
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 401U);
}

TEST_F(Vanished, TransactionThatRunsKeepsItsRows) {
  dbCursor<sample::entry> cursor(&db);
  ASSERT_EQ(cursor.select(), 400);
  fs::remove(folder.File());
  ExpectNewStoreWorks();
  int met = 0;
  for (const sample::entry* row = cursor.get(); row != nullptr; row = cursor.next()) ++met;
  EXPECT_EQ(met, 400);
  db.commit();
  EXPECT_EQ(db.Reported(), "");
}

TEST_F(Vanished, NewStoreDoesNotWaitForTheWriterOfTheOldOne) {
  Helper writer({"hold", folder.File()});
  ASSERT_EQ(writer.Line(), "holding");
  fs::remove(folder.File());
  ExpectNewStoreWorks();
  EXPECT_TRUE(writer.IsRunning());
}

TEST_F(Vanished, WaitForALostStoreIsReportedToTheWriter) {
  Helper writer({"hold", folder.File()});
  ASSERT_EQ(writer.Line(), "holding");
  Helper other({"add", folder.File(), "1000"});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  ASSERT_TRUE(other.IsRunning());
  fs::remove(folder.File());
  writer.Kill();
  EXPECT_NE(other.Line().find("the store has been removed or renamed"), std::string::npos);
}

TEST_F(Vanished, EmptiedStoreLetsNobodyElseIn) {
  db.close();
  Helper reader({"read", folder.File()});
  ASSERT_EQ(reader.Line(), "reading");
  fs::resize_file(folder.File(), 0);
  EXPECT_NE(RunHelper({"add", folder.File(), "1"}).find("has the store open"), std::string::npos);
}

TEST(LockFile, ThatIsLeftBehindDoesNotStandInTheWay) {
  Folder folder;
  const auto lock = [&folder](const char* name) { return folder.File(std::string(name) + "-lock"); };
  EXPECT_EQ(RunHelper({"make", folder.File()}), "");
  EXPECT_EQ(RunHelper({"make", folder.File("copy.fdb")}), "");
  // That of a removed store, of another one, of an earlier version, and what is none.
  fs::rename(lock("store.fdb"), lock("new.fdb"));
  fs::copy_file(lock("copy.fdb"), lock("store.fdb"));
  fs::resize_file(lock("copy.fdb"), 65536);
  std::ofstream(lock("text.fdb")) << "text";
  for (const char* name : {"new.fdb", "text.fdb"}) EXPECT_EQ(RunHelper({"make", folder.File(name)}), "");
  for (const char* name : {"store.fdb", "copy.fdb", "new.fdb", "text.fdb"}) {
    EXPECT_EQ(RunHelper({"check", folder.File(name)}), "whole 7\n") << name;
  }
}

TEST(LockFile, OfAnLmdbProgramWithoutItsStoreIsShared) {
  Folder folder;
  EXPECT_EQ(RunHelper({"make", folder.File()}), "");
  fs::remove(folder.File() + "-lock");
  MDB_env* env = nullptr;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, folder.File().c_str(), MDB_NOSUBDIR | MDB_NOTLS, 0664), 0);
  MDB_txn* writing = nullptr;
  ASSERT_EQ(mdb_txn_begin(env, nullptr, 0, &writing), 0);
  Helper other({"add", folder.File(), "1000"});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_TRUE(other.IsRunning()) << "wrote beside another writer";
  mdb_txn_abort(writing);
  EXPECT_EQ(other.Line(), "added");
  mdb_env_close(env);
}

TEST(LockFile, DoesNotComeIntoBeingBesideAStoreThatCannotBeOpened) {
  Folder folder;
  std::ofstream(folder.File()) << "a text";
  Database db;
  EXPECT_FALSE(db.open("store", folder.File().c_str()));
  Database none;
  std::filesystem::create_directory(folder.File("new.fdb-lock"));
  EXPECT_FALSE(none.open("store", folder.File("new.fdb").c_str()));
  EXPECT_NE(none.Reported().find("new.fdb-lock: "), std::string::npos);
  EXPECT_FALSE(fs::exists(folder.File("new.fdb"))) << "an empty file is left";
}

}  // namespace
