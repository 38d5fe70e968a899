// How long the texts of a cursor's row last.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "samples.h"

using dtsdb::test::AddEntry;
using dtsdb::test::OpenStore;
using sample::entry;

namespace {

constexpr int kEntryCount = 200;

struct CursorTexts : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(store.opened);
    for (int id = 0; id < kEntryCount; ++id) AddEntry(store.db, id, 0, TextOf(id, "before").c_str());
    store.db.commit();
  }
  void TearDown() override { EXPECT_EQ(store.db.Reported(), ""); }

  static std::string TextOf(int id, const char* word) { return word + std::to_string(id); }

  /// Gives all rows other texts, so often that the places of the old ones are used again.
  void ChangeAll(int times) {
    for (int time = 0; time < times; ++time) {
      dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
      cursor.select("order by id");
      for (entry* row = cursor.get(); row != nullptr; row = cursor.next()) {
        const std::string text = TextOf(row->id, "after");
        row->text = text.c_str();
        row->value = time;
        cursor.update();
      }
      store.db.commit();
    }
  }

  OpenStore store;
};

TEST_F(CursorTexts, OutliveTheTransaction) {
  for (const char* const query : {"", "order by id", "id >= 7"}) {
    dbCursor<entry> cursor(&store.db);
    ASSERT_GT(cursor.select(query), 0);
    const entry* const row = cursor.next();
    ASSERT_NE(row, nullptr);
    const std::string text = row->text;
    store.db.commit();
    ChangeAll(5);
    EXPECT_EQ(row->text, text) << query;
  }
}

TEST_F(CursorTexts, OutliveTheBeginningOfChanges) {
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select("id = 7"), 1);
  const entry* const row = cursor.get();
  ChangeAll(3);
  EXPECT_EQ(row->text, TextOf(7, "before"));
  EXPECT_EQ(row->id, 7);
}

TEST_F(CursorTexts, KeepWhatTheProgramHasPutIntoTheRecord) {
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select("id = 7"), 1);
  entry* const row = cursor.get();
  row->value = 99;
  row->text = "its own";
  store.db.commit();
  EXPECT_EQ(row->value, 99);
  EXPECT_STREQ(row->text, "its own");
}

TEST_F(CursorTexts, StayBeyondTheNextMoveWhileNothingChanges) {
  for (const char* const query : {"", "order by id", "id >= 7"}) {
    dbCursor<entry> cursor(&store.db);
    ASSERT_GT(cursor.select(query), 0);
    EXPECT_TRUE(cursor.textsStay()) << query;
    std::vector<const char*> texts;
    std::vector<std::string> copies;
    for (const entry* row = cursor.get(); row != nullptr; row = cursor.next()) {
      texts.push_back(row->text);
      copies.emplace_back(row->text);
    }
    for (std::size_t i = 0; i < texts.size(); ++i) ASSERT_EQ(texts[i], copies[i]) << query;
    store.db.commit();
  }
}

TEST_F(CursorTexts, OfATableThatTheTransactionHasChangedMove) {
  AddEntry(store.db, kEntryCount, 0, "new");
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select("order by id"), kEntryCount + 1);
  EXPECT_FALSE(cursor.textsStay());
  EXPECT_EQ(cursor.get()->text, TextOf(0, "before"));
  EXPECT_STREQ(cursor.last()->text, "new");
}

TEST_F(CursorTexts, WithoutARowDoNotStay) {
  dbCursor<entry> cursor(&store.db);
  EXPECT_FALSE(cursor.textsStay());
  EXPECT_EQ(cursor.select("id = 100000"), 0);
  EXPECT_FALSE(cursor.textsStay());
}

}  // namespace
