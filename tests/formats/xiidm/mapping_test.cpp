// What becomes of the objects of small XIIDM networks, class by class.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "model/record_bits.h"
#include "tests/formats/xiidm/network_text.h"

namespace dtsdb::tools::xiidm::test {
namespace {

const char* const kTwoNodes =
    "<iidm:switch id=\"Q\" kind=\"BREAKER\" retained=\"false\" open=\"false\" node1=\"0\" node2=\"1\"/>\n";

std::string Switch(const std::string& id, const std::string& rest) {
  return "<iidm:switch id=\"" + id + "\" " + rest + "/>\n";
}

TEST(XiidmContainers, OperatorAndRegionBecomeCompanyAndDistrict) {
  Imported grid(
      NetworkText("<iidm:substation id=\"S\" country=\"FR\" tso=\"RTE\" geographicalTags=\"A\"/>\n"
                  "<iidm:substation id=\"T\" country=\"BE\"/>\n" +
                  Level(kTwoNodes)));
  EXPECT_EQ(Real(grid.Of<ST>("S").dv), "A");
  EXPECT_EQ(Real(grid.Of<DV>("A").co), "RTE");
  EXPECT_EQ(Real(grid.Of<ST>("T").dv), "BE");
  EXPECT_EQ(Real(grid.Of<DV>("BE").co), "BE");
  EXPECT_EQ(Real(grid.Of<KV>("V").st), "SV");
  EXPECT_EQ(grid.Of<KV>("V").vbase, 220.0F);
}

TEST(XiidmContainers, ALevelOutsideOfASubstationIsAStation) {
  Imported grid(NetworkText(BusLevel("")));
  EXPECT_EQ(Real(grid.Of<KV>("V").st), "V");
  EXPECT_EQ(Real(grid.Of<ST>("V").dv), "(none)");
  EXPECT_EQ(Real(grid.Of<DV>("(none)").co), "(none)");
}

TEST(XiidmContainers, LimitsOfALevelAreTakenWhenTheyFitTogether) {
  const std::string level = "<iidm:voltageLevel id=\"V\" nominalV=\"220\" lowVoltageLimit=\"198\" ";
  Imported good(NetworkText(level + "highVoltageLimit=\"242\" topologyKind=\"NODE_BREAKER\"/>"));
  EXPECT_EQ(good.Of<KV>("V").vmax, 242.0F);
  EXPECT_EQ(good.Of<KV>("V").vmin, 198.0F);
  Imported half(NetworkText(level + "topologyKind=\"NODE_BREAKER\"/>"));
  EXPECT_EQ(half.Of<KV>("V").vmin, 0.0F);
}

TEST(XiidmNodes, HaveTheNameOfTheirLevelAndTheirNumber) {
  Imported grid(NetworkText(Level(kTwoNodes)));
  EXPECT_EQ(Real(grid.Of<CB>("Q").nd), "V 0");
  EXPECT_EQ(Real(grid.Of<CB>("Q").znd), "V 1");
}

TEST(XiidmNodes, ThatAreJoinedInsideAreOne) {
  Imported grid(NetworkText(Level(Switch("Q", "kind=\"BREAKER\" open=\"false\" node1=\"9\" node2=\"1\"") +
                                  "<iidm:internalConnection node1=\"9\" node2=\"4\"/>\n"
                                  "<iidm:internalConnection node1=\"3\" node2=\"4\"/>\n")));
  EXPECT_EQ(Real(grid.Of<CB>("Q").nd), "V 3");
}

TEST(XiidmNodes, OfABusBreakerLevelAreItsBuses) {
  Imported grid(NetworkText(BusLevel("<iidm:load id=\"L\" p0=\"3\" q0=\"1\" bus=\"B2\" connectableBus=\"B2\"/>")));
  EXPECT_EQ(Real(grid.Of<LD>("L").nd), "B2");
  EXPECT_EQ(Real(grid.Of<BUS>("B1").nd), "B1");
  EXPECT_EQ(grid.Of<BUS>("B1").v, 225.5);
  EXPECT_EQ(grid.Of<BUS>("B1").a, 1.5);
}

TEST(XiidmSwitches, BreakersAndLoadBreakSwitchesAreOfBreakerType) {
  Imported grid(NetworkText(Level(Switch("B", "kind=\"BREAKER\" open=\"false\" node1=\"0\" node2=\"1\"") +
                                  Switch("L", "kind=\"LOAD_BREAK_SWITCH\" open=\"true\" node1=\"0\" node2=\"1\"") +
                                  Switch("D", "kind=\"DISCONNECTOR\" open=\"false\" node1=\"0\" node2=\"1\""))));
  EXPECT_EQ(grid.Of<CB>("B").flags, 1U);
  EXPECT_EQ(grid.Of<CB>("L").flags, 1U | CB_OPEN);
  EXPECT_EQ(grid.Of<CB>("D").flags, 4U);
  EXPECT_EQ(grid.Count<ZBR>(), 0);
}

TEST(XiidmSwitches, AClosedRetainedOneCarriesAZeroImpedanceBranch) {
  const std::string text =
      NetworkText(Level(Switch("A", "kind=\"BREAKER\" retained=\"true\" open=\"false\" node1=\"0\" node2=\"1\"") +
                        Switch("B", "kind=\"BREAKER\" retained=\"true\" open=\"true\" node1=\"1\" node2=\"2\"")));
  Imported grid(text);
  EXPECT_EQ(grid.Count<ZBR>(), 1);
  EXPECT_EQ(Real(grid.Of<ZBR>("A|Z").cb), "A");
  Imported merged(text, {.mergesRetained = true});
  EXPECT_EQ(merged.Count<ZBR>(), 0);
  EXPECT_NE(WhyOf(merged.report.changed, "switch").find("--merge-retained"), std::string::npos);
}

TEST(XiidmSwitches, OneWithBothEndsOnOneNodeIsLeftOut) {
  Imported grid(NetworkText(Level(Switch("A", "kind=\"BREAKER\" open=\"false\" node1=\"0\" node2=\"1\"") +
                                  "<iidm:internalConnection node1=\"0\" node2=\"1\"/>\n")));
  EXPECT_EQ(grid.Count<CB>(), 0);
  EXPECT_EQ(WhyOf(grid.report.leftOut, "switch"), "both of its ends are on one node");
  EXPECT_EQ(grid.report.leftOut[0].names[0], "switch 'A' (a.xiidm, line 6)");
}

TEST(XiidmSwitches, BetweenBusesAreBreakers) {
  Imported grid(
      NetworkText(BusLevel("", "<iidm:switch id=\"Q\" kind=\"BREAKER\" open=\"true\" bus1=\"B1\" bus2=\"B2\"/>\n")));
  EXPECT_EQ(Real(grid.Of<CB>("Q").nd), "B1");
  EXPECT_EQ(Real(grid.Of<CB>("Q").znd), "B2");
  EXPECT_TRUE(grid.Of<CB>("Q").flags & CB_OPEN);
}

TEST(XiidmDevices, PowersArePublishedOnesOrElseTargets) {
  Imported grid(NetworkText(BusLevel(
      "<iidm:generator id=\"G\" energySource=\"OTHER\" minP=\"0\" maxP=\"90\" targetP=\"50\" targetQ=\"5\" bus=\"B1\" "
      "p=\"-48\" q=\"-4\"/>\n<iidm:generator id=\"H\" maxP=\"90\" targetP=\"50\" targetQ=\"5\" bus=\"B1\"/>\n"
      "<iidm:battery id=\"T\" maxP=\"9\" targetP=\"2\" targetQ=\"1\" bus=\"B1\"/>\n"
      "<iidm:load id=\"L\" p0=\"3\" q0=\"1\" bus=\"B1\" p=\"3.5\" q=\"1.5\"/>\n"
      "<iidm:load id=\"M\" p0=\"3\" q0=\"1\" bus=\"B1\"/>\n")));
  EXPECT_EQ(grid.Of<UN>("G").p, 48.0F);
  EXPECT_EQ(grid.Of<UN>("G").q, 4.0F);
  EXPECT_EQ(grid.Of<UN>("G").pcur, 50.0F);
  EXPECT_EQ(grid.Of<UN>("G").pmax, 90.0F);
  EXPECT_EQ(grid.Of<UN>("H").p, 50.0F);
  EXPECT_EQ(grid.Of<UN>("T").p, 2.0F);
  EXPECT_EQ(grid.Of<LD>("L").p, 3.5F);
  EXPECT_EQ(grid.Of<LD>("M").q, 1.0F);
}

TEST(XiidmDevices, OneOnAConnectableBusOnlyIsSwitchedOff) {
  Imported grid(
      NetworkText(BusLevel("<iidm:load id=\"L\" p0=\"3\" q0=\"1\" connectableBus=\"B2\"/>\n"
                           "<iidm:load id=\"M\" p0=\"3\" q0=\"1\" bus=\"B1\" connectableBus=\"B1\"/>")));
  EXPECT_EQ(grid.Of<LD>("L").status, SHUNT_OFF);
  EXPECT_EQ(Real(grid.Of<LD>("L").nd), "B2");
  EXPECT_EQ(grid.Of<LD>("M").status, 0U);
}

TEST(XiidmDevices, AShuntTakesThePowerOfItsSectionsAtNominalVoltage) {
  Imported grid(NetworkText(BusLevel(
      "<iidm:shuntCompensator id=\"A\" sectionCount=\"2\" bus=\"B1\"><iidm:shuntLinearModel bPerSection=\"0.001\" "
      "maximumSectionCount=\"4\"/></iidm:shuntCompensator>\n"
      "<iidm:shuntCompensator id=\"B\" sectionCount=\"2\" bus=\"B1\"><iidm:shuntNonLinearModel><iidm:section "
      "b=\"0.001\"/><iidm:section b=\"0.003\"/><iidm:section b=\"0.004\"/></iidm:shuntNonLinearModel>"
      "</iidm:shuntCompensator>\n<iidm:shunt id=\"C\" bPerSection=\"0.001\" maximumSectionCount=\"1\" "
      "currentSectionCount=\"1\" bus=\"B1\"/>\n<iidm:shuntCompensator id=\"D\" sectionCount=\"1\" bus=\"B1\" q=\"7\"/>"
      "<iidm:staticVarCompensator id=\"E\" bus=\"B1\" q=\"-9\"/>\n")));
  EXPECT_FLOAT_EQ(grid.Of<CP>("A").q, -96.8F);
  EXPECT_FLOAT_EQ(grid.Of<CP>("B").q, -145.2F);
  EXPECT_FLOAT_EQ(grid.Of<CP>("C").q, -48.4F);
  EXPECT_EQ(grid.Of<CP>("D").q, 7.0F);
  EXPECT_EQ(grid.Of<CP>("E").q, -9.0F);
}

TEST(XiidmDevices, TheSlackTerminalMarksAReference) {
  const std::string level = BusLevel(
      "<iidm:generator id=\"G\" maxP=\"9\" targetP=\"5\" bus=\"B1\"/>\n"
      "<iidm:generator id=\"H\" maxP=\"9\" targetP=\"5\" bus=\"B1\"/>\n<iidm:load id=\"L\" p0=\"1\" q0=\"0\" "
      "bus=\"B1\"/>\n");
  const auto slack = [&level](const char* id) {
    return NetworkText(level + "<iidm:extension id=\"V\"><slt:slackTerminal xmlns:slt=\"http://slack\" id=\"" + id +
                       "\"/></iidm:extension>");
  };
  Imported unit(slack("G"));
  EXPECT_EQ(unit.Of<UN>("G").ref, 0);
  EXPECT_EQ(unit.Of<UN>("H").ref, -1);
  EXPECT_EQ(Imported(slack("L")).Of<LD>("L").ref, 0);
  Imported nothing(slack("nothing"));
  EXPECT_EQ(nothing.Of<UN>("G").ref, -1);
}

const char* const kTwoLevels =
    "<iidm:voltageLevel id=\"A\" nominalV=\"380\" topologyKind=\"BUS_BREAKER\"><iidm:busBreakerTopology><iidm:bus "
    "id=\"a\"/></iidm:busBreakerTopology>ITEMS</iidm:voltageLevel>\n<iidm:voltageLevel id=\"B\" nominalV=\"380\" "
    "topologyKind=\"BUS_BREAKER\"><iidm:busBreakerTopology><iidm:bus id=\"b\"/></iidm:busBreakerTopology>OTHERS"
    "</iidm:voltageLevel>\n";

std::string TwoLevels(const std::string& inOne, const std::string& inOther, const std::string& between) {
  std::string text = kTwoLevels;
  text.replace(text.find("ITEMS"), 5, inOne);
  text.replace(text.find("OTHERS"), 6, inOther);
  return NetworkText(text + between);
}

constexpr const char* kEnds = "voltageLevelId1=\"A\" bus1=\"a\" voltageLevelId2=\"B\" bus2=\"b\" ";

TEST(XiidmBranches, ALinesPowerFlowsInAtTheFromEndAndOutAtTheToEnd) {
  Imported grid(TwoLevels(
      "", "", std::string("<iidm:line id=\"L\" r=\"0\" x=\"1\" ") + kEnds + "p1=\"5\" q1=\"1\" p2=\"-4\" q2=\"-2\"/>"));
  const LN line = grid.Of<LN>("L");
  EXPECT_EQ(line.p, 5.0F);
  EXPECT_EQ(line.q, 1.0F);
  EXPECT_EQ(line.zp, 4.0F);
  EXPECT_EQ(line.zq, 2.0F);
  EXPECT_EQ(line.status, 0U);
  EXPECT_EQ(Real(line.st), "A");
  EXPECT_EQ(Real(line.zst), "B");
  EXPECT_EQ(Real(line.dv), "(none)");
}

TEST(XiidmBranches, ALineOnAConnectableBusOnlyIsOpenAtThatEnd) {
  Imported grid(TwoLevels("", "",
                          "<iidm:line id=\"L\" voltageLevelId1=\"A\" connectableBus1=\"a\" voltageLevelId2=\"B\" "
                          "bus2=\"b\"/>"));
  EXPECT_EQ(grid.Of<LN>("L").status, BranchKind<LN>::kOpen1);
}

TEST(XiidmBranches, ALineBetweenTwoNominalVoltagesPartsThem) {
  std::string text = TwoLevels("", "", std::string("<iidm:line id=\"L\" ") + kEnds + "/>");
  text.replace(text.rfind("380"), 3, "400");
  Imported grid(text);
  EXPECT_EQ(grid.Of<KV>("A").vbase, 380.0F);
  EXPECT_EQ(grid.Of<KV>("B").vbase, 0.0F);
  EXPECT_NE(WhyOf(grid.report.changed, "voltageLevel").find("another nominal voltage"), std::string::npos);
}

TEST(XiidmBranches, ATieLineJoinsTwoBoundaryLines) {
  for (const char* const half : {"boundaryLine", "danglingLine"}) {
    const std::string open = std::string("<iidm:") + half;
    Imported grid(TwoLevels(open + " id=\"X\" p0=\"0\" q0=\"0\" bus=\"a\" p=\"5\" q=\"1\"/>",
                            open + " id=\"Y\" p0=\"0\" q0=\"0\" bus=\"b\" p=\"-4\" q=\"-2\"/>",
                            std::string("<iidm:tieLine id=\"T\" ") + half + "Id1=\"X\" " + half + "Id2=\"Y\"/>"));
    EXPECT_EQ(grid.Count<LN>(), 1);
    EXPECT_EQ(grid.Of<LN>("T").p, 5.0F);
    EXPECT_EQ(grid.Of<LN>("T").zp, 4.0F);
    EXPECT_EQ(grid.Count<LD>(), 0);
    EXPECT_EQ(grid.Count<ST>(), 2);
  }
}

TEST(XiidmBranches, ATieLineOfAnEarlierVersionIsALine) {
  Imported grid(TwoLevels("", "", std::string("<iidm:tieLine id=\"T\" id_1=\"x\" id_2=\"y\" ") + kEnds + "/>"));
  EXPECT_EQ(Real(grid.Of<LN>("T").zkv), "B");
}

TEST(XiidmBranches, ABoundaryLineAloneLeadsToAStationAtTheBorder) {
  const std::string text = TwoLevels(
      "<iidm:boundaryLine id=\"X\" p0=\"9\" q0=\"3\" generationTargetP=\"2\" bus=\"a\" p=\"8\" q=\"1\"/>", "", "");
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<LN>("X").zst), "X border");
  EXPECT_EQ(grid.Of<LN>("X").p, 8.0F);
  EXPECT_EQ(grid.Of<LN>("X").zp, 7.0F);
  EXPECT_EQ(grid.Of<KV>("X border").vbase, 380.0F);
  EXPECT_EQ(Real(grid.Of<LD>("X").nd), "X border");
  EXPECT_EQ(grid.Of<LD>("X").p, 7.0F);
  EXPECT_EQ(grid.Of<LD>("X").q, 3.0F);
  Imported units(text, {.tiesAreUnits = true});
  EXPECT_EQ(units.Of<UN>("X").p, -7.0F);
}

TEST(XiidmBranches, ATransformerWithThreeWindingsIsAStar) {
  Imported grid(TwoLevels("", "",
                          "<iidm:threeWindingsTransformer id=\"T\" voltageLevelId1=\"A\" bus1=\"a\" "
                          "voltageLevelId2=\"B\" bus2=\"b\" voltageLevelId3=\"B\" connectableBus3=\"b\" p1=\"9\" "
                          "p2=\"-8\" p3=\"-1\"/>"));
  EXPECT_EQ(grid.Count<XF>(), 3);
  EXPECT_EQ(Real(grid.Of<XF>("T 1").znd), "T star");
  EXPECT_EQ(Real(grid.Of<KV>("T star").st), "A");
  EXPECT_EQ(grid.Of<XF>("T 2").p, -8.0F);
  EXPECT_EQ(grid.Of<XF>("T 2").zp, -8.0F);
  EXPECT_EQ(grid.Of<XF>("T 3").type, 3);
  EXPECT_EQ(grid.Of<XF>("T 3").status, BranchKind<XF>::kOpen1);
}

// The name of a star is made unique by the station of the first winding.
TEST(XiidmBranches, StarsOfOneNameHaveThoseOfTheirStationsToo) {
  std::string text = Level("", "", "V") + Level("", "", "W");
  for (const auto& [id, first, second] : {std::tuple("T1", "V", "W"), std::tuple("T2", "W", "V")}) {
    text += fmt::format(
        "<iidm:threeWindingsTransformer id=\"{0}\" name=\"T\" voltageLevelId1=\"{1}\" node1=\"1\" "
        "voltageLevelId2=\"{2}\" node2=\"2\" voltageLevelId3=\"{2}\" node3=\"3\"/>\n",
        id, first, second);
  }
  Imported grid(NetworkText(text));
  std::string levels;
  for (int i = 0; i < grid.model.m_kvTable->GetCount(); ++i) levels += Real((*grid.model.m_kvTable)[i].id) + ";";
  EXPECT_EQ(levels, "SV/T star;SW/T star;V;W;");
}

TEST(XiidmBranches, ADcLineJoinsWhereItsConverterStationsStand) {
  Imported grid(TwoLevels("<iidm:vscConverterStation id=\"v\" bus=\"a\"/>",
                          "<iidm:lccConverterStation id=\"l\" bus=\"b\"/>",
                          "<iidm:hvdcLine id=\"D\" converterStation1=\"v\" converterStation2=\"l\"/>"));
  EXPECT_EQ(Real(grid.Of<DLN>("D").nd), "a");
  EXPECT_EQ(Real(grid.Of<DLN>("D").znd), "b");
  EXPECT_EQ(grid.Count<LD>(), 0);
}

TEST(XiidmBranches, AConverterWithoutADcLineIsALoadOrAUnit) {
  Imported grid(
      TwoLevels("<iidm:vscConverterStation id=\"v\" bus=\"a\" p=\"-3\"/>",
                "<iidm:voltageSourceConverter id=\"w\" dcNode1=\"x\" bus1=\"b\" bus2=\"b\" p1=\"2\" p2=\"1\"/>",
                "<iidm:dcNode id=\"x\"/>"));
  EXPECT_EQ(grid.Of<UN>("v").p, 3.0F);
  EXPECT_EQ(grid.Of<LD>("w 1").p, 2.0F);
  EXPECT_EQ(grid.Of<LD>("w 2").p, 1.0F);
  EXPECT_EQ(WhyOf(grid.report.changed, "vscConverterStation"), "it belongs to no hvdcLine: a unit");
  EXPECT_EQ(WhyOf(grid.report.unknown, "dcNode"), "no table has room for it");
}

TEST(XiidmIdentities, AreNamesOrElseIds) {
  const std::string text =
      NetworkText(Level(Switch("i1", "name=\"Q\" kind=\"BREAKER\" open=\"false\" node1=\"0\" node2=\"1\"")) +
                  Level(Switch("i2", "name=\"Q\" kind=\"BREAKER\" open=\"false\" node1=\"0\" node2=\"1\""), "", "W"));
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<CB>("V/Q").nd), "V 0");
  EXPECT_EQ(Real(grid.Of<CB>("W/Q").nd), "W 0");
  Imported ids(text, {.idsAreMrids = true});
  EXPECT_EQ(Real(ids.Of<CB>("i2").nd), "W 0");
  const ImportReport::Identity& first = grid.report.identities.front();
  EXPECT_EQ(first.table, "CB");
  EXPECT_EQ(first.identity, "V/Q");
  EXPECT_EQ(first.mrid, "i1");
  EXPECT_EQ(first.name, "Q");
  EXPECT_EQ(grid.report.PlaceOf(first), "a.xiidm, line 6");
}

TEST(XiidmNetworks, WhatHasNoTableIsReported) {
  Imported grid(NetworkText(Level("<iidm:inj node=\"0\" fictitiousP0=\"1\"/>", "<iidm:ground id=\"E\" node=\"1\"/>") +
                            "<iidm:voltageAngleLimit id=\"A\"><iidm:from id=\"E\"/></iidm:voltageAngleLimit>"
                            "<iidm:extension id=\"V\"><a:position xmlns:a=\"http://a\"/></iidm:extension>"));
  std::string names;
  for (const ImportReport::Exception& unknown : grid.report.unknown)
    names += unknown.type + " " + unknown.names[0] + ";";
  EXPECT_EQ(names, "extension position V;ground E;inj in V;voltageAngleLimit A;");
}

TEST(XiidmNetworks, AnEmptyExtensionEndsAtOnce) {
  Imported grid(NetworkText("<iidm:extension id=\"net\"/>\n" + Level(kTwoNodes)));
  EXPECT_EQ(Real(grid.Of<CB>("Q").kv), "V");
}

TEST(XiidmNetworks, ClassesAreCountedByName) {
  Imported grid(NetworkText(Level(kTwoNodes, "<iidm:load id=\"L\" p0=\"1\" q0=\"0\" node=\"0\"/>")));
  std::map<std::string, int> counts;
  for (const ImportReport::Class& mapped : grid.report.classes) counts[mapped.name] = mapped.count;
  EXPECT_EQ(counts, (std::map<std::string, int>{{"load", 1}, {"substation", 1}, {"switch", 1}, {"voltageLevel", 1}}));
}

TEST(XiidmNetworks, InANetworkCountAsOne) {
  Imported grid(NetworkText("<iidm:network id=\"inner\">\n" + Level(kTwoNodes) + "</iidm:network>\n"));
  EXPECT_EQ(Real(grid.Of<CB>("Q").kv), "V");
}

}  // namespace
}  // namespace dtsdb::tools::xiidm::test
