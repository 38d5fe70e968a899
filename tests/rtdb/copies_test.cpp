#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/rtdb/samples.h"

namespace dtsdb::test {
namespace {

oid_t NumberOfFirst(Database& db) {
  dbCursor<sample::item> cursor(&db);
  cursor.select();
  return cursor.currentId().getOid();
}

sample::item ItemCalled(const char* id) {
  sample::item row;
  row.id = id;
  return row;
}

/// Makes the store a copy with the note "one" and a row "a".
void MakeCopy(const std::string& file) {
  Database keeper(dbDatabase::dbCopyAccess);
  ASSERT_TRUE(keeper.open("", file.c_str()));
  EXPECT_TRUE(keeper.setCopyNote("one"));
  keeper.insert(ItemCalled("a"));
  keeper.commit();
  EXPECT_TRUE(keeper.errors.empty());
}

TEST(RealtimeCopy, RowsKeepTheNumbersOfTheOriginal) {
  const Folder folder;
  Database db(dbDatabase::dbAllAccess);
  ASSERT_TRUE(db.open("", folder.File().c_str()));
  const oid_t number = (oid_t{1} << 40) + 5;
  const sample::item row = ItemCalled("far");
  EXPECT_TRUE(db.insertRecordAs(number, db.lookupTable(&sample::item::dbDescriptor), &row));
  db.commit();
  EXPECT_EQ(NumberOfFirst(db), number);
  db.commit();
  EXPECT_GT(db.insert(ItemCalled("later")).getOid(), number);
  db.commit();
  db.close();
  ASSERT_TRUE(db.open("", folder.File().c_str()));
  EXPECT_GT(db.insert(ItemCalled("latest")).getOid(), number + 1);
  db.commit();
  EXPECT_TRUE(db.errors.empty());
}

TEST(RealtimeCopy, ARowUnderANumberThatIsTakenIsRefused) {
  const Folder folder;
  Database db(dbDatabase::dbAllAccess);
  ASSERT_TRUE(db.open("", folder.File().c_str()));
  const sample::item row = ItemCalled("one");
  dbTableDescriptor* const table = db.lookupTable(&sample::item::dbDescriptor);
  EXPECT_TRUE(db.insertRecordAs(5, table, &row));
  EXPECT_FALSE(db.insertRecordAs(5, table, &row));
  EXPECT_FALSE(db.errors.empty());
}

TEST(RealtimeCopy, OthersReadItAndDoNotChangeIt) {
  const Folder folder;
  MakeCopy(folder.File());
  Database other(dbDatabase::dbAllAccess);
  ASSERT_TRUE(other.open("", folder.File().c_str()));
  EXPECT_NE(NumberOfFirst(other), 0U);
  EXPECT_EQ(other.insert(ItemCalled("b")).getOid(), 0U);
  EXPECT_NE(other.messages.at(0).find("a copy of another database"), std::string::npos);
  EXPECT_EQ(other.copyNote(), "one");
}

TEST(RealtimeCopy, AProgramThatHasItOpenNoLongerChangesIt) {
  const Folder folder;
  Database other(dbDatabase::dbAllAccess);
  ASSERT_TRUE(other.open("", folder.File().c_str()));
  EXPECT_NE(other.insert(ItemCalled("own")).getOid(), 0U);
  other.commit();
  MakeCopy(folder.File());
  EXPECT_EQ(other.insert(ItemCalled("b")).getOid(), 0U);
  EXPECT_FALSE(other.errors.empty());
}

TEST(RealtimeCopy, ItsNoteMovesOnlyFromWhatItIs) {
  const Folder folder;
  MakeCopy(folder.File());
  Database keeper(dbDatabase::dbCopyAccess);
  ASSERT_TRUE(keeper.open("", folder.File().c_str()));
  EXPECT_FALSE(keeper.moveCopyNote("zero", "two"));
  keeper.rollback();
  EXPECT_EQ(keeper.copyNote(), "one");
  keeper.commit();
  EXPECT_TRUE(keeper.moveCopyNote("one", "two"));
  keeper.commit();
  EXPECT_EQ(keeper.copyNote(), "two");
  EXPECT_TRUE(keeper.errors.empty());
}

TEST(RealtimeCopy, ItsNoteIsCommittedWithItsRows) {
  const Folder folder;
  MakeCopy(folder.File());
  Database keeper(dbDatabase::dbCopyAccess);
  ASSERT_TRUE(keeper.open("", folder.File().c_str()));
  EXPECT_TRUE(keeper.moveCopyNote("one", "two"));
  keeper.insert(ItemCalled("b"));
  keeper.rollback();
  EXPECT_EQ(keeper.copyNote(), "one");
  EXPECT_EQ(dbCursor<sample::item>(&keeper).select(), 1);
}

TEST(RealtimeCopy, IsAnOrdinaryStoreWithoutANote) {
  const Folder folder;
  MakeCopy(folder.File());
  {
    Database keeper(dbDatabase::dbCopyAccess);
    ASSERT_TRUE(keeper.open("", folder.File().c_str()));
    EXPECT_TRUE(keeper.setCopyNote(""));
    keeper.commit();
  }
  Database other(dbDatabase::dbAllAccess);
  ASSERT_TRUE(other.open("", folder.File().c_str()));
  EXPECT_EQ(other.copyNote(), "");
  EXPECT_NE(other.insert(ItemCalled("b")).getOid(), 0U);
  EXPECT_FALSE(other.setCopyNote("mine"));
}

}  // namespace
}  // namespace dtsdb::test
