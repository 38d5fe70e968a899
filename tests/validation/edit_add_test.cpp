// Additions to a good model.
//
//   station S1: K1, K2 (110 kV)             station S2: K3
//
//     U1 N1 --B1-- N2 L1                      N4 --B2-- N5 L2
//
// Names ascend from S1 to S2, so that rows of levels and levels have the same numbers.
#include "tests/validation/edit.h"
#include "validation/internal/device_kinds.h"

namespace dtsdb::test {
namespace {

ModelBuilder TwoStations() {
  ModelBuilder m;
  m.District("D1").District("D2");
  m.Station("S1", "D1").Kv("K1", 220).Kv("K2", 110).Station("S2", "D2").Kv("K3", 220);
  m.Breaker("B1", "K1", "N1", "N2").Breaker("B2", "K3", "N4", "N5");
  m.Unit("U1", "K1", "N1").Load("L1", "K1", "N2").Load("L2", "K3", "N5");
  for (const char* point : {"P", "Q", "I", "V", "A", "ZP", "ZQ", "ZI"}) m.Analog(point);
  return m.Status("T1");
}

class AddTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(edit.IsGood()); }

  /// The identities in a chain of a relation.
  template <class Row>
  Texts Children(const char* parent) {
    using R = Relation<Row>;
    return ChainOf<Row>(model.Db(), model.Of<typename R::Parent>(parent).*R::kHead);
  }

  ModelBuilder model = TwoStations();
  Editing edit{model};
};

// What all additions ask first

TEST(Add, AfterARunWithErrorsIsRefusedEvenForAValidRecord) {
  ModelBuilder m = TwoStations();
  m.Of<CB>("B1").flags = 0;
  Editing edit(m);
  ForEachType(EditedRecords(), [&]<class T> {
    T record = New<T>("new");
    EXPECT_EQ(edit.Add(record), "网路数据库校验没有通过.\n");
    EXPECT_EQ(m.Table<T>().Find(record), -1);
  });
}

TEST(Add, WithoutAGlobalRecordWarnsAndTakesTheModelAsGood) {
  const TemporaryDirectory directory;
  const MessageCatcher catcher;
  DTSDB database;
  NMD nmd(&database);
  CO co(Id("CO"));
  EXPECT_TRUE(nmd.AddCO(co));
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_TRUE(MessageCatcher::Lines().value(0).startsWith(QStringLiteral("ASSERT: \"nLg >=0 && nLg < m_count\"")));
}

TEST_F(AddTest, OfAnInvalidRecordGivesItsReasonAndChangesNothing) {
  CO co = New<CO>("CO");
  EXPECT_EQ(edit.Add(co), "已经存在该公司记录.\n");
  EXPECT_EQ(model.Table<CO>().GetCount(), 1);
}

TEST_F(AddTest, CountsNoErrorsAndWritesNoLog) {
  const qsizetype log = QFile(QStringLiteral("nmd.log")).size();
  KV kv = NewLevel("K9", "S1", 0);
  EXPECT_NE(edit.Add(kv), "");
  EXPECT_EQ(model.Db().m_globalTable->GetPh(0).errors, 0);
  EXPECT_EQ(QFile(QStringLiteral("nmd.log")).size(), log);
}

// The administrative tree

// Kept: K20.
TEST_F(AddTest, OfACompanyLeavesTheCallersHead) {
  CO co = New<CO>("C2");
  co.r_co_dv = 77;
  EXPECT_EQ(edit.Add(co), "");
  EXPECT_EQ(model.Of<CO>("C2").r_co_dv, 77);
}

TEST_F(AddTest, OfADistrictTiesItToItsCompany) {
  DV dv = NewDistrict("D9", "CO");
  dv.r_dv_st = dv.r_dv_ln = dv.r_dv_dln = dv.r_co_dv = 5;
  EXPECT_EQ(edit.Add(dv), "");
  EXPECT_EQ(dv.r_dv_st, -1) << "set in the caller's record";
  const DV& row = model.Of<DV>("D9");
  EXPECT_EQ(row.r_dv_st, -1);
  EXPECT_EQ(row.r_dv_ln, -1);
  EXPECT_EQ(row.r_dv_dln, -1);
  EXPECT_EQ(Utf8(model.Table<R_CO_DV>().GetPh(row.r_co_dv).dv_id), "D9");
  EXPECT_EQ((Children<R_CO_DV>("CO")), (Texts{"D1", "D9", "DV", "D2"})) << "directly behind the head";
}

TEST_F(AddTest, OfAStationTiesItToItsDistrict) {
  ST st = NewStation("S9", "D1");
  st.flag = 64;
  st.r_st_kv = st.r_st_xf = st.r_dv_st = 5;
  EXPECT_EQ(edit.Add(st), "");
  const ST& row = model.Of<ST>("S9");
  EXPECT_EQ(row.r_st_kv, -1);
  EXPECT_EQ(row.r_st_xf, -1);
  EXPECT_EQ(row.flag, 64) << "as the caller gave it";
  EXPECT_EQ((Children<R_DV_ST>("D1")), (Texts{"S1", "S9"}));
}

TEST_F(AddTest, OfALevelTiesItToItsStation) {
  KV kv = NewLevel("K9", "S2");
  for (const auto link : {&KV::r_st_kv, &KV::r_kv_un, &KV::r_kv_cb, &KV::r_kv_ld, &KV::r_kv_cp, &KV::r_kv_bus,
                          &KV::r_kv_zbr, &KV::r_kv_nd}) {
    kv.*link = 5;
  }
  EXPECT_EQ(edit.Add(kv), "");
  const KV& row = model.Of<KV>("K9");
  for (const auto link :
       {&KV::r_kv_un, &KV::r_kv_cb, &KV::r_kv_ld, &KV::r_kv_cp, &KV::r_kv_bus, &KV::r_kv_zbr, &KV::r_kv_nd}) {
    EXPECT_EQ(row.*link, -1);
  }
  EXPECT_EQ((Children<R_ST_KV>("S2")), (Texts{"K3", "K9"}));
}

// Kept: K18.
TEST_F(AddTest, OfALevelOfZeroIsRefusedThoughARunTakesIt) {
  KV kv = NewLevel("K9", "S2", 0);
  EXPECT_EQ(edit.Add(kv), "输入的母线值小于或者等于零.\n");
  model.Put(kv);
  EXPECT_EQ(edit.Revalidate(), Texts());
}

TEST_F(AddTest, OfAStationOfType1IsRefusedAndOfType8IsNot) {
  ST st = NewStation("S9", "D1", 1);
  EXPECT_EQ(edit.Add(st), "填写的厂站类型不正确.\n");
  st.type = 8;
  EXPECT_EQ(edit.Add(st), "");
}

// Devices on one node

TEST_F(AddTest, OfALoadOnANodeThatHasOneFindsIt) {
  LD ld = NewShunt<LD>("L9", "K1", "N2");
  ld.ana_p = Id("P");
  ld.ana_q = Id("nowhere");
  ld.ana_v = Id("V");
  ld.iana_i = 33;
  EXPECT_EQ(edit.Add(ld), "");
  EXPECT_EQ(ld.ind, -1) << "resolved in the table only";
  const LD& row = model.Of<LD>("L9");
  EXPECT_EQ(row.ind, model.Number<ND>("N2"));
  EXPECT_EQ(model.Of<ND>("N2").flags, ND_HAS_LD);
  EXPECT_EQ(row.iana_p, model.Number<ANALOG>("P"));
  EXPECT_EQ(row.iana_q, -1);
  EXPECT_EQ(row.iana_v, model.Number<ANALOG>("V"));
  EXPECT_EQ(row.iana_i, 33) << "not looked up";
  EXPECT_EQ(Utf8(model.Table<R_KV_LD>().GetPh(row.r_kv_ld).ld_id), "L9");
  EXPECT_EQ((Children<R_KV_LD>("K1")), (Texts{"L1", "L9"}));
}

TEST_F(AddTest, OfAUnitOnANewNodeMakesItAndMarksTheStation) {
  model.Of<ST>("S2").flag = 0;
  UN un = NewShunt<UN>("U9", "K3", "N9");
  un.ana_p = Id("P");
  un.ana_q = Id("Q");
  EXPECT_EQ(edit.Add(un), "");
  EXPECT_EQ(model.Of<UN>("U9").ind, model.Number<ND>("N9"));
  EXPECT_EQ(model.Of<UN>("U9").iana_p, model.Number<ANALOG>("P"));
  EXPECT_EQ(model.Of<UN>("U9").iana_q, model.Number<ANALOG>("Q"));
  EXPECT_EQ(model.Of<ND>("N9").flags, ND_HAS_UN);
  EXPECT_EQ(model.Of<ST>("S2").flag, ST_HAS_UN);
  EXPECT_EQ((Children<R_KV_ND>("K3")), (Texts{"N5", "N9", "N4"}));
}

TEST_F(AddTest, OfACapacitorMarksNodeAndStation) {
  CP cp = NewShunt<CP>("C9", "K1", "N2");
  cp.ana_q = Id("Q");
  EXPECT_EQ(edit.Add(cp), "");
  EXPECT_EQ(model.Of<CP>("C9").iana_q, model.Number<ANALOG>("Q"));
  EXPECT_EQ(model.Of<ND>("N2").flags, ND_HAS_LD | ND_HAS_CP);
  EXPECT_TRUE(model.Of<ST>("S1").flag & ST_HAS_CP);
}

// Kept: K25.
TEST_F(AddTest, OfABusLeavesTheMarksToTheNextRun) {
  const u8 flag = model.Of<ST>("S1").flag;
  BUS bus = NewShunt<BUS>("M9", "K1", "N1");
  bus.ana_v = Id("V");
  bus.ana_a = Id("A");
  bus.f2 = 7;
  EXPECT_EQ(edit.Add(bus), "");
  EXPECT_EQ(model.Of<BUS>("M9").iana_v, model.Number<ANALOG>("V"));
  EXPECT_EQ(model.Of<BUS>("M9").iana_a, model.Number<ANALOG>("A"));
  EXPECT_EQ(model.Of<BUS>("M9").f2, 7) << "the limits are copied by a run";
  EXPECT_EQ(model.Of<ND>("N1").flags, ND_HAS_UN);
  EXPECT_EQ(model.Of<ST>("S1").flag, flag);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_EQ(model.Of<ND>("N1").flags, ND_HAS_UN | ND_HAS_BUS);
}

// The branches inside a station

TEST_F(AddTest, OfABreakerMakesItsNodesAndEnds) {
  model.Of<ST>("S1").flag = 0;
  CB cb = NewBreaker("B9", "K1", "N2", "N9");
  cb.status_id = Id("T1");
  EXPECT_EQ(edit.Add(cb), "");
  EXPECT_EQ(cb.istatus, 0) << "resolved before the copy";
  const CB& row = model.Of<CB>("B9");
  EXPECT_EQ(row.istatus, 0);
  EXPECT_EQ(row.ind, model.Number<ND>("N2"));
  EXPECT_EQ(row.iznd, model.Number<ND>("N9"));
  EXPECT_EQ(row.cb2, model.Number<CB2>("B9i"));
  EXPECT_EQ(row.zcb2, model.Number<CB2>("B9z"));
  EXPECT_EQ(model.Of<CB2>("B9i").icb, model.Number<CB>("B9"));
  EXPECT_EQ((Children<R_ND_CB2>("N2")), (Texts{"B1z", "B9i"}));
  EXPECT_EQ((Children<R_ND_CB2>("N9")), (Texts{"B9z"}));
  EXPECT_EQ((Children<R_KV_CB>("K1")), (Texts{"B1", "B9"}));
  EXPECT_EQ(model.Of<ND>("N9").flags, 0U);
  EXPECT_EQ(model.Of<ST>("S1").flag, ST_HAS_CB);
}

TEST_F(AddTest, OfAWindingMakesItsNodesAndEnds) {
  XF xf = NewWinding("X9", "S1", "K1", "K2", "N1", "N9");
  xf.ana_p = Id("P");
  xf.ana_q = Id("Q");
  xf.ana_i = Id("I");
  xf.zana_p = Id("ZP");
  xf.zana_q = Id("ZQ");
  xf.zana_i = Id("ZI");
  xf.iana_t = 44;
  EXPECT_EQ(edit.Add(xf), "");
  EXPECT_EQ(xf.izana_i, model.Number<ANALOG>("ZI")) << "resolved before the copy";
  const XF& row = model.Of<XF>("X9");
  EXPECT_EQ(row.iana_p, model.Number<ANALOG>("P"));
  EXPECT_EQ(row.iana_i, model.Number<ANALOG>("I"));
  EXPECT_EQ(row.izana_p, model.Number<ANALOG>("ZP"));
  EXPECT_EQ(row.iana_t, 44);
  EXPECT_EQ(row.ind, model.Number<ND>("N1"));
  EXPECT_EQ(row.iznd, model.Number<ND>("N9"));
  EXPECT_EQ(model.Of<XF2>("X9i").iana_q, model.Number<ANALOG>("Q"));
  EXPECT_EQ(model.Of<XF2>("X9z").iana_q, model.Number<ANALOG>("ZQ"));
  EXPECT_EQ(model.Of<XF2>("X9i").flags, 0U);
  EXPECT_EQ(model.Of<XF2>("X9z").flags, END_IS_TO);
  EXPECT_EQ(Utf8(model.Table<R_KV_ND>().GetPh(model.Of<ND>("N9").r_kv_nd).kv_id), "K2");
  EXPECT_EQ((Children<R_ST_XF>("S1")), (Texts{"X9"}));
  EXPECT_TRUE(model.Of<ST>("S1").flag & ST_HAS_XF);
}

// Lines

TEST_F(AddTest, OfALineWithANewNodeIsRefusedAndOfABreakerMakesTheNode) {
  LN ln = NewLine<LN>("A9", "D1", "S1", "S2", "K1", "K3", "N9", "N4");
  EXPECT_EQ(edit.Add(ln), "线路的首端结点在网络中不存在.\n");
  CB cb = NewBreaker("B9", "K1", "N1", "N9");
  EXPECT_EQ(edit.Add(cb), "");
  EXPECT_EQ(edit.Add(ln), "");
}

template <class Line>
void TestLineThatSortsLast(Editing& edit) {
  using Kind = BranchKind<Line>;
  ModelBuilder& m = edit.model;
  Line line = NewLine<Line>("A9", "D2", "S1", "S2", "K1", "K3", "N1", "N4");
  line.ana_p = Id("P");
  line.zana_i = Id("ZI");
  line.status = 4;
  EXPECT_EQ(edit.Add(line), "");
  EXPECT_EQ(line.status, internal::kLineKind<Line>.districtOfToEnd) << "the district is that of the to end only";
  EXPECT_EQ(line.ind, m.Number<ND>("N1"));
  EXPECT_EQ(line.iznd, m.Number<ND>("N4"));
  EXPECT_EQ(line.izana_i, m.Number<ANALOG>("ZI"));
  const Line& row = m.Of<Line>("A9");
  EXPECT_EQ(row.status, line.status);
  EXPECT_EQ(row.ind, m.Number<ND>("N1"));
  EXPECT_EQ(row.*Kind::kFromEnd, m.Number<typename Kind::End>("A9i"));
  EXPECT_EQ(row.*Kind::kToEnd, m.Number<typename Kind::End>("A9z"));
  EXPECT_EQ((m.Of<typename Kind::End>("A9z").*Kind::kOwner), m.Number<Line>("A9"));
  EXPECT_EQ(m.Of<typename Kind::End>("A9i").iana_p, m.Number<ANALOG>("P"));
  Line inside = NewLine<Line>("A99", "D1", "S1", "S2", "K1", "K3", "N2", "N5");
  EXPECT_EQ(edit.Add(inside), "");
  EXPECT_EQ(m.Of<Line>("A99").status, 0U) << "the district is that of the from end";
}

TEST_F(AddTest, OfALineThatSortsLastMakesAllOfIt) { TestLineThatSortsLast<LN>(edit); }
TEST_F(AddTest, OfADcLineThatSortsLastMakesAllOfIt) { TestLineThatSortsLast<DLN>(edit); }

// Districts have the numbers 0 (D1), 1 (D2), 2 (DV), stations 0 (S1), 1 (S2).
template <class Line>
void TestHeadOfAFirstLine(Editing& edit) {
  using R = Relation<ParentRow<Line>>;
  ModelBuilder& m = edit.model;
  Line line = NewLine<Line>("A9", "D1", "S2", "S1", "K3", "K1", "N4", "N1");
  EXPECT_EQ(edit.Add(line), "");
  EXPECT_EQ(m.Of<DV>("D1").*R::kHead, -1);
  EXPECT_EQ(m.Of<DV>("D2").*R::kHead, m.Of<Line>("A9").*R::kOwn) << "bears the number of station S2";
}

// Kept: K21.
TEST_F(AddTest, OfADistrictsFirstLineGivesTheHeadToTheDistrictNumberedLikeTheFromStation) {
  TestHeadOfAFirstLine<LN>(edit);
}
// Kept: K21.
TEST_F(AddTest, OfADistrictsFirstDcLineGivesTheHeadToTheDistrictNumberedLikeTheFromStation) {
  TestHeadOfAFirstLine<DLN>(edit);
}

TEST_F(AddTest, OfAFurtherLineGoesBehindTheHeadOfItsDistrict) {
  LN first = NewLine<LN>("A1", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  LN second = NewLine<LN>("A2", "D1", "S2", "S1", "K3", "K1", "N4", "N1");
  EXPECT_EQ(edit.Add(first), "");
  EXPECT_EQ(edit.Add(second), "");
  EXPECT_EQ((Children<R_DV_LN>("D1")), (Texts{"A1", "A2"}));
  EXPECT_EQ(model.Of<DV>("D2").r_dv_ln, -1);
}

// Eleven stations and four districts: the last station's number is beyond the slots of DV.
TEST(AddLine, FromAStationNumberedBeyondTheDistrictsWarnsAndLosesTheHead) {
  ModelBuilder m;
  for (int i = 11; i < 22; ++i) {
    const std::string number = std::to_string(i);
    m.Station(("S" + number).c_str()).Kv(("K" + number).c_str(), 220);
    m.Unit(("U" + number).c_str(), ("K" + number).c_str(), ("N" + number).c_str());
  }
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  ASSERT_LE(m.Table<DV>().GetSize(), 10);
  const MessageCatcher catcher;
  LN ln = NewLine<LN>("A1", "DV", "S21", "S11", "K21", "K11", "N21", "N11");
  EXPECT_EQ(edit.Add(ln), "");
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_EQ(m.Of<DV>("DV").r_dv_ln, -1);
  EXPECT_EQ(m.Of<LN>("A1").r_dv_ln, 0);
}

// The row whose logical number is the new line's physical one is another line when the new one doesn't sort last.
template <class Line>
void TestLineThatSortsFirst(Editing& edit, const char* reason) {
  using Kind = BranchKind<Line>;
  ModelBuilder& m = edit.model;
  Line last = NewLine<Line>("A9", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  Line first = NewLine<Line>("A1", "D1", "S1", "S2", "K1", "K3", "N2", "N5");
  ASSERT_EQ(edit.Add(last), "");
  EXPECT_EQ(edit.Add(first), reason) << "the ends of A9 exist";
  EXPECT_EQ(m.Of<Line>("A9").*Kind::kFromEnd, -1) << "and A9 has lost them";
  EXPECT_EQ(m.Of<Line>("A1").*Kind::kFromEnd, -1);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_EQ(m.Of<Line>("A1").*Kind::kFromEnd, m.Number<typename Kind::End>("A1i"));
  EXPECT_EQ(m.Of<Line>("A9").*Kind::kFromEnd, m.Number<typename Kind::End>("A9i"));
}

// Kept: K22.
TEST_F(AddTest, OfALineThatDoesntSortLastTakesTheEndsOfTheLineAtItsPlace) {
  TestLineThatSortsFirst<LN>(edit, "R_ND_LN2或者LN2表空间已满.\n");
}
// Kept: K22.
TEST_F(AddTest, OfADcLineThatDoesntSortLastTakesTheEndsOfTheLineAtItsPlace) {
  TestLineThatSortsFirst<DLN>(edit, "R_ND_DLN2或者DLN2表空间已满.\n");
}

// The only line has slot 2: no line has the logical number 2.
TEST_F(AddTest, OfALineInASlotBeyondTheCountWarnsAndMakesNoEnds) {
  LN lines[3];
  for (int i = 0; i < 3; ++i) {
    lines[i] = NewLine<LN>(i == 0 ? "A1" : i == 1 ? "A2" : "A3", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
    ASSERT_EQ(edit.Add(lines[i]), "");
  }
  for (const LN& line : lines) ASSERT_EQ(edit.Remove(line), "");
  LN ln = NewLine<LN>("A9", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  const MessageCatcher catcher;
  EXPECT_EQ(edit.Add(ln), "");
  EXPECT_FALSE(MessageCatcher::Lines().isEmpty());
  EXPECT_EQ(model.Number<LN>("A9"), 2);
  EXPECT_EQ(model.Of<LN>("A9").ln2, -1);
  EXPECT_EQ(model.Table<LN2>().Find(LN2(Id("A9i"))), -1);
}

// Zero-impedance branches

TEST_F(AddTest, OfAZeroImpedanceBranchStandsOnItsBreakersNodes) {
  ZBR zbr = NewZbr("Z1", "B1");
  EXPECT_EQ(edit.Add(zbr), "");
  const ZBR& row = model.Of<ZBR>("Z1");
  EXPECT_EQ(row.icb, model.Number<CB>("B1"));
  EXPECT_EQ(row.ind, model.Number<ND>("N1"));
  EXPECT_EQ(row.iznd, model.Number<ND>("N2"));
  EXPECT_EQ(row.zbr2, model.Number<ZBR2>("Z1i"));
  EXPECT_EQ(row.zzbr2, model.Number<ZBR2>("Z1z"));
  EXPECT_EQ((Children<R_ND_ZBR2>("N2")), (Texts{"Z1z"}));
  EXPECT_EQ((Children<R_KV_ZBR>("K1")), (Texts{"Z1"}));
  EXPECT_EQ(model.Of<CB>("B1").flags, 1 | CB_ZBR);
}

// Kept: K24.
TEST_F(AddTest, OfAZeroImpedanceBranchSetsStatusAndMeasurementsInTheCallersRecordOnly) {
  ZBR zbr = NewZbr("Z1", "B1");
  zbr.status = 5;
  zbr.ana_p = Id("P");
  zbr.ana_q = Id("Q");
  zbr.ana_i = Id("I");
  zbr.iana_i = 77;
  EXPECT_EQ(edit.Add(zbr), "");
  EXPECT_EQ(zbr.status, 0U);
  EXPECT_EQ(zbr.iana_p, model.Number<ANALOG>("P"));
  EXPECT_EQ(zbr.iana_q, model.Number<ANALOG>("Q"));
  EXPECT_EQ(zbr.iana_i, model.Number<ANALOG>("I"));
  const ZBR& row = model.Of<ZBR>("Z1");
  EXPECT_EQ(row.status, 5U);
  EXPECT_EQ(row.iana_p, -1);
  EXPECT_EQ(row.iana_i, 77);
  EXPECT_EQ(model.Of<ZBR2>("Z1z").iana_p, -1) << "the ends take what is stored";
}

// Kept: K23.
TEST_F(AddTest, OfAZeroImpedanceBranchTakesTheToNodeOfTheBreakerAtItsBreakersNumber) {
  CB cb = NewBreaker("B0", "K1", "N8", "N9");
  ASSERT_EQ(edit.Add(cb), "");
  ASSERT_EQ(model.Number<CB>("B1"), 0) << "and the first by name is B0";
  ZBR zbr = NewZbr("Z1", "B1");
  EXPECT_EQ(edit.Add(zbr), "");
  EXPECT_EQ(model.Of<ZBR>("Z1").ind, model.Number<ND>("N1"));
  EXPECT_EQ(model.Of<ZBR>("Z1").iznd, model.Number<ND>("N9"));
  EXPECT_TRUE(model.Of<CB>("B1").flags & CB_ZBR);
  EXPECT_FALSE(model.Of<CB>("B0").flags & CB_ZBR);
}

TEST_F(AddTest, OfAZeroImpedanceBranchWhoseNodesSoComeOutEqualFails) {
  CB cb = NewBreaker("B0", "K1", "N8", "N1");
  ASSERT_EQ(edit.Add(cb), "");
  ZBR zbr = NewZbr("Z1", "B1");
  EXPECT_EQ(edit.Add(zbr), " 两端具有相同的结点名称.\n");
  EXPECT_EQ(model.Of<ZBR>("Z1").zbr2, -1);
  EXPECT_NE(model.Of<ZBR>("Z1").r_kv_zbr, -1) << "what was done stays";
  EXPECT_FALSE(model.Of<CB>("B1").flags & CB_ZBR);
}

// Kept: K22.
TEST_F(AddTest, OfAZeroImpedanceBranchThatDoesntSortLastTakesTheEndsOfTheOneAtItsPlace) {
  ZBR last = NewZbr("Z9", "B1");
  ZBR first = NewZbr("Z1", "B2");
  ASSERT_EQ(edit.Add(last), "");
  EXPECT_EQ(edit.Add(first), "ZBR2或者R_ND_ZBR2表空间已满.\n");
  EXPECT_EQ(model.Of<ZBR>("Z9").zbr2, -1);
  EXPECT_EQ(model.Of<ZBR>("Z1").zbr2, -1);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_NE(model.Of<ZBR>("Z1").zbr2, -1);
}

// What an addition takes and a run doesn't

// Kept: K16.
// Kept: K60.
TEST_F(AddTest, TakesRecordsThatTheNextRunFindsFaultWith) {
  ST st = NewStation("S9", "D1", 12);
  KV kv = NewLevel("K9", "S1", 10);
  kv.vmax = 1;
  kv.vmin = 2;
  LD nameless = NewShunt<LD>("", "K1", "N1");
  XF xf = NewWinding("X9", "S1", "K1", "K2", "N1", "N9");
  LN twoVoltages = NewLine<LN>("A9", "D1", "S1", "S2", "K2", "K3", "N9", "N4");
  EXPECT_EQ(edit.Add(st), "");
  EXPECT_EQ(edit.Add(kv), "");
  EXPECT_EQ(edit.Add(nameless), "");
  EXPECT_EQ(edit.Add(xf), "");
  EXPECT_EQ(edit.Add(twoVoltages), "");
  EXPECT_EQ(edit.Revalidate(),
            (Texts{"--NMD 错误:ST S9厂站类型填写错误.", "--NMD 错误:KV K9的电压高限值VMAX小于电压低限值VMIN不合法.",
                   "--NMD 错误:LD表中出现标识为空的记录.", "--NMD 错误:LN A9 给定线路两端的电压等级值不相等."}));
}

// Tables that take no more

/// Fills a table, so that it takes no more.
template <class T>
void Fill(ModelBuilder& m) {
  tTable<T>& table = m.Table<T>();
  table.SetGrowBy(0);
  for (int number = 1000; table.GetCount() < table.GetSize(); ++number) {
    const QString id = Id(("zz" + std::to_string(number)).c_str());
    if constexpr (T::kKey == RecordKey::kRelation) {
      ASSERT_NE(table.Add(T(id, id)), -1);
    } else {
      ASSERT_NE(table.Add(T(id)), -1);
    }
  }
}

/// Adds `record` where table `Full` takes no more. The record stays in its own table unless that is the full one.
template <class Full, class Record>
void ExpectFull(Record record, const char* reason) {
  ModelBuilder m = TwoStations();
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  Fill<Full>(m);
  EXPECT_EQ(edit.Add(record), reason) << Full::kTableName;
  EXPECT_EQ(m.Table<Record>().Find(record) != -1, !(std::is_same_v<Full, Record>)) << Full::kTableName;
}

TEST(AddToAFullTable, OfTheTreeReportsWhich) {
  ExpectFull<CO>(New<CO>("C9"), "公司记录表空间已满.\n");
  ExpectFull<DV>(NewDistrict("D9", "CO"), "DV表空间已满.\n");
  ExpectFull<R_CO_DV>(NewDistrict("D9", "CO"), "R_CO_DV表空间已满.\n");
  ExpectFull<ST>(NewStation("S9", "D1"), "厂站表空间已满.\n");
  ExpectFull<R_DV_ST>(NewStation("S9", "D1"), "R_DV_ST表空间已满.\n");
  ExpectFull<KV>(NewLevel("K9", "S1"), "母线表空间已满.\n");
  ExpectFull<R_ST_KV>(NewLevel("K9", "S1"), "R_ST_KV表已满.\n");
}

TEST(AddToAFullTable, OfADeviceReportsWhich) {
  constexpr const char* kNodes = "结点表ND或者R_KV_ND表空间已满.\n";
  ExpectFull<BUS>(NewShunt<BUS>("X", "K1", "N9"), "母线BUS表空间已满.\n");
  ExpectFull<R_KV_BUS>(NewShunt<BUS>("X", "K1", "N9"), "R_KV_BUS表空间已满.\n");
  ExpectFull<ND>(NewShunt<BUS>("X", "K1", "N9"), kNodes);
  ExpectFull<CP>(NewShunt<CP>("X", "K1", "N9"), "电容电抗CP表空间已满.\n");
  ExpectFull<R_KV_CP>(NewShunt<CP>("X", "K1", "N9"), "R_KV_CP表空间已满.\n");
  ExpectFull<ND>(NewShunt<CP>("X", "K1", "N9"), kNodes);
  ExpectFull<UN>(NewShunt<UN>("X", "K1", "N9"), "UN表空间已满.\n");
  ExpectFull<R_KV_UN>(NewShunt<UN>("X", "K1", "N9"), "R_KV_UN表空间已满.\n");
  ExpectFull<R_KV_ND>(NewShunt<UN>("X", "K1", "N9"), kNodes);
  ExpectFull<LD>(NewShunt<LD>("X", "K1", "N9"), "负荷LD表空间已满.\n");
  ExpectFull<R_KV_LD>(NewShunt<LD>("X", "K1", "N9"), "R_KV_LD表空间已满.\n");
  ExpectFull<R_KV_ND>(NewShunt<LD>("X", "K1", "N9"), kNodes);
}

// Kept: K26.
TEST(AddToAFullTable, OfABranchReportsWhich) {
  constexpr const char* kNodes = "结点表ND或者R_KV_ND表空间已满.\n";
  const CB cb = NewBreaker("B9", "K1", "N1", "N9");
  ExpectFull<CB>(cb, "开关CB表空间已满.\n");
  ExpectFull<ND>(cb, kNodes);
  ExpectFull<R_KV_CB>(cb, "R_KV_CB表空间已满.\n");
  ExpectFull<CB2>(cb, "R_ND_CB2或者CB2表空间已满.\n");
  ExpectFull<R_ND_CB2>(cb, "R_ND_CB2或者CB2表空间已满.\n");
  const XF xf = NewWinding("X9", "S1", "K1", "K2", "N1", "N9");
  ExpectFull<XF>(xf, "开关CB表空间已满.\n");  // the text of the breakers
  ExpectFull<ND>(xf, kNodes);
  ExpectFull<R_ST_XF>(xf, "R_ST_XF表空间已满.\n");
  ExpectFull<XF2>(xf, "R_ND_XF2或者XF2表空间已满.\n");
  ExpectFull<R_ND_XF2>(xf, "R_ND_XF2或者XF2表空间已满.\n");
  const ZBR zbr = NewZbr("Z9", "B1");
  ExpectFull<ZBR>(zbr, "零阻抗支路ZBR表空间已满.\n");
  ExpectFull<R_KV_ZBR>(zbr, "R_KV_ZBR表空间已满.\n");
  ExpectFull<ZBR2>(zbr, "ZBR2或者R_ND_ZBR2表空间已满.\n");
  ExpectFull<R_ND_ZBR2>(zbr, "ZBR2或者R_ND_ZBR2表空间已满.\n");
}

TEST(AddToAFullTable, OfALineReportsWhich) {
  const LN ln = NewLine<LN>("A9", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  ExpectFull<LN>(ln, "线路LN表空间已满.\n");
  ExpectFull<R_DV_LN>(ln, "R_DV_LN表空间已满.\n");
  ExpectFull<LN2>(ln, "R_ND_LN2或者LN2表空间已满.\n");
  ExpectFull<R_ND_LN2>(ln, "R_ND_LN2或者LN2表空间已满.\n");
  const DLN dln = NewLine<DLN>("A9", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  ExpectFull<DLN>(dln, "直流线路DLN表空间已满.\n");
  ExpectFull<R_DV_DLN>(dln, "R_DV_DLN表空间已满.\n");
  ExpectFull<DLN2>(dln, "R_ND_DLN2或者DLN2表空间已满.\n");
  ExpectFull<R_ND_DLN2>(dln, "R_ND_DLN2或者DLN2表空间已满.\n");
}

TEST_F(AddTest, LeavesAModelInWhichAFailedAdditionMayBeRepaired) {
  Fill<R_ND_CB2>(model);
  CB cb = NewBreaker("B9", "K1", "N1", "N9");
  EXPECT_EQ(edit.Add(cb), "R_ND_CB2或者CB2表空间已满.\n");
  EXPECT_EQ(model.Db().m_globalTable->GetPh(0).invalid, 0) << "the verdict stays";
  model.Table<R_ND_CB2>().SetGrowBy(10);
  EXPECT_EQ(edit.Revalidate(), Texts());
  EXPECT_EQ(model.Of<CB>("B9").cb2, model.Number<CB2>("B9i"));
}

}  // namespace
}  // namespace dtsdb::test
