// One store, whatever name leads to it: one lock for all programs.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
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

/// A store of 400 rows and, in folders of their own, other names for it.
struct Names : ::testing::Test {
  void SetUp() override {
    ASSERT_EQ(RunHelper({"make", folder.File()}), "");
    fs::create_symlink(folder.File(), links.File("link.fdb"));
    fs::create_directory_symlink(fs::path(folder.File()).parent_path(), links.File("folder"));
  }
  std::string FolderLink() const { return links.File("folder/store.fdb"); }

  /// A writer under one name waits for one under another.
  void ExpectOneWriter(const std::string& first, const std::string& second) {
    Helper writer({"hold", first});
    ASSERT_EQ(writer.Line(), "holding");
    Helper other({"add", second, "1000"});
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_TRUE(other.IsRunning()) << "wrote beside another writer";
    writer.Kill();
    EXPECT_EQ(other.Line(), "added");
  }

  Folder folder;
  Folder links;
};

TEST_F(Names, SymbolicLinkHasNoLockOfItsOwn) {
  ExpectOneWriter(folder.File(), links.File("link.fdb"));
  ExpectOneWriter(links.File("link.fdb"), folder.File());
  EXPECT_FALSE(fs::exists(links.File("link.fdb-lock")));
}

TEST_F(Names, LinkedFolderLeadsToTheSameStore) { ExpectOneWriter(FolderLink(), folder.File()); }

TEST_F(Names, RelativePathIsThatOfTheOpening) {
  const fs::path before = fs::current_path();
  fs::current_path(fs::path(folder.File()).parent_path());
  Database db;
  ASSERT_TRUE(db.open("store")) << db.Reported();
  fs::current_path(links.File("folder/.."));
  EXPECT_EQ(EntryIds(db).size(), 400U);
  AddEntry(db, 1000);
  Helper other({"add", folder.File(), "1001"});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_TRUE(other.IsRunning());
  db.commit();
  EXPECT_EQ(other.Line(), "added");
  EXPECT_EQ(EntryIds(db).size(), 402U) << db.Reported();
  fs::current_path(before);
}

TEST_F(Names, AllNamesAreOneStoreWithinAProcess) {
  Database first;
  Database second;
  ASSERT_TRUE(first.open("store", folder.File().c_str()));
  ASSERT_TRUE(second.open("store", links.File("link.fdb").c_str())) << second.Reported();
  AddEntry(first, 1000);
  AddEntry(second, 1001);
  EXPECT_EQ(second.errors, std::vector{dbDatabase::Deadlock}) << "one thread, one writer";
}

TEST_F(Names, LinkToAMissingStoreMakesItWhereTheLinkLeads) {
  fs::create_symlink(folder.File("new.fdb"), links.File("new.fdb"));
  Database db;
  ASSERT_TRUE(db.open("store", links.File("new.fdb").c_str())) << db.Reported();
  EXPECT_TRUE(fs::is_regular_file(folder.File("new.fdb")));
  EXPECT_TRUE(fs::exists(folder.File("new.fdb-lock")));
  EXPECT_FALSE(fs::exists(links.File("new.fdb-lock")));
  fs::create_symlink("/no/such/folder/x.fdb", links.File("nowhere.fdb"));
  Database none;
  EXPECT_FALSE(none.open("store", links.File("nowhere.fdb").c_str()));
  EXPECT_NE(none.Reported().find("no such folder"), std::string::npos);
}

TEST_F(Names, HardLinksAreRefusedUntilOneNameIsLeft) {
  fs::create_hard_link(folder.File(), folder.File("second.fdb"));
  for (const char* name : {"store.fdb", "second.fdb"}) {
    Database db;
    EXPECT_FALSE(db.open("store", folder.File(name).c_str()));
    const std::string reported = db.Reported();
    EXPECT_NE(reported.find(std::string(name) + ": the file has 2 names (hard links)"), std::string::npos) << reported;
  }
  EXPECT_FALSE(fs::exists(folder.File("second.fdb-lock")));
  fs::remove(folder.File());
  Database db;
  ASSERT_TRUE(db.open("store", folder.File("second.fdb").c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 400U);
}

// As where a file is mounted alone, without its folder: the same file, and another lock file beside it.
TEST_F(Names, StoreThatIsOpenUnderAnotherNameIsRefused) {
  Helper reader({"read", folder.File()});
  ASSERT_EQ(reader.Line(), "reading");
  fs::rename(folder.File(), folder.File("moved.fdb"));
  const std::string output = RunHelper({"add", folder.File("moved.fdb"), "1000"});
  EXPECT_NE(output.find("has the store open with another lock file than " + folder.File("moved.fdb-lock")),
            std::string::npos)
      << output;
  reader.Kill();
  EXPECT_EQ(RunHelper({"add", folder.File("moved.fdb"), "1000"}), "added\n");
}

TEST_F(Names, PipeIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(folder.File("pipe.fdb").c_str(), 0600), 0);
  Database db;
  EXPECT_FALSE(db.open("store", folder.File("pipe.fdb").c_str()));
  EXPECT_NE(db.Reported().find("not a store of the realtime database"), std::string::npos);
}

}  // namespace
