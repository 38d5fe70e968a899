/// \file
/// The devices that stand on one node: units, loads, capacitors and reactors, buses.
#include "validation/internal/checks.h"

namespace dtsdb::internal {
namespace {

// The second can't fire in a run, since a level without identity has no devices.
template <class Shunt>
constexpr Required<Shunt> kRequiredOfShunt[] = {{&Shunt::nd, message::kNoNode<Shunt>},
                                                {&Shunt::kv, message::kNoLevel<Shunt>}};

template <class Shunt>
constexpr Fault kNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kNodeInOtherLevel<Shunt>},
                                 {INSERT_NO_LEVEL, message::kLevelNotThere<Shunt>}};
template <class Shunt>
constexpr Faults kNode = {reason::kShuntNodesFull, kNodeFaults<Shunt>};

/// A device with a fault in its node isn't dropped: its station is marked all the same. Kept: K10.
template <class Shunt>
bool CheckShunt(RowChecks& checks, Shunt& shunt, int number) {
  using Row = ParentRow<Shunt>;
  constexpr ShuntKind kKind = kShuntKind<Shunt>;
  DTSDB& model = checks.model;
  if (!checks.IsNamed(shunt) || !checks.IsLinked(shunt)) return true;
  const int level = checks.graph.ParentOf<Row>(number);
  if constexpr (kKind.takesLimits) {
    // Before the node is looked at: a bus without one has limits as well. Kept: K09.
    const KV& kv = model.m_kvTable->GetPh(level);
    shunt.f2 = kv.vmax;
    shunt.f3 = kv.vmin;
  }
  if (!checks.IsFilled(shunt, kRequiredOfShunt<Shunt>)) return true;
  checks.FindMeasurements(shunt);

  const int result = checks.graph.InsertNode(shunt.nd, &shunt.ind, shunt.kv, kKind.nodeMark);
  if (checks.Judge(shunt, result, kNode<Shunt>) == Outcome::kTableFull) return false;
  if constexpr (kKind.stationMark != 0) MarkStation(model, checks.graph.StationOfLevel(level), kKind.stationMark);
  return true;
}

template <class Shunt>
bool CheckShuntTable(RowChecks& checks) {
  return checks.Link<ParentRow<Shunt>>() &&
         checks.ForEachRow<Shunt>([&checks](Shunt& shunt, int number) { return CheckShunt(checks, shunt, number); });
}

}  // namespace

bool CheckLoads(RowChecks& checks) { return CheckShuntTable<LD>(checks); }
bool CheckUnits(RowChecks& checks) { return CheckShuntTable<UN>(checks); }
bool CheckCapacitors(RowChecks& checks) { return CheckShuntTable<CP>(checks); }
bool CheckBuses(RowChecks& checks) { return CheckShuntTable<BUS>(checks); }

}  // namespace dtsdb::internal
