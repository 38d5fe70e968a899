#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "rtdb/internal/key_code.h"
#include "samples.h"

using dtsdb::internal::rtdb::AppendNumber;
using dtsdb::internal::rtdb::AppendText;
using dtsdb::test::OpenStore;
using sample::item;
using sample::relation;

namespace {

template <class T>
std::string Form(T value) {
  std::string key;
  AppendNumber(key, static_cast<dbField::FieldTypes>(dbFieldTypeOf<T>), &value);
  return key;
}

template <class T>
void ExpectOrderKept(T a, T b) {
  RC_ASSERT((a < b) == (Form(a) < Form(b)));
  RC_ASSERT((a == b) == (Form(a) == Form(b)));
}

RC_GTEST_PROP(Keys, WholeNumbersKeepTheirOrder, (int1 a, int1 b, int2 c, int2 d, int4 e, int4 f, nat4 g, nat4 h)) {
  ExpectOrderKept(a, b);
  ExpectOrderKept(c, d);
  ExpectOrderKept(e, f);
  ExpectOrderKept(g, h);
}

RC_GTEST_PROP(Keys, LongNumbersKeepTheirOrder, (long long a, long long b)) { ExpectOrderKept(a, b); }

RC_GTEST_PROP(Keys, RealNumbersKeepTheirOrder, (float a, float b, double c, double d)) {
  RC_PRE(a != 0 && b != 0 && c != 0 && d != 0);  // 0 and -0 are equal and have different forms
  ExpectOrderKept(a, b);
  ExpectOrderKept(c, d);
}

RC_GTEST_PROP(Keys, PairsOfTextsKeepTheirOrder, (std::string a, std::string b, std::string c, std::string d)) {
  for (std::string* text : {&a, &b, &c, &d}) std::erase(*text, '\0');
  std::string first;
  std::string second;
  AppendText(first, a);
  AppendText(first, b);
  AppendText(second, c);
  AppendText(second, d);
  RC_ASSERT((std::pair(a, b) < std::pair(c, d)) == (first < second));
}

TEST(Keys, RowNumberStandsAtTheEnd) {
  std::string key = "text";
  dtsdb::internal::rtdb::AppendRowNumber(key, 0x0102030405060708ULL);
  EXPECT_EQ(key.size(), 12U);
  EXPECT_EQ(dtsdb::internal::rtdb::RowNumberOf(key), 0x0102030405060708ULL);
  EXPECT_EQ(dtsdb::internal::rtdb::RowNumberOf("short"), 0U);
}

/// Rows whose ids agree in more bytes than a key holds.
struct LongKeys : ::testing::Test {
  void SetUp() override {
    for (const char* end : {"c", "a", "b", "a", "", "ab"}) Add(prefix + end);
    Add("z");
    Add("A");
    store.db.commit();
  }
  void Add(const std::string& id) {
    item row;
    row.id = id.c_str();
    row.i4 = ++count;
    EXPECT_NE(store.db.insert(row).getOid(), 0U);
  }
  std::vector<std::string> Ids(dbQuery& query) {
    dbCursor<item> cursor(&store.db);
    cursor.select(query);
    return dtsdb::test::Walk(cursor, [](const item& row) { return std::string(row.id); });
  }

  OpenStore store;
  std::string prefix = std::string(700, 'k');
  int count = 0;
};

TEST_F(LongKeys, AreOrderedByAllTheirBytes) {
  dbQuery query("order by id");
  EXPECT_EQ(Ids(query), (std::vector<std::string>{"A", prefix, prefix + "a", prefix + "a", prefix + "ab", prefix + "b",
                                                  prefix + "c", "z"}));
}

TEST_F(LongKeys, AreFoundByAllTheirBytes) {
  const std::string id = prefix + "a";
  dbQuery query;
  query = "id =", id.c_str();
  EXPECT_EQ(Ids(query), (std::vector<std::string>{id, id}));
  query = "id >", id.c_str(), "order by id";
  EXPECT_EQ(Ids(query), (std::vector<std::string>{prefix + "ab", prefix + "b", prefix + "c", "z"}));
}

TEST_F(LongKeys, AreOrderedWithinTheTransactionThatBroughtThem) {
  OpenStore fresh;
  const auto add = [&fresh](const std::string& id) {
    item row;
    row.id = id.c_str();
    fresh.db.insert(row);
  };
  add(prefix + "2");
  add(prefix + "1");
  dbCursor<item> cursor(&fresh.db);
  ASSERT_EQ(cursor.select("order by id"), 2);
  EXPECT_EQ(cursor->id, prefix + "1");
  fresh.db.rollback();
  add("b");
  add("a");
  ASSERT_EQ(cursor.select("order by id"), 2);
  EXPECT_STREQ(cursor->id, "a");
}

TEST_F(LongKeys, OfTwoColumnsAreOrderedByBoth) {
  const std::string parents[] = {prefix + "1", prefix, prefix + "1"};
  const char* children[] = {"b", "c", "a"};
  for (int i = 0; i < 3; ++i) {
    relation row;
    row.parent = parents[i].c_str();
    row.child = children[i];
    store.db.insert(row);
  }
  dbCursor<relation> cursor(&store.db);
  ASSERT_EQ(cursor.select("order by parent,child"), 3);
  EXPECT_EQ(dtsdb::test::Walk(cursor, [](const relation& row) { return std::string(row.child); }),
            (std::vector<std::string>{"c", "a", "b"}));
}

TEST_F(LongKeys, SurviveUpdates) {
  dbQuery query;
  const std::string id = prefix + "b";
  query = "id=", id.c_str();
  dbCursor<item> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select(query), 1);
  cursor->i4 = 77;
  cursor.update();
  store.db.commit();
  ASSERT_EQ(cursor.select(query), 1);
  EXPECT_EQ(cursor->i4, 77);
  EXPECT_EQ(store.db.Reported(), "");
}

}  // namespace
