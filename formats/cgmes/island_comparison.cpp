#include "formats/cgmes/island_comparison.h"

#include <fmt/format.h>

#include <map>
#include <set>
#include <unordered_map>

namespace dtsdb::tools::cgmes {
namespace {

/// The comparison, group by group.
class IslandComparison {
 public:
  IslandComparison(const ProfileSet& set, const std::vector<TopologicalNode>& groups, TopologyComparison& result)
      : m_set(set), m_objects(set.objects), m_groups(groups), m_result(result) {
    for (int i = 0; i < m_objects.Count(); ++i) {
      m_objects.ForEachTarget(i, [&](Property property, int node) {
        if (property == kIslandNodes) m_islandOf[node] = i;
      });
    }
  }

  bool HasIslands() const { return !m_islandOf.empty(); }

  void Compare(const std::vector<std::vector<int>>& published) {
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
      if (!published[i].empty()) Take(i, IslandOf(published[i]));
    }
    CountIslands();
    for (const auto& [here, there] : m_pairs) Pair(here, there);
    for (const auto& [place, island] : m_deadHere) NoteDead(place, island);
  }

 private:
  int IslandOf(const std::vector<int>& published) const {
    for (const int node : published) {
      const auto found = m_islandOf.find(node);
      if (found != m_islandOf.end()) return found->second;
    }
    return kNone;
  }

  void Take(std::size_t place, int island) {
    const int here = m_groups[place].island;
    if (here >= 0 && island != kNone) {
      m_pairs.emplace(here, island);
      m_example.emplace(std::pair(here, island), place);
      m_live.insert(island);
    } else if (here >= 0) {
      NoteLive(place);
    } else if (island != kNone) {
      m_deadHere.emplace_back(place, island);
    }
  }

  void CountIslands() {
    std::set<int> here;
    std::set<int> there;
    for (const TopologicalNode& group : m_groups) {
      if (group.island >= 0) here.insert(group.island);
    }
    for (const auto& [node, island] : m_islandOf) there.insert(island);
    m_result.islands = static_cast<int>(here.size());
    m_result.publishedIslands = static_cast<int>(there.size());
  }

  void Note(std::size_t place, TopologyDifference difference) {
    const TopologicalNode& group = m_groups[place];
    difference.station = group.station;
    difference.level = group.level;
    if (difference.here.empty()) difference.here = group.name;
    m_result.differences.push_back(std::move(difference));
  }

  /// A live branch may end in a fragment, which isn't part of every solution.
  void NoteLive(std::size_t place) {
    const bool isFragment = m_groups[place].isFragment;
    Note(place, {.what = "live here",
                 .there = "in no island",
                 .why = isFragment ? "only a branch ends there, which is live from its other end" : "",
                 .isByDesign = isFragment});
  }

  /// Loads alone make nothing live here: a published island without a unit in service is dead. One row stands for it.
  void NoteDead(std::size_t place, int island) {
    const bool isWhole = !m_live.contains(island);
    if (isWhole && !m_noted.insert(island).second) return;
    Note(place, {.what = "dead here",
                 .there = m_objects.Name(island),
                 .why = isWhole ? "no unit in service stands in the island" : "",
                 .isByDesign = isWhole});
  }

  /// Notes islands that are one here and several there, or the reverse. Where grids are read together, each
  /// authority publishes the island of its own grid.
  void Pair(int here, int there) {
    const int otherHere = m_hereOf.emplace(there, here).first->second;
    const int otherThere = m_thereOf.emplace(here, there).first->second;
    const std::size_t place = m_example.at({here, there});
    if (otherHere != here) {
      Note(place, {.what = "islands apart here",
                   .here = fmt::format("{} and {}", otherHere, here),
                   .there = m_objects.Name(there)});
    }
    if (otherThere == there) return;
    const bool areOfTwoGrids = m_set.AreOfTwoAuthorities(otherThere, there);
    Note(place, {.what = "islands together here",
                 .here = fmt::format("{}", here),
                 .there = fmt::format("{} and {}", m_objects.Name(otherThere), m_objects.Name(there)),
                 .why = areOfTwoGrids ? "each authority publishes the island of its own grid" : "",
                 .isByDesign = areOfTwoGrids});
  }

  const ProfileSet& m_set;
  const Objects& m_objects;
  const std::vector<TopologicalNode>& m_groups;
  TopologyComparison& m_result;
  std::unordered_map<int, int> m_islandOf;               // published, by topological node
  std::set<std::pair<int, int>> m_pairs;                 // islands here and there with a group in common
  std::map<std::pair<int, int>, std::size_t> m_example;  // the first such group
  std::set<int> m_live;                                  // published islands in which something is live here
  std::vector<std::pair<std::size_t, int>> m_deadHere;   // groups, and their published island
  std::set<int> m_noted;                                 // published islands that are dead here
  std::map<int, int> m_hereOf;
  std::map<int, int> m_thereOf;
};

}  // namespace

void CompareIslands(const ProfileSet& set, const std::vector<TopologicalNode>& groups,
                    const std::vector<std::vector<int>>& published, TopologyComparison& comparison) {
  IslandComparison islands(set, groups, comparison);
  if (islands.HasIslands()) islands.Compare(published);
}

}  // namespace dtsdb::tools::cgmes
