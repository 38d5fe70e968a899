#include "formats/cgmes/topological_nodes.h"

#include <fmt/format.h>

#include <QUuid>
#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "formats/field_text.h"
#include "formats/node_groups.h"

namespace dtsdb::tools::cgmes {
namespace {

/// All mRIDs of this program lie in one name space of UUIDs. Reaches files: it stays as it is.
const QUuid kNameSpace(0x6c1f1b5e, 0x3a52, 0x4d0b, 0x9a, 0x4e, 0x5d, 0x7b, 0x0f, 0x2c, 0x81, 0x93);

/// True for a text that can stand in an rdf:ID behind "_".
bool IsFit(const std::string& mrid) {
  return !mrid.empty() && std::all_of(mrid.begin(), mrid.end(), [](char c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
  });
}

using Row = ImportReport::Identity;

/// Which objects the records of a model stand for.
class RecordObjects {
 public:
  explicit RecordObjects(const ImportReport& report) {
    for (const Row& row : report.identities) {
      m_records.emplace(Key(row.table, row.identity), &row);
      if (row.table == XF::kTableName) m_transformers.insert(row.mrid);
    }
    for (const Row& row : report.parts) m_parts[Key(row.table, row.identity)].push_back(&row);
  }

  /// The object of a record, with an mRID and a name in any case.
  Member Of(const char* table, const std::string& identity) const {
    const auto found = m_records.find(Key(table, identity));
    if (found == m_records.end()) return {DerivedMrid(table, identity), identity, false};
    const Row& row = *found->second;
    const bool isMrid = !m_parts.empty() || IsFit(row.mrid);  // identities of other formats may hold anything
    return {isMrid ? row.mrid : DerivedMrid(table, row.mrid), row.name, false};
  }

  /// True for a node that stands for a transformer: its star point.
  bool IsStar(const std::string& node) const {
    const auto found = m_records.find(Key(ND::kTableName, node));
    return found != m_records.end() && m_transformers.contains(found->second->mrid);
  }

  /// The parts of a kind that belong to a record.
  const std::vector<const Row*>& Parts(const char* kind, const std::string& identity) const {
    static const std::vector<const Row*> none;
    const auto found = m_parts.find(Key(kind, identity));
    return found == m_parts.end() ? none : found->second;
  }
  /// The mRID of the first of them, empty for none.
  std::string FirstPart(const char* kind, const std::string& identity) const {
    const auto& parts = Parts(kind, identity);
    return parts.empty() ? "" : parts.front()->mrid;
  }

 private:
  static std::string Key(const std::string& table, const std::string& identity) { return table + '\n' + identity; }

  std::unordered_map<std::string, const Row*> m_records;
  std::unordered_map<std::string, std::vector<const Row*>> m_parts;
  std::set<std::string> m_transformers;  // mRIDs
};

/// Makes the topological nodes of one model.
class Maker {
 public:
  Maker(DTSDB& tables, const ImportReport& report)
      : m_tables(tables), m_objects(report), m_derivesVoltages(report.parts.empty()) {
    for (int i = 0; i < tables.m_busTable->GetCount(); ++i) {
      const BUS& bus = (*tables.m_busTable)[i];
      m_buses.emplace(bus.ind, IdText(bus.id));
    }
  }

  std::vector<TopologicalNode> Make() && {
    for (const NodeGroup& group : NodeGroups(m_tables)) AddGroup(group);
    for (int i = 0; i < m_tables.m_kvTable->GetCount(); ++i) AddUnused((*m_tables.m_kvTable)[i]);
    return std::move(m_made);
  }

 private:
  std::string NodeText(int node) const { return IdText((*m_tables.m_ndTable)[node].id); }

  const KV& LevelOf(int node) const {
    return m_tables.m_kvTable->GetPh(m_tables.m_rKvNdTable->GetPh((*m_tables.m_ndTable)[node].r_kv_nd).ikv);
  }

  void AddGroup(const NodeGroup& group) {
    if (m_objects.IsStar(NodeText(group.nodes.front()))) return;
    TopologicalNode made;
    made.section = group.section;
    made.isFragment = group.isFragment;
    made.island = group.island;
    for (const int node : group.nodes) AddMember(NodeText(node), made);
    made.name = NameOf(group);
    Finish(LevelOf(group.nodes.front()), made);
  }

  void AddMember(const std::string& identity, TopologicalNode& made) const {
    Member member = m_objects.Of(ND::kTableName, identity);
    const std::string given = m_objects.FirstPart(part_of::kTopological, identity);
    member.isLinked = !given.empty();
    if (member.isLinked && !made.isGiven) {
      made.isGiven = true;
      made.mrid = given;
    }
    for (const Row* const terminal : m_objects.Parts(part_of::kTerminal, identity)) {
      made.terminals.push_back(terminal->mrid);
    }
    if (made.baseVoltage.empty()) made.baseVoltage = m_objects.FirstPart(part_of::kNodeVoltage, identity);
    made.nodes.push_back(std::move(member));
  }

  /// The name of the first bus in a group, in the order of the bus table; else of its first node.
  std::string NameOf(const NodeGroup& group) const {
    std::string first;
    for (const int node : group.nodes) {
      const auto bus = m_buses.find(node);
      if (bus != m_buses.end() && (first.empty() || bus->second < first)) first = bus->second;
    }
    if (!first.empty()) return m_objects.Of(BUS::kTableName, first).name;
    return m_objects.Of(ND::kTableName, NodeText(group.nodes.front())).name;
  }

  /// The nodes of a level without a record: each is alone.
  void AddUnused(const KV& level) {
    const std::string identity = IdText(level.id);
    for (const Row* const node : m_objects.Parts(part_of::kIdleNode, identity)) {
      TopologicalNode made;
      AddMember(node->name, made);
      made.name = made.nodes.front().name;
      Finish(level, made);
    }
    for (const Row* const node : m_objects.Parts(part_of::kUnusedNode, identity)) {
      TopologicalNode made;
      made.nodes.push_back({node->mrid, node->name, false});
      made.name = node->name;
      Finish(level, made);
    }
  }

  /// Fills in what follows from the level and from the nodes.
  void Finish(const KV& level, TopologicalNode& made) {
    made.level = IdText(level.id);
    made.station = IdText(level.st);
    std::sort(made.nodes.begin(), made.nodes.end(), [](const auto& a, const auto& b) { return a.mrid < b.mrid; });
    std::sort(made.terminals.begin(), made.terminals.end());
    const std::string container = m_objects.Of(KV::kTableName, made.level).mrid;
    if (container != made.nodes.front().mrid) made.container = container;  // a node without container is its own level
    const std::string ofLevel = m_objects.FirstPart(part_of::kLevelVoltage, made.level);
    if (!ofLevel.empty()) made.baseVoltage = ofLevel;
    if (m_derivesVoltages) made.baseVoltage = DerivedMrid("BaseVoltage", NumberText(level.vbase));
    if (!made.isGiven) {
      std::string contents;
      for (const Member& node : made.nodes) contents += node.mrid + '\n';
      made.mrid = DerivedMrid("TopologicalNode", contents);
    }
    m_made.push_back(std::move(made));
  }

  DTSDB& m_tables;
  RecordObjects m_objects;
  bool m_derivesVoltages;
  std::map<int, std::string> m_buses;  // the first bus on each node, by its number
  std::vector<TopologicalNode> m_made;
};

/// The sections that are references of live islands, by the number of the island.
std::map<int, int> ReferenceSections(DTSDB& tables) {
  std::map<int, int> sections;
  for (int i = 0; i < tables.m_islandTable->GetCount(); ++i) {
    const ISLAND& island = (*tables.m_islandTable)[i];
    if (island.ref_ibs >= 0) sections.emplace(island.id, island.ref_ibs);
  }
  return sections;
}

}  // namespace

std::string DerivedMrid(const std::string& kind, const std::string& text) {
  const std::string name = kind + '\n' + text;
  return QUuid::createUuidV5(kNameSpace, QByteArray::fromStdString(name)).toString(QUuid::WithoutBraces).toStdString();
}

std::vector<TopologicalNode> TopologicalNodes(DTSDB& tables, const ImportReport& objects) {
  return Maker(tables, objects).Make();
}

std::vector<TopologicalIsland> TopologicalIslands(DTSDB& tables, const std::vector<TopologicalNode>& nodes) {
  const std::map<int, int> references = ReferenceSections(tables);
  std::map<int, TopologicalIsland> byNumber;
  for (const TopologicalNode& node : nodes) {
    if (node.island < 0) continue;
    TopologicalIsland& island = byNumber[node.island];
    island.nodes.push_back(node.mrid);
    const auto reference = references.find(node.island);
    if (reference != references.end() && reference->second == node.section) island.reference = node.mrid;
  }
  std::vector<TopologicalIsland> islands;
  for (auto& [number, island] : byNumber) {
    std::sort(island.nodes.begin(), island.nodes.end());
    island.nodes.erase(std::unique(island.nodes.begin(), island.nodes.end()), island.nodes.end());
    std::string contents;
    for (const std::string& node : island.nodes) contents += node + '\n';
    island.mrid = DerivedMrid("TopologicalIsland", contents);
    island.name = fmt::format("Island {}", number);
    islands.push_back(std::move(island));
  }
  return islands;
}

}  // namespace dtsdb::tools::cgmes
