// Tables so large that the numbering of an insertion or removal is put off until a number is asked for.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "tests/include/table_probe.h"

namespace dtsdb::test {
namespace {

constexpr int kRows = 3000;

/// Keys 0, 10, 20, ... in slots 0, 1, 2, ...
void Fill(Table& table) {
  std::vector<Rec> rows;
  for (int i = 0; i < kRows; ++i) rows.emplace_back(i * 10, i);
  table.SetData(rows.data(), kRows, true);
}

TEST(LargeTable, AnInsertionFarFromTheEndPutsNumberingOff) {
  Table table;
  Fill(table);
  EXPECT_EQ(table.Add(Rec(5)), kRows);
  EXPECT_TRUE(Probe::IsNumberingPutOff(table));
  EXPECT_EQ(table.PhToLg(kRows), 1);
  EXPECT_FALSE(Probe::IsNumberingPutOff(table));
}

TEST(LargeTable, AnInsertionNearTheEndIsNumberedAtOnce) {
  Table table;
  Fill(table);
  table.Add(Rec((kRows - 100) * 10 + 5));
  EXPECT_FALSE(Probe::IsNumberingPutOff(table));
}

TEST(LargeTable, EveryLookAtANumberIsUpToDate) {
  const auto put = [](Table& table) {
    Fill(table);
    table.Add(Rec(-5, 42));
    ASSERT_TRUE(Probe::IsNumberingPutOff(table));
  };
  Table a;
  put(a);
  EXPECT_EQ(a[0].tag, 42);
  Table b;
  put(b);
  EXPECT_EQ(b.GetAt(1).tag, 0);
  Table c;
  put(c);
  EXPECT_EQ(c.LgToPh(0), kRows);
  Table d;
  put(d);
  EXPECT_EQ(d.PhToLg(0), 1);
}

TEST(LargeTable, AConstTableIsReadByNumberWithoutWritingNumbers) {
  Table table;
  Fill(table);
  table.Add(Rec(5, 42));
  const Table& readOnly = table;
  EXPECT_EQ(readOnly[1].tag, 42);
  EXPECT_EQ(readOnly.GetAt(2).tag, 1);
  EXPECT_EQ(readOnly.LgToPh(1), kRows);
  EXPECT_EQ(readOnly.PhToLg(kRows), 1);
  EXPECT_EQ(readOnly.PhToLg(kRows + 1), -1);
  EXPECT_EQ(readOnly.Find(Rec(5)), kRows);
  EXPECT_TRUE(Probe::IsNumberingPutOff(table));
  table.Settle();
  EXPECT_FALSE(Probe::IsNumberingPutOff(table));
  EXPECT_EQ(readOnly[kRows].key, (kRows - 1) * 10);
}

TEST(LargeTable, AConstTableIsReadByNumberThoughAKeyWasChangedUnderIt) {
  Table table;
  Fill(table);
  table.Add(Rec(5, 42));
  table.GetPh(7).key = -1;
  EXPECT_EQ(std::as_const(table).PhToLg(7), 8);
}

TEST(LargeTable, SeveralThreadsReadAConstTableAtOnce) {
  Table table;
  Fill(table);
  table.Add(Rec(5, 42));
  std::atomic<int> right = 0;
  const auto read = [&right](const Table& shared) {
    for (int i = 0; i < shared.GetCount(); ++i) right += shared.PhToLg(shared.Find(shared[i])) == i;
  };
  std::thread other(read, std::cref(table));
  read(table);
  other.join();
  EXPECT_EQ(right, 2 * (kRows + 1));
}

TEST(LargeTable, FindAndRemoveWorkWhileNumberingIsPutOff) {
  Table table;
  Fill(table);
  EXPECT_EQ(table.Remove(0), 0);
  ASSERT_TRUE(Probe::IsNumberingPutOff(table));
  EXPECT_EQ(table.Find(Rec(10)), 1);
  EXPECT_EQ(table.Find(Rec(0)), -1);
  EXPECT_EQ(table.Find(Rec(1000000)), -1);
  EXPECT_EQ(table.Remove(2), 1);
  EXPECT_EQ(table.Remove(2), -1);
  EXPECT_EQ(table.Remove(kRows - 1), kRows - 3);
  EXPECT_EQ(table.Add(Rec(30)), -1);
  EXPECT_TRUE(Probe::IsNumberingPutOff(table));
}

// The slots 0 to 2999 hold ascending keys, but the last of them is free: its place has the record in slot 3000.
TEST(LargeTable, CompactGoesByTheRecordsWhileNumberingIsPutOff) {
  Table table;
  Fill(table);
  table.Add(Rec(5));
  EXPECT_EQ(table.Remove(kRows - 1), kRows);
  ASSERT_TRUE(Probe::IsNumberingPutOff(table));
  table.Compact();
  ASSERT_EQ(table.GetCount(), kRows);
  EXPECT_EQ(table.GetPh(1).key, 5);
  EXPECT_EQ(table.GetPh(kRows - 1).key, (kRows - 2) * 10);
}

TEST(LargeTable, EqualRecordsAreNeverPutOff) {
  Table table;
  std::vector<Rec> rows;
  for (int i = 0; i < kRows; ++i) rows.emplace_back(i / 2, i);
  table.SetData(rows.data(), kRows, true);
  EXPECT_EQ(table.Remove(1), 1);
  EXPECT_FALSE(Probe::IsNumberingPutOff(table));
  table.Add(Rec(-1));
  EXPECT_FALSE(Probe::IsNumberingPutOff(table));
}

// A key changed in place breaks the order. Numbers then count as they stand, and nothing is lost.
TEST(LargeTable, AKeyChangedInPlaceLosesNoRecord) {
  for (const bool putOffBefore : {false, true}) {
    Table table;
    Fill(table);
    if (putOffBefore) table.Add(Rec(-5));
    const int count = table.GetCount();
    for (const int slot : {1, 700, 1500, 2999}) table.GetPh(slot).key = 12345 - slot;
    EXPECT_GE(table.Remove(700), 0);
    EXPECT_NE(table.Add(Rec(3)), -1);
    EXPECT_GE(table.Remove(1500), 0);
    EXPECT_GE(table.Remove(1), 0);
    EXPECT_EQ(table.GetCount(), count - 2);
    table.Compact();
    for (int i = 1; i < table.GetCount(); ++i) ASSERT_LT(table[i - 1].key, table[i].key);
  }
}

TEST(LargeTable, CanBeEmptiedRecordByRecordFromTheFront) {
  Table table;
  Fill(table);
  for (int i = 0; i < kRows; ++i) ASSERT_EQ(table.Remove(i), 0);
  EXPECT_EQ(table.GetCount(), 0);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.phToLg, std::vector<int>(kRows, -1));
  EXPECT_EQ(state.lgToPh, std::vector<int>(kRows, -1));
  EXPECT_EQ(table.Add(Rec(1)), kRows - 1);
}

TEST(LargeTable, EndsOfAPutOffNumberingByBulkOperations) {
  const auto bulk = {+[](Table& t) { t.Clear(); }, +[](Table& t) { t.SetSize(0); }, +[](Table& t) { t.SetSize(5); },
                     +[](Table& t) {
                       Rec rows[] = {1};
                       t.SetData(rows, 1, true);
                     }};
  for (const auto operation : bulk) {
    Table table;
    Fill(table);
    table.Add(Rec(5));
    ASSERT_TRUE(Probe::IsNumberingPutOff(table));
    operation(table);
    EXPECT_FALSE(Probe::IsNumberingPutOff(table));
    EXPECT_NE(table.Add(Rec(7)), -1);
    EXPECT_NE(table.Find(Rec(7)), -1);
  }
}

// With every record renumbered at each call this would take 20 thousand million steps.
TEST(LargeTable, ManyInsertionsAtTheFrontEndInGoodTime) {
  Table table;
  constexpr int n = 200000;
  for (int i = 0; i < n; ++i) ASSERT_EQ(table.Add(Rec(-i)), i);
  for (int i = 0; i < n; i += 997) ASSERT_EQ(table.PhToLg(i), n - 1 - i);
}

}  // namespace
}  // namespace dtsdb::test
