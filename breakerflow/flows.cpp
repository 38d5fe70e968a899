#include "breakerflow/flows.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "breakerflow/internal/access.h"
#include "breakerflow/internal/data.h"
#include "breakerflow/internal/find.h"

namespace dtsdb {
namespace {

using internal::FlowAccess;
using internal::FlowGroups;
using internal::FlowNetwork;

bool HasVoltage(const cbNode& node) { return node.v != 0 && std::isfinite(node.v); }

/// The keys of the groups of loops with a node that has no voltage.
std::unordered_set<int> GroupsWithoutVoltage(const FlowNetwork& network, const FlowGroups& groups) {
  std::unordered_set<int> without;
  for (auto group = groups.groups.cbegin(); group != groups.groups.cend(); ++group) {
    for (const int nd : group->m_nodes) {
      const cbNode* const node = internal::Find(network.nodes, nd);
      if (node != nullptr && !HasVoltage(*node)) without.insert(group.key());
    }
  }
  return without;
}

FlowClass ClassOf(const cbBreaker& breaker) {
  if ((breaker.flags & CB_RADIAL) != 0) return FlowClass::kRadial;
  if ((breaker.flags & CB_BRIDGE) != 0) return FlowClass::kBridge;
  return (breaker.flags & CB_LOOP) != 0 ? FlowClass::kLoop : FlowClass::kNone;
}

u32 FlagsOf(FlowClass where) {
  switch (where) {
    case FlowClass::kRadial:
      return CB_RADIAL;
    case FlowClass::kBridge:
      return CB_BRIDGE;
    case FlowClass::kLoop:
      return CB_LOOP;
    case FlowClass::kNone:
      break;
  }
  return 0;
}

/// Turns the state of a cbFlow after its run into plain data.
class Results {
 public:
  /// `levels`: by running number, the voltage level of each breaker.
  Results(cbFlow& flow, const std::vector<QString>& levels)
      : m_flow(flow), m_groups(FlowAccess(flow).Groups()), m_levels(levels) {
    m_withoutVoltage = GroupsWithoutVoltage(FlowAccess(flow).Network(), m_groups);
  }

  Flows Take() const {
    Flows flows;
    flows.tolerance = m_flow.getDelta();
    for (auto it = m_flow.Breakers().cbegin(); it != m_flow.Breakers().cend(); ++it) {
      flows.breakers.push_back(
          {it->id, m_levels[it.key()], it->nd, it->znd, -1, ClassOf(*it), BreakerState::kOpen, it->p, it->q});
    }
    for (int set = 0; set < m_flow.SetCount(); ++set) flows.sets.push_back(TakeSet(set, flows.breakers));
    return flows;
  }

 private:
  FlowSet TakeSet(int number, std::vector<BreakerFlow>& breakers) const {
    const QList<int> keys = m_flow.SetBreakers(number);
    FlowSet set;
    set.kv = keys.isEmpty() ? QString() : m_levels[keys.first()];
    set.nodes = static_cast<int>(m_flow.SetNodes(number).size());
    set.breakers.assign(keys.begin(), keys.end());
    std::sort(set.breakers.begin(), set.breakers.end());
    set.surplus = m_flow.SetBalance(number);
    bool lacksVoltage = false;
    for (const int key : set.breakers) {
      breakers[key].set = number;
      breakers[key].state = StateOf(key, number);
      lacksVoltage = lacksVoltage || breakers[key].state == BreakerState::kNoVoltage;
    }
    set.state = StateOf(number, set.surplus, lacksVoltage);
    return set;
  }

  BreakerState StateOf(int key, int set) const {
    if (!m_flow.IsBalanced(set)) return BreakerState::kNotBalanced;
    const cbBreaker& breaker = *m_flow.Breakers().constFind(key);
    const auto group = m_groups.ofNode.find(breaker.ind);
    const bool isOnLoop = (breaker.flags & CB_LOOP) != 0 && group != m_groups.ofNode.end();
    if (isOnLoop && m_withoutVoltage.contains(group->second)) return BreakerState::kNoVoltage;
    return std::isfinite(breaker.p) && std::isfinite(breaker.q) ? BreakerState::kComputed : BreakerState::kNotFinite;
  }

  FlowSetState StateOf(int set, const FlowBalance& surplus, bool lacksVoltage) const {
    if (!m_flow.IsBalanced(set)) return FlowSetState::kNotBalanced;
    if (lacksVoltage) return FlowSetState::kNoVoltage;
    const float least = -m_flow.getDelta();
    return surplus.p < least || surplus.q < least ? FlowSetState::kLacksPower : FlowSetState::kBalanced;
  }

  const cbFlow& m_flow;
  FlowGroups m_groups;
  const std::vector<QString>& m_levels;
  std::unordered_set<int> m_withoutVoltage;
};

/// Computes with what `source` has; `endReading` is called when it has been read.
template <class Source, class EndReading>
Flows ComputeFrom(const Source& source, const FlowSettings& settings, EndReading endReading) {
  cbFlow flow(nullptr, settings.tolerance);
  const FlowAccess access(flow);
  const auto missing =
      settings.completesVoltages ? internal::MissingVoltage::kCompleted : internal::MissingVoltage::kStays;
  internal::LoadFlowData(source, missing, access.Network(), access.Devices());
  std::vector<QString> levels;
  source.template ForEachRow<CB>([&levels](const cb& row) { levels.push_back(IdFromBytes(row.kv)); });
  levels.resize(static_cast<std::size_t>(flow.Breakers().size()));  // after an error of the database
  endReading();
  flow.calculate();
  return Results(flow, levels).Take();
}

}  // namespace

const char* StateName(FlowSetState state) {
  switch (state) {
    case FlowSetState::kBalanced:
      return "balanced";
    case FlowSetState::kLacksPower:
      return "lacks power";
    case FlowSetState::kNotBalanced:
      return "not balanced";
    case FlowSetState::kNoVoltage:
      break;
  }
  return "no voltage";
}

const char* StateName(BreakerState state) {
  switch (state) {
    case BreakerState::kOpen:
      return "open or dead";
    case BreakerState::kComputed:
      return "computed";
    case BreakerState::kNotBalanced:
      return "not balanced";
    case BreakerState::kNoVoltage:
      return "no voltage";
    case BreakerState::kNotFinite:
      break;
  }
  return "not finite";
}

const char* ClassName(FlowClass where) {
  switch (where) {
    case FlowClass::kRadial:
      return "radial";
    case FlowClass::kBridge:
      return "bridge";
    case FlowClass::kLoop:
      return "loop";
    case FlowClass::kNone:
      break;
  }
  return "";
}

int Flows::Count(FlowSetState state) const {
  return static_cast<int>(std::count_if(sets.begin(), sets.end(), [=](const FlowSet& s) { return s.state == state; }));
}

int Flows::Count(BreakerState state) const {
  return static_cast<int>(
      std::count_if(breakers.begin(), breakers.end(), [=](const BreakerFlow& b) { return b.state == state; }));
}

Flows ComputeFlows(const DTSDB& model, const FlowSettings& settings) {
  return ComputeFrom(internal::ModelRows(model), settings, [] {});
}

Flows ComputeFlows(dbDatabase* db, const FlowSettings& settings) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return {};
  return ComputeFrom(internal::StoredRows(db), settings, [db] { db->commit(); });
}

void StoreFlows(dbDatabase* db, const Flows& flows) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  internal::FlowWriter writer(db);
  for (const BreakerFlow& breaker : flows.breakers) {
    writer.Write(breaker.id, breaker.p, breaker.q, FlagsOf(breaker.where));
  }
  writer.Commit();
}

}  // namespace dtsdb
