// The run as a whole: its order, its verdict, what it leaves behind.
#include "tests/validation/run.h"

#include <QDateTime>

#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

const char* const kBegin = "--NMD 提示:开始一次全网校验... ...";
const char* const kGood = "--NMD 提示:目前网络数据库没有错误，请查看校验日志.";
const char* const kEnd = "--NMD 提示:结束一次全网校验!";

TEST(DetectAll, EmptyGlobalTableYieldsF1Of100) {
  DTSDB database;
  const ValidationRun run(database);
  EXPECT_EQ(run.global.f1, 100.0F);
  EXPECT_EQ(database.m_globalTable->GetCount(), 1);
}

TEST(DetectAll, KeepsF1OfTheOldGlobalRow) {
  DTSDB database;
  GLOBAL old(7);
  old.f1 = 50.0F;
  old.n1 = 3;
  old.bs_free = 9;
  database.m_globalTable->Add(old);
  const ValidationRun run(database);
  EXPECT_EQ(run.global.f1, 50.0F);
  EXPECT_EQ(run.global.id, 0);
  EXPECT_EQ(run.global.n1, -1);
  EXPECT_EQ(run.global.bs_free, -1);
}

TEST(DetectAll, GlobalTableKeepsItsSlots) {
  DTSDB database;
  database.m_globalTable->SetSize(5);
  database.m_globalTable->Add(GLOBAL(7));
  const ValidationRun run(database);
  EXPECT_EQ(database.m_globalTable->GetSize(), 5);
  EXPECT_EQ(database.m_globalTable->GetCount(), 1);
}

TEST(DetectAll, ModelWithoutRecordsIsGood) {
  DTSDB database;
  const ValidationRun run(database);
  EXPECT_TRUE(run.result);
  EXPECT_EQ(run.Lines(), (Texts{kBegin, kGood, kEnd}));
  EXPECT_EQ(run.global.errors, 0);
  EXPECT_EQ(run.global.valid, 1);
  EXPECT_EQ(run.global.invalid, 0);
}

TEST(DetectAll, GoodModelGetsItsVerdictAndTime) {
  ModelBuilder m = GoodModel();
  const qint64 before = QDateTime::currentSecsSinceEpoch();
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.result);
  EXPECT_EQ(run.global.valid, 1);
  EXPECT_EQ(run.global.invalid, 0);
  EXPECT_GE(run.global.check_time, before);
  EXPECT_LE(run.global.check_time, QDateTime::currentSecsSinceEpoch());
  EXPECT_EQ(run.global.time, 0U);
  EXPECT_EQ(run.global.bsl_head, -1);
  EXPECT_EQ(run.LastError(), "");
  EXPECT_TRUE(run.nmd.GetLastError().isNull());
}

TEST(DetectAll, TwoErrorsAndFiveWarningsAreTwoErrorsInTheSummary) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Kv("K2", 110);
  m.Load("L1", "K1", "N1").Unit("U1", "K1", "N1");  // five measurements missing
  m.Of<KV>("K1").vbase = -1.0F;
  m.Of<KV>("K2").vbase = -1.0F;
  m.Db().m_globalTable->Add(GLOBAL(0));
  m.Db().m_globalTable->GetPh(0).check_time = 17;
  const ValidationRun run(m.Db());
  EXPECT_TRUE(run.result);
  EXPECT_EQ(run.Lines(),
            (Texts{kBegin, "--NMD 错误:KV K1的电压基准值VBASE不合法.", "--NMD 错误:KV K2的电压基准值VBASE不合法.",
                   "--NMD 警告:LD L1 的有功遥测P在遥测表中不存在.", "--NMD 警告:LD L1 的无功遥测Q在遥测表中不存在.",
                   "--NMD 警告:LD L1 的电压遥测V在遥测表中不存在.", "--NMD 警告:UN U1 的有功遥测P在遥测表中不存在.",
                   "--NMD 警告:UN U1 的无功遥测Q在遥测表中不存在.",
                   "--NMD 提示:网络数据库中还存在2错误，请根据校验日志更改错误.", kEnd}));
  EXPECT_EQ(run.global.errors, 2);
  EXPECT_EQ(run.global.valid, 0);
  EXPECT_EQ(run.global.invalid, 1);
  EXPECT_EQ(run.global.check_time, 0U);
}

TEST(DetectAll, FullTableStopsTheRunWithoutClosingLineInPhysicalNumbers) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220);
  m.Load("L1", "K1", "N2").Load("L2", "K1", "N1").Breaker("B1", "K1", "N1", "N2");
  m.Db().m_rNdCb2Table->SetGrowBy(0);
  const ValidationRun run(m.Db());
  EXPECT_FALSE(run.result);
  EXPECT_EQ(run.LastError(), "CB2或者R_ND_CB2表空间已满.\n");
  EXPECT_EQ(run.Lines().front(), kBegin);
  EXPECT_TRUE(run.LinesWith("结束").empty());
  EXPECT_TRUE(run.LinesWith("目前").empty());
  EXPECT_EQ(run.global.valid, 0);
  EXPECT_EQ(run.global.invalid, 1);
  EXPECT_EQ(run.global.errors, 0);
  // N2 was named first: its number is 0, though N1 stands in front of it in the order.
  EXPECT_EQ(m.Of<LD>("L1").ind, 0);
  EXPECT_EQ(m.Number<ND>("N2"), 0);
  EXPECT_EQ(m.Db().m_ndTable->PhToLg(0), 1);
}

TEST(DetectAll, NodeRelationThatIsFullStopsTheRun) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Load("L1", "K1", "N1");
  m.Db().m_rKvNdTable->SetGrowBy(0);
  const ValidationRun shunt(m.Db());
  EXPECT_FALSE(shunt.result);
  EXPECT_EQ(shunt.LastError(), "结点表ND或者电压结点关系表R_KV_ND已满.\n");
  EXPECT_EQ(m.Db().m_ndTable->GetPh(m.Number<ND>("N1")).r_kv_nd, -1);

  ModelBuilder n;
  n.Station("S1").Kv("K1", 220).Breaker("B1", "K1", "N1", "N2");
  n.Db().m_rKvNdTable->SetGrowBy(0);
  const ValidationRun branch(n.Db());
  EXPECT_FALSE(branch.result);
  EXPECT_EQ(branch.LastError(), "ND 或者 R_KV_ND表已满.\n");
}

TEST(DetectAll, EveryOtherTableOfEndsStopsTheRunWhenFull) {
  const auto network = [] {
    ModelBuilder m;
    m.Station("S1").Kv("K1", 220).Station("S2").Kv("K2", 220);
    m.Breaker("B1", "K1", "N1", "N2").Zbr("Z1", "B1").Winding("X1", "S1", "K1", "K2", "N1", "M1");
    m.Line("A1", "DV", "S1", "S2", "K1", "K2", "N1", "M1").DcLine("C1", "DV", "S1", "S2", "K1", "K2", "N1", "M1");
    return m;
  };
  ModelBuilder zbr = network();
  zbr.Db().m_rNdZbr2Table->SetGrowBy(0);
  EXPECT_EQ(ValidationRun(zbr.Db()).LastError(), "ZBR2或者R_ND_ZBR2表空间已满.\n");
  ModelBuilder xf = network();
  xf.Db().m_rNdXf2Table->SetGrowBy(0);
  EXPECT_EQ(ValidationRun(xf.Db()).LastError(), "XF2或者R_ND_XF2表空间已满.\n");
  ModelBuilder ln = network();
  ln.Db().m_rNdLn2Table->SetGrowBy(0);
  EXPECT_EQ(ValidationRun(ln.Db()).LastError(), "LN2表空间已满.\n");
  ModelBuilder dln = network();
  dln.Db().m_rNdDln2Table->SetGrowBy(0);
  EXPECT_EQ(ValidationRun(dln.Db()).LastError(), "DLN2表空间已满.\n");
}

TEST(DetectAll, RowThatStandsInTheTableTwiceStopsTheRunInItsLinkPass) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Station("S2").Kv("K2", 220);
  m.Load("L1", "K1", "N1").Unit("U1", "K1", "N1").Cap("C1", "K1", "N1").Bus("B1", "K1", "N1");
  m.Breaker("B1", "K1", "N1", "N2").Zbr("Z1", "B1").Winding("X1", "S1", "K1", "K2", "N1", "M1");
  m.Line("A1", "DV", "S1", "S2", "K1", "K2", "N1", "M1").DcLine("D1", "DV", "S1", "S2", "K1", "K2", "N1", "M1");
  // From the last check to the first, so that each stops the run before the ones doubled before.
  Duplicate<LN>(m, "A1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_DV_LN表空间.\n");
  Duplicate<DLN>(m, "D1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_DV_DLN表空间.\n");
  Duplicate<ZBR>(m, "Z1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_ZBR表空间已满.\n");
  Duplicate<BUS>(m, "B1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_BUS关系表已满.\n");
  Duplicate<CB>(m, "B1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_CB关系表已满.\n");
  Duplicate<CP>(m, "C1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_CP关系表已满.\n");
  Duplicate<UN>(m, "U1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_UN关系表已满.\n");
  Duplicate<LD>(m, "L1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_KV_LD关系表已满.\n");
  Duplicate<XF>(m, "X1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_ST_XF表空间已满.\n");
  Duplicate<KV>(m, "K1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_ST_KV关系表已满.\n");
  Duplicate<ST>(m, "S1");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_DV_ST关系表已满.\n");
  Duplicate<DV>(m, "DV");
  EXPECT_EQ(ValidationRun(m.Db()).LastError(), "R_CO_DV关系表已满.\n");
}

TEST(DetectAll, NodeWithOneLoadOnlyIsWarnedOf) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Load("L1", "K1", "N1");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith("ND "), Texts{"--NMD 警告:ND N1 上连接的设备小于或者等于一."});
}

TEST(DetectAll, NodeWithOneLoadAndOneBreakerIsNotWarnedOf) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Load("L1", "K1", "N1").Breaker("B1", "K1", "N1", "N2");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith("ND "), Texts{"--NMD 警告:ND N2 上连接的设备小于或者等于一."});
}

TEST(DetectAll, TwoLoadsOnOneNodeCountOnce) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Load("L1", "K1", "N1").Load("L2", "K1", "N1");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith("ND "), Texts{"--NMD 警告:ND N1 上连接的设备小于或者等于一."});
}

TEST(DetectAll, EveryKindOfDeviceCountsOnANode) {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220).Station("S2").Kv("K2", 220);
  m.Unit("U1", "K1", "A").Load("L1", "K1", "A");
  m.Cap("C1", "K1", "B").Bus("B1", "K1", "B");
  m.Winding("X1", "S1", "K1", "K2", "C", "E").Line("A1", "DV", "S1", "S2", "K1", "K2", "C", "E");
  m.DcLine("D1", "DV", "S1", "S2", "K1", "K2", "F", "G").Breaker("B1", "K1", "F", "H").Zbr("Z1", "B1");
  EXPECT_EQ(ValidationRun(m.Db()).LinesWith("ND "), Texts{"--NMD 警告:ND G 上连接的设备小于或者等于一."});
}

TEST(DetectAll, SecondRunOnTheSameObjectBuildsEverythingAnew) {
  ModelBuilder m = GoodModel();
  m.Zbr("Z1", "B1");
  const TemporaryDirectory directory;
  NMD nmd(&m.Db());
  ASSERT_TRUE(nmd.DetectAll());
  const Texts first = LogLines(directory.Read(QStringLiteral("nmd.log")));
  const qsizetype found = nmd.Findings().size();
  ASSERT_TRUE(nmd.DetectAll());
  Texts twice = first;
  twice.insert(twice.end(), first.begin(), first.end());
  EXPECT_EQ(LogLines(directory.Read(QStringLiteral("nmd.log"))), twice);
  EXPECT_EQ(nmd.Findings().size(), found);
  EXPECT_EQ(m.Db().m_globalTable->GetCount(), 1);
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 2);
  EXPECT_EQ(m.Db().m_cb2Table->GetCount(), 2);
  EXPECT_EQ(m.Db().m_rKvNdTable->GetCount(), 2);
  EXPECT_EQ(m.Db().m_globalTable->GetPh(0).valid, 1);
}

TEST(DetectAll, MendedModelIsGoodAtTheNextRunAndTheLastErrorStays) {
  ModelBuilder m = GoodModel();
  m.Db().m_rNdCb2Table->SetGrowBy(0);
  const TemporaryDirectory directory;
  NMD nmd(&m.Db());
  EXPECT_FALSE(nmd.DetectAll());
  m.Db().m_rNdCb2Table->SetGrowBy(10);
  EXPECT_TRUE(nmd.DetectAll());
  EXPECT_EQ(m.Db().m_globalTable->GetPh(0).valid, 1);
  EXPECT_EQ(Utf8(nmd.GetLastError()), "CB2或者R_ND_CB2表空间已满.\n");
}

TEST(DetectAll, RelationTablesOfNodesHoldNoStorageAtFirst) {
  ModelBuilder m = GoodModel();
  const TemporaryDirectory directory;
  NMD nmd(&m.Db());
  ASSERT_TRUE(nmd.DetectAll());
  NmdAccess::StartDetect(nmd);
  EXPECT_EQ(m.Db().m_ndTable->GetSize(), 10000);
  EXPECT_EQ(m.Db().m_ndTable->GetCount(), 0);
  EXPECT_EQ(m.Db().m_rNdCb2Table->GetSize(), 0);
  EXPECT_EQ(m.Db().m_rKvNdTable->GetSize(), 2) << "the nodes of the run before";
  EXPECT_EQ(m.Db().m_cb2Table->GetSize(), 2);
  EXPECT_EQ(m.Of<CB>("B1").r_kv_cb, -1);
  EXPECT_EQ(m.Of<ST>("S1").flag, 0);
}

TEST(DetectAll, LinesComeInTheOrderOfTheChecks) {
  ModelBuilder m;
  m.Put(CO()).Put(DV()).Put(ST()).Put(KV()).Put(XF()).Put(LD()).Put(UN()).Put(CP()).Put(CB()).Put(BUS());
  m.Put(ZBR()).Put(DLN()).Put(LN());
  Texts expected;
  for (const char* table : {"CO", "DV", "ST", "KV", "XF", "LD", "UN", "CP", "CB", "BUS", "DLN", "LN"}) {
    expected.push_back(std::string("--NMD 错误:") + table + "表中出现标识为空的记录.");
  }
  EXPECT_EQ(ValidationRun(m.Db()).Errors(), expected);
}

TEST(NmdConstructor, NoDatabaseIsWarnedOfAndNothingRuns) {
  const TemporaryDirectory directory;
  const MessageCatcher catcher;
  NMD nmd(nullptr);
  ASSERT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_TRUE(MessageCatcher::Lines().front().startsWith(QStringLiteral("ASSERT: \"pDatabase != 0\" in nmd (")));
  EXPECT_FALSE(nmd.DetectAll());
}

TEST(Verdict, LeavesNoSectionOrListEntry) {
  ModelBuilder m;
  m.Station("S").Kv("K").Unit("U", "K", "a").Load("L", "K", "a");
  m.Validate();
  const GLOBAL& verdict = m.Table<GLOBAL>().GetPh(0);
  EXPECT_EQ(verdict.f1, 100.0F);
  for (const int none :
       {verdict.bs_free, verdict.bs_dead, verdict.bs_live, verdict.bsl_free, verdict.bsl_head, verdict.n1}) {
    EXPECT_EQ(none, -1);
  }
}

}  // namespace
}  // namespace dtsdb::test
