/// \file
/// The kinds of equipment and how they differ: what they measure, which marks they leave.
#pragma once

#include "model/record_bits.h"
#include "validation/internal/messages.h"
#include "validation/internal/run_graph.h"

namespace dtsdb::internal {

/// Calls `visit.template operator()<Shunt>()` for each kind of device that stands on one node.
template <class Visitor>
void ForEachShunt(Visitor&& visit) {
  visit.template operator()<BUS>();
  visit.template operator()<LD>();
  visit.template operator()<CP>();
  visit.template operator()<UN>();
}

/// Calls `visit.template operator()<Branch>()` for each kind of branch.
template <class Visitor>
void ForEachBranch(Visitor&& visit) {
  visit.template operator()<CB>();
  visit.template operator()<XF>();
  visit.template operator()<LN>();
  visit.template operator()<DLN>();
  visit.template operator()<ZBR>();
}

// Measurements

/// The name of a measurement in a record, where its number goes, and what is reported when there is no such point.
template <class Record>
struct Measurement {
  QString Record::*name;
  i32 Record::*number;
  Message missing;
};

/// The measurements of the two ends of a line or winding.
template <class Branch>
inline constexpr Measurement<Branch> kMeasurements[] = {{&Branch::ana_p, &Branch::iana_p, message::kNoFromP<Branch>},
                                                        {&Branch::ana_q, &Branch::iana_q, message::kNoFromQ<Branch>},
                                                        {&Branch::ana_i, &Branch::iana_i, message::kNoFromI<Branch>},
                                                        {&Branch::zana_p, &Branch::izana_p, message::kNoToP<Branch>},
                                                        {&Branch::zana_q, &Branch::izana_q, message::kNoToQ<Branch>},
                                                        {&Branch::zana_i, &Branch::izana_i, message::kNoToI<Branch>}};
template <>
inline constexpr Measurement<ZBR> kMeasurements<ZBR>[] = {{&ZBR::ana_p, &ZBR::iana_p, message::kNoP<ZBR>},
                                                          {&ZBR::ana_q, &ZBR::iana_q, message::kNoQ<ZBR>},
                                                          {&ZBR::ana_i, &ZBR::iana_i, message::kNoI}};
template <>
inline constexpr Measurement<LD> kMeasurements<LD>[] = {{&LD::ana_p, &LD::iana_p, message::kNoP<LD>},
                                                        {&LD::ana_q, &LD::iana_q, message::kNoQ<LD>},
                                                        {&LD::ana_v, &LD::iana_v, message::kNoV<LD>}};
template <>
inline constexpr Measurement<UN> kMeasurements<UN>[] = {{&UN::ana_p, &UN::iana_p, message::kNoP<UN>},
                                                        {&UN::ana_q, &UN::iana_q, message::kNoQ<UN>}};
template <>
inline constexpr Measurement<CP> kMeasurements<CP>[] = {{&CP::ana_q, &CP::iana_q, message::kNoQ<CP>}};
template <>
inline constexpr Measurement<BUS> kMeasurements<BUS>[] = {{&BUS::ana_v, &BUS::iana_v, message::kNoV<BUS>},
                                                          {&BUS::ana_a, &BUS::iana_a, message::kNoA}};

/// Turns the name of one measurement of a record into its number; false, with number -1, when there is no such point.
template <class Record>
bool FindMeasurement(RunGraph& graph, Record& record, const Measurement<Record>& measurement) {
  const int number = graph.NumberOf<ANALOG>(record.*measurement.name);
  record.*measurement.number = number;
  return number != -1;
}

// Devices on one node

/// How the kinds of device differ.
struct ShuntKind {
  u32 nodeMark;              ///< mark on its node that a run leaves
  u32 addedMark;             ///< mark on its node that an addition leaves, 0 none
  u8 stationMark;            ///< mark in its station, 0 none
  bool takesLimits = false;  ///< takes over the limits of its level
};

template <class Shunt>
inline constexpr ShuntKind kShuntKind = {};
template <>
inline constexpr ShuntKind kShuntKind<LD> = {ND_HAS_LD, ND_HAS_LD, ST_HAS_LD};
template <>
inline constexpr ShuntKind kShuntKind<UN> = {ND_HAS_UN, ND_HAS_UN, ST_HAS_UN};
template <>
inline constexpr ShuntKind kShuntKind<CP> = {ND_HAS_CP, ND_HAS_CP, ST_HAS_CP};
/// A node has no mark of a bus that was added, until the next run. A station isn't marked for its buses. Kept: K25.
template <>
inline constexpr ShuntKind kShuntKind<BUS> = {ND_HAS_BUS, 0, 0, true};

// Lines

/// How the two kinds of line differ.
struct LineKind {
  Reason endsFull;
  Message inOtherStation;
  u32 districtOfToEnd;  ///< bit of `status`
  bool hasOneVoltage;   ///< both ends have the same voltage; converters join any two
};

template <class Line>
inline constexpr LineKind kLineKind = {};
template <>
inline constexpr LineKind kLineKind<LN> = {reason::kLineEndsFull, message::kLineInOtherStation, LN_DISTRICT_OF_TO_END,
                                           true};
template <>
inline constexpr LineKind kLineKind<DLN> = {reason::kDcLineEndsFull, message::kDcLineInOtherStation,
                                            DLN_DISTRICT_OF_TO_END, false};

/// Notes in a line of `district` whether that is the district of its to end only.
template <class Line>
void MarkDistrict(Line& line, int district, int fromDistrict, int toDistrict) {
  constexpr u32 kMark = kLineKind<Line>.districtOfToEnd;
  line.status &= ~kMark;
  if (district == toDistrict && district != fromDistrict) line.status |= kMark;
}

}  // namespace dtsdb::internal
