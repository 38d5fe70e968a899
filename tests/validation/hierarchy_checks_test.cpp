// Companies, districts, stations and voltage levels.
#include "tests/validation/run.h"

namespace dtsdb::test {
namespace {

TEST(CheckDistricts, DistrictOfAnUnknownCompanyHasOneErrorAndKeepsItsStations) {
  ModelBuilder m;
  m.District("D2", "nowhere").Station("S1", "D2");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:DV D2co字段在公司表中没有相应记录."});
  EXPECT_EQ(m.Of<DV>("D2").r_co_dv, -1);
  EXPECT_EQ(ChainOf<R_DV_ST>(m.Db(), m.Of<DV>("D2").r_dv_st), Texts{"S1"});
}

TEST(CheckDistricts, DistrictWithoutCompanyHasTheSameErrorThoughACompanyHasNoIdentityEither) {
  ModelBuilder m;
  m.Put(CO()).District("D2", "");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(),
            (Texts{"--NMD 错误:CO表中出现标识为空的记录.", "--NMD 错误:DV D2co字段在公司表中没有相应记录."}));
}

TEST(CheckDistricts, CompanyWithoutIdentityComesBeforeAnyDistrict) {
  ModelBuilder m;
  m.Put(CO()).Put(DV());
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:CO表中出现标识为空的记录.", "--NMD 错误:DV表中出现标识为空的记录."}));
}

TEST(CheckDistricts, TwoDistrictsOfOneIdentityFillTheRelation) {
  ModelBuilder m;
  Duplicate<DV>(m, "DV");
  const ValidationRun run(m.Db());
  EXPECT_FALSE(run.result);
  EXPECT_EQ(run.LastError(), "R_CO_DV关系表已满.\n");
}

TEST(CheckStations, StationWithoutDistrictAndWithType9HasTwoErrorsInThisOrder) {
  ModelBuilder m;
  m.Station("S1", "");
  m.Of<ST>("S1").type = 9;
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:ST S1dv字段在分区表中没有相应记录.", "--NMD 错误:ST S1厂站类型填写错误."}));
}

TEST(CheckStations, Types0To8Pass) {
  ModelBuilder m;
  m.Station("S1");
  for (u8 type = 0; type <= 8; ++type) {
    m.Of<ST>("S1").type = type;
    EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty()) << int{type};
  }
}

TEST(CheckStations, StationWithoutIdentityHasOneErrorOnly) {
  ModelBuilder m;
  m.Station("");
  m.Of<ST>("").type = 9;
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), Texts{"--NMD 错误:ST表中出现标识为空的记录."});
}

/// Errors of a level with these limits.
Texts ErrorsOfLevel(float vbase, float vmax, float vmin) {
  ModelBuilder m;
  m.Station("S1").Kv("K1");
  KV& kv = m.Of<KV>("K1");
  kv.vbase = vbase;
  kv.vmax = vmax;
  kv.vmin = vmin;
  return ValidationRun(m.Db()).Errors();
}

TEST(CheckLevels, AllLimitsZeroPass) { EXPECT_TRUE(ErrorsOfLevel(0.0F, 0.0F, 0.0F).empty()); }

TEST(CheckLevels, NegativeBaseVoltageHasOneError) {
  EXPECT_EQ(ErrorsOfLevel(-1.0F, 0.0F, 0.0F), Texts{"--NMD 错误:KV K1的电压基准值VBASE不合法."});
}

TEST(CheckLevels, ReversedLimitsHaveOneError) {
  EXPECT_EQ(ErrorsOfLevel(0.0F, 10.0F, 20.0F), Texts{"--NMD 错误:KV K1的电压高限值VMAX小于电压低限值VMIN不合法."});
}

TEST(CheckLevels, NegativeUpperLimitBelowTheLowerHasTwoErrors) {
  EXPECT_EQ(ErrorsOfLevel(0.0F, -1.0F, 0.0F), (Texts{"--NMD 错误:KV K1的电压高限值VMAX不合法.",
                                                     "--NMD 错误:KV K1的电压高限值VMAX小于电压低限值VMIN不合法."}));
}

TEST(CheckLevels, OneRowCanHaveFiveErrorsAtOnce) {
  ModelBuilder m;
  m.Kv("K1");
  KV& kv = m.Of<KV>("K1");
  kv.vbase = -1.0F;
  kv.vmax = -3.0F;
  kv.vmin = -2.0F;
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:KV K1st字段在厂站表中没有相应记录.", "--NMD 错误:KV K1的电压基准值VBASE不合法.",
                   "--NMD 错误:KV K1的电压高限值VMAX不合法.", "--NMD 错误:KV K1的电压低限值VMIN不合法.",
                   "--NMD 错误:KV K1的电压高限值VMAX小于电压低限值VMIN不合法."}));
}

TEST(CheckLevels, LevelWithoutIdentityHasOneErrorOnly) {
  ModelBuilder m;
  m.Station("S1").Kv("", -1.0F);
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), Texts{"--NMD 错误:KV表中出现标识为空的记录."});
}

TEST(LinkPass, ChainOfThreeChildrenRunsFirstThirdSecond) {
  ModelBuilder m;
  m.Station("A").Station("B").Station("C");
  const ValidationRun run(m.Db());
  const DV& dv = m.Of<DV>("DV");
  EXPECT_EQ(ChainOf<R_DV_ST>(m.Db(), dv.r_dv_st), (Texts{"A", "C", "B"}));
  tTable<R_DV_ST>& rows = *m.Db().m_rDvStTable;
  const R_DV_ST& first = rows.GetPh(m.Of<ST>("A").r_dv_st);
  EXPECT_EQ(first.prev, -1);
  EXPECT_EQ(first.next, m.Of<ST>("C").r_dv_st);
  EXPECT_EQ(rows.GetPh(first.next).prev, m.Of<ST>("A").r_dv_st);
  EXPECT_EQ(rows.GetPh(m.Of<ST>("B").r_dv_st).prev, first.next);
  EXPECT_EQ(rows.GetPh(m.Of<ST>("B").r_dv_st).next, -1);
  EXPECT_EQ(first.dv_id, Id("DV"));
  EXPECT_EQ(first.idv, m.Number<DV>("DV"));
  EXPECT_EQ(first.ist, m.Number<ST>("A"));
}

}  // namespace
}  // namespace dtsdb::test
