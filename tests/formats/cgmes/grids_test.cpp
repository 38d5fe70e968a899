// Public grids: imported, they are good; their groups of nodes, islands and flows are the published ones.
//
// The published answers are read by a reader of the tests' own; what links them to the model is the import's list of
// identities.

#include <gtest/gtest.h>

#include <QHash>
#include <cmath>
#include <cstdio>
#include <map>
#include <set>
#include <string>

#include "analysis/flows.h"
#include "analysis/topology.h"
#include "formats/cgmes/connections.h"
#include "formats/cgmes/import.h"
#include "formats/cgmes/set.h"
#include "model/text.h"
#include "tests/breakerflow/cgmes_model.h"
#include "tests/support/places.h"

namespace dtsdb::tools::cgmes::test {
namespace {

using dtsdb::test::CgmesModel;
using dtsdb::test::CgmesObject;
using dtsdb::test::DataPath;

/// A public grid, imported with its boundary and worked out.
class Grid {
 public:
  explicit Grid(const std::string& name)
      : m_folder(DataPath("relicapgrid/" + name)), m_published(QString::fromStdString(m_folder)) {
    DTSDB tables;
    m_report = Import({m_folder, DataPath("relicapgrid/common/CommonData_and_Boundary_merged.xml")}, {}, tables);
    for (const ImportReport::Identity& row : m_report.identities) m_mrids[row.table][row.identity] = row.mrid;
    m_model.emplace(analysis::Model::Of(tables, name));
  }

  analysis::Model& Model() { return *m_model; }
  const ImportReport& Report() const { return m_report; }
  const CgmesModel& Published() const { return m_published; }
  const std::string& Folder() const { return m_folder; }

  /// The mRID behind a record; empty for one that is no object, or not as a whole.
  std::string Mrid(const char* table, const std::string& identity) const {
    const auto& mrids = m_mrids.at(table);
    const auto found = mrids.find(identity);
    return found == mrids.end() ? "" : found->second;
  }

  /// The published topological node of a node of the model; empty for a star point.
  std::string TopologicalNode(const std::string& identity) const {
    const CgmesObject& node = m_published.Object(QStringLiteral("_") + QString::fromStdString(Mrid("ND", identity)));
    return node["ConnectivityNode.TopologicalNode"].toStdString();
  }

 private:
  std::string m_folder;
  CgmesModel m_published;
  ImportReport m_report;
  std::optional<analysis::Model> m_model;
  std::map<std::string, std::map<std::string, std::string>> m_mrids;
};

void ExpectNothingLeftOut(const ImportReport& report) {
  for (const ImportReport::Exception& exception : report.leftOut) {
    ADD_FAILURE() << exception.type << ": " << exception.why << ": " << exception.names.front();
  }
}

/// Two ways of putting things into groups are one: what is together in one is together in the other.
void ExpectSameGroups(const std::vector<std::pair<std::string, std::string>>& groups) {
  std::map<std::string, std::string> ofFirst;
  std::map<std::string, std::string> ofSecond;
  for (const auto& [first, second] : groups) {
    EXPECT_EQ(ofFirst.emplace(first, second).first->second, second) << first;
    EXPECT_EQ(ofSecond.emplace(second, first).first->second, first) << second;
  }
}

/// The island of each published topological node that is in one.
std::map<std::string, std::string> PublishedIslands(const Grid& grid) {
  const ProfileSet set = ReadSet({grid.Folder()});
  std::map<std::string, std::string> islands;
  for (int i = 0; i < set.objects.Count(); ++i) {
    set.objects.ForEachTarget(i, [&](Property property, int node) {
      if (property == kIslandNodes) islands["_" + set.objects.Mrid(node)] = set.objects.Mrid(i);
    });
  }
  return islands;
}

void ExpectPublishedTopology(const char* name, std::size_t topologicalNodes, int islandCount) {
  Grid grid(name);
  ASSERT_EQ(grid.Published().Error().toStdString(), "");
  ExpectNothingLeftOut(grid.Report());
  const auto validation = grid.Model().Validate();
  ASSERT_TRUE(validation && validation->good) << name;
  const auto topology = analysis::WorkOutTopology(grid.Model());
  ASSERT_TRUE(topology) << topology.error().message;

  const std::map<std::string, std::string> islands = PublishedIslands(grid);
  std::vector<std::pair<std::string, std::string>> points;
  std::vector<std::pair<std::string, std::string>> islandsOfNodes;
  std::set<std::string> seen;
  for (const analysis::Node& node : topology->nodes) {
    const std::string published = grid.TopologicalNode(node.identity);
    if (published.empty()) continue;
    seen.insert(published);
    points.emplace_back(node.point, published);
    const auto island = islands.find(published);
    EXPECT_EQ(node.live, island != islands.end()) << node.identity;
    if (!node.live || island == islands.end() || !node.IsInSection()) continue;
    for (const analysis::Section& section : topology->sections) {
      if (section.number == node.section) islandsOfNodes.emplace_back(std::to_string(section.island), island->second);
    }
  }
  ExpectSameGroups(points);
  ExpectSameGroups(islandsOfNodes);
  EXPECT_EQ(seen.size(), topologicalNodes);
  EXPECT_EQ(static_cast<int>(topology->islands.size()), islandCount);
  std::printf("%s: %zu nodes, %zu topological nodes\n", name, topology->nodes.size(), seen.size());
}

TEST(CgmesGrids, TheTopologyOfBelgoviaIsThePublishedOne) { ExpectPublishedTopology("belgovia", 15, 1); }
TEST(CgmesGrids, TheTopologyOfGaliaIsThePublishedOne) { ExpectPublishedTopology("galia", 12, 1); }
TEST(CgmesGrids, TheTopologyOfEspheimIsThePublishedOne) { ExpectPublishedTopology("espheim", 175, 2); }

/// The published flows into a switch, by its mRID and the number of the terminal.
std::map<std::string, std::map<int, Power>> PublishedFlows(const CgmesModel& published) {
  std::map<std::string, std::map<int, Power>> flows;
  const auto rows = published.OfType("SvPowerFlow");
  for (const CgmesObject& flow : rows) {
    const CgmesObject& terminal = published.Object(flow["SvPowerFlow.Terminal"]);
    const QString equipment = terminal["Terminal.ConductingEquipment"];
    if (published.Object(equipment)["Switch.open"].isEmpty()) continue;
    flows[equipment.mid(1).toStdString()][terminal["ACDCTerminal.sequenceNumber"].toInt()] = {
        flow.Number("SvPowerFlow.p"), flow.Number("SvPowerFlow.q")};
  }
  return flows;
}

void ExpectPublishedFlows(const char* name, int switches) {
  constexpr double kNear = 0.002;  // MW, Mvar
  Grid grid(name);
  const auto published = PublishedFlows(grid.Published());
  const auto flows = analysis::WorkOutFlows(grid.Model(), {.tolerance = 0.1F});
  ASSERT_TRUE(flows) << flows.error().message;
  double worst = 0;
  int compared = 0;
  for (const BreakerFlow& breaker : flows->breakers) {
    const auto found = published.find(grid.Mrid("CB", TextFromId(breaker.id).toStdString()));
    if (breaker.state == BreakerState::kOpen || found == published.end()) continue;
    ASSERT_EQ(breaker.state, BreakerState::kComputed) << breaker.id.toStdString();
    for (const auto& [number, flow] : found->second) {
      const double sign = number == 1 ? 1 : -1;
      const double error = std::max(std::fabs(breaker.p - sign * flow.p), std::fabs(breaker.q - sign * flow.q));
      EXPECT_LE(error, kNear) << breaker.id.toStdString() << ": " << breaker.p << ", " << breaker.q << "; published "
                              << flow.p << ", " << flow.q;
      worst = std::max(worst, error);
    }
    ++compared;
  }
  EXPECT_EQ(compared, switches);
  std::printf("%s: %d switches, largest difference %.4f MW or Mvar\n", name, compared, worst);
}

TEST(CgmesGrids, TheFlowsOfBelgoviaAreThePublishedOnes) { ExpectPublishedFlows("belgovia", 20); }
TEST(CgmesGrids, TheFlowsOfEspheimAreThePublishedOnes) { ExpectPublishedFlows("espheim", 1218); }

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
