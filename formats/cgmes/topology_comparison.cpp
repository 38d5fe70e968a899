#include "formats/cgmes/topology_comparison.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "formats/cgmes/island_comparison.h"
#include "formats/cgmes/switch_joints.h"
#include "formats/failure.h"
#include "formats/import/groups.h"

namespace dtsdb::tools::cgmes {
namespace {

using Names = std::vector<std::string>;

/// The first of the names in a list.
std::string FirstOf(const Names& names, const char* separator = ", ") {
  constexpr std::size_t kFirst = 4;
  if (names.size() <= kFirst) return fmt::format("{}", fmt::join(names, separator));
  const Names first(names.begin(), names.begin() + kFirst);
  return fmt::format("{} and {} more", fmt::join(first, separator), names.size() - kFirst);
}

/// The groups of a model and the topological nodes of its set, node by node.
class Comparison {
 public:
  Comparison(const Mapping& mapping, const ImportReport& report, DTSDB& tables)
      : m_mapping(mapping),
        m_objects(mapping.objects),
        m_joints(mapping, report),
        m_groups(TopologicalNodes(tables, report)) {
    for (std::size_t i = 0; i < m_groups.size(); ++i) TakeGroup(i);
  }

  TopologyComparison Compare() && {
    m_result.groups = static_cast<int>(m_groups.size());
    m_result.published = static_cast<int>(m_nodesOf.size());
    for (const auto& [published, nodes] : m_nodesOf) CompareNode(published, nodes);
    for (std::size_t i = 0; i < m_groups.size(); ++i) CompareGroup(i);
    CompareTerminals();
    FindPublishedElsewhere();
    CompareIslands(m_mapping.set, m_groups, m_publishedOfGroup, m_result);
    std::stable_sort(m_result.differences.begin(), m_result.differences.end(), [](const auto& a, const auto& b) {
      return std::tie(a.isByDesign, a.station, a.level) < std::tie(b.isByDesign, b.station, b.level);
    });
    return std::move(m_result);
  }

 private:
  void TakeGroup(std::size_t place) {
    std::vector<int>& nodes = m_nodesOfGroup.emplace_back();
    std::map<int, std::vector<int>>& parts = m_partsOfGroup.emplace_back();
    for (const Member& member : m_groups[place].nodes) {
      const int node = m_objects.Find(member.mrid);
      if (node == kNone) continue;
      const int published = PublishedOf(node);
      nodes.push_back(node);
      parts[published].push_back(node);
      m_groupOf[node] = place;
      m_publishedOf[node] = published;
      if (published != kNone) m_nodesOf[published].push_back(node);
    }
    std::vector<int>& published = m_publishedOfGroup.emplace_back();
    for (const auto& [topological, members] : parts) {
      if (topological != kNone) published.push_back(topological);
    }
  }

  /// The topological node that the set gives a connectivity node: its own, else that of a terminal, best of one that is
  /// connected.
  int PublishedOf(int node) const {
    int published = m_objects.Target(node, kNodeTopological);
    if (published != kNone) return published;
    for (const int terminal : m_mapping.connections.TerminalsAt(node)) {
      const int ofTerminal = m_objects.Target(terminal, kTerminalTopological);
      if (ofTerminal != kNone && m_mapping.IsOn(terminal)) return ofTerminal;
      if (published == kNone) published = ofTerminal;
    }
    return published;
  }

  std::string NamesOf(const std::vector<int>& nodes) const {
    Names names;
    for (const int node : nodes) names.push_back(m_objects.Name(node));
    std::sort(names.begin(), names.end());
    return FirstOf(names);
  }

  void Note(std::size_t group, TopologyDifference difference) {
    difference.station = m_groups[group].station;
    difference.level = m_groups[group].level;
    m_result.differences.push_back(std::move(difference));
  }

  /// Some switches in words, those that are closed first.
  std::string Describe(std::vector<const Joint*> joints) const {
    std::stable_partition(joints.begin(), joints.end(), [](const Joint* joint) { return joint->isClosed; });
    Names names;
    for (const Joint* const joint : joints) names.push_back(m_joints.Describe(*joint));
    return names.empty() ? "no switch stands between them" : FirstOf(names);
  }

  /// The switches between nodes of which `differ(a, b)` holds, both of them in `nodes`.
  template <class Differ>
  std::vector<const Joint*> Between(const std::vector<int>& nodes, const Differ& differ) const {
    const std::unordered_set<int> inside(nodes.begin(), nodes.end());
    std::vector<const Joint*> joints;
    for (const int node : nodes) {
      for (const Joint* const joint : m_joints.At(node)) {
        const bool isInside = joint->from == node && inside.contains(joint->to);
        if (isInside && differ(joint->from, joint->to)) joints.push_back(joint);
      }
    }
    return joints;
  }

  /// Several groups may be one topological node. It is by design when closed retained switches join them all: these
  /// keep their nodes apart here.
  void CompareNode(int published, const std::vector<int>& nodes) {
    std::map<std::size_t, std::vector<int>> groups;
    for (const int node : nodes) groups[m_groupOf.at(node)].push_back(node);
    if (groups.size() < 2) return;
    const auto joints = Between(nodes, [this](int a, int b) { return m_groupOf.at(a) != m_groupOf.at(b); });
    Names here;
    for (const auto& [group, members] : groups) here.push_back(NamesOf(members));
    Note(groups.begin()->first, {.what = "apart here",
                                 .here = FirstOf(here, " | "),
                                 .there = m_objects.Name(published),
                                 .why = Describe(joints),
                                 .isByDesign = AreJoinedByRetained(groups, joints)});
  }

  bool AreJoinedByRetained(const std::map<std::size_t, std::vector<int>>& groups,
                           const std::vector<const Joint*>& joints) const {
    std::map<std::size_t, int> numbers;
    for (const auto& [group, nodes] : groups) numbers.emplace(group, static_cast<int>(numbers.size()));
    Groups joined(groups.size());
    for (const Joint* const joint : joints) {
      if (!joint->isClosed || !joint->isRetained) continue;
      joined.Join(numbers.at(m_groupOf.at(joint->from)), numbers.at(m_groupOf.at(joint->to)));
    }
    return std::all_of(numbers.begin(), numbers.end(),
                       [&joined](const auto& number) { return joined.Of(number.second) == joined.Of(0); });
  }

  /// A group may be several topological nodes. It is by design when closed switches between them are all retained: they
  /// join their nodes where the import was asked for that.
  void CompareGroup(std::size_t place) {
    const std::vector<int>& nodes = m_nodesOfGroup[place];
    const std::vector<int>& published = m_publishedOfGroup[place];
    const bool isWhole = NoteUnpublished(place);
    if (published.size() == 1 && isWhole && NodesAreOf(published.front(), place)) ++m_result.same;
    if (published.size() < 2) return;
    auto joints = Between(nodes, [this](int a, int b) { return m_publishedOf.at(a) != m_publishedOf.at(b); });
    std::erase_if(joints, [](const Joint* joint) { return !joint->isClosed; });
    const bool areRetained =
        std::all_of(joints.begin(), joints.end(), [](const Joint* joint) { return joint->isRetained; });
    Names there;
    for (const int topological : published) {
      there.push_back(m_objects.Name(topological) + ": " + NamesOf(m_partsOfGroup[place].at(topological)));
    }
    Note(place, {.what = "together here",
                 .here = NamesOf(nodes),
                 .there = FirstOf(there, " | "),
                 .why = Describe(joints),
                 .isByDesign = areRetained && !joints.empty()});
  }

  bool NodesAreOf(int published, std::size_t place) const {
    const std::vector<int>& nodes = m_nodesOf.at(published);
    return std::all_of(nodes.begin(), nodes.end(), [&](int node) { return m_groupOf.at(node) == place; });
  }

  /// Notes nodes that are in no topological node. A set may leave out what is dead, and nodes on which nothing is
  /// connected. Returns true when there is none but such.
  bool NoteUnpublished(std::size_t place) {
    const auto part = m_partsOfGroup[place].find(kNone);
    if (part == m_partsOfGroup[place].end()) return true;
    const std::vector<int>& nodes = part->second;
    const bool isDead = m_groups[place].island < 0 && m_publishedOfGroup[place].empty();
    const bool isUnused = std::none_of(nodes.begin(), nodes.end(), [this](int node) { return HasConnection(node); });
    const char* const why = isUnused ? "nothing is connected to it" : isDead ? "it is dead" : "";
    Note(place, {.what = "not published", .here = NamesOf(nodes), .why = why, .isByDesign = isUnused || isDead});
    return isUnused || isDead;
  }

  bool HasConnection(int node) const {
    const auto terminals = m_mapping.connections.TerminalsAt(node);
    return std::any_of(terminals.begin(), terminals.end(), [this](int terminal) { return m_mapping.IsOn(terminal); });
  }

  /// The terminals of a node are in its topological node. Another one is by design while they aren't connected, and
  /// where two authorities give the same node of a border one each.
  void CompareTerminals() {
    for (int terminal = 0; terminal < m_objects.Count(); ++terminal) {
      const int published = m_objects.Target(terminal, kTerminalTopological);
      if (published == kNone) continue;
      m_usedByTerminals.insert(published);
      const auto ofNode = m_publishedOf.find(m_objects.Target(terminal, kTerminalNode));
      const int equipment = m_mapping.connections.EquipmentOf(terminal);
      if (ofNode == m_publishedOf.end() || ofNode->second == published || equipment == kNone) continue;
      m_noted.insert(published);
      std::string why = m_mapping.IsOn(terminal) ? "" : "it isn't connected";
      if (m_mapping.set.AreOfTwoAuthorities(published, ofNode->second)) why = "two authorities publish a border's node";
      Note(m_groupOf.at(ofNode->first),
           {.what = "terminal elsewhere",
            .here = fmt::format("{} at {}", m_objects.Name(equipment), m_objects.Name(ofNode->first)),
            .there = m_objects.Name(published),
            .why = why,
            .isByDesign = !why.empty()});
    }
  }

  /// Topological nodes of the set's TP in which no node of the model lies. Those of a border that this grid doesn't
  /// reach are passed over.
  void FindPublishedElsewhere() {
    for (int i = 0; i < m_objects.Count(); ++i) {
      const int file = m_objects.File(i);
      if (file == kNone || m_nodesOf.contains(i) || m_noted.contains(i) || !IsTopologicalNode(i)) continue;
      if (m_mapping.set.profiles[static_cast<std::size_t>(file)].Is(ProfileKind::kTopologyBoundary)) continue;
      const bool isUsed = m_usedByTerminals.contains(i);
      const char* const why = isUsed ? "its terminals are on no connectivity node" : "no equipment stands on it";
      m_result.differences.push_back(
          {.what = "only published", .there = m_objects.Name(i), .why = why, .isByDesign = !isUsed});
    }
  }

  bool IsTopologicalNode(int object) const {
    const int type = m_objects.Class(object);
    return type != kNone && m_objects.ClassName(type) == "TopologicalNode";
  }

  const Mapping& m_mapping;
  const Objects& m_objects;
  const SwitchJoints m_joints;
  const std::vector<TopologicalNode> m_groups;
  std::vector<std::vector<int>> m_nodesOfGroup;                 // objects, by place in m_groups
  std::vector<std::map<int, std::vector<int>>> m_partsOfGroup;  // the same by topological node, kNone for none
  std::vector<std::vector<int>> m_publishedOfGroup;             // likewise
  std::unordered_map<int, std::size_t> m_groupOf;               // by node
  std::unordered_map<int, int> m_publishedOf;                   // by node, kNone for none
  std::map<int, std::vector<int>> m_nodesOf;                    // by topological node
  std::set<int> m_usedByTerminals;                              // topological nodes
  std::set<int> m_noted;                                        // likewise, those that only terminals name
  TopologyComparison m_result;
};

/// Where TP and SSH of one authority are of different times, that may be all that the differences come from.
std::string TimeNote(const ProfileSet& set) {
  for (const Profile& topology : set.profiles) {
    for (const Profile& state : set.profiles) {
      const bool isPair = topology.Is(ProfileKind::kTopology) && state.Is(ProfileKind::kSteadyState) &&
                          topology.authority == state.authority;
      if (!isPair || topology.scenarioTime == state.scenarioTime) continue;
      return fmt::format("{} is of {}, but {} of {}", topology.file, topology.scenarioTime, state.file,
                         state.scenarioTime);
    }
  }
  return "";
}

}  // namespace

TopologyComparison CompareWithPublished(const ProfileSet& set, const ImportOptions& options, const ImportReport& report,
                                        DTSDB& tables) {
  if (!set.Has(ProfileKind::kTopology)) {
    throw Failure(kExitFile,
                  set.profiles.front().file + ": the set has no topology (TP) to compare with; add its file");
  }
  const Mapping mapping(set, options);
  TopologyComparison comparison = Comparison(mapping, report, tables).Compare();
  comparison.note = TimeNote(set);
  return comparison;
}

}  // namespace dtsdb::tools::cgmes
