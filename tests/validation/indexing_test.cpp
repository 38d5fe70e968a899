// Nodes, branch ends, and the change to logical numbers.
#include "tests/support/messages.h"
#include "tests/validation/run.h"
#include "validation/internal/graph.h"

namespace dtsdb::test {
namespace {

using namespace internal;

/// A model at the start of a run, with the levels K1 and K2 of station S1 linked by hand-made steps only.
class Indexing : public testing::Test {
 protected:
  Indexing() {
    m.Station("S1").Kv("K1", 220).Kv("K2", 110).Station("S2").Kv("K3", 220);
    nmd = std::make_unique<NMD>(&m.Db());
    NmdAccess::StartDetect(*nmd);
    NmdAccess::LinkPass<R_DV_ST>(*nmd);
    NmdAccess::LinkPass<R_ST_KV>(*nmd);
  }
  int Insert(const char* nd, const char* kv, int mask = -1) {
    return NmdAccess::NodeInsert(*nmd, nd, &number, kv, mask);
  }

  TemporaryDirectory directory;
  ModelBuilder m;
  std::unique_ptr<NMD> nmd;
  int number = 99;
};

TEST_F(Indexing, ChecksOfASoundModelSucceedOneByOne) {
  m.Breaker("B1", "K2", "N1", "N2").Unit("U1", "K2", "N1").Load("L1", "K2", "N2");
  NMD other(&m.Db());
  NmdAccess::StartDetect(other);
  EXPECT_TRUE(NmdAccess::CheckByCheck(other));
}

TEST_F(Indexing, NewNodeIsTiedToItsLevel) {
  EXPECT_EQ(Insert("N1", "K2", 4), INSERT_DONE);
  EXPECT_EQ(number, 0);
  const ND& nd = m.Of<ND>("N1");
  EXPECT_EQ(nd.flags, 4U);
  EXPECT_EQ(nd.r_nd_cb2, -1);
  EXPECT_EQ(nd.r_nd_dln2, -1);
  const R_KV_ND& row = m.Db().m_rKvNdTable->GetPh(nd.r_kv_nd);
  EXPECT_EQ(row.kv_id, Id("K2"));
  EXPECT_EQ(row.ikv, m.Number<KV>("K2"));
  EXPECT_EQ(m.Of<KV>("K2").r_kv_nd, nd.r_kv_nd);
}

TEST_F(Indexing, NodeInAnotherLevelKeepsItsFlagsAndIsNamed) {
  Insert("N1", "K1", 2);
  number = 99;
  EXPECT_EQ(Insert("N1", "K2", 4), INSERT_OTHER_LEVEL);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(m.Of<ND>("N1").flags, 2U);
}

TEST_F(Indexing, UnknownLevelMakesNothing) {
  EXPECT_EQ(Insert("N1", "nowhere"), INSERT_NO_LEVEL);
  EXPECT_EQ(number, -1);
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 0);
}

TEST_F(Indexing, Mask0OnAnExistingNodeChangesNoFlags) {
  Insert("N1", "K1", 2);
  EXPECT_EQ(Insert("N1", "K1", 0), INSERT_DONE);
  EXPECT_EQ(Insert("N1", "K1", -1), INSERT_DONE);
  EXPECT_EQ(m.Of<ND>("N1").flags, 2U);
  EXPECT_EQ(Insert("N1", "K1", 8), INSERT_DONE);
  EXPECT_EQ(m.Of<ND>("N1").flags, 10U);
}

TEST_F(Indexing, UnknownKindOfBranchMakesNothing) {
  int numbers[] = {0, 1, 5, 5};
  EXPECT_EQ(NmdAccess::Branch2Insert(*nmd, "N1", "N2", numbers, KIND_CB, 0, "A"), INSERT_DONE);
  EXPECT_EQ(numbers[2], -1);
  EXPECT_EQ(numbers[3], -1);
  EXPECT_EQ(m.Db().m_cb2Table->GetCount(), 0);
}

TEST_F(Indexing, BranchOnOneNodeMakesNothing) {
  int numbers[] = {3, 3, 5, 5};
  EXPECT_EQ(NmdAccess::Branch2Insert(*nmd, "N1", "N1", numbers, KIND_CB2, 0, "A"), INSERT_SAME_NODE);
  EXPECT_EQ(numbers[2], -1);
  EXPECT_EQ(numbers[3], -1);
}

TEST_F(Indexing, LineWithoutNodesIsRefused) {
  int numbers[] = {9, 9, 9, 9};
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_NO_FROM_NODE);
  EXPECT_EQ(numbers[0], -1);
  Insert("N1", "K1");
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_NO_TO_NODE);
  EXPECT_EQ(numbers[0], 0);
  EXPECT_EQ(numbers[1], -1);
}

TEST_F(Indexing, LineBetweenOtherStationsIsRefused) {
  Insert("N1", "K1");
  Insert("N3", "K3");
  int numbers[] = {9, 9, 9, 9};
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S2", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_OTHER_STATION);
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "S1", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_OTHER_STATION);
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "no", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_OTHER_STATION);
  m.Of<KV>("K1").r_st_kv = -1;
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "no", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_OTHER_STATION);
}

TEST_F(Indexing, LineGetsItsTwoEnds) {
  m.Put(LN(Id("A")));
  Insert("N1", "K1");
  Insert("N3", "K3");
  int numbers[] = {9, 9, 9, 9};
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_DONE);
  EXPECT_EQ(m.Number<LN2>("Ai"), numbers[2]);
  EXPECT_EQ(m.Number<LN2>("Az"), numbers[3]);
  EXPECT_EQ(m.Of<LN2>("Ai").flags, 0U);
  EXPECT_EQ(m.Of<LN2>("Az").flags, END_IS_TO);
}

TEST_F(Indexing, LineJoinsNodesWhoseNumbersExceed16Bits) {
  m.Put(LN(Id("A")));
  constexpr int kOthers = 33000;
  for (int i = 0; i < kOthers; ++i) ASSERT_EQ(Insert(("M" + std::to_string(100000 + i)).c_str(), "K2"), INSERT_DONE);
  Insert("N1", "K1");
  Insert("N3", "K3");
  int numbers[] = {9, 9, 9, 9};
  EXPECT_EQ(NmdAccess::BranchInsert(*nmd, "S1", "S2", "N1", "N3", numbers, KIND_LN2, 0, "A"), INSERT_DONE);
  EXPECT_EQ(numbers[0], kOthers);
  EXPECT_EQ(numbers[1], kOthers + 1);
  EXPECT_EQ(ChainOf<R_ND_LN2>(m.Db(), m.Of<ND>("N3").r_nd_ln2), Texts{"Az"});
}

TEST(NodesOfARun, NodeNamedInTwoLevelsKeepsTheFirstAndBothDevicesPointToIt) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110).Load("L1", "K1", "N1").Load("L2", "K2", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:LD L2 给定的母线与结点给定的相矛盾."});
  EXPECT_EQ(m.Of<LD>("L2").ind, m.Number<ND>("N1"));
  EXPECT_TRUE(ChainOf<R_KV_ND>(m.Db(), m.Of<KV>("K2").r_kv_nd).empty());
}

TEST(NodesOfARun, WindingInAnUnknownLevelKeepsNumberNone) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Winding("X1", "S1", "nowhere", "K1", "N1", "N2");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:XF X1 给定的母线在母线表中不存在."});
  EXPECT_EQ(m.Of<XF>("X1").ind, -1);
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 0);
}

TEST(NodesOfARun, BreakerWithOneNodeOnBothEndsHasMadeTheNode) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Breaker("B1", "K1", "N1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<CB>("B1").cb2, -1);
  EXPECT_EQ(m.Of<CB>("B1").zcb2, -1);
  EXPECT_EQ(m.Of<CB>("B1").ind, m.Number<ND>("N1"));
}

TEST(EndsOfARun, BothEndsOfAZeroImpedanceBranchCarryTheSameMeasurements) {
  ModelBuilder m = GoodModel();
  m.Zbr("Z1", "B1").Analog("A").Analog("P").Analog("Q");
  m.Of<ZBR>("Z1").ana_p = Id("P");
  m.Of<ZBR>("Z1").ana_q = Id("Q");
  const ValidationRun run(m.Db());
  for (const char* end : {"Z1i", "Z1z"}) {
    EXPECT_EQ(m.Of<ZBR2>(end).iana_p, m.Number<ANALOG>("P"));
    EXPECT_EQ(m.Of<ZBR2>(end).iana_q, m.Number<ANALOG>("Q"));
  }
  EXPECT_EQ(m.Of<ZBR2>("Z1i").flags, 0U);
  EXPECT_EQ(m.Of<ZBR2>("Z1z").flags, END_IS_TO);
}

TEST(EndsOfARun, EndsOfAWindingCarryTheMeasurementsOfTheirSides) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Kv("K2").Winding("X1", "S1", "K1", "K2", "N1", "N2");
  m.Analog("P").Analog("Q").Analog("ZP").Analog("ZQ");
  XF& xf = m.Of<XF>("X1");
  xf.ana_p = Id("P");
  xf.ana_q = Id("Q");
  xf.zana_p = Id("ZP");
  xf.zana_q = Id("ZQ");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<XF2>("X1i").iana_p, m.Number<ANALOG>("P"));
  EXPECT_EQ(m.Of<XF2>("X1i").iana_q, m.Number<ANALOG>("Q"));
  EXPECT_EQ(m.Of<XF2>("X1z").iana_p, m.Number<ANALOG>("ZP"));
  EXPECT_EQ(m.Of<XF2>("X1z").iana_q, m.Number<ANALOG>("ZQ"));
}

TEST(EndsOfARun, BranchAHasTheEndsAiAndAz) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Breaker("A", "K1", "N1", "N2");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<CB>("A").cb2, m.Number<CB2>("Ai"));
  EXPECT_EQ(m.Of<CB>("A").zcb2, m.Number<CB2>("Az"));
  EXPECT_EQ(ChainOf<R_ND_CB2>(m.Db(), m.Of<ND>("N1").r_nd_cb2), Texts{"Ai"});
  EXPECT_EQ(ChainOf<R_ND_CB2>(m.Db(), m.Of<ND>("N2").r_nd_cb2), Texts{"Az"});
  EXPECT_EQ(m.Of<CB2>("Az").icb, m.Number<CB>("A"));
}

TEST(LogicalNumbers, NodesAreNumberedByNameWhateverTheirFirstMention) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Load("L1", "K1", "N2").Load("L2", "K1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<LD>("L1").ind, 1);
  EXPECT_EQ(m.Of<LD>("L2").ind, 0);
  EXPECT_EQ(m.Db().m_ndTable->GetPh(1).id, Id("N2"));
}

// Two lines of two districts: their rows stand in the order of the districts, and each line gets the row at its
// own place, which is the other's.
// Kept: K12.
TEST(LogicalNumbers, LinesGetTheRowAtTheirOwnPlace) {
  const auto lines = [](auto add) {
    ModelBuilder m;
    m.District("D1").District("D2").Station("S1", "D1").Kv("K1").Station("S2", "D2").Kv("K2");
    add(m, "A", "D2");
    add(m, "B", "D1");
    add(m, "C", "nowhere");
    return m;
  };
  ModelBuilder ac = lines(
      [](ModelBuilder& m, const char* id, const char* dv) { m.Line(id, dv, "S1", "S2", "K1", "K2", "N1", "N2"); });
  const ValidationRun acRun(ac.Db());
  EXPECT_EQ(ac.Of<LN>("A").r_dv_ln, 0);
  EXPECT_EQ(ac.Db().m_rDvLnTable->GetPh(0).ln_id, Id("B"));
  EXPECT_EQ(ac.Of<LN>("B").r_dv_ln, 1);
  EXPECT_EQ(ac.Of<LN>("C").r_dv_ln, -1);

  ModelBuilder dc = lines(
      [](ModelBuilder& m, const char* id, const char* dv) { m.DcLine(id, dv, "S1", "S2", "K1", "K2", "N1", "N2"); });
  const ValidationRun dcRun(dc.Db());
  EXPECT_EQ(dc.Of<DLN>("A").r_dv_dln, 0);
  EXPECT_EQ(dc.Db().m_rDvDlnTable->GetPh(0).dln_id, Id("B"));
  EXPECT_EQ(dc.Of<DLN>("C").r_dv_dln, -1);
}

// Rows in the order made: (K2,Z1) (K1,Z2) (K1,Z3), in order: (K1,Z2) (K1,Z3) (K2,Z1). Converted once, Z2 would be
// followed by Z3, number 1; converted twice it is followed by number 0, itself.
// Kept: K13.
TEST(LogicalNumbers, LinksOfZeroImpedanceBranchesAreConvertedTwice) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Kv("K2");
  m.Breaker("B1", "K2", "M1", "M2").Breaker("B2", "K1", "N1", "N2").Breaker("B3", "K1", "N1", "N2");
  m.Zbr("Z1", "B1").Zbr("Z2", "B2").Zbr("Z3", "B3");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.global.valid, 1);
  tTable<R_KV_ZBR>& rows = *m.Db().m_rKvZbrTable;
  EXPECT_EQ(m.Of<KV>("K1").r_kv_zbr, 0);
  EXPECT_EQ(rows.GetPh(0).zbr_id, Id("Z2"));
  EXPECT_EQ(rows.GetPh(0).next, 0);
  EXPECT_EQ(rows.GetPh(1).prev, 2);
  EXPECT_EQ(ChainOf<R_KV_ZBR>(m.Db(), 0).size(), 3U) << "a walk in a circle ends";
}

// Rows in the order made: (N2,X1i) (N1,X1z); in order the other way round.
// Kept: K14.
TEST(LogicalNumbers, EndsOfWindingsKeepTheirPhysicalRow) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Kv("K2").Winding("X1", "S1", "K1", "K2", "N2", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<XF2>("X1i").r_nd, 0);
  EXPECT_EQ(m.Db().m_rNdXf2Table->GetPh(0).xf2_id, Id("X1z"));
  EXPECT_EQ(m.Of<ND>("N2").r_nd_xf2, 1);
  EXPECT_EQ(m.Of<XF>("X1").xf2, m.Number<XF2>("X1i"));
}

// Ends in the order made: Ai Az A1i A1z; in order A1i A1z Ai Az.
// Kept: K15.
TEST(LogicalNumbers, EndsOfZeroImpedanceBranchesAreKnownByTheirPhysicalNumber) {
  ModelBuilder m = GoodModel();
  m.Breaker("B2", "K1", "N1", "N2").Zbr("A", "B1").Zbr("A1", "B2");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<ZBR>("A").zbr2, 0);
  EXPECT_EQ(m.Of<ZBR>("A").zzbr2, 1);
  EXPECT_EQ(m.Number<ZBR2>("Ai"), 2);
}

TEST(LogicalNumbers, NumberThatIsNoRowBecomesNoneWithAWarning) {
  ModelBuilder m = GoodModel();
  m.Unit("U2", "K1", "");
  m.Of<UN>("U2").ind = 123456;
  const MessageCatcher catcher;
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<UN>("U2").ind, -1);
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
}

// A zero-impedance branch without identity is passed over, and its number is converted all the same.
TEST(LogicalNumbers, BreakerNumberOfADroppedZeroImpedanceBranchIsConverted) {
  ModelBuilder m = GoodModel();
  m.Zbr("", "nowhere");
  m.Of<ZBR>("").icb = 123456;
  const MessageCatcher catcher;
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<ZBR>("").icb, -1);
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
}

}  // namespace
}  // namespace dtsdb::test
