#include <gtest/gtest.h>
#include <lmdb.h>
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "samples.h"
#include "tests/support/bytes.h"
#include "tests/support/process.h"

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::ReadBytes;
using dtsdb::test::RunHelper;
using dtsdb::test::WriteBytes;
using sample::entry;
using sample::item;

namespace {

/// A store with rows on many pages, some of them too large for one.
void FillPages(const std::string& path, int rows = 400) {
  Database db;
  ASSERT_TRUE(db.open("store", path.c_str())) << db.Reported();
  for (int id = 0; id < rows; ++id) AddEntry(db, id, 0, std::string(static_cast<std::size_t>(id), 't').c_str());
  item large;
  const std::string text(20000, 'l');
  large.id = "large";
  large.name = text.c_str();
  db.insert(large);
  db.commit();
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  cursor.select("id >= 100 and id < 200");
  cursor.removeAllSelected();
  db.commit();
}

void ExpectRefused(const std::string& path, const std::string& why) {
  Database db;
  EXPECT_FALSE(db.open("store", path.c_str()));
  EXPECT_EQ(db.errors.size(), 1U);
  const std::string reported = db.Reported();
  EXPECT_NE(reported.find(path + ": "), std::string::npos) << reported;
  EXPECT_NE(reported.find(why), std::string::npos) << reported;
}

TEST(Files, NameMayStandWithoutItsEnding) {
  Folder folder;
  struct stat about {};
  {
    Database db;
    ASSERT_TRUE(db.open(folder.File("grid").c_str()));
    AddEntry(db, 1);
    db.close();
  }
  EXPECT_EQ(::stat(folder.File("grid.fdb").c_str(), &about), 0);
  EXPECT_NE(::stat(folder.File("grid").c_str(), &about), 0);
  Database full;
  ASSERT_TRUE(full.open(folder.File("grid.fdb").c_str()));
  EXPECT_EQ(EntryIds(full), std::vector<int>{1});
  full.close();
  std::filesystem::rename(folder.File("grid.fdb"), folder.File("plain"));
  Database plain;
  ASSERT_TRUE(plain.open(folder.File("plain").c_str()));
  EXPECT_EQ(EntryIds(plain), std::vector<int>{1});
}

TEST(Files, MissingFolderIsReported) { ExpectRefused("/no/such/folder/store.fdb", "no such folder"); }

TEST(Files, MissingFileIsNotMadeForReadingOnly) {
  Folder folder;
  Database db(dbDatabase::dbReadOnly);
  EXPECT_FALSE(db.open("store", folder.File().c_str()));
  EXPECT_NE(db.Reported().find("No such file"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder.File()));
}

TEST(Files, OpenTwiceByOneDatabaseIsRefused) {
  Folder folder;
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  EXPECT_FALSE(db.open("store", folder.File().c_str()));
  EXPECT_EQ(db.errors, std::vector{dbDatabase::DatabaseOpenError});
  EXPECT_TRUE(db.isOpen());
}

TEST(Files, FileThatMayNotBeWrittenIsRefused) {
  Folder folder;
  FillPages(folder.File());
  const std::string before = ReadBytes(folder.File());
  std::filesystem::permissions(std::filesystem::path(folder.File()).parent_path(), std::filesystem::perms(0755));
  ::chmod(folder.File().c_str(), 0444);
  ::chmod((folder.File() + "-lock").c_str(), 0666);
  // Line by line: a leak checker may add its own, since it can't look into a process that has changed its user.
  Helper helper({"readonly", folder.File()});
  EXPECT_EQ(helper.Line(), "realtime store: open: " + folder.File() + ": Permission denied");
  EXPECT_EQ(helper.Line(), "unreadable");
  EXPECT_EQ(ReadBytes(folder.File()), before);
}

TEST(Files, EmptyFileBecomesAStore) {
  Folder folder;
  WriteBytes(folder.File(), "");
  Database db;
  EXPECT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_NE(AddEntry(db, 1).getOid(), 0U);
}

TEST(Files, ForeignFilesAreRefusedAndLeftAlone) {
  Folder folder;
  for (const std::string& bytes : {std::string("a text\n"), std::string(20000, '\0'),
                                   std::string("SQLite format 3\0", 16), std::string(20000, 'x')}) {
    WriteBytes(folder.File(), bytes);
    ExpectRefused(folder.File(), "not a store of the realtime database");
    EXPECT_EQ(ReadBytes(folder.File()), bytes);
  }
  std::filesystem::create_directory(folder.File("folder.fdb"));
  ExpectRefused(folder.File("folder.fdb"), "not a store of the realtime database");
}

TEST(Files, StoreOfAnotherProgramIsRefusedAndLeftAlone) {
  Folder folder;
  MDB_env* env = nullptr;
  MDB_txn* txn = nullptr;
  MDB_dbi table = 0;
  ASSERT_EQ(mdb_env_create(&env), 0);
  ASSERT_EQ(mdb_env_open(env, folder.File().c_str(), MDB_NOSUBDIR, 0664), 0);
  ASSERT_EQ(mdb_txn_begin(env, nullptr, 0, &txn), 0);
  ASSERT_EQ(mdb_dbi_open(txn, nullptr, 0, &table), 0);
  MDB_val key{3, const_cast<char*>("key")};
  ASSERT_EQ(mdb_put(txn, table, &key, &key, 0), 0);
  ASSERT_EQ(mdb_txn_commit(txn), 0);
  mdb_env_close(env);
  const std::string before = ReadBytes(folder.File());
  ExpectRefused(folder.File(), "not a store of the realtime database");
  EXPECT_EQ(ReadBytes(folder.File()), before);
}

TEST(Files, TruncatedFileIsRefused) {
  Folder folder;
  FillPages(folder.File());
  const std::string whole = ReadBytes(folder.File());
  for (const std::size_t size : {whole.size() / 2, std::size_t{3 * 4096}, std::size_t{2 * 4096}, std::size_t{5000}}) {
    WriteBytes(folder.File(), whole.substr(0, size));
    ExpectRefused(folder.File(), "damaged");
  }
  WriteBytes(folder.File(), whole.substr(0, 100));
  ExpectRefused(folder.File(), "not a store");
}

/// Does all that a program may do to a store. Whatever the file holds, it returns.
void UseStore(const std::string& path) {
  Database db;
  if (!db.open("store", path.c_str())) return;
  dbCursor<entry> view(&db);
  view.select("order by id");
  std::size_t length = 0;
  for (entry* row = view.get(); row != nullptr; row = view.next()) length += std::string(row->text).size();
  dbCursor<item> items(&db);
  items.select("name like '%l' order by name");
  for (item* row = items.get(); row != nullptr; row = items.next()) length += std::string(row->name).size();
  db.commit();
  dbCursor<entry> writer(&db, dbCursorForUpdate);
  writer.select("id >= 50");
  for (entry* row = writer.get(); row != nullptr; row = writer.next()) {
    row->value = static_cast<int>(length % 1000);
    row->text = "changed";
    writer.update();
  }
  for (int id = 0; id < 50; ++id) AddEntry(db, id + 150, id, "added");
  writer.select("id < 20");
  writer.removeAllSelected();
  db.commit();
}

TEST(Files, DamagedBytesNeverBringTheProcessDown) {
  Folder folder;
  FillPages(folder.File());
  const std::string whole = ReadBytes(folder.File());
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = whole;
    const int changes = 1 + static_cast<int>(random() % 4);
    for (int i = 0; i < changes; ++i) {
      // Every second round hits the heads of pages, where damage does most.
      std::size_t place = random() % bytes.size();
      if (round % 2 == 0) place = place / 4096 * 4096 + random() % 160;
      if (place < bytes.size()) bytes[place] = static_cast<char>(random());
    }
    std::filesystem::remove(folder.File() + "-lock");
    WriteBytes(folder.File(), bytes);
    UseStore(folder.File());
  }
  std::filesystem::remove(folder.File() + "-lock");
  WriteBytes(folder.File(), whole);
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 300U);
}

TEST(Files, FullStoreGivesUpTheTransactionAndKeepsTheRest) {
  Folder folder;
  Database db;
  db.setFileSizeLimit(256 << 10);
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  AddEntry(db, 1, 0, "kept");
  db.commit();
  const std::string text(1000, 'f');
  bool stored = true;
  int inserted = 0;
  while (stored && inserted < 10000) {
    stored = AddEntry(db, 100 + inserted, 0, text.c_str()).getOid() != 0;
    ++inserted;
  }
  EXPECT_FALSE(stored);
  EXPECT_EQ(db.errors, std::vector{dbDatabase::FileLimitExeeded});
  EXPECT_NE(db.Reported().find("size limit"), std::string::npos);
  EXPECT_EQ(AddEntry(db, 2).getOid(), 0U);
  dbCursor<entry> cursor(&db);
  EXPECT_EQ(cursor.select(), 0);
  EXPECT_TRUE(db.errors.empty()) << "the fault is reported once";
  db.commit();
  EXPECT_NE(db.Reported().find("nothing committed"), std::string::npos);
  EXPECT_EQ(EntryIds(db), std::vector<int>{1});
  EXPECT_NE(AddEntry(db, 2).getOid(), 0U);
  db.commit();
  EXPECT_EQ(EntryIds(db), (std::vector<int>{1, 2}));
  EXPECT_EQ(db.Reported(), "");
}

TEST(Files, StoreMayGrowTo64GiB) {
  Folder folder;
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  std::ifstream maps("/proc/self/maps");
  std::uint64_t size = 0;
  for (std::string line; std::getline(maps, line);) {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    if (!line.ends_with(folder.File()) || std::sscanf(line.c_str(), "%lx-%lx", &begin, &end) != 2) continue;
    size += end - begin;
  }
  EXPECT_EQ(size, std::uint64_t{1} << 36);
}

TEST(Files, RollbackAfterAFullStoreIsQuiet) {
  Folder folder;
  Database db;
  db.setFileSizeLimit(256 << 10);
  ASSERT_TRUE(db.open("store", folder.File().c_str()));
  const std::string text(100000, 'f');
  while (AddEntry(db, 1, 0, text.c_str()).getOid() != 0) {
  }
  db.Reported();
  db.rollback();
  EXPECT_EQ(db.Reported(), "");
  EXPECT_EQ(EntryIds(db), std::vector<int>{});
}

TEST(Files, FullDiskIsReportedAtTheCommitAndKeepsTheLastOne) {
  Folder folder;
  EXPECT_EQ(RunHelper({"make", folder.File()}), "");
  const std::string output = RunHelper({"full", folder.File(), "200000"});
  EXPECT_NE(output.find(": commit: Input/output error\n"), std::string::npos) << output;
  EXPECT_NE(output.find("whole 7\n"), std::string::npos) << output;
  EXPECT_EQ(RunHelper({"check", folder.File()}), "whole 7\n");
}

}  // namespace
