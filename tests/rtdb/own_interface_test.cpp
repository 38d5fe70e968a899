// What the built-in store has beside what FastDB's interface has: more to ask for, and an answer to every wrong call.

#include <gtest/gtest.h>

#include "samples.h"

using dtsdb::test::AddEntry;
using dtsdb::test::EntryIds;
using dtsdb::test::OpenStore;
using sample::entry;
using sample::item;

namespace sample {

/// A table class that is more than its bytes.
struct made {
  static constinit int count;

  made() { ++count; }
  made(const made&) = delete;
  made& operator=(const made&) = delete;
  virtual ~made() { --count; }

  int4 id = 0;
  std::string own = "a text that takes memory of its own";
  real8 value = 1;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value)));
};
constinit int made::count = 0;
/// Never opened: other tests' databases do without the table.
dbDatabase unused;
REGISTER_IN(made, &unused);

}  // namespace sample

namespace {

TEST(OwnDescriptors, ColumnsLieWhereTheyLieInARecordOfAnyClass) {
  EXPECT_EQ(sample::made::count, 0) << "the record that was asked for them has not gone";
  const sample::made record;
  const auto placeOf = [&record](const void* member) {
    return static_cast<std::size_t>(static_cast<const char*>(member) - reinterpret_cast<const char*>(&record));
  };
  const dbFieldList& fields = sample::made::dbDescriptor.getFields();
  ASSERT_EQ(fields.size(), 2U);
  EXPECT_EQ(fields[0].appOffs, placeOf(&record.id));
  EXPECT_EQ(fields[1].appOffs, placeOf(&record.value));
}

TEST(OwnDescriptors, ColumnsKeepTheirOrderPlacesAndKeys) {
  const dbFieldList& fields = entry::dbDescriptor.getFields();
  ASSERT_EQ(fields.size(), 3U);
  EXPECT_EQ(fields[0].name, "id");
  EXPECT_EQ(fields[0].indexType, INDEXED);
  EXPECT_EQ(fields[1].appOffs, offsetof(entry, value));
  EXPECT_EQ(fields[2].type, dbField::tpString);
  EXPECT_EQ(fields[2].indexType, 0);
  EXPECT_EQ(item::dbDescriptor.find("spare")->appSize, 40U);
  EXPECT_EQ(item::dbDescriptor.find("Spare"), nullptr);
}

struct OwnCursors : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(store.opened);
    for (const int id : {3, 1, 2}) AddEntry(store.db, id, id * 10, "text");
    store.db.commit();
  }

  OpenStore store;
};

TEST_F(OwnCursors, WithoutCurrentRowThereIsAMessageAndARecordOfNoRow) {
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  cursor->value = 5;
  cursor.update();
  cursor.remove();
  EXPECT_EQ(store.db.errors, (std::vector{dbDatabase::CursorError, dbDatabase::CursorError, dbDatabase::CursorError}));
  EXPECT_NE(store.db.Reported().find("currId != 0"), std::string::npos);
  EXPECT_EQ(EntryIds(store.db, "value = 5").size(), 0U);
}

TEST_F(OwnCursors, NextAvailableMissesNoRowWhileRemoving) {
  for (int id = 4; id <= 20; ++id) AddEntry(store.db, id);
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  cursor.select("order by id");
  std::vector<int> met;
  for (entry* row = cursor.get(); row != nullptr; row = cursor.nextAvailable()) {
    met.push_back(row->id);
    if (row->id % 3 != 0) cursor.remove();
  }
  EXPECT_EQ(met.size(), 20U);
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{3, 6, 9, 12, 15, 18}));
}

TEST_F(OwnCursors, ReferencesLeadToTheirRows) {
  const dbReference<entry> reference = AddEntry(store.db, 50, 500);
  dbCursor<entry> cursor(&store.db);
  ASSERT_NE(cursor.at(reference), nullptr);
  EXPECT_EQ(cursor->value, 500);
  EXPECT_EQ(cursor.currentId(), reference);
  EXPECT_EQ(cursor.getNumberOfRecords(), 1);
  EXPECT_EQ(cursor.at(dbReference<entry>(12345)), nullptr);
  entry changed;
  changed.id = 51;
  store.db.update(reference.getOid(), store.db.lookupTable(&entry::dbDescriptor), &changed);
  EXPECT_EQ(cursor.at(reference)->id, 51);
  store.db.update(12345, store.db.lookupTable(&entry::dbDescriptor), &changed);
  EXPECT_NE(store.db.Reported().find("gone"), std::string::npos);
}

}  // namespace
