// Islands, what is live, the status that follows, and the references.
#include "topology/internal/islands.h"
#include "tests/topology/results.h"
#include "topology/internal/component_change.h"
#include "topology/internal/island_update.h"
#include "topology/internal/node_pass.h"
#include "topology/internal/section_list.h"
#include "topology/internal/section_store.h"
#include "topology/internal/status.h"

namespace dtsdb::test {
namespace {

class IslandsTest : public TopologyTest {
 protected:
  /// Two pairs of stations, each with a unit and a load:
  ///
  ///     A220  U a ====L==== b D  B220        sections 2, 3: island 0
  ///     C220  V c ====M==== d E  D220        sections 4, 5: island 1
  void TwoIslands() {
    OneIsland();
    m.Station("C").Kv("C220").Station("D").Kv("D220").Unit("V", "C220", "c").Load("E", "D220", "d");
    m.Line("M", "DV", "C", "D", "C220", "D220", "c", "d");
  }
  void OneIsland() {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b");
  }
  /// The islands by section of the work array, sections from 2 on.
  std::vector<int> Islands(int last) {
    std::vector<int> islands;
    for (int bs = 2; bs <= last; ++bs) islands.push_back(probe.Section(bs).island);
    return islands;
  }
  tTable<ISLAND>& IslandTable() { return m.Table<ISLAND>(); }
  tTable<TPL>& Log() { return m.Table<TPL>(); }
};

//   a === b D,E        no unit
TEST_F(IslandsTest, NetworkWithoutUnitsIsDead) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Load("C", "A220", "a").Load("D", "B220", "b").Cap("E", "B220", "b");
  m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b").Bus("M", "A220", "a");
  Run();
  EXPECT_EQ(IslandTable().GetCount(), 0);
  EXPECT_EQ(Islands(3), (std::vector{-1, -1}));
  EXPECT_TRUE(Section(2).status & BS_DEAD);
  EXPECT_EQ(m.Of<LD>("C").tp_status, SHUNT_DEAD);
  EXPECT_EQ(m.Of<LD>("D").tp_status, SHUNT_DEAD);
  EXPECT_EQ(m.Of<CP>("E").tp_status, SHUNT_DEAD);
  EXPECT_EQ(m.Of<BUS>("M").tp_status, SHUNT_DEAD);
  EXPECT_EQ(m.Of<LN>("L").tp_status, TP_BOTH_DEAD);
  int result = -1;
  EXPECT_EQ(Printed([&] { result = tp.tpSetRefUN(); }), "网络拓扑没有成功或者无活岛可用!\n");
  EXPECT_EQ(result, 0);
}

//   (U) a === b D
TEST_F(IslandsTest, UnitThatIsOffMakesNothingLive) {
  OneIsland();
  m.Of<UN>("U").status = SHUNT_OFF;
  Run();
  EXPECT_EQ(IslandTable().GetCount(), 0);
  EXPECT_EQ(IslandOf("b"), ISLAND_DEAD);
  EXPECT_EQ(m.Of<LD>("D").tp_status, SHUNT_DEAD);
}

//   U a === b D        a is not known to carry a unit, so that its group is no section: U stands on a fragment
TEST_F(IslandsTest, UnitOnAFragmentMakesNothingLive) {
  OneIsland();
  ASSERT_TRUE(m.Validate());
  m.Of<ND>("a").flags &= ~ND_HAS_UN;
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(probe.Section(SectionOf("a")).status & BS_ISOLATED, BS_ISOLATED);
  EXPECT_EQ(m.Of<UN>("U").ibs, SectionOf("a"));
  EXPECT_EQ(m.Of<UN>("U").status & SHUNT_ISOLATED, SHUNT_ISOLATED);
  EXPECT_EQ(IslandTable().GetCount(), 0);
}

TEST_F(IslandsTest, LiveIslandsGetNumbersInRingOrder) {
  TwoIslands();
  Run();
  EXPECT_EQ(Islands(5), (std::vector{0, 0, 1, 1}));
  ASSERT_EQ(IslandTable().GetCount(), 2);
  EXPECT_EQ(IslandTable()[1].id, 1);
  EXPECT_EQ(IslandTable()[1].ref_ibs, -1);
  EXPECT_EQ(IslandTable()[1].ref_un, -1);
  EXPECT_FALSE(IslandTable()[1].ref_id.isNull());
  EXPECT_FALSE(Section(2).status & BS_DEAD);
}

// The sections of C and D bore 0 last time, those of A and B, first in the ring, bore 1.
TEST_F(IslandsTest, IslandKeepsItsNumberWhateverItsPlaceInTheRing) {
  TwoIslands();
  Run();
  for (const int bs : {2, 3}) probe.Section(bs).island = 1;
  for (const int bs : {4, 5}) probe.Section(bs).island = 0;
  bool changed = true;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_FALSE(changed);
  EXPECT_EQ(Islands(5), (std::vector{1, 1, 0, 0}));
}

// Both islands bore 7: nobody bears 0 when 0 is due.
TEST_F(IslandsTest, NumbersThatNobodyBoreAreGivenInRingOrder) {
  TwoIslands();
  Run();
  for (const int bs : {2, 3, 4, 5}) probe.Section(bs).island = 7;
  bool changed = false;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_TRUE(changed);
  EXPECT_EQ(Islands(5), (std::vector{0, 0, 1, 1}));
}

TEST_F(IslandsTest, FullRunLogsNothing) {
  TwoIslands();
  Run();
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(Log().GetCount(), 0);
  EXPECT_EQ(tp.tpBsChanged(), 0);
}

//   U a 2 === 3 b D    U lost and back again
TEST_F(IslandsTest, IncrementalRunLogsTheSwitchBetweenLiveAndDead) {
  OneIsland();
  Run();
  probe.SetAllnew(false);
  probe.SetChangedKvs({Kv("B220")});
  m.Of<UN>("U").status |= SHUNT_ISOLATED;
  bool changed = false;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  ASSERT_EQ(Log().GetCount(), 2);
  for (const int row : {0, 1}) {
    const int bs = 2 + row;
    EXPECT_EQ(Log()[row].event, Id("BSDEAD"));
    EXPECT_EQ(Log()[row].kind, KIND_BS);
    EXPECT_EQ(Log()[row].name, QString::number(bs));
    EXPECT_EQ(Log()[row].n2, bs);
    EXPECT_EQ(Log()[row].n3, bs);
    EXPECT_EQ(Log()[row].n1, 0);
  }
  EXPECT_EQ(probe.ChangedKvs(), (std::vector{Kv("B220"), Kv("A220")}));
  EXPECT_EQ(Islands(3), (std::vector{-1, -1}));

  m.Of<UN>("U").status &= ~SHUNT_ISOLATED;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  ASSERT_EQ(Log().GetCount(), 4);
  EXPECT_EQ(Log()[2].event, Id("BSLIVE"));
  EXPECT_EQ(Log()[2].n1, static_cast<int>(BS_DEAD));
  EXPECT_EQ(Log()[3].event, Id("BSLIVE"));
  EXPECT_EQ(probe.ChangedKvs().size(), 2U);
  EXPECT_EQ(probe.Section(2).status, 0U);
}

TEST_F(IslandsTest, NewSectionIsNoEvent) {
  TwoIslands();
  Run();
  probe.SetAllnew(false);
  m.Of<UN>("V").status |= SHUNT_ISOLATED;
  for (const int bs : {2, 3, 4, 5}) probe.Section(bs).island = ISLAND_NOT_PLACED;
  bool changed = true;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_EQ(Log().GetCount(), 0);
  EXPECT_FALSE(changed);
  EXPECT_EQ(Islands(5), (std::vector{0, 0, -1, -1}));
}

// A dead section that stays dead keeps its status bits as they are.
TEST_F(IslandsTest, SectionThatStaysDeadIsLeftAlone) {
  OneIsland();
  m.Of<UN>("U").status = SHUNT_OFF;
  Run();
  probe.SetAllnew(false);
  probe.Section(2).status = 0;
  bool changed = true;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_EQ(probe.Section(2).status, 0U);
  EXPECT_EQ(Log().GetCount(), 0);
}

TEST_F(IslandsTest, SectionWithoutAListEntryIsADeadIslandOfOne) {
  OneIsland();
  Run();
  probe.Section(2).ibsl = -1;
  bool changed = false;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_EQ(probe.Section(2).island, ISLAND_DEAD);
  EXPECT_EQ(probe.Section(3).island, ISLAND_DEAD);
}

TEST_F(IslandsTest, RingThatRunsInACircleOrOutOfTheArrayFailsTheSort) {
  OneIsland();
  Run();
  for (const int next : {2, probe.SectionCount(), -7}) {
    probe.Section(2).next = next;
    bool changed = false;
    EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsSort(&changed), 0); }), (Lines{"TP:failed at (N) in tpBsSort.\n"}));
  }
}

// The table is emptied before a sort; its slots stay.
TEST_F(IslandsTest, IslandTableKeepsItsSlotsWhenItsLastIslandDies) {
  OneIsland();
  Run();
  const int size = IslandTable().GetSize();
  ASSERT_GT(size, 0);
  m.Of<UN>("U").status = SHUNT_OFF;
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(IslandTable().GetCount(), 0);
  EXPECT_EQ(IslandTable().GetSize(), size);
}

TEST_F(IslandsTest, RefusedLogRowFailsTheSort) {
  OneIsland();
  Run();
  m.Put(TPL(1));  // the next row is to have this number
  probe.SetAllnew(false);
  m.Of<UN>("U").status |= SHUNT_ISOLATED;
  bool changed = false;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsSort(&changed), 0); }),
            (Lines{"TP:failed at (N) in tpTpl.\n", "TP:failed at (N) in tpBsSort.\n"}));
}

TEST_F(IslandsTest, BusThatChangedSectionIsLoggedInAnIncrementalRun) {
  OneIsland();
  m.Bus("M", "A220", "a").Bus("N", "B220", "b");
  Run();
  probe.SetAllnew(false);
  m.Of<ND>("b").ibs = 2;
  ASSERT_EQ(probe.UpdateStatus(), 1);
  ASSERT_EQ(Log().GetCount(), 1);
  EXPECT_EQ(Log()[0].kind, KIND_BUS);
  EXPECT_EQ(Log()[0].name, Id("N"));
  EXPECT_EQ(Log()[0].n3, 3);
  EXPECT_EQ(Log()[0].n2, 2);
  EXPECT_EQ(Log()[0].event, Id("BS"));
  EXPECT_EQ(m.Of<BUS>("N").ibs, 2);
}

TEST_F(IslandsTest, RefusedLogRowOfWhatComesToLifeFailsTheSort) {
  OneIsland();
  m.Of<UN>("U").status |= SHUNT_OFF;
  Run();
  ASSERT_EQ(Islands(3), (std::vector{ISLAND_DEAD, ISLAND_DEAD}));
  m.Of<UN>("U").status &= ~(SHUNT_OFF | SHUNT_ISOLATED);
  m.Put(TPL(Log().GetCount() + 1));  // the next row is to have this number
  probe.SetAllnew(false);
  bool changed = false;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsSort(&changed), 0); }),
            (Lines{"TP:failed at (N) in tpTpl.\n", "TP:failed at (N) in tpBsSort.\n"}));
}

TEST_F(IslandsTest, OnlyNumbersOfLiveIslandsCountAsChanged) {
  OneIsland();
  m.Of<UN>("U").status |= SHUNT_OFF;
  Run();
  m.Of<UN>("U").status &= ~(SHUNT_OFF | SHUNT_ISOLATED);
  bool changed = false;
  ASSERT_EQ(probe.BsSort(&changed), 1);
  EXPECT_EQ(Islands(3), (std::vector{0, 0}));
  EXPECT_FALSE(changed) << "they were dead before";
}

TEST_F(IslandsTest, RefusedLogRowFailsTheStatus) {
  OneIsland();
  m.Bus("M", "A220", "a");
  Run();
  m.Put(TPL(1));
  probe.SetAllnew(false);
  m.Of<BUS>("M").ibs = 3;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.UpdateStatus(), 0); }),
            (Lines{"TP:failed at (N) in tpTpl.\n", "TP:failed at (N) in tpUpdateStatus.\n"}));
}

TEST_F(IslandsTest, RefusedLogRowFailsTheStatusOfTheLevelsOfARun) {
  OneIsland();
  m.Bus("M", "A220", "a");
  Run();
  const internal::State before = probe.Lend();
  before.arrays->changes.Begin(before.network);
  before.arrays->changes.levels.Add(Kv("A220"));
  m.Put(TPL(1));
  probe.SetAllnew(false);
  m.Of<BUS>("M").ibs = 3;
  EXPECT_EQ(FailureLines([&] { EXPECT_FALSE(internal::EquipmentStatus(probe.Lend()).UpdateChanged()); }),
            (Lines{"TP:failed at (N) in tpTpl.\n", "TP:failed at (N) in tpUpdateStatus.\n"}));
}

//   U a --[q]-- e --[r open]-- f      f: nothing on it
TEST_F(IslandsTest, BreakersShowTheSectionsOfTheirSides) {
  OneIsland();
  m.Breaker("q", "A220", "a", "e").Breaker("r", "A220", "e", "f", true);
  Run();
  EXPECT_EQ(m.Of<CB>("q").ibs, 2);
  EXPECT_EQ(m.Of<CB>("q").izbs, 2);
  EXPECT_EQ(m.Of<CB>("q").tp_status, 0U);
  EXPECT_EQ(m.Of<CB>("r").ibs, 2);
  EXPECT_EQ(m.Of<CB>("r").izbs, 0);
  EXPECT_EQ(m.Of<CB>("r").tp_status, TP_END2_ISOLATED);
}

// References

class ReferenceTest : public IslandsTest {};

TEST_F(ReferenceTest, UnitMarkedAsReferenceIsTaken) {
  OneIsland();
  m.Unit("V", "B220", "b");
  m.Of<UN>("V").ref = 0;
  m.Of<UN>("V").a = 0.5F;
  m.Of<UN>("U").status = UN_REF_CHOSEN;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 0);
  EXPECT_EQ(IslandTable()[0].ref_un, m.Number<UN>("V"));
  EXPECT_EQ(IslandTable()[0].ref_ibs, 3);
  EXPECT_EQ(IslandTable()[0].ref_a, 0.5F);
  EXPECT_EQ(IslandTable()[0].ref_id, Id("V"));
  EXPECT_EQ(m.Of<UN>("U").status & UN_REF_CHOSEN, 0U);
}

TEST_F(ReferenceTest, FirstMarkedUnitWinsAndUnitsThatAreOffDont) {
  OneIsland();
  m.Unit("T", "A220", "a").Unit("V", "B220", "b");
  m.Of<UN>("T").ref = m.Of<UN>("U").ref = m.Of<UN>("V").ref = 0;
  m.Of<UN>("T").status = SHUNT_OFF;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 0);
  EXPECT_EQ(IslandTable()[0].ref_id, Id("U"));
}

// A load gives the island its section only, and with it no search for a unit.
// Kept: K39.
TEST_F(ReferenceTest, LoadMarkedAsReferenceGivesTheSectionOnly) {
  OneIsland();
  m.Of<LD>("D").ref = 0;
  m.Of<UN>("U").pmax = 100;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 0);
  EXPECT_EQ(IslandTable()[0].ref_ibs, 3);
  EXPECT_EQ(IslandTable()[0].ref_un, -1);
  EXPECT_EQ(m.Of<UN>("U").status & UN_REF_CHOSEN, 0U);
  EXPECT_EQ(m.Of<UN>("U").ref, -1);
}

TEST_F(ReferenceTest, GreatestMarginIsChosenAndTheLaterUnitWinsATie) {
  TwoIslands();
  m.Unit("U1", "A220", "a").Unit("U2", "B220", "b").Unit("V1", "C220", "c");
  m.Of<UN>("U").pmax = 100;
  m.Of<UN>("U1").pmax = 300;
  m.Of<UN>("U1").pcur = 100;
  m.Of<UN>("U2").pmax = 200;
  m.Of<UN>("V").pmax = 30;
  m.Of<UN>("V1").pmax = 20;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 2);
  EXPECT_EQ(IslandTable()[0].ref_id, Id("U2"));
  EXPECT_EQ(IslandTable()[0].ref_ibs, 3);
  EXPECT_EQ(IslandTable()[1].ref_id, Id("V"));
  EXPECT_EQ(m.Of<UN>("U2").ref, 0);
  EXPECT_EQ(m.Of<UN>("U2").status & UN_REF_CHOSEN, UN_REF_CHOSEN);
  EXPECT_EQ(m.Of<UN>("U1").ref, -1);
}

// As a float, the margin of a great unit doesn't know a single megawatt: a tie, which the later unit wins.
TEST_F(ReferenceTest, MarginsAreComparedAsFloats) {
  OneIsland();
  m.Unit("V", "B220", "b");
  m.Of<UN>("U").pmax = 1.0e8F;
  m.Of<UN>("V").pmax = 1.0e8F;
  m.Of<UN>("V").pcur = 1.0F;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 1);
  EXPECT_EQ(IslandTable()[0].ref_id, Id("V"));
}

TEST_F(ReferenceTest, NegativeMarginCantWin) {
  OneIsland();
  m.Of<UN>("U").pmax = 100;
  m.Of<UN>("U").pcur = 101;
  Run();
  EXPECT_EQ(tp.tpSetRefUN(), 0);
  EXPECT_EQ(IslandTable()[0].ref_ibs, -1);
}

// A parallel path

class PassPathTest : public IslandsTest {
 protected:
  ///     a --[q]-- b        with [r] beside [q]
  void TwoBreakers() {
    OneIsland();
    m.Breaker("q", "A220", "a", "e").Breaker("r", "A220", "e", "a");
  }
};

TEST_F(PassPathTest, ClosedBreakerBesideIsAPath) {
  TwoBreakers();
  Run();
  EXPECT_TRUE(probe.FindPassPath(m.Number<CB>("q")));
  Open("q");
  EXPECT_TRUE(probe.FindPassPath(m.Number<CB>("q")));
}

TEST_F(PassPathTest, OpenBreakerBesideIsNone) {
  TwoBreakers();
  Run();
  Open("r");
  EXPECT_FALSE(probe.FindPassPath(m.Number<CB>("q")));
  Open("q");
  EXPECT_FALSE(probe.FindPassPath(m.Number<CB>("q")));
}

//   a --[q]-- e        a --[s]-- f --[t+Z]-- e
TEST_F(PassPathTest, BreakerWithAZeroImpedanceBranchCounts) {
  OneIsland();
  m.Breaker("q", "A220", "a", "e").Breaker("s", "A220", "a", "f").Breaker("t", "A220", "f", "e").Zbr("Z", "t");
  Run();
  EXPECT_TRUE(probe.FindPassPath(m.Number<CB>("q")));
  Open("s");
  EXPECT_FALSE(probe.FindPassPath(m.Number<CB>("q")));
}

TEST_F(PassPathTest, NextRunIsNotDisturbedByMarksLeft) {
  TwoBreakers();
  m.Breaker("s", "A220", "e", "f", true);
  Run();
  Open("r");
  ASSERT_FALSE(probe.FindPassPath(m.Number<CB>("q")));
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(SectionOf("e"), 2);
}

/// Stations A and B, each with a unit and a load, joined by the lines L and M; station C with a load hangs on B.
class FollowedIslands : public TopologyTest {
 protected:
  void SetUp() override {
    for (const char* name : {"A", "B"}) {
      const std::string level = std::string("K") + name;
      m.Station(name).Kv(level.c_str()).Unit((std::string("U") + name).c_str(), level.c_str(), name);
      m.Load((std::string("D") + name).c_str(), level.c_str(), name);
    }
    m.Station("C").Kv("KC").Load("DC", "KC", "C");
    m.Line("L", "DV", "A", "B", "KA", "KB", "A", "B").Line("M", "DV", "A", "B", "KA", "KB", "A", "B");
    m.Line("N", "DV", "B", "C", "KB", "KC", "B", "C").Line("O", "DV", "B", "C", "KB", "KC", "B", "C");
    Run();
    Put(KIND_LN, "L", 0);  // a run from which the islands can be followed
  }

  /// Gives a line or unit another state and does the stages of a run. Returns what following the islands came to.
  internal::IslandOutcome Put(int kind, const char* id, u32 status) {
    if (kind == KIND_LN) {
      m.Of<LN>(id).status = status;
    } else {
      m.Of<UN>(id).status = status;
    }
    probe.SetChangedKvs({Kv("KA"), Kv("KB"), Kv("KC")});
    const internal::State state = probe.Lend();
    internal::Changes& changes = state.arrays->changes;
    changes.Begin(state.network);
    const internal::IslandUpdate islands(state);
    islands.Prepare();
    bool changed = false;
    EXPECT_TRUE(internal::NodePass(state).Sort(false));
    EXPECT_TRUE(internal::ComponentChange(state).FollowAll(&changed));
    EXPECT_TRUE(internal::SectionList(state).Build(false));
    const internal::IslandOutcome outcome = islands.Follow();
    bool renumbered = false;
    EXPECT_TRUE(outcome == internal::IslandOutcome::kDone || internal::Islands(state).Sort(&renumbered));
    state.Sections().GiveBackHeld();
    islands.Close(true);
    const internal::EquipmentStatus equipment(state);
    EXPECT_TRUE(changes.all ? equipment.Update() : equipment.UpdateChanged());
    const internal::SectionStore store(state);
    EXPECT_TRUE(changes.all ? store.NameAndStore() : store.NameAndStoreChanged());
    return outcome;
  }

  int Island(const char* node) { return probe.Section(SectionOf(node)).island; }
};

// Where the search gave up the islands would be right all the same, but all sections had to be looked at.
TEST_F(FollowedIslands, AreFollowedWhereBranchesGoAndComeAndWhereAUnitGoes) {
  using internal::IslandOutcome;
  EXPECT_EQ(Put(KIND_LN, "L", BranchKind<LN>::kOut), IslandOutcome::kDone);
  EXPECT_EQ(Put(KIND_LN, "L", 0), IslandOutcome::kDone);
  EXPECT_EQ(Put(KIND_UN, "UB", SHUNT_OFF), IslandOutcome::kDone) << "A supplies B";
  EXPECT_EQ(Put(KIND_UN, "UB", 0), IslandOutcome::kDone);
  EXPECT_EQ(Island("A"), Island("C"));
}

}  // namespace
}  // namespace dtsdb::test
