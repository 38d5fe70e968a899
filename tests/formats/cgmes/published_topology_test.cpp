// Public grids: their topology is the published one, as it is compared, exported and followed from state to state.

#include <cstdio>
#include <filesystem>
#include <map>
#include <set>

#include "analysis/switching.h"
#include "formats/cgmes/topological_nodes.h"
#include "formats/files.h"
#include "tests/formats/cgmes/worked_out_set.h"
#include "tests/support/places.h"

namespace dtsdb::tools::cgmes::test {
namespace {

using dtsdb::test::DataPath;

const std::string& Boundary() {
  static const std::string path = DataPath("relicapgrid/common/CommonData_and_Boundary_merged.xml");
  return path;
}

/// The file of a profile of a public grid.
std::string FileOf(const std::string& grid, const std::string& profile) {
  for (const auto& entry : std::filesystem::directory_iterator(DataPath("relicapgrid/" + grid))) {
    if (entry.path().string().find("_" + profile + "_") != std::string::npos) return entry.path();
  }
  ADD_FAILURE() << grid << " has no " << profile;
  return "";
}

void ExpectPublished(const char* name, const ImportOptions& options) {
  WorkedOutSet grid({DataPath(std::string("relicapgrid/") + name), Boundary()}, options);
  const TopologyComparison comparison = grid.Compare();
  for (const TopologyDifference& difference : comparison.differences) {
    EXPECT_TRUE(difference.isByDesign) << difference.what << ": " << difference.here << " / " << difference.there;
  }
  EXPECT_EQ(comparison.islands, comparison.publishedIslands);
  if (!options.mergesRetained) {
    EXPECT_EQ(comparison.same, comparison.published);
  }
  std::printf("%s: %d groups, %d published, %d the same, %zu different by design\n", name, comparison.groups,
              comparison.published, comparison.same, comparison.differences.size());
}

/// The export of a grid, read with its equipment and state, is the topology that was exported.
void ExpectExportIsRead(const char* name, const ImportOptions& options) {
  const SetFolder folder;
  const std::vector<std::string> paths = {FileOf(name, "EQ"), FileOf(name, "SSH"), Boundary(), folder.Path() + "/out"};
  WorkedOutSet({paths[0], paths[1], paths[2]}, options).Export(paths[3]);
  const TopologyComparison comparison = WorkedOutSet(paths, options).Compare();
  EXPECT_EQ(LinesOf(comparison), "");
  EXPECT_EQ(comparison.same, comparison.groups);
  EXPECT_EQ(comparison.islands, comparison.publishedIslands);
}

TEST(CgmesPublishedTopology, NothingDiffersButByDesign) {
  for (const char* const name : {"belgovia", "galia", "espheim"}) {
    ExpectPublished(name, {});
    ExpectPublished(name, {.mergesRetained = true});
  }
}

TEST(CgmesPublishedTopology, AnExportIsReadAsItWas) {
  for (const char* const name : {"belgovia", "galia", "espheim"}) {
    ExpectExportIsRead(name, {});
    ExpectExportIsRead(name, {.mergesRetained = true});
  }
}

TEST(CgmesPublishedTopology, GridsReadTogetherDifferByDesignOnly) {
  WorkedOutSet grid(
      {DataPath("relicapgrid/belgovia"), DataPath("relicapgrid/galia"), DataPath("relicapgrid/espheim"), Boundary()});
  for (const TopologyDifference& difference : grid.Compare().differences) {
    EXPECT_TRUE(difference.isByDesign) << difference.what << ": " << difference.here << " / " << difference.there;
  }
}

/// The state of a grid with every `n`-th of its closed switches opened.
std::string OpenedState(const std::string& grid, int n) {
  std::string text = ReadFile(FileOf(grid, "SSH"));
  const std::string closed = ">false</cim:Switch.open>";
  int count = 0;
  for (std::size_t at = text.find(closed); at != std::string::npos; at = text.find(closed, at + 1)) {
    if (++count % n == 0) text.replace(at, closed.size(), ">true</cim:Switch.open>");
  }
  return text;
}

std::set<std::string> MridsOf(WorkedOutSet& grid) {
  std::set<std::string> mrids;
  for (const TopologicalNode& node : TopologicalNodes(grid.model->Tables(), grid.report)) mrids.insert(node.mrid);
  return mrids;
}

/// Goes from the state of `from` to that of `to`, at most `atOnce` events in one run.
void ExpectWayLeadsTo(WorkedOutSet& from, WorkedOutSet& to, std::size_t atOnce) {
  const auto way = analysis::FindWay(*from.model, *to.model);
  ASSERT_TRUE(way && way->unreachable.empty());
  EXPECT_FALSE(way->events.empty());
  auto session = analysis::Switching::Begin(*from.model);
  ASSERT_TRUE(session);
  for (std::size_t i = 0; i < way->events.size(); i += atOnce) {
    const std::size_t end = std::min(i + atOnce, way->events.size());
    const std::vector<SwitchEvent> events(way->events.begin() + static_cast<std::ptrdiff_t>(i),
                                          way->events.begin() + static_cast<std::ptrdiff_t>(end));
    ASSERT_TRUE(session->Apply(events));
  }
  EXPECT_EQ(MridsOf(from), MridsOf(to));
  const auto rest = analysis::FindWay(*from.model, *to.model);
  EXPECT_TRUE(rest && rest->events.empty());
}

TEST(CgmesPublishedTopology, RunsFromOneStateToAnotherEndInItsTopologicalNodes) {
  for (const auto& [name, n] : {std::pair("belgovia", 3), std::pair("espheim", 40)}) {
    const SetFolder folder;
    const std::string state = folder.Write("ssh.xml", OpenedState(name, n));
    for (const bool isMerged : {false, true}) {
      const ImportOptions options = {.mergesRetained = isMerged};
      WorkedOutSet a({FileOf(name, "EQ"), FileOf(name, "SSH"), Boundary()}, options);
      WorkedOutSet b({FileOf(name, "EQ"), state, Boundary()}, options);
      const std::set<std::string> before = MridsOf(a);
      EXPECT_NE(before, MridsOf(b));
      ExpectWayLeadsTo(a, b, 4);
      if (!isMerged) continue;
      WorkedOutSet back({FileOf(name, "EQ"), FileOf(name, "SSH"), Boundary()}, options);
      ExpectWayLeadsTo(a, back, 1);
      EXPECT_EQ(before, MridsOf(a));
    }
  }
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
