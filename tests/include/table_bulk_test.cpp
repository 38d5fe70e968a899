// Bulk load, emptying and compacting.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "tests/include/reference_table.h"
#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

TEST(TableBulk, MoreRecordsThanSlotsGrowTheTableToExactlyThatMany) {
  Table table;
  table.SetSize(2);
  Rec rows[] = {5, 4, 3, 2, 1};
  EXPECT_TRUE(table.SetData(rows, 5, false));
  EXPECT_EQ(table.GetSize(), 5);
  EXPECT_EQ(Probe::FirstFree(table), -1);
  EXPECT_EQ(table.Add(Rec(9)), 5);
  EXPECT_EQ(table.GetSize(), 15);
}

TEST(TableBulk, FewerRecordsThanSlotsKeepAllSlots) {
  Table table;
  table.SetSize(4);
  Rec rows[] = {2, 1};
  table.SetData(rows, 2, false);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.size, 4);
  EXPECT_EQ(state.first, 2);
  EXPECT_EQ(state.last, 3);
  EXPECT_EQ(state.next, (std::vector<int>{1, -1, 3, -1}));
  EXPECT_EQ(state.prev, (std::vector<int>{-1, 0, -1, 2}));
  EXPECT_EQ(state.ordered, 1);
}

TEST(TableBulk, DataMakesATableOrderedThatWasFilledOneByOne) {
  Table table;
  table.Add(Rec(2));
  table.Add(Rec(1));
  ASSERT_EQ(Probe::State(table).ordered, 0);
  Rec rows[] = {1, 2};
  table.SetData(rows, 2, true);
  EXPECT_EQ(Probe::State(table).ordered, 1);
}

// With room for all slots or without, sorted or not: slots and what lies in them are as after a copy.
TEST(TableBulk, RecordsThatAreTakenOverComeOutAsCopiedOnes) {
  const std::vector<std::vector<Rec>> choices = {{1, 2, 3}, {3, 1, 2}, {2, 1, 2, 1}, {7}, {6, 5, 4, 3, 2, 1}};
  for (const int slotCount : {0, 2, 5, 100}) {
    for (const std::vector<Rec>& first : choices) {
      for (const std::vector<Rec>& second : choices) {
        Table table;
        Table copying;
        for (Table* each : {&table, &copying}) each->SetSize(slotCount);
        for (const std::vector<Rec>* rows : {&first, &second}) {
          std::vector<Rec> copied = *rows;
          std::vector<Rec> taken;
          taken.reserve(rows == &first ? rows->size() : static_cast<std::size_t>(table.GetSize()) + rows->size());
          taken = *rows;
          EXPECT_EQ(table.SetData(std::move(taken)),
                    copying.SetData(copied.data(), static_cast<int>(copied.size()), false));
          EXPECT_EQ(Probe::State(table), Probe::State(copying));
          for (int i = 0; i < table.GetSize(); ++i) EXPECT_EQ(table.GetPh(i), copying.GetPh(i)) << i;
        }
        EXPECT_EQ(table.Add(Rec(50)), copying.Add(Rec(50)));
        EXPECT_EQ(Probe::State(table), Probe::State(copying));
      }
    }
  }
}

TEST(TableBulk, NoRecordsToTakeOverArePassedOverWithAWarning) {
  Table table;
  const MessageCatcher catcher;
  EXPECT_TRUE(table.SetData(std::vector<Rec>()));
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_EQ(table.GetCount(), 0);
}

// Whatever the number of records before and after, the slots are as if all data had been set anew.
TEST(TableBulk, TailOfTheDataIsSetAsTheWholeWouldBe) {
  Rec rows[] = {1, 2, 3, 4, 5, 6};
  for (int before = 1; before <= 6; ++before) {
    for (int after = 1; after <= 6; ++after) {
      Table table;
      Table whole;
      for (Table* each : {&table, &whole}) {
        each->SetSize(4);
        each->SetData(rows, before, true);
      }
      EXPECT_TRUE(table.SetDataTail(rows, after));
      whole.SetData(rows, after, true);
      EXPECT_EQ(Probe::State(table), Probe::State(whole)) << before << " to " << after;
    }
  }
}

TEST(TableBulk, TailOfNoLengthIsPassedOverWithAWarning) {
  Rec rows[] = {1, 2};
  Table table;
  table.SetData(rows, 2, true);
  const TableState state = Probe::State(table);
  const MessageCatcher catcher;
  EXPECT_TRUE(table.SetDataTail(rows, 0));
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_EQ(Probe::State(table), state);
}

TEST(TableBulk, EveryOperationThatChangesTheTableRaisesItsChangeCount) {
  Rec rows[] = {1, 2, 3};
  Table table;
  std::uint64_t before = table.ChangeCount();
  const auto raised = [&] {
    const std::uint64_t last = std::exchange(before, table.ChangeCount());
    return last != before;
  };
  EXPECT_FALSE(raised());
  table.SetSize(4);
  EXPECT_TRUE(raised());
  table.SetData(rows, 3, true);
  EXPECT_TRUE(raised());
  table.SetDataTail(rows, 2);
  EXPECT_TRUE(raised());
  table.Add(Rec(7));
  EXPECT_TRUE(raised());
  table.Remove(0);
  EXPECT_TRUE(raised());
  table.Compact();
  EXPECT_TRUE(raised());
  table.Clear();
  EXPECT_TRUE(raised());
  table.NoteChange();
  EXPECT_TRUE(raised());
}

TEST(TableBulk, ReadingAndRefusedOperationsLeaveTheChangeCount) {
  Rec rows[] = {1, 2};
  Table table;
  table.SetSize(4);
  table.SetData(rows, 2, true);
  const std::uint64_t before = table.ChangeCount();
  EXPECT_EQ(table.Add(Rec(2)), -1);
  EXPECT_EQ(table.Remove(3), -1);
  table.GetPh(0);
  table.Find(Rec(1));
  table.Settle();
  EXPECT_EQ(table.ChangeCount(), before);
}

TEST(TableBulk, UnsortedDataSortsTheCallersArray) {
  Table table;
  Rec rows[] = {{3, 1}, {1, 2}, {2, 3}};
  table.SetData(rows, 3, false);
  EXPECT_EQ(KeysAndTags(rows, 3), (Pairs{{1, 2}, {2, 3}, {3, 1}}));
}

TEST(TableBulk, SortedDataIsTakenAsItIs) {
  Table table;
  Rec rows[] = {3, 1, 2};
  table.SetData(rows, 3, true);
  EXPECT_EQ(table[0].key, 3);
  EXPECT_EQ(rows[0].key, 3);
}

TEST(TableBulk, EqualRecordsAreKept) {
  Table table;
  Rec rows[] = {{1, 1}, {1, 2}, {1, 3}};
  table.SetData(rows, 3, true);
  EXPECT_EQ(table.GetCount(), 3);
}

// With an odd number left the search looks at the middle, with an even one below it.
TEST(TableBulk, WhichOfEqualRecordsIsFoundFollowsFromTheMiddle) {
  Table table;
  Rec rows[] = {1, 1, 1, 1, 1};
  for (const auto& [n, found] : {std::pair(1, 0), {2, 0}, {3, 1}, {4, 1}, {5, 2}}) {
    table.SetData(rows, n, true);
    EXPECT_EQ(table.Find(Rec(1)), found) << n << " records";
  }
}

TEST(TableBulk, EqualRecordsEndInThePlacesOfTheTextbookPartition) {
  Table table;
  Rec rows[] = {{2, 1}, {2, 2}, {1, 3}, {2, 4}, {1, 5}};
  table.SetData(rows, 5, false);
  EXPECT_EQ(KeysAndTags(rows, 5), (Pairs{{1, 3}, {1, 5}, {2, 1}, {2, 4}, {2, 2}}));
}

TEST(TableBulk, NoRecordsEmptyTheTableAndWarn) {
  Table table;
  Rec rows[] = {1};
  table.SetData(rows, 1, true);
  const MessageCatcher catcher;
  EXPECT_TRUE(table.SetData(rows, 0, true));
  EXPECT_EQ(table.GetCount(), 0);
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
}

TEST(TableBulk, FreeSlotsKeepWhatTheyHeldThroughClearSetDataAndCompact) {
  Table table;
  Rec rows[] = {{1, 1}, {2, 2}, {3, 3}};
  table.SetData(rows, 3, true);
  table.Clear();
  EXPECT_EQ(table.GetPh(2).tag, 3);
  Rec row[] = {{9, 9}};
  table.SetData(row, 1, true);
  EXPECT_EQ(table.GetPh(1).tag, 2);
  table.Compact();
  EXPECT_EQ(table.GetPh(1).tag, 2);
  EXPECT_EQ(table.GetPh(2).tag, 3);
}

TEST(TableBulk, CompactLeavesTheOldRecordsInTheSlotsAboveTheCount) {
  Table table;
  for (const int key : {1, 2, 3}) table.Add(Rec(key));
  table.Remove(0);
  table.Compact();
  EXPECT_EQ(table.GetCount(), 2);
  EXPECT_EQ(table.GetPh(0).key, 2);
  EXPECT_EQ(table.GetPh(1).key, 3);
  EXPECT_EQ(table.GetPh(2).key, 3);
}

TEST(TableBulk, ClearKeepsTheSlotsAndChainsThemInOrder) {
  Table table;
  for (const int key : {1, 2, 3}) table.Add(Rec(key));
  table.Remove(0);
  table.Clear();
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.size, 10);
  EXPECT_EQ(state.first, 0);
  EXPECT_EQ(state.last, 9);
  EXPECT_EQ(state.ordered, 1);
  EXPECT_EQ(table.Add(Rec(4)), 0);
}

TEST(TableBulk, ATableCanBeLoadedFromItsOwnSlots) {
  Table table;
  Rec rows[] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}};
  table.SetData(rows, 4, true);
  table.SetData(&table.GetPh(0), 4, true);
  EXPECT_EQ(table[3].tag, 4);
  table.SetData(&table.GetPh(2), 2, true);
  EXPECT_EQ(table.GetCount(), 2);
  EXPECT_EQ(table[0].tag, 3);
  EXPECT_EQ(table[1].tag, 4);
}

TEST(TableBulk, CompactSortsKeysThatWereChangedInPlace) {
  Table table;
  Rec rows[] = {1, 2, 3};
  table.SetData(rows, 3, true);
  table[0].key = 9;
  table.Compact();
  EXPECT_EQ(table[0].key, 2);
  EXPECT_EQ(table[2].key, 9);
}

TEST(TableBulk, LargeArraysWithEqualRecordsSortLikeTheTextbook) {
  for (const int distinct : {1, 2, 37, 4999}) {
    std::vector<Rec> rows;
    for (int i = 0; i < 5000; ++i) rows.emplace_back(static_cast<int>(i * 7919L % distinct), i);
    std::vector<Rec> textbook = rows;
    Table table;
    table.SetData(rows.data(), 5000, false);
    ReferenceTable::QuickSort(textbook.data(), 0, 4999);
    EXPECT_EQ(KeysAndTags(rows.data(), 5000), KeysAndTags(textbook.data(), 5000));
  }
}

// Two sorted runs shuffled into each other, or a rise and a fall, make the textbook partition quadratic.
TEST(TableBulk, SortingBadInputsWithoutEqualRecordsStaysNearNLogN) {
  constexpr int n = 100000;
  std::vector<Rec> runs;
  for (int i = 0; i < n; ++i) runs.emplace_back(i < n / 2 ? 2 * i : 2 * (i - n / 2) + 1);
  std::vector<Rec> hill;
  for (int i = 0; i < n; ++i) hill.emplace_back(i < n / 2 ? 2 * i : 2 * (n - i) - 1);
  for (std::vector<Rec>* rows : {&runs, &hill}) {
    Table table;
    const long before = Rec::comparisons;
    table.SetData(rows->data(), n, false);
    EXPECT_LT(static_cast<double>(Rec::comparisons - before), 4.0 * n * std::log2(n));
    for (int i = 0; i < n; ++i) ASSERT_EQ(table[i].key, i);
  }
}

}  // namespace
}  // namespace dtsdb::test
