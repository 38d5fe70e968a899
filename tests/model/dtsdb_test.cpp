// The container: its tables, sharing them, and keys in them.
#include "model/dtsdb.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "include/chain.h"
#include "model/text.h"
#include "tests/model/record_values.h"

namespace dtsdb::test {
namespace {

TEST(Container, StartsWithFortySixEmptyTables) {
  DTSDB database;
  int tables = 0;
  ForEachTable(database, [&]<class T>(tTable<T>& table) {
    EXPECT_EQ(table.GetCount(), 0) << T::kTableName;
    EXPECT_EQ(table.GetSize(), 0) << T::kTableName;
    EXPECT_EQ(&table, &TableOf<T>(database)) << T::kTableName;
    ++tables;
  });
  EXPECT_EQ(tables, 46);
}

TEST(Container, NewTablesGrowByTen) {
  DTSDB database;
  ForEachTable(database, []<class T>(tTable<T>& table) {
    table.Add(Keyed<T>(1));
    EXPECT_EQ(table.GetSize(), 10) << T::kTableName;
  });
}

TEST(Container, EqualLoadsAreRefusedWhateverElseDiffers) {
  LD first(Text("x"));
  LD second(Text("x"));
  FillFields(second, 5);
  second.id = first.id;
  EXPECT_TRUE(first == second);
  tTable<LD> table;
  EXPECT_EQ(table.Add(first), 0);
  EXPECT_EQ(table.Add(second), -1);
  EXPECT_EQ(table.GetCount(), 1);
}

TEST(Container, IdentitiesThatDifferByCaseAreDifferentRecords) {
  tTable<ST> table;
  EXPECT_NE(table.Add(ST(Text("north"))), -1);
  EXPECT_NE(table.Add(ST(Text("North"))), -1);
  EXPECT_EQ(table[0].id, Text("North"));
}

TEST(Container, AnEmptyIdentityIsALegalKeyAndSortsFirst) {
  tTable<ST> table;
  EXPECT_NE(table.Add(ST(Text("a"))), -1);
  EXPECT_NE(table.Add(ST(Text(""))), -1);
  EXPECT_EQ(table[0].id, QString());
  EXPECT_EQ(table.Add(ST(QString())), -1) << "a null identity is equal to an empty one";
}

TEST(Container, ASecondRowForTheSameParentAndChildIsRefused) {
  tTable<R_KV_LD> table;
  EXPECT_NE(table.Add(R_KV_LD(Text("kv"), Text("ld"))), -1);
  EXPECT_EQ(table.Add(R_KV_LD(Text("kv"), Text("ld"))), -1);
}

TEST(Container, TheSameChildUnderTwoParentsGivesTwoRows) {
  tTable<R_KV_LD> table;
  EXPECT_NE(table.Add(R_KV_LD(Text("kv2"), Text("ld"))), -1);
  EXPECT_NE(table.Add(R_KV_LD(Text("kv1"), Text("ld"))), -1);
  EXPECT_EQ(table[0].kv_id, Text("kv1"));
}

TEST(Container, TwoHaveSeparateTablesUntilOneIsAssigned) {
  DTSDB a;
  DTSDB b;
  a.m_stTable->Add(ST(Text("s1")));
  EXPECT_EQ(b.m_stTable->GetCount(), 0);
  a = b;
  a.m_stTable->Add(ST(Text("s2")));
  EXPECT_EQ(b.m_stTable->GetCount(), 1);
  EXPECT_EQ((*b.m_stTable)[0].id, Text("s2"));
  ForEachTable(a, [&]<class T>(tTable<T>& table) { EXPECT_EQ(&table, &TableOf<T>(b)) << T::kTableName; });
}

TEST(Container, SharedTablesGoWithTheLastHolder) {
  auto a = std::make_unique<DTSDB>();
  auto b = std::make_unique<DTSDB>();
  *a = *b;
  tTable<ST>* const shared = a->m_stTable;
  b.reset();
  shared->Add(ST(Text("s")));
  EXPECT_EQ(a->m_stTable->GetCount(), 1);
  DTSDB c(*a);
  a.reset();
  EXPECT_EQ(c.m_stTable->GetCount(), 1);
}

TEST(Container, TablesOfAnAssignedContainerStayUntilItGoes) {
  DTSDB a;
  tTable<ST>* const old = a.m_stTable;
  old->Add(ST(Text("old")));
  {
    const DTSDB b;
    a = b;
  }
  EXPECT_EQ((*old)[0].id, Text("old"));
  EXPECT_NE(a.m_stTable, old);
  EXPECT_EQ(a.m_stTable->GetCount(), 0);
}

TEST(Container, AssignmentInACircleReleasesEachTableOnce) {
  DTSDB a;
  DTSDB b;
  DTSDB c;
  tTable<ST>* const ofB = b.m_stTable;
  a = b;
  b = c;
  c = a;
  EXPECT_EQ(a.m_stTable, ofB);
  EXPECT_EQ(c.m_stTable, ofB);
  EXPECT_NE(b.m_stTable, ofB);
  for (int i = 0; i < 100; ++i) {
    a = b;
    b = c;
    c = a;
  }
  a.m_stTable->Add(ST(Text("s")));
  EXPECT_EQ(a.m_stTable->GetCount(), 1);
}

TEST(Container, AssignmentToItselfChangesNothing) {
  DTSDB a;
  tTable<ST>* const table = a.m_stTable;
  const DTSDB& same = a;
  a = same;
  EXPECT_EQ(a.m_stTable, table);
}

/// A voltage level with `n` nodes, added from the last to the first, in one chain.
void AddLevelOfNodes(DTSDB& database, int n) {
  KV level(Text("level"));
  level.r_kv_nd = 0;
  database.m_kvTable->Add(level);
  for (int i = n; i-- > 0;) database.m_ndTable->Add(ND(QString::number(100000 + i)));
  for (int i = 0; i < n; ++i) {
    R_KV_ND row(QString::number(100000 + i), level.id);
    row.ind = i;
    row.next = i + 1 < n ? i + 1 : -1;
    database.m_rKvNdTable->Add(row);
  }
}

/// The sum over the nodes of the first level: number in the chain times number in the name.
long long SumOverNodes(const DTSDB& database) {
  long long sum = 0;
  long long place = 0;
  const KV& level = TableOf<KV>(database)[0];
  for (const R_KV_ND& row : Chain(TableOf<R_KV_ND>(database), level.r_kv_nd)) {
    const ND& node = TableOf<ND>(database)[row.ind];
    sum += ++place * (node.id.toInt() - 100000);
  }
  return sum;
}

TEST(Container, IsReadByManyThreadsAtOnceThroughAConstReference) {
  constexpr int kNodes = 2000;
  constexpr int kThreads = 4;
  DTSDB database;
  AddLevelOfNodes(database, kNodes);
  SettleTables(database);

  const DTSDB& shared = database;
  int records = 0;
  ForEachTable(shared, [&]<class T>(const tTable<T>& table) { records += table.GetCount(); });
  EXPECT_EQ(records, 1 + 2 * kNodes);
  std::vector<long long> sums(kThreads);
  {
    std::vector<std::jthread> readers;
    for (long long& sum : sums) readers.emplace_back([&shared, &sum] { sum = SumOverNodes(shared); });
  }
  long long expected = 0;
  for (long long i = 0; i < kNodes; ++i) expected += (i + 1) * i;
  EXPECT_EQ(sums, std::vector<long long>(kThreads, expected));
}

TEST(Container, ACopyInAVectorOutlivesItsOriginal) {
  std::vector<DTSDB> copies;
  {
    DTSDB database;
    database.m_stTable->Add(ST(Text("s")));
    for (int i = 0; i < 5; ++i) copies.push_back(database);
  }
  EXPECT_EQ(copies[4].m_stTable->GetCount(), 1);
}

}  // namespace
}  // namespace dtsdb::test
