#include "formats/cgmes/topology_parts.h"

#include <QString>
#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace dtsdb::tools::cgmes {
namespace {

/// Collects the parts of one set.
class Parts {
 public:
  explicit Parts(const Mapping& mapping) : m_mapping(mapping), m_objects(mapping.objects) {}

  std::vector<ImportReport::Identity> Collect() && {
    for (const Profile& profile : m_mapping.set.profiles) AddProfile(profile);
    for (const Level& level : m_mapping.places.Levels()) {
      AddObject(part_of::kLevelVoltage, KIND_KV, level.object, m_objects.Target(level.object, kLevelVoltage));
    }
    for (const int node : m_mapping.places.Nodes()) AddNode(node);
    AddIdleNodes();
    AddUnusedNodes();
    std::sort(m_parts.begin(), m_parts.end(), [](const auto& a, const auto& b) {
      return std::tie(a.table, a.identity, a.mrid) < std::tie(b.table, b.identity, b.mrid);
    });
    return std::move(m_parts);
  }

 private:
  /// An export depends on the equipment and its state, and on the topological nodes of the border that it names.
  void AddProfile(const Profile& profile) {
    for (const ProfileKind kind :
         {ProfileKind::kEquipment, ProfileKind::kSteadyState, ProfileKind::kTopologyBoundary}) {
      if (!profile.Is(kind)) continue;
      m_parts.push_back({part_of::kProfile,
                         std::string(ShortName(kind)) + " " + profile.version + " " + profile.scenarioTime,
                         profile.mrid, profile.authority});
    }
  }

  /// `object` stands by the record of `owner`.
  void AddObject(const char* kind, TableKind table, int owner, int object) {
    if (object == kNone || !m_mapping.ids.Has(table, owner)) return;
    m_parts.push_back(
        {kind, m_mapping.ids.Text(table, owner).toStdString(), m_objects.Mrid(object), m_objects.Name(object)});
  }

  void AddNode(int node) {
    for (const int terminal : m_mapping.connections.TerminalsAt(node)) {
      AddObject(part_of::kTerminal, KIND_ND, node, terminal);
    }
    AddObject(part_of::kTopological, KIND_ND, node, BorderNode(node));
    AddObject(part_of::kNodeVoltage, KIND_ND, node, VoltageOfEquipment(node));
  }

  /// The topological node that a boundary set defines for a node; kNone without one.
  int BorderNode(int node) const {
    const int topological = m_objects.Target(node, kNodeTopological);
    const int file = topological == kNone ? kNone : m_objects.File(topological);
    if (file == kNone) return kNone;
    const Profile& profile = m_mapping.set.profiles[static_cast<std::size_t>(file)];
    return profile.Is(ProfileKind::kTopologyBoundary) ? topological : kNone;
  }

  /// The base voltage of the equipment on a node whose level has none.
  int VoltageOfEquipment(int node) const {
    if (m_objects.Has(m_mapping.places.ContainerOf(node), kLevelVoltage)) return kNone;
    for (const int terminal : m_mapping.connections.TerminalsAt(node)) {
      const int base = m_objects.Target(m_mapping.connections.EquipmentOf(terminal), kEquipmentVoltage);
      if (base != kNone) return base;
    }
    return kNone;
  }

  /// Nodes whose equipment is all left out get no record.
  void AddIdleNodes() {
    std::set<QString> used;
    const auto use = [&used](const auto& rows) {
      for (const auto& row : rows) {
        used.insert(row.nd);
        if constexpr (requires { row.znd; }) used.insert(row.znd);
      }
    };
    const InputRows& rows = m_mapping.rows;
    std::apply([&](const auto&... each) { (use(each), ...); },
               std::tie(rows.Of<CB>(), rows.Of<BUS>(), rows.Of<UN>(), rows.Of<LD>(), rows.Of<CP>(), rows.Of<LN>(),
                        rows.Of<XF>(), rows.Of<DLN>()));
    for (const int node : m_mapping.places.Nodes()) {
      if (used.contains(m_mapping.ids.Id(KIND_ND, node))) continue;
      const int level = m_mapping.places.Levels()[static_cast<std::size_t>(m_mapping.places.LevelOf(node))].object;
      m_parts.push_back({part_of::kIdleNode, m_mapping.ids.Text(KIND_KV, level).toStdString(), m_objects.Mrid(node),
                         m_mapping.ids.Text(KIND_ND, node).toStdString()});
    }
  }

  /// Nodes without terminals, in the level that their container is or is part of.
  void AddUnusedNodes() {
    std::map<int, int> joinedInto;
    for (const JoinedLevel& joined : m_mapping.places.Joined()) joinedInto[joined.level.object] = joined.into;
    for (int node = 0; node < m_objects.Count(); ++node) {
      if (!m_objects.Has(node, kNodeContainer) || !m_mapping.connections.TerminalsAt(node).empty()) continue;
      const int container = m_mapping.places.ContainerOf(node);
      const auto joined = joinedInto.find(container);
      AddObject(part_of::kUnusedNode, KIND_KV, joined == joinedInto.end() ? container : joined->second, node);
    }
  }

  const Mapping& m_mapping;
  const Objects& m_objects;
  std::vector<ImportReport::Identity> m_parts;
};

}  // namespace

std::vector<ImportReport::Identity> TopologyParts(const Mapping& mapping) { return Parts(mapping).Collect(); }

}  // namespace dtsdb::tools::cgmes
