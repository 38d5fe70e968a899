// Lines between stations, alternating and direct current.
//
//   district D1            district D2
//   station S1, level K1   station S2, level K2
//   node N1  ------------- node N2
#include "tests/validation/run.h"

namespace dtsdb::test {
namespace {

ModelBuilder TwoStationsApart() {
  ModelBuilder m;
  m.District("D1").District("D2").District("D3");
  m.Station("S1", "D1").Kv("K1", 220).Station("S2", "D2").Kv("K2", 220);
  return m;
}

/// The same with line A of district `dv`.
ModelBuilder WithLine(const char* dv) {
  ModelBuilder m = TwoStationsApart();
  m.Line("A", dv, "S1", "S2", "K1", "K2", "N1", "N2");
  return m;
}
ModelBuilder WithDcLine(const char* dv) {
  ModelBuilder m = TwoStationsApart();
  m.DcLine("A", dv, "S1", "S2", "K1", "K2", "N1", "N2");
  return m;
}

// Kept: K60.
TEST(CheckLines, InsideOneStationPassesWhileItsNodesDiffer) {
  ModelBuilder m = TwoStationsApart();
  m.Line("A", "D1", "S1", "S1", "K1", "K1", "N1", "N2").Line("B", "D1", "S1", "S1", "K1", "K1", "N1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:LN B 两端有相同的结点名称."});
  EXPECT_EQ(m.Of<LN>("A").ln2, m.Number<LN2>("Ai"));
}

TEST(CheckLines, WithBothStationsInItsDistrictHasNoBit) {
  ModelBuilder m = WithLine("D1");
  m.Of<ST>("S2").dv = Id("D1");
  m.Of<LN>("A").status = LN_DISTRICT_OF_TO_END | 4;
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.Errors().empty());
  EXPECT_EQ(m.Of<LN>("A").status, 4U);
}

TEST(CheckLines, WithTheToEndOnlyInItsDistrictHasTheBit) {
  ModelBuilder m = WithLine("D2");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.Errors().empty());
  EXPECT_EQ(m.Of<LN>("A").status, 64U);
}

TEST(CheckLines, WithTheFromEndOnlyInItsDistrictHasNoBit) {
  ModelBuilder m = WithLine("D1");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.Errors().empty());
  EXPECT_EQ(m.Of<LN>("A").status, 0U);
}

TEST(CheckLines, WithNeitherEndInItsDistrictHasAnErrorAndNoBitAndKeepsItsEnds) {
  ModelBuilder m = WithLine("D3");
  m.Of<LN>("A").status = LN_DISTRICT_OF_TO_END;
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:LN A 给定线路的区域与给定厂站所属的区域不一致."});
  EXPECT_EQ(m.Of<LN>("A").status, 0U);
  EXPECT_EQ(m.Db().m_ln2Table->GetCount(), 2);
}

TEST(CheckLines, StationWithoutDistrictCountsAsNoDistrict) {
  ModelBuilder m = WithLine("D2");
  m.Of<ST>("S1").dv = Id("nowhere");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:ST S1dv字段在分区表中没有相应记录."});
  EXPECT_EQ(m.Of<LN>("A").status, 64U);
}

// D1 is district number 0, which a station without a district must not be taken for.
TEST(CheckLines, StationWithoutDistrictIsNotTakenForTheFirstDistrict) {
  ModelBuilder m = WithLine("D1");
  m.Of<ST>("S1").dv = Id("nowhere");
  const ValidationRun run(m.Db());
  ASSERT_EQ(m.Number<DV>("D1"), 0);
  EXPECT_EQ(run.Errors(), (Texts{"--NMD 错误:ST S1dv字段在分区表中没有相应记录.",
                                 "--NMD 错误:LN A 给定线路的区域与给定厂站所属的区域不一致."}));
  EXPECT_EQ(m.Of<LN>("A").status, 0U);
}

TEST(CheckLines, OfTwoBaseVoltagesIsOneErrorAndTheEndsStay) {
  ModelBuilder m = WithLine("D1");
  m.Of<KV>("K2").vbase = 110.0F;
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:LN A 给定线路两端的电压等级值不相等."});
  EXPECT_EQ(m.Db().m_ln2Table->GetCount(), 2);
}

TEST(CheckLines, BaseVoltage0IsNotCompared) {
  ModelBuilder m = WithLine("D1");
  m.Of<KV>("K2").vbase = 0.0F;
  EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty());
}

TEST(CheckDcLines, OfTwoBaseVoltagesPass) {
  ModelBuilder m = WithDcLine("D1");
  m.Of<KV>("K1").vbase = 500.0F;
  EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty());
}

TEST(CheckLines, WithoutDistrictHasItsErrorBehindItsWarningsAndLeavesItsNodes) {
  ModelBuilder m = WithLine("");
  m.Of<LN>("A").ln2 = -1;
  const ValidationRun run(m.Db());
  EXPECT_EQ(
      run.LinesWith("LN "),
      (Texts{"--NMD 警告:LN A 的首端有功遥测P在遥测表中不存在.", "--NMD 警告:LN A 的首端无功遥测Q在遥测表中不存在.",
             "--NMD 警告:LN A 的首端电流遥测I在遥测表中不存在.", "--NMD 警告:LN A 的末端有功遥测P在遥测表中不存在.",
             "--NMD 警告:LN A 的末端有功遥测Q在遥测表中不存在.", "--NMD 警告:LN A 的末端电流遥测I在遥测表中不存在.",
             "--NMD 错误:LN Adv字段在分区表中没有相应记录."}));
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 2);
  EXPECT_EQ(m.Db().m_ln2Table->GetCount(), 0);
}

TEST(CheckLines, NodeThatNoDeviceNamesIsMadeInTheLinesLevelAndWarnedOf) {
  ModelBuilder m = WithLine("D1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.LinesWith("ND "),
            (Texts{"--NMD 警告:ND N1 上连接的设备小于或者等于一.", "--NMD 警告:ND N2 上连接的设备小于或者等于一."}));
  EXPECT_EQ(ChainOf<R_KV_ND>(m.Db(), m.Of<KV>("K2").r_kv_nd), Texts{"N2"});
}

TEST(CheckLines, FaultsOfNamesAndLevels) {
  ModelBuilder m = TwoStationsApart();
  m.Load("L", "K1", "N1").Load("M", "K2", "N2");
  m.Line("", "D1", "S1", "S2", "K1", "K2", "N1", "N2").Line("A", "D1", "", "S2", "K1", "K2", "N1", "N2");
  m.Line("B", "D1", "S1", "", "K1", "K2", "N1", "N2").Line("C", "D1", "S1", "S2", "K2", "K2", "N1", "N2");
  m.Line("D", "D1", "S1", "S2", "no", "K2", "P", "N2").Line("E", "D1", "S1", "S2", "K1", "K1", "N1", "N2");
  m.Line("F", "D1", "S1", "S2", "K1", "no", "N1", "P").Line("G", "D1", "S1", "S1", "K1", "K2", "N1", "N2");
  EXPECT_EQ(
      ValidationRun(m.Db()).Errors(),
      (Texts{"--NMD 错误:LN表中出现标识为空的记录.", "--NMD 错误:LN A 关联的首端厂站名称为空.",
             "--NMD 错误:LN B 关联的末端厂站名称为空.", "--NMD 错误:LN C 给定的首端母线与首端结点给定的相矛盾.",
             "--NMD 错误:LN D 给定的首端母线在母线表中不存在.", "--NMD 错误:LN E 给定的末端母线与末端结点给定的相矛盾.",
             "--NMD 错误:LN F 给定的末端母线在母线表中不存在.",
             "--NMD 错误:LN G 给定结点的厂站与线路给定的厂站不一致."}));
}

TEST(CheckDcLines, SpeakInTheirOwnWords) {
  ModelBuilder m = TwoStationsApart();
  m.DcLine("", "D1", "S1", "S2", "K1", "K2", "N1", "N2").DcLine("A", "D1", "S1", "S1", "K1", "K2", "N1", "N2");
  m.DcLine("B", "", "S1", "S2", "K1", "K2", "N1", "N2").DcLine("C", "D1", "S1", "S1", "K1", "K1", "N1", "N1");
  m.DcLine("D", "D3", "S1", "S2", "K1", "K2", "N1", "N2");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:DLN表中出现标识为空的记录.", "--NMD 错误:DLN A 给定结点的厂站与给定线路的厂站不一致.",
                   "--NMD 错误:DLN Bdv字段在分区表中没有相应记录.", "--NMD 错误:DLN C 两端有相同的结点名称.",
                   "--NMD 错误:DLN D 给定线路的区域与给定厂站所属的区域不一致."}));
}

TEST(CheckDcLines, WithTheToEndOnlyInItsDistrictHasBit32) {
  ModelBuilder m = WithDcLine("D2");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.Errors().empty());
  EXPECT_EQ(m.Of<DLN>("A").status, 32U);
  EXPECT_EQ(ChainOf<R_ND_DLN2>(m.Db(), m.Of<ND>("N2").r_nd_dln2), Texts{"Az"});
}

TEST(CheckLines, RunBehindTheDcLines) {
  ModelBuilder m = TwoStationsApart();
  m.Line("A", "", "S1", "S2", "K1", "K2", "N1", "N2").DcLine("B", "", "S1", "S2", "K1", "K2", "N1", "N2");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:DLN Bdv字段在分区表中没有相应记录.", "--NMD 错误:LN Adv字段在分区表中没有相应记录."}));
}

}  // namespace
}  // namespace dtsdb::test
