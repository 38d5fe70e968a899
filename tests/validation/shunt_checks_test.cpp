// Loads, units, capacitors and buses.
#include "tests/validation/run.h"

namespace dtsdb::test {
namespace {

/// Stations S1 with levels K1 and K2, and no devices.
ModelBuilder TwoLevels() {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110);
  return m;
}

TEST(CheckLoads, LoadWithoutMeasurementsHasThreeWarningsAndNoError) {
  ModelBuilder m = TwoLevels();
  m.Load("L1", "K1", "N1").Unit("U1", "K1", "N1");
  m.Of<LD>("L1").iana_p = 5;
  m.Of<LD>("L1").iana_i = 5;
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.LinesWith("LD "),
            (Texts{"--NMD 警告:LD L1 的有功遥测P在遥测表中不存在.", "--NMD 警告:LD L1 的无功遥测Q在遥测表中不存在.",
                   "--NMD 警告:LD L1 的电压遥测V在遥测表中不存在."}));
  EXPECT_EQ(run.global.errors, 0);
  EXPECT_EQ(m.Of<LD>("L1").iana_p, -1);
  EXPECT_EQ(m.Of<LD>("L1").iana_q, -1);
  EXPECT_EQ(m.Of<LD>("L1").iana_v, -1);
  EXPECT_EQ(m.Of<LD>("L1").iana_i, 5) << "the current isn't looked at";
}

TEST(CheckLoads, MeasurementsBecomeNumbers) {
  ModelBuilder m = TwoLevels();
  m.Analog("P").Analog("Q").Analog("V").Load("L1", "K1", "N1");
  LD& ld = m.Of<LD>("L1");
  ld.ana_p = Id("P");
  ld.ana_q = Id("Q");
  ld.ana_v = Id("V");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.LinesWith("LD ").empty());
  EXPECT_EQ(m.Of<LD>("L1").iana_p, m.Number<ANALOG>("P"));
  EXPECT_EQ(m.Of<LD>("L1").iana_q, m.Number<ANALOG>("Q"));
  EXPECT_EQ(m.Of<LD>("L1").iana_v, m.Number<ANALOG>("V"));
}

// Kept: K10.
TEST(CheckLoads, NodeInAnotherLevelIsOneErrorAndTheStationIsMarkedAllTheSame) {
  ModelBuilder m = TwoLevels();
  m.Winding("X1", "S1", "K1", "K2", "N1", "N2").Load("L1", "K1", "N2");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:LD L1 给定的母线与结点给定的相矛盾."});
  EXPECT_EQ(m.Of<LD>("L1").ind, m.Number<ND>("N2"));
  EXPECT_EQ(m.Of<ND>("N2").flags & ND_HAS_LD, 0U);
  EXPECT_EQ(m.Of<ST>("S1").flag, ST_HAS_XF | ST_HAS_LD);
}

TEST(CheckLoads, LevelWithoutStationHasItsOwnErrorOnly) {
  ModelBuilder m;
  m.Station("S1").Kv("K1");
  m.Of<KV>("K1").st = Id("nowhere");
  m.Load("L1", "K1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:KV K1st字段在厂站表中没有相应记录."});
  EXPECT_EQ(m.Of<ST>("S1").flag, 0);
  EXPECT_EQ(m.Of<ND>("N1").flags, ND_HAS_LD);
}

TEST(CheckLoads, TwoLoadsOnOneNodeShareIt) {
  ModelBuilder m = TwoLevels();
  m.Load("L1", "K1", "N1").Load("L2", "K1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(m.Of<LD>("L1").ind, m.Of<LD>("L2").ind);
  EXPECT_EQ(m.Of<ND>("N1").flags, ND_HAS_LD);
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 1);
}

// Kept: K09.
TEST(CheckBuses, LimitsAreCopiedThoughTheNodeIsMissing) {
  ModelBuilder m = TwoLevels();
  m.Bus("B1", "K1", "");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:BUS B1 关联的结点名称为空."});
  EXPECT_EQ(m.Of<BUS>("B1").f2, m.Of<KV>("K1").vmax);
  EXPECT_EQ(m.Of<BUS>("B1").f3, m.Of<KV>("K1").vmin);
}

TEST(CheckBuses, BusMarksItsNodeAndNoStation) {
  ModelBuilder m = TwoLevels();
  m.Bus("B1", "K1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.LinesWith("BUS "), (Texts{"--NMD 警告:BUS B1 的电压遥测V在遥测表中不存在.",
                                          "--NMD 警告:BUS B1 的相角遥测A在遥测表中不存在."}));
  EXPECT_EQ(m.Of<ND>("N1").flags, ND_HAS_BUS);
  EXPECT_EQ(m.Of<ST>("S1").flag, 0);
  EXPECT_EQ(m.Of<BUS>("B1").ind, m.Number<ND>("N1"));
}

TEST(CheckShunts, UnitsAndCapacitorsMarkNodeAndStation) {
  ModelBuilder m = TwoLevels();
  m.Unit("U1", "K1", "N1").Cap("C1", "K2", "N2");
  m.Of<UN>("U1").iana_v = 6;
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.LinesWith("UN "),
            (Texts{"--NMD 警告:UN U1 的有功遥测P在遥测表中不存在.", "--NMD 警告:UN U1 的无功遥测Q在遥测表中不存在."}));
  EXPECT_EQ(run.LinesWith("CP "), Texts{"--NMD 警告:CP C1 的无功遥测Q在遥测表中不存在."});
  EXPECT_EQ(m.Of<ND>("N1").flags, ND_HAS_UN);
  EXPECT_EQ(m.Of<ND>("N2").flags, ND_HAS_CP);
  EXPECT_EQ(m.Of<ST>("S1").flag, ST_HAS_UN | ST_HAS_CP);
  EXPECT_EQ(m.Of<UN>("U1").iana_v, 6) << "the voltage isn't looked at";
}

/// The faults that all kinds of device share, in the words of each.
template <class Shunt>
class EveryShunt : public testing::Test {};

using Shunts = testing::Types<LD, UN, CP, BUS>;
TYPED_TEST_SUITE(EveryShunt, Shunts);

template <class Shunt>
ModelBuilder WithShunt(const char* id, const char* kv, const char* nd) {
  ModelBuilder m = TwoLevels();
  Shunt shunt(Id(id));
  shunt.kv = Id(kv);
  shunt.nd = Id(nd);
  shunt.ind = 77;
  m.Put(shunt);
  return m;
}

template <class Shunt>
std::string Error() {
  return std::string("--NMD 错误:") + Shunt::kTableName;
}

TYPED_TEST(EveryShunt, WithoutIdentityIsOneError) {
  ModelBuilder m = WithShunt<TypeParam>("", "K1", "N1");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), Texts{Error<TypeParam>() + "表中出现标识为空的记录."});
}

TYPED_TEST(EveryShunt, OfAnUnknownLevelIsDropped) {
  ModelBuilder m = WithShunt<TypeParam>("A", "nowhere", "N1");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith(TypeParam::kTableName),
            Texts{Error<TypeParam>() + " Akv字段在母线表中没有相应记录."});
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 0);
}

TYPED_TEST(EveryShunt, WithoutNodeIsDroppedAndKeepsItsNumber) {
  ModelBuilder m = WithShunt<TypeParam>("A", "K1", "");
  m.Unit("other", "K1", "M");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{Error<TypeParam>() + " A 关联的结点名称为空."});
  EXPECT_EQ(m.template Of<TypeParam>("A").ind, -1) << "77 is no node, so its logical number is -1";
}

TYPED_TEST(EveryShunt, OnANodeOfAnotherLevelHasAnError) {
  ModelBuilder m = WithShunt<TypeParam>("A", "K1", "N2");
  m.Winding("X1", "S1", "K1", "K2", "N1", "N2");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), Texts{Error<TypeParam>() + " A 给定的母线与结点给定的相矛盾."});
}

TYPED_TEST(EveryShunt, HangsOnItsLevel) {
  ModelBuilder m = WithShunt<TypeParam>("A", "K2", "N1");
  EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty());
  EXPECT_EQ(m.template Of<TypeParam>("A").ind, m.template Number<ND>("N1"));
  EXPECT_EQ(ChainOf<R_KV_ND>(m.Db(), m.template Of<KV>("K2").r_kv_nd), Texts{"N1"});
}

}  // namespace
}  // namespace dtsdb::test
