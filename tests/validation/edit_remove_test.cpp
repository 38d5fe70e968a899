// Removals of devices and branches.
//
//   station S1: K1, K2 (110 kV)             station S2: K3
//
//     U1 N1 --B1-- N2 L1                      N4 --B2-- N5 L2
//
// Names ascend from S1 to S2, so that rows of levels and levels have the same numbers.
#include "tests/validation/edit.h"
#include "validation/internal/relations.h"

namespace dtsdb::test {
namespace {

ModelBuilder StationsWithLoads() {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110).Station("S2").Kv("K3", 220);
  m.Breaker("B1", "K1", "N1", "N2").Breaker("B2", "K3", "N4", "N5");
  return m.Unit("U1", "K1", "N1").Load("L1", "K1", "N2").Load("L2", "K3", "N5");
}

class RemoveTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(edit.IsGood()); }

  template <class Record>
  void Add(Record record) {
    ASSERT_EQ(edit.Add(record), "");
  }
  template <class Record>
  bool Has(const char* id) {
    return model.Table<Record>().Find(Record(Id(id))) != -1;
  }
  template <class Row>
  Texts Children(const char* parent) {
    using R = Relation<Row>;
    return ChainOf<Row>(model.Db(), model.Of<typename R::Parent>(parent).*R::kHead);
  }
  template <class Row>
  bool HasRow(const char* parent, const char* child) {
    return model.Table<Row>().Find(Row(Id(parent), Id(child))) != -1;
  }
  /// The relation row of a record.
  template <class Row>
  Row& RowOf(const char* child) {
    using R = Relation<Row>;
    return model.Table<Row>().GetPh(model.Of<typename R::Child>(child).*R::kOwn);
  }

  ModelBuilder model = StationsWithLoads();
  Editing edit{model};
};

// What all removals do

// Kept: K26.
TEST_F(RemoveTest, OfAnUnknownIdentityReportsTheTable) {
  EXPECT_EQ(edit.Remove<BUS>("?"), "欲删除的母线设备在母线表中不存在.\n");
  EXPECT_EQ(edit.Remove<CP>("?"), "欲删除的电容电抗在CP表中不存在.\n");
  EXPECT_EQ(edit.Remove<UN>("?"), "欲删除的发电机在机组表中不存在.\n");
  EXPECT_EQ(edit.Remove<LD>("?"), "欲删除的负荷在负荷表中不存在.\n");
  EXPECT_EQ(edit.Remove<CB>("?"), "欲删除的开关在开关表中不存在..\n") << "with two points";
  EXPECT_EQ(edit.Remove<XF>("?"), "欲删除的变压器线圈在表中不存在.\n");
  EXPECT_EQ(edit.Remove<LN>("?"), "欲删除的线路在线路表LN中不存在.\n");
  EXPECT_EQ(edit.Remove<ZBR>("?"), "欲删除的零阻抗支路在ZBR表中不存在.\n");
  EXPECT_EQ(edit.Remove<DLN>("?"), "欲删除的直流线路DLN在直流表中不存在.\n");
  EXPECT_EQ(edit.Remove<CO>("?"), "删除的公司记录在公司表中不存在.\n");
  EXPECT_EQ(edit.Remove<DV>("?"), "删除DV在DV表中不存在.\n");
  EXPECT_EQ(edit.Remove<ST>("?"), "该厂站在厂站表中不存在.\n");
  EXPECT_EQ(edit.Remove<KV>("?"), "该母线在母线表中不存在.\n");
}

TEST_F(RemoveTest, RunsOnAModelWithFaults) {
  model.Of<CB>("B2").flags = 0;
  EXPECT_FALSE(edit.Revalidate().empty());
  EXPECT_EQ(edit.Remove<LD>("L1"), "");
  EXPECT_FALSE(Has<LD>("L1"));
}

TEST_F(RemoveTest, TakesARowOutOfTheHeadMiddleAndEndOfItsChain) {
  for (const char* id : {"L3", "L4", "L5"}) Add(NewShunt<LD>(id, "K1", "N2"));
  ASSERT_EQ((Children<R_KV_LD>("K1")), (Texts{"L1", "L5", "L4", "L3"}));
  EXPECT_EQ(edit.Remove<LD>("L4"), "");
  EXPECT_EQ((Children<R_KV_LD>("K1")), (Texts{"L1", "L5", "L3"}));
  EXPECT_EQ(edit.Remove<LD>("L3"), "");
  EXPECT_EQ((Children<R_KV_LD>("K1")), (Texts{"L1", "L5"}));
  EXPECT_EQ(edit.Remove<LD>("L1"), "");
  EXPECT_EQ((Children<R_KV_LD>("K1")), (Texts{"L5"}));
  EXPECT_EQ((RowOf<R_KV_LD>("L5").prev), -1);
  EXPECT_EQ(edit.Remove<LD>("L5"), "");
  EXPECT_EQ(model.Of<KV>("K1").r_kv_ld, -1);
  EXPECT_EQ(edit.Revalidate(), Texts());
}

// Kept: K28.
TEST_F(RemoveTest, LeavesTheMarksOfNodeAndStation) {
  EXPECT_EQ(edit.Remove<LD>("L1"), "");
  EXPECT_TRUE(Has<ND>("N2")) << "the breaker ends there";
  EXPECT_EQ(model.Of<ND>("N2").flags, ND_HAS_LD);
  EXPECT_TRUE(model.Of<ST>("S1").flag & ST_HAS_LD);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_EQ(model.Of<ND>("N2").flags, 0U);
  EXPECT_FALSE(model.Of<ST>("S1").flag & ST_HAS_LD);
}

// Devices on one node

// Kept: K27.
TEST_F(RemoveTest, OfANodesOnlyLoadTakesTheNodeThoughABusStandsThere) {
  Add(NewShunt<LD>("L9", "K2", "N9"));
  Add(NewShunt<BUS>("M9", "K2", "N9"));
  ASSERT_EQ(edit.Revalidate(), Texts());
  ASSERT_EQ(model.Of<ND>("N9").flags, ND_HAS_LD | ND_HAS_BUS);
  const int node = model.Number<ND>("N9");
  EXPECT_EQ(edit.Remove<LD>("L9"), "");
  EXPECT_FALSE(Has<ND>("N9"));
  EXPECT_FALSE((HasRow<R_KV_ND>("K2", "N9")));
  EXPECT_EQ(model.Of<KV>("K2").r_kv_nd, -1);
  EXPECT_EQ(model.Of<BUS>("M9").ind, node) << "goes on naming it";
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_TRUE(Has<ND>("N9"));
}

// A node N9 with a device of each kind: each leaves out its own mark, and the bus counts for none.
template <class Shunt>
void TestCountedMarks(u32 flags, bool keepsNode) {
  ModelBuilder m = StationsWithLoads();
  Editing edit(m);
  Shunt shunt = NewShunt<Shunt>("X", "K2", "N9");
  ASSERT_EQ(edit.Add(shunt), "");
  m.Of<ND>("N9").flags = flags;
  EXPECT_EQ(edit.Remove(shunt), "");
  EXPECT_EQ(m.Table<ND>().Find(ND(Id("N9"))) != -1, keepsNode) << Shunt::kTableName << " " << flags;
}

TEST(RemoveDevice, KeepsANodeWithAMarkOfAnotherKindButNotOfABus) {
  for (const u32 mark : {ND_HAS_UN, ND_HAS_LD, ND_HAS_CP, ND_HAS_BUS, ND_DEAD}) {
    const bool counted = mark == ND_HAS_UN || mark == ND_HAS_LD || mark == ND_HAS_CP;
    TestCountedMarks<BUS>(mark, counted);
    TestCountedMarks<CP>(mark, counted && mark != ND_HAS_CP);
    TestCountedMarks<UN>(mark, counted && mark != ND_HAS_UN);
    TestCountedMarks<LD>(mark, counted && mark != ND_HAS_LD);
  }
}

// Kept: K27.
TEST_F(RemoveTest, OfOneOfTwoLoadsOnANodeTakesTheNodeFromTheOther) {
  Add(NewShunt<LD>("L8", "K2", "N9"));
  Add(NewShunt<LD>("L9", "K2", "N9"));
  EXPECT_EQ(edit.Remove<LD>("L8"), "");
  EXPECT_FALSE(Has<ND>("N9")) << "the loads of a node count as one mark, which is the load's own";
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_TRUE(Has<ND>("N9"));
}

/// The reasons why a device alone on its node isn't removed.
template <class Shunt>
void TestStuckShunt(const char* levelLess, const char* unrelated) {
  using Row = ParentRow<Shunt>;
  for (const bool hasRow : {false, true}) {
    ModelBuilder m = StationsWithLoads();
    Editing edit(m);
    Shunt shunt = NewShunt<Shunt>("X", "K2", "N9");
    Shunt other = NewShunt<Shunt>("Y", "K1", "N1");
    ASSERT_EQ(edit.Add(shunt), "");
    ASSERT_EQ(edit.Add(other), "");
    if (hasRow) {
      m.Table<R_KV_ND>().GetPh(m.Of<ND>("N9").r_kv_nd).ikv = -1;
      m.Table<Row>().GetPh(m.Of<Shunt>("Y").*Relation<Row>::kOwn).ikv = -1;
    } else {
      m.Of<ND>("N9").r_kv_nd = -1;
      m.Of<Shunt>("Y").*Relation<Row>::kOwn = -1;
    }
    EXPECT_EQ(edit.Remove(shunt), levelLess);
    EXPECT_EQ(edit.Remove(other), unrelated);
    EXPECT_NE(m.Table<Shunt>().Find(shunt), -1);
    EXPECT_NE(m.Table<Shunt>().Find(other), -1);
  }
}

TEST(RemoveDevice, WithoutALevelOfItsNodeOrItsOwnIsRefused) {
  TestStuckShunt<BUS>("删除母线的结点没有所属的母线.\n", "删除母线没有所属的母线.\n");
  TestStuckShunt<CP>("删除CP的结点没有所属的母线.\n", "删除CP没有所属的母线.\n");
  TestStuckShunt<UN>("删除机组的结点没有所属的母线.\n", "删除机组没有所属的母线.\n");
  TestStuckShunt<LD>("删除负荷的结点没有所属的母线.\n", "删除负荷没有所属的母线.\n");
}

// Branches

// Kept: K29.
TEST_F(RemoveTest, OfALineWithOtherDevicesOnItsNodesLeavesItsEnds) {
  Add(NewLine<LN>("A", "DV", "S1", "S2", "K1", "K3", "N1", "N4"));
  EXPECT_EQ(edit.Remove<LN>("A"), "");
  EXPECT_FALSE(Has<LN>("A"));
  EXPECT_FALSE((HasRow<R_DV_LN>("DV", "A")));
  EXPECT_TRUE(Has<LN2>("Ai"));
  EXPECT_TRUE(Has<LN2>("Az"));
  EXPECT_EQ((Children<R_ND_LN2>("N1")), (Texts{"Ai"}));
  EXPECT_EQ((Children<R_ND_LN2>("N4")), (Texts{"Az"}));
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_FALSE(Has<LN2>("Ai"));
}

// Kept: K29.
TEST_F(RemoveTest, OfALineWhoseEndsStayKeepsItsNameTakenUntilTheNextRun) {
  LN ln = NewLine<LN>("A", "DV", "S1", "S2", "K1", "K3", "N1", "N4");
  Add(ln);
  EXPECT_EQ(edit.Remove<LN>("A"), "");
  EXPECT_EQ(edit.Add(ln), "R_ND_LN2或者LN2表空间已满.\n");
}

// Branch X alone between nodes N8 and N9.

ModelBuilder WithBreakerX() { return StationsWithLoads().Breaker("X", "K2", "N8", "N9"); }
ModelBuilder WithWindingX() { return StationsWithLoads().Winding("X", "S1", "K1", "K2", "N8", "N9"); }
ModelBuilder WithLineX() { return StationsWithLoads().Line("X", "DV", "S1", "S2", "K1", "K3", "N8", "N9"); }
ModelBuilder WithDcLineX() { return StationsWithLoads().DcLine("X", "DV", "S1", "S2", "K1", "K3", "N8", "N9"); }

template <class T>
bool IsThere(ModelBuilder& m, const char* id) {
  return m.Table<T>().Find(T(Id(id))) != -1;
}

/// True when a row of relation `Row` has this child.
template <class Row>
bool IsRelated(ModelBuilder& m, const char* child) {
  for (int i = 0; i < m.Table<Row>().GetCount(); ++i) {
    if (m.Table<Row>()[i].*Relation<Row>::kChildId == Id(child)) return true;
  }
  return false;
}

template <class Branch>
void TestLastOnItsNodes(ModelBuilder m) {
  using Kind = BranchKind<Branch>;
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  ASSERT_TRUE(IsRelated<ParentRow<Branch>>(m, "X") && IsRelated<typename Kind::Row>(m, "Xz"));
  EXPECT_EQ(edit.Remove<Branch>("X"), "");
  EXPECT_FALSE(IsThere<Branch>(m, "X"));
  EXPECT_FALSE(IsRelated<ParentRow<Branch>>(m, "X"));
  for (const char* node : {"N8", "N9"}) {
    EXPECT_FALSE(IsThere<ND>(m, node));
    EXPECT_FALSE(IsRelated<R_KV_ND>(m, node));
  }
  for (const char* end : {"Xi", "Xz"}) {
    EXPECT_FALSE(IsThere<typename Kind::End>(m, end));
    EXPECT_FALSE(IsRelated<typename Kind::Row>(m, end));
  }
  EXPECT_EQ(edit.Revalidate(), Texts());
}

TEST(RemoveBranch, ThatIsTheLastOnItsNodesTakesNodesAndEndsAlong) {
  TestLastOnItsNodes<CB>(WithBreakerX());
  TestLastOnItsNodes<XF>(WithWindingX());
  TestLastOnItsNodes<LN>(WithLineX());
  TestLastOnItsNodes<DLN>(WithDcLineX());
}

struct StuckTexts {
  const char* fromLevelLess;
  const char* toLevelLess;
  const char* fromEndMissing;
  const char* toEndMissing;
  const char* unrelated;
};

/// Removes X from a model in which `damage` was done; returns the reason, "before" when none was set.
template <class Branch, class Damage>
std::string Stuck(ModelBuilder (*model)(), Damage damage) {
  ModelBuilder m = model();
  Editing edit(m);
  EXPECT_NE(edit.Why(New<CO>("CO")), "");  // a last error that stays where there is no text
  const std::string before = edit.LastError();
  damage(m, m.Of<Branch>("X"));
  EXPECT_FALSE(edit.nmd.GetLastError().isEmpty());
  const std::string reason = edit.Remove<Branch>("X");
  EXPECT_NE(reason, "") << "it fails";
  EXPECT_TRUE(IsThere<Branch>(m, "X"));
  return reason == before ? "before" : reason;
}

/// What removals report that meet a broken link, the same link being -1 or leading to a row that holds -1.
template <class Branch>
void TestStuckBranch(ModelBuilder (*model)(), const StuckTexts& texts) {
  using Kind = BranchKind<Branch>;
  using Row = ParentRow<Branch>;
  const auto stuck = [model](auto damage) { return Stuck<Branch>(model, damage); };
  for (const bool isTo : {false, true}) {
    const auto node = [isTo](ModelBuilder& m) -> ND& { return m.Of<ND>(isTo ? "N9" : "N8"); };
    const auto end = isTo ? Kind::kToEnd : Kind::kFromEnd;
    const char* const levelLess = isTo ? texts.toLevelLess : texts.fromLevelLess;
    const char* const endMissing = isTo ? texts.toEndMissing : texts.fromEndMissing;
    EXPECT_EQ(stuck([&](ModelBuilder& m, Branch&) { node(m).r_kv_nd = -1; }), levelLess);
    EXPECT_EQ(stuck([&](ModelBuilder& m, Branch&) { m.Table<R_KV_ND>().GetPh(node(m).r_kv_nd).ikv = -1; }), levelLess);
    EXPECT_EQ(stuck([&](ModelBuilder&, Branch& branch) { branch.*end = -1; }), endMissing);
    EXPECT_EQ(stuck([&](ModelBuilder& m, Branch& branch) {
                m.Table<typename Kind::End>().GetPh(branch.*end).*Relation<typename Kind::Row>::kOwn = -1;
              }),
              endMissing);
  }
  EXPECT_EQ(stuck([](ModelBuilder&, Branch& branch) { branch.*Relation<Row>::kOwn = -1; }), texts.unrelated);
  EXPECT_EQ(stuck([](ModelBuilder& m, Branch& branch) {
              m.Table<Row>().GetPh(branch.*Relation<Row>::kOwn).*Relation<Row>::kParentNumber = -1;
            }),
            texts.unrelated);
}

TEST(RemoveBranch, ThatMeetsABrokenLinkReportsWhich) {
  TestStuckBranch<CB>(WithBreakerX,
                      {"删除开关的首端结点没有所属的母线.\n", "删除开关的末端结点没有所属的母线.\n",
                       "删除开关首端端子不存在.\n", "删除开关末端端子不存在.\n", "删除开关没有所属的母线.\n"});
  TestStuckBranch<LN>(WithLineX,
                      {"删除线路的首端结点没有所属的母线.\n", "删除线路的末端结点没有所属的母线.\n",
                       "删除线路首端端子不存在.\n", "删除线路末端端子不存在.\n", "删除线路没有所属的分区.\n"});
  TestStuckBranch<DLN>(
      WithDcLineX, {"删除直流线首端结点没有所属的母线.\n", "删除直流线末端结点没有所属的母线.\n",
                    "删除直流线路首端端子不存在.\n", "删除直流线路末端端子不存在.\n", "删除直流线路没有所属的分区.\n"});
}

// Kept: K31.
TEST(RemoveBranch, ThatIsAWindingAndMeetsABrokenLinkReportsNothing) {
  TestStuckBranch<XF>(WithWindingX, {"before", "before", "before", "before", "before"});
}

// A breaker that a run has dropped has no ends; here it alone was left on its node by hand.
TEST_F(RemoveTest, OfABreakerDroppedByARunFailsAfterTheNodesRowHasGone) {
  Add(NewBreaker("B9", "K2", "N8", "N9"));
  model.Of<CB>("B9").cb2 = -1;
  EXPECT_EQ(edit.Remove<CB>("B9"), "删除开关首端端子不存在.\n");
  EXPECT_FALSE((HasRow<R_KV_ND>("K2", "N8")));
  EXPECT_TRUE(Has<ND>("N8"));
  EXPECT_TRUE(Has<CB>("B9"));
}

// Kept: K30.
TEST_F(RemoveTest, OfAWindingWritesItsFromEndsNeighboursIntoTheBreakersRows) {
  Add(NewWinding("X1", "S1", "K1", "K2", "N8", "N9"));
  model.Table<R_ND_XF2>().GetPh(model.Of<XF2>("X1i").r_nd).prev = 1;
  for (int i = 0; i < 4; ++i) model.Table<R_ND_CB2>().GetPh(i).next = 80 + i;
  EXPECT_EQ(edit.Remove<XF>("X1"), "");
  EXPECT_EQ(model.Table<R_ND_CB2>().GetPh(1).next, -1) << "as if it were a breaker's end";
  EXPECT_EQ(model.Table<R_ND_CB2>().GetPh(0).next, 80);
}

TEST_F(RemoveTest, OfAWindingWritesItsToEndsNeighboursIntoItsOwnRows) {
  Add(NewWinding("X1", "S1", "K1", "K2", "N8", "N9"));
  Add(NewWinding("X2", "S1", "K1", "K2", "N6", "N7"));
  model.Table<R_ND_XF2>().GetPh(model.Of<XF2>("X1z").r_nd).prev = model.Of<XF2>("X2z").r_nd;
  model.Table<R_ND_XF2>().GetPh(model.Of<XF2>("X2z").r_nd).next = 70;
  for (int i = 0; i < 4; ++i) model.Table<R_ND_CB2>().GetPh(i).next = 80 + i;
  EXPECT_EQ(edit.Remove<XF>("X1"), "");
  EXPECT_EQ(model.Table<R_ND_XF2>().GetPh(model.Of<XF2>("X2z").r_nd).next, -1);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(model.Table<R_ND_CB2>().GetPh(i).next, 80 + i);
}

TEST_F(RemoveTest, CountsAllBranchesAndMarksOnANode) {
  Add(NewBreaker("B9", "K1", "N8", "N9"));
  Add(NewZbr("Z9", "B9"));
  EXPECT_EQ(edit.Remove<CB>("B9"), "");
  EXPECT_TRUE(Has<ND>("N8")) << "the zero-impedance branch is still counted";
  EXPECT_TRUE(Has<CB2>("B9i"));

  Add(NewBreaker("B8", "K2", "N6", "N7"));
  Add(NewShunt<BUS>("M6", "K2", "N6"));
  Add(NewShunt<CP>("C7", "K2", "N7"));
  model.Of<ND>("N6").flags = ND_HAS_BUS;
  EXPECT_EQ(edit.Remove<CB>("B8"), "");
  EXPECT_FALSE(Has<ND>("N6")) << "a bus isn't counted";
  EXPECT_FALSE(Has<CB2>("B8i"));
  EXPECT_TRUE(Has<ND>("N7")) << "a capacitor is";
  EXPECT_TRUE(Has<CB2>("B8z"));
}

// After a run a line holds the row at its own place in the table, which with several districts is another line's.
// Kept: K12.
TEST(RemoveLine, TakesTheRowAtItsPlaceWhichMayBeAnotherLines) {
  ModelBuilder m;
  m.District("D1").District("D2").Station("S1", "D1").Kv("K1", 220).Station("S2", "D2").Kv("K3", 220);
  m.Unit("U1", "K1", "N1").Load("L2", "K3", "N4");
  m.Line("A1", "D2", "S1", "S2", "K1", "K3", "N1", "N4").Line("A2", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  EXPECT_EQ(edit.Remove<LN>("A1"), "");
  EXPECT_FALSE(IsThere<LN>(m, "A1"));
  EXPECT_TRUE(IsRelated<R_DV_LN>(m, "A1"));
  EXPECT_FALSE(IsRelated<R_DV_LN>(m, "A2"));
  EXPECT_EQ(m.Of<DV>("D1").r_dv_ln, -1);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_FALSE(IsRelated<R_DV_LN>(m, "A1"));
}

// Zero-impedance branches

// Kept: K08.
TEST_F(RemoveTest, OfAZeroImpedanceBranchLeavesItsBreaker) {
  Add(NewZbr("Z1", "B1"));
  EXPECT_EQ(edit.Remove<ZBR>("Z1"), "");
  EXPECT_FALSE(Has<ZBR>("Z1"));
  EXPECT_FALSE(Has<ZBR2>("Z1i"));
  EXPECT_FALSE(Has<ZBR2>("Z1z"));
  EXPECT_EQ(model.Of<ND>("N1").r_nd_zbr2, -1);
  EXPECT_EQ(model.Of<KV>("K1").r_kv_zbr, -1);
  EXPECT_TRUE(Has<CB2>("B1i"));
  EXPECT_EQ((Children<R_ND_CB2>("N2")), (Texts{"B1z"}));
  EXPECT_TRUE(Has<ND>("N1"));
  EXPECT_EQ(model.Of<CB>("B1").flags, 1 | CB_ZBR) << "the mark stays";
}

TEST(RemoveZbr, ThatMeetsABrokenLinkReportsWhich) {
  const auto stuck = [](auto damage) {
    return Stuck<ZBR>(
        +[] { return WithBreakerX().Zbr("X", "X"); }, damage);
  };
  EXPECT_EQ(stuck([](ModelBuilder&, ZBR& zbr) { zbr.zbr2 = -1; }), "删除零阻抗支路首端端子不存在.\n");
  EXPECT_EQ(stuck([](ModelBuilder& m, ZBR& zbr) { m.Table<ZBR2>().GetPh(zbr.zbr2).r_nd = -1; }),
            "删除零阻抗支路首端端子不存在.\n");
  EXPECT_EQ(stuck([](ModelBuilder&, ZBR& zbr) { zbr.zzbr2 = -1; }), "删除零阻抗支路末端端子不存在.\n");
  EXPECT_EQ(stuck([](ModelBuilder& m, ZBR& zbr) { m.Table<ZBR2>().GetPh(zbr.zzbr2).r_nd = -1; }),
            "删除零阻抗支路末端端子不存在.\n");
  EXPECT_EQ(stuck([](ModelBuilder&, ZBR& zbr) { zbr.r_kv_zbr = -1; }), "删除零阻抗支路没有所属的分区.\n");
  EXPECT_EQ(stuck([](ModelBuilder& m, ZBR& zbr) { m.Table<R_KV_ZBR>().GetPh(zbr.r_kv_zbr).ikv = -1; }),
            "删除零阻抗支路没有所属的分区.\n");
}

}  // namespace
}  // namespace dtsdb::test
