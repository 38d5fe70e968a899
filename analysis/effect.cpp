#include "analysis/effect.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "analysis/internal/equipment_state.h"
#include "analysis/internal/points.h"
#include "formats/field_text.h"

namespace dtsdb::analysis {
namespace {

using tools::IdText;

/// Live islands, each with the live islands in which its nodes are in the other state.
using Meetings = std::map<int, std::set<int>>;

void AddStations(DTSDB& tables, Supply& supply) {
  std::set<QString> live;
  tTable<ND>& nodes = *tables.m_ndTable;
  for (int i = 0; i < nodes.GetCount(); ++i) {
    if (supply.islands[static_cast<std::size_t>(i)] < 0) continue;
    live.insert(tables.m_kvTable->GetPh(tables.m_rKvNdTable->GetPh(nodes[i].r_kv_nd).ikv).st);
  }
  for (int i = 0; i < tables.m_stTable->GetCount(); ++i) {
    const QString& id = (*tables.m_stTable)[i].id;
    supply.things.push_back({ST::kTableName, IdText(id), IdText(id), "", live.contains(id) ? internal::kLive : "dead"});
  }
}

/// The identity of the station of voltage level `id`.
std::string StationOf(DTSDB& tables, const QString& id) {
  const int level = tables.m_kvTable->Find(KV(id));
  return level != -1 ? IdText(tables.m_kvTable->GetPh(level).st) : "";
}

template <class T>
void AddDevices(DTSDB& tables, Supply& supply) {
  tTable<T>& devices = TableOf<T>(tables);
  for (int i = 0; i < devices.GetCount(); ++i) {
    const T& device = devices[i];
    Supplied& thing = supply.things.emplace_back();
    thing.table = T::kTableName;
    thing.identity = IdText(device.id);
    thing.station = StationOf(tables, device.kv);
    thing.level = IdText(device.kv);
    thing.state = internal::StateOf(device);
    if constexpr (!std::is_same_v<T, BUS>) {
      thing.p = device.p;
      thing.q = device.q;
    }
  }
}

Meetings MeetingsOf(const std::vector<int>& islands, const std::vector<int>& others) {
  Meetings meetings;
  for (std::size_t i = 0; i < std::min(islands.size(), others.size()); ++i) {
    if (islands[i] < 0) continue;
    std::set<int>& met = meetings[islands[i]];
    if (others[i] >= 0) met.insert(others[i]);
  }
  return meetings;
}

std::vector<IslandChange> IslandChanges(const std::vector<int>& before, const std::vector<int>& after) {
  std::vector<IslandChange> changes;
  for (const auto& [island, met] : MeetingsOf(before, after)) {
    if (met.size() == 1) continue;
    const IslandChangeKind kind = met.empty() ? IslandChangeKind::kDied : IslandChangeKind::kSplit;
    changes.push_back({kind, {island}, {met.begin(), met.end()}});
  }
  for (const auto& [island, met] : MeetingsOf(after, before)) {
    if (met.size() == 1) continue;
    const IslandChangeKind kind = met.empty() ? IslandChangeKind::kArose : IslandChangeKind::kJoined;
    changes.push_back({kind, {met.begin(), met.end()}, {island}});
  }
  return changes;
}

double FiniteOr0(float power) { return std::isfinite(power) ? static_cast<double>(power) : 0; }

}  // namespace

Supply DescribeSupply(DTSDB& tables) {
  Supply supply;
  supply.islands = internal::IslandsOfNodes(tables);
  AddStations(tables, supply);
  AddDevices<BUS>(tables, supply);
  AddDevices<UN>(tables, supply);
  AddDevices<LD>(tables, supply);
  return supply;
}

const char* KindName(IslandChangeKind kind) {
  switch (kind) {
    case IslandChangeKind::kSplit:
      return "split";
    case IslandChangeKind::kJoined:
      return "joined";
    case IslandChangeKind::kDied:
      return "died";
    case IslandChangeKind::kArose:
      break;
  }
  return "arose";
}

SupplyTotals TotalsOf(const std::vector<Supplied>& things) {
  SupplyTotals totals;
  for (const Supplied& thing : things) {
    totals.stations += thing.table == ST::kTableName;
    totals.buses += thing.table == BUS::kTableName;
    totals.units += thing.table == UN::kTableName;
    if (thing.table != LD::kTableName) continue;
    ++totals.loads;
    totals.p += FiniteOr0(thing.p);
    totals.q += FiniteOr0(thing.q);
  }
  return totals;
}

Effect EffectOf(const Supply& before, const Supply& after) {
  Effect effect;
  for (std::size_t i = 0; i < std::min(before.things.size(), after.things.size()); ++i) {
    const Supplied& was = before.things[i];
    const Supplied& is = after.things[i];
    if (was.IsLive() && !is.IsLive()) effect.lost.push_back(is);
    if (!was.IsLive() && is.IsLive()) effect.regained.push_back(was);
  }
  effect.islands = IslandChanges(before.islands, after.islands);
  return effect;
}

}  // namespace dtsdb::analysis
