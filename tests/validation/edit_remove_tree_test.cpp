// Removals of containers: levels, stations, districts, companies.
#include "tests/validation/edit.h"

namespace dtsdb::test {
namespace {

template <class T>
Texts Ids(ModelBuilder& m) {
  Texts ids;
  for (int i = 0; i < m.Table<T>().GetCount(); ++i) ids.push_back(Utf8(m.Table<T>()[i].id));
  return ids;
}

/// Station S1 with a level of each device, and S2.
ModelBuilder FullStation() {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110).Station("S2").Kv("K3", 220);
  m.Breaker("B1", "K1", "N1", "N2").Zbr("Z1", "B1");
  m.Unit("U1", "K1", "N3").Load("L1", "K1", "N4").Cap("C1", "K1", "N5").Bus("M1", "K1", "N6");
  m.Unit("U2", "K2", "N7").Unit("U3", "K3", "N8");
  return m;
}

// Levels

TEST(RemoveLevel, TakesItsDevicesAlong) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  EXPECT_EQ(edit.Remove<KV>("K1"), "");
  EXPECT_EQ(Ids<KV>(m), (Texts{"K2", "K3"}));
  EXPECT_EQ(m.Table<CB>().GetCount() + m.Table<ZBR>().GetCount() + m.Table<BUS>().GetCount() +
                m.Table<CP>().GetCount() + m.Table<LD>().GetCount(),
            0);
  EXPECT_EQ(Ids<UN>(m), (Texts{"U2", "U3"}));
  EXPECT_EQ(ChainOf<R_ST_KV>(m.Db(), m.Of<ST>("S1").r_st_kv), Texts{"K2"});
  EXPECT_EQ(edit.Revalidate(), Texts());
}

// The breaker goes before its zero-impedance branch, whose ends then still count on the nodes.
// Kept: K32.
TEST(RemoveLevel, LeavesTheNodesOfABreakerWithAZeroImpedanceBranch) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  EXPECT_EQ(edit.Remove<KV>("K1"), "");
  EXPECT_EQ(Ids<ND>(m), (Texts{"N1", "N2", "N7", "N8"}));
  EXPECT_EQ(Ids<CB2>(m), (Texts{"B1i", "B1z"}));
}

TEST(RemoveLevel, StopsAtAChildThatFailsAndLeavesWhatIsDone) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  m.Of<CP>("C1").r_kv_cp = -1;
  EXPECT_EQ(edit.Remove<KV>("K1"), "删除CP没有所属的母线.\n");
  EXPECT_EQ(m.Table<CB>().GetCount() + m.Table<ZBR>().GetCount() + m.Table<BUS>().GetCount(), 0) << "gone before";
  EXPECT_EQ(Ids<ND>(m), (Texts{"N1", "N2", "N3", "N4", "N7", "N8"})) << "the capacitor's node is gone, too";
  EXPECT_EQ(Ids<LD>(m), Texts{"L1"});
  EXPECT_EQ(Ids<KV>(m), (Texts{"K1", "K2", "K3"}));
}

TEST(RemoveLevel, WithoutAStationIsRefusedWhenItsDevicesAreGone) {
  for (const bool hasRow : {false, true}) {
    ModelBuilder m = FullStation();
    Editing edit(m);
    KV& kv = m.Of<KV>("K2");
    if (hasRow) {
      m.Table<R_ST_KV>().GetPh(kv.r_st_kv).ist = -1;
    } else {
      kv.r_st_kv = -1;
    }
    EXPECT_EQ(edit.Remove<KV>("K2"), "该电压等级没有所属的厂站.\n");
    EXPECT_EQ(Ids<UN>(m), (Texts{"U1", "U3"}));
  }
}

// Stations

TEST(RemoveStation, TakesLevelsAndWindingsAlong) {
  ModelBuilder m = FullStation();
  m.Winding("X1", "S1", "K1", "K2", "N9", "N9b");
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  EXPECT_EQ(edit.Remove<ST>("S1"), "");
  EXPECT_EQ(Ids<ST>(m), Texts{"S2"});
  EXPECT_EQ(Ids<KV>(m), Texts{"K3"});
  EXPECT_EQ(m.Table<XF>().GetCount(), 0);
  EXPECT_EQ(m.Table<R_DV_ST>().GetCount(), 1);
  EXPECT_EQ(edit.Revalidate(), Texts());
}

TEST(RemoveStation, MayBeAskedForByItsNumber) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  EXPECT_TRUE(NmdAccess::RemoveStation(edit.nmd, m.Number<ST>("S1")));
  EXPECT_EQ(Ids<ST>(m), Texts{"S2"});
  m.Of<ST>("S2").r_dv_st = -1;
  EXPECT_FALSE(NmdAccess::RemoveStation(edit.nmd, m.Number<ST>("S2")));
}

TEST(RemoveStation, WithoutADistrictIsRefused) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  m.Of<ST>("S2").r_dv_st = -1;
  EXPECT_EQ(edit.Remove<ST>("S2"), "厂站不属于某个分区.\n");
  EXPECT_EQ(Ids<KV>(m), (Texts{"K1", "K2"})) << "what it held is gone";
}

// Kept: K33.
TEST(RemoveStation, DoesntTestTheNumberOfItsDistrict) {
  ModelBuilder m = FullStation();
  Editing edit(m);
  m.Table<R_DV_ST>().GetPh(m.Of<ST>("S2").r_dv_st).idv = -1;
  const MessageCatcher catcher;
  EXPECT_EQ(edit.Remove<ST>("S2"), "");
  EXPECT_EQ(MessageCatcher::Lines().size(), 1) << "a district of the number -1 is warned of";
  EXPECT_EQ(Ids<ST>(m), Texts{"S1"});
}

// Stations in the chain S1, S3, S2; the links are taken from the row of R_ST_KV with the number of the station's row.
// Kept: K34.
TEST(RemoveStation, TakesTheLinksOfTheLevelsRowWithTheSameNumber) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Station("S2").Kv("K2").Station("S3").Kv("K3");
  m.Unit("U1", "K1", "N1");
  Editing edit(m);
  ASSERT_EQ(ChainOf<R_DV_ST>(m.Db(), m.Of<DV>("DV").r_dv_st), (Texts{"S1", "S3", "S2"}));
  const int row = m.Of<ST>("S3").r_dv_st;
  const int other = m.Of<ST>("S1").r_dv_st;
  m.Table<R_ST_KV>().GetPh(row).next = other;
  m.Table<R_ST_KV>().GetPh(row).prev = -1;
  m.Of<ST>("S3").r_st_kv = -1;  // its level stays, and so do the links of that row
  EXPECT_EQ(edit.Remove<ST>("S3"), "");
  EXPECT_EQ(m.Table<R_DV_ST>().GetPh(other).prev, -1);
  EXPECT_EQ(m.Table<R_DV_ST>().GetPh(other).next, row) << "which the right links would have closed";
  EXPECT_FALSE(m.Table<R_DV_ST>().IsUsed(row));
}

// Districts and companies

// Kept: K35.
TEST(RemoveDistrict, TakesItsLinesAlongAndLeavesItsStations) {
  ModelBuilder m = FullStation();
  m.Line("A", "DV", "S1", "S2", "K1", "K3", "N1", "N8").DcLine("D", "DV", "S1", "S2", "K1", "K3", "N1", "N8");
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  EXPECT_EQ(edit.Remove<DV>("DV"), "") << "no line is left whose row the stations' chain could be taken for";
  EXPECT_EQ(m.Table<LN>().GetCount() + m.Table<DLN>().GetCount() + m.Table<DV>().GetCount(), 0);
  EXPECT_EQ(m.Of<CO>("CO").r_co_dv, -1);
  EXPECT_EQ(Ids<ST>(m), (Texts{"S1", "S2"}));
}

TEST(RemoveDistrict, WithoutACompanyIsRefused) {
  for (const bool hasRow : {false, true}) {
    ModelBuilder m;
    Editing edit(m);
    if (hasRow) {
      m.Table<R_CO_DV>().GetPh(m.Of<DV>("DV").r_co_dv).ico = -1;
    } else {
      m.Of<DV>("DV").r_co_dv = -1;
    }
    EXPECT_EQ(edit.Remove<DV>("DV"), "DV不属于某个公司.\n");
  }
}

/// Districts D1 to D4 in one company, stations S1 (D1) and S2 (D2), and lines of D2. The head of the stations of D1 is
/// row 0, and row 0 of R_DV_LN is that of the first line.
ModelBuilder FourDistricts(int lines) {
  ModelBuilder m;
  for (const char* id : {"D1", "D2", "D3", "D4"}) m.District(id);
  m.Station("S1", "D1").Kv("K1").Station("S2", "D2").Kv("K2");
  m.Unit("U1", "K1", "N1").Load("L2", "K2", "N2");
  for (int i = 0; i < lines; ++i) {
    m.Line(("A" + std::to_string(i)).c_str(), "D2", "S1", "S2", "K1", "K2", "N1", "N2");
  }
  return m;
}

// The stations' chain taken for one of lines names line 0, and so district 0, which is the one that goes.
TEST(RemoveDistrict, ThatComesToItselfFailsBeforeMoreIsTouched) {
  ModelBuilder m = FourDistricts(1);
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  ASSERT_EQ(m.Of<DV>("D1").r_dv_st, 0);
  EXPECT_FALSE(edit.nmd.RemoveDV(Id("D1")));
  EXPECT_EQ(edit.LastError(), "") << "there is no text for it";
  EXPECT_EQ(Ids<DV>(m), (Texts{"D1", "D2", "D3", "D4", "DV"}));
  EXPECT_EQ(m.Table<LN>().GetCount(), 1);
}

// The row of line 2 leads on to the one of line 3: districts 2 and 3 go first.
// Kept: K35.
TEST(RemoveDistrict, RemovesTheDistrictsNumberedLikeTheLinesThatItsStationsAreTakenFor) {
  ModelBuilder m = FourDistricts(4);
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  R_DV_LN& row = m.Table<R_DV_LN>().GetPh(0);
  row.iln = 2;
  row.next = 3;
  ASSERT_EQ(m.Table<R_DV_LN>().GetPh(3).iln, 3);
  m.Table<R_DV_LN>().GetPh(3).next = -1;
  EXPECT_EQ(edit.Remove<DV>("D1"), "");
  EXPECT_EQ(Ids<DV>(m), (Texts{"D2", "DV"}));
  EXPECT_EQ(Ids<ST>(m), (Texts{"S1", "S2"}));
}

TEST(RemoveDistrict, ThatComesToOneThatIsGoneFails) {
  ModelBuilder m = FourDistricts(2);
  Editing edit(m);
  m.Table<R_DV_LN>().GetPh(0).iln = 2;
  m.Table<R_DV_LN>().GetPh(0).next = 1;
  m.Table<R_DV_LN>().GetPh(1).iln = 2;
  m.Table<R_DV_LN>().GetPh(1).next = -1;
  EXPECT_FALSE(edit.nmd.RemoveDV(Id("D1")));
  EXPECT_EQ(Ids<DV>(m), (Texts{"D1", "D2", "D4", "DV"})) << "the first came through";
}

TEST(RemoveDistrict, WithALineThatFailsStops) {
  ModelBuilder m = FourDistricts(1);
  Editing edit(m);
  m.Of<LN>("A0").r_dv_ln = -1;
  EXPECT_EQ(edit.Remove<DV>("D2"), "删除线路没有所属的分区.\n");
  EXPECT_EQ(m.Table<DV>().GetCount(), 5);
}

TEST(RemoveDistrict, WithADcLineThatFailsStops) {
  ModelBuilder m = FourDistricts(1);
  m.DcLine("E", "D2", "S1", "S2", "K1", "K2", "N1", "N2");
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  m.Of<DLN>("E").r_dv_dln = -1;
  EXPECT_EQ(edit.Remove<DV>("D2"), "删除直流线路没有所属的分区.\n");
  EXPECT_EQ(m.Table<LN>().GetCount(), 0) << "gone before";
  EXPECT_EQ(m.Table<DV>().GetCount(), 5);
}

// Ten thousand districts, each leading to the next: no recursion.
TEST(RemoveDistrict, GoesAnyDepth) {
  constexpr int kDistricts = 10000;
  ModelBuilder m;
  m.Table<DV>().SetGrowBy(kDistricts);
  m.Table<R_DV_LN>().SetGrowBy(kDistricts);
  for (int i = 1; i < kDistricts; ++i) m.District(("E" + std::to_string(100000 + i)).c_str());
  Editing edit(m);
  for (int i = 0; i < kDistricts; ++i) {
    m.Table<DV>().GetPh(i).r_dv_st = i;
    R_DV_LN row(Id("DV"), Id(("A" + std::to_string(100000 + i)).c_str()));
    row.iln = i + 1;
    row.next = -1;
    ASSERT_EQ(m.Table<R_DV_LN>().Add(row), i);
  }
  m.Table<DV>().GetPh(kDistricts - 1).r_dv_st = -1;
  EXPECT_EQ(edit.Remove(m.Table<DV>().GetPh(0)), "");
  EXPECT_EQ(m.Table<DV>().GetCount(), 0);
}

TEST(RemoveCompany, TakesItsDistrictsAlong) {
  ModelBuilder m;
  m.District("D1").Company("C2").District("D2", "C2");
  Editing edit(m);
  EXPECT_EQ(edit.Remove<CO>("CO"), "");
  EXPECT_EQ(Ids<CO>(m), Texts{"C2"});
  EXPECT_EQ(Ids<DV>(m), Texts{"D2"});
  EXPECT_EQ(edit.Revalidate(), Texts());
}

TEST(RemoveCompany, StopsAtADistrictThatFails) {
  ModelBuilder m = FourDistricts(1);
  Editing edit(m);
  EXPECT_FALSE(edit.nmd.RemoveCO(Id("CO")));
  EXPECT_EQ(Ids<CO>(m), Texts{"CO"});
}

// Links that lead in a circle or nowhere

TEST(RemoveFromADamagedModel, EndsWhereALinkLeadsInACircle) {
  ModelBuilder m = FullStation();
  m.Load("L8", "K1", "N4").Load("L9", "K1", "N4");
  Editing edit(m);
  for (int i = 0; i < m.Table<R_KV_LD>().GetCount(); ++i) m.Table<R_KV_LD>()[i].next = 0;
  for (int i = 0; i < m.Table<R_ND_CB2>().GetCount(); ++i) m.Table<R_ND_CB2>()[i].next = i;
  const MessageCatcher catcher;
  for (const char* id : {"L1", "L8", "L9"}) edit.Remove<LD>(id);
  EXPECT_EQ(m.Table<LD>().GetCount(), 0);
  edit.Remove<KV>("K1");
  edit.Remove<CB>("B1");
  EXPECT_EQ(m.Table<CB>().GetCount(), 0);
  m.Table<ZBR>().Clear();  // what stood on the breaker
  EXPECT_EQ(edit.Revalidate(), Texts());
}

}  // namespace
}  // namespace dtsdb::test
