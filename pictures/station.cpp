#include "pictures/station.h"

#include <algorithm>

#include "formats/field_text.h"
#include "include/chain.h"
#include "model/branch_kinds.h"
#include "model/record_bits.h"
#include "model/relations.h"
#include "pictures/internal/records.h"

namespace dtsdb::pictures {
namespace {

using internal::kLive;
using internal::NameOf;
using internal::Unknown;
using tools::IdText;

/// Calls `visit` with each record of class T in the chain of `parent`.
template <class T, class Parent, class Visit>
void ForEachChild(DTSDB& tables, const Parent& parent, Visit visit) {
  using Row = ParentRow<T>;
  for (const Row& row : Chain(TableOf<Row>(tables), parent.*Relation<Row>::kHead)) {
    visit(TableOf<T>(tables).GetPh(row.ChildNumber()));
  }
}

template <class T>
void SortByName(std::vector<T>& things) {
  std::stable_sort(things.begin(), things.end(), [](const T& a, const T& b) { return a.name.id < b.name.id; });
}

}  // namespace

/// Collects what stands on one voltage level.
class LevelReader {
 public:
  LevelReader(const StationReader& station, const KV& kv)
      : m_station(station), m_tables(station.m_tables), m_kv(kv), m_level{NameOf(kv), kv.vbase, {}, {}, {}, {}} {}

  StationLevel Read() {
    std::vector<int> nodes;
    ForEachChild<ND>(m_tables, m_kv, [&](const ND& nd) { nodes.push_back(m_tables.m_ndTable->Find(nd)); });
    std::sort(nodes.begin(), nodes.end());
    for (const int nd : nodes) AddNode(nd);
    ForEachChild<BUS>(m_tables, m_kv, [&](const BUS& bus) {
      m_level.buses.push_back({NameOf(bus), PlaceOf(bus.ind), StateOf(NameOf(bus))});
    });
    ForEachChild<CB>(m_tables, m_kv, [&](const CB& breaker) { AddSwitch(breaker); });
    ForEachChild<UN>(m_tables, m_kv, [&](const UN& unit) { AddUnit(unit); });
    ForEachChild<LD>(m_tables, m_kv, [&](const LD& load) { AddShunt(load, DeviceKind::kLoad); });
    ForEachChild<CP>(m_tables, m_kv, [&](const CP& shunt) {
      AddShunt(shunt, shunt.q > 0 ? DeviceKind::kReactor : DeviceKind::kCapacitor);
    });
    for (const int nd : nodes) AddBranchEnds(nd);
    SortByName(m_level.buses);
    SortByName(m_level.switches);
    SortByName(m_level.devices);
    return std::move(m_level);
  }

 private:
  std::string StateOf(const RecordName& name) const { return m_station.StateOf(name); }

  void AddNode(int nd) {
    m_places.emplace(nd, static_cast<int>(m_level.nodes.size()));
    const ND& record = (*m_tables.m_ndTable)[nd];
    StationNode node{NameOf(record)};
    const analysis::Node& found = m_station.m_topology.nodes[static_cast<std::size_t>(nd)];
    node.section = found.section;
    if (found.live) node.island = m_tables.m_bsTable->GetPh(found.section).island;
    m_level.nodes.push_back(std::move(node));
  }

  /// The place of a node in the level. One that stands on no level, or on another, is added.
  int PlaceOf(int nd) {
    if (!m_places.contains(nd)) AddNode(nd);
    return m_places[nd];
  }

  void AddSwitch(const CB& breaker) {
    StationSwitch added{NameOf(breaker), PlaceOf(breaker.ind), PlaceOf(breaker.iznd)};
    added.isBreaker = (breaker.flags & CB_BREAKER) != 0;
    added.open = (breaker.flags & CB_OPEN) != 0;
    added.state = StateOf(added.name);
    const auto flow = m_station.m_flows.find(breaker.id);
    if (flow != m_station.m_flows.end()) added.flow = flow->second;
    const auto branches = m_station.m_branchesOf.find(m_tables.m_cbTable->Find(breaker));
    if (branches != m_station.m_branchesOf.end()) {
      for (const int zbr : branches->second) added.branches.push_back(NameOf((*m_tables.m_zbrTable)[zbr]));
    }
    m_level.switches.push_back(std::move(added));
  }

  template <class Shunt>
  StationDevice& AddShunt(const Shunt& shunt, DeviceKind kind) {
    StationDevice device{NameOf(shunt), kind, PlaceOf(shunt.ind), "", "", StateOf(NameOf(shunt))};
    device.open = (shunt.status & SHUNT_OFF) != 0;
    device.flow = Power{shunt.p, shunt.q};
    return m_level.devices.emplace_back(std::move(device));
  }

  void AddUnit(const UN& unit) {
    StationDevice& device = AddShunt(unit, DeviceKind::kUnit);
    device.flow = Power{-unit.p, -unit.q};
    device.isReference = IsReference(device.name.identity);
  }

  bool IsReference(const std::string& unit) const {
    const std::vector<analysis::Island>& islands = m_station.m_topology.islands;
    return std::any_of(islands.begin(), islands.end(),
                       [&](const analysis::Island& island) { return island.reference == unit; });
  }

  void AddBranchEnds(int nd) {
    AddEndsOf<LN>(nd, DeviceKind::kLine);
    AddEndsOf<DLN>(nd, DeviceKind::kDcLine);
    AddEndsOf<XF>(nd, DeviceKind::kWinding);
  }

  template <class Branch>
  void AddEndsOf(int nd, DeviceKind kind) {
    using Kind = BranchKind<Branch>;
    using End = typename Kind::End;
    ForEachChild<End>(m_tables, (*m_tables.m_ndTable)[nd], [&](const End& end) {
      const Branch& branch = TableOf<Branch>(m_tables).GetPh(end.*Kind::kOwner);
      const bool isTo = (end.flags & END_IS_TO) != 0;
      StationDevice device{NameOf(branch), kind, PlaceOf(nd), isTo ? "to" : "from", "", StateOf(NameOf(branch))};
      if constexpr (std::is_same_v<Branch, XF>) {
        device.far = IdText(isTo ? branch.kv : branch.zkv);
      } else {
        device.far = IdText(isTo ? branch.st : branch.zst);
      }
      device.open = (branch.status & (Kind::kOut | (isTo ? Kind::kOpen2 : Kind::kOpen1))) != 0;
      // At the from end power counts into the branch, at the to end out of it. The tables have none of DC lines.
      if constexpr (!std::is_same_v<Branch, DLN>) {
        device.flow = isTo ? Power{-branch.zp, -branch.zq} : Power{branch.p, branch.q};
      }
      m_level.devices.push_back(std::move(device));
    });
  }

  const StationReader& m_station;
  DTSDB& m_tables;
  const KV& m_kv;
  StationLevel m_level;
  std::map<int, int> m_places;  // of nodes in the level, by their numbers
};

StationReader::StationReader(DTSDB& tables, const Flows* flows)
    : m_tables(tables), m_topology(analysis::DescribeTopology(tables)) {
  for (const analysis::Dead& dead : m_topology.dead) m_states[{dead.table, dead.identity}] = dead.state;
  for (int i = 0; i < tables.m_zbrTable->GetCount(); ++i) m_branchesOf[(*tables.m_zbrTable)[i].icb].push_back(i);
  if (flows == nullptr) return;
  for (const BreakerFlow& flow : flows->breakers) {
    if (flow.state == BreakerState::kComputed) m_flows[flow.id] = {flow.p, flow.q};
  }
}

Result<Station> StationReader::Read(const QString& id) const {
  const int number = m_tables.m_stTable->Find(ST(id));
  if (number < 0) return tl::unexpected(Unknown<ST>(m_tables, id, "station"));
  const ST& record = (*m_tables.m_stTable)[number];
  Station station{NameOf(record), {}};
  ForEachChild<KV>(m_tables, record, [&](const KV& kv) { station.levels.push_back(LevelReader(*this, kv).Read()); });
  SortByName(station.levels);
  std::stable_sort(station.levels.begin(), station.levels.end(),
                   [](const StationLevel& a, const StationLevel& b) { return a.voltage > b.voltage; });
  return station;
}

Result<Station> StationReader::ReadLevel(const QString& id) const {
  const int number = m_tables.m_kvTable->Find(KV(id));
  if (number < 0) return tl::unexpected(Unknown<KV>(m_tables, id, "voltage level"));
  const KV& record = (*m_tables.m_kvTable)[number];
  const ST station(record.st);
  return Station{NameOf(station), {LevelReader(*this, record).Read()}};
}

std::vector<QString> StationReader::Stations() const {
  std::vector<QString> stations;
  stations.reserve(static_cast<std::size_t>(m_tables.m_stTable->GetCount()));
  for (int i = 0; i < m_tables.m_stTable->GetCount(); ++i) stations.push_back((*m_tables.m_stTable)[i].id);
  return stations;
}

std::string StationReader::StateOf(const RecordName& name) const {
  const auto found = m_states.find({name.table, name.identity});
  return found == m_states.end() ? kLive : found->second;
}

}  // namespace dtsdb::pictures
