// A model that nobody changes, read by several threads at once.

#include <gtest/gtest.h>

#include <QString>
#include <atomic>
#include <barrier>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "breakerflow/flows.h"
#include "generate/generator.h"
#include "include/chain.h"
#include "model/dtsdb.h"
#include "model/relations.h"
#include "model/text.h"
#include "tests/support/temporary_directory.h"
#include "tests/threads/side_by_side.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

/// Reads a table in every way there is: by rank, by slot, by identity.
template <class T>
void ReadTable(const tTable<T>& table, std::ostream& seen) {
  for (int rank = 0; rank < table.GetCount(); ++rank) {
    const int slot = table.LgToPh(rank);
    const T& record = table[rank];
    seen << slot << table.PhToLg(slot) << table.IsUsed(slot) << table.Find(record) << ' ';
    EXPECT_EQ(&table.GetAt(rank), &table.GetPh(slot));
  }
  seen << T::kTableName << table.GetSize() << '\n';
}

/// Reads a model as programs do that show it: all tables, all chains, the flows.
std::string AllOf(const DTSDB& model) {
  std::ostringstream seen;
  ForEachTable(model, [&](const auto& table) { ReadTable(table, seen); });
  const tTable<R_KV_ND>& rows = TableOf<R_KV_ND>(model);
  const tTable<KV>& levels = TableOf<KV>(model);
  for (int i = 0; i < levels.GetCount(); ++i) {
    for (const R_KV_ND& row : Chain(rows, levels[i].r_kv_nd))
      seen << row.ind << IdToBytes(row.nd_id).constData() << ' ';
    seen << ChainLength(rows, levels[i].r_kv_nd) << '\n';
  }
  for (const BreakerFlow& flow : ComputeFlows(model).breakers) seen << flow.p << ' ' << flow.q << '\n';
  return seen.str();
}

TEST(SharedModel, IsTheSameForAllReaders) {
  const TemporaryDirectory here;
  DTSDB model;
  tools::GenerateUtility(model, {.stations = 6});
  NMD validation(&model);
  ASSERT_TRUE(validation.DetectAll());
  TP topology(&model);
  ASSERT_EQ(topology.tpAllnew(), 1);
  SettleTables(model);
  std::vector<std::string> seen(kThreads);
  SideBySide(kThreads, [&](int i) { seen[static_cast<std::size_t>(i)] = AllOf(model); });
  EXPECT_GT(seen[0].size(), 10'000U);
  for (const std::string& each : seen) EXPECT_TRUE(each == AllOf(model));
}

/// A table of n records that have come in the opposite order of their keys.
void FillBackward(tTable<CO>& table, int n) {
  for (int i = n; i > 0; --i) table.Add(CO(QString::number(100'000 + i)));
}

TEST(SharedTable, IsReadRightAfterItsNumbersAreSettled) {
  tTable<CO> table;
  FillBackward(table, 2000);
  table.Settle();
  std::vector<std::string> seen(kThreads);
  SideBySide(kThreads, [&](int i) {
    std::ostringstream text;
    ReadTable(std::as_const(table), text);
    seen[static_cast<std::size_t>(i)] = text.str();
  });
  for (const std::string& each : seen) EXPECT_TRUE(each == seen[0]);
  EXPECT_EQ(table.LgToPh(0), 1999);
}

TEST(SharedTable, IsReadWhileItsNumbersArePutOff) {
  tTable<CO> table;
  FillBackward(table, 2000);
  SideBySide(kThreads, [&](int i) {
    const tTable<CO>& shared = table;
    for (int rank = i; rank < shared.GetCount(); rank += 17) {
      const int slot = shared.LgToPh(rank);
      ASSERT_EQ(slot, shared.GetCount() - 1 - rank);
      ASSERT_EQ(shared.PhToLg(slot), rank);
      ASSERT_EQ(shared.Find(shared[rank]), slot);
    }
  });
}

std::atomic<int> warnings = 0;

TEST(SharedTable, GivesEachThreadASpareRecordOfItsOwn) {
  const tTable<CO> table;
  const QtMessageHandler before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
  std::vector<const CO*> spares(kThreads);
  std::barrier<> all(kThreads);  // the records of threads that have ended may be where those of others are
  SideBySide(kThreads, [&](int i) {
    for (int round = 0; round < 100; ++round) spares[static_cast<std::size_t>(i)] = &table[round];
    all.arrive_and_wait();
  });
  qInstallMessageHandler(before);
  EXPECT_EQ(std::set<const CO*>(spares.begin(), spares.end()).size(), spares.size());
  EXPECT_EQ(warnings, 100 * kThreads);
}

TEST(SharedChain, LimitsTheStepsOfItsOwnThreadOnly) {
  tTable<R_CO_DV> rows;
  for (int i = 0; i < 100; ++i) {
    R_CO_DV row;
    row.dv_id = QString::number(100 + i);
    row.next = i < 99 ? i + 1 : -1;
    rows.Add(row);
  }
  SideBySide(kThreads, [&](int i) {
    const ChainLimit limit(10 + i);
    EXPECT_EQ(ChainLength(rows, 0), 10 + i);
  });
  EXPECT_EQ(ChainLength(rows, 0), 100);
}

}  // namespace
}  // namespace dtsdb::test
