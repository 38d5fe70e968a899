// What becomes of the objects of small CGMES profiles, class by class.

#include <gtest/gtest.h>

#include <algorithm>

#include "model/record_bits.h"
#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {
namespace {

std::string Real(const QString& id) { return TextFromId(id).toStdString(); }

/// The reason for which an object of this class was left out or mapped otherwise, empty for none.
std::string WhyOf(const std::vector<ImportReport::Exception>& exceptions, const std::string& type) {
  for (const ImportReport::Exception& exception : exceptions) {
    if (exception.type == type) return exception.why;
  }
  return "";
}

TEST(CgmesContainers, RegionsStationsAndLevelsBecomeTheHierarchy) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<DV>("D").co), "C");
  EXPECT_EQ(Real(grid.Of<ST>("S").dv), "D");
  EXPECT_EQ(Real(grid.Of<KV>("V").st), "S");
  EXPECT_EQ(grid.Of<KV>("V").vbase, 220.0F);
}

TEST(CgmesContainers, LimitsOfALevelAreTakenWhenTheyFitTogether) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  text.About("VoltageLevel", "V", {{"VoltageLevel.highVoltageLimit", "242"}, {"VoltageLevel.lowVoltageLimit", "198"}});
  text.Level("W", "S").About("VoltageLevel", "W", {{"VoltageLevel.lowVoltageLimit", "198"}});
  Imported grid(text);
  EXPECT_EQ(grid.Of<KV>("V").vmax, 242.0F);
  EXPECT_EQ(grid.Of<KV>("V").vmin, 198.0F);
  EXPECT_EQ(grid.Of<KV>("W").vmax, 0.0F);
  EXPECT_EQ(grid.Of<KV>("W").vmin, 0.0F);
}

TEST(CgmesContainers, ANodeInABayLiesInTheLevelOfTheBay) {
  ProfileText text;
  text.Add("Bay", "Bay", {{"Bay.VoltageLevel", "#V"}}).Node("N1", "Bay").Node("N2");
  text.Equipment("Breaker", "B", {"N1", "N2"});
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<CB>("B").kv), "V");
  EXPECT_EQ(grid.Count<KV>(), 1);
}

TEST(CgmesContainers, ALineWithNodesBecomesAStationWithTheVoltageOfItsLines) {
  ProfileText text;
  text.Add("Line", "Border").Node("X", "Border").Node("N");
  text.Equipment("ACLineSegment", "L", {"N", "X"}, {{"ConductingEquipment.BaseVoltage", "#220kV"}});
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<KV>("Border").st), "Border");
  EXPECT_EQ(grid.Of<KV>("Border").vbase, 220.0F);
  EXPECT_EQ(Real(grid.Of<ST>("Border").dv), "(none)");
  EXPECT_EQ(Real(grid.Of<DV>("(none)").co), "(none)");
  EXPECT_EQ(Real(grid.Of<LN>("L").zst), "Border");
}

TEST(CgmesContainers, ANodeThatNoFileDescribesGetsAStationAndIsReported) {
  ProfileText text;
  text.Node("N").Equipment("ACLineSegment", "L", {"N", "X"});
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<LN>("L").zst), "X");
  EXPECT_NE(WhyOf(grid.report.changed, "not described").find("is the boundary set missing?"), std::string::npos);
}

TEST(CgmesContainers, ASetWithoutConnectivityNodesIsRefused) {
  ProfileText text;
  text.Add("Breaker", "B").Add("Terminal", "T", {{"Terminal.ConductingEquipment", "#B"}});
  EXPECT_NE(FailureOf([&] { Imported grid(text); }).find("the set has no connectivity nodes"), std::string::npos);
}

TEST(CgmesContainers, ASetWithoutEquipmentIsRefused) {
  std::string text = ProfileText().Text();
  const std::string equipment = "CoreEquipment";
  text.replace(text.find(equipment), equipment.size(), "EquipmentBoundary");
  const std::string fault = FailureOf([&] { Imported grid(std::vector<std::string>{text}); });
  EXPECT_NE(fault.find("the set has no equipment (EQ)"), std::string::npos) << fault;
}

TEST(CgmesLevels, BetweenTwoVoltagesTheMadeLevelHasNone) {
  ProfileText text;
  text.Add("BaseVoltage", "225kV", {{"BaseVoltage.nominalVoltage", "225"}});
  text.Add("Line", "Border").Node("X", "Border").Node("N");
  text.Equipment("ACLineSegment", "L", {"N", "X"}, {{"ConductingEquipment.BaseVoltage", "#225kV"}});
  Imported grid(text);
  EXPECT_EQ(grid.Of<KV>("V").vbase, 220.0F);
  EXPECT_EQ(grid.Of<KV>("Border").vbase, 0.0F);
  EXPECT_NE(WhyOf(grid.report.changed, "Line"), "");
}

TEST(CgmesSwitches, KindsOfSwitchHaveTheTypeOfABreakerOrOfADisconnector) {
  for (const auto& [type, bit] : std::initializer_list<std::pair<const char*, u32>>{{"Breaker", 1},
                                                                                    {"LoadBreakSwitch", 1},
                                                                                    {"Disconnector", 4},
                                                                                    {"GroundDisconnector", 4},
                                                                                    {"Fuse", 4},
                                                                                    {"Jumper", 4},
                                                                                    {"Switch", 4}}) {
    ProfileText text;
    text.Node("N1").Node("N2").Equipment(type, "B", {"N1", "N2"}, {{"Switch.open", "false"}});
    Imported grid(text);
    const CB row = grid.Of<CB>("B");
    EXPECT_EQ(row.flags, bit) << type;
    EXPECT_EQ(Real(row.nd), "N1");
    EXPECT_EQ(Real(row.znd), "N2");
  }
}

TEST(CgmesSwitches, OpenOutOfServiceAndNotConnectedAreOpen) {
  ProfileText text;
  text.Node("N1").Node("N2");
  text.Equipment("Breaker", "Open", {"N1", "N2"}, {{"Switch.open", "true"}});
  text.Equipment("Breaker", "Out", {"N1", "N2"}, {{"Switch.open", "false"}, {"Equipment.inService", "false"}});
  text.Equipment("Breaker", "Loose", {"N1", "N2"}, {{"Switch.open", "false"}});
  text.About("Terminal", "Loose-2", {{"ACDCTerminal.connected", "false"}});
  text.Equipment("Breaker", "Published", {"N1", "N2"}, {{"Switch.open", "false"}});
  text.Add("SvStatus", "status", {{"SvStatus.ConductingEquipment", "#Published"}, {"SvStatus.inService", "false"}});
  text.Equipment("Breaker", "Closed", {"N1", "N2"}, {{"Switch.open", "false"}, {"Equipment.inService", "true"}});
  Imported grid(text);
  for (const char* const id : {"Open", "Out", "Loose", "Published"}) EXPECT_TRUE(grid.Of<CB>(id).flags & CB_OPEN) << id;
  EXPECT_FALSE(grid.Of<CB>("Closed").flags & CB_OPEN);
}

TEST(CgmesSwitches, WithoutAStateTheNormalPositionCounts) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}, {{"Switch.normalOpen", "true"}});
  EXPECT_TRUE(Imported(text).Of<CB>("B").flags & CB_OPEN);
}

TEST(CgmesSwitches, AClosedRetainedSwitchCarriesAZeroImpedanceBranch) {
  const Values retained = {{"Switch.open", "false"}, {"Switch.retained", "true"}};
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}, retained).Flow("B-1", "30", "-4");
  text.Equipment("Breaker", "B2", {"N1", "N2"}, {{"Switch.open", "true"}, {"Switch.retained", "true"}});
  Imported grid(text);
  EXPECT_EQ(grid.Count<ZBR>(), 1);
  const ZBR row = grid.Of<ZBR>("B|Z");
  EXPECT_EQ(Real(row.cb), "B");
  EXPECT_EQ(row.p, 30.0F);
  EXPECT_EQ(row.q, -4.0F);
  EXPECT_EQ(Imported(text, {.mergesRetained = true}).Count<ZBR>(), 0);
}

TEST(CgmesSwitches, NoIdentityOfABranchBeginsAnothers) {
  ProfileText text;
  text.Node("N1").Node("N2");
  const std::vector<std::string> names = {"B", "B1", "B|Z", "B||Z", "B|", "B|Z|Z"};
  for (const std::string& name : names) {
    text.Equipment("Breaker", name, {"N1", "N2"}, {{"Switch.open", "false"}, {"Switch.retained", "true"}});
  }
  Imported grid(text);
  tTable<ZBR>& branches = *grid.model.m_zbrTable;
  ASSERT_EQ(branches.GetCount(), static_cast<int>(names.size()));
  for (int i = 1; i < branches.GetCount(); ++i) {
    EXPECT_FALSE(branches[i].id.startsWith(branches[i - 1].id)) << branches[i].id.toStdString();
  }
}

TEST(CgmesBuses, ABusHasTheVoltageOfItsTopologicalNode) {
  ProfileText text;
  text.Node("N").Equipment("BusbarSection", "Bus", {"N"});
  text.About("ConnectivityNode", "N", {{"ConnectivityNode.TopologicalNode", "#TN"}}).Add("TopologicalNode", "TN");
  text.Add("SvVoltage", "v",
           {{"SvVoltage.TopologicalNode", "#TN"}, {"SvVoltage.v", "225.5"}, {"SvVoltage.angle", "-3.25"}});
  const BUS row = Imported(text).Of<BUS>("Bus");
  EXPECT_EQ(Real(row.kv), "V");
  EXPECT_EQ(Real(row.nd), "N");
  EXPECT_EQ(row.v, 225.5);
  EXPECT_EQ(row.a, -3.25);
}

TEST(CgmesLines, LinesAndWhatCountsAsOne) {
  for (const char* const type : {"ACLineSegment", "SeriesCompensator", "EquivalentBranch"}) {
    ProfileText text;
    text.Station("S2").Level("V2", "S2").Node("N1").Node("N2", "V2").Equipment(type, "L", {"N1", "N2"});
    text.Flow("L-1", "100", "10").Flow("L-2", "-98", "-12");
    const LN row = Imported(text).Of<LN>("L");
    EXPECT_EQ(Real(row.dv), "D") << type;
    EXPECT_EQ(Real(row.st), "S");
    EXPECT_EQ(Real(row.zst), "S2");
    EXPECT_EQ(Real(row.kv), "V");
    EXPECT_EQ(Real(row.zkv), "V2");
    EXPECT_EQ(Real(row.nd), "N1");
    EXPECT_EQ(Real(row.znd), "N2");
    EXPECT_EQ(row.p, 100.0F);  // into the line
    EXPECT_EQ(row.zp, 98.0F);  // out of it
    EXPECT_EQ(row.zq, 12.0F);
    EXPECT_EQ(row.status, 0U);
  }
}

TEST(CgmesLines, EndsThatAreNotConnectedAreOpen) {
  ProfileText text;
  text.Node("N1").Node("N2");
  text.Equipment("ACLineSegment", "Out", {"N1", "N2"}, {{"Equipment.inService", "false"}});
  text.Equipment("ACLineSegment", "Open", {"N1", "N2"});
  text.About("Terminal", "Open-2", {{"ACDCTerminal.connected", "false"}});
  Imported grid(text);
  EXPECT_EQ(grid.Of<LN>("Out").status, BranchKind<LN>::kOut);
  EXPECT_EQ(grid.Of<LN>("Open").status, BranchKind<LN>::kOpen2);
}

TEST(CgmesLines, TerminalsCountByTheirNumbers) {
  ProfileText text;
  text.Node("N1").Node("N2").Add("ACLineSegment", "L");
  text.Add("Terminal", "a",
           {{"Terminal.ConductingEquipment", "#L"},
            {"Terminal.ConnectivityNode", "#N2"},
            {"ACDCTerminal.sequenceNumber", "2"}});
  text.Add("Terminal", "b",
           {{"Terminal.ConductingEquipment", "#L"},
            {"Terminal.ConnectivityNode", "#N1"},
            {"ACDCTerminal.sequenceNumber", "1"}});
  EXPECT_EQ(Real(Imported(text).Of<LN>("L").nd), "N1");
}

TEST(CgmesEquipment, WhatDoesNotStandOnItsNodesIsLeftOut) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("ACLineSegment", "One", {"N1"});
  text.Equipment("SeriesCompensator", "Same", {"N1", "N1"}).Equipment("Breaker", "Good", {"N1", "N2"});
  text.Add("EnergyConsumer", "Loose").Add("Terminal", "t", {{"Terminal.ConductingEquipment", "#Loose"}});
  Imported grid(text);
  EXPECT_EQ(WhyOf(grid.report.leftOut, "ACLineSegment"), "it has 1 terminal, not 2");
  EXPECT_EQ(WhyOf(grid.report.leftOut, "SeriesCompensator"), "both of its ends are on one node");
  EXPECT_EQ(WhyOf(grid.report.leftOut, "EnergyConsumer"), "a terminal of it is on no connectivity node");
  EXPECT_EQ(grid.Count<LN>(), 0);
  EXPECT_EQ(grid.Count<LD>(), 0);
}

/// A transformer with a winding on each of `nodes`, the highest voltage last.
ProfileText Transformer(const std::vector<std::string>& nodes) {
  ProfileText text;
  for (std::size_t i = 0; i < nodes.size(); ++i) text.Level("V" + nodes[i], "S").Node(nodes[i], "V" + nodes[i]);
  text.Equipment("PowerTransformer", "T", nodes, {{"Equipment.EquipmentContainer", "#S"}});
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    text.Add("PowerTransformerEnd", "end " + number,
             {{"TransformerEnd.Terminal", "#T-" + number}, {"PowerTransformerEnd.ratedU", number + "00"}});
  }
  return text;
}

TEST(CgmesTransformers, TwoWindingsAreOneRowFromTheHighVoltage) {
  ProfileText text = Transformer({"A", "B"});
  text.Flow("T-1", "-50", "-5").Flow("T-2", "51", "9");
  Imported grid(text);
  const XF row = grid.Of<XF>("T");
  EXPECT_EQ(Real(row.st), "S");
  EXPECT_EQ(Real(row.nd), "B");
  EXPECT_EQ(Real(row.zkv), "VA");
  EXPECT_EQ(row.p, 51.0F);
  EXPECT_EQ(row.zp, 50.0F);
  EXPECT_EQ(grid.Count<XF>(), 1);
}

TEST(CgmesTransformers, ThreeWindingsAreAStar) {
  ProfileText text = Transformer({"A", "B", "E"});
  text.About("Terminal", "T-1", {{"ACDCTerminal.connected", "false"}});
  Imported grid(text);
  EXPECT_EQ(grid.Count<XF>(), 3);
  EXPECT_EQ(Real(grid.Of<KV>("T star").st), "S");
  const XF high = grid.Of<XF>("T 1");
  EXPECT_EQ(Real(high.nd), "E");
  EXPECT_EQ(Real(high.znd), "T star");
  EXPECT_EQ(Real(high.zkv), "T star");
  EXPECT_EQ(high.type, 1);
  EXPECT_EQ(grid.Of<XF>("T 3").status, BranchKind<XF>::kOpen1);
}

TEST(CgmesTransformers, FourWindingsAreLeftOut) {
  Imported grid(Transformer({"A", "B", "E", "F"}));
  EXPECT_EQ(grid.Count<XF>(), 0);
  EXPECT_EQ(WhyOf(grid.report.leftOut, "PowerTransformer"), "it has more than three windings");
}

TEST(CgmesUnits, AMachineHasThePowerAndTheLimitOfAUnit) {
  ProfileText text;
  text.Node("N").Add("ThermalGeneratingUnit", "G", {{"GeneratingUnit.maxOperatingP", "300"}});
  text.Equipment("SynchronousMachine", "M", {"N"},
                 {{"RotatingMachine.GeneratingUnit", "#G"},
                  {"RotatingMachine.p", "-120"},
                  {"RotatingMachine.q", "15"},
                  {"SynchronousMachine.referencePriority", "1"}});
  const UN row = Imported(text).Of<UN>("M");
  EXPECT_EQ(row.p, 120.0F);  // a unit's power is what it produces
  EXPECT_EQ(row.q, -15.0F);
  EXPECT_EQ(row.pmax, 300.0F);
  EXPECT_EQ(row.pcur, 120.0F);
  EXPECT_EQ(row.ref, 0);
}

TEST(CgmesUnits, WhatElseProducesPower) {
  ProfileText text;
  text.Node("N");
  text.Equipment("ExternalNetworkInjection", "E", {"N"},
                 {{"ExternalNetworkInjection.p", "-7"},
                  {"ExternalNetworkInjection.maxP", "70"},
                  {"ExternalNetworkInjection.referencePriority", "2"}});
  text.Equipment("PowerElectronicsConnection", "P", {"N"}, {{"PowerElectronicsConnection.p", "-3"}});
  text.Add("BatteryUnit", "Battery",
           {{"PowerElectronicsUnit.PowerElectronicsConnection", "#P"}, {"PowerElectronicsUnit.maxP", "5"}});
  text.Equipment("EnergySource", "X", {"N"}, {{"EnergySource.activePower", "-2"}, {"Equipment.inService", "false"}});
  Imported grid(text);
  EXPECT_EQ(grid.Of<UN>("E").p, 7.0F);
  EXPECT_EQ(grid.Of<UN>("E").pmax, 70.0F);
  EXPECT_EQ(grid.Of<UN>("E").ref, -1);
  EXPECT_EQ(grid.Of<UN>("P").p, 3.0F);
  EXPECT_EQ(grid.Of<UN>("P").pmax, 5.0F);
  EXPECT_EQ(grid.Of<UN>("X").p, 2.0F);
  EXPECT_EQ(grid.Of<UN>("X").status, SHUNT_OFF);
}

TEST(CgmesUnits, EquivalentInjectionsAreLoadsOrUnits) {
  ProfileText text;
  text.Node("N").Equipment("EquivalentInjection", "Tie", {"N"}, {{"EquivalentInjection.p", "40"}});
  EXPECT_EQ(Imported(text).Of<LD>("Tie").p, 40.0F);
  Imported units(text, {.tiesAreUnits = true});
  EXPECT_EQ(units.Of<UN>("Tie").p, -40.0F);
  EXPECT_EQ(units.Count<LD>(), 0);
}

TEST(CgmesLoads, KindsOfLoad) {
  ProfileText text;
  text.Node("N");
  for (const char* const type : {"EnergyConsumer", "ConformLoad", "NonConformLoad", "StationSupply"}) {
    text.Equipment(type, type, {"N"}, {{"EnergyConsumer.p", "8"}, {"EnergyConsumer.q", "2"}});
  }
  text.Equipment("AsynchronousMachine", "Motor", {"N"}, {{"RotatingMachine.p", "8"}, {"RotatingMachine.q", "2"}});
  text.About("Terminal", "Motor-1", {{"ACDCTerminal.connected", "false"}});
  Imported grid(text);
  for (const char* const id : {"EnergyConsumer", "ConformLoad", "NonConformLoad", "StationSupply", "Motor"}) {
    EXPECT_EQ(grid.Of<LD>(id).p, 8.0F) << id;
    EXPECT_EQ(grid.Of<LD>(id).q, 2.0F) << id;
  }
  EXPECT_EQ(grid.Of<LD>("Motor").status, SHUNT_OFF);
  EXPECT_EQ(grid.Of<LD>("ConformLoad").status, 0U);
}

TEST(CgmesLoads, ThePublishedFlowCountsBeforeTheHypothesis) {
  ProfileText text;
  text.Node("N").Equipment("ConformLoad", "L", {"N"}, {{"EnergyConsumer.p", "8"}}).Flow("L-1", "7.5", "1.5");
  Imported grid(text);
  EXPECT_EQ(grid.Of<LD>("L").p, 7.5F);
  EXPECT_EQ(grid.Of<LD>("L").q, 1.5F);
}

TEST(CgmesShunts, CompensatorsTakeReactivePower) {
  ProfileText text;
  text.Node("N");
  text.Equipment("LinearShuntCompensator", "LC", {"N"},
                 {{"ShuntCompensator.nomU", "100"},
                  {"ShuntCompensator.sections", "2"},
                  {"LinearShuntCompensator.bPerSection", "0.001"}});
  text.Equipment("StaticVarCompensator", "Svc", {"N"}, {{"StaticVarCompensator.q", "-30"}});
  text.Equipment("NonlinearShuntCompensator", "NC", {"N"}).Flow("NC-1", "0", "12");
  text.Equipment("EquivalentShunt", "ES", {"N"});
  Imported grid(text);
  EXPECT_EQ(grid.Of<CP>("LC").q, -20.0F);
  EXPECT_EQ(grid.Of<CP>("Svc").q, -30.0F);
  EXPECT_EQ(grid.Of<CP>("NC").q, 12.0F);
  EXPECT_EQ(Real(grid.Of<CP>("ES").kv), "V");
}

/// Converters A and B in two stations, each with a DC terminal on the node of its name. A stands on N1, B on `nodeOfB`.
ProfileText Converters(const char* nodeOfB = "N2") {
  ProfileText text;
  text.Station("S2").Level("V2", "S2").Node("N1").Node("N2", "V2");
  text.Equipment("VsConverter", "A", {"N1"}, {{"ACDCConverter.p", "90"}});
  text.Equipment("CsConverter", "B", {nodeOfB}, {{"ACDCConverter.p", "-88"}});
  for (const char* const id : {"A", "B"}) {
    text.Add("ACDCConverterDCTerminal", std::string("dc ") + id,
             {{"ACDCConverterDCTerminal.DCConductingEquipment", std::string("#") + id},
              {"DCBaseTerminal.DCNode", std::string("#node ") + id}});
  }
  return text;
}

/// The same with line Dc between the two.
ProfileText LineBetween(ProfileText text) {
  text.Add("DCLineSegment", "Dc");
  for (const char* const id : {"A", "B"}) {
    text.Add("DCTerminal", std::string("line ") + id,
             {{"DCTerminal.DCConductingEquipment", "#Dc"}, {"DCBaseTerminal.DCNode", std::string("#node ") + id}});
  }
  return text;
}

TEST(CgmesDcLines, ALineBetweenTwoConverters) {
  Imported grid(LineBetween(Converters()));
  const DLN row = grid.Of<DLN>("Dc");
  EXPECT_EQ(Real(row.dv), "D");
  EXPECT_EQ(Real(row.st), "S");
  EXPECT_EQ(Real(row.zst), "S2");
  EXPECT_EQ(Real(row.nd), "N1");
  EXPECT_EQ(Real(row.znd), "N2");
  EXPECT_EQ(grid.Count<LD>() + grid.Count<UN>(), 0);
}

TEST(CgmesDcLines, ConvertersOnOneNodeMakeNoLine) {
  Imported grid(LineBetween(Converters("N1")));
  EXPECT_EQ(grid.Count<DLN>(), 0);
}

TEST(CgmesDcLines, ConvertersWithoutALineAreLoadAndUnitByTheirPower) {
  Imported grid(Converters());
  EXPECT_EQ(grid.Count<DLN>(), 0);
  EXPECT_EQ(grid.Of<LD>("A").p, 90.0F);
  EXPECT_EQ(grid.Of<UN>("B").p, 88.0F);
  EXPECT_NE(WhyOf(grid.report.changed, "VsConverter"), "");
}

TEST(CgmesMeasurements, AnalogsAreLinkedToTheFieldsOfTheEquipment) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("ACLineSegment", "L", {"N1", "N2"});
  text.Add("Analog", "A1",
           {{"Measurement.PowerSystemResource", "#L"},
            {"Measurement.Terminal", "#L-2"},
            {"Measurement.measurementType", "ThreePhaseActivePower"}});
  text.Add("AnalogValue", "AV", {{"AnalogValue.Analog", "#A1"}, {"AnalogValue.value", "12.5"}});
  text.Equipment("BusbarSection", "Bus", {"N1"});
  text.Add("Analog", "A2",
           {{"Measurement.PowerSystemResource", "#Bus"}, {"Measurement.measurementType", "LineToLineVoltage"}});
  Imported grid(text);
  EXPECT_EQ(grid.Of<ANALOG>("A1").value, 12.5F);
  EXPECT_EQ(Real(grid.Of<LN>("L").zana_p), "A1");
  EXPECT_TRUE(grid.Of<LN>("L").ana_p.isEmpty());
  EXPECT_EQ(Real(grid.Of<BUS>("Bus").ana_v), "A2");
}

TEST(CgmesMeasurements, AStatusPointAgreesWithItsSwitch) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}, {{"Switch.open", "true"}});
  text.Equipment("Breaker", "E", {"N1", "N2"}, {{"Switch.open", "false"}});
  for (const char* const id : {"B", "E"}) {
    text.Add("Discrete", std::string("status ") + id,
             {{"Measurement.PowerSystemResource", std::string("#") + id},
              {"Measurement.measurementType", "SwitchPosition"}});
  }
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<CB>("B").status_id), "status B");
  EXPECT_EQ(grid.Of<STATUS>("status B").value, 2);
  EXPECT_EQ(grid.Of<STATUS>("status E").value, 1);
}

TEST(CgmesMeasurements, AUnitHasPowerAndVoltage) {
  ProfileText text;
  text.Node("N1").Equipment("SynchronousMachine", "U", {"N1"});
  text.Add("Analog", "power",
           {{"Measurement.PowerSystemResource", "#U"}, {"Measurement.measurementType", "ThreePhaseActivePower"}});
  text.Add("Analog", "voltage",
           {{"Measurement.PowerSystemResource", "#U"}, {"Measurement.measurementType", "LineToLineVoltage"}});
  Imported grid(text);
  EXPECT_EQ(Real(grid.Of<UN>("U").ana_p), "power");
  EXPECT_EQ(Real(grid.Of<UN>("U").ana_v), "voltage");
}

TEST(CgmesMeasurements, AStatusPointOfAnythingElseHasItsValue) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("ACLineSegment", "L", {"N1", "N2"});
  const std::map<std::string, std::string> values = {{"five", "5"}, {"below", "-3"}, {"above", "1000"}};
  for (const auto& [id, value] : values) {
    text.Add("Discrete", id, {{"Measurement.PowerSystemResource", "#L"}, {"Measurement.measurementType", "Tap"}});
    text.Add("DiscreteValue", "value of " + id, {{"DiscreteValue.Discrete", "#" + id}, {"DiscreteValue.value", value}});
  }
  Imported grid(text);
  EXPECT_EQ(grid.Of<STATUS>("five").value, 5);
  EXPECT_EQ(grid.Of<STATUS>("below").value, 0);
  EXPECT_EQ(grid.Of<STATUS>("above").value, 127);
}

TEST(CgmesReport, NamesWhatIsLeftOutWithItsPlace) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}).Equipment("ACLineSegment", "L", {"N1"});
  const ImportReport report = Imported(text).report;
  ASSERT_EQ(report.leftOut.size(), 1U);
  EXPECT_TRUE(report.leftOut[0].names[0].starts_with("ACLineSegment 'L' (mRID L, ")) << report.leftOut[0].names[0];
  EXPECT_NE(report.leftOut[0].names[0].find("0.xml, line "), std::string::npos);
}

TEST(CgmesReport, AnMridOfTwoObjectsIsReported) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}).Add("BusbarSection", "B");
  Imported grid(text);
  EXPECT_EQ(grid.Count<CB>(), 1);
  EXPECT_EQ(WhyOf(grid.report.leftOut, "BusbarSection"), "its mRID is that of an object of another class");
}

TEST(CgmesReport, CountsWhatWasMappedAndWhatNoTableHasRoomFor) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  text.Add("CurrentLimit", "limit 1").Add("CurrentLimit", "limit 2");
  const ImportReport report = Imported(text).report;
  ASSERT_EQ(report.files.size(), 1U);
  EXPECT_EQ(report.files[0].contents, "EQ, SSH, SV, TP");
  EXPECT_EQ(report.files[0].version, "3.0");
  ASSERT_EQ(report.unknown.size(), 1U);
  EXPECT_EQ(report.unknown[0].type, "CurrentLimit");
  EXPECT_EQ(report.unknown[0].count, 2);
  EXPECT_EQ(report.unknown[0].names, (std::vector<std::string>{"limit 1", "limit 2"}));
  const auto breaker = std::find_if(report.classes.begin(), report.classes.end(),
                                    [](const ImportReport::Class& row) { return row.name == "Breaker"; });
  ASSERT_NE(breaker, report.classes.end());
  EXPECT_EQ(breaker->count, 1);
  EXPECT_EQ(breaker->tables, "CB");
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
