// Single tables: readers, merging and replacing writers.

#include <gtest/gtest.h>

#include <string>

#include "model/dtsdb.h"
#include "model/exchange.h"
#include "tests/support/messages.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {
namespace {

using Texts = std::vector<std::string>;
using Numbers = std::vector<int>;

class ExchangeTables : public ::testing::Test {
 protected:
  template <class Row>
  Texts Ids() {
    return m_store.Values<Row>([](const Row& row) { return std::string(row.id != nullptr ? row.id : ""); });
  }
  template <class Row>
  Numbers NumberedIds() {
    return m_store.Values<Row>([](const Row& row) { return int{row.id}; });
  }

  LD& AddLoad(const char* id) {
    tTable<LD>& loads = *m_model.m_ldTable;
    return loads.GetPh(loads.Add(LD(QString::fromLatin1(id))));
  }
  template <class T>
  static void AddNumbered(tTable<T>& table, int count) {
    for (int i = 0; i < count; ++i) table.Add(T(i));
  }
  static ANALOG Point(const char* id, const char* name) {
    ANALOG point(QString::fromLatin1(id));
    point.name = QString::fromLatin1(name);
    return point;
  }

  RealtimeStore m_store;
  DTSDB m_model;
};

TEST_F(ExchangeTables, EmptyRealtimeTableLeavesTableEmptyWithItsSlots) {
  AddLoad("L1");
  m_model.m_ldTable->SetSize(40);
  EXPECT_TRUE(m_model.ReadLDFromFastdb(m_store.Db()));
  EXPECT_EQ(m_model.m_ldTable->GetCount(), 0);
  EXPECT_EQ(m_model.m_ldTable->GetSize(), 40);
}

TEST_F(ExchangeTables, ReadingReplacesTheContentsAndKeepsTheSlots) {
  for (const char* id : {"L3", "L1", "L2"}) {
    ld row;
    row.id = id;
    m_store.Insert(row);
  }
  AddLoad("old");
  m_model.m_ldTable->SetSize(40);
  EXPECT_TRUE(m_model.ReadLDFromFastdb(m_store.Db()));
  tTable<LD>& loads = *m_model.m_ldTable;
  ASSERT_EQ(loads.GetCount(), 3);
  EXPECT_EQ(loads.GetSize(), 40);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(loads.LgToPh(i), i);
    EXPECT_EQ(loads[i].id, QStringLiteral("L%1").arg(i + 1));
  }
}

TEST_F(ExchangeTables, RelationRowsAreReadInTheOrderOfParentAndChild) {
  for (const auto& [kv, bus] : {std::pair("K2", "A"), std::pair("K1", "B"), std::pair("K1", "A")}) {
    r_kv_bus row;
    row.kv_id = kv;
    row.bus_id = bus;
    row.next = -1;
    m_store.Insert(row);
  }
  EXPECT_TRUE(m_model.ReadR_KV_BUSFromFastdb(m_store.Db()));
  tTable<R_KV_BUS>& rows = *m_model.m_rKvBusTable;
  ASSERT_EQ(rows.GetCount(), 3);
  QString order;
  for (int i = 0; i < 3; ++i) order += rows[i].kv_id + rows[i].bus_id + QLatin1Char(' ');
  EXPECT_EQ(order, QStringLiteral("K1A K1B K2A "));
  EXPECT_EQ(rows[0].next, -1);
}

TEST_F(ExchangeTables, ReaderKeepsBothOfTwoRowsWithEqualIdentity) {
  ld row;
  row.id = "L1";
  m_store.Insert(row);
  m_store.Insert(row);
  EXPECT_TRUE(m_model.ReadLDFromFastdb(m_store.Db()));
  EXPECT_EQ(m_model.m_ldTable->GetCount(), 2);
}

TEST_F(ExchangeTables, MergingWriterMakesOneRowOfTwoWithEqualIdentity) {
  ld row;
  row.id = "L1";
  row.ibs = 1;
  m_store.Insert(row);
  row.ibs = 2;
  m_store.Insert(row);
  m_model.ReadLDFromFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_ldTable->GetCount(), 2);
  // The first record finds two rows, removes both and inserts one; the second finds that one and updates it.
  (*m_model.m_ldTable)[0].ibs = 10;
  (*m_model.m_ldTable)[1].ibs = 11;
  EXPECT_TRUE(m_model.WriteLDToFastdb(m_store.Db()));
  EXPECT_EQ(Ids<ld>(), Texts{"L1"});
  EXPECT_EQ(m_store.Values<ld>([](const ld& load) { return int{load.ibs}; }), Numbers{11});
}

TEST_F(ExchangeTables, EmptyTableTakesRecordsWithEqualIdentityEach) {
  LD records[2] = {LD(QStringLiteral("L1")), LD(QStringLiteral("L1"))};
  m_model.m_ldTable->SetData(records, 2, true);
  m_model.WriteLDToFastdb(m_store.Db());
  EXPECT_EQ(Ids<ld>(), (Texts{"L1", "L1"}));
}

TEST_F(ExchangeTables, EmptyIdentityLooksForTheEmptyText) {
  AddLoad("").p = 1;
  AddLoad("L1");
  m_model.WriteLDToFastdb(m_store.Db());
  m_model.m_ldTable->GetPh(0).p = 2;
  m_model.WriteLDToFastdb(m_store.Db());
  EXPECT_EQ(Ids<ld>(), (Texts{"", "L1"}));
  EXPECT_EQ(m_store.Values<ld>([](const ld& row) { return row.p; }), (std::vector<float>{2, 0}));
}

TEST_F(ExchangeTables, NullTextComesBackEmpty) {
  AddLoad("L1").kv = QString();
  m_model.WriteLDToFastdb(m_store.Db());
  m_model.ReadLDFromFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_ldTable->GetCount(), 1);
  EXPECT_TRUE((*m_model.m_ldTable)[0].kv.isEmpty());
  EXPECT_FALSE((*m_model.m_ldTable)[0].kv.isNull());
}

TEST_F(ExchangeTables, KeysOfAnyLengthAreDistinguished) {
  const QString common(5000, QLatin1Char('x'));
  for (const char* end : {"a", "b"}) m_model.m_ldTable->Add(LD(common + QLatin1String(end)));
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 2; ++i) (*m_model.m_ldTable)[i].ibs = 10 * round + i;
    m_model.WriteLDToFastdb(m_store.Db());
  }
  m_model.ReadLDFromFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_ldTable->GetCount(), 2);
  EXPECT_EQ((*m_model.m_ldTable)[0].id, common + QLatin1Char('a'));
  EXPECT_EQ((*m_model.m_ldTable)[1].id, common + QLatin1Char('b'));
  EXPECT_EQ((*m_model.m_ldTable)[0].ibs, 10);
  EXPECT_EQ((*m_model.m_ldTable)[1].ibs, 11);
}

TEST_F(ExchangeTables, TextWithAZeroByteIsNotCutOffSilently) {
  AddLoad("L1").kv = QStringLiteral("ab") + QChar(u'\0') + QLatin1Char('c');
  const MessageCatcher catcher;
  m_model.WriteLDToFastdb(m_store.Db());
  EXPECT_EQ(MessageCatcher::Lines(),
            QStringList{QStringLiteral("a text of the table LD is cut off at its zero byte: \"ab\"")});
}

TEST_F(ExchangeTables, MergingWriterKeepsRowsWhoseRecordHasGone) {
  AddLoad("L1");
  AddLoad("L2");
  m_model.WriteLDToFastdb(m_store.Db());
  m_model.m_ldTable->Remove(0);
  m_model.WriteLDToFastdb(m_store.Db());
  EXPECT_EQ(Ids<ld>(), (Texts{"L1", "L2"}));
}

TEST_F(ExchangeTables, RemovedBreakerStaysInCbWhileItsEndsAndRelationRowsGo) {
  m_model.m_cbTable->Add(CB(QStringLiteral("B1")));
  m_model.m_cb2Table->Add(CB2(QStringLiteral("B1i")));
  m_model.m_cb2Table->Add(CB2(QStringLiteral("B1z")));
  m_model.m_rKvCbTable->Add(R_KV_CB(QStringLiteral("K1"), QStringLiteral("B1")));
  m_model.m_rNdCb2Table->Add(R_ND_CB2(QStringLiteral("N1"), QStringLiteral("B1i")));
  m_model.WriteFastdb(m_store.Db());
  ASSERT_EQ(m_store.Count<cb2>(), 2);

  m_model.m_cbTable->Clear();
  m_model.m_cb2Table->Clear();
  m_model.m_rKvCbTable->Clear();
  m_model.m_rNdCb2Table->Clear();
  m_model.WriteFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<cb>(), 1);
  EXPECT_EQ(m_store.Count<cb2>(), 0);
  EXPECT_EQ(m_store.Count<r_kv_cb>(), 0);
  EXPECT_EQ(m_store.Count<r_nd_cb2>(), 0);
}

// Kept: K05.
TEST_F(ExchangeTables, BslLosesSurplusRowsAndBsDoesNot) {
  AddNumbered(*m_model.m_bslTable, 5);
  AddNumbered(*m_model.m_bsTable, 5);
  m_model.WriteFastdb(m_store.Db());
  for (int removed : {4, 3}) {
    m_model.m_bslTable->Remove(removed);
    m_model.m_bsTable->Remove(removed);
  }
  m_model.WriteFastdb(m_store.Db());
  EXPECT_EQ(NumberedIds<bsl>(), (Numbers{0, 1, 2}));
  EXPECT_EQ(NumberedIds<bs>(), (Numbers{0, 1, 2, 3, 4}));
}

TEST_F(ExchangeTables, EmptyBslTableRemovesAllRows) {
  AddNumbered(*m_model.m_bslTable, 3);
  m_model.WriteBSLToFastdb(m_store.Db());
  m_model.m_bslTable->Clear();
  m_model.WriteBSLToFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<bsl>(), 0);
}

TEST_F(ExchangeTables, PurgeOfBslGoesByTheNumberOfEntriesAlsoInAnEmptyTable) {
  // Three entries numbered from 1: the one with number 3 is inserted and at once removed.
  for (int i = 1; i <= 3; ++i) m_model.m_bslTable->Add(BSL(i));
  m_model.WriteBSLToFastdb(m_store.Db());
  EXPECT_EQ(NumberedIds<bsl>(), (Numbers{1, 2}));
}

// Kept: K04.
TEST_F(ExchangeTables, NewAnalogRowBearsTheNameAsIdentityAndNoName) {
  m_model.m_analogTable->Add(Point("P1", "first"));
  m_model.WriteANALOGToFastdb(m_store.Db());
  EXPECT_EQ(Ids<analog>(), Texts{"first"});
  m_store.ForEachRow<analog>("", [](const analog& row) { EXPECT_STREQ(row.name != nullptr ? row.name : "", ""); });

  m_model.m_analogTable->Add(Point("P2", "second"));  // no longer an empty table, but no row of this identity
  m_model.m_analogTable->Remove(0);
  m_model.WriteANALOGToFastdb(m_store.Db());
  EXPECT_EQ(Ids<analog>(), (Texts{"first", "second"}));
}

// Kept: K04.
TEST_F(ExchangeTables, AnalogRecordWithAnotherNameIsInsertedOnceMoreAtEachWrite) {
  m_model.m_analogTable->Add(Point("P1", "other"));
  for (int i = 0; i < 3; ++i) m_model.WriteANALOGToFastdb(m_store.Db());
  EXPECT_EQ(Ids<analog>(), (Texts{"other", "other", "other"}));
}

TEST_F(ExchangeTables, UpdateOfAnAnalogRowSetsTheNameAndNotTheIdentity) {
  analog row;
  row.id = "P1";
  row.name = "old";
  m_store.Insert(row);
  ANALOG point = Point("P1", "new");
  point.value = 3;
  m_model.m_analogTable->Add(point);
  m_model.WriteANALOGToFastdb(m_store.Db());
  EXPECT_EQ(Ids<analog>(), Texts{"P1"});
  m_store.ForEachRow<analog>("", [](const analog& updated) {
    EXPECT_STREQ(updated.name, "new");
    EXPECT_EQ(updated.value, 3);
  });
}

TEST_F(ExchangeTables, SignedByteIsSignExtendedAndUnsignedByteIsNot) {
  STATUS point(QStringLiteral("S1"));
  point.value = -2;
  point.quality = 200;
  m_model.m_statusTable->Add(point);
  m_model.WriteSTATUSToFastdb(m_store.Db());
  m_store.ForEachRow<status>("", [](const status& row) {
    EXPECT_EQ(row.value, -2);
    EXPECT_EQ(row.quality, 200);
  });
}

TEST_F(ExchangeTables, ReaderTakesTheLowByteOfAOneByteColumn) {
  status row;
  row.id = "S1";
  row.value = 0x1FE;
  row.quality = 0x7FFFFF03;
  m_store.Insert(row);
  m_model.ReadSTATUSFromFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_statusTable->GetCount(), 1);
  EXPECT_EQ((*m_model.m_statusTable)[0].value, -2);
  EXPECT_EQ((*m_model.m_statusTable)[0].quality, 3);
}

TEST_F(ExchangeTables, NumberedTableIsMergedByNumber) {
  AddNumbered(*m_model.m_islandTable, 2);
  m_model.WriteISLANDToFastdb(m_store.Db());
  (*m_model.m_islandTable)[1].ref_ibs = 7;
  m_model.m_islandTable->Add(ISLAND(2));
  m_model.WriteISLANDToFastdb(m_store.Db());
  EXPECT_EQ(NumberedIds<island>(), (Numbers{0, 1, 2}));
  EXPECT_EQ(m_store.Values<island>([](const island& row) { return int{row.ref_ibs}; }),
            (Numbers{ISLAND().ref_ibs, 7, ISLAND().ref_ibs}));
}

// What the topology's writers are made of

TEST_F(ExchangeTables, MergeRowsUpdatesOnlyTheGivenColumnsAndInsertsWholeRows) {
  LD& load = AddLoad("L1");
  load.ibs = 1;
  load.p = 1;
  m_model.WriteLDToFastdb(m_store.Db());
  load.ibs = 2;
  load.p = 2;
  AddLoad("L2").p = 5;
  MergeRows(m_store.Db(), *m_model.m_ldTable, &LD::ibs, &LD::status);
  EXPECT_EQ(m_store.Values<ld>([](const ld& row) { return int{row.ibs}; }), (Numbers{2, LD().ibs}));
  EXPECT_EQ(m_store.Values<ld>([](const ld& row) { return row.p; }), (std::vector<float>{1, 5}));
}

TEST_F(ExchangeTables, UpdateMakesNoRowAndPassesOverDoubledOnes) {
  ld row;
  row.id = "double";
  m_store.Insert(row);
  m_store.Insert(row);
  row.id = "single";
  m_store.Insert(row);
  for (const char* id : {"double", "missing", "single"}) AddLoad(id).ibs = 4;
  TwinWriter<LD> writer(m_store.Db());
  for (int i = 0; i < 3; ++i) writer.Update((*m_model.m_ldTable)[i], &LD::ibs);
  EXPECT_EQ(Ids<ld>(), (Texts{"double", "double", "single"}));
  EXPECT_EQ(m_store.Values<ld>([](const ld& load) { return int{load.ibs}; }), (Numbers{0, 0, 4}));
}

TEST_F(ExchangeTables, RowsBeyondTheTableAreRemoved) {
  AddNumbered(*m_model.m_bsTable, 40);
  m_model.WriteBSToFastdb(m_store.Db());
  m_model.m_bsTable->Clear();
  AddNumbered(*m_model.m_bsTable, 30);
  RemoveRowsBeyond(m_store.Db(), *m_model.m_bsTable);
  EXPECT_EQ(m_store.Count<bs>(), 30);
  EXPECT_EQ(NumberedIds<bs>().back(), 29);
}

}  // namespace
}  // namespace dtsdb::test
