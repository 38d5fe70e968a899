// Searching, adding, removing and the two numberings.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <utility>
#include <vector>

#include "tests/include/table_probe.h"
#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

/// The one line that a failed check has written, its line number left out.
QString OnlyWarning() {
  const QStringList& lines = MessageCatcher::Lines();
  EXPECT_EQ(lines.size(), 1);
  if (lines.isEmpty()) return QString();
  QString line = lines.first();
  return line.replace(QRegularExpression(QStringLiteral("\\((\\d+)\\)$")), QStringLiteral("(NNN)"));
}

QString Warning(const char* text) {
  return QStringLiteral("ASSERT: \"%1\" in template (NNN)").arg(QString::fromLatin1(text));
}

std::vector<int> Keys(Table& table) {
  std::vector<int> keys;
  for (int i = 0; i < table.GetCount(); ++i) keys.push_back(table[i].key);
  return keys;
}

void AddAll(Table& table, const std::vector<int>& keys) {
  for (const int key : keys) ASSERT_NE(table.Add(Rec(key)), -1);
}

TEST(Table, NewTableHasNoSlotsAndAllEndsAtMinusOne) {
  Table table;
  EXPECT_EQ(Probe::State(table), TableState());
}

TEST(Table, FindInAnEmptyTableGivesMinusOne) {
  Table table;
  EXPECT_EQ(table.Find(Rec(1)), -1);
  table.SetSize(5);
  EXPECT_EQ(table.Find(Rec(0)), -1) << "a free slot holds a record, but the table doesn't";
}

TEST(Table, ClearOfAnEmptyTableLeavesItsOrderedMark) {
  Table table;
  AddAll(table, {1});
  table.Remove(0);
  ASSERT_EQ(Probe::Ordered(table), 0);
  const TableState before = Probe::State(table);
  table.Clear();
  EXPECT_EQ(Probe::State(table), before);
}

TEST(Table, CompactOfAnEmptyTableOnlySetsItsOrderedMark) {
  Table table;
  AddAll(table, {1, 2});
  table.Remove(0);
  table.Remove(1);
  TableState expected = Probe::State(table);
  expected.ordered = 1;
  table.Compact();
  EXPECT_EQ(Probe::State(table), expected);
}

TEST(Table, AddOfAnEqualRecordIsRefusedAndTheCountStays) {
  Table table;
  AddAll(table, {1, 2});
  EXPECT_EQ(table.Add(Rec(2, 77)), -1);
  EXPECT_EQ(table.GetCount(), 2);
  EXPECT_EQ(table[1].tag, 0);
}

// Kept: K02.
TEST(Table, RefusedAddIntoAFullTableHasGrownIt) {
  Table table;
  table.SetSize(2);
  AddAll(table, {1, 2});
  EXPECT_EQ(table.Add(Rec(1)), -1);
  EXPECT_EQ(table.GetCount(), 2);
  EXPECT_EQ(table.GetSize(), 12);
}

TEST(Table, RefusedAddLeavesTheOrderedMark) {
  Table table;
  Rec rows[] = {1, 2};
  table.SetData(rows, 2, true);
  EXPECT_EQ(table.Add(Rec(2)), -1);
  EXPECT_EQ(Probe::Ordered(table), 1);
}

TEST(Table, AddedInDisorderRecordsKeepTheirSlotsUntilCompact) {
  Table table;
  EXPECT_EQ(table.Add(Rec(3)), 0);
  EXPECT_EQ(table.Add(Rec(1)), 1);
  EXPECT_EQ(table.Add(Rec(2)), 2);
  EXPECT_EQ(table.PhToLg(0), 2);
  EXPECT_EQ(table.PhToLg(1), 0);
  EXPECT_EQ(table.PhToLg(2), 1);
  EXPECT_EQ(table.GetPh(0).key, 3);
  EXPECT_EQ(Keys(table), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(Probe::Ordered(table), 0);

  table.Compact();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(table.LgToPh(i), i);
    EXPECT_EQ(table.PhToLg(i), i);
    EXPECT_EQ(table.GetPh(i).key, i + 1);
  }
  EXPECT_EQ(Probe::Ordered(table), 1);
  EXPECT_EQ(table.GetSize(), 10);
}

TEST(Table, FindGivesThePhysicalNumber) {
  Table table;
  AddAll(table, {30, 10, 20});
  EXPECT_EQ(table.Find(Rec(30)), 0);
  EXPECT_EQ(table.Find(Rec(10)), 1);
  EXPECT_EQ(table.Find(Rec(20)), 2);
  EXPECT_EQ(table.Find(Rec(15)), -1);
  EXPECT_EQ(table.Find(Rec(5)), -1);
  EXPECT_EQ(table.Find(Rec(35)), -1);
}

TEST(Table, AppendingInOrderTakesOneComparison) {
  Table table;
  table.SetSize(1000);
  table.Add(Rec(0));
  const long before = Rec::comparisons;
  for (int i = 1; i < 1000; ++i) table.Add(Rec(i));
  EXPECT_EQ(Rec::comparisons - before, 999);
}

TEST(Table, RemoveOfAFreeSlotGivesMinusOneAndChangesNothing) {
  Table table;
  Rec rows[] = {1, 2};
  table.SetSize(4);
  table.SetData(rows, 2, true);
  const TableState before = Probe::State(table);
  ASSERT_EQ(before.ordered, 1);
  EXPECT_EQ(table.Remove(3), -1);
  EXPECT_EQ(Probe::State(table), before);
}

TEST(Table, RemoveGivesTheLogicalNumberAndClosesTheGap) {
  Table table;
  AddAll(table, {5, 1, 3, 4, 2});
  EXPECT_EQ(table.Remove(2), 2);
  EXPECT_EQ(table.PhToLg(2), -1);
  EXPECT_EQ(Keys(table), (std::vector<int>{1, 2, 4, 5}));
  EXPECT_EQ(table.Remove(1), 0);
  EXPECT_EQ(table.Remove(0), 2);
  EXPECT_EQ(Keys(table), (std::vector<int>{2, 4}));
}

TEST(Table, RemovingTheOnlyRecordLeavesAnEmptyTableWithItsSlotFirst) {
  Table table;
  AddAll(table, {7});
  EXPECT_EQ(table.Remove(0), 0);
  const TableState state = Probe::State(table);
  EXPECT_EQ(state.count, 0);
  EXPECT_EQ(state.head, -1);
  EXPECT_EQ(state.tail, -1);
  EXPECT_EQ(state.first, 0);
  EXPECT_EQ(state.lgToPh[0], -1);
  EXPECT_EQ(state.phToLg[0], -1);
  EXPECT_EQ(table.Find(Rec(7)), -1);
}

TEST(Table, TheSlotFreedLastIsTakenFirst) {
  Table table;
  AddAll(table, {1, 2, 3, 4});
  table.Remove(1);
  table.Remove(3);
  EXPECT_EQ(table.Add(Rec(9)), 3);
  EXPECT_EQ(table.Add(Rec(8)), 1);
  EXPECT_EQ(table.Add(Rec(7)), 4);
}

TEST(Table, AFreedSlotStillHoldsItsRecord) {
  Table table;
  table.Add(Rec(1, 11));
  table.Remove(0);
  EXPECT_EQ(table.GetPh(0).key, 1);
  EXPECT_EQ(table.GetPh(0).tag, 11);
}

TEST(Table, IsUsedDistinguishesASlotWithARecordFromAFreeOne) {
  Table table;
  AddAll(table, {1, 2});
  EXPECT_TRUE(table.IsUsed(1));
  EXPECT_FALSE(table.IsUsed(2));
  table.Remove(1);
  EXPECT_FALSE(table.IsUsed(1));
  EXPECT_TRUE(table.IsUsed(0));
}

TEST(Table, ARecordOfTheTableItselfCanBeAddedWhileItGrows) {
  Table table;
  table.SetGrowBy(1);
  AddAll(table, {1, 2, 3});
  table.Remove(1);
  Rec& freed = table.GetPh(1);
  table.Add(Rec(5));  // takes the slot of the freed record
  EXPECT_EQ(freed.key, 5);
  EXPECT_EQ(table.Add(table[2]), -1);
  EXPECT_EQ(table.GetSize(), 4);
  Table other;
  other.SetGrowBy(1);
  other.Add(Rec(1));
  EXPECT_EQ(other.Add(other.GetPh(0)), -1);
  EXPECT_EQ(Keys(other), (std::vector<int>{1}));
}

TEST(Table, WhatAFreeSlotHoldsCanBeAddedFromThere) {
  Table table;
  table.Add(Rec(1, 10));
  table.Add(Rec(2, 20));
  table.Remove(0);
  EXPECT_EQ(table.Add(table.GetPh(0)), 0);
  EXPECT_EQ(table[0].tag, 10);
}

TEST(TableCheck, IndexAtTheCountWritesItsOwnTextAndGivesASpareRecord) {
  Table table;
  AddAll(table, {1, 2});
  const MessageCatcher catcher;
  Rec& spare = table[2];
  EXPECT_EQ(OnlyWarning(), Warning("nLg >=0 && nLg < m_count"));
  EXPECT_EQ(spare.key, 0);
  spare.key = 5;
  EXPECT_EQ(table[-1].key, 0) << "the spare record is fresh at each use";
  EXPECT_EQ(Keys(table), (std::vector<int>{1, 2}));
}

TEST(TableCheck, LgToPhAtTheCountWritesTheOtherTextAndGivesMinusOne) {
  Table table;
  AddAll(table, {1, 2});
  const MessageCatcher catcher;
  EXPECT_EQ(table.LgToPh(2), -1);
  EXPECT_EQ(OnlyWarning(), Warning("nLg >= 0 && nLg < m_count"));
  EXPECT_EQ(table.LgToPh(-1), -1);
}

TEST(TableCheck, GetAtOutOfRange) {
  Table table;
  const MessageCatcher catcher;
  EXPECT_EQ(table.GetAt(0).key, 0);
  EXPECT_EQ(OnlyWarning(), Warning("nIndex >= 0 && nIndex < m_count"));
}

TEST(TableCheck, GetPhOutOfRange) {
  Table table;
  table.SetSize(3);
  const MessageCatcher catcher;
  table.GetPh(3).key = 4;
  EXPECT_EQ(OnlyWarning(), Warning("nPh >= 0 && nPh < m_size"));
  EXPECT_EQ(table.GetPh(-1).key, 0);
}

TEST(TableCheck, PhToLgOutOfRange) {
  Table table;
  table.SetSize(3);
  const MessageCatcher catcher;
  EXPECT_EQ(table.PhToLg(3), -1);
  EXPECT_EQ(OnlyWarning(), Warning("nPh >= 0 && nPh < m_size"));
}

TEST(TableCheck, IsUsedOutOfRange) {
  Table table;
  AddAll(table, {1});
  const MessageCatcher catcher;
  EXPECT_FALSE(table.IsUsed(10));
  EXPECT_EQ(OnlyWarning(), Warning("nPh >= 0 && nPh < m_size"));
  EXPECT_FALSE(table.IsUsed(-1));
}

TEST(TableCheck, RemoveOutOfRange) {
  Table table;
  AddAll(table, {1});
  const TableState before = Probe::State(table);
  const MessageCatcher catcher;
  EXPECT_EQ(table.Remove(10), -1);
  EXPECT_EQ(OnlyWarning(), Warning("nPh >= 0 && nPh < m_size"));
  EXPECT_EQ(table.Remove(-1), -1);
  EXPECT_EQ(Probe::State(table), before);
}

TEST(TableCheck, SetSizeBelowZeroChangesNothing) {
  Table table;
  AddAll(table, {1});
  const TableState before = Probe::State(table);
  const MessageCatcher catcher;
  table.SetSize(-1);
  EXPECT_EQ(OnlyWarning(), Warning("nNewSize >= 0"));
  EXPECT_EQ(Probe::State(table), before);
}

TEST(TableCheck, NumbersInRangeWriteNothing) {
  Table table;
  AddAll(table, {3, 1, 2});
  const MessageCatcher catcher;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(table.PhToLg(table.LgToPh(i)), i);
  EXPECT_EQ(table.GetPh(9).key, 0);
  table.Remove(1);
  table.Compact();
  EXPECT_EQ(MessageCatcher::Lines(), QStringList());
}

}  // namespace
}  // namespace dtsdb::test
