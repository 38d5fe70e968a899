#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "samples.h"

using dtsdb::test::Database;
using dtsdb::test::Folder;
using dtsdb::test::OpenStore;
using sample::entry;
using sample::item;

namespace sample {
REGISTER_UNASSIGNED(item);
REGISTER_UNASSIGNED(entry);
REGISTER_UNASSIGNED(relation);
REGISTER_UNASSIGNED(note);

/// Belongs to the first database that is opened.
struct shared {
  int4 id = 0;
  int4 hidden = 7;
  TYPE_DESCRIPTOR((KEY(id, HASHED)));
};
REGISTER(shared);
}  // namespace sample

namespace {

TEST(Descriptors, TableNameHasNoNamespace) { EXPECT_STREQ(item::dbDescriptor.getName(), "item"); }

TEST(Descriptors, UnassignedTableHasACopyInEachDatabase) {
  OpenStore one;
  OpenStore two;
  EXPECT_EQ(entry::dbDescriptor.getDatabase(), nullptr);
  EXPECT_NE(one.db.lookupTable(&entry::dbDescriptor), two.db.lookupTable(&entry::dbDescriptor));
  EXPECT_EQ(one.db.lookupTable(&entry::dbDescriptor)->getDatabase(), &one.db);
  EXPECT_EQ(one.db.findTableByName("nothing"), nullptr);
}

TEST(Descriptors, RegisteredTableBelongsToTheFirstDatabaseUntilItCloses) {
  OpenStore one;
  OpenStore two;
  EXPECT_EQ(sample::shared::dbDescriptor.getDatabase(), &one.db);
  EXPECT_EQ(two.db.lookupTable(&sample::shared::dbDescriptor), nullptr);
  EXPECT_NE(insert(sample::shared()).getOid(), 0U);
  dbCursor<sample::shared> cursor;
  EXPECT_EQ(cursor.select(), 1);
  one.db.close();
  EXPECT_EQ(sample::shared::dbDescriptor.getDatabase(), nullptr);
}

TEST(Descriptors, InsertIntoATableOfNoDatabaseGivesNoReference) { EXPECT_EQ(insert(sample::shared()).getOid(), 0U); }

TEST(Descriptors, MemberWithoutColumnKeepsWhatTheConstructorGave) {
  OpenStore store;
  sample::shared row;
  row.hidden = 99;
  store.db.insert(row);
  dbCursor<sample::shared> cursor(&store.db);
  ASSERT_EQ(cursor.select(), 1);
  EXPECT_EQ(cursor->hidden, 7);
}

template <class Row>
void ExpectEqual(const Row& a, const Row& b) {
  EXPECT_STREQ(a.id, b.id);
  EXPECT_STREQ(a.name, b.name);
  EXPECT_EQ(a.flag, b.flag);
  EXPECT_EQ(a.i1, b.i1);
  EXPECT_EQ(a.n1, b.n1);
  EXPECT_EQ(a.i2, b.i2);
  EXPECT_EQ(a.n2, b.n2);
  EXPECT_EQ(a.i4, b.i4);
  EXPECT_EQ(a.n4, b.n4);
  EXPECT_EQ(a.i8, b.i8);
  EXPECT_EQ(a.r4, b.r4);
  EXPECT_EQ(a.r8, b.r8);
  EXPECT_EQ(std::memcmp(a.spare, b.spare, sizeof(a.spare)), 0);
}

template <template <class> class Limits, class Row>
void Fill(Row& row, bool highest) {
  const auto set = [highest](auto& member) {
    using T = std::remove_reference_t<decltype(member)>;
    member = highest ? Limits<T>::max() : Limits<T>::lowest();
  };
  set(row.flag), set(row.i1), set(row.n1), set(row.i2), set(row.n2), set(row.i4), set(row.n4), set(row.i8), set(row.r4),
      set(row.r8);
  std::memset(row.spare, highest ? 0xFF : 0x80, sizeof(row.spare));
}

TEST(Descriptors, EveryColumnTypeComesBackAsItWas) {
  OpenStore store;
  item low;
  item high;
  low.id = "a";
  low.name = "\xB1\xB1\xBE\xA9";
  high.id = "b";
  high.name = "";
  Fill<std::numeric_limits>(low, false);
  Fill<std::numeric_limits>(high, true);
  store.db.insert(low);
  store.db.insert(high);
  store.db.commit();
  dbCursor<item> cursor(&store.db);
  ASSERT_EQ(cursor.select("order by id"), 2);
  ExpectEqual(*cursor.get(), low);
  ASSERT_NE(cursor.next(), nullptr);
  ExpectEqual(*cursor.get(), high);
  EXPECT_EQ(store.db.Reported(), "");
}

TEST(Descriptors, NullTextComesBackEmpty) {
  OpenStore store;
  store.db.insert(item());
  dbCursor<item> cursor(&store.db);
  ASSERT_EQ(cursor.select(), 1);
  EXPECT_STREQ(cursor->id, "");
  EXPECT_STREQ(cursor->name, "");
}

TEST(Descriptors, TextsOfAnyLengthComeBack) {
  OpenStore store;
  for (const std::size_t length : {1UL, 500UL, 2000UL, 4096UL, 300000UL}) {
    const std::string text(length, 'x');
    item row;
    row.id = "long";
    row.name = text.c_str();
    store.db.insert(row);
    dbCursor<item> cursor(&store.db, dbCursorForUpdate);
    ASSERT_EQ(cursor.select(), 1);
    EXPECT_EQ(cursor->name, text);
    cursor.removeAll();
  }
}

}  // namespace
