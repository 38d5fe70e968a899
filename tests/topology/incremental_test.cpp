// The private stages of the incremental run, where a scenario can't reach: damaged rows and records, and the list of
// the levels of the run.
#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

class Incremental : public TopologyTest {
 protected:
  void SetUp() override {
    m.Station("A").Kv("A220").Unit("U", "A220", "a").Breaker("B", "A220", "a", "b");
    m.Station("S").Kv("S220").Load("D", "S220", "c");
    m.Line("L", "DV", "A", "S", "A220", "S220", "a", "c").Line("M", "DV", "A", "S", "A220", "S220", "b", "c");
    Run();
  }

  /// A row that waits for a run, for record `number`.
  void Wait(int type, int number) {
    auto& rows = *m.Db().m_tptraceTable;
    TPTRACE row;
    row.id = rows.GetCount();
    row.type = static_cast<u8>(type);
    row.n1 = number;
    rows.Add(row);
  }
  int Waiting() { return m.Db().m_tptraceTable->GetCount(); }
  Lines ChangeLines() {
    return FailureLines([&] { EXPECT_EQ(tp.tpChange(), 0); });
  }

  const Lines kFailed{"TP:failed at (N) in tpChangedKv.\n", "TP:failed at (N) in tpChange.\n"};
};

TEST_F(Incremental, ComponentNumberOutsideItsTableFailsTheRunAndKeepsTheRows) {
  for (int type = 1; type <= 16; ++type) {
    m.Db().m_tptraceTable->Clear();
    Wait(type, 100000);
    EXPECT_EQ(ChangeLines(), kFailed) << type;
    EXPECT_EQ(Waiting(), 1);
  }
}

TEST_F(Incremental, BreakerWithoutALevelFailsTheRun) {
  m.Of<CB>("B").r_kv_cb = -1;
  Wait(1, m.Number<CB>("B"));
  EXPECT_EQ(ChangeLines(), kFailed);
}

TEST_F(Incremental, BranchWhoseNodeHasNoLevelFailsTheRunBeforeItIsLogged) {
  for (const char* node : {"a", "c"}) {
    const int row = std::exchange(m.Of<ND>(node).r_kv_nd, -1);
    m.Db().m_tptraceTable->Clear();
    Wait(5, m.Number<LN>("L"));
    EXPECT_EQ(ChangeLines(), kFailed);
    EXPECT_EQ(tp.tpBsChanged(), 0);
    m.Of<ND>(node).r_kv_nd = row;
  }
}

TEST_F(Incremental, BranchWhoseNodeIsNoneFailsTheRun) {
  m.Of<LN>("L").iznd = -1;
  Wait(9, m.Number<LN>("L"));
  EXPECT_EQ(ChangeLines(), kFailed);
}

TEST_F(Incremental, UnitWhoseChangeCannotBeLoggedFailsTheRun) {
  m.Put(TPL(m.Table<TPL>().GetCount() + 1));  // the next row is to have this number
  Wait(2, m.Number<UN>("U"));
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.ChangedKv(), 0); }),
            (Lines{"TP:failed at (N) in tpTpl.\n", "TP:failed at (N) in tpChangedKv.\n"}));
}

TEST_F(Incremental, ClosedEndThatWasOnNoLiveSectionAsksForNewIslands) {
  LN& line = m.Of<LN>("L");
  m.Table<LN2>().GetPh(line.ln2).flags |= END_ISOLATED;
  line.ibs = 0;
  bool islandChanged = false;
  bool kvChanged = false;
  EXPECT_EQ(probe.BranchChanged(Kv("A220"), Nd("a"), line, &islandChanged, &kvChanged), 1);
  EXPECT_TRUE(islandChanged);
  EXPECT_TRUE(kvChanged);
  EXPECT_EQ(m.Table<LN2>().GetPh(line.ln2).flags & END_ISOLATED, 0U);
}

TEST_F(Incremental, LoadThatIsSwitchedOffStandsOnTheHead) {
  LD& load = m.Of<LD>("D");
  ASSERT_EQ(load.ibs, SectionOf("c"));
  load.status |= SHUNT_OFF;
  bool islandChanged = false;
  bool kvChanged = false;
  EXPECT_EQ(probe.ShuntChanged(m.Number<LD>("D"), load, &kvChanged, &islandChanged), 1);
  EXPECT_TRUE(kvChanged);
  EXPECT_FALSE(islandChanged) << "only a unit makes an island live";
  EXPECT_EQ(load.ibs, 0);
  EXPECT_NE(load.status & SHUNT_ISOLATED, 0U);
}

TEST_F(Incremental, RowsBehindAFailingOneStayWithIt) {
  m.Of<LD>("D").r_kv_ld = -1;
  Wait(3, m.Number<LD>("D"));
  Wait(2, m.Number<UN>("U"));
  EXPECT_EQ(ChangeLines(), kFailed);
  EXPECT_EQ(Waiting(), 2);
  EXPECT_TRUE(probe.ChangedKvs().empty());
}

TEST_F(Incremental, ListOfLevelsGrowsBeyondTheNumberOfLevels) {
  const std::vector<int> many(100, Kv("A220"));
  probe.SetChangedKvs(many);
  EXPECT_EQ(probe.ChangedKvs(), many);
  EXPECT_EQ(tp.getChangedKVCount(), 100);
}

TEST_F(Incremental, NegativeLevelsArePassedOver) {
  bool islandChanged = true;
  probe.SetAllnew(false);
  probe.SetChangedKvs({-1, Kv("A220"), -7});
  EXPECT_EQ(probe.NodeSort(false), 1);
  EXPECT_EQ(probe.ComponentChanged(&islandChanged), 1);
  EXPECT_FALSE(islandChanged);
  EXPECT_EQ(probe.BslBuild(false), 1);
  EXPECT_EQ(probe.BslBuild(true), 1);
}

TEST_F(Incremental, BreakerWithoutALevelHasNoParallelPath) {
  m.Breaker("C", "A220", "a", "b");
  Run();
  ASSERT_TRUE(probe.FindPassPath(m.Number<CB>("B")));
  m.Of<CB>("B").r_kv_cb = -1;
  EXPECT_FALSE(probe.FindPassPath(m.Number<CB>("B")));
}

TEST_F(Incremental, EmptyHoldingRingLeavesTheFreeSectionsAlone) {
  const std::vector<int> free = probe.FreeSections();
  EXPECT_EQ(probe.BsRestore(), 1);
  EXPECT_EQ(probe.FreeSections(), free);
}

TEST_F(Incremental, HeldSectionsGoInRingOrderInFrontOfTheFreeOnes) {
  std::vector<int> expected;
  int cursor = probe.Global().bs_live;
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(probe.ListInsert(KIND_BS, &cursor), 1);
    BS& section = probe.Section(cursor);
    section.island = 4;
    section.ikv = 1;
    section.status = BS_DEAD;
    section.flags = BS_UNCLAIMED;
    expected.push_back(cursor);
  }
  const std::vector<int> free = probe.FreeSections();
  EXPECT_EQ(probe.BsRestore(), 1);
  for (const int bs : expected) {
    const BS& section = probe.Section(bs);
    EXPECT_EQ(section.island, ISLAND_NOT_PLACED);
    EXPECT_EQ(section.ikv, -1);
    EXPECT_EQ(section.status, 0U);
    EXPECT_EQ(section.flags, 0U);
    EXPECT_EQ(section.prev, -1);
  }
  expected.insert(expected.end(), free.begin(), free.end());
  EXPECT_EQ(probe.FreeSections(), expected);
  EXPECT_TRUE(probe.Ring(probe.Global().bs_live).empty());
}

TEST_F(Incremental, RunAfterAnotherFailedOneIsPutRightByAFullOne) {
  m.Of<LN>("L").iznd = -1;
  Wait(9, m.Number<LN>("L"));
  const Lines lines = ChangeLines();
  EXPECT_EQ(lines, kFailed);
  m.Of<LN>("L").iznd = Nd("c");
  EXPECT_EQ(tp.tpAllnew(), 1);
  m.Db().m_tptraceTable->Clear();
  EXPECT_EQ(tp.tpSetCompStatus("L", 5, false), 1);
  EXPECT_EQ(tp.tpChange(), 1);
}

/// Two zero-impedance branches side by side between a unit and a load.
class BesideZbrs : public TopologyTest {
 protected:
  void Build(const char* first, const char* second) {
    m.Station("A").Kv("A220").Unit("U", "A220", "a").Load("D", "A220", "c");
    m.Breaker("P", "A220", "a", "c").Zbr(first, "P").Breaker("Q", "A220", "a", "c").Zbr(second, "Q");
    Run();
  }
  bool IsDead(const char* load) { return (m.Of<LD>(load).tp_status & SHUNT_DEAD) != 0; }
};

TEST_F(BesideZbrs, OneOfTwoIsEnough) {
  Build("Z1", "Z2");
  ASSERT_EQ(tp.tpSetCompStatus("Z1", 7, false), 1);
  ASSERT_EQ(tp.tpChange(), 1);
  EXPECT_FALSE(IsDead("D"));
}

// The ends sort as Z81i Z81z Z8i Z8z, the branches as Z8 Z81, and the validation leaves the branches with the numbers
// from before the sorting: each names the other's ends.
// Kept: K15.
TEST_F(BesideZbrs, BranchWhoseIdentityBeginsTheOthersMarksTheOthersEnds) {
  Build("Z8", "Z81");
  const auto endsOf = [&](const char* zbr) -> ZBR2& { return m.Table<ZBR2>().GetPh(m.Of<ZBR>(zbr).zbr2); };
  ASSERT_EQ(endsOf("Z8").izbr, m.Number<ZBR>("Z81"));
  ASSERT_EQ(tp.tpSetCompStatus("Z8", 7, false), 1);
  ASSERT_EQ(tp.tpChange(), 1);
  EXPECT_EQ(m.Of<ZBR2>("Z81i").flags & END_ISOLATED, END_ISOLATED);
  EXPECT_EQ(m.Of<ZBR2>("Z8i").flags & END_ISOLATED, 0U);
  EXPECT_TRUE(IsDead("D"));
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_FALSE(IsDead("D"));
}

}  // namespace
}  // namespace dtsdb::test
