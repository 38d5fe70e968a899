// The full run from end to end, its preconditions, what it stores and how a TP lives.
#include <type_traits>

#include "tests/topology/results.h"
#include "topology/internal/chain_bound.h"
#include "topology/internal/flat_network.h"

namespace dtsdb::test {
namespace {

using internal::kStepsPerRow;
using internal::StepsOfFullRun;

class AllnewTest : public TopologyTest {
 protected:
  /// Station A with a unit and station B with a load, joined by line L:
  ///
  ///     A220 a ====L==== b B220        section 2 (U) and section 3 (D),
  ///          |           |             both in island 0
  ///          U           D
  void TwoStations() {
    m.Station("A").Kv("A220").Station("B").Kv("B220");
    m.Unit("U", "A220", "a").Load("D", "B220", "b");
    m.Line("L", "DV", "A", "B", "A220", "B220", "a", "b");
  }
};

TEST_F(AllnewTest, EmptyGlobalTableGivesAMessageAndChangesNothing) {
  BS stored(7);
  m.Put(stored);
  int result = 0;
  EXPECT_EQ(Printed([&] { result = tp.tpAllnew(); }), "请首先运行网络校验程序!\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(m.Db().m_bsTable->GetCount(), 1);
  EXPECT_EQ((*m.Db().m_bsTable)[0].id, 7);
  EXPECT_FALSE(probe.HasArrays());
}

// Kept: K36.
TEST_F(AllnewTest, ModelThatIsNotValidGivesAMessageAndChangesNothing) {
  m.Put(BS(7)).Put(GLOBAL(0));
  int result = 0;
  EXPECT_EQ(Printed([&] { result = tp.tpAllnew(); }), "请首先运行网络校验程序并成功!\n");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(m.Db().m_bsTable->GetCount(), 1);
  EXPECT_EQ(m.Db().m_globalTable->GetPh(0).time, 0U);
}

TEST_F(AllnewTest, EmptyModelRunsThroughEveryStage) {
  DTSDB empty;
  GLOBAL global(0);
  global.valid = 1;
  empty.m_globalTable->Add(global);
  TP run(&empty);
  EXPECT_EQ(run.tpAllnew(), 1);
  EXPECT_EQ(empty.m_bsTable->GetSize(), 4);
  EXPECT_EQ(empty.m_bsTable->GetCount(), 4);
  EXPECT_EQ(empty.m_islandTable->GetCount(), 0);
  EXPECT_EQ(run.getAllKVCount(), 0);
  EXPECT_GT(empty.m_globalTable->GetPh(0).time, 0U);
}

// A section for each node and a fragment for each level, beside two heads and two spares; a list entry for each
// station, level, section, branch end and device, beside the head and two spares.
TEST_F(AllnewTest, WorkArraysHaveRoomForAllThatCanTakeAPlace) {
  TwoStations();
  const auto give = [&]<class... Records>(int first) {
    int size = first;
    (m.Table<Records>().SetSize(size += 10), ...);
  };
  give.template operator()<ST, KV, ND, LN2, XF2, ZBR2, LD, UN, CP, DLN2>(100);
  Run();
  EXPECT_EQ(probe.SectionCount(), m.Table<ND>().GetSize() + m.Table<KV>().GetSize() + 4);
  const auto sizes = [&]<class... Records>() { return (m.Table<Records>().GetSize() + ...); };
  EXPECT_EQ(probe.EntryCount(),
            (sizes.template operator()<ST, KV, LN2, XF2, ZBR2, LD, UN, CP, DLN2>() + probe.SectionCount() + 3));
}

TEST_F(AllnewTest, VoltageLevelWithoutNodesIsPassedOver) {
  TwoStations();
  m.Station("C").Kv("C110", 110);
  Run();
  EXPECT_EQ(tp.getAllKVCount(), 2);
  EXPECT_EQ(tp.getChangedKVCount(), 2);
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 LN2:Li UN:U ST:B KV:B220 BS:3 LN2:Lz LD:D ST:C");
}

TEST_F(AllnewTest, TwoStationsJoinedByALineMakeOneIsland) {
  TwoStations();
  Run();
  EXPECT_EQ(probe.Ring(), (std::vector{2, 3}));
  EXPECT_EQ(SectionOf("a"), 2);
  EXPECT_EQ(SectionOf("b"), 3);
  EXPECT_EQ(IslandOf("a"), 0);
  EXPECT_EQ(IslandOf("b"), 0);
  EXPECT_EQ(List(), "- ST:A KV:A220 BS:2 LN2:Li UN:U ST:B KV:B220 BS:3 LN2:Lz LD:D");
  EXPECT_EQ(Section(2).name, Id("Li"));
  EXPECT_EQ(Section(3).name, Id("Lz"));
  EXPECT_EQ(m.Db().m_bsTable->GetCount(), 6);
  EXPECT_EQ(m.Db().m_bslTable->GetCount(), m.Db().m_bslTable->GetSize());
  EXPECT_EQ(m.Db().m_islandTable->GetCount(), 1);
  EXPECT_EQ(m.Of<UN>("U").ibs, 2);
  EXPECT_EQ(m.Of<LD>("D").ibs, 3);
  EXPECT_EQ(m.Of<LN>("L").ibs, 2);
  EXPECT_EQ(m.Of<LN>("L").izbs, 3);
  EXPECT_EQ(m.Of<LN>("L").tp_status, 0U);
  EXPECT_EQ(m.Of<KV>("B220").ibs, 3);
}

//   A220  a --[B]-- b      no branch: the group is no section,
//         |         |      both nodes on the head, nothing lives
//         U         D
TEST_F(AllnewTest, NodesWithoutABranchAreNoSection) {
  m.Station("A").Kv("A220").Breaker("B", "A220", "a", "b").Unit("U", "A220", "a").Load("D", "A220", "b");
  Run();
  EXPECT_EQ(SectionOf("a"), 0);
  EXPECT_EQ(SectionOf("b"), 0);
  EXPECT_EQ(m.Db().m_islandTable->GetCount(), 0);
  EXPECT_EQ(m.Of<UN>("U").ibs, 0);
  EXPECT_EQ(m.Of<UN>("U").tp_status & SHUNT_DEAD, SHUNT_DEAD);
  EXPECT_EQ(m.Of<LD>("D").tp_status & SHUNT_DEAD, SHUNT_DEAD);
  EXPECT_EQ(m.Of<CB>("B").tp_status, TP_END1_ISOLATED | TP_END2_ISOLATED | TP_BOTH_DEAD);
}

TEST_F(AllnewTest, VoltageLevelsAreCopiedOnlyIntoEnoughRoom) {
  TwoStations();
  Run();
  int out[2] = {-9, -9};
  EXPECT_FALSE(tp.getAllKVs(out, 1));
  EXPECT_FALSE(tp.getChangedKVs(out, 1));
  EXPECT_EQ(out[0], -9);
  EXPECT_TRUE(tp.getAllKVs(out, 2));
  EXPECT_EQ(out[0], Kv("A220"));
  EXPECT_EQ(out[1], Kv("B220"));
  out[0] = out[1] = -9;
  EXPECT_TRUE(tp.getChangedKVs(out, 2));
  EXPECT_EQ(out[0], Kv("A220"));
  EXPECT_EQ(out[1], Kv("B220"));
}

TEST_F(AllnewTest, SectionIsNamedAfterItsLastBus) {
  TwoStations();
  m.Bus("M1", "A220", "a").Bus("M2", "A220", "a");
  Run();
  EXPECT_EQ(Section(2).name, Id("M2"));
  EXPECT_EQ(m.Of<BUS>("M1").ibs, 2);
}

//   A220  a ==DC== b  B220      no AC branch: DC ends give no name, devices do
//         |        |
//         U        D
TEST_F(AllnewTest, SectionWithoutLineOrWindingIsNamedAfterADevice) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
  m.DcLine("DC", "DV", "A", "B", "A220", "B220", "a", "b");
  Run();
  EXPECT_EQ(Section(2).name, Id("U"));
  EXPECT_EQ(Section(3).name, Id("D"));
}

//   A220  a ==DC1== b B220      section of a: no device, no AC branch;
//           ==DC2==             the search runs on to the next level's first section
// Kept: K40.
TEST_F(AllnewTest, SearchForANameEndsAtTheNextLevelsFirstSection) {
  m.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "B220", "b");
  m.DcLine("DC1", "DV", "A", "B", "A220", "B220", "a", "b").DcLine("DC2", "DV", "A", "B", "A220", "B220", "a", "b");
  Run();
  EXPECT_EQ(Section(SectionOf("a")).name, Id(""));
  EXPECT_FALSE(Section(SectionOf("a")).name.isNull());
  EXPECT_EQ(Section(SectionOf("b")).name, Id("U"));
}

// Behind the unit the list runs in a circle or out of the array: the device found before gives no name.
TEST_F(AllnewTest, SearchForANameThatFindsNoEndLeavesTheNameAsItIs) {
  TwoStations();
  Run();
  const int own = probe.Section(2).ibsl;
  BSL& unit = probe.Entry(probe.Entry(probe.Entry(own).next).next);
  ASSERT_EQ(unit.kind, KIND_UN);
  probe.Entry(own).next = unit.id;
  for (const int next : {unit.id, probe.EntryCount(), -7}) {
    unit.next = next;
    probe.Section(2).name = Id("");
    probe.NameSections();
    EXPECT_EQ(probe.Section(2).name, Id(""));
  }
}

/// Gives a table, whose records stand in order, as many slots as it has records.
template <class T>
void Tighten(tTable<T>& table) {
  std::vector<T> rows;
  for (int i = 0; i < table.GetCount(); ++i) rows.push_back(table[i]);
  table.SetSize(0);
  table.SetData(rows.data(), static_cast<int>(rows.size()), true);
}

// Room for 8 sections: the two heads, 2 and 3, and from 4 on a fragment for each line, all open at end 2. One number
// beyond the first free one is stored; where there is none, everything is.
TEST_F(AllnewTest, StoredSectionsEndBehindTheFirstFreeOneOrWithTheArray) {
  const int stored[] = {7, 8, 8, 8};
  for (int lines = 1; lines <= 4; ++lines) {
    ModelBuilder n;
    n.Station("A").Kv("A220").Station("B").Kv("B220").Unit("U", "A220", "a").Load("D", "B220", "b");
    for (int i = 0; i < lines; ++i) {
      const std::string id = "L" + std::to_string(i);
      n.Line(id.c_str(), "DV", "A", "B", "A220", "B220", "a", "b");
      n.Of<LN>(id.c_str()).status = BranchKind<LN>::kOpen2;
    }
    ASSERT_TRUE(n.Validate());
    Tighten(n.Table<ND>());
    Tighten(n.Table<KV>());
    TP run(&n.Db());
    ASSERT_EQ(run.tpAllnew(), 1);
    EXPECT_EQ(n.Table<BS>().GetSize(), 8);
    EXPECT_EQ(TpProbe(run).Ring().size(), static_cast<std::size_t>(lines) + 2);
    EXPECT_EQ(n.Table<BS>().GetCount(), stored[lines - 1]) << lines << " lines";
  }
}

// A model that isn't laid out flat is worked out all the same, only later.
TEST_F(AllnewTest, ASoundModelIsLaidOutFlat) {
  TwoStations();
  m.Cap("C", "A220", "a").Winding("X", "A", "A220", "A220", "a", "c").Breaker("Q", "B220", "b", "d").Zbr("Z", "Q");
  ASSERT_TRUE(m.Validate());
  EXPECT_TRUE(internal::FlatNetwork::Of(m.Db()).has_value());
  m.Of<KV>("B220").r_kv_nd = 1 << 20;
  EXPECT_FALSE(internal::FlatNetwork::Of(m.Db()).has_value());
}

TEST_F(AllnewTest, SecondRunGivesTheSameResults) {
  TwoStations();
  Run();
  const std::string list = List();
  EXPECT_EQ(tp.tpAllnew(), 1);
  EXPECT_EQ(List(), list);
  EXPECT_EQ(m.Db().m_bsTable->GetCount(), 6);
  EXPECT_EQ(m.Db().m_islandTable->GetCount(), 1);
}

TEST_F(AllnewTest, FailedRunWritesItsLinesAndLeavesTheTablesEmpty) {
  TwoStations();
  ASSERT_TRUE(m.Validate());
  m.Db().m_rKvNdTable->GetPh(m.Of<ND>("b").r_kv_nd).ikv = -1;  // end 2 of the line now lies in no level
  m.Of<LN>("L").status |= BranchKind<LN>::kOpen2;
  int result = 1;
  const Lines lines = FailureLines([&] { result = tp.tpAllnew(); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(lines, (Lines{"TP:failed at (N) in tpBsFragment.\n", "TP:failed at (N) in tpBsBranch.\n",
                          "TP:failed at (N) in tpBslBuild.\n", "TP:failed at (N) in tpAllnew.\n"}));
  EXPECT_EQ(m.Db().m_bsTable->GetCount(), 0);
  EXPECT_EQ(m.Db().m_bslTable->GetCount(), 0);
}

/// Lets the chains of all parents run through the whole table of the relation `Row`, in a circle.
template <class Row>
void ChainThroughAll(DTSDB& model) {
  tTable<Row>& rows = TableOf<Row>(model);
  for (int i = 0; i < rows.GetCount(); ++i) rows[i].next = (i + 1) % rows.GetCount();
  auto& parents = TableOf<typename Relation<Row>::Parent>(model);
  for (int i = 0; i < parents.GetCount(); ++i) parents[i].*Relation<Row>::kHead = 0;
}

// Else the time of a run would grow with the square of the model.
TEST_F(AllnewTest, StepsAlongChainsAreBoundedWhereTheseRunThroughTheWholeTable) {
  TwoStations();
  m.Breaker("K", "A220", "a", "a2").Load("E", "A220", "a2");
  Run();
  EXPECT_EQ(StepsOfFullRun(m.Db()), ChainLimit::kNone) << "no bound on a sound model";
  ChainThroughAll<R_KV_ND>(m.Db());
  const long long first = StepsOfFullRun(m.Db());
  EXPECT_LT(first, ChainLimit::kNone);
  EXPECT_GE(first, kStepsPerRow * m.Db().m_rKvNdTable->GetSize());
  const long long before = ChainLimit::Left();
  tp.tpAllnew();
  EXPECT_EQ(ChainLimit::Left(), before) << "the bound ends with the run";
}

TEST_F(AllnewTest, DamageInAnyChainThatIsWalkedBoundsTheSteps) {
  const auto isBounded = []<class Row>(std::type_identity<Row>) {
    DTSDB model;
    using Parent = typename Relation<Row>::Parent;
    for (int i = 0; i < 3; ++i) TableOf<Parent>(model).Add(Parent(QString::number(i)));
    TableOf<Row>(model).SetSize(2);
    TableOf<Row>(model).Add(Row(QStringLiteral("0"), QStringLiteral("c")));
    ChainThroughAll<Row>(model);
    return StepsOfFullRun(model) < ChainLimit::kNone;
  };
  EXPECT_TRUE(isBounded(std::type_identity<R_ST_KV>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_KV_ND>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_KV_UN>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_KV_LD>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_KV_CP>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_ND_CB2>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_ND_LN2>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_ND_XF2>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_ND_DLN2>()));
  EXPECT_TRUE(isBounded(std::type_identity<R_ND_ZBR2>()));
}

TEST_F(AllnewTest, NothingRunYetIsAsEmptyAsCanBe) {
  EXPECT_EQ(tp.getAllKVCount(), 0);
  EXPECT_EQ(tp.getChangedKVCount(), 0);
  EXPECT_EQ(tp.tpGetStartNo(), -1);
  EXPECT_EQ(tp.tpGetEndNo(), -1);
  EXPECT_EQ(tp.tpBsChanged(), 0);
  EXPECT_TRUE(tp.getAllKVs(nullptr, 0));
  EXPECT_TRUE(probe.IsAllnew());
  EXPECT_EQ(m.Db().m_tplTable->GetSize(), 1000);
}

TEST_F(AllnewTest, LogRowsShowAsAChange) {
  m.Put(TPL(0));
  EXPECT_EQ(tp.tpBsChanged(), 1);
}

TEST_F(AllnewTest, CopiesShareTheWorkArraysAndReleaseThemOnce) {
  TwoStations();
  Run();
  {
    TP copy(tp);
    TP assigned(&m.Db());
    assigned = copy;
    EXPECT_EQ(&TpProbe(copy).Section(2), &probe.Section(2));
    EXPECT_EQ(&TpProbe(assigned).Section(2), &probe.Section(2));
    TpProbe(copy).Clear();
    EXPECT_FALSE(TpProbe(copy).HasArrays());
    EXPECT_EQ(TpProbe(assigned).Section(2).id, 2);
    EXPECT_EQ(assigned.tpAllnew(), 1);
    EXPECT_NE(&TpProbe(assigned).Section(2), &probe.Section(2));
  }
  EXPECT_EQ(probe.Section(2).id, 2);
  probe.Clear();
  probe.Clear();
  EXPECT_EQ(tp.getAllKVCount(), 0);
}

TEST_F(AllnewTest, NullModelWarnsAndCountsAsEmpty) {
  const Lines lines = FailureLines([] {
    TP none(nullptr);
    EXPECT_EQ(Printed([&] { EXPECT_EQ(none.tpAllnew(), 1); }), "请首先运行网络校验程序!\n");
    EXPECT_EQ(none.tpBsChanged(), 0);
  });
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].starts_with("ASSERT: \"pDatabase != 0\" in tp ("));
}

TEST_F(AllnewTest, ListOfChangedLevelsGrows) {
  TwoStations();
  Run();
  const TP copy(tp);
  std::vector<int> many(100, Kv("A220"));
  probe.SetChangedKvs(many);
  EXPECT_EQ(probe.ChangedKvs(), many);
  EXPECT_EQ(copy.getChangedKVCount(), 2);
}

}  // namespace
}  // namespace dtsdb::test
