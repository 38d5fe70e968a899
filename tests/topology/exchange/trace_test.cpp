// Component states from outside: the trace that other programs write, whole states, and position indications.
//
//     A220  D a 2 ---[B]--- c 2 U            a 2 ====L==== 3 b      island 0: 2 3
//                                            c 2 ====M==== 3 b  B220

#include <gtest/gtest.h>

#include "tests/support/realtime_store.h"
#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

class Trace : public TopologyTest {
 protected:
  Trace() {
    m.Station("A").Kv("A220").Station("B").Kv("B220");
    m.Load("D", "A220", "a").Unit("U", "A220", "c").Breaker("B", "A220", "a", "c");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b").Line("M", "DV", "A", "B", "A220", "B220", "c", "b");
    Run();
    m.Db().m_globalTable->GetPh(0).time = 1000;  // of the last run
  }

  /// Adds a row as another program does.
  void Write(int id, const char* name, int type, int status, unsigned time) {
    tptrace row;
    row.id = id;
    row.name = name;
    row.type = static_cast<nat1>(type);
    row.status = static_cast<nat1>(status);
    row.time = time;
    m_store.Insert(row);
  }
  int Read() {
    m_store.Db()->commit();
    const int result = tp.tpReadTptrace(m_store.Db());
    m_store.Db()->commit();
    return result;
  }
  tTable<TPTRACE>& Waiting() { return *m.Db().m_tptraceTable; }
  /// The ids of the waiting rows.
  std::vector<int> Ids() {
    std::vector<int> ids;
    ids.reserve(static_cast<std::size_t>(Waiting().GetCount()));
    for (int i = 0; i < Waiting().GetCount(); ++i) ids.push_back(Waiting()[i].id);
    return ids;
  }
  bool IsOpen(const char* breaker) { return m.Of<CB>(breaker).flags & CB_OPEN; }

  RealtimeStore m_store;
};

TEST_F(Trace, RowOfARequestHoldsWhatWasAskedFor) {
  ASSERT_EQ(tp.tpSetCompStatus("L", 5, false), 1);
  ASSERT_EQ(tp.tpSetCompStatus("L", 5, true), 1);
  ASSERT_EQ(Waiting().GetCount(), 2);
  const TPTRACE& out = Waiting()[0];
  EXPECT_EQ(out.id, 0);
  EXPECT_EQ(out.name, Id("L"));
  EXPECT_EQ(out.type, 5);
  EXPECT_EQ(out.n1, m.Number<LN>("L"));
  EXPECT_EQ(out.status, 0);
  EXPECT_GT(out.time, 1000U);
  EXPECT_EQ(Waiting()[1].id, 1);
  EXPECT_EQ(Waiting()[1].status, 1);
}

TEST_F(Trace, TypesOutOfRangeAreRefusedWithoutAWord) {
  const auto printed = Printed([&] {
    for (const int type : {0, 17, -1, 1000, 256 + 1}) EXPECT_EQ(tp.tpSetCompStatus("L", type, false), 0);
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(Waiting().GetCount(), 0);
  EXPECT_EQ(m.Of<LN>("L").status, 0U);
}

// Kept: K42.
TEST_F(Trace, SwitchingOnWhatIsOnLeavesARow) {
  EXPECT_EQ(tp.tpSetCompStatus("L", 5, true), 1);
  EXPECT_EQ(Waiting().GetCount(), 1);
  ASSERT_EQ(tp.tpSetCompStatus("M", 5, false), 1);
  EXPECT_EQ(tp.tpSetCompStatus("M", 5, false), 0) << "off already";
  EXPECT_EQ(Waiting().GetCount(), 2);
}

// Kept: K44.
TEST_F(Trace, RefusedRowIsTakenForAddedAllTheSame) {
  m.Put(TPTRACE(0)).Put(TPTRACE(2));
  EXPECT_EQ(tp.tpSetCompStatus("L", 5, false), 1);
  EXPECT_EQ(Waiting().GetCount(), 2);
  EXPECT_EQ(m.Of<LN>("L").status, 4U);
}

TEST_F(Trace, SecondIsPartOfTheSelectionAndWhatLiesBeforeIsNot) {
  Write(1, "L", 5, 0, 999);
  Write(2, "M", 5, 0, 1000);
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(Ids(), (std::vector{2}));
  EXPECT_EQ(m.Of<LN>("L").status, 0U);
  EXPECT_EQ(m.Of<LN>("M").status, 4U);
  EXPECT_EQ(Waiting()[0].n1, m.Number<LN>("M"));
  EXPECT_EQ(Waiting()[0].time, 1000U);
}

TEST_F(Trace, LaterOfTheTwoTimesCounts) {
  m.Db().m_globalTable->GetPh(0).u1 = 2000;
  Write(1, "L", 5, 0, 1500);
  Write(2, "M", 5, 0, 2000);
  Read();
  EXPECT_EQ(Ids(), (std::vector{2}));
}

TEST_F(Trace, TimesAreComparedWithoutSign) {
  m.Db().m_globalTable->GetPh(0).time = 0x80000000U;
  m.Db().m_globalTable->GetPh(0).u1 = 5;
  Write(1, "L", 5, 0, 1000);
  Write(2, "M", 5, 0, 0x80000000U);
  Read();
  EXPECT_EQ(Ids(), (std::vector{2}));
}

// Kept: K46.
TEST_F(Trace, EmptySelectionLeavesEarlierRowsAndAnyOtherReplacesThem) {
  ASSERT_EQ(tp.tpSetCompStatus("M", 5, false), 1);
  Write(7, "L", 5, 0, 999);
  Read();
  EXPECT_EQ(Ids(), (std::vector{0}));
  Write(8, "L", 5, 0, 1001);
  Read();
  EXPECT_EQ(Ids(), (std::vector{8}));
}

TEST_F(Trace, LastRowOfABreakerHoldsAndAllRowsStay) {
  Write(1, "B", 1, 1, 1000);
  Write(2, "B", 1, 0, 1001);
  Read();
  EXPECT_EQ(Ids(), (std::vector{1, 2}));
  EXPECT_TRUE(IsOpen("B"));
  Write(3, "B", 1, 7, 1001);
  Read();
  EXPECT_EQ(Ids(), (std::vector{1, 2, 3}));
  EXPECT_FALSE(IsOpen("B")) << "any number but 0 closes";
}

TEST_F(Trace, RowsAreAppliedAsTheyWereInsertedAndStandInTheOrderOfTheirNumbers) {
  Write(9, "B", 1, 1, 1001);
  Write(4, "B", 1, 0, 1000);
  Read();
  EXPECT_EQ(Ids(), (std::vector{4, 9}));
  EXPECT_TRUE(IsOpen("B")) << "whatever their numbers and times";
}

TEST_F(Trace, OpeningInARingIsFollowedUpToo) {
  Write(1, "B", 1, 0, 1000);
  Write(2, "B", 1, 0, 1000);
  Read();
  EXPECT_EQ(Waiting()[0].n1, m.Number<CB>("B"));
  EXPECT_EQ(Waiting()[1].n1, m.Number<CB>("B")) << "no look at what the state was";
}

TEST_F(Trace, UnknownNameGivesAWarningAndARowThatIsPassedOver) {
  Write(1, "x", 1, 0, 1000);
  Write(2, "y", 5, 1, 1000);
  const MessageCatcher catcher;
  EXPECT_EQ(Read(), 1);
  ASSERT_EQ(MessageCatcher::Lines().size(), 2);
  EXPECT_TRUE(MessageCatcher::Lines()[0].contains(QLatin1String("nPh >= 0 && nPh < m_size")));
  EXPECT_EQ(Waiting()[0].n1, -1);
  EXPECT_EQ(Waiting()[1].n1, -1);
  EXPECT_FALSE(IsOpen("B"));
  EXPECT_EQ(tp.tpChange(), 1);
  EXPECT_EQ(tp.getChangedKVCount(), 0);
}

TEST_F(Trace, UnknownTypeKeepsNumberNought) {
  Write(1, "B", 17, 0, 1000);
  Write(2, "B", 0, 0, 1000);
  Read();
  ASSERT_EQ(Waiting().GetCount(), 2);
  EXPECT_EQ(Waiting()[0].n1, 0);
  EXPECT_EQ(Waiting()[1].n1, 0);
  EXPECT_EQ(tp.tpChange(), 1);
  EXPECT_EQ(tp.getChangedKVCount(), 0);
}

TEST_F(Trace, RowsOfEveryTypeReachTheirBit) {
  m.Put(DLN(Id("K")));
  Write(1, "D", 3, 0, 1000);
  Write(2, "U", 2, 0, 1000);
  Write(3, "L", 9, 0, 1000);
  Write(4, "M", 10, 0, 1000);
  Write(5, "K", 8, 0, 1000);
  Write(6, "K", 12, 0, 1000);
  Read();
  EXPECT_EQ(m.Of<LD>("D").status, SHUNT_OFF);
  EXPECT_EQ(m.Of<UN>("U").status, SHUNT_OFF);
  EXPECT_EQ(m.Of<LN>("L").status, 1U);
  EXPECT_EQ(m.Of<LN>("M").status, 2U);
  EXPECT_EQ(m.Of<DLN>("K").status, 6U);
}

TEST_F(Trace, ChangeFollowsWhatWasRead) {
  Write(1, "B", 1, 0, 1000);
  Read();
  ASSERT_EQ(tp.tpChange(), 1);
  EXPECT_EQ(SectionOf("a"), 2);
  EXPECT_EQ(SectionOf("c"), 5);
  EXPECT_EQ(Waiting().GetCount(), 0);
  EXPECT_GT(m.Db().m_globalTable->GetPh(0).u1, 1000U);
}

TEST_F(Trace, IdentitiesAreRawBytes) {
  m.Put(CB(Id("联络")));
  Write(1, IdToBytes(Id("联络")).constData(), 1, 0, 1000);
  Read();
  EXPECT_EQ(Waiting()[0].n1, m.Number<CB>("联络"));
  EXPECT_TRUE(IsOpen("联络"));
}

// Position indications

class Indications : public Trace {
 protected:
  /// Gives the breaker the indication "P" with `value`.
  void Indicate(int value) {
    STATUS point(Id("P"));
    point.value = static_cast<i8>(value);
    m.Put(point);
    m.Of<CB>("B").istatus = m.Number<STATUS>("P");
  }
};

TEST_F(Indications, OneClosesAndTwoOpens) {
  Indicate(2);
  EXPECT_EQ(tp.tpRefreshCB(), 1);
  EXPECT_TRUE(IsOpen("B"));
  m.Of<STATUS>("P").value = 1;
  EXPECT_EQ(tp.tpRefreshCB(), 1);
  EXPECT_FALSE(IsOpen("B"));
  EXPECT_EQ(Waiting().GetCount(), 0);
}

TEST_F(Indications, OtherValuesAndNoIndicationLeaveTheBreakerAlone) {
  Indicate(0);
  Open("B");
  for (const int value : {0, 3, -1, 127}) {
    m.Of<STATUS>("P").value = static_cast<i8>(value);
    tp.tpRefreshCB();
    EXPECT_TRUE(IsOpen("B")) << value;
  }
  m.Of<STATUS>("P").value = 1;
  m.Of<CB>("B").istatus = -1;
  tp.tpRefreshCB();
  EXPECT_TRUE(IsOpen("B"));
}

TEST_F(Indications, AreReadFromTheirRows) {
  Indicate(1);
  status row;
  row.id = "P";
  row.value = 2;
  m_store.Insert(row);
  m_store.Db()->commit();
  EXPECT_EQ(tp.tpReadStatus(m_store.Db()), 1);
  EXPECT_EQ(m.Of<STATUS>("P").value, 2);
  EXPECT_TRUE(IsOpen("B"));
}

TEST_F(Indications, WithoutExactlyOneRowKeepTheirValue) {
  Indicate(1);
  tp.tpReadStatus(m_store.Db());
  EXPECT_EQ(m.Of<STATUS>("P").value, 1);
  m_store.Db()->commit();
  status row;
  row.id = "P";
  row.value = 2;
  m_store.Insert(row);
  m_store.Insert(row);
  m_store.Db()->commit();
  tp.tpReadStatus(m_store.Db());
  EXPECT_EQ(m.Of<STATUS>("P").value, 1);
  EXPECT_FALSE(IsOpen("B"));
}

// Whole states

class States : public Trace {
 protected:
  void WriteLine(const char* id, unsigned status) {
    ln row;
    row.id = id;
    row.status = status;
    m_store.Insert(row);
  }
};

TEST_F(States, TakeTheSwitchedBitsOfEachRowAndNoOthers) {
  m.Of<LN>("L").status = 64 | 2;
  WriteLine("L", 4 | 1 | 128);
  WriteLine("M", 0);
  m.Of<LN>("M").status = 4;
  m_store.Db()->commit();
  EXPECT_EQ(tp.tpReadStatus(m_store.Db()), 1);
  EXPECT_EQ(m.Of<LN>("L").status, 64U | 4 | 1);
  EXPECT_EQ(m.Of<LN>("M").status, 0U);
  EXPECT_EQ(Waiting().GetCount(), 0) << "nothing for an incremental run";
}

// Kept: K47.
TEST_F(States, TablesOfAnotherLengthArePassedOver) {
  WriteLine("L", 4);
  m_store.Db()->commit();
  EXPECT_EQ(tp.tpReadStatus(m_store.Db()), 1);
  EXPECT_EQ(m.Of<LN>("L").status, 0U);
  m_store.Db()->commit();
  WriteLine("M", 4);
  WriteLine("N", 4);
  m_store.Db()->commit();
  tp.tpReadStatus(m_store.Db());
  EXPECT_EQ(m.Of<LN>("L").status, 0U);
}

// Kept: K47.
TEST_F(States, RowsAreTakenByPlaceAndNotByIdentity) {
  WriteLine("x", 4);
  WriteLine("y", 2);
  m_store.Db()->commit();
  tp.tpReadStatus(m_store.Db());
  EXPECT_EQ(m.Of<LN>("L").status, 4U);
  EXPECT_EQ(m.Of<LN>("M").status, 2U);
}

TEST_F(States, OfUnitsAndLoadsAreTheSwitchAlone) {
  un unit;
  unit.id = "U";
  unit.status = 1 | 4 | 16;
  m_store.Insert(unit);
  ld load;
  load.id = "D";
  load.status = 4;
  m_store.Insert(load);
  m_store.Db()->commit();
  m.Of<LD>("D").status = SHUNT_OFF;
  tp.tpReadStatus(m_store.Db());
  EXPECT_EQ(m.Of<UN>("U").status, SHUNT_OFF);
  EXPECT_EQ(m.Of<LD>("D").status, 0U);
}

}  // namespace
}  // namespace dtsdb::test
