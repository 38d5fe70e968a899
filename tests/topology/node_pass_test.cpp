// The list primitives and the node pass: which nodes are one point, which groups are sections, who keeps which number.
#include <algorithm>

#include "include/chain.h"
#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

class NodePassTest : public TopologyTest {
 protected:
  /// Stations A and B, joined by three lines. Breakers b1, b2 split A220 into up to three groups, all legal:
  ///
  ///     A220  a --[b1]-- b --[b2]-- c        B220
  ///           | |        | |        | |
  ///           U L1       D L2       E L3 ==== z
  void ThreeGroups() {
    m.Station("A").Kv("A220").Station("B").Kv("B220");
    m.Breaker("b1", "A220", "a", "b").Breaker("b2", "A220", "b", "c");
    m.Unit("U", "A220", "a").Load("D", "A220", "b").Load("E", "A220", "c").Load("F", "B220", "z");
    m.Line("L1", "DV", "A", "B", "A220", "B220", "a", "z").Line("L2", "DV", "A", "B", "A220", "B220", "b", "z");
    m.Line("L3", "DV", "A", "B", "A220", "B220", "c", "z");
  }

  /// Stations A and B with one line. Node a of A220 carries one end of it; what else is on the level is the test's.
  void OneLine() {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Load("F", "B220", "z");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "z");
  }

  bool IsLegal(const char* node) { return !(m.Of<ND>(node).flags & ND_DEAD); }

  /// The nodes of a level in list order.
  std::vector<int> NodesOf(const char* kv) {
    std::vector<int> nodes;
    for (const R_KV_ND& row : Chain(m.Table<R_KV_ND>(), m.Of<KV>(kv).r_kv_nd)) nodes.push_back(row.ind);
    return nodes;
  }
  int FirstNodeOf(const char* kv) { return NodesOf(kv).front(); }
  int SectionOfNumber(int nd) { return m.Table<ND>().GetPh(nd).ibs; }
};

TEST_F(NodePassTest, InsertOfAnUnknownKindGives1AndChangesNothing) {
  OneLine();
  Run();
  const auto free = probe.FreeSections();
  const int freeEntry = probe.Global().bsl_free;
  for (const int kind : {-1, 0, 1, 4, 46}) {
    int cursor = 0;
    EXPECT_EQ(probe.ListInsert(kind, &cursor), 1);
    EXPECT_EQ(cursor, 0);
  }
  EXPECT_EQ(probe.FreeSections(), free);
  EXPECT_EQ(probe.Global().bsl_free, freeEntry);
}

TEST_F(NodePassTest, InsertBehindAnEntryAtTheEndOfAChainIsRefused) {
  OneLine();
  Run();
  const auto free = probe.FreeSections();
  int cursor = free.back();
  ASSERT_EQ(probe.Section(cursor).next, -1);
  EXPECT_EQ(probe.ListInsert(2, &cursor), 0);
  EXPECT_EQ(cursor, free.back());
  EXPECT_EQ(probe.FreeSections(), free);
}

TEST_F(NodePassTest, InsertBehindAFreeEntryIsRefused) {
  OneLine();
  Run();
  const auto free = probe.FreeSections();
  int cursor = free[1];
  EXPECT_EQ(probe.ListInsert(2, &cursor), 0);
  EXPECT_EQ(probe.FreeSections(), free);
}

TEST_F(NodePassTest, InsertFromAnEmptyFreeListIsRefused) {
  OneLine();
  Run();
  probe.KeepFreeSections(0);
  int cursor = 0;
  EXPECT_EQ(probe.ListInsert(2, &cursor), 0);
  EXPECT_EQ(cursor, 0);
  EXPECT_EQ(probe.Global().bs_free, -1);
}

TEST_F(NodePassTest, InsertAndDeleteOutsideTheArrayChangeNothing) {
  OneLine();
  Run();
  const auto free = probe.FreeSections();
  for (int cursor : {-1, probe.SectionCount()}) {
    EXPECT_EQ(probe.ListInsert(2, &cursor), 0);
    EXPECT_EQ(probe.ListDelete(2, &cursor), 1);
  }
  EXPECT_EQ(probe.FreeSections(), free);
}

TEST_F(NodePassTest, DeleteMovesTheCursorOnAndInsertTakesTheSameEntryAgain) {
  OneLine();
  Run();
  ASSERT_EQ(probe.Ring(), (std::vector{2, 4, 3}));  // 4 is the fragment of a
  int cursor = 2;
  EXPECT_EQ(probe.ListDelete(2, &cursor), 1);
  EXPECT_EQ(cursor, 4);
  EXPECT_EQ(probe.Ring(), (std::vector{4, 3}));
  EXPECT_EQ(probe.Global().bs_free, 2);
  EXPECT_EQ(probe.Section(2).prev, -1);
  cursor = 3;
  EXPECT_EQ(probe.ListInsert(2, &cursor), 1);
  EXPECT_EQ(cursor, 2);
  EXPECT_EQ(probe.Ring(), (std::vector{4, 3, 2}));
}

TEST_F(NodePassTest, ListEntriesAreTakenAndGivenBackLikeSectionsAndKeepWhatTheyHeld) {
  OneLine();
  Run();
  const int taken = probe.Global().bsl_free;
  const int behind = probe.Entry(0).next;
  int cursor = 0;
  ASSERT_EQ(probe.ListInsert(3, &cursor), 1);
  EXPECT_EQ(cursor, taken);
  EXPECT_EQ(probe.Entry(0).next, taken);
  EXPECT_EQ(probe.Entry(taken).next, behind);
  EXPECT_EQ(probe.Entry(behind).prev, taken);
  probe.Entry(taken).kind = KIND_LD;
  probe.Entry(taken).ref = 5;
  ASSERT_EQ(probe.ListDelete(3, &cursor), 1);
  EXPECT_EQ(cursor, behind);
  EXPECT_EQ(probe.Global().bsl_free, taken);
  EXPECT_EQ(probe.Entry(taken).kind, KIND_LD);
  EXPECT_EQ(probe.Entry(taken).ref, 5);
}

//   a --- L ---- z F       a: one end, no device
TEST_F(NodePassTest, OneBranchEndWithoutADeviceIsNotLegal) {
  OneLine();
  Run();
  EXPECT_FALSE(IsLegal("a"));
  EXPECT_TRUE(IsLegal("z"));
}

//   a --- L ---- z F       d: devices, no branch end
//   d with U, D
TEST_F(NodePassTest, DevicesWithoutABranchEndAreNotLegal) {
  OneLine();
  m.Unit("U", "A220", "d").Load("D", "A220", "d").Cap("C", "A220", "d");
  Run();
  EXPECT_FALSE(IsLegal("d"));
  EXPECT_EQ(SectionOf("d"), 0);
}

//   a --- L ---- z F       i: a bus and nothing else
//   i with bus M
TEST_F(NodePassTest, NodeWithNothingOnItIsNotLegal) {
  OneLine();
  m.Bus("M", "A220", "i");
  Run();
  EXPECT_FALSE(IsLegal("i"));
  EXPECT_EQ(SectionOf("i"), 0);
}

//   C a --- L ---- z F     a: one end and a capacitor
TEST_F(NodePassTest, OneBranchEndWithACapacitorIsLegal) {
  OneLine();
  m.Cap("C", "A220", "a");
  Run();
  EXPECT_TRUE(IsLegal("a"));
  EXPECT_EQ(SectionOf("a"), 2);
}

//   a === L, L2 === z F    a: two ends, no device
TEST_F(NodePassTest, TwoBranchEndsWithoutADeviceAreLegal) {
  OneLine();
  m.Line("L2", "DV", "A", "B", "A220", "B220", "a", "z");
  Run();
  EXPECT_TRUE(IsLegal("a"));
}

//   a === L, L2 === z F    L, L2 out of service: the count takes in all ends of the model
TEST_F(NodePassTest, BranchEndsOutOfServiceCount) {
  OneLine();
  m.Line("L2", "DV", "A", "B", "A220", "B220", "a", "z");
  m.Of<LN>("L").status = m.Of<LN>("L2").status = BranchKind<LN>::kOut;
  Run();
  EXPECT_TRUE(IsLegal("a"));
}

//   a --[b1+Z]-- b        two base sections and two sections, joined by the branch Z
TEST_F(NodePassTest, ClosedBreakerWithAZeroImpedanceBranchMergesNothing) {
  ThreeGroups();
  m.Zbr("Z", "b1");
  Run();
  EXPECT_NE(m.Of<ND>("a").ibs0, m.Of<ND>("b").ibs0);
  EXPECT_NE(SectionOf("a"), SectionOf("b"));
  EXPECT_EQ(SectionOf("b"), SectionOf("c"));
  EXPECT_EQ(IslandOf("a"), IslandOf("b"));
}

//   a --[b1 open]-- b --[b2]-- c      one base section, two sections
TEST_F(NodePassTest, OpenBreakerMergesBaseSectionsOnly) {
  ThreeGroups();
  Open("b1");
  Run();
  EXPECT_EQ(m.Of<ND>("a").ibs0, m.Of<ND>("b").ibs0);
  EXPECT_NE(SectionOf("a"), SectionOf("b"));
  EXPECT_EQ(SectionOf("b"), SectionOf("c"));
}

TEST_F(NodePassTest, NodeWithoutABreakerIsARingOfItself) {
  OneLine();
  Run();
  EXPECT_EQ(m.Of<ND>("z").next, Nd("z"));
  EXPECT_EQ(m.Of<ND>("a").next, Nd("a"));
}

TEST_F(NodePassTest, ClosedBreakersMakeOneRingOfNodes) {
  ThreeGroups();
  Run();
  std::vector<int> ring;
  int nd = Nd("a");
  do {
    ring.push_back(nd);
    nd = m.Table<ND>().GetPh(nd).next;
  } while (nd != Nd("a") && ring.size() < 10);
  std::sort(ring.begin(), ring.end());
  EXPECT_EQ(ring, (std::vector{Nd("a"), Nd("b"), Nd("c")}));
}

TEST_F(NodePassTest, NegativeVoltageLevelIsPassedOver) {
  ThreeGroups();
  Run();
  probe.SetChangedKvs({-Kv("B220"), -7});
  EXPECT_EQ(probe.NodeSort(true), 1);
}

//   a --[b1 open]-- b --[b2 open]-- c
TEST_F(NodePassTest, SecondPassGivesTheSameSections) {
  ThreeGroups();
  Open("b1");
  Open("b2");
  Run();
  const std::vector<int> sections = {SectionOf("a"), SectionOf("b"), SectionOf("c"), SectionOf("z")};
  const auto ring = probe.Ring();
  ASSERT_EQ(probe.NodeSort(true), 1);
  EXPECT_EQ((std::vector{SectionOf("a"), SectionOf("b"), SectionOf("c"), SectionOf("z")}), sections);
  EXPECT_EQ(probe.Ring(), ring);
  EXPECT_TRUE(probe.Ring(1).empty());
}

//   a --[b1]-- b --[b2]-- c         one section, 2
//   a --[    ]-- b --[    ]-- c     2 for the first in list order, new ones for the others
//   a --[b1]-- b --[b2]-- c         2 again; the others wait to be given back
TEST_F(NodePassTest, FirstGroupKeepsTheBaseSectionAndTheMergedGroupGetsItBack) {
  ThreeGroups();
  Run();
  ASSERT_EQ(probe.Ring(), (std::vector{2, 3}));
  Open("b1");
  Open("b2");
  ASSERT_EQ(probe.NodeSort(true), 1);
  // 4 was put by for the pass and is free again behind it.
  EXPECT_EQ(probe.Ring(), (std::vector{2, 5, 6, 3}));
  EXPECT_EQ(probe.Global().bs_free, 4);
  EXPECT_EQ(SectionOfNumber(FirstNodeOf("A220")), 2);
  EXPECT_EQ(probe.Section(5).ikv, Kv("A220"));
  EXPECT_EQ(probe.Section(5).ibsl, -1);
  Close("b1");
  Close("b2");
  ASSERT_EQ(probe.NodeSort(true), 1);
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3}));
  EXPECT_EQ(SectionOf("a"), 2);
  EXPECT_EQ(SectionOf("c"), 2);
  EXPECT_EQ(probe.Ring(1), (std::vector{6, 5}));
}

//   b 2    a 5 --[b3]-- c 6     all breakers open, then b3 closed: a and c on 5, 6 waits
TEST_F(NodePassTest, MergedGroupTakesTheLowestOfItsSections) {
  ThreeGroups();
  m.Breaker("b3", "A220", "a", "c", true);
  Open("b1");
  Open("b2");
  Run();
  const auto nodes = NodesOf("A220");
  ASSERT_EQ(nodes.front(), Nd("b"));
  Close("b3");
  const int low = std::min(SectionOfNumber(nodes[1]), SectionOfNumber(nodes[2]));
  const int high = std::max(SectionOfNumber(nodes[1]), SectionOfNumber(nodes[2]));
  ASSERT_EQ(probe.NodeSort(true), 1);
  EXPECT_EQ(SectionOfNumber(nodes[1]), low);
  EXPECT_EQ(SectionOfNumber(nodes[2]), low);
  EXPECT_EQ(probe.Ring(1), (std::vector{high}));
}

// Kept, new or claimed again: no section leaves the pass with the marks of one that waits or of a fragment.
TEST_F(NodePassTest, SectionsOfLegalGroupsLoseTheirMarksHoweverTheyCame) {
  ThreeGroups();
  Run();
  Open("b1");
  Open("b2");
  for (const int bs : {5, 6}) {
    probe.Section(bs).status = BS_ISOLATED;
    probe.Section(bs).flags = BS_UNCLAIMED;
  }
  for (int pass = 0; pass < 2; ++pass) {
    ASSERT_EQ(probe.NodeSort(true), 1);
    ASSERT_EQ(probe.Ring(), (std::vector{2, 5, 6, 3}));
    for (const int bs : probe.Ring()) {
      EXPECT_EQ(probe.Section(bs).status & BS_ISOLATED, 0U) << bs;
      EXPECT_EQ(probe.Section(bs).flags & BS_UNCLAIMED, 0U) << bs;
    }
  }
}

// The incremental pass writes down who moved.
TEST_F(NodePassTest, MovedNodesAreRecordedInAnIncrementalPassOnly) {
  ThreeGroups();
  Run();
  EXPECT_EQ(m.Table<CHND>().GetCount(), 0);
  const auto nodes = NodesOf("A220");
  Open("b1");
  Open("b2");
  probe.SetChangedKvs({Kv("A220")});
  ASSERT_EQ(probe.NodeSort(false), 1);
  ASSERT_EQ(m.Table<CHND>().GetCount(), 2);
  for (int i = 0; i < 2; ++i) {
    const CHND& moved = m.Table<CHND>()[i];
    EXPECT_EQ(moved.id, i);
    EXPECT_EQ(moved.ind, nodes[static_cast<std::size_t>(i) + 1]);
    EXPECT_EQ(moved.ibs_old, 2);
    EXPECT_EQ(moved.ibs_new, SectionOfNumber(moved.ind));
    EXPECT_EQ(moved.ikv, Kv("A220"));
  }
  ASSERT_EQ(probe.NodeSort(false), 1);
  EXPECT_EQ(m.Table<CHND>().GetCount(), 0);
}

//   a --[b1]-- b       opened: a with one line end and U legal, b with D alone illegal
TEST_F(NodePassTest, IllegalGroupMovesToTheHeadAndIsRecorded) {
  OneLine();
  m.Breaker("b1", "A220", "a", "b").Unit("U", "A220", "a").Load("D", "A220", "b");
  Run();
  Open("b1");
  probe.SetChangedKvs({Kv("A220")});
  ASSERT_EQ(probe.NodeSort(false), 1);
  EXPECT_EQ(SectionOf("b"), 0);
  EXPECT_FALSE(IsLegal("b"));
  EXPECT_EQ(SectionOf("a"), 2);
  ASSERT_EQ(m.Table<CHND>().GetCount(), 1);
  EXPECT_EQ(m.Table<CHND>()[0].ind, Nd("b"));
  EXPECT_EQ(m.Table<CHND>()[0].ibs_new, 0);
}

// No base section leaves the pass unclaimed, whatever became of its groups.
TEST_F(NodePassTest, EveryBaseSectionIsClaimedOrEmpty) {
  OneLine();
  m.Breaker("b1", "A220", "d", "e").Breaker("b2", "A220", "e", "f").Unit("U", "A220", "d").Load("D", "A220", "f");
  Open("b1");
  Open("b2");
  Run();
  for (const int bs : probe.Ring()) EXPECT_FALSE(probe.Section(bs).flags & BS_UNCLAIMED) << bs;
  EXPECT_EQ(SectionOf("d"), 0);
  EXPECT_EQ(SectionOf("f"), 0);
  for (int i = 0; i < m.Table<ND>().GetCount(); ++i) EXPECT_FALSE(m.Table<ND>()[i].flags & ND_MARK);
}

//   a 4 --- L ---- 3 z F      4 is a fragment
TEST_F(NodePassTest, FragmentsGoBackToTheFreeList) {
  OneLine();
  Run();
  const int fragment = SectionOf("a");
  ASSERT_TRUE(probe.Section(fragment).status & BS_ISOLATED);
  ASSERT_EQ(probe.NodeSort(true), 1);
  EXPECT_EQ(SectionOf("a"), 0);
  EXPECT_EQ(probe.Global().bs_free, fragment);
  EXPECT_EQ(probe.Section(fragment).ikv, -1);
  EXPECT_EQ(probe.Section(fragment).island, ISLAND_NOT_PLACED);
  EXPECT_EQ(probe.Section(fragment).status, 0U);
}

TEST_F(NodePassTest, NodeInitFailsWhenTheSectionsRunOut) {
  OneLine();
  Run();
  probe.KeepFreeSections(1);
  int result = 1;
  EXPECT_EQ(FailureLines([&] { result = probe.NodeInit(); }), (Lines{"TP:Failed at (N) in tpNodeInit.\n"}));
  EXPECT_EQ(result, 0);
}

TEST_F(NodePassTest, NodeSortFailsWithOneFreeSection) {
  ThreeGroups();
  Run();
  probe.KeepFreeSections(1);
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); }), (Lines{"TP:failed at (N) in tpNodeSort.\n"}));
}

TEST_F(NodePassTest, NodeSortFailsWithNoFreeSection) {
  ThreeGroups();
  Run();
  probe.KeepFreeSections(0);
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); }), (Lines{"TP:failed at (N) in tpNodeSort.\n"}));
}

TEST_F(NodePassTest, NodeSortFailsOnALevelThatIsNotListed) {
  OneLine();
  m.Kv("E35", 35);
  Run();
  for (const int kv : {Kv("E35"), m.Table<KV>().GetSize()}) {
    probe.SetChangedKvs({kv});
    const Lines lines = FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); });
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "TP:failed at (N) in tpNodeSort.\n");
  }
}

TEST_F(NodePassTest, NodeSortFailsWhenTheNextLevelHasNoSection) {
  OneLine();
  Run();
  m.Of<KV>("B220").ibs = -1;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); }), (Lines{"TP:failed at (N) in tpNodeSort.\n"}));
}

TEST_F(NodePassTest, NodeSortFailsOnARingThatRunsInACircleOrOutOfTheArray) {
  ThreeGroups();
  Run();
  for (const int next : {2, probe.SectionCount(), -7}) {
    probe.Section(2).next = next;
    EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); }), (Lines{"TP:failed at (N) in tpNodeSort.\n"}));
  }
}

TEST_F(NodePassTest, LegalGroupWithoutAFreeSectionFails) {
  ThreeGroups();
  Run();
  Open("b1");
  probe.KeepFreeSections(2);
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.NodeSort(true), 0); }),
            (Lines{"TP:failed at (N) in tpBslegal.\n", "TP:failed at (N) in tpNodeSort.\n"}));
}

// Kept: K41.
TEST_F(NodePassTest, RefusedRecordFailsBothDecisionsWithTheSameWord) {
  OneLine();
  Run();
  m.Put(CHND(1));  // the next row is to have this number
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.IllegalBs(Nd("z"), Kv("B220"), 0, false), 0); }),
            (Lines{"TP:failed at (N) in tpBslegal.\n"}));
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.LegalBs(Nd("z"), Kv("B220"), 0, false), 0); }),
            (Lines{"TP:failed at (N) in tpBslegal.\n"}));
}

//   a --[b1 open]-- b --[b2]-- c      from a the breaker b1 leads to the section of b
TEST_F(NodePassTest, ConnectFindsASectionBehindAnOpenBreaker) {
  OneLine();
  m.Breaker("b1", "A220", "d", "a", true).Load("D", "A220", "d").Cap("C", "A220", "a");
  Run();
  ASSERT_EQ(SectionOf("d"), 0);
  int bs = -7;
  EXPECT_EQ(probe.NodeConnect(Kv("A220"), Nd("d"), &bs), 1);
  EXPECT_EQ(bs, SectionOf("a"));
}

//   d --[b1 open]-- e --[b2 open]-- a   two breakers away
TEST_F(NodePassTest, ConnectGoesOnFromTheGroupsThatItReached) {
  OneLine();
  m.Breaker("b1", "A220", "d", "e", true).Breaker("b2", "A220", "e", "a", true);
  m.Load("D", "A220", "d").Cap("C", "A220", "a");
  Run();
  int bs = -7;
  EXPECT_EQ(probe.NodeConnect(Kv("A220"), Nd("d"), &bs), 1);
  EXPECT_EQ(bs, SectionOf("a"));
}

//   d --[b1 open]-- e --[b2 open]-- a --[b3 open]-- x   x has the base section, a one of its own
TEST_F(NodePassTest, ConnectFindsTheNearestSectionNotThatOfTheBase) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Load("F", "B220", "z");
  m.Breaker("b0", "A220", "x", "y").Breaker("b1", "A220", "d", "e", true).Breaker("b2", "A220", "e", "a", true);
  m.Breaker("b3", "A220", "a", "x", true).Load("D", "A220", "d").Cap("C", "A220", "a").Unit("U", "A220", "x");
  for (const auto& [line, node] : {std::pair{"L1", "x"}, {"L2", "x"}, {"L3", "a"}, {"L4", "a"}}) {
    m.Line(line, "DV", "A", "B", "A220", "B220", node, "z");
  }
  Run();
  ASSERT_EQ(SectionOf("x"), m.Of<ND>("d").ibs0);
  ASSERT_NE(SectionOf("a"), m.Of<ND>("d").ibs0);
  int bs = -7;
  EXPECT_EQ(probe.NodeConnect(Kv("A220"), Nd("d"), &bs), 1);
  EXPECT_EQ(bs, SectionOf("a"));
}

TEST_F(NodePassTest, ConnectFallsBackOnTheBaseSection) {
  OneLine();
  m.Breaker("b1", "A220", "d", "e", true).Load("D", "A220", "d");
  Run();
  int bs = -7;
  EXPECT_EQ(probe.NodeConnect(Kv("A220"), Nd("d"), &bs), 1);
  EXPECT_EQ(bs, m.Of<ND>("d").ibs0);
}

}  // namespace
}  // namespace dtsdb::test
