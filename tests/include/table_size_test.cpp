// The number of slots: growing, shrinking, and what free slots show.
#include <gtest/gtest.h>

#include <utility>

#include "tests/include/table_probe.h"

namespace dtsdb::test {
namespace {

/// Slots 0 to 3 with the keys 40, 10, 30, 20.
void FillFour(Table& table) {
  table.SetSize(4);
  for (const int key : {40, 10, 30, 20}) table.Add(Rec(key, key + 1));
}

TEST(TableSize, FirstAddGrowsByTheStep) {
  Table table;
  table.Add(Rec(1));
  EXPECT_EQ(table.GetSize(), 10);
}

TEST(TableSize, AFreshTableChainsItsSlotsAsFree) {
  Table table;
  table.SetSize(3);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.first, 0);
  EXPECT_EQ(state.last, 2);
  EXPECT_EQ(state.next, (std::vector<int>{1, 2, -1}));
  EXPECT_EQ(state.prev, (std::vector<int>{-1, 0, 1}));
  EXPECT_EQ(state.phToLg, (std::vector<int>{-1, -1, -1}));
  EXPECT_EQ(state.ordered, 1);
}

TEST(TableSize, GrowingKeepsRecordsNumbersAndTheOrderedMark) {
  Table table;
  FillFour(table);
  table.SetSize(6);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.size, 6);
  EXPECT_EQ(state.count, 4);
  EXPECT_EQ(state.ordered, 0);
  EXPECT_EQ(state.phToLg, (std::vector<int>{3, 0, 2, 1, -1, -1}));
  EXPECT_EQ(state.lgToPh, (std::vector<int>{1, 3, 2, 0, -1, -1}));
  EXPECT_EQ(table[0].tag, 11);
}

TEST(TableSize, NewSlotsGoBehindTheFreeOnes) {
  Table table;
  FillFour(table);
  table.Remove(2);
  table.SetSize(6);
  EXPECT_EQ(table.Add(Rec(1)), 2);
  EXPECT_EQ(table.Add(Rec(2)), 4);
  EXPECT_EQ(table.Add(Rec(3)), 5);
}

// Nothing walks the free chain backwards: the first new slot names the slot below it as its predecessor, wherever
// the old free chain ended.
// Kept: K03.
TEST(TableSize, TheFirstNewSlotPointsBackAtTheSlotBelowIt) {
  Table table;
  FillFour(table);
  table.Remove(0);
  table.SetSize(6);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.next[0], 4);
  EXPECT_EQ(state.prev[4], 3);
}

TEST(TableSize, GrowingLeavesDefaultsInFreeSlots) {
  Table table;
  FillFour(table);
  table.Remove(2);
  ASSERT_EQ(table.GetPh(2).key, 30);
  table.SetSize(6);
  EXPECT_EQ(table.GetPh(2).key, 0);
}

// Behind a table's size lies storage in reserve. It must not show.
TEST(TableSize, GrowingIntoReserveLeavesDefaultsInFreeSlotsToo) {
  Table table;
  for (int size = 10; size < 200; ++size) {
    table.SetSize(size);
    table.Add(Rec(size, 1));
    const int nPh = table.Find(Rec(size));
    table.Remove(nPh);
    ASSERT_EQ(table.GetPh(nPh).key, size);
    table.SetSize(size + 1);
    ASSERT_EQ(table.GetPh(nPh).key, 0) << "at size " << size;
    ASSERT_EQ(table.GetPh(size).key, 0);
  }
}

// Kept: K01.
TEST(TableSize, ASmallerSizeLeavesNoRecordWhateverTheTableHeld) {
  for (int size = 1; size < 4; ++size) {
    Table table;
    FillFour(table);
    table.SetSize(size);
    EXPECT_EQ(table.GetCount(), 0);
    EXPECT_EQ(table.GetSize(), size);
    EXPECT_EQ(table.Find(Rec(10)), -1);
    EXPECT_EQ(Probe::Ordered(table), 1);
  }
}

// Kept: K01.
TEST(TableSize, AShrunkTableKeepsItsFirstRecordsInFreeNumberedSlots) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.head, -1);
  EXPECT_EQ(state.tail, -1);
  EXPECT_EQ(state.first, 0);
  EXPECT_EQ(state.last, 2);
  EXPECT_EQ(state.phToLg, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(state.lgToPh, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(state.next, (std::vector<int>{1, 2, -1}));
  EXPECT_EQ(state.prev, (std::vector<int>{-1, 0, 1}));
  EXPECT_EQ(state.contents, (std::vector<std::pair<int, int>>{{10, 11}, {20, 21}, {30, 31}}));
}

TEST(TableSize, ShrinkingBelowTheSlotsButNotTheRecordsLeavesDefaultsBehindThem) {
  Table table;
  table.SetSize(8);
  table.Add(Rec(5, 6));
  table.SetSize(3);
  EXPECT_EQ(Probe::State(table).contents, (std::vector<std::pair<int, int>>{{5, 6}, {0, 0}, {0, 0}}));
}

TEST(TableSize, NumbersLeftByShrinkingStayThroughClearOfTheEmptyTable) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  table.Clear();
  EXPECT_EQ(table.PhToLg(2), 2);
}

TEST(TableSize, NumbersLeftByShrinkingGoWithClearOfARecord) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  table.Add(Rec(1));
  ASSERT_EQ(table.PhToLg(2), 2);
  table.Clear();
  EXPECT_EQ(table.PhToLg(2), -1);
}

TEST(TableSize, NumbersLeftByShrinkingGoWithSetData) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  Rec rows[] = {1};
  table.SetData(rows, 1, true);
  EXPECT_EQ(table.PhToLg(0), 0);
  EXPECT_EQ(table.PhToLg(1), -1);
}

TEST(TableSize, RemoveOfASlotLeftNumberedByShrinkingChangesNothing) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  table.Add(Rec(7));
  const TableState before = Probe::State(table);
  EXPECT_EQ(table.Remove(2), -1);
  EXPECT_EQ(table.Remove(1), -1);
  EXPECT_EQ(Probe::State(table), before);
  EXPECT_EQ(table.Remove(0), 0);
}

TEST(TableSize, AShrunkTableCanBeFilledAgain) {
  Table table;
  FillFour(table);
  table.SetSize(3);
  for (const int key : {9, 8, 7}) EXPECT_NE(table.Add(Rec(key)), -1);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(table[i].key, 7 + i);
}

TEST(TableSize, TheSameSizeChangesNothing) {
  Table table;
  FillFour(table);
  table.Remove(1);
  const TableState before = Probe::State(table);
  table.SetSize(4);
  EXPECT_EQ(Probe::State(table), before);
}

TEST(TableSize, SizeZeroOfANewTableIsHarmless) {
  Table table;
  table.SetSize(0);
  EXPECT_EQ(Probe::State(table), TableState());
}

TEST(TableSize, SizeZeroFreesEverythingButTheStep) {
  Table table;
  table.SetGrowBy(3);
  FillFour(table);
  table.SetSize(0);
  TableState expected;
  expected.growBy = 3;
  EXPECT_EQ(Probe::State(table), expected);
  EXPECT_EQ(table.Add(Rec(1)), 0);
  EXPECT_EQ(table.GetSize(), 3);
}

TEST(TableSize, AStepBelowZeroIsTen) {
  Table table;
  table.SetGrowBy(3);
  table.SetGrowBy(-1);
  EXPECT_EQ(Probe::State(table).growBy, 10);
}

TEST(TableSize, AStepOfZeroLetsAFullTableRefuse) {
  Table table;
  FillFour(table);
  table.SetGrowBy(0);
  const TableState before = Probe::State(table);
  ASSERT_EQ(before.growBy, 0);
  EXPECT_EQ(table.Add(Rec(99)), -1);
  EXPECT_EQ(Probe::State(table), before);
}

TEST(TableSize, AStepOfZeroKeepsANewTableWithoutSlots) {
  Table table;
  table.SetGrowBy(0);
  EXPECT_EQ(table.Add(Rec(99)), -1);
  EXPECT_EQ(table.GetSize(), 0);
}

/// A record that counts how many of its kind have been made.
struct CountedRec : Rec {
  CountedRec() { ++made; }
  explicit CountedRec(int k) : Rec(k) {}

  static inline int made = 0;
};

TEST(TableSize, SlotsThatNobodyReachesHaveNoRecord) {
  tTable<CountedRec> table;
  table.SetSize(1000000);
  table.Add(CountedRec(1));
  EXPECT_EQ(table.GetPh(0).key, 1);
  EXPECT_LT(CountedRec::made, 1000);
}

TEST(TableSize, ASlotThatNobodyReachedHoldsADefaultRecord) {
  tTable<Rec> table;
  table.SetSize(1000);
  EXPECT_EQ(std::as_const(table).GetPh(999).key, 0);
  Rec& reached = table.GetPh(500);
  reached.key = 7;
  EXPECT_EQ(table.GetPh(999).key, 0);
  EXPECT_EQ(&reached, &table.GetPh(500)) << "records never move";
  EXPECT_EQ(std::as_const(table).GetPh(500).key, 7);
}

}  // namespace
}  // namespace dtsdb::test
