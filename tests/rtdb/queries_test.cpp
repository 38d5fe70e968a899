#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "samples.h"

using dtsdb::test::OpenStore;
using sample::entry;
using sample::item;
using sample::relation;

namespace {

struct Row {
  const char* id;
  const char* name;
  bool flag;
  int i4;
  double r8;
};

/// Five rows, with the letter of each as its id.
class Queries : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const Row& row : {Row{"c", "cat", true, 30, 1.5}, Row{"a", "ant", false, 10, -2.5}, Row{"e", "", true, 20, 0},
                           Row{"b", "bat", true, 10, 1e10}, Row{"d", "it's", false, -5, 0.5}}) {
      item stored;
      stored.id = row.id;
      stored.name = row.name;
      stored.flag = row.flag;
      stored.i1 = static_cast<int1>(row.i4);
      stored.n2 = static_cast<nat2>(row.i4 + 100);
      stored.i4 = row.i4;
      stored.i8 = row.i4 * 10000000000LL;
      stored.n4 = row.i4 < 0 ? 4000000000U : static_cast<nat4>(row.i4);
      stored.r4 = static_cast<float>(row.r8);
      stored.r8 = row.r8;
      store.db.insert(stored);
    }
    store.db.commit();
  }

  /// The ids of the selected rows, joined.
  std::string Select(dbQuery& query) {
    dbCursor<item> cursor(&store.db);
    const int count = cursor.select(query);
    std::string ids;
    for (item* row = cursor.get(); row != nullptr; row = cursor.next()) ids += row->id;
    EXPECT_EQ(static_cast<std::size_t>(count), ids.size());
    return ids;
  }
  std::string Select(char const* text) {
    dbQuery query(text);
    return Select(query);
  }

  OpenStore store;
};

TEST_F(Queries, FormsSelectTheirRows) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "caebd"},
      {"   ", "caebd"},
      {"order by id", "abcde"},
      {"order by id asc", "abcde"},
      {"order by id desc", "edcba"},
      {"order by i4", "dabec"},
      {"order by i4,id desc", "dbaec"},
      {"order by i4 desc , id", "ceabd"},
      {"order by flag, r8 desc", "dabce"},
      {"order by name", "eabcd"},
      {"order by n4", "abecd"},
      {"id='b'", "b"},
      {"id = 'b'", "b"},
      {" id  =  'x' ", ""},
      {"'b' = id", "b"},
      {"id <> 'b'", "caed"},
      {"id != 'b'", "caed"},
      {"id < 'c'", "ab"},
      {"id <= 'c'", "cab"},
      {"id > 'c'", "ed"},
      {"id >= 'c'", "ced"},
      {"'c' <= id", "ced"},
      {"id >= 'b' and id < 'e' and id <> 'c'", "bd"},
      {"id = 'a' and id = 'b'", ""},
      {"id = 'a' or id = 'e' or id = 'x'", "ae"},
      {"i4 = 10", "ab"},
      {"i4 = -5", "d"},
      {"i4 > -6", "caebd"},
      {"i4 >= 10 and i4 <= 20 order by i4 desc,id", "eab"},
      {"i4 between 10 and 20", "aeb"},
      {"i4 = 10 or i4 = 20 and flag", "aeb"},
      {"(i4 = 10 or i4 = 20) and flag", "eb"},
      {"not flag", "ad"},
      {"not (i4 = 10 or flag)", "d"},
      {"not not flag", "ceb"},
      {"flag = true", "ceb"},
      {"flag = false", "ad"},
      {"flag = 1", "ceb"},
      {"r8 > 1.5", "b"},
      {"r8 >= 1.5", "cb"},
      {"r8 = -2.5", "a"},
      {"r8 = 1e10", "b"},
      {"i4 < 10.5", "abd"},
      {"n4 = 4000000000", "d"},
      {"i8 = 300000000000", "c"},
      {"i4 = 99999999999999999999", ""},
      {"name = ''", "e"},
      {"name = 'it''s'", "d"},
      {"name like '%at'", "cb"},
      {"name like '_a%'", "cb"},
      {"name like 'ant'", "a"},
      {"name not like '%a%'", "ed"},
      {"name like '%'", "caebd"},
      {"i1 = i4", "caebd"},
      {"i4 < r8", "bd"},
      {"id\t=\n'a'", "a"},
  };
  for (const auto& [text, ids] : cases) EXPECT_EQ(Select(text), ids) << text;
  EXPECT_EQ(store.db.Reported(), "");
}

TEST_F(Queries, FaultsGiveAMessageAndNoRows) {
  const std::pair<const char*, const char*> cases[] = {
      {"colour = 1", "has no column colour"},
      {"ID = 'a'", "has no column ID"},
      {"order by colour", "has no column colour"},
      {"id =", "ends too early"},
      {"= 'a'", "\"=\" does not belong there"},
      {"id 'a'", "\"id\" does not belong there|\"a\" does not belong there"},
      {"id = 'a' and", "ends too early"},
      {"(id = 'a'", "ends too early"},
      {"id = 'a')", "\")\" does not belong there"},
      {"id = 'a", "without its closing quote"},
      {"id = 5", "a text is compared with a number"},
      {"i4 = 'a'", "a text is compared with a number"},
      {"i4 like 5", "texts only"},
      {"i4", "does not belong there|ends too early"},
      {"id # 3", "the character \"#\""},
      {"i4 = 5x", "a number that can't be read"},
      {"order id", "\"id\" does not belong there"},
      {"order by id id", "\"id\" does not belong there"},
      {"order by", "ends too early"},
      {"limit = 1", "reserved word"},
      {"order by first", "reserved word"},
      {"spare = 1", "raw bytes"},
      {"order by spare", "raw bytes"},
      {"i4 between 1", "ends too early"},
      {"AND", "has no column AND"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_EQ(Select(text), "") << text;
    ASSERT_EQ(store.db.errors.size(), 1U) << text;
    EXPECT_EQ(store.db.errors[0], dbDatabase::QueryError);
    const std::string reported = store.db.Reported();
    const std::string wanted = message;
    const std::size_t bar = wanted.find('|');
    const bool one = reported.find(wanted.substr(0, bar)) != std::string::npos;
    const bool other = bar != std::string::npos && reported.find(wanted.substr(bar + 1)) != std::string::npos;
    EXPECT_TRUE(one || other) << text << ": " << reported;
  }
}

TEST_F(Queries, WordsThatAreNoKeywordsCanBeColumns) {
  for (const char* word : {"next", "prev", "event", "time", "value", "status"}) {
    EXPECT_EQ(Select((std::string(word) + " = 1").c_str()), "");
    EXPECT_NE(store.db.Reported().find("has no column"), std::string::npos) << word;
  }
}

TEST_F(Queries, DepthIsLimited) {
  const std::string deep = std::string(100000, '(') + "i4 = 1" + std::string(100000, ')');
  EXPECT_EQ(Select(deep.c_str()), "");
  EXPECT_NE(store.db.Reported().find("nested too deeply"), std::string::npos);
  std::string wide = "i4 = 1";
  for (int i = 0; i < 100000; ++i) wide += " or i4 = 1";
  EXPECT_EQ(Select(wide.c_str()), "");
  EXPECT_NE(store.db.Reported().find("too many conditions"), std::string::npos);
}

TEST_F(Queries, LimitsOfDepthAndConditionsAreExact) {
  const auto inBrackets = [](std::size_t n) { return std::string(n, '(') + "i4 = 1" + std::string(n, ')'); };
  const auto joined = [](int n) {
    std::string text = "i4 = 1";
    for (int i = 1; i < n; ++i) text += " or i4 = 1";
    return text;
  };
  for (const std::string& text : {inBrackets(199), joined(1000)}) {
    Select(text.c_str());
    EXPECT_TRUE(store.db.Reported().empty()) << text.size();
  }
  for (const std::string& text : {inBrackets(200), joined(1001)}) {
    Select(text.c_str());
    EXPECT_FALSE(store.db.Reported().empty()) << text.size();
  }
}

TEST_F(Queries, EveryTypeCanBeBound) {
  const int i = 10;
  const unsigned u = 10;
  const short s = 10;
  const unsigned short us = 110;
  const signed char sc = 10;
  const unsigned char uc = 10;
  const char c = 10;
  const bool yes = true;
  const long l = 10;
  const db_int8 ll = 100000000000LL;
  const float f = 1.5F;
  const double d = 1.5;
  char const* text = "b";
  char buffer[8] = "c";
  char const* pointer = "d";
  char* writable = buffer;
  dbQuery q;
  EXPECT_EQ(Select(((q = "i4 = ", i), q)), "ab");
  EXPECT_EQ(Select(((q = "n4 = ", u), q)), "ab");
  EXPECT_EQ(Select(((q = "i4 = ", s), q)), "ab");
  EXPECT_EQ(Select(((q = "n2 = ", us), q)), "ab");
  EXPECT_EQ(Select(((q = "i1 = ", sc), q)), "ab");
  EXPECT_EQ(Select(((q = "i4 = ", uc), q)), "ab");
  EXPECT_EQ(Select(((q = "i1 = ", c), q)), "ab");
  EXPECT_EQ(Select(((q = "flag = ", yes), q)), "ceb");
  EXPECT_EQ(Select(((q = "i4 = ", l), q)), "ab");
  EXPECT_EQ(Select(((q = "i8 = ", ll), q)), "ab");
  EXPECT_EQ(Select(((q = "r4 = ", f), q)), "c");
  EXPECT_EQ(Select(((q = "r8 = ", d), q)), "c");
  EXPECT_EQ(Select(((q = "id = ", text), q)), "b");
  EXPECT_EQ(Select(((q = "id = ", buffer), q)), "c");
  EXPECT_EQ(Select(((q = "id = ", &pointer), q)), "d");
  EXPECT_EQ(Select(((q = "id = ", &writable), q)), "c");
  EXPECT_EQ(store.db.Reported(), "");
}

TEST_F(Queries, SeveralValuesAndPiecesOfTextAlternate) {
  const int low = 10;
  const char* id = "c";
  dbQuery q;
  q = "i4 >=", low, "and id <", id, "order by id desc";
  EXPECT_EQ(Select(q), "ba");
}

TEST_F(Queries, ValuesAreReadAtTheSelect) {
  char buffer[8] = "a";
  int number = 0;
  char const* pointer = buffer;
  dbQuery text;
  dbQuery by;
  dbQuery through;
  text = "id = ", buffer;
  by = "i4 = ", number;
  through = "id = ", &pointer;
  EXPECT_EQ(Select(text), "a");
  EXPECT_EQ(Select(by), "");
  buffer[0] = 'd';
  number = 20;
  pointer = "e";
  EXPECT_EQ(Select(text), "d");
  EXPECT_EQ(Select(by), "e");
  EXPECT_EQ(Select(through), "e");
}

TEST_F(Queries, NullTextIsEmpty) {
  char const* none = nullptr;
  dbQuery q;
  q = "name = ", &none;
  EXPECT_EQ(Select(q), "e");
}

TEST_F(Queries, OneQueryServesAnewAndOnSeveralTables) {
  dtsdb::test::AddEntry(store.db, 7);
  const int seven = 7;
  char const* b = "b";
  dbQuery q;
  dbCursor<entry> entries(&store.db);
  for (int round = 0; round < 3; ++round) {
    q = "id=", b;
    EXPECT_EQ(Select(q), "b");
    q = "id=", seven;
    EXPECT_EQ(entries.select(q), 1);
    q = "order by id";
    EXPECT_EQ(entries.select(q), 1);
    EXPECT_EQ(Select(q), "abcde");
    q.reset();
    EXPECT_EQ(Select(q), "caebd");
  }
  EXPECT_EQ(store.db.Reported(), "");
}

TEST_F(Queries, FaultyQueryLeavesTheNextAlone) {
  dbQuery q;
  q = "colour = 1";
  EXPECT_EQ(Select(q), "");
  q = "id = 'a'";
  EXPECT_EQ(Select(q), "a");
}

TEST(QueryOrder, TextsAreOrderedBytewiseAndUnsigned) {
  OpenStore store;
  for (const char* id : {"\xB1\xB1", "a", "Z", "", "ab", "\x7F"}) {
    item row;
    row.id = id;
    row.name = id;
    store.db.insert(row);
  }
  for (const char* order : {"order by id", "order by name"}) {
    dbCursor<item> cursor(&store.db);
    cursor.select(order);
    EXPECT_EQ(dtsdb::test::Walk(cursor, [](const item& row) { return std::string(row.id); }),
              (std::vector<std::string>{"", "Z", "a", "ab", "\x7F", "\xB1\xB1"}));
  }
}

/// Four rows in no order of their two keys.
class QueryOfTwoKeys : public testing::Test {
 protected:
  QueryOfTwoKeys() {
    const std::pair<const char*, const char*> pairs[] = {{"b", "x"}, {"a", "y"}, {"b", "a"}, {"a", "x"}};
    for (const auto& [parent, child] : pairs) {
      relation row;
      row.parent = parent;
      row.child = child;
      m_store.db.insert(row);
    }
  }

  /// The rows that `query` selects, in their order.
  std::string Walk(char const* query) {
    dbCursor<relation> cursor(&m_store.db);
    cursor.select(query);
    std::string all;
    for (relation* row = cursor.get(); row != nullptr; row = cursor.next()) {
      all += std::string(row->parent) + row->child + " ";
    }
    return all;
  }

 private:
  OpenStore m_store;
};

TEST_F(QueryOfTwoKeys, IsAnsweredInKeyOrderAndOutOfIt) {
  EXPECT_EQ(Walk("order by parent,child"), "ax ay ba bx ");
  EXPECT_EQ(Walk("order by child,parent"), "ba ax bx ay ");
  EXPECT_EQ(Walk("order by parent desc,child"), "ba bx ax ay ");
  EXPECT_EQ(Walk("parent = 'b' and child >= 'b'"), "bx ");
  EXPECT_EQ(Walk("parent >= 'a' and parent < 'b' order by parent,child"), "ax ay ");
}

TEST_F(QueryOfTwoKeys, RowsOfOneKeyComeAsTheyWereInserted) { EXPECT_EQ(Walk("child = 'x'"), "bx ax "); }

/// Keys of whole numbers: bounds at and beyond what the column holds.
TEST(QueryRange, BoundsBeyondTheColumnsRange) {
  OpenStore store;
  for (const int id : {-2147483647 - 1, -1, 0, 1, 2147483647}) dtsdb::test::AddEntry(store.db, id);
  const auto count = [&store](char const* query) { return dtsdb::test::EntryIds(store.db, query).size(); };
  EXPECT_EQ(count("id >= -3000000000"), 5U);
  EXPECT_EQ(count("id > 3000000000"), 0U);
  EXPECT_EQ(count("id < 3000000000"), 5U);
  EXPECT_EQ(count("id = 3000000000"), 0U);
  EXPECT_EQ(count("id <> 3000000000"), 5U);
  EXPECT_EQ(count("id >= 2147483647"), 1U);
  EXPECT_EQ(count("id <= -2147483648"), 1U);
  EXPECT_EQ(count("id > -1.5 and id < 0.5"), 2U);
  EXPECT_EQ(count("id = 1.0"), 1U);
  EXPECT_EQ(count("id = 0 and id >= 0 or id = 1"), 2U);
}

/// Every condition over a key column selects what going through all rows would.
RC_GTEST_PROP(QueryRange, ConditionsOnKeysAgreeWithAWalk,
              (std::vector<int1> ids, int1 a, int1 b, int first, int second, bool both)) {
  static constexpr const char* kOperators[] = {"=", "<>", "<", "<=", ">", ">="};
  const auto holds = [](int op, int x, int y) {
    const bool results[] = {x == y, x != y, x<y, x <= y, x> y, x >= y};
    return results[op];
  };
  const int op1 = static_cast<int>(static_cast<unsigned>(first) % 6);
  const int op2 = static_cast<int>(static_cast<unsigned>(second) % 6);
  OpenStore store;
  for (const int1 id : ids) dtsdb::test::AddEntry(store.db, id);
  const std::string text = std::string("id ") + kOperators[op1];
  const std::string more = std::string(both ? "and id " : "or id ") + kOperators[op2];
  const int low = a;
  const int high = b;
  dbQuery query;
  query = text.c_str(), low, more.c_str(), high, "order by id";
  std::vector<int> expected;
  for (const int1 id : ids) {
    const bool one = holds(op1, id, a);
    const bool two = holds(op2, id, b);
    if (both ? one && two : one || two) expected.push_back(id);
  }
  std::sort(expected.begin(), expected.end());
  dbCursor<entry> cursor(&store.db);
  RC_ASSERT(cursor.select(query) == static_cast<int>(expected.size()));
  RC_ASSERT(dtsdb::test::Walk(cursor, [](const entry& row) { return row.id; }) == expected);
}

}  // namespace
