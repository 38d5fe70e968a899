/// \file
/// The devices that stand on one node: units, loads, capacitors and reactors, buses.
#include "validation/row_checks.h"

namespace dtsdb {
namespace {

// The second can't fire in a run, since a level without identity has no devices.
template <class Shunt>
constexpr Required<Shunt> kRequired[] = {{&Shunt::nd, message::kNoNode}, {&Shunt::kv, message::kNoLevel}};

constexpr Answer kNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kNodeInOtherLevel},
                                  {INSERT_NO_LEVEL, message::kLevelNotThere}};
constexpr Answers kNode = {full::kShuntNodes, kNodeFaults};

}  // namespace

/// A device with a fault in its node isn't dropped: its station is marked all the same.
template <class Shunt>
bool NMD::CheckShunt(Shunt& shunt, int /*number*/) {
  using Kind = ShuntKind<Shunt>;
  using Row = ParentRow<Shunt>;
  if (!IsNamed(shunt) || !IsLinked<Row>(shunt)) return true;
  const int level = Table<Row>().GetPh(shunt.*Relation<Row>::own).ikv;
  if constexpr (std::is_same_v<Shunt, BUS>) {
    const KV& kv = m_kvTable->GetPh(level);
    shunt.f2 = kv.vmax;
    shunt.f3 = kv.vmin;
  }
  if (!IsFilled(shunt, kRequired<Shunt>)) return true;
  FindMeasurements(shunt);

  const int result = NodeInsert(shunt.nd, &shunt.ind, shunt.kv, Kind::nodeMark);
  if (Judge(shunt, result, kNode) == Outcome::kTableFull) return false;
  if constexpr (Kind::stationMark != 0) MarkStation(StationOfLevel(level), Kind::stationMark);
  return true;
}

bool NMD::DetectKV_LD() { return LinkPass<R_KV_LD>() && CheckRows(&NMD::CheckShunt<LD>); }
bool NMD::DetectKV_UN() { return LinkPass<R_KV_UN>() && CheckRows(&NMD::CheckShunt<UN>); }
bool NMD::DetectKV_CP() { return LinkPass<R_KV_CP>() && CheckRows(&NMD::CheckShunt<CP>); }
bool NMD::DetectKV_BUS() { return LinkPass<R_KV_BUS>() && CheckRows(&NMD::CheckShunt<BUS>); }

}  // namespace dtsdb
