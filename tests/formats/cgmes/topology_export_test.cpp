// Topology as profiles: what is written, and that it is read back as it was.

#include "formats/cgmes/topology_export.h"

#include <filesystem>
#include <map>
#include <set>

#include "formats/files.h"
#include "tests/formats/cgmes/worked_out_set.h"

namespace dtsdb::tools::cgmes::test {
namespace {

constexpr const char* kNamePlace = "20261122T0730Z__grid.example_";

/// A grid that was worked out and exported, read back with its export.
class Exported {
 public:
  explicit Exported(const std::string& file, const std::string& boundary = "", const ImportOptions& options = {}) {
    std::vector<std::string> paths = {m_folder.Write("grid.xml", file)};
    if (!boundary.empty()) paths.push_back(m_folder.Write("boundary.xml", boundary));
    m_out = m_folder.Path() + "/out";
    m_exported = WorkedOutSet(paths, options).Export(m_out);
    paths.push_back(m_out);
    m_read.emplace(paths, options);
  }

  const ExportedTopology& Result() const { return m_exported; }
  WorkedOutSet& Read() { return *m_read; }
  const Objects& ReadObjects() const { return m_read->set.objects; }
  std::string Bytes(const char* profile) const { return ReadFile(m_out + "/" + kNamePlace + profile + "_1.xml"); }
  /// The topological node of a connectivity node or, by property, of a terminal.
  int NodeOf(const char* mrid, Property property = kNodeTopological) const {
    return ReadObjects().Target(ReadObjects().Find(mrid), property);
  }
  std::string MridOf(const char* node) const { return ReadObjects().Mrid(NodeOf(node)); }
  std::string NameOf(const char* node) const { return ReadObjects().Name(NodeOf(node)); }

 private:
  SetFolder m_folder;
  std::string m_out;
  ExportedTopology m_exported;
  std::optional<WorkedOutSet> m_read;
};

TEST(CgmesTopologyExport, EveryGroupOfNodesIsATopologicalNode) {
  const Exported grid(TestGrid().Switches("closed", "closed", "open").File());
  EXPECT_EQ(grid.Result().nodes, 4);
  EXPECT_EQ(grid.Result().withoutVoltage, 0);
  EXPECT_EQ(grid.NodeOf("A"), grid.NodeOf("B"));
  EXPECT_EQ(grid.NodeOf("C"), grid.NodeOf("D"));
  const std::set<int> all = {grid.NodeOf("A"), grid.NodeOf("C"), grid.NodeOf("E"), grid.NodeOf("U")};
  EXPECT_EQ(all.size(), 4U);
  EXPECT_FALSE(all.contains(Objects::kNone));
}

TEST(CgmesTopologyExport, TerminalsHaveTheTopologicalNodeOfTheirNode) {
  const Exported grid(TestGrid().Switches("open", "closed", "open").File());
  for (const auto& [terminal, node] : std::map<const char*, const char*>{
           {"Main-1", "A"}, {"Q1-1", "A"}, {"Q1-2", "B"}, {"L-2", "C"}, {"Load-1", "D"}, {"Q3-1", "E"}}) {
    EXPECT_EQ(grid.NodeOf(terminal, kTerminalTopological), grid.NodeOf(node)) << terminal;
  }
}

TEST(CgmesTopologyExport, ATopologicalNodeIsNamedAfterItsBusElseAfterItsFirstNode) {
  const Exported grid(TestGrid().Switches("closed", "closed", "open").File());
  EXPECT_EQ(grid.NameOf("B"), "Main");
  EXPECT_EQ(grid.NameOf("D"), "C");
  EXPECT_EQ(grid.NameOf("U"), "U");
}

TEST(CgmesTopologyExport, BaseVoltageAndContainerAreThoseOfTheLevel) {
  const Exported grid(TestGrid().Switches("closed", "closed", "open").File());
  const std::string file = grid.Bytes("TP");
  const std::size_t node = file.find("<cim:TopologicalNode rdf:ID=\"_" + grid.MridOf("C") + "\">");
  ASSERT_NE(node, std::string::npos) << file;
  const std::string text = file.substr(node, file.find("</cim:TopologicalNode>", node) - node);
  EXPECT_NE(text.find("<cim:TopologicalNode.BaseVoltage rdf:resource=\"#_220kV\"/>"), std::string::npos) << text;
  EXPECT_NE(text.find("<cim:TopologicalNode.ConnectivityNodeContainer rdf:resource=\"#_W\"/>"), std::string::npos);
}

// Node X stands in a line, whose level has no voltage of its own.
TEST(CgmesTopologyExport, WithoutALevelsVoltageThatOfTheEquipmentCounts) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open").Text().Add("Line", "Row").Node("X", "Row");
  for (const auto& [id, end] : std::map<std::string, std::string>{{"M", "B"}, {"N", "C"}}) {
    grid.Text().Equipment("ACLineSegment", id, {end, "X"}, {{"ConductingEquipment.BaseVoltage", "#220kV"}});
  }
  const Exported exported(grid.File());
  EXPECT_EQ(exported.Result().withoutVoltage, 0);
  const std::string file = exported.Bytes("TP");
  const std::size_t node = file.find("<cim:TopologicalNode rdf:ID=\"_" + exported.MridOf("X") + "\">");
  ASSERT_NE(node, std::string::npos) << file;
  const std::string text = file.substr(node, file.find("</cim:TopologicalNode>", node) - node);
  EXPECT_NE(text.find("<cim:TopologicalNode.BaseVoltage rdf:resource=\"#_220kV\"/>"), std::string::npos) << text;
}

TEST(CgmesTopologyExport, TheNamesOfTheFilesHaveNoCharactersThatCommandTheTerminal) {
  std::string file = TestGrid().Switches("closed", "closed", "open").File();
  const std::string host = "grid.example";
  file.replace(file.find(host), host.size(),
               "gr\x7F"
               "id.\xC3\xA4");
  const SetFolder folder;
  WorkedOutSet({folder.Write("grid.xml", file)}).Export(folder.Path() + "/out");
  EXPECT_TRUE(std::filesystem::exists(folder.Path() + "/out/20261122T0730Z__gr-id.\xC3\xA4_TP_1.xml"));
}

TEST(CgmesTopologyExport, TheIslandHasItsLiveNodesAndItsReference) {
  Exported grid(TestGrid().Switches("closed", "open", "open").File());
  EXPECT_EQ(grid.Result().islands, 1);
  std::set<int> nodes;
  for (int i = 0; i < grid.ReadObjects().Count(); ++i) {
    grid.ReadObjects().ForEachTarget(i, [&](Property property, int node) {
      if (property == kIslandNodes) nodes.insert(node);
    });
  }
  const std::string file = grid.Bytes("SV");
  EXPECT_EQ(nodes, (std::set<int>{grid.NodeOf("A"), grid.NodeOf("C"), grid.NodeOf("E")}));
  EXPECT_NE(file.find("AngleRefTopologicalNode rdf:resource=\"#_" + grid.MridOf("A") + "\""), std::string::npos)
      << file;
}

TEST(CgmesTopologyExport, HeadersNameTimeAuthorityAndWhatTheFilesDependOn) {
  const Exported grid(TestGrid().Switches("closed", "closed", "open").File());
  const std::string file = grid.Bytes("TP");
  for (const char* const line :
       {"<md:Model.DependentOn rdf:resource=\"urn:uuid:state\"/>",
        "<md:Model.created>2026-11-22T08:00:00Z</md:Model.created>",
        "<md:Model.modelingAuthoritySet>http://grid.example/CGMES</md:Model.modelingAuthoritySet>",
        "<md:Model.profile>http://iec.ch/TC57/ns/CIM/Topology-EU/3.0</md:Model.profile>",
        "<md:Model.scenarioTime>2026-11-22T07:30:00Z</md:Model.scenarioTime>"}) {
    EXPECT_NE(file.find(line), std::string::npos) << line << "\n" << file.substr(0, 1500);
  }
}

TEST(CgmesTopologyExport, ASetOfTheOlderVersionGetsProfilesOfIt) {
  const Exported grid(TestGrid().Switches("closed", "closed", "open").File(false));
  const std::string file = grid.Bytes("TP");
  EXPECT_NE(file.find("xmlns:cim=\"http://iec.ch/TC57/2013/CIM-schema-cim16#\""), std::string::npos);
  EXPECT_NE(file.find("http://entsoe.eu/CIM/Topology/4/1"), std::string::npos);
  EXPECT_NE(grid.Bytes("SV").find("http://entsoe.eu/CIM/StateVariables/4/1"), std::string::npos);
  EXPECT_EQ(file.find("IdentifiedObject.mRID"), std::string::npos);
}

TEST(CgmesTopologyExport, TheSameGroupHasTheSameMridInEveryState) {
  const Exported before(TestGrid().Switches("closed", "closed", "open").File());
  const Exported open(TestGrid().Switches("open", "closed", "open").File());
  const Exported after(TestGrid().Switches("closed", "closed", "open").File());
  EXPECT_EQ(before.MridOf("C"), open.MridOf("C"));
  EXPECT_NE(before.MridOf("A"), open.MridOf("A"));
  EXPECT_NE(open.MridOf("A"), open.MridOf("B"));
  EXPECT_EQ(before.MridOf("A"), after.MridOf("B"));
  EXPECT_EQ(before.Bytes("TP"), after.Bytes("TP"));
  EXPECT_EQ(before.Bytes("SV"), after.Bytes("SV"));
}

TEST(CgmesTopologyExport, ARetainedSwitchKeepsItsNodesApartUnlessTheyAreMerged) {
  const std::string file = TestGrid().Switches("retained", "closed", "open").File();
  const Exported apart(file);
  EXPECT_NE(apart.NodeOf("A"), apart.NodeOf("B"));
  const Exported merged(file, "", {.mergesRetained = true});
  EXPECT_EQ(merged.NodeOf("A"), merged.NodeOf("B"));
}

TEST(CgmesTopologyExport, TheStarPointOfATransformerIsNoTopologicalNode) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open");
  grid.Text().Level("X", "T").Level("Y", "T").Node("N1", "X").Node("N2", "Y");
  grid.Text().Equipment("PowerTransformer", "T3", {"C", "N1", "N2"});
  const Exported exported(grid.File());
  EXPECT_EQ(exported.Result().nodes, 6);
  EXPECT_EQ(exported.Bytes("TP").find("#_T3\""), std::string::npos);
}

TEST(CgmesTopologyExport, ANodeWhoseEquipmentIsLeftOutIsAlone) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open").Text().Node("F", "W").Equipment("ACLineSegment", "Cut", {"F"});
  Exported exported(grid.File());
  EXPECT_NE(exported.NodeOf("F"), Objects::kNone);
  EXPECT_EQ(exported.NodeOf("F"), exported.NodeOf("Cut-1", kTerminalTopological));
  EXPECT_EQ(LinesOf(exported.Read().Compare()), "");
}

// The line K ends at X on the border, of which the boundary set has both nodes.
TEST(CgmesTopologyExport, TopologicalNodesOfABoundarySetAreUsedAsTheyAre) {
  ProfileText boundary;
  boundary.Add("Line", "Border").Node("X", "Border");
  boundary.Add("TopologicalNode", "TN-X", {{"TopologicalNode.ConnectivityNodeContainer", "#Border"}});
  boundary.About("ConnectivityNode", "X", {{"ConnectivityNode.TopologicalNode", "#TN-X"}});
  TestGrid grid;
  grid.Switches("closed", "closed", "open");
  grid.Text().Equipment("ACLineSegment", "M", {"C", "X"}, {{"ConductingEquipment.BaseVoltage", "#220kV"}});
  grid.Text().Equipment("EquivalentInjection", "Tie", {"X"});
  const Exported exported(grid.File(false),
                          FileText(boundary, "border", {"EquipmentBoundary", "TopologyBoundary"}, false));
  const std::string file = exported.Bytes("TP");
  EXPECT_EQ(file.find("rdf:ID=\"_TN-X\""), std::string::npos);
  EXPECT_EQ(file.find("rdf:about=\"#_X\""), std::string::npos);
  EXPECT_NE(file.find("<cim:Terminal.TopologicalNode rdf:resource=\"#_TN-X\"/>"), std::string::npos) << file;
  EXPECT_NE(file.find("<md:Model.DependentOn rdf:resource=\"urn:uuid:border\"/>"), std::string::npos);
  EXPECT_NE(exported.Bytes("SV").find("#_TN-X\""), std::string::npos);
}

TEST(CgmesTopologyExport, WhatWasExportedHasNoDifferences) {
  for (const bool isNew : {true, false}) {
    Exported grid(TestGrid().Switches("retained", "closed", "open").File(isNew));
    const TopologyComparison comparison = grid.Read().Compare();
    EXPECT_EQ(LinesOf(comparison), "");
    EXPECT_EQ(comparison.same, comparison.groups);
    EXPECT_EQ(comparison.publishedIslands, 1);
  }
}

TEST(CgmesTopologyExport, NamesAreNoLongerThanTheVersionAllows) {
  const std::string name(200, 'x');
  for (const bool isNew : {true, false}) {
    TestGrid grid;
    grid.Switches("closed", "closed", "open").Text().Node("Z").Equipment("ConformLoad", "Last", {"Z"});
    grid.Text().Equipment("BusbarSection", "Bus", {"Z"}, {{"IdentifiedObject.name", name}});
    const Exported exported(grid.File(isNew));
    EXPECT_EQ(exported.NameOf("Z"), name.substr(0, isNew ? 128 : 32));
  }
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
