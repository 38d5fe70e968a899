// Branch ends, fragments that follow from them, and the bus-section list.
#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

class SectionListTest : public TopologyTest {
 protected:
  /// Stations A with a unit and B with a load:
  ///
  ///     A220  U a ====L==== b D  B220
  void OneLine() {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b");
  }

  /// The same, and a zero-impedance branch Z on breaker q between a and c; all groups are legal:
  ///
  ///     A220  U a --[q+Z]-- c ====L==== b D  B220
  void ZeroImpedance() {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    m.Breaker("q", "A220", "a", "c").Zbr("Z", "q");
    m.Line("L", "DV", "A", "B", "A220", "B220", "c", "b");
  }

  int FragmentCount() {
    int count = 0;
    for (const int bs : probe.Ring()) count += probe.Section(bs).status & BS_ISOLATED ? 1 : 0;
    return count;
  }
};

//   U a 2 ========/ 4     3 b D        end 2 open: 4 is a broken fragment in B220,
//                                      live from a; b is alone and dead
TEST_F(SectionListTest, OpenEndFacingALiveOneStandsOnOneBrokenFragment) {
  OneLine();
  m.Of<LN>("L").status = BranchKind<LN>::kOpen2;
  Run();
  EXPECT_EQ(FragmentCount(), 1);
  const int fragment = m.Of<LN>("L").izbs;
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3, fragment}));
  EXPECT_EQ(Section(fragment).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(Section(fragment).ikv, Kv("B220"));
  EXPECT_EQ(Section(fragment).island, 0);
  EXPECT_EQ(m.Of<LN>("L").ibs, 2);
  EXPECT_EQ(m.Of<LN>("L").tp_status, TP_END2_ISOLATED);
  EXPECT_EQ(m.Of<LN2>("Lz").flags & END_ISOLATED, END_ISOLATED);
  EXPECT_EQ(m.Of<LN2>("Li").flags & END_ISOLATED, 0U);
  EXPECT_EQ(List(),
            "- ST:A KV:A220 BS:2 LN2:Li UN:U ST:B KV:B220 BS:3 LD:D BS:" + std::to_string(fragment) + " LN2:Lz");
  EXPECT_EQ(IslandOf("b"), ISLAND_DEAD);
  EXPECT_EQ(m.Of<LD>("D").tp_status & SHUNT_DEAD, SHUNT_DEAD);
}

//   4 \======== 3 b U      end 1 open
TEST_F(SectionListTest, OpenFromEndStandsOnAFragmentOfItsOwnLevel) {
  OneLine();
  m.Unit("V", "B220", "b");
  m.Of<LN>("L").status = BranchKind<LN>::kOpen1;
  Run();
  const int fragment = m.Of<LN>("L").ibs;
  EXPECT_EQ(Section(fragment).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(Section(fragment).ikv, Kv("A220"));
  EXPECT_EQ(m.Of<LN>("L").tp_status, TP_END1_ISOLATED);
  EXPECT_EQ(probe.Ring(), (std::vector{2, fragment, 3}));
}

TEST_F(SectionListTest, BranchOpenAtBothEndsStandsOnNothing) {
  OneLine();
  m.Of<LN>("L").status = BranchKind<LN>::kOpen1 | BranchKind<LN>::kOpen2;
  Run();
  EXPECT_EQ(FragmentCount(), 0);
  EXPECT_EQ(m.Of<LN>("L").ibs, 0);
  EXPECT_EQ(m.Of<LN>("L").izbs, 0);
  EXPECT_EQ(m.Of<LN>("L").tp_status, 7U);
}

TEST_F(SectionListTest, BranchOutOfServiceStandsOnNothing) {
  OneLine();
  m.Of<LN>("L").status = BranchKind<LN>::kOut;
  Run();
  EXPECT_EQ(FragmentCount(), 0);
  EXPECT_EQ(m.Of<LN>("L").ibs, 0);
  EXPECT_EQ(m.Of<LN>("L").izbs, 0);
  EXPECT_EQ(m.Of<LN>("L").tp_status, 7U);
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 UN:U ST:B KV:B220 BS:3 LD:D");
}

// The four classes of branch differ in their bits only.
template <class Branch>
void OpenEnd2(Branch& branch) {
  branch.status = BranchKind<Branch>::kOpen2;
}

//   U a ==L== b D,  a ==DC==/ f
TEST_F(SectionListTest, DcLineWithAnOpenEnd) {
  OneLine();
  m.DcLine("DC", "DV", "A", "B", "A220", "B220", "a", "b");
  OpenEnd2(m.Of<DLN>("DC"));
  Run();
  EXPECT_EQ(m.Of<DLN>("DC").tp_status, TP_END2_ISOLATED);
  EXPECT_EQ(Section(m.Of<DLN>("DC").izbs).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(m.Of<DLN2>("DCz").flags & END_ISOLATED, END_ISOLATED);
}

//   H220  U h --(X)/ f      2 E l  L110
TEST_F(SectionListTest, WindingWithAnOpenEnd) {
  m.Station("A").Kv("H220").Kv("L110", 110).Unit("U", "H220", "h").Load("E", "L110", "l");
  m.Winding("X", "A", "H220", "L110", "h", "l");
  OpenEnd2(m.Of<XF>("X"));
  Run();
  EXPECT_EQ(m.Of<XF>("X").tp_status, TP_END2_ISOLATED);
  EXPECT_EQ(Section(m.Of<XF>("X").izbs).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(Section(m.Of<XF>("X").izbs).ikv, Kv("L110"));
  EXPECT_EQ(m.Of<XF2>("Xz").flags & END_ISOLATED, END_ISOLATED);
}

//   U a 2 ======== 4 b      b: one end, no device: a fragment, live from a
TEST_F(SectionListTest, NodeThatIsNoSectionMovesToAFragmentBehindALiveBranch) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a");
  m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b");
  Run();
  const int fragment = SectionOf("b");
  EXPECT_EQ(probe.Section(fragment).status, BS_ISOLATED);
  EXPECT_EQ(FragmentCount(), 1);
  EXPECT_EQ(m.Of<LN>("L").izbs, fragment);
  EXPECT_EQ(m.Of<LN>("L").tp_status, TP_END2_ISOLATED);
  EXPECT_EQ(IslandOf("b"), 0);
  EXPECT_TRUE(m.Of<ND>("b").flags & ND_DEAD);
}

//   a ======== b            no section at either end: dead, no fragment
TEST_F(SectionListTest, BranchBetweenNodesThatAreNoSectionsIsDead) {
  m.Station("A").Kv("A220").Station("B").Kv("B220");
  m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b").Bus("M", "A220", "a").Bus("N", "B220", "b");
  Run();
  EXPECT_EQ(FragmentCount(), 0);
  EXPECT_EQ(SectionOf("a"), 0);
  EXPECT_EQ(SectionOf("b"), 0);
  EXPECT_EQ(m.Of<LN>("L").tp_status, 7U);
}

//   (U) a 2 ==== 3 b D      U off: listed under 2, but stands on nothing and gives no life
TEST_F(SectionListTest, UnitThatIsOffIsListedWithoutASection) {
  OneLine();
  m.Of<UN>("U").status = SHUNT_OFF;
  Run();
  EXPECT_EQ(m.Of<UN>("U").ibs, 0);
  EXPECT_EQ(m.Of<UN>("U").status, SHUNT_OFF | SHUNT_ISOLATED);
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 LN2:Li UN:U ST:B KV:B220 BS:3 LN2:Lz LD:D");
  EXPECT_EQ(IslandOf("a"), ISLAND_DEAD);
}

//   U a ==== b D,  E d      d: no branch end
TEST_F(SectionListTest, DeviceOnANodeThatIsNoSectionIsNotListed) {
  OneLine();
  m.Load("E", "A220", "d");
  Run();
  EXPECT_EQ(List().find("LD:E"), std::string::npos);
  EXPECT_EQ(m.Of<LD>("E").ibs, 0);
  EXPECT_EQ(m.Of<LD>("E").tp_status & SHUNT_DEAD, SHUNT_DEAD);
  EXPECT_EQ(m.Of<LD>("E").status & SHUNT_ISOLATED, SHUNT_ISOLATED);
}

//   C110  E d --[q open]-- e V      one base section, no legal group
TEST_F(SectionListTest, BaseSectionWithoutALegalGroupIsListedEmpty) {
  m.Station("C").Kv("C110", 110).Breaker("q", "C110", "d", "e", true).Load("E", "C110", "d").Unit("V", "C110", "e");
  Run();
  EXPECT_EQ(List(), "- ST:C KV:C110 BS:2");
  EXPECT_EQ(Section(2).island, ISLAND_DEAD);
  EXPECT_EQ(Section(2).status, BS_DEAD);
  EXPECT_EQ(Section(2).flags, BS_BASE);
}

//   A220  a --[q]-- c       a with U, L; c with E, L2: opened and closed again
TEST_F(SectionListTest, SplitGroupGetsASectionAtTheEndOfTheLevel) {
  OneLine();
  m.Breaker("q", "A220", "a", "c").Load("E", "A220", "c").Line("L2", "DV", "A", "B", "A220", "B220", "c", "b");
  Run();
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 LN2:Li LN2:L2i LD:E UN:U ST:B KV:B220 BS:3 LN2:L2z LN2:Lz LD:D");
  Open("q");
  ASSERT_EQ(tp.tpAllnew(), 1);
  // E comes before U in the validation, and so c before a in the level.
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 LN2:L2i LD:E BS:5 LN2:Li UN:U ST:B KV:B220 BS:3 LN2:L2z LN2:Lz LD:D");
  Close("q");
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(SectionOf("a"), 2);
  EXPECT_EQ(SectionOf("c"), 2);
}

// The stretches of the changed levels are rebuilt in place; all others stay.
TEST_F(SectionListTest, RebuildTouchesTheChangedLevelsOnly) {
  OneLine();
  Run();
  const std::string list = List();
  const int untouched = probe.Section(3).ibsl;
  probe.SetChangedKvs({Kv("A220")});
  ASSERT_EQ(probe.BslBuild(false), 1);
  EXPECT_EQ(probe.Section(3).ibsl, untouched);
  m.Db().m_bslTable->SetData(&probe.Entry(0), probe.EntryCount(), true);
  EXPECT_EQ(List(), list);
}

// In service and closed, a zero-impedance branch joins two sections.
TEST_F(SectionListTest, ZeroImpedanceBranchJoinsTwoSections) {
  ZeroImpedance();
  Run();
  EXPECT_NE(SectionOf("a"), SectionOf("c"));
  EXPECT_EQ(m.Of<ZBR>("Z").ibs, SectionOf("a"));
  EXPECT_EQ(m.Of<ZBR>("Z").izbs, SectionOf("c"));
  EXPECT_EQ(IslandOf("c"), 0);
}

// End 1 goes by the branch's own status.
TEST_F(SectionListTest, ZeroImpedanceBranchOpenAtEnd1) {
  ZeroImpedance();
  m.Unit("V", "A220", "c");
  m.Of<ZBR>("Z").status = BranchKind<ZBR>::kOpen1;
  Run();
  EXPECT_EQ(Section(m.Of<ZBR>("Z").ibs).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(m.Of<ZBR>("Z").izbs, SectionOf("c"));
}

//   U a 2 --[q+Z]--/ 5    3 c ==L== 4 b D      end 2 open: fragment 5 is made for it, but the end then gets the section
//                                               of c all the same, and nothing leads to 5 any more
// Kept: K37.
TEST_F(SectionListTest, ZeroImpedanceBranchOpenAtEnd2OrphansItsFragment) {
  ZeroImpedance();
  m.Of<ZBR>("Z").status = BranchKind<ZBR>::kOpen2;
  ASSERT_TRUE(m.Validate());
  int result = 1;
  EXPECT_EQ(FailureLines([&] { result = tp.tpAllnew(); }),
            (Lines{"TP:infinite loop-failed at (N) in tpBsSort.\n", "TP:failed at (N) in tpAllnew.\n"}));
  EXPECT_EQ(result, 0);
  EXPECT_EQ(m.Of<ZBR>("Z").izbs, SectionOf("c"));
}

// The status that decides is that of the line of the same number.
// Kept: K37.
TEST_F(SectionListTest, ZeroImpedanceBranchOpenAtEnd2ReadsTheLineOfItsNumber) {
  ZeroImpedance();
  m.Of<ZBR>("Z").status = BranchKind<ZBR>::kOpen2;
  ASSERT_TRUE(m.Validate());
  ASSERT_EQ(m.Number<ZBR>("Z"), m.Number<LN>("L"));
  m.Of<LN>("L").status |= BranchKind<ZBR>::kOpen2;
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(Section(m.Of<ZBR>("Z").izbs).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(m.Of<ZBR>("Z").ibs, SectionOf("a"));
}

// A line's bit alone takes the section of end 2 from a closed zero-impedance branch.
// Kept: K37.
TEST_F(SectionListTest, LineOfTheSameNumberKeepsAClosedEnd2OnTheHead) {
  ZeroImpedance();
  ASSERT_TRUE(m.Validate());
  m.Of<LN>("L").status |= BranchKind<ZBR>::kOpen2;
  ASSERT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(m.Of<ZBR>("Z").izbs, 0);
  EXPECT_EQ(m.Of<ZBR>("Z").tp_status, 0U);
}

//   U a --[q+Z]--/ f   c ==DC== b D     no line at all: beyond the LN table the bit is clear
// Kept: K37.
TEST_F(SectionListTest, ZeroImpedanceBranchBeyondTheLinesReadsAClearBit) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
  m.Breaker("q", "A220", "a", "c").Zbr("Z", "q");
  m.DcLine("DC", "DV", "A", "B", "A220", "B220", "c", "b");
  m.Of<ZBR>("Z").status = BranchKind<ZBR>::kOpen2;
  ASSERT_TRUE(m.Validate());
  m.Table<LN>().SetSize(0);
  int result = 1;
  const Lines lines = FailureLines([&] { result = tp.tpAllnew(); });
  EXPECT_EQ(result, 0);
  ASSERT_GE(lines.size(), 3U);
  EXPECT_TRUE(lines[0].starts_with("ASSERT: \"nPh >= 0 && nPh < m_size\" in template ("));
  EXPECT_EQ(lines[lines.size() - 2], "TP:infinite loop-failed at (N) in tpBsSort.\n");
  EXPECT_EQ(lines.back(), "TP:failed at (N) in tpAllnew.\n");
}

TEST_F(SectionListTest, BuildFailsOnALevelThatIsNotListed) {
  OneLine();
  m.Kv("E35", 35);
  Run();
  probe.SetChangedKvs({Kv("E35")});
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BslBuild(false), 0); }), (Lines{"TP:failed at (N) in tpBslBuild.\n"}));
}

TEST_F(SectionListTest, BuildFailsWhenTheNextLevelHasNoSection) {
  OneLine();
  Run();
  m.Of<KV>("B220").ibs = -1;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BslBuild(false), 0); }), (Lines{"TP:failed at (N) in tpBslBuild.\n"}));
}

TEST_F(SectionListTest, BuildFailsOnARingThatRunsInACircleOrOutOfTheArray) {
  OneLine();
  Run();
  for (const int next : {2, probe.SectionCount(), -7}) {
    probe.Section(2).next = next;
    EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BslBuild(false), 0); }), (Lines{"TP:failed at (N) in tpBslBuild.\n"}));
  }
}

TEST_F(SectionListTest, BuildFailsOnAListThatLeadsOutOfTheArray) {
  OneLine();
  Run();
  for (const int next : {probe.EntryCount(), -7}) {
    probe.Entry(m.Of<KV>("A220").ibsl).next = next;
    EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BslBuild(false), 0); }), (Lines{"TP:failed at (N) in tpBslBuild.\n"}));
  }
}

TEST_F(SectionListTest, NothingHangsOnASectionWithoutAnEntry) {
  OneLine();
  Run();
  probe.Section(2).ibsl = -1;
  UN& unit = m.Of<UN>("U");
  EXPECT_EQ(FailureLines([&] {
              EXPECT_EQ(probe.BslShunt(Kv("A220"), 0, Nd("a"), &unit.ibs, KIND_UN, &unit.status, &unit.tp_status), 0);
            }),
            (Lines{"TP:failed at (N) in tpBslShunt.\n"}));
  LN& line = m.Of<LN>("L");
  EXPECT_EQ(FailureLines([&] {
              EXPECT_EQ(probe.BslBranch(Kv("A220"), Nd("a"), 0, KIND_LN2, line.ind, line.iznd, &line.ibs, &line.izbs),
                        0);
            }),
            (Lines{"TP:failed at (N) in tpBslBranch.\n"}));
}

}  // namespace
}  // namespace dtsdb::test
