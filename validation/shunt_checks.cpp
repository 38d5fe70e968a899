/// \file
/// The devices that stand on one node: units, loads, capacitors and reactors, buses.
#include "validation/row_checks.h"

namespace dtsdb {
namespace {

/// How the kinds of device differ.
template <class Shunt>
struct ShuntKind;

template <>
struct ShuntKind<LD> {
  using Row = R_KV_LD;
  static constexpr int nodeMark = ND_HAS_LD;
  static constexpr u8 stationMark = ST_HAS_LD;
  static constexpr Measurement<LD> measurements[] = {{&LD::ana_p, &LD::iana_p, message::kNoP},
                                                     {&LD::ana_q, &LD::iana_q, message::kNoQ},
                                                     {&LD::ana_v, &LD::iana_v, message::kNoV}};
};

template <>
struct ShuntKind<UN> {
  using Row = R_KV_UN;
  static constexpr int nodeMark = ND_HAS_UN;
  static constexpr u8 stationMark = ST_HAS_UN;
  static constexpr Measurement<UN> measurements[] = {{&UN::ana_p, &UN::iana_p, message::kNoP},
                                                     {&UN::ana_q, &UN::iana_q, message::kNoQ}};
};

template <>
struct ShuntKind<CP> {
  using Row = R_KV_CP;
  static constexpr int nodeMark = ND_HAS_CP;
  static constexpr u8 stationMark = ST_HAS_CP;
  static constexpr Measurement<CP> measurements[] = {{&CP::ana_q, &CP::iana_q, message::kNoQ}};
};

template <>
struct ShuntKind<BUS> {
  using Row = R_KV_BUS;
  static constexpr int nodeMark = ND_HAS_BUS;
  static constexpr u8 stationMark = 0;  // a station isn't marked for its buses
  static constexpr Measurement<BUS> measurements[] = {{&BUS::ana_v, &BUS::iana_v, message::kNoV},
                                                      {&BUS::ana_a, &BUS::iana_a, message::kNoA}};
};

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
  using Row = typename Kind::Row;
  if (!IsNamed(shunt) || !IsLinked<Row>(shunt)) return true;
  const int level = Table<Row>().GetPh(shunt.*Relation<Row>::own).ikv;
  if constexpr (std::is_same_v<Shunt, BUS>) {
    const KV& kv = m_kvTable->GetPh(level);
    shunt.f2 = kv.vmax;
    shunt.f3 = kv.vmin;
  }
  if (!IsFilled(shunt, kRequired<Shunt>)) return true;
  FindMeasurements(shunt, Kind::measurements);

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
