// A model that is exported and read again is the same network.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include "formats/files.h"
#include "formats/model_io.h"
#include "generate/generator.h"
#include "model/record_bits.h"
#include "tests/formats/xiidm/same_network.h"
#include "tests/support/model_builder.h"
#include "tests/support/places.h"

namespace dtsdb::tools::xiidm::test {
namespace {

RC_GTEST_PROP(XiidmRoundTrip, KeepsAGeneratedUtility, ()) {
  GeneratorOptions options;
  options.stations = *rc::gen::inRange(1, 25);
  options.seed = *rc::gen::arbitrary<quint64>();
  options.dcLines = *rc::gen::element(0, 40);
  options.zeroImpedance = *rc::gen::element(0, 50);
  DTSDB model;
  GenerateUtility(model, options);
  const std::string difference = DifferenceAfterRoundTrip(model);
  if (!difference.empty()) RC_FAIL(difference);
}

TEST(XiidmRoundTrip, KeepsTheExample) {
  DTSDB model = LoadModel(ModelName(dtsdb::test::SourcePath("examples/ieee14")));
  EXPECT_EQ(DifferenceAfterRoundTrip(model), "");
}

TEST(XiidmExport, TheSameModelGivesTheSameBytes) {
  DTSDB model = LoadModel(ModelName(dtsdb::test::SourcePath("examples/ieee14")));
  SettleTables(model);
  EXPECT_EQ(Exported(model), Exported(model));
}

/// Two stations with a breaker each, a line, a DC line and a transformer between levels of one.
void FillTwoStations(dtsdb::test::ModelBuilder& m) {
  m.Station("S1").Kv("K1", 220).Kv("K0", 110).Station("S2").Kv("K2", 220);
  m.Breaker("B1", "K1", "a", "b").Breaker("B2", "K2", "c", "d").Bus("a", "K1", "a").Bus("c", "K2", "c");
  m.Unit("U1", "K1", "a").Unit("U2", "K1", "a").Load("L1", "K2", "d").Load("L2", "K2", "d").Cap("C", "K2", "d");
  m.Line("LN1", "DV", "S1", "S2", "K1", "K2", "b", "c").Line("LN2", "DV", "S1", "S2", "K1", "K2", "b", "c");
  m.DcLine("D", "DV", "S1", "S2", "K1", "K2", "a", "d").Winding("X", "S1", "K1", "K0", "b", "e");
  m.Load("L0", "K0", "e").Bus("e", "K0", "e");
}

class XiidmTwoStations : public ::testing::Test {
 protected:
  void SetUp() override { FillTwoStations(m); }

  dtsdb::test::ModelBuilder m;
};

TEST_F(XiidmTwoStations, ComeBackAsTheyWere) { EXPECT_EQ(DifferenceAfterRoundTrip(m.Db()), ""); }

TEST_F(XiidmTwoStations, KeepWhatIsOffOpenOrOutOfService) {
  m.Of<UN>("U2").status = m.Of<LD>("L1").status = m.Of<CP>("C").status = SHUNT_OFF;
  m.Of<LN>("LN1").status = BranchKind<LN>::kOpen2;
  m.Of<LN>("LN2").status = BranchKind<LN>::kOut;
  m.Of<DLN>("D").status = BranchKind<DLN>::kOpen1;
  m.Of<XF>("X").status = BranchKind<XF>::kOut;
  SettleTables(m.Db());
  Imported again(Exported(m.Db()));
  EXPECT_EQ(again.Count<CB>(), 2);
  EXPECT_EQ(again.Of<UN>("U2").status, SHUNT_OFF);
  EXPECT_EQ(again.Of<UN>("U1").status, 0U);
  EXPECT_EQ(again.Of<LN>("LN1").status, BranchKind<LN>::kOpen2);
  EXPECT_EQ(again.Of<LN>("LN2").status, BranchKind<LN>::kOut);
  EXPECT_EQ(again.Of<DLN>("D").status, BranchKind<DLN>::kOpen1);
  EXPECT_EQ(again.Of<XF>("X").status, BranchKind<XF>::kOut);
  EXPECT_EQ(DifferenceAfterRoundTrip(m.Db()), "");
}

TEST_F(XiidmTwoStations, KeepReferencesWindingsAndZeroImpedanceBranches) {
  m.Of<UN>("U1").ref = m.Of<UN>("U2").ref = m.Of<LD>("L2").ref = 0;
  m.Of<XF>("X").type = 2;
  m.Zbr("Z", "B1");
  m.Of<ZBR>("Z").p = 1.5F;
  m.Of<KV>("K0").vbase = 0;
  EXPECT_EQ(DifferenceAfterRoundTrip(m.Db()), "");
}

TEST_F(XiidmTwoStations, KeepABranchOnAnOpenBreaker) {
  m.Zbr("B1|Z", "B1");
  m.Of<CB>("B1").flags |= CB_OPEN;
  SettleTables(m.Db());
  EXPECT_EQ(Real(Imported(Exported(m.Db())).Of<ZBR>("B1|Z").cb), "B1");
}

TEST_F(XiidmTwoStations, KeepNamesThatAnotherTableHasToo) {
  m.Station("K1").Kv("S1", 110).Load("B1", "S1", "K1 0").Bus("B1", "S1", "f<&>\"'");
  EXPECT_EQ(DifferenceAfterRoundTrip(m.Db()), "");
}

TEST_F(XiidmTwoStations, GiveEachEndANodeOfItsOwn) {
  SettleTables(m.Db());
  const Network network = Read(Exported(m.Db()));
  std::set<std::pair<int, std::string>> taken;
  for (int i = 0; i < network.objects.Count(); ++i) {
    if (!network.objects.Has(i, kNode)) continue;
    EXPECT_TRUE(taken.emplace(network.objects.Parent(i), network.objects.Text(i, kNode)).second) << network.Describe(i);
  }
  EXPECT_GT(taken.size(), 8U);
}

TEST_F(XiidmTwoStations, WithANameOfNothingAreRefused) {
  m.Of<LD>("L1").kv = IdFromLiteral("K9");
  SettleTables(m.Db());
  try {
    Exported(m.Db());
    FAIL() << "it is written";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitFile);
    EXPECT_EQ(
        std::string(failure.what()),
        "LD 'L1' names the KV 'K9', which isn't there: no XIIDM can be written; 'dtsdb validate' lists all faults");
  }
}

TEST_F(XiidmTwoStations, AreNotWrittenOverFilesOfOtherPrograms) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString() + "/a.xiidm";
  WriteFile(path, NetworkText(""));
  try {
    SaveModel(m.Db(), ModelName(path));
    ADD_FAILURE() << "it is written";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), path +
                                  ": is an XIIDM file of another program, with more in it than our tables hold; "
                                  "name another OUT");
  }
  EXPECT_EQ(ReadFile(path), NetworkText(""));
}

TEST_F(XiidmTwoStations, AreWrittenToFilesPackedOrNot) {
  const QTemporaryDir folder;
  for (const char* const name : {"/a.xiidm", "/a.iidm", "/a.xiidm.gz", "/b.iidm.gz"}) {
    const ModelName file(folder.path().toStdString() + name);
    SaveModel(m.Db(), file);
    EXPECT_EQ(file.Form(), ModelForm::kXiidm);
    SaveModel(m.Db(), file);  // over one of ours
    DTSDB read = LoadModel(file);
    EXPECT_EQ(FirstDifference(FactsOf(m.Db()), FactsOf(read)), "") << name;
  }
  EXPECT_EQ(QFileInfo(folder.filePath(QStringLiteral("a.xiidm.gz"))).size() * 2 <
                QFileInfo(folder.filePath(QStringLiteral("a.xiidm"))).size(),
            true);
}

TEST(XiidmRoundTrip, KeepsTheStarOfATransformer) {
  Imported grid(NetworkText(
      Level("", "<iidm:load id=\"A\" p0=\"1\" q0=\"2\" node=\"1\"/>", "V") +
      Level("", "<iidm:load id=\"B\" p0=\"1\" q0=\"2\" node=\"1\"/>", "W") +
      "<iidm:threeWindingsTransformer id=\"T\" voltageLevelId1=\"V\" node1=\"1\" voltageLevelId2=\"W\" node2=\"1\" "
      "voltageLevelId3=\"W\" node3=\"2\" p1=\"9\" q1=\"1\" p2=\"-8\" p3=\"-1\"/>\n"));
  SettleTables(grid.model);
  const std::string text = Exported(grid.model);
  EXPECT_NE(text.find("<iidm:threeWindingsTransformer id=\"T\""), std::string::npos);
  EXPECT_EQ(text.find("twoWindingsTransformer"), std::string::npos);
  Imported again(text);
  EXPECT_EQ(FirstDifference(FactsOf(grid.model), FactsOf(again.model)), "");
}

/// A transformer with three windings, and how its star is written with `device` on it.
template <class Device>
void ExpectNoStarWith(Device device) {
  Imported grid(NetworkText(
      Level("", "", "V") + Level("", "", "W") +
      "<iidm:threeWindingsTransformer id=\"T\" voltageLevelId1=\"V\" node1=\"1\" voltageLevelId2=\"W\" node2=\"1\" "
      "voltageLevelId3=\"W\" node3=\"2\" p1=\"9\" q1=\"1\" p2=\"-8\" p3=\"-1\"/>\n"));
  SettleTables(grid.model);
  const XF& winding = (*grid.model.m_xfTable)[0];
  const bool isFrom = TextFromId(winding.kv).endsWith(QStringLiteral(" star"));
  ASSERT_TRUE(isFrom || TextFromId(winding.zkv).endsWith(QStringLiteral(" star")));
  device.kv = isFrom ? winding.kv : winding.zkv;
  device.nd = isFrom ? winding.nd : winding.znd;
  if constexpr (requires { device.znd; }) {
    device.zkv = isFrom ? winding.zkv : winding.kv;
    device.znd = isFrom ? winding.znd : winding.nd;
    device.st = device.zst = (*grid.model.m_stTable)[0].id;
    device.dv = (*grid.model.m_dvTable)[0].id;
  }
  TableOf<Device>(grid.model).Add(device);
  SettleTables(grid.model);
  const std::string text = Exported(grid.model);
  EXPECT_EQ(text.find("threeWindingsTransformer"), std::string::npos) << Device::kTableName;
}

TEST(XiidmExport, AStarOnWhichMoreStandsIsALevel) {
  ExpectNoStarWith(CP(QStringLiteral("C")));
  ExpectNoStarWith(DLN(QStringLiteral("D")));
  ExpectNoStarWith(LN(QStringLiteral("L")));
  ExpectNoStarWith(LD(QStringLiteral("P")));
}

}  // namespace
}  // namespace dtsdb::tools::xiidm::test
