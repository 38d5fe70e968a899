#include <gtest/gtest.h>

#include "samples.h"
#include "tests/support/bytes.h"

using dtsdb::test::AddEntry;
using dtsdb::test::EntryIds;
using dtsdb::test::OpenStore;
using dtsdb::test::ReadBytes;
using sample::entry;
using sample::item;
using sample::note;

namespace {

struct Cursors : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(store.opened);
    for (const int id : {3, 1, 2}) AddEntry(store.db, id, id * 10, "text");
    store.db.commit();
  }
  void TearDown() override { EXPECT_EQ(store.db.Reported(), expected); }

  OpenStore store;
  std::string expected;
};

TEST_F(Cursors, EmptySelectionHasNoRow) {
  dbCursor<entry> cursor(&store.db);
  EXPECT_EQ(cursor.select("id = 99"), 0);
  EXPECT_EQ(cursor.get(), nullptr);
  EXPECT_EQ(cursor.next(), nullptr);
  EXPECT_EQ(cursor.prev(), nullptr);
  EXPECT_EQ(cursor.first(), nullptr);
  EXPECT_EQ(cursor.last(), nullptr);
  EXPECT_EQ(cursor.getNumberOfRecords(), 0);
  EXPECT_FALSE(cursor.skip(1));
}

TEST_F(Cursors, BeforeTheFirstSelectThereIsNoRow) {
  dbCursor<entry> cursor(&store.db);
  EXPECT_EQ(cursor.get(), nullptr);
  EXPECT_EQ(cursor.next(), nullptr);
  cursor.reset();
}

TEST_F(Cursors, GetStaysOnTheLastRowWhenNextFindsNone) {
  dbCursor<entry> cursor(&store.db);
  for (const char* query : {"order by id", "id > 0 order by id", "order by value"}) {
    ASSERT_EQ(cursor.select(query), 3);
    EXPECT_NE(cursor.next(), nullptr);
    EXPECT_NE(cursor.next(), nullptr);
    EXPECT_EQ(cursor.next(), nullptr);
    EXPECT_EQ(cursor.next(), nullptr);
    ASSERT_NE(cursor.get(), nullptr);
    EXPECT_EQ(cursor.get()->id, 3);
    EXPECT_EQ(cursor.prev()->id, 2);
    EXPECT_EQ(cursor.prev()->id, 1);
    EXPECT_EQ(cursor.prev(), nullptr);
    EXPECT_EQ(cursor.get()->id, 1);
  }
}

TEST_F(Cursors, MoveBothWays) {
  dbCursor<entry> cursor(&store.db);
  for (const char* query : {"order by id", "order by value"}) {
    ASSERT_EQ(cursor.select(query), 3);
    EXPECT_TRUE(cursor.isFirst());
    EXPECT_EQ(cursor.last()->id, 3);
    EXPECT_TRUE(cursor.isLast());
    EXPECT_EQ(cursor.first()->id, 1);
    EXPECT_TRUE(cursor.skip(2));
    EXPECT_EQ(cursor->id, 3);
    EXPECT_FALSE(cursor.skip(1));
    EXPECT_TRUE(cursor.skip(-1));
    EXPECT_EQ(cursor->id, 2);
    EXPECT_FALSE(cursor.skip(-2));
    EXPECT_EQ(cursor->id, 2);
  }
}

TEST_F(Cursors, RowsWithoutKeyKeepTheOrderOfInsertion) {
  for (const char* text : {"b", "c", "a"}) {
    note row;
    row.text = text;
    store.db.insert(row);
    if (*text == 'c') store.db.commit();
  }
  dbCursor<note> cursor(&store.db);
  cursor.select();
  EXPECT_EQ(dtsdb::test::Walk(cursor, [](const note& row) { return std::string(row.text); }),
            (std::vector<std::string>{"b", "c", "a"}));
}

TEST_F(Cursors, EqualIdsAreAllKept) {
  AddEntry(store.db, 2, 21);
  AddEntry(store.db, 2, 22);
  dbCursor<entry> cursor(&store.db);
  EXPECT_EQ(cursor.select("id = 2"), 3);
  EXPECT_EQ(dtsdb::test::Walk(cursor, [](const entry& row) { return row.value; }), (std::vector<int>{20, 21, 22}));
}

TEST_F(Cursors, UpdateWritesTheRecordBack) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id = 2"), 1);
  cursor->value = 5;
  cursor->text = "a longer text than before";
  cursor.update();
  EXPECT_STREQ(cursor->text, "a longer text than before");
  cursor->value = 6;
  cursor.update();
  store.db.commit();
  ASSERT_EQ(cursor.select("id = 2"), 1);
  EXPECT_EQ(cursor->value, 6);
  EXPECT_STREQ(cursor->text, "a longer text than before");
}

TEST_F(Cursors, TextOfTheRecordOutlivesAnUpdateOfTheSameRowByAnotherCursor) {
  dbCursor<entry> one(&store.db, dbCursorForUpdate);
  dbCursor<entry> two(&store.db, dbCursorForUpdate);
  ASSERT_EQ(one.select("id = 2"), 1);
  ASSERT_EQ(two.select("id = 2"), 1);
  two->text = "another";
  two.update();
  one.update();  // with what it has loaded
  ASSERT_EQ(two.select("id = 2"), 1);
  EXPECT_STREQ(two->text, "text");
  EXPECT_STREQ(one->text, "text");
}

TEST_F(Cursors, UpdateGoesThroughAWholeWalk) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select(), 3);
  do {
    cursor->value += 1;
    cursor.update();
  } while (cursor.next() != nullptr);
  ASSERT_EQ(cursor.select("order by id"), 3);
  EXPECT_EQ(dtsdb::test::Walk(cursor, [](const entry& row) { return row.value; }), (std::vector<int>{11, 21, 31}));
}

TEST_F(Cursors, UpdateOfAKeyMovesTheRowAndKeepsItsNumber) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  dbCursor<entry> other(&store.db, dbCursorForUpdate);
  ASSERT_EQ(other.select("order by id"), 3);
  ASSERT_EQ(cursor.select("id = 1"), 1);
  const dbReference<entry> reference = cursor.currentId();
  cursor->id = 100;
  cursor.update();
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{2, 3, 100}));
  EXPECT_EQ(other.first()->id, 100) << "a selection goes on with the rows that it has";
  EXPECT_EQ(cursor.at(reference)->id, 100);
}

TEST_F(Cursors, UpdateOfEveryKeyMeetsEachRowOnce) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  cursor.select("order by id");
  int met = 0;
  for (entry* row = cursor.get(); row != nullptr; row = cursor.next(), ++met) {
    row->id += 2;
    cursor.update();
  }
  EXPECT_EQ(met, 3);
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{3, 4, 5}));
}

TEST_F(Cursors, UpdateThatChangesNothingWritesNothing) {
  const std::string before = ReadBytes(store.folder.File());
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  for (cursor.select(); cursor.get() != nullptr;) {
    cursor.update();
    if (cursor.next() == nullptr) break;
  }
  store.db.commit();
  EXPECT_EQ(ReadBytes(store.folder.File()), before);
}

TEST_F(Cursors, ViewOnlyCursorRefusesUpdateAndRemove) {
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select(), 3);
  cursor->value = 99;
  cursor.update();
  cursor.remove();
  cursor.removeAllSelected();
  EXPECT_EQ(store.db.errors,
            (std::vector{dbDatabase::ReadonlyCursor, dbDatabase::ReadonlyCursor, dbDatabase::ReadonlyCursor}));
  EXPECT_NE(store.db.Reported().find("type == dbCursorForUpdate && currId != 0"), std::string::npos);
  EXPECT_EQ(EntryIds(store.db, "value = 99").size(), 0U);
}

TEST_F(Cursors, ViewOnlyRemoveAllEmptiesTheTable) {
  dbCursor<entry> cursor(&store.db);
  cursor.removeAll();
  EXPECT_EQ(cursor.select(), 0);
  AddEntry(store.db, 9);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{9});
}

TEST_F(Cursors, RemoveGoesToTheFollowingRow) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("order by id"), 3);
  cursor.remove();
  EXPECT_EQ(cursor->id, 2);
  EXPECT_EQ(cursor.getNumberOfRecords(), 2);
  EXPECT_EQ(cursor.next()->id, 3);
  cursor.remove();
  EXPECT_EQ(cursor->id, 2);
  EXPECT_TRUE(cursor.isFirst());
  EXPECT_TRUE(cursor.isLast());
  EXPECT_EQ(cursor.next(), nullptr);
  cursor.remove();
  EXPECT_EQ(cursor.get(), nullptr);
  EXPECT_EQ(cursor.getNumberOfRecords(), 0);
  EXPECT_EQ(EntryIds(store.db).size(), 0U);
}

TEST_F(Cursors, RemoveAllSelectedTakesTheSelectedAndResets) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id >= 2"), 2);
  cursor.removeAllSelected();
  EXPECT_EQ(cursor.get(), nullptr);
  EXPECT_EQ(cursor.getNumberOfRecords(), 0);
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{1});
  cursor.removeAllSelected();
  EXPECT_EQ(cursor.select("id = 77"), 0);
  cursor.removeAllSelected();
  EXPECT_EQ(cursor.select(), 1);
  cursor.removeAllSelected();
  EXPECT_EQ(EntryIds(store.db).size(), 0U);
}

TEST_F(Cursors, SelectionIsFixedWhileTheTableChanges) {
  dbCursor<entry> view(&store.db);
  dbCursor<entry> writer(&store.db, dbCursorForUpdate);
  ASSERT_EQ(view.select("order by id"), 3);
  std::vector<int> met;
  for (entry* row = view.get(); row != nullptr; row = view.next()) {
    met.push_back(row->id);
    AddEntry(store.db, row->id + 100);
  }
  EXPECT_EQ(met, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(writer.select(), 6);
}

TEST_F(Cursors, WalkGoesOnWhenItsThreadBeginsToWrite) {
  dbCursor<entry> view(&store.db);
  dbCursor<item> writer(&store.db, dbCursorForUpdate);
  ASSERT_EQ(view.select("order by id"), 3);
  EXPECT_EQ(view.next()->id, 2);
  EXPECT_EQ(writer.select(), 0);
  EXPECT_EQ(view.get()->id, 2);
  EXPECT_EQ(view.next()->id, 3);
  EXPECT_EQ(view.prev()->id, 2);
  EXPECT_EQ(view.next()->id, 3);
  EXPECT_EQ(view.next(), nullptr);
}

TEST_F(Cursors, RowThatHasGoneGivesAMessageAndNoRow) {
  dbCursor<entry> view(&store.db);
  dbCursor<entry> stale(&store.db, dbCursorForUpdate);
  dbCursor<entry> writer(&store.db, dbCursorForUpdate);
  ASSERT_EQ(view.select("order by id"), 3);
  ASSERT_EQ(stale.select("id = 2"), 1);
  ASSERT_EQ(writer.select("id = 2"), 1);
  writer.remove();
  EXPECT_EQ(view.next(), nullptr);
  EXPECT_EQ(view.get(), nullptr);
  EXPECT_EQ(view.currentId().getOid(), 0U);
  EXPECT_NE(store.db.Reported().find("row has gone"), std::string::npos);
  EXPECT_EQ(view.next()->id, 3);
  stale->value = 1;
  stale.update();
  EXPECT_NE(store.db.Reported().find("row to update has gone"), std::string::npos);
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{1, 3}));
}

TEST_F(Cursors, SeeTheirOwnUncommittedChanges) {
  dbCursor<entry> view(&store.db);
  ASSERT_EQ(view.select(), 3);
  AddEntry(store.db, 4);
  EXPECT_EQ(view.select(), 4);
  EXPECT_EQ(view.select("id = 4"), 1);
}

TEST_F(Cursors, CommitAndRollbackResetEveryCursor) {
  dbCursor<entry> view(&store.db);
  dbCursor<entry> writer(&store.db, dbCursorForUpdate);
  view.select();
  writer.select();
  store.db.commit();
  EXPECT_EQ(view.get(), nullptr);
  EXPECT_EQ(writer.get(), nullptr);
  EXPECT_EQ(view.getNumberOfRecords(), 0);
  view.select();
  store.db.rollback();
  EXPECT_EQ(view.get(), nullptr);
  EXPECT_EQ(view.next(), nullptr);
}

TEST_F(Cursors, TypeCanBeGivenWithTheSelect) {
  dbCursor<entry> cursor(&store.db);
  dbQuery query("id = 1");
  ASSERT_EQ(cursor.select(query, dbCursorForUpdate), 1);
  EXPECT_TRUE(cursor.isUpdateCursor());
  cursor->value = 5;
  cursor.update();
  EXPECT_EQ(EntryIds(store.db, "value = 5"), std::vector<int>{1});
  EXPECT_EQ(cursor.select(dbCursorViewOnly), 3);
  EXPECT_FALSE(cursor.isUpdateCursor());
}

TEST_F(Cursors, OutliveTheirDatabasesOpenTime) {
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select(), 3);
  store.db.close();
  EXPECT_EQ(cursor.get(), nullptr);
  EXPECT_EQ(cursor.next(), nullptr);
  EXPECT_EQ(cursor.select(), 0);
  EXPECT_NE(store.db.Reported().find("the database is not open"), std::string::npos);
  ASSERT_TRUE(store.Open());
  EXPECT_EQ(cursor.select(), 3);
}

TEST(CursorsOnNothing, ReportIt) {
  ::testing::internal::CaptureStderr();
  dbCursor<entry> cursor;
  EXPECT_EQ(cursor.select(), 0);
  const std::string reported = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(reported.find("db != NULL"), std::string::npos);
  EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 1);
}

}  // namespace
