// Our topology beside a set's own: what differs, what of it is so by design, and why.

#include "formats/cgmes/topology_comparison.h"

#include <map>

#include "tests/formats/cgmes/worked_out_set.h"

namespace dtsdb::tools::cgmes::test {
namespace {

/// Topological nodes "T" and their nodes.
using Published = std::map<std::string, std::vector<std::string>>;

/// A TP, linked by connectivity nodes.
ProfileText TopologyOf(const Published& published) {
  ProfileText text;
  for (const auto& [topological, nodes] : published) {
    text.Add("TopologicalNode", topological);
    for (const std::string& node : nodes) {
      text.About("ConnectivityNode", node, {{"ConnectivityNode.TopologicalNode", "#" + topological}});
    }
  }
  return text;
}

/// The comparison of a grid with `topology`, and with `islands` where they are given.
TopologyComparison Compared(const TestGrid& grid, const ProfileText& topology, const ImportOptions& options = {}) {
  const SetFolder folder;
  folder.Write("grid.xml", grid.File());
  folder.Write("topology.xml", FileText(topology, "tp", {"Topology", "StateVariables"}));
  return WorkedOutSet({folder.Path()}, options).Compare();
}

std::string DifferencesOf(const TestGrid& grid, const ProfileText& topology, const ImportOptions& options = {}) {
  return LinesOf(Compared(grid, topology, options));
}

const Published kAllClosed = {{"T1", {"A", "B"}}, {"T2", {"C", "D"}}, {"T3", {"E"}}, {"T4", {"U"}}};

TEST(CgmesTopologyComparison, EqualGroupsAreNoDifference) {
  const TestGrid grid = TestGrid().Switches("closed", "closed", "open");
  const TopologyComparison comparison = Compared(grid, TopologyOf(kAllClosed));
  EXPECT_EQ(LinesOf(comparison), "");
  EXPECT_EQ(comparison.groups, 4);
  EXPECT_EQ(comparison.published, 4);
  EXPECT_EQ(comparison.same, 4);
  EXPECT_EQ(comparison.publishedIslands, 0);
}

TEST(CgmesTopologyComparison, WhatIsPublishedTogetherAndApartHereNamesTheSwitchBetween) {
  const TestGrid grid = TestGrid().Switches("open", "closed", "open");
  const TopologyComparison comparison = Compared(grid, TopologyOf(kAllClosed));
  EXPECT_EQ(LinesOf(comparison), "apart here: A | B / T1 (Breaker 'Q1' is open)\n");
  EXPECT_EQ(comparison.same, 3);
  ASSERT_EQ(comparison.differences.size(), 1U);
  EXPECT_EQ(comparison.differences[0].station, "S");
  EXPECT_EQ(comparison.differences[0].level, "V");
}

TEST(CgmesTopologyComparison, WhatIsTogetherHereAndPublishedApartNamesTheSwitchBetween) {
  const TestGrid grid = TestGrid().Switches("closed", "closed", "open");
  const Published published = {{"T1", {"A", "B"}}, {"T2", {"C"}}, {"T3", {"E"}}, {"T4", {"U"}}, {"T5", {"D"}}};
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)),
            "together here: C, D / T2: C | T5: D (Breaker 'Q2' is closed)\n");
}

// Behind the switches Q4 to Q7 stand nodes H1 to H4, or one less.
TEST(CgmesTopologyComparison, FourNamesAreListedAndOfMoreThanFourTheFirst) {
  for (const int count : {3, 4}) {
    TestGrid grid;
    grid.Switches("closed", "closed", "open");
    Published published = kAllClosed;
    for (int i = 1; i <= count; ++i) {
      const std::string node = "H" + std::to_string(i);
      grid.Text().Node(node).Equipment("Breaker", "Q" + std::to_string(3 + i), {"A", node}, {{"Switch.open", "true"}});
      published["T1"].push_back(node);
    }
    const std::string groups = count == 3 ? "A, B | H1 | H2 | H3" : "A, B | H1 | H2 | H3 and 1 more";
    const std::string why = "Breaker 'Q4' is open, Breaker 'Q5' is open, Breaker 'Q6' is open";
    EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)),
              "apart here: " + groups + " / T1 (" + why + (count == 3 ? ")\n" : ", Breaker 'Q7' is open)\n"));
  }
}

TEST(CgmesTopologyComparison, RetainedSwitchesKeepNodesApartByDesign) {
  const TestGrid grid = TestGrid().Switches("retained", "closed", "open");
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(kAllClosed)),
            "*apart here: A | B / T1 (Breaker 'Q1' is closed and retained)\n");
}

TEST(CgmesTopologyComparison, MergedRetainedSwitchesJoinNodesByDesign) {
  const TestGrid grid = TestGrid().Switches("retained", "closed", "open");
  Published published = kAllClosed;
  published["T1"] = {"A"};
  published["T5"] = {"B"};
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published), {.mergesRetained = true}),
            "*together here: A, B / T1: A | T5: B (Breaker 'Q1' is closed and retained)\n");
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)), "");
}

TEST(CgmesTopologyComparison, ASetMayLeaveOutWhatIsDeadAndNodesWithoutEquipment) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open").Text().Node("F", "W").Equipment("ConformLoad", "Lone", {"F"});
  const Published published = {{"T1", {"A", "B"}}, {"T2", {"C", "D"}}, {"T3", {"E"}}};
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)),
            "*not published: U /  (nothing is connected to it)\n*not published: F /  (it is dead)\n");
}

TEST(CgmesTopologyComparison, WhatIsLiveMustBePublished) {
  const TestGrid grid = TestGrid().Switches("closed", "closed", "open");
  const Published published = {{"T1", {"A", "B"}}, {"T2", {"C"}}, {"T3", {"E"}}, {"T4", {"U"}}};
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)), "not published: D /  ()\n");
}

TEST(CgmesTopologyComparison, TerminalsCountWhereConnectivityNodesHaveNoTopologicalNode) {
  TestGrid grid;
  grid.Switches("open", "closed", "open");
  ProfileText text;
  for (const auto& [topological, terminals] : Published{{"T1", {"Main-1", "G-1", "Q1-1", "K-1"}},
                                                        {"T2", {"Q2-1", "Q2-2", "Load-1"}},
                                                        {"T3", {"K-2"}},
                                                        {"T5", {"L-1"}}}) {
    text.Add("TopologicalNode", topological);
    for (const std::string& terminal : terminals) {
      text.About("Terminal", terminal, {{"Terminal.TopologicalNode", "#" + topological}});
    }
  }
  EXPECT_EQ(DifferencesOf(grid, text), "*not published: U /  (nothing is connected to it)\n");
}

TEST(CgmesTopologyComparison, ATerminalThatIsNotConnectedMayBeElsewhere) {
  for (const bool isConnected : {true, false}) {
    TestGrid grid;
    grid.Switches("closed", "closed", "open");
    grid.Text().About("Terminal", "Load-1", {{"ACDCTerminal.connected", isConnected ? "true" : "false"}});
    ProfileText topology = TopologyOf(kAllClosed);
    topology.About("Terminal", "Load-1", {{"Terminal.TopologicalNode", "#T3"}});
    EXPECT_EQ(DifferencesOf(grid, topology), isConnected
                                                 ? "terminal elsewhere: Load at D / T3 ()\n"
                                                 : "*terminal elsewhere: Load at D / T3 (it isn't connected)\n");
  }
}

TEST(CgmesTopologyComparison, ATopologicalNodeWithoutNodesIsListed) {
  const TestGrid grid = TestGrid().Switches("closed", "closed", "open");
  Published published = kAllClosed;
  published["T9"] = {};
  EXPECT_EQ(DifferencesOf(grid, TopologyOf(published)), "*only published:  / T9 (no equipment stands on it)\n");
}

TEST(CgmesTopologyComparison, IslandsAreCompared) {
  const TestGrid grid = TestGrid().Switches("closed", "closed", "open");
  ProfileText one = TopologyOf(kAllClosed);
  one.Add("TopologicalIsland", "Whole",
          {{"TopologicalIsland.TopologicalNodes", "#T1"},
           {"TopologicalIsland.TopologicalNodes", "#T2"},
           {"TopologicalIsland.TopologicalNodes", "#T3"}});
  EXPECT_EQ(DifferencesOf(grid, one), "");
  ProfileText two = TopologyOf(kAllClosed);
  two.Add("TopologicalIsland", "East", {{"TopologicalIsland.TopologicalNodes", "#T1"}});
  two.Add("TopologicalIsland", "West", {{"TopologicalIsland.TopologicalNodes", "#T2"}});
  EXPECT_EQ(DifferencesOf(grid, two),
            "islands together here: 0 / East and West ()\n"
            "*live here: E / in no island (only a branch ends there, which is live from its other end)\n");
}

TEST(CgmesTopologyComparison, APublishedIslandWithoutUnitsIsDeadByDesign) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open").Text().Node("F", "W").Equipment("ConformLoad", "Lone", {"F"});
  Published published = kAllClosed;
  published["T5"] = {"F"};
  ProfileText text = TopologyOf(published);
  text.Add("TopologicalIsland", "Whole",
           {{"TopologicalIsland.TopologicalNodes", "#T1"},
            {"TopologicalIsland.TopologicalNodes", "#T2"},
            {"TopologicalIsland.TopologicalNodes", "#T3"}});
  text.Add("TopologicalIsland", "Lone", {{"TopologicalIsland.TopologicalNodes", "#T5"}});
  EXPECT_EQ(DifferencesOf(grid, text), "*dead here: F / Lone (no unit in service stands in the island)\n");
}

// T1 and X are the topological nodes that two authorities give node A, and each has an island of its own.
TEST(CgmesTopologyComparison, TwoAuthoritiesMayEachPublishTheNodeOfABorder) {
  ProfileText other;
  other.Add("TopologicalNode", "X").About("Terminal", "Main-1", {{"Terminal.TopologicalNode", "#X"}});
  other.Add("TopologicalIsland", "Other", {{"TopologicalIsland.TopologicalNodes", "#T2"}});
  ProfileText own = TopologyOf(kAllClosed);
  own.Add("TopologicalIsland", "Own",
          {{"TopologicalIsland.TopologicalNodes", "#T1"}, {"TopologicalIsland.TopologicalNodes", "#T3"}});
  std::string text = FileText(other, "other", {"Topology", "StateVariables"});
  const std::string host = "grid.example";
  for (const bool isOther : {true, false}) {
    if (isOther) text.replace(text.find(host), host.size(), "next.example");
    const SetFolder folder;
    folder.Write("a.xml", TestGrid().Switches("closed", "closed", "open").File());
    folder.Write("b.xml", text);
    folder.Write("c.xml", FileText(own, "own", {"Topology", "StateVariables"}));
    const TopologyComparison comparison = WorkedOutSet({folder.Path()}).Compare();
    EXPECT_EQ(comparison.differences.size(), 2U) << LinesOf(comparison);
    for (const TopologyDifference& difference : comparison.differences) {
      EXPECT_EQ(difference.isByDesign, isOther) << LinesOf(comparison);
    }
    if (isOther) text.replace(text.find("next.example"), host.size(), host);
  }
}

TEST(CgmesTopologyComparison, ATerminalWithoutEquipmentIsPassedOver) {
  TestGrid grid;
  grid.Switches("closed", "closed", "open").Text().Add("Terminal", "Bare", {{"Terminal.ConnectivityNode", "#A"}});
  ProfileText topology = TopologyOf(kAllClosed);
  topology.About("Terminal", "Bare", {{"Terminal.TopologicalNode", "#T2"}});
  EXPECT_EQ(DifferencesOf(grid, topology), "");
}

TEST(CgmesTopologyComparison, ASetWithoutTopologyIsRefused) {
  const SetFolder folder;
  const std::string path = folder.Write("grid.xml", TestGrid().Switches("closed", "closed", "open").File());
  WorkedOutSet grid({path});
  EXPECT_EQ(FailureOf([&] { grid.Compare(); }), path + ": the set has no topology (TP) to compare with; add its file");
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
