// What the built-in store has beside what FastDB's interface has: more to ask for, and an answer to every wrong call.

#include <gtest/gtest.h>

#include "file_change.h"
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

/// Tables that are found by a number, opened and closed by the test of them.
dtsdb::test::Database keyed;

#define KEYED_TABLE(name, type)          \
  struct name {                          \
    type id = 0;                         \
    TYPE_DESCRIPTOR((KEY(id, INDEXED))); \
  };                                     \
  REGISTER_IN(name, &keyed)

KEYED_TABLE(by_bool, bool);
KEYED_TABLE(by_int1, int1);
KEYED_TABLE(by_nat1, nat1);
KEYED_TABLE(by_int2, int2);
KEYED_TABLE(by_nat2, nat2);
KEYED_TABLE(by_nat4, nat4);
KEYED_TABLE(by_int8, db_int8);
KEYED_TABLE(by_real4, real4);
KEYED_TABLE(by_real8, real8);
#undef KEYED_TABLE

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

/// Rows with these keys in ascending order, and a number that none has.
template <class Row>
void ExpectRanges(const std::vector<long long>& ids, long long beyond) {
  const dtsdb::test::Folder folder;
  ASSERT_TRUE(sample::keyed.open(folder.File().c_str(), folder.File().c_str()));
  for (const long long id : ids) {
    Row row;
    row.id = static_cast<decltype(row.id)>(id);
    sample::keyed.insert(row);
  }
  const auto count = [](const std::string& query) {
    dbCursor<Row> cursor(&sample::keyed);
    return cursor.select(query.c_str());
  };
  const int all = static_cast<int>(ids.size());
  for (int i = 0; i < all; ++i) {
    const std::string id = std::to_string(ids[static_cast<std::size_t>(i)]);
    EXPECT_EQ(count("id = " + id), 1) << id;
    EXPECT_EQ(count("id >= " + id), all - i) << id;
    EXPECT_EQ(count("id < " + id), i) << id;
  }
  EXPECT_EQ(count("id = " + std::to_string(beyond)), 0);
  EXPECT_EQ(count("id < " + std::to_string(beyond)), all);
  EXPECT_EQ(sample::keyed.Reported(), "");
  sample::keyed.close();
}

TEST(OwnKeys, MayBeNumbersOfEveryType) {
  ExpectRanges<sample::by_int1>({-128, 0, 127}, 128);
  ExpectRanges<sample::by_nat1>({0, 128, 255}, 256);
  ExpectRanges<sample::by_int2>({-32768, 0, 32767}, 32768);
  ExpectRanges<sample::by_nat2>({0, 32768, 65535}, 65536);
  ExpectRanges<sample::by_nat4>({0, 2147483648, 4294967295}, 4294967296);
  ExpectRanges<sample::by_int8>({-4294967296, 0, 4294967296}, 4294967297);
  ExpectRanges<sample::by_real4>({-3, 0, 4}, 5);
  ExpectRanges<sample::by_real8>({-3, 0, 4}, 5);
}

TEST(OwnKeys, MayBeTruths) { ExpectRanges<sample::by_bool>({0, 1}, 2); }

// The text of the last row has no end.
TEST(OwnRows, EndAWalkWhereOneIsDamaged) {
  OpenStore store;
  for (const int id : {1, 2}) AddEntry(store.db, id, id, "text");
  store.db.close();
  {
    dtsdb::test::FileChange file(store.folder.File());
    MDB_cursor* rows = nullptr;
    ASSERT_EQ(mdb_cursor_open(file.Transaction(), file.Tree("entry"), &rows), 0);
    MDB_val key{};
    MDB_val row{};
    ASSERT_EQ(mdb_cursor_get(rows, &key, &row, MDB_LAST), 0);
    std::string bytes(static_cast<const char*>(row.mv_data), row.mv_size);
    bytes.back() = 'x';
    row.mv_data = bytes.data();
    ASSERT_EQ(mdb_cursor_put(rows, &key, &row, MDB_CURRENT), 0);
    mdb_cursor_close(rows);
  }
  ASSERT_TRUE(store.Open());
  dbCursor<entry> view(&store.db);
  EXPECT_EQ(view.getTable(), store.db.lookupTable(&entry::dbDescriptor));
  ASSERT_EQ(view.select("order by id"), 2);
  EXPECT_EQ(view.get()->id, 1);
  EXPECT_EQ(view.next(), nullptr);
  EXPECT_NE(store.db.Reported().find("a row is damaged"), std::string::npos);
}

TEST(OwnQueries, MayHaveAThousandConditions) {
  OpenStore store;
  AddEntry(store.db, 1);
  const auto count = [&store](int conditions) {
    std::string text = "id = 1";
    for (int i = 1; i < conditions; ++i) text += " or id = 1";
    return EntryIds(store.db, text.c_str()).size();
  };
  EXPECT_EQ(count(1000), 1U);
  EXPECT_EQ(store.db.Reported(), "");
  EXPECT_EQ(count(1001), 0U);
  EXPECT_NE(store.db.Reported().find("it has too many conditions"), std::string::npos);
}

TEST(OwnFiles, DescriptionOfAColumnThatIsCutShortIsDamage) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.close();
  {
    dtsdb::test::FileChange file(store.folder.File());
    std::string columns = file.Get("@schema", "entry");
    columns.resize(columns.rfind(' '));  // the last column without its last word
    file.Put("@schema", "entry", columns);
  }
  EXPECT_FALSE(store.Open());
  EXPECT_NE(store.db.Reported().find("damaged"), std::string::npos);
}

// A refused opening leaves nothing that the next one waits for.
TEST(OwnFiles, RefusedOpeningLetsOthersIn) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.close();
  std::string columns;
  {
    dtsdb::test::FileChange file(store.folder.File());
    columns = file.Get("@schema", "entry");
    file.Put("@schema", "entry", columns.substr(0, columns.rfind(' ')));
  }
  EXPECT_FALSE(store.Open());
  store.db.Reported();
  {
    dtsdb::test::FileChange file(store.folder.File());
    file.Put("@schema", "entry", columns);
  }
  ASSERT_TRUE(store.Open()) << store.db.Reported();
  AddEntry(store.db, 2);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{1, 2}));
}

}  // namespace
