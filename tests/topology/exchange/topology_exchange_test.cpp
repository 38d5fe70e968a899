// What the topology reads from the realtime database and what it writes there after a full run.

#include <gtest/gtest.h>

#include "model/exchange.h"
#include "model/record_bits.h"
#include "tests/support/messages.h"
#include "tests/support/random_records.h"
#include "tests/support/realtime_store.h"
#include "topology/tp.h"

namespace dtsdb::test {
namespace {

class TopologyExchange : public ::testing::Test {
 protected:
  void SetSections(int count) {
    m_model.m_bsTable->Clear();
    for (int i = 0; i < count; ++i) m_model.m_bsTable->Add(BS(i));
  }

  /// Has the topology write a record over a row that differs from it in everything but its identity, and checks that
  /// exactly `fields` took the record's values.
  template <class T, class... Values>
  void ExpectUpdatesOnly(tTable<T>& table, Values T::*... fields) {
    RandomRecords random(7);
    const T stored = random.Record<T>(0);
    T record = random.Record<T>(0);
    record.id = stored.id;
    table.Add(stored);
    WriteTable(m_store.Db(), table);
    table.Clear();
    table.Add(record);

    m_tp.tpWriteFastdb(m_store.Db());

    T expected = stored;
    ((expected.*fields = record.*fields), ...);
    tTable<T> expectedTable;
    expectedTable.Add(expected);
    tTable<T> read;
    ReadTable(m_store.Db(), read);
    ExpectEqualTables(expectedTable, read);
  }

  RealtimeStore m_store;
  DTSDB m_model;
  TP m_tp{&m_model};
};

TEST_F(TopologyExchange, ReadsWhatARunWorksOnAndNotWhatItProduces) {
  DTSDB stored;
  RandomRecords(1).FillModel(stored, 2);
  stored.WriteFastdb(m_store.Db());
  EXPECT_EQ(m_tp.tpReadFastdb(m_store.Db()), 1);
  QStringList expected = FilledTables(stored);
  for (const char* produced : {"BS", "BSL", "CHND", "ISLAND", "TPL", "TPTRACE"}) {
    expected.removeOne(QLatin1String(produced));
  }
  EXPECT_EQ(expected.size(), 40);
  EXPECT_EQ(FilledTables(m_model), expected);
}

TEST_F(TopologyExchange, WritesTheTablesOfAFullRun) {
  RandomRecords(2).FillModel(m_model, 2);
  EXPECT_EQ(m_tp.tpWriteFastdb(m_store.Db()), 1);
  EXPECT_EQ(m_store.FilledTables().join(QLatin1Char(' ')),
            QStringLiteral("BS BSL BUS CB CB2 CHND CP DLN DLN2 GLOBAL ISLAND KV LD LN LN2 ND UN XF XF2 ZBR ZBR2"));
}

TEST_F(TopologyExchange, EmptyBsTableGetsEveryFieldAndASecondWriteLeavesVoltages) {
  SetSections(1);
  BS& section = m_model.m_bsTable->GetPh(0);
  section.v = 220;
  section.a = 5;
  section.name = QStringLiteral("S");
  m_tp.tpWriteFastdb(m_store.Db());
  m_store.ForEachRow<bs>("", [](const bs& row) {
    EXPECT_EQ(row.v, 220);
    EXPECT_EQ(row.a, 5);
  });

  m_store.Change<bs>([](bs& row) { row.v = 225; });
  section.v = 1;
  section.island = 4;
  m_tp.tpWriteFastdb(m_store.Db());
  m_store.ForEachRow<bs>("", [](const bs& row) {
    EXPECT_EQ(row.v, 225);
    EXPECT_EQ(row.a, 5);
    EXPECT_EQ(row.island, 4);
  });
}

TEST_F(TopologyExchange, SectionsBeyondTheTableLeaveTheDatabase) {
  SetSections(40);
  m_tp.tpWriteFastdb(m_store.Db());
  ASSERT_EQ(m_store.Count<bs>(), 40);
  SetSections(30);
  m_tp.tpWriteFastdb(m_store.Db());
  std::vector<int> expected(30);
  for (int i = 0; i < 30; ++i) expected[static_cast<std::size_t>(i)] = i;
  EXPECT_EQ(m_store.Values<bs>([](const bs& row) { return int{row.id}; }), expected);
}

TEST_F(TopologyExchange, DevicesWhoseRecordHasGoneStay) {
  LD load(QStringLiteral("L1"));
  m_model.m_ldTable->Add(load);
  m_tp.tpWriteFastdb(m_store.Db());
  m_model.m_ldTable->Clear();
  m_tp.tpWriteFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<ld>(), 1);
}

TEST_F(TopologyExchange, TwoRowsOfOneLoadGiveWayToANewOne) {
  ld row;
  row.id = "L1";
  row.p = 3;
  m_store.Insert(row);
  m_store.Insert(row);
  LD load(QStringLiteral("L1"));
  load.ibs = 6;
  load.p = 4;
  m_model.m_ldTable->Add(load);
  m_tp.tpWriteFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<ld>(), 1);
  m_store.ForEachRow<ld>("", [](const ld& made) {
    EXPECT_EQ(made.ibs, 6);
    EXPECT_EQ(made.p, 4);
  });
}

TEST_F(TopologyExchange, UpdatesOfSectionsTouchTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly(*m_model.m_bsTable, &BS::name, &BS::ikv, &BS::f0, &BS::island, &BS::status, &BS::flags, &BS::next,
                    &BS::prev, &BS::ibsl);
}

TEST_F(TopologyExchange, UpdatesOfLoadsTouchTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly(*m_model.m_ldTable, &LD::ibs, &LD::status, &LD::tp_status);
}

TEST_F(TopologyExchange, UpdatesOfUnitsTouchTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly(*m_model.m_unTable, &UN::ibs, &UN::ref, &UN::status, &UN::tp_status);
}

TEST_F(TopologyExchange, UpdatesOfBusesTouchTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly(*m_model.m_busTable, &BUS::ibs, &BUS::tp_status);
}

TEST_F(TopologyExchange, BreakerMarkedAsReadOpenIsOpenInTheModelWhileItsRowStays) {
  const auto insert = [&](const char* id, nat4 flags) {
    cb row;
    row.id = id;
    row.flags = flags;
    m_store.Insert(row);
  };
  insert("closed", 1);
  insert("marked", 1 | CB_READ_OPEN);
  insert("open", 1 | CB_OPEN);
  m_tp.tpReadFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_cbTable->GetCount(), 3);
  EXPECT_EQ((*m_model.m_cbTable)[0].flags, 1U);
  EXPECT_EQ((*m_model.m_cbTable)[1].flags, 1 | CB_READ_OPEN | CB_OPEN);
  EXPECT_EQ((*m_model.m_cbTable)[2].flags, 1 | CB_OPEN);
  EXPECT_EQ(m_store.Values<cb>([](const cb& row) { return row.flags; }),
            (std::vector<nat4>{1, 1 | CB_READ_OPEN, 1 | CB_OPEN}));
}

TEST_F(TopologyExchange, WritingCommits) {
  m_model.m_ldTable->Add(LD(QStringLiteral("L1")));
  m_tp.tpWriteFastdb(m_store.Db());
  m_store.Db()->rollback();
  EXPECT_EQ(m_store.Count<ld>(), 1);
}

TEST_F(TopologyExchange, WithoutADatabaseThereIsAWarning) {
  const MessageCatcher catcher;
  EXPECT_EQ(m_tp.tpReadFastdb(nullptr), 1);
  EXPECT_EQ(m_tp.tpWriteFastdb(nullptr), 1);
  EXPECT_EQ(MessageCatcher::Lines().size(), 2);
}

TEST_F(TopologyExchange, TopologyWithoutAModelExchangesItsEmptyOne) {
  const MessageCatcher catcher;
  TP tp(nullptr);
  EXPECT_EQ(tp.tpReadFastdb(m_store.Db()), 1);
  EXPECT_EQ(tp.tpWriteFastdb(m_store.Db()), 1);
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_TRUE(m_store.FilledTables().isEmpty());
}

}  // namespace
}  // namespace dtsdb::test
