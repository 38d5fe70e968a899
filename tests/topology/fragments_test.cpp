// Fragments, what hangs on a section, and the rows of the run log.
#include <QDateTime>
#include <algorithm>

#include "tests/topology/results.h"

namespace dtsdb::test {
namespace {

class FragmentsTest : public TopologyTest {
 protected:
  ///     A220  U a ====L==== b D  B220        and nodes i --[q]-- j of B220 with nothing on them
  void SetUp() override {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b").Breaker("q", "B220", "i", "j");
    Run();
  }
};

// Base sections 2 (A220), 3 and 4 (B220); the first free one is 5.

TEST_F(FragmentsTest, FragmentOfTheLastLevelStandsJustBeforeTheHead) {
  ASSERT_EQ(probe.Ring(), (std::vector{2, 3, 4}));
  int bs = 0;
  EXPECT_EQ(probe.BsFragment(Kv("B220"), Nd("b"), &bs, true), 1);
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3, 4, bs}));
  EXPECT_EQ(probe.Section(bs).status, BS_ISOLATED | BS_BROKEN);
  EXPECT_EQ(probe.Section(bs).ikv, Kv("B220"));
  EXPECT_EQ(probe.Section(bs).island, ISLAND_NOT_PLACED);
  EXPECT_EQ(probe.Section(bs).ibsl, -1);
}

TEST_F(FragmentsTest, FragmentOfAnotherLevelStandsBeforeTheNextLevelsSections) {
  int bs = 0;
  EXPECT_EQ(probe.BsFragment(Kv("A220"), Nd("a"), &bs, true), 1);
  EXPECT_EQ(probe.Ring(), (std::vector{2, bs, 3, 4}));
}

TEST_F(FragmentsTest, SecondCallGivesABrokenFragmentBack) {
  int bs = 0;
  ASSERT_EQ(probe.BsFragment(Kv("A220"), Nd("a"), &bs, true), 1);
  const int made = bs;
  EXPECT_EQ(probe.BsFragment(Kv("A220"), Nd("a"), &bs, false), 1);
  EXPECT_EQ(bs, 0);
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3, 4}));
  EXPECT_EQ(probe.Global().bs_free, made);
  EXPECT_EQ(probe.Section(made).status, 0U);
  EXPECT_EQ(probe.Section(made).ikv, -1);
}

TEST_F(FragmentsTest, GroupMovesToItsFragmentAndBack) {
  int bs = 0;
  ASSERT_EQ(probe.BsFragment(Kv("B220"), Nd("i"), &bs, false), 1);
  EXPECT_EQ(probe.Section(bs).status, BS_ISOLATED);
  EXPECT_EQ(SectionOf("i"), bs);
  EXPECT_EQ(SectionOf("j"), bs);
  EXPECT_EQ(m.Table<CHND>().GetCount(), 0);
  ASSERT_EQ(probe.BsFragment(Kv("B220"), Nd("j")), 1);
  EXPECT_EQ(SectionOf("i"), 0);
  EXPECT_EQ(SectionOf("j"), 0);
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3, 4}));
}

TEST_F(FragmentsTest, NodeStandsOnceInTheRecordOfMoves) {
  probe.SetAllnew(false);
  ASSERT_EQ(probe.BsFragment(Kv("B220"), Nd("i")), 1);
  ASSERT_EQ(m.Table<CHND>().GetCount(), 2);
  EXPECT_EQ(m.Table<CHND>()[0].ind, Nd("i"));
  EXPECT_EQ(m.Table<CHND>()[0].ibs_old, 0);
  EXPECT_EQ(m.Table<CHND>()[0].ibs_new, SectionOf("i"));
  EXPECT_EQ(m.Table<CHND>()[0].ikv, Kv("B220"));
  ASSERT_EQ(probe.BsFragment(Kv("B220"), Nd("i")), 1);
  ASSERT_EQ(m.Table<CHND>().GetCount(), 2);
  EXPECT_EQ(m.Table<CHND>()[0].ibs_old, 0);
  EXPECT_EQ(m.Table<CHND>()[0].ibs_new, 0);
}

TEST_F(FragmentsTest, UnlistedLevelFails) {
  int bs = 0;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsFragment(99, Nd("a"), &bs, true), 0); }),
            (Lines{"TP:failed at (N) in tpBsFragment.\n"}));
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsFragment(-1, Nd("a")), 0); }),
            (Lines{"TP:failed at (N) in tpBsFragment.\n"}));
}

TEST_F(FragmentsTest, NextLevelWithoutASectionFails) {
  m.Of<KV>("B220").ibs = -1;
  int bs = 0;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsFragment(Kv("A220"), Nd("a"), &bs, true), 0); }),
            (Lines{"TP:failed at (N) in tpBsFragment.\n"}));
}

TEST_F(FragmentsTest, ExhaustedSectionsFail) {
  probe.KeepFreeSections(0);
  int bs = 0;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.BsFragment(Kv("A220"), Nd("a"), &bs, true), 0); }),
            (Lines{"TP:failed at (N) in tpBsFragment.\n"}));
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.AddBrokenBs(Kv("A220"), -1, bs), 0); }),
            (Lines{"TP:failed at (N) in tpAddBrokenBs.\n"}));
  EXPECT_EQ(bs, 0);
}

TEST_F(FragmentsTest, BrokenFragmentByItself) {
  int bs = -7;
  EXPECT_EQ(probe.AddBrokenBs(Kv("A220"), -1, bs), 1);
  EXPECT_EQ(probe.Ring(), (std::vector{2, bs, 3, 4}));
  EXPECT_EQ(probe.Section(bs).status, BS_ISOLATED | BS_BROKEN);
}

// The log

TEST_F(FragmentsTest, LogRowOfASectionIsNamedByItsNumber) {
  EXPECT_EQ(probe.Tpl(17, 2, 5, 3, 4, "BSLIVE"), 1);
  const TPL& row = m.Table<TPL>()[0];
  EXPECT_EQ(row.id, 0);
  EXPECT_EQ(row.kind, 2);
  EXPECT_EQ(row.name, Id("17"));
  EXPECT_EQ(row.n1, 5);
  EXPECT_EQ(row.n3, 3);
  EXPECT_EQ(row.n2, 4);
  EXPECT_EQ(row.event, Id("BSLIVE"));
  EXPECT_NEAR(static_cast<double>(row.time), static_cast<double>(QDateTime::currentSecsSinceEpoch()), 5.0);
}

// Kept: K52.
TEST_F(FragmentsTest, LogKnowsNoEndsOfZeroImpedanceBranches) {
  EXPECT_TRUE(FailureLines([&] { EXPECT_EQ(probe.Tpl(0, 46, 0, 0, 0, "BS"), 0); }).empty());
  EXPECT_EQ(m.Table<TPL>().GetCount(), 0);
}

TEST_F(FragmentsTest, LogRowTakesTheIdentityOfItsRecord) {
  EXPECT_EQ(probe.Tpl(0, KIND_UN, 0, 0, 0, "BS"), 1);
  EXPECT_EQ(probe.Tpl(0, KIND_LD, 0, 0, 0, "BS"), 1);
  EXPECT_EQ(probe.Tpl(1, KIND_LN2, 0, 0, 0, "BS"), 1);
  EXPECT_EQ(probe.Tpl(0, KIND_LN, 0, 0, -1, "REMOVE"), 1);
  const char* const names[] = {"U", "D", "Lz", "L"};
  ASSERT_EQ(m.Table<TPL>().GetCount(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(m.Table<TPL>()[i].name, Id(names[i]));
}

TEST_F(FragmentsTest, RefusedLogRowFails) {
  m.Put(TPL(1));
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(probe.Tpl(2, 2, 0, 0, 0, "BS"), 0); }),
            (Lines{"TP:failed at (N) in tpTpl.\n"}));
}

// Neighbours

struct Neighbourhood {
  int un = -7;
  int devices = -7;
  int count = -7;
  int sections[101] = {};  // one more than may be written
};

class NeighbourTest : public TopologyTest {
 protected:
  ///     A220  U a ====(so many lines)==== b D  B220
  void Lines(int count) {
    m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    for (int i = 0; i < count; ++i) {
      const std::string id = "L" + std::to_string(i);
      m.Line(id.c_str(), "DV", "A", "B", "A220", "B220", "a", "b");
    }
    ASSERT_TRUE(m.Validate());
  }
  int NeighboursOf(int bs, Neighbourhood* n) {
    return probe.BsNeighbor(bs, &n->un, &n->devices, &n->count, n->sections);
  }
};

TEST_F(NeighbourTest, SectionWithoutAListEntryHasNone) {
  Lines(1);
  ASSERT_EQ(tp.tpAllnew(), 1);
  probe.Section(2).ibsl = -1;
  Neighbourhood n;
  EXPECT_EQ(NeighboursOf(2, &n), 1);
  EXPECT_EQ(n.un, -1);
  EXPECT_EQ(n.devices, 0);
  EXPECT_EQ(n.count, 0);
}

TEST_F(NeighbourTest, NinetyNineNeighboursAreTaken) {
  Lines(99);
  ASSERT_EQ(tp.tpAllnew(), 1);
  Neighbourhood n;
  EXPECT_EQ(NeighboursOf(2, &n), 1);
  EXPECT_EQ(n.count, 99);
  EXPECT_EQ(std::count(n.sections, n.sections + 99, 3), 99);
  EXPECT_EQ(n.un, 0);
}

// Kept: K38.
TEST_F(NeighbourTest, HundredNeighboursFailTheRun) {
  Lines(100);
  int result = 1;
  EXPECT_EQ(FailureLines([&] { result = tp.tpAllnew(); }),
            (dtsdb::test::Lines{"TP:failed at (N) in tpBsNeighbor.\n", "TP:failed at (N) in tpBsNeighbor.\n",
                                "TP:failed at (N) in tpAllnew.\n"}));
  EXPECT_EQ(result, 0);
}

TEST_F(NeighbourTest, NothingIsWrittenBeyondAHundred) {
  Lines(150);
  FailureLines([&] { EXPECT_EQ(tp.tpAllnew(), 0); });
  Neighbourhood n;
  n.sections[100] = -7;
  EXPECT_EQ(FailureLines([&] { EXPECT_EQ(NeighboursOf(2, &n), 0); }),
            (dtsdb::test::Lines{"TP:failed at (N) in tpBsNeighbor.\n"}));
  EXPECT_EQ(n.sections[100], -7);
}

TEST_F(NeighbourTest, ListThatRunsInACircleOrOutOfTheArrayFails) {
  Lines(1);
  ASSERT_EQ(tp.tpAllnew(), 1);
  BSL& last = probe.Entry(probe.Entry(probe.Entry(probe.Section(2).ibsl).next).next);
  ASSERT_EQ(last.kind, KIND_UN);
  for (const int next : {last.id, probe.EntryCount(), -7}) {
    last.next = next;
    Neighbourhood n;
    EXPECT_EQ(FailureLines([&] { EXPECT_EQ(NeighboursOf(2, &n), 0); }),
              (dtsdb::test::Lines{"TP:failed at (N) in tpBsNeighbor.\n"}));
  }
}

//   U,(V) a --- b D,(E),C       what is isolated doesn't count
TEST_F(NeighbourTest, DevicesInServiceAreCounted) {
  m.Unit("V", "A220", "a").Load("E", "B220", "b").Cap("C", "B220", "b");
  m.Of<UN>("V").status = SHUNT_OFF;
  m.Of<LD>("E").status = SHUNT_OFF;
  Lines(1);
  ASSERT_EQ(tp.tpAllnew(), 1);
  Neighbourhood n;
  ASSERT_EQ(NeighboursOf(2, &n), 1);
  EXPECT_EQ(n.un, m.Number<UN>("U"));
  EXPECT_EQ(n.devices, 0);
  ASSERT_EQ(NeighboursOf(3, &n), 1);
  EXPECT_EQ(n.un, -1);
  EXPECT_EQ(n.devices, 2);
  EXPECT_EQ(n.count, 1);
}

}  // namespace
}  // namespace dtsdb::test
