#include "analysis/internal/supply_record.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include "analysis/internal/points.h"

namespace dtsdb::analysis::internal {
namespace {

void SortOnce(auto& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

/// Adds one for each island of `pairs`, which are sorted, that didn't stay one island on the other side. `gone` and
/// `parted` are what that means for it.
void AddChanges(const std::vector<IslandPair>& pairs, IslandChangeKind gone, IslandChangeKind parted,
                std::vector<IslandChange>& changes) {
  for (auto pair = pairs.begin(); pair != pairs.end();) {
    const int island = pair->first;
    std::vector<int> met;
    for (; pair != pairs.end() && pair->first == island; ++pair) {
      if (pair->second >= 0) met.push_back(pair->second);
    }
    if (island < 0 || met.size() == 1) continue;
    changes.push_back({met.empty() ? gone : parted, {island}, std::move(met)});
  }
}

/// The level of each node, -1 where a damaged model has none.
std::vector<int> LevelsOfNodes(DTSDB& tables) {
  const tTable<ND>& nodes = *tables.m_ndTable;
  std::vector<int> levels;
  levels.reserve(static_cast<std::size_t>(nodes.GetCount()));
  for (int i = 0; i < nodes.GetCount(); ++i) {
    const int level = tables.m_rKvNdTable->GetPh(nodes.GetPh(i).r_kv_nd).ikv;
    levels.push_back(level >= 0 && level < tables.m_kvTable->GetCount() ? level : -1);
  }
  return levels;
}

std::vector<int> StationsOfLevels(DTSDB& tables) {
  const tTable<KV>& levels = *tables.m_kvTable;
  std::vector<int> stations;
  stations.reserve(static_cast<std::size_t>(levels.GetCount()));
  for (int i = 0; i < levels.GetCount(); ++i) stations.push_back(tables.m_stTable->Find(ST(levels.GetPh(i).st)));
  return stations;
}

/// The level of node `nd`, -1 when there is no such node.
int LevelIn(const std::vector<int>& levelOfNode, int nd) {
  const bool known = nd >= 0 && static_cast<std::size_t>(nd) < levelOfNode.size();
  return known ? levelOfNode[static_cast<std::size_t>(nd)] : -1;
}

template <class T>
std::vector<int> LevelsOfDevices(DTSDB& tables, const std::vector<int>& levelOfNode) {
  const tTable<T>& devices = TableOf<T>(tables);
  std::vector<int> levels;
  for (int i = 0; i < devices.GetCount(); ++i) {
    levels.push_back(LevelIn(levelOfNode, devices.GetPh(i).ind));
  }
  return levels;
}

}  // namespace

std::string StationOfLevel(DTSDB& tables, const QString& id) {
  const int level = tables.m_kvTable->Find(KV(id));
  return level != -1 ? tools::IdText(tables.m_kvTable->GetPh(level).st) : "";
}

Supplied DescribeStation(const ST& station, bool isLive) {
  const std::string id = tools::IdText(station.id);
  return {ST::kTableName, id, id, "", isLive ? kLive : "dead"};
}

std::vector<IslandChange> IslandChanges(std::vector<IslandPair> pairs) {
  std::vector<IslandChange> changes;
  SortOnce(pairs);
  AddChanges(pairs, IslandChangeKind::kDied, IslandChangeKind::kSplit, changes);
  const std::size_t lost = changes.size();
  for (auto& [before, after] : pairs) std::swap(before, after);
  SortOnce(pairs);
  AddChanges(pairs, IslandChangeKind::kArose, IslandChangeKind::kJoined, changes);
  for (std::size_t i = lost; i < changes.size(); ++i) std::swap(changes[i].before, changes[i].after);
  return changes;
}

LevelContents::LevelContents(const std::vector<int>& levelOf, int levels)
    : m_begin(static_cast<std::size_t>(levels) + 1), m_numbers(levelOf.size()) {
  const auto isKnown = [levels](int level) { return level >= 0 && level < levels; };
  for (const int level : levelOf) {
    if (isKnown(level)) ++m_begin[static_cast<std::size_t>(level) + 1];
  }
  std::partial_sum(m_begin.begin(), m_begin.end(), m_begin.begin());
  std::vector<int> next = m_begin;
  for (std::size_t i = 0; i < levelOf.size(); ++i) {
    if (!isKnown(levelOf[i])) continue;
    m_numbers[static_cast<std::size_t>(next[static_cast<std::size_t>(levelOf[i])]++)] = static_cast<int>(i);
  }
}

template <class T>
SupplyRecord::Devices<T>::Devices(DTSDB& tables, const std::vector<int>& levelOfNode)
    : contents(LevelsOfDevices<T>(tables, levelOfNode), tables.m_kvTable->GetCount()) {
  const tTable<T>& devices = TableOf<T>(tables);
  for (int i = 0; i < devices.GetCount(); ++i) {
    std::string state = StateOf(devices.GetPh(i));
    live.push_back(state == kLive);
    if (!live.back()) states.emplace(i, std::move(state));
  }
}

SupplyRecord::SupplyRecord(DTSDB& tables)
    : m_tables(tables),
      m_levelOf(LevelsOfNodes(tables)),
      m_stationOf(StationsOfLevels(tables)),
      m_nodes(m_levelOf, tables.m_kvTable->GetCount()),
      m_islands(IslandsOfNodes(tables)),
      m_liveNodes(static_cast<std::size_t>(tables.m_stTable->GetSize())),
      m_buses(tables, m_levelOf),
      m_units(tables, m_levelOf),
      m_loads(tables, m_levelOf) {
  for (std::size_t i = 0; i < m_islands.size(); ++i) {
    if (m_levelOf[i] < 0) continue;
    const int station = m_stationOf[static_cast<std::size_t>(m_levelOf[i])];
    if (m_islands[i] >= 0 && station >= 0) ++m_liveNodes[static_cast<std::size_t>(station)];
  }
  NoteFragments<LN>();
  NoteFragments<XF>();
  NoteFragments<DLN>();
  NoteFragments<ZBR>();
}

/// Notes where the nodes at one end of a branch stand on a fragment.
template <class Branch>
void SupplyRecord::NoteFragments() {
  const tTable<Branch>& branches = TableOf<Branch>(m_tables);
  const auto note = [&](int nd, int otherNd) {
    const int section = m_tables.m_ndTable->GetPh(nd).ibs;
    if (section <= 0 || (m_tables.m_bsTable->GetPh(section).status & BS_ISOLATED) == 0) return;
    if (LevelOf(nd) != LevelOf(otherNd)) m_fragmentLevels[LevelOf(otherNd)].push_back(LevelOf(nd));
  };
  for (int i = 0; i < branches.GetCount(); ++i) {
    const Branch& branch = branches.GetPh(i);
    note(branch.ind, branch.iznd);
    note(branch.iznd, branch.ind);
  }
}

int SupplyRecord::LevelOf(int nd) const { return LevelIn(m_levelOf, nd); }

std::vector<int> SupplyRecord::AllLevels() const {
  std::vector<int> levels(m_stationOf.size());
  std::iota(levels.begin(), levels.end(), 0);
  return levels;
}

int SupplyRecord::IslandOf(int nd) const {
  const int section = m_tables.m_ndTable->GetPh(nd).ibs;
  const bool known = section > 0 && section < m_tables.m_bsTable->GetSize();
  return known ? m_tables.m_bsTable->GetPh(section).island : -1;
}

Effect SupplyRecord::EffectOn(std::vector<int> levels) const {
  Effect effect;
  AddLevelsOfFragments(levels);
  AddNodes(levels, effect);
  AddDevices(levels, m_buses, effect);
  AddDevices(levels, m_units, effect);
  AddDevices(levels, m_loads, effect);
  return effect;
}

/// A section that turns draws its level into a run; a fragment turns with the section at the other end of its branch.
void SupplyRecord::AddLevelsOfFragments(std::vector<int>& levels) const {
  const std::size_t count = levels.size();
  for (std::size_t i = 0; i < count && !m_fragmentLevels.empty(); ++i) {
    const auto found = m_fragmentLevels.find(levels[i]);
    if (found != m_fragmentLevels.end()) levels.insert(levels.end(), found->second.begin(), found->second.end());
  }
  SortOnce(levels);
}

/// Stations and islands. A station is live when one of its nodes is: those that were live at the start, and those that
/// have turned since.
void SupplyRecord::AddNodes(const std::vector<int>& levels, Effect& effect) const {
  std::vector<std::pair<int, int>> turned;  // station, nodes that became live less those that became dead
  std::vector<IslandPair> pairs;
  for (const int level : levels) {
    int nodes = 0;
    m_nodes.ForEachOn(level, [&](int nd) {
      const IslandPair pair(m_islands[static_cast<std::size_t>(nd)], IslandOf(nd));
      nodes += (pair.second >= 0) - (pair.first >= 0);
      if (pairs.empty() || pairs.back() != pair) pairs.push_back(pair);
    });
    if (nodes != 0) turned.emplace_back(m_stationOf[static_cast<std::size_t>(level)], nodes);
  }
  std::sort(turned.begin(), turned.end());
  for (std::size_t i = 0; i < turned.size();) {
    const int station = turned[i].first;
    int nodes = 0;
    for (; i < turned.size() && turned[i].first == station; ++i) nodes += turned[i].second;
    if (station >= 0) AddStation(station, nodes, effect);
  }
  effect.islands = IslandChanges(std::move(pairs));
}

void SupplyRecord::AddStation(int station, int turned, Effect& effect) const {
  const int before = m_liveNodes[static_cast<std::size_t>(station)];
  if ((before > 0) == (before + turned > 0)) return;
  auto& things = before > 0 ? effect.lost : effect.regained;
  things.push_back(DescribeStation(m_tables.m_stTable->GetPh(station), false));
}

template <class T>
void SupplyRecord::AddDevices(const std::vector<int>& levels, const Devices<T>& devices, Effect& effect) const {
  const tTable<T>& table = TableOf<T>(m_tables);
  std::vector<int> turned;
  for (const int level : levels) {
    devices.contents.ForEachOn(level, [&](int number) {
      const bool isLive = StateOf(table.GetPh(number)) == kLive;
      if (isLive != devices.live[static_cast<std::size_t>(number)]) turned.push_back(number);
    });
  }
  std::sort(turned.begin(), turned.end());
  for (const int number : turned) {
    Supplied thing = DescribeDevice(m_tables, table.GetPh(number));
    if (devices.live[static_cast<std::size_t>(number)]) {
      effect.lost.push_back(std::move(thing));
    } else {
      thing.state = devices.states.at(number);
      effect.regained.push_back(std::move(thing));
    }
  }
}

IslandParts SupplyRecord::PartsOn(const std::vector<int>& levels) const {
  IslandParts parts;
  for (const int level : levels) {
    m_nodes.ForEachOn(level, [&](int nd) {
      const int before = m_islands[static_cast<std::size_t>(nd)];
      if (before < 0) return;
      std::map<int, int>& met = parts[before];
      const int after = IslandOf(nd);
      if (after < 0) return;
      const auto [part, isNew] = met.emplace(after, nd);
      if (!isNew) part->second = std::min(part->second, nd);
    });
  }
  return parts;
}

}  // namespace dtsdb::analysis::internal
