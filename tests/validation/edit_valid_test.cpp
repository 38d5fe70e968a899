// Whether a record can be added: the tests of each record class in their order.
//
//   district D1: station S1, levels K1 and K2 (110 kV)       district D2: station S2, level K3
//
//     N1 --B1-- N2   load L1 on N2                                   N4 --B2-- N5
//     |                                                              |
//     X1                                                             |
//     |                                                              |
//     N3 (K2)         N1 ------------- line A1, DC line D1 --------- N4
//
// Each test starts from a record with every fault at once and heals one after the other: so the order is tested too.
#include "tests/validation/edit.h"

namespace dtsdb::test {
namespace {

ModelBuilder StationsWithEveryKind() {
  ModelBuilder m;
  m.District("D1").District("D2").District("D3");
  m.Station("S1", "D1").Kv("K1", 220).Kv("K2", 110).Station("S2", "D2").Kv("K3", 220);
  m.Breaker("B1", "K1", "N1", "N2").Breaker("B2", "K3", "N4", "N5");
  m.Unit("U1", "K1", "N1").Load("L1", "K1", "N2").Cap("C1", "K1", "N2").Bus("M1", "K1", "N1").Zbr("Z1", "B1");
  m.Winding("X1", "S1", "K1", "K2", "N1", "N3");
  m.Line("A1", "D1", "S1", "S2", "K1", "K3", "N1", "N4").DcLine("D1", "D1", "S1", "S2", "K1", "K3", "N1", "N4");
  return m;
}

class IsValidTest : public testing::Test {
 protected:
  /// The next reason why `record` is refused.
  template <class Record>
  void Expect(const Record& record, const char* reason) {
    EXPECT_EQ(edit.Why(record), reason) << Utf8(record.id);
  }

  ModelBuilder model = StationsWithEveryKind();
  Editing edit{model};
};

TEST_F(IsValidTest, ModelIsGood) { EXPECT_TRUE(edit.IsGood()); }

// The administrative tree

TEST_F(IsValidTest, CompanyIsNew) {
  Expect(New<CO>("CO"), "已经存在该公司记录.\n");
  Expect(New<CO>("C2"), "");
}

TEST_F(IsValidTest, DistrictIsNewAndItsCompanyExists) {
  DV dv = NewDistrict("D1", "nowhere");
  Expect(dv, "已经存在该分区记录.\n");
  dv.id = Id("D9");
  Expect(dv, "该分区的公司不存在.\n");
  dv.co = Id("CO");
  Expect(dv, "");
}

TEST_F(IsValidTest, StationIsNewInADistrictAndOfAType) {
  ST st = NewStation("S1", "nowhere", 1);
  Expect(st, "添加的厂站已经存在.\n");
  st.id = Id("S9");
  Expect(st, "厂站的分区不存在.\n");
  st.dv = Id("D1");
  Expect(st, "填写的厂站类型不正确.\n");
  st.type = 8;
  Expect(st, "");
}

// Kept: K17.
TEST_F(IsValidTest, StationTypePassesWithBit8AndWithoutTheLowTwoOnly) {
  for (int type = 0; type < 256; ++type) {
    const bool passes = (type & 8) != 0 && (type & 3) == 0;
    Expect(NewStation("S9", "D1", static_cast<u8>(type)), passes ? "" : "填写的厂站类型不正确.\n");
  }
}

TEST_F(IsValidTest, LevelIsNewInAStationAndAboveZero) {
  KV kv = NewLevel("K1", "nowhere", 0);
  Expect(kv, "添加的母线在母线表中存在.\n");
  kv.id = Id("K9");
  Expect(kv, "母线的厂站在厂站表中不存在.\n");
  kv.st = Id("S1");
  Expect(kv, "输入的母线值小于或者等于零.\n");
  kv.vbase = -1;
  Expect(kv, "输入的母线值小于或者等于零.\n");
  kv.vbase = 10;
  Expect(kv, "");
}

// Kept: K18.
TEST_F(IsValidTest, LevelsLimitsAreNotLookedAt) {
  KV kv = NewLevel("K9", "S1", 10);
  kv.vmax = -1;
  kv.vmin = 20;
  Expect(kv, "");
}

// Devices on one node

/// The reasons for one kind of device, in their order.
template <class Shunt>
void TestShunt(Editing& edit, const char* existing, const char* noNode, const char* exists, const char* noLevel,
               const char* otherLevel) {
  Shunt shunt = NewShunt<Shunt>(existing, "nowhere", "");
  EXPECT_EQ(edit.Why(shunt), noNode);
  shunt.nd = Id("N3");
  EXPECT_EQ(edit.Why(shunt), exists);
  shunt.id = Id("new");
  EXPECT_EQ(edit.Why(shunt), noLevel);
  shunt.kv = Id("K1");
  EXPECT_EQ(edit.Why(shunt), otherLevel);
  shunt.nd = Id("N2");
  EXPECT_EQ(edit.Why(shunt), "");
  shunt.nd = Id("a new node");
  EXPECT_EQ(edit.Why(shunt), "");
}

TEST_F(IsValidTest, UnitsReasons) {
  TestShunt<UN>(edit, "U1", "机组指定的结点不合法.\n", "指定的机组已经存在.\n", "为机组指定的母线不存在.\n",
                "结点的母线与指定的矛盾.\n");
}

TEST_F(IsValidTest, LoadsReasons) {
  TestShunt<LD>(edit, "L1", "负荷的结点为空.\n", "欲添加的负荷在负荷表中存在.\n", "负荷指定的母线不存在.\n",
                "负荷结点所属的母线与负荷指定的母线矛盾.\n");
}

TEST_F(IsValidTest, CapacitorsReasons) {
  TestShunt<CP>(edit, "C1", "电容电抗的结点为空.\n", "欲添加的电容电抗在电容表中存在.\n", "电容电抗指定的母线不存在.\n",
                "电容结点所属的母线与电容指定的母线矛盾.\n");
}

TEST_F(IsValidTest, BusesReasons) {
  TestShunt<BUS>(edit, "M1", "物理母线的结点为空.\n", "欲添加的物理母线在母线表中存在.\n",
                 "物理母线指定的母线不存在.\n", "物理母线结点所属的母线与母线指定的母线矛盾.\n");
}

// The branches inside a station

TEST_F(IsValidTest, BreakersReasons) {
  CB cb = NewBreaker("B1", "nowhere", "", "");
  cb.flags = 5;
  Expect(cb, "指定开关在开关表中存在.\n");
  cb.id = Id("B9");
  Expect(cb, "开关首端结点不合法.\n");
  cb.nd = Id("N3");
  Expect(cb, "开关末端结点不合法.\n");
  cb.znd = Id("N3");
  Expect(cb, "开关两端结点名称相等.\n");
  cb.znd = Id("N4");
  Expect(cb, "开关指定的母线在母线表中不存在.\n");
  cb.kv = Id("K1");
  Expect(cb, "结点的母线与指定的矛盾.\n");
  cb.nd = Id("N1");
  Expect(cb, "结点的母线与指定的矛盾.\n");
  cb.znd = Id("a new node");
  Expect(cb, "开关指定的类型没有或者大于一种.\n");
  cb.flags = CB_OPEN;
  Expect(cb, "开关指定的类型没有或者大于一种.\n");
  cb.flags = CB_OPEN | 4;
  Expect(cb, "");
}

TEST_F(IsValidTest, ZeroImpedanceBranchsReasons) {
  ZBR zbr = NewZbr("Z1", "nowhere");
  Expect(zbr, "零阻抗支路已经存在.\n");
  zbr.id = Id("Z9");
  Expect(zbr, "零阻抗支路关联的开关在开关表中不存在.\n");
  zbr.cb = Id("B2");
  model.Of<CB>("B2").r_kv_cb = -1;
  Expect(zbr, "零阻抗支路没有母线.\n");
  zbr.cb = Id("B1");
  Expect(zbr, "");
}

// Kept: K26.
TEST_F(IsValidTest, WindingsReasons) {
  XF xf = NewWinding("X1", "nowhere", "nowhere", "nowhere", "", "");
  xf.type = 4;
  Expect(xf, "指定变压器线圈在表中存在.\n");
  xf.id = Id("X9");
  Expect(xf, "线圈首端结点不合法.\n");
  xf.nd = Id("N4");
  Expect(xf, "线圈末端结点不合法.\n");
  xf.znd = Id("N4");
  Expect(xf, "线圈两端结点名称相等.\n");
  xf.znd = Id("N5");
  Expect(xf, "线圈没有指定得厂站.\n");
  xf.st = Id("S1");
  Expect(xf, "线圈首端母线在表中不存在.\n");
  xf.kv = Id("K3");
  Expect(xf, "厂站与母线关系矛盾.\n");
  xf.kv = Id("K1");
  Expect(xf, "线圈末端母线在表中不存在.\n");
  xf.zkv = Id("K3");
  Expect(xf, "厂站与母线关系矛盾.\n");
  xf.zkv = Id("K2");
  Expect(xf, "线圈得指定类型非法");
  xf.type = 3;
  Expect(xf, "首端结点的母线与指定的矛盾.\n");
  xf.nd = Id("a new node");
  Expect(xf, "末端结点的母线与指定的矛盾.\n");
  xf.znd = Id("another new node");
  Expect(xf, "");
}

TEST_F(IsValidTest, WindingsLevelWithoutAStationContradictsIt) {
  model.Of<KV>("K2").r_st_kv = -1;
  Expect(NewWinding("X9", "S1", "K1", "K2", "N1", "N3"), "厂站与母线关系矛盾.\n");
}

// Lines

/// The reasons for a line, in their order. A station without a district has none of those known.
struct LineReasons {
  const char* exists;
  const char* noFromNode;
  const char* noToNode;
  const char* sameNodes;
  const char* noDistrict;
  const char* noFromStation;
  const char* fromStationWithoutDistrict;
  const char* noToStation;
  const char* sameStations;
  const char* toStationWithoutDistrict;
  const char* otherDistrict;
  const char* noFromLevel;
  const char* fromOtherLevel;
  const char* fromOtherStation;
  const char* noToLevel;
  const char* toOtherLevel;
  const char* toOtherStation;
};

template <class Line>
void TestLine(Editing& edit, const char* existing, const LineReasons& reasons) {
  ModelBuilder& model = edit.model;
  Line line = NewLine<Line>(existing, "nowhere", "nowhere", "nowhere", "nowhere", "nowhere", "no node", "no node");
  const auto expect = [&](const char* reason) { EXPECT_EQ(edit.Why(line), reason); };
  const i32 fromRow = model.Of<ST>("S1").r_dv_st;
  const i32 toRow = model.Of<ST>("S2").r_dv_st;
  model.Of<ST>("S1").r_dv_st = -1;
  model.Of<ST>("S2").r_dv_st = -1;
  expect(reasons.exists);
  line.id = Id("new");
  expect(reasons.noFromNode);
  line.nd = Id("N4");
  expect(reasons.noToNode);
  line.znd = Id("N4");
  expect(reasons.sameNodes);
  line.znd = Id("N3");
  expect(reasons.noDistrict);
  line.dv = Id("D3");
  expect(reasons.noFromStation);
  line.st = Id("S1");
  expect(reasons.fromStationWithoutDistrict);
  model.Of<ST>("S1").r_dv_st = fromRow;
  const i32 district = model.Table<R_DV_ST>().GetPh(fromRow).idv;
  model.Table<R_DV_ST>().GetPh(fromRow).idv = -1;
  expect(reasons.fromStationWithoutDistrict);
  model.Table<R_DV_ST>().GetPh(fromRow).idv = district;
  expect(reasons.noToStation);
  line.zst = Id("S1");
  expect(reasons.sameStations);
  line.zst = Id("S2");
  expect(reasons.toStationWithoutDistrict);
  model.Of<ST>("S2").r_dv_st = toRow;
  expect(reasons.otherDistrict);
  line.dv = Id("D2");
  expect(reasons.noFromLevel);
  line.kv = Id("K1");
  expect(reasons.fromOtherLevel);
  line.nd = Id("N1");
  const int level = model.Number<KV>("K1");
  const i32 station = model.Table<R_ST_KV>().GetPh(level).ist;
  model.Table<R_ST_KV>().GetPh(level).ist = 99;
  expect(reasons.fromOtherStation);
  model.Table<R_ST_KV>().GetPh(level).ist = station;
  expect(reasons.noToLevel);
  line.zkv = Id("K3");
  expect(reasons.toOtherLevel);
  line.znd = Id("N5");
  const int farLevel = model.Number<KV>("K3");
  const i32 farStation = model.Table<R_ST_KV>().GetPh(farLevel).ist;
  model.Table<R_ST_KV>().GetPh(farLevel).ist = -1;
  expect(reasons.toOtherStation);
  model.Table<R_ST_KV>().GetPh(farLevel).ist = farStation;
  expect("");
}

TEST_F(IsValidTest, LinesReasons) {
  TestLine<LN>(
      edit, "A1",
      {"线路在线路表中已经存在.\n", "线路的首端结点在网络中不存在.\n", "线路的末端结点在网络中不存在.\n",
       "线路的两个结点名相等.\n", "线路提供的分区在分区表中不存在.\n", "线路首端厂站在厂站表中不存在.\n",
       "线路首端厂站没有对应的分区.\n", "线路末端厂站在厂站表中不存在.\n", "欲添加的线路有两个相同的厂站名称.\n",
       "线路末端厂站没有对应的分区.\n", "指定的厂站与指定的分区所属关系矛盾.\n",
       "线路指定的首端母线在母线表中不存在.\n", "首端结点的母线与指定母线的矛盾.\n",
       "首端端结点所属的厂站与填写的厂站矛盾.\n", "线路指定的末端母线在母线表中不存在.\n",
       "末端结点的母线与指定的矛盾.\n", "末端结点所属的厂站与填写的厂站矛盾.\n"});
}

TEST_F(IsValidTest, DcLinesReasons) {
  TestLine<DLN>(edit, "D1",
                {"直流线表中已经存在这条线路.\n", "该直流线的首端结点在结点表中不存在.\n",
                 "该条线的末端结点在结点线表中不存在.\n", "该条直流线有相同的结点名称.\n",
                 "直流线路提供的分区在分区表中不存在.\n", "直流线路首端厂站在厂站表中不存在.\n",
                 "直流线路首端厂站没有对应的分区.\n", "直流线路末端厂站在厂站表中不存在.\n",
                 "欲添加的直流线路有两个相同的厂站名称.\n", "直流线路末端厂站没有对应的分区.\n",
                 "直流线路指定的厂站与指定的分区所属关系矛盾.\n", "直流线路指定的首端母线在母线表中不存在.\n",
                 "直流线路首端结点的母线与指定母线的矛盾.\n", "直流线路首端端结点所属的厂站与填写的厂站矛盾.\n",
                 "直流线路指定的末端母线在母线表中不存在.\n", "直流线路末端结点的母线与指定的矛盾.\n",
                 "直流线路末端结点所属的厂站与填写的厂站矛盾.\n"});
}

// The station of a line's end is that of the row with the level's own number. Level KA of station S2 and level KB of
// station S1: the rows are in the order of the stations, the levels in that of their own names.
// Kept: K19.
TEST(IsValidLine, LooksUpAStationInTheRowWithTheLevelsNumber) {
  ModelBuilder m;
  m.Station("S1").Kv("KB", 220).Station("S2").Kv("KA", 220);
  m.Unit("U1", "KB", "N1").Load("L1", "KA", "N2");
  Editing edit(m);
  ASSERT_TRUE(edit.IsGood());
  EXPECT_EQ(edit.Why(NewLine<LN>("A", "DV", "S1", "S2", "KB", "KA", "N1", "N2")),
            "首端端结点所属的厂站与填写的厂站矛盾.\n");
}

// On any model

TEST(IsValidOnAnyModel, DoesntLookAtTheVerdict) {
  ModelBuilder m = StationsWithEveryKind();
  m.Of<CB>("B2").flags = 0;
  Editing edit(m);
  EXPECT_FALSE(edit.IsGood());
  EXPECT_EQ(edit.Why(NewShunt<LD>("L9", "K1", "N1")), "");
}

TEST(IsValidOnAnyModel, ChangesNothingAndWritesNoLog) {
  ModelBuilder m = StationsWithEveryKind();
  Editing edit(m);
  const QString before = QStringLiteral("before");
  const QString after = QStringLiteral("after");
  ASSERT_TRUE(m.Db().WriteObject(before));
  const qsizetype log = QFile(QStringLiteral("nmd.log")).size();
  edit.Why(NewShunt<LD>("L9", "K1", "N1"));
  edit.Why(NewLine<LN>("A9", "D1", "S1", "S2", "K1", "K3", "N1", "N4"));
  EXPECT_NE(edit.Why(New<CO>("CO")), "");
  ASSERT_TRUE(m.Db().WriteObject(after));
  QFile one(before);
  QFile two(after);
  ASSERT_TRUE(one.open(QIODevice::ReadOnly) && two.open(QIODevice::ReadOnly));
  EXPECT_EQ(one.readAll(), two.readAll());
  EXPECT_EQ(QFile(QStringLiteral("nmd.log")).size(), log);
}

TEST(IsValidOnAnyModel, GivesFalseWithoutAModel) {
  const MessageCatcher catcher;
  const TemporaryDirectory directory;
  NMD nmd(nullptr);
  ForEachType(EditedRecords(), [&nmd]<class T> {
    T record = New<T>("new");
    EXPECT_FALSE(nmd.IsValid(record));
    EXPECT_FALSE(AddRecord(nmd, record));
    EXPECT_FALSE(RemoveRecord(nmd, record));
  });
}

}  // namespace
}  // namespace dtsdb::test
