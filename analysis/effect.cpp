#include "analysis/effect.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "analysis/internal/points.h"
#include "analysis/internal/supply_record.h"

namespace dtsdb::analysis {
namespace {

void AddStations(DTSDB& tables, Supply& supply) {
  std::set<QString> live;
  tTable<ND>& nodes = *tables.m_ndTable;
  for (int i = 0; i < nodes.GetCount(); ++i) {
    if (supply.islands[static_cast<std::size_t>(i)] < 0) continue;
    live.insert(tables.m_kvTable->GetPh(tables.m_rKvNdTable->GetPh(nodes[i].r_kv_nd).ikv).st);
  }
  for (int i = 0; i < tables.m_stTable->GetCount(); ++i) {
    const ST& station = (*tables.m_stTable)[i];
    supply.things.push_back(internal::DescribeStation(station, live.contains(station.id)));
  }
}

template <class T>
void AddDevices(DTSDB& tables, Supply& supply) {
  tTable<T>& devices = TableOf<T>(tables);
  for (int i = 0; i < devices.GetCount(); ++i) supply.things.push_back(internal::DescribeDevice(tables, devices[i]));
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
  std::vector<internal::IslandPair> pairs;
  for (std::size_t i = 0; i < std::min(before.islands.size(), after.islands.size()); ++i) {
    const internal::IslandPair pair(before.islands[i], after.islands[i]);
    if (pairs.empty() || pairs.back() != pair) pairs.push_back(pair);
  }
  effect.islands = internal::IslandChanges(std::move(pairs));
  return effect;
}

}  // namespace dtsdb::analysis
