// What is read from the realtime database, how it becomes injections and sets, and what is written back.

#include <gtest/gtest.h>

#include <cstring>

#include "model/record_bits.h"
#include "tests/breakerflow/cbflow_probe.h"
#include "tests/support/messages.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {
namespace {

class BreakerFlowData : public ::testing::Test {
 protected:
  /// Stores a breaker of section `ibs`. Nodes are named after their numbers.
  void Breaker(const char* id, int from, int to, nat4 flags = 1, nat4 tpStatus = 0, int ibs = 2) {
    const QByteArray nd = 'N' + QByteArray::number(from);
    const QByteArray znd = 'N' + QByteArray::number(to);
    cb row;
    row.id = id;
    row.nd = nd.constData();
    row.znd = znd.constData();
    row.ind = from;
    row.iznd = to;
    row.flags = flags;
    row.tp_status = tpStatus;
    row.ibs = ibs;
    m_store.Insert(row);
  }

  void Section(int id, double v, double a) {
    bs row;
    row.id = id;
    row.v = v;
    row.a = a;
    m_store.Insert(row);
  }

  template <class Row>
  void Shunt(const char* id, int nd, float p, float q, nat4 tpStatus = 0) {
    Row row;
    row.id = id;
    row.nd = "of the device";
    row.ind = nd;
    row.p = p;
    row.q = q;
    row.tp_status = tpStatus;
    m_store.Insert(row);
  }

  /// Stores a branch with p 1, q 2 at its from end and zp 30, zq 40 at its to end.
  template <class Row>
  void Branch(const char* id, int from, int to, int Row::*end1, int number1, int Row::*end2, int number2,
              nat4 tpStatus = 0) {
    Row row;
    row.id = id;
    row.nd = "from";
    row.znd = "to";
    row.ind = from;
    row.iznd = to;
    row.*end1 = number1;
    row.*end2 = number2;
    row.p = 1;
    row.q = 2;
    row.zp = 30;
    row.zq = 40;
    row.tp_status = tpStatus;
    m_store.Insert(row);
  }

  void Load() {
    m_store.Db()->commit();
    m_flow.loadData();
  }

  /// The stored flow and class of a breaker: p, q and the three bits.
  struct Stored {
    float p;
    float q;
    nat4 tpStatus;
    bool operator==(const Stored&) const = default;
  };
  std::vector<Stored> Flows() {
    return m_store.Values<cb>([](const cb& row) { return Stored{row.p, row.q, row.tp_status}; });
  }

  RealtimeStore m_store;
  cbFlow m_flow{m_store.Db()};
  CbFlowProbe m_probe{m_flow};
};

TEST(BreakerFlowTolerance, IsAHundredthByDefault) {
  const cbFlow flow(nullptr);
  const float delta = flow.getDelta();
  u32 bits = 0;
  static_assert(sizeof bits == sizeof delta);
  std::memcpy(&bits, &delta, sizeof bits);
  EXPECT_EQ(bits, 0x3C23D70AU);
}

TEST(BreakerFlowTolerance, CountsWithoutItsSign) {
  cbFlow flow(nullptr, -0.25F);
  EXPECT_EQ(flow.getDelta(), 0.25F);
  flow.setDelta(-0.5F);
  EXPECT_EQ(flow.getDelta(), 0.5F);
}

TEST_F(BreakerFlowData, BreakersAreNumberedInTheOrderOfTheirIdentities) {
  Breaker("b", 3, 4);
  Breaker("a", 1, 2);
  Breaker("\xC1\xA6", 5, 6);  // behind all ASCII
  Load();
  ASSERT_EQ(m_flow.Breakers().size(), 3);
  const cbBreaker& first = m_flow.Breakers()[0];
  EXPECT_EQ(first.id, QStringLiteral("a"));
  EXPECT_EQ(first.nd, QStringLiteral("N1"));
  EXPECT_EQ(first.znd, QStringLiteral("N2"));
  EXPECT_EQ(first.ind, 1);
  EXPECT_EQ(first.iznd, 2);
  EXPECT_EQ(first.flags, 0U);
  EXPECT_EQ(m_flow.Breakers()[1].id, QStringLiteral("b"));
  EXPECT_EQ(m_flow.Breakers()[2].id, QString::fromLatin1("\xC1\xA6"));
  EXPECT_EQ(m_flow.Nodes().keys(), (QList<int>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(m_flow.Nodes()[4].name, QStringLiteral("N4"));
}

TEST_F(BreakerFlowData, AnOpenBreakerIsKnownButJoinsNothing) {
  Breaker("open", 1, 2, 1 | CB_OPEN);
  Breaker("shut", 2, 3);
  Load();
  const cbBreaker& open = m_flow.Breakers()[0];
  EXPECT_TRUE(open.open);
  EXPECT_TRUE(open.zopen);
  EXPECT_FALSE(m_flow.Breakers()[1].open);
  EXPECT_FALSE(m_flow.Breakers()[1].zopen);
  EXPECT_EQ(m_flow.Nodes().keys(), (QList<int>{2, 3}));
  EXPECT_EQ(m_probe.BreakersOfNode(), (QMap<int, QList<int>>{{2, {1}}, {3, {1}}}));
}

TEST_F(BreakerFlowData, StoringAnOpenBreakerWritesZeroAndClearsItsClass) {
  Breaker("open", 1, 2, 1 | CB_OPEN, 3 | TP_FLOW_LOOP | TP_FLOW_BRIDGE | TP_FLOW_RADIAL);
  m_store.Db()->commit();
  m_store.Change<cb>([](cb& row) { row.p = row.q = 7; });
  Load();
  m_flow.calculate();
  m_flow.storeData();
  EXPECT_EQ(Flows(), (std::vector<Stored>{{0, 0, 3}}));
}

TEST_F(BreakerFlowData, ABreakerWithBothSidesDeadCountsAsOpen) {
  Breaker("dead", 1, 2, 1, TP_BOTH_DEAD);
  Breaker("half", 2, 3, 1, TP_END1_ISOLATED | TP_END2_ISOLATED);
  Load();
  EXPECT_TRUE(m_flow.Breakers()[0].open);
  EXPECT_FALSE(m_flow.Breakers()[1].open);
}

TEST_F(BreakerFlowData, NodesHaveTheVoltageOfTheBreakersSectionInRadians) {
  Section(2, 220, 90);
  Section(3, 110, -180);
  Breaker("a", 1, 2, 1, 0, 2);
  Breaker("b", 2, 3, 1, 0, 3);
  Load();
  EXPECT_EQ(m_flow.Nodes()[1].v, 220);
  EXPECT_EQ(m_flow.Nodes()[1].a, static_cast<float>(3.1415926 * 90 / 180.0));
  EXPECT_EQ(m_flow.Nodes()[2].v, 220) << "the first breaker counts";
  EXPECT_EQ(m_flow.Nodes()[3].v, 110);
  EXPECT_EQ(m_flow.Nodes()[3].a, static_cast<float>(-3.1415926));
}

// Kept: K58.
TEST_F(BreakerFlowData, WithoutOneSectionTheVoltageOfTheBreakerBeforeStays) {
  Section(2, 220, 0);
  Section(3, 1, 1);
  Section(3, 2, 2);  // two of this number: neither counts
  Breaker("a", 1, 2, 1, 0, 9);
  Breaker("b", 3, 4, 1, 0, 2);
  Breaker("c", 5, 6, 1, 0, 3);
  Breaker("d", 7, 8, 1, 0, 9);
  Load();
  EXPECT_EQ(m_flow.Nodes()[1].v, 0) << "none yet";
  EXPECT_EQ(m_flow.Nodes()[3].v, 220);
  EXPECT_EQ(m_flow.Nodes()[5].v, 220);
  EXPECT_EQ(m_flow.Nodes()[7].v, 220);
}

TEST_F(BreakerFlowData, UnitsFeedAndLoadsAndShuntsDraw) {
  Breaker("b", 1, 2);
  Shunt<un>("u", 1, 10, 20);
  Shunt<ld>("l", 1, 1, 2);
  Shunt<cp>("c", 2, 3, 4);
  Load();
  m_probe.NodeInject();
  EXPECT_EQ(m_flow.Nodes()[1].p, 9);
  EXPECT_EQ(m_flow.Nodes()[1].q, 18);
  EXPECT_EQ(m_flow.Nodes()[2].p, -3);
  EXPECT_EQ(m_flow.Nodes()[2].q, -4);
  EXPECT_EQ(m_probe.Units()[0].nd, QStringLiteral("of the device"));
  EXPECT_EQ(m_probe.Loads()[0].id, QStringLiteral("l"));
}

TEST_F(BreakerFlowData, InjectionsAreSummedAnewEachTime) {
  Breaker("b", 1, 2);
  Shunt<un>("u", 1, 10, 20);
  Load();
  m_probe.NodeInject();
  m_probe.NodeInject();
  EXPECT_EQ(m_flow.Nodes()[1].p, 10);
}

TEST_F(BreakerFlowData, DeadDevicesAndBranchesAreNotLoaded) {
  Breaker("b", 1, 2);
  Shunt<un>("u", 1, 10, 20, SHUNT_DEAD);
  Shunt<ld>("l", 1, 10, 20, SHUNT_DEAD);
  Shunt<cp>("c", 1, 10, 20, SHUNT_DEAD);
  Shunt<un>("v", 2, 5, 6);
  Branch<ln>("ln", 1, 2, &ln::ln2, 0, &ln::zln2, 1, TP_BOTH_DEAD);
  Branch<xf>("xf", 1, 2, &xf::xf2, 0, &xf::zxf2, 1, TP_BOTH_DEAD);
  Branch<dln>("dln", 1, 2, &dln::dln2, 0, &dln::zdln2, 1, TP_BOTH_DEAD);
  Load();
  ASSERT_EQ(m_probe.Units().size(), 1);
  EXPECT_EQ(m_probe.Units()[0].id, QStringLiteral("v")) << "keys count what is stored";
  EXPECT_TRUE(m_probe.Loads().isEmpty());
  EXPECT_TRUE(m_probe.Caps().isEmpty());
  EXPECT_TRUE(m_probe.Lines().isEmpty());
  EXPECT_TRUE(m_probe.Windings().isEmpty());
  EXPECT_TRUE(m_probe.DcLines().isEmpty());
}

TEST_F(BreakerFlowData, ADeviceOnANodeWithoutAClosedLiveBreakerIsNotLoaded) {
  Breaker("b", 1, 2);
  Breaker("open", 3, 4, 1 | CB_OPEN);
  Shunt<un>("u", 3, 10, 20);
  Shunt<ld>("l", 5, 10, 20);
  Branch<ln>("ln", 4, 6, &ln::ln2, 0, &ln::zln2, 1);
  Load();
  m_flow.calculate();
  EXPECT_TRUE(m_probe.Units().isEmpty());
  EXPECT_TRUE(m_probe.Loads().isEmpty());
  EXPECT_TRUE(m_probe.Lines().isEmpty());
  EXPECT_EQ(m_flow.Nodes()[1].p + m_flow.Nodes()[2].p, 0);
}

TEST_F(BreakerFlowData, OfABranchOnlyTheFromEndChangesItsSign) {
  Breaker("b", 1, 2);
  Branch<ln>("ln", 1, 2, &ln::ln2, 40, &ln::zln2, 41);
  Branch<xf>("xf", 1, 9, &xf::xf2, 50, &xf::zxf2, 51);
  Branch<dln>("dln", 9, 2, &dln::dln2, 60, &dln::zdln2, 61);
  Load();
  ASSERT_EQ(m_probe.Lines().keys(), (QList<int>{40, 41})) << "keyed by the end records";
  const cbDevice& from = m_probe.Lines()[40];
  EXPECT_EQ(from.p, -1);
  EXPECT_EQ(from.q, -2);
  EXPECT_FALSE(from.zend);
  EXPECT_EQ(from.ind, 1);
  EXPECT_EQ(from.id, QStringLiteral("ln"));
  EXPECT_EQ(from.nd, QStringLiteral("from"));
  const cbDevice& to = m_probe.Lines()[41];
  EXPECT_EQ(to.p, 30);
  EXPECT_EQ(to.q, 40);
  EXPECT_TRUE(to.zend);
  EXPECT_EQ(to.ind, 2);
  EXPECT_EQ(to.id, QStringLiteral("ln"));
  EXPECT_EQ(to.nd, QStringLiteral("to"));
  EXPECT_EQ(m_probe.Windings().keys(), QList<int>{50}) << "the other end stands on no closed breaker";
  EXPECT_EQ(m_probe.DcLines().keys(), QList<int>{61});
  m_probe.NodeInject();
  EXPECT_EQ(m_flow.Nodes()[1].p, -2);
  EXPECT_EQ(m_flow.Nodes()[2].q, 80);
}

TEST_F(BreakerFlowData, OfTwoEndsWithOneKeyTheLaterStays) {
  Breaker("b", 1, 2);
  Branch<ln>("a", 1, 9, &ln::ln2, 5, &ln::zln2, 6);
  Branch<ln>("b", 2, 9, &ln::ln2, 5, &ln::zln2, 6);
  Load();
  ASSERT_EQ(m_probe.Lines().size(), 1);
  EXPECT_EQ(m_probe.Lines()[5].id, QStringLiteral("b"));
}

TEST_F(BreakerFlowData, LoadingForgetsWhatWasThereAndEndsTheTransaction) {
  Breaker("b", 1, 2);
  Breaker("c", 1, 2);
  Shunt<un>("u", 1, 10, 20);
  Load();
  m_flow.calculate();
  m_store.Change<cb>([](cb& row) { row.flags |= CB_OPEN; });
  m_flow.loadData();
  EXPECT_EQ(m_flow.Breakers().size(), 2);
  EXPECT_TRUE(m_flow.Nodes().isEmpty());
  EXPECT_TRUE(m_probe.Units().isEmpty());
  EXPECT_TRUE(m_probe.Groups().isEmpty());
  EXPECT_EQ(m_flow.SetCount(), 0);
}

TEST_F(BreakerFlowData, SetsAreNumberedByTheirLeastNodeAndListedAsVisited) {
  //  5 - 1 - 2,  1 - 4,  3 - 6
  Breaker("a", 1, 2);
  Breaker("b", 3, 6);
  Breaker("c", 5, 1);
  Breaker("d", 1, 4);
  Load();
  m_probe.Frombs();
  // The node reached last is visited first.
  EXPECT_EQ(m_probe.NodesOfSet(), (QMap<int, QList<int>>{{0, {1, 4, 5, 2}}, {1, {3, 6}}}));
  EXPECT_EQ(m_probe.BreakersOfSet(), (QMap<int, QList<int>>{{0, {0, 2, 3}}, {1, {1}}}));
  EXPECT_EQ(m_flow.Nodes()[6].bs, 1);
  EXPECT_EQ(m_probe.ValidSets(), (QMap<int, int>{{0, 0}, {1, 0}}));
  EXPECT_EQ(m_probe.GroupsOfSet(), (QMap<int, QList<int>>{{0, {}}, {1, {}}}));
}

// Kept: K56.
TEST_F(BreakerFlowData, TheBalanceTestLooksForSurplusOnly) {
  struct Case {
    float p;
    float q;
    bool valid;
  };
  for (const Case& test : {Case{-100.0F, 0, true}, Case{0.5F, 0, true}, Case{1.5F, 0, false}, Case{0, 0.5F, true},
                           Case{0, 1.5F, false}, Case{-100.0F, 1.5F, false}, Case{0, 0, true}}) {
    m_probe.Clear();
    m_flow.setDelta(0.5F);
    m_probe.Nodes()[1].p = test.p;
    m_probe.Nodes()[1].q = test.q;
    m_probe.NodesOfSet()[0] = {1};
    m_probe.Valid();
    EXPECT_EQ(m_flow.IsBalanced(0), test.valid) << test.p << ", " << test.q;
  }
}

TEST_F(BreakerFlowData, FlowsAndClassesAreStoredAndTheRestStays) {
  //  1 - 2 = 3 - 4: a radial, a pair, a bridge between pairs
  Breaker("a", 1, 2, 1, 3 | TP_FLOW_LOOP);
  Breaker("b", 2, 3);
  Breaker("c", 2, 3);
  Breaker("d", 3, 4, 1, TP_FLOW_RADIAL);
  Breaker("e", 4, 5);
  Breaker("f", 4, 5);
  Section(2, 220, 10);
  Shunt<un>("u", 1, 10, 4);
  Shunt<ld>("l", 5, 10, 4);
  Load();
  m_flow.calculate();
  m_flow.storeData();
  m_store.Db()->rollback();  // what was committed stays
  const std::vector<Stored> flows = Flows();
  ASSERT_EQ(flows.size(), 6U);
  EXPECT_EQ(flows[0], (Stored{10, 4, 3 | TP_FLOW_RADIAL}));
  EXPECT_NEAR(flows[1].p, 5, 1e-4);
  EXPECT_NEAR(flows[2].q, 2, 1e-4);
  EXPECT_EQ(flows[1].tpStatus, TP_FLOW_LOOP);
  EXPECT_EQ(flows[3], (Stored{10, 4, TP_FLOW_BRIDGE}));
  m_store.ForEachRow<cb>("order by id", [](const cb& row) { EXPECT_EQ(row.flags, 1U); });
}

TEST_F(BreakerFlowData, ARowThatHasGoneIsPassedOverAndDoubledOnesAreAllWritten) {
  Breaker("a", 1, 2);
  Breaker("b", 1, 2);
  Shunt<un>("u", 1, 10, 0);
  Shunt<ld>("l", 2, 10, 0);
  Section(2, 220, 0);
  Load();
  m_flow.calculate();
  dbCursor<cb> cursor(m_store.Db(), dbCursorForUpdate);
  cursor.select("id = 'a'");
  cursor.removeAllSelected();
  Breaker("b", 7, 8);
  m_store.Db()->commit();
  m_flow.storeData();
  const std::vector<Stored> flows = Flows();
  ASSERT_EQ(flows.size(), 2U);
  for (const Stored& flow : flows) {
    EXPECT_NEAR(flow.p, 5, 1e-4);
    EXPECT_EQ(flow.tpStatus, TP_FLOW_LOOP);
  }
}

TEST_F(BreakerFlowData, AnEmptyDatabaseGivesNothing) {
  m_flow.loadData();
  m_flow.calculate();
  m_flow.storeData();
  EXPECT_EQ(m_flow.SetCount(), 0);
  EXPECT_TRUE(m_flow.SetNodes(0).isEmpty());
  EXPECT_TRUE(m_flow.SetBreakers(-1).isEmpty());
  EXPECT_FALSE(m_flow.IsBalanced(0));
}

TEST_F(BreakerFlowData, DlnFlowsAreReadFromTheirOwnColumns) {
  Breaker("b", 1, 2);
  Branch<dln>("d", 1, 2, &dln::dln2, 0, &dln::zdln2, 1);
  Load();
  EXPECT_EQ(m_probe.DcLines()[0].p, -1);
  EXPECT_EQ(m_probe.DcLines()[1].zend, true);
  EXPECT_EQ(m_probe.DcLines()[1].q, 40);
}

TEST(BreakerFlowWithoutDatabase, WarnsAndGoesOn) {
  const MessageCatcher catcher;
  cbFlow flow(nullptr);
  flow.loadData();
  flow.calculate();
  flow.storeData();
  EXPECT_EQ(MessageCatcher::Lines().size(), 2);
}

}  // namespace
}  // namespace dtsdb::test
