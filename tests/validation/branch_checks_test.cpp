// Breakers, zero-impedance branches and transformer windings.
#include "tests/support/messages.h"
#include "tests/validation/run.h"

namespace dtsdb::test {
namespace {

/// A station S1 with levels K1 and K2, a winding between their nodes N1 and M1, and breaker B1 from N1 to N2.
ModelBuilder Network() {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110);
  m.Winding("X1", "S1", "K1", "K2", "N1", "M1").Breaker("B1", "K1", "N1", "N2");
  return m;
}

// Kept: K06.
TEST(CheckBreakers, WithoutTypeIsOneErrorAndStillGetsItsEnds) {
  ModelBuilder m = Network();
  m.Of<CB>("B1").flags = CB_OPEN;
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:CB B1 具有多个开关类型，错误."});
  EXPECT_EQ(m.Of<CB>("B1").iznd, m.Number<ND>("N2"));
  EXPECT_EQ(m.Of<CB>("B1").cb2, m.Number<CB2>("B1i"));
}

TEST(CheckBreakers, WithTwoTypesIsOneError) {
  ModelBuilder m = Network();
  m.Of<CB>("B1").flags = 1 | 4;
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), Texts{"--NMD 错误:CB B1 具有多个开关类型，错误."});
  m.Of<CB>("B1").flags = 4 | CB_OPEN;
  EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty());
}

TEST(CheckBreakers, WithBothEndsNamedAlikeHasNoEndsAndDoesNotMarkTheStation) {
  ModelBuilder m;
  m.Station("S1").Kv("K1").Breaker("B1", "K1", "N1", "N1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:CB B1 两端具有相同的结点名称."});
  EXPECT_EQ(m.Of<CB>("B1").ind, m.Of<CB>("B1").iznd);
  EXPECT_EQ(m.Db().m_cb2Table->GetCount(), 0);
  EXPECT_EQ(m.Of<ST>("S1").flag & ST_HAS_CB, 0);
}

TEST(CheckBreakers, WithoutStatusPointIsAWarning) {
  ModelBuilder m = Network();
  const ValidationRun without(m.Db());
  EXPECT_EQ(without.LinesWith("CB "), Texts{"--NMD 警告:CB B1 没有关联遥信测点."});
  EXPECT_EQ(m.Of<CB>("B1").istatus, -1);
  m.Status("A").Status("P1").Of<CB>("B1").status_id = Id("P1");
  const ValidationRun with(m.Db());
  EXPECT_TRUE(with.LinesWith("CB ").empty());
  EXPECT_EQ(m.Of<CB>("B1").istatus, m.Number<STATUS>("P1"));
  EXPECT_EQ(m.Of<ST>("S1").flag, ST_HAS_XF | ST_HAS_CB);
}

TEST(CheckBreakers, WithoutNamesAreDroppedWithOneErrorEach) {
  ModelBuilder m = Network();
  m.Breaker("", "K1", "N1", "N2").Breaker("B2", "no", "N1", "N2");
  m.Breaker("B3", "K1", "", "N2").Breaker("B4", "K1", "N1", "");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:CB表中出现标识为空的记录.", "--NMD 错误:CB B2kv字段在母线表中没有相应记录.",
                   "--NMD 错误:CB B3 关联的首端结点名称为空.", "--NMD 错误:CB B4 关联的末端结点名称为空."}));
}

TEST(CheckBreakers, OnANodeOfAnotherLevelIsDropped) {
  ModelBuilder m = Network();
  m.Breaker("B2", "K1", "M1", "N1").Breaker("B3", "K1", "N1", "M1");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), (Texts{"--NMD 错误:CB B2 给定的母线与首端结点给定的相矛盾.",
                                                   "--NMD 错误:CB B3 给定的母线与末端结点给定的相矛盾."}));
  EXPECT_EQ(m.Db().m_cb2Table->GetCount(), 2);
  EXPECT_EQ(m.Of<CB>("B2").ind, m.Number<ND>("M1"));
}

TEST(CheckBreakers, DroppedInALaterRunKeepsTheEndsOfTheEarlier) {
  ModelBuilder m = Network();
  const ValidationRun good(m.Db());
  const int end = m.Of<CB>("B1").cb2;
  m.Of<CB>("B1").nd = QString();
  const ValidationRun bad(m.Db());
  EXPECT_EQ(m.Db().m_cb2Table->GetCount(), 0);
  EXPECT_EQ(end, 0);
  EXPECT_EQ(m.Of<CB>("B1").cb2, -1) << "then made a logical number, of which there is none";
}

TEST(CheckZeroImpedanceBranches, OnNoBreakerIsALineWithoutIdentity) {
  ModelBuilder m = Network();
  m.Zbr("Z1", "nowhere");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.LinesWith("ZBR"), Texts{"--NMD 错误:ZBR表中关联的开关在开关表中不存在."});
  EXPECT_EQ(m.Of<ZBR>("Z1").icb, -1);
}

// Kept: K07.
TEST(CheckZeroImpedanceBranches, WithoutIdentityIsPassedOverInSilence) {
  ModelBuilder m = Network();
  m.Zbr("", "nowhere");
  EXPECT_TRUE(ValidationRun(m.Db()).LinesWith("ZBR").empty());
}

// Kept: K07.
TEST(CheckZeroImpedanceBranches, OnABreakerWithoutLevelStaysWithoutRelationInSilence) {
  ModelBuilder m = Network();
  m.Breaker("B2", "nowhere", "N1", "N2").Zbr("Z1", "B2");
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.LinesWith("ZBR").empty());
  EXPECT_EQ(m.Of<ZBR>("Z1").r_kv_zbr, -1);
  EXPECT_EQ(m.Of<ZBR>("Z1").icb, m.Number<CB>("B2"));
  EXPECT_EQ(m.Db().m_rKvZbrTable->GetCount(), 0);
}

TEST(CheckZeroImpedanceBranches, StandsOnTheNodesOfItsBreaker) {
  ModelBuilder m = Network();
  m.Zbr("Z1", "B1");
  const ValidationRun run(m.Db());
  EXPECT_EQ(run.global.valid, 1);
  EXPECT_EQ(run.LinesWith("ZBR "),
            (Texts{"--NMD 警告:ZBR Z1 的有功遥测P在遥测表中不存在.", "--NMD 警告:ZBR Z1 的无功遥测Q在遥测表中不存在.",
                   "--NMD 警告:ZBR Z1 的电流遥测I在遥测表中不存在."}));
  EXPECT_EQ(m.Of<CB>("B1").flags, 1 | CB_ZBR);
  EXPECT_EQ(m.Of<ZBR>("Z1").ind, m.Number<ND>("N1"));
  EXPECT_EQ(m.Of<ZBR>("Z1").iznd, m.Number<ND>("N2"));
  EXPECT_EQ(ChainOf<R_ND_ZBR2>(m.Db(), m.Of<ND>("N1").r_nd_zbr2), Texts{"Z1i"});
  EXPECT_EQ(ChainOf<R_ND_ZBR2>(m.Db(), m.Of<ND>("N2").r_nd_zbr2), Texts{"Z1z"});
  EXPECT_EQ(ChainOf<R_ND_CB2>(m.Db(), m.Of<ND>("N1").r_nd_cb2), Texts{"B1i"});
  EXPECT_EQ(ChainOf<R_KV_ZBR>(m.Db(), m.Of<KV>("K1").r_kv_zbr), Texts{"Z1"});
}

// Kept: K08.
TEST(CheckZeroImpedanceBranches, TheMarkInTheBreakerIsOnlyEverSet) {
  ModelBuilder m = Network();
  m.Zbr("Z1", "B1");
  const ValidationRun first(m.Db());
  m.Db().m_zbrTable->Clear();
  const ValidationRun second(m.Db());
  EXPECT_EQ(m.Of<CB>("B1").flags, 1 | CB_ZBR);
}

// The breaker is dropped for its missing node, with the equal numbers that it came with.
TEST(CheckZeroImpedanceBranches, OnADroppedBreakerWithEqualNodesHasAnError) {
  ModelBuilder m = Network();
  m.Breaker("B2", "K1", "", "N2").Zbr("Z1", "B2");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith("错误:ZBR"), Texts{"--NMD 错误:ZBR Z1 两端具有相同的结点名称."});
}

TEST(CheckZeroImpedanceBranches, OnADroppedBreakerWithWildNumbersDoesNoHarm) {
  ModelBuilder m = Network();
  m.Breaker("B2", "K1", "", "N2").Zbr("Z1", "B2");
  m.Of<CB>("B2").ind = 123456;
  m.Of<CB>("B2").iznd = 9999;
  const MessageCatcher catcher;
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.result);
  EXPECT_EQ(run.Errors(), Texts{"--NMD 错误:CB B2 关联的首端结点名称为空."});
  EXPECT_EQ(m.Of<ZBR>("Z1").ind, -1);
}

TEST(CheckWindings, Type0Or4IsDroppedBeforeItsMeasurements) {
  for (const u8 type : {u8{0}, u8{4}}) {
    ModelBuilder m = Network();
    m.Of<XF>("X1").type = type;
    const ValidationRun run(m.Db());
    EXPECT_EQ(run.LinesWith("XF "), Texts{"--NMD 错误:XF X1 的类型填写不正确."});
    EXPECT_EQ(m.Db().m_xf2Table->GetCount(), 0);
  }
}

TEST(CheckWindings, WithoutMeasurementsHasSixWarningsAndNoError) {
  ModelBuilder m = Network();
  m.Of<XF>("X1").iana_t = 8;
  const ValidationRun run(m.Db());
  EXPECT_EQ(
      run.LinesWith("XF "),
      (Texts{"--NMD 警告:XF X1 的首端有功遥测P在遥测表中不存在.", "--NMD 警告:XF X1 的首端无功遥测Q在遥测表中不存在.",
             "--NMD 警告:XF X1 的首端电流遥测I在遥测表中不存在.", "--NMD 警告:XF X1 的末端有功遥测P在遥测表中不存在.",
             "--NMD 警告:XF X1 的末端有功遥测Q在遥测表中不存在.",
             "--NMD 警告:XF X1 的末端电流遥测I在遥测表中不存在."}));
  EXPECT_EQ(run.global.errors, 0);
  EXPECT_EQ(m.Of<XF>("X1").iana_t, 8);
  EXPECT_EQ(m.Of<ST>("S1").flag & ST_HAS_XF, ST_HAS_XF);
}

TEST(CheckWindings, WithoutNamesAreDroppedWithOneErrorEach) {
  ModelBuilder m = Network();
  m.Winding("", "S1", "K1", "K2", "N1", "M1").Winding("X2", "", "K1", "K2", "N1", "M1");
  m.Winding("X3", "S1", "K1", "K2", "", "M1").Winding("X4", "S1", "K1", "K2", "N1", "");
  m.Winding("X5", "S1", "", "K2", "N1", "M1").Winding("X6", "S1", "K1", "", "N1", "M1");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:XF表中出现标识为空的记录.", "--NMD 错误:XF X2st字段在厂站表中没有相应记录.",
                   "--NMD 错误:XF X3 关联的高压端结点名称为空.", "--NMD 错误:XF X4 关联的低压端结点名称为空.",
                   "--NMD 错误:XF X5 关联的首端母线名称为空.", "--NMD 错误:XF X6 关联的末端母线名称为空."}));
}

TEST(CheckWindings, OnNodesThatDoNotFitAreDropped) {
  ModelBuilder m = Network();
  m.Winding("X2", "S1", "K1", "K2", "M1", "N1").Winding("X3", "S1", "K1", "K2", "N1", "N1");
  m.Winding("X4", "S1", "no", "K2", "P", "M1").Winding("X5", "S1", "K1", "no", "N1", "P");
  m.Winding("X6", "S1", "K1", "K1", "N1", "N1");
  EXPECT_EQ(ValidationRun(m.Db()).Errors(),
            (Texts{"--NMD 错误:XF X2 给定的母线与首端结点给定的相矛盾.",
                   "--NMD 错误:XF X3 给定的母线与末端结点给定的相矛盾.", "--NMD 错误:XF X4 给定的母线在母线表中不存在.",
                   "--NMD 错误:XF X5 给定的母线在母线表中不存在.", "--NMD 错误:XF X6 两端具有相同的结点名称."}));
}

// Kept: K11.
TEST(CheckWindings, LevelsOfAnotherStationAreNotLookedAt) {
  ModelBuilder m = Network();
  m.Station("S2").Kv("K3", 35).Winding("X2", "S1", "K1", "K3", "N1", "P1");
  EXPECT_TRUE(ValidationRun(m.Db()).Errors().empty());
}

}  // namespace
}  // namespace dtsdb::test
