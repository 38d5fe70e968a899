/// \file
/// How the kinds of equipment differ: where they hang, what they measure, which marks they leave.
#pragma once

#include <array>

#include "model/record_bits.h"
#include "validation/link_pass.h"
#include "validation/messages.h"

namespace dtsdb {

/// The relation by which a record hangs on its parent. A zero-impedance branch names no parent: its level is that of
/// its breaker.
template <class Record>
struct ParentOf;
#define DTSDB_PARENT_OF(Record, Relating) \
  template <>                             \
  struct ParentOf<Record> {               \
    using Row = Relating;                 \
  };
DTSDB_PARENT_OF(DV, R_CO_DV)
DTSDB_PARENT_OF(ST, R_DV_ST)
DTSDB_PARENT_OF(KV, R_ST_KV)
DTSDB_PARENT_OF(BUS, R_KV_BUS)
DTSDB_PARENT_OF(LD, R_KV_LD)
DTSDB_PARENT_OF(UN, R_KV_UN)
DTSDB_PARENT_OF(CP, R_KV_CP)
DTSDB_PARENT_OF(CB, R_KV_CB)
DTSDB_PARENT_OF(ZBR, R_KV_ZBR)
DTSDB_PARENT_OF(XF, R_ST_XF)
DTSDB_PARENT_OF(LN, R_DV_LN)
DTSDB_PARENT_OF(DLN, R_DV_DLN)
#undef DTSDB_PARENT_OF
template <class Record>
using ParentRow = typename ParentOf<Record>::Row;

/// The links of a container, up to its parent and down to what it holds. A company is no such: its link is its
/// caller's.
template <class Container>
inline constexpr std::array<i32 Container::*, 0> kTreeLinks = {};
template <>
inline constexpr std::array kTreeLinks<DV> = {&DV::r_co_dv, &DV::r_dv_ln, &DV::r_dv_st, &DV::r_dv_dln};
template <>
inline constexpr std::array kTreeLinks<ST> = {&ST::r_dv_st, &ST::r_st_kv, &ST::r_st_xf};
template <>
inline constexpr std::array kTreeLinks<KV> = {&KV::r_kv_zbr, &KV::r_kv_bus, &KV::r_kv_cb, &KV::r_kv_cp,
                                              &KV::r_kv_ld,  &KV::r_kv_nd,  &KV::r_st_kv, &KV::r_kv_un};

// Measurements

/// The name of a measurement in a record, where its number goes, and what is said when there is no such point.
template <class Record>
struct Measurement {
  QString Record::*name;
  i32 Record::*number;
  Message missing;
};

/// The measurements of the two ends of a line or winding.
template <class Branch>
inline constexpr Measurement<Branch> kMeasurements[] = {
    {&Branch::ana_p, &Branch::iana_p, message::kNoFromP}, {&Branch::ana_q, &Branch::iana_q, message::kNoFromQ},
    {&Branch::ana_i, &Branch::iana_i, message::kNoFromI}, {&Branch::zana_p, &Branch::izana_p, message::kNoToP},
    {&Branch::zana_q, &Branch::izana_q, message::kNoToQ}, {&Branch::zana_i, &Branch::izana_i, message::kNoToI}};
template <>
inline constexpr Measurement<ZBR> kMeasurements<ZBR>[] = {{&ZBR::ana_p, &ZBR::iana_p, message::kNoP},
                                                          {&ZBR::ana_q, &ZBR::iana_q, message::kNoQ},
                                                          {&ZBR::ana_i, &ZBR::iana_i, message::kNoI}};
template <>
inline constexpr Measurement<LD> kMeasurements<LD>[] = {{&LD::ana_p, &LD::iana_p, message::kNoP},
                                                        {&LD::ana_q, &LD::iana_q, message::kNoQ},
                                                        {&LD::ana_v, &LD::iana_v, message::kNoV}};
template <>
inline constexpr Measurement<UN> kMeasurements<UN>[] = {{&UN::ana_p, &UN::iana_p, message::kNoP},
                                                        {&UN::ana_q, &UN::iana_q, message::kNoQ}};
template <>
inline constexpr Measurement<CP> kMeasurements<CP>[] = {{&CP::ana_q, &CP::iana_q, message::kNoQ}};
template <>
inline constexpr Measurement<BUS> kMeasurements<BUS>[] = {{&BUS::ana_v, &BUS::iana_v, message::kNoV},
                                                          {&BUS::ana_a, &BUS::iana_a, message::kNoA}};

// Devices on one node

/// The marks that a device leaves on its node and in its station.
template <class Shunt>
struct ShuntKind;

template <>
struct ShuntKind<LD> {
  static constexpr u32 nodeMark = ND_HAS_LD;
  static constexpr u8 stationMark = ST_HAS_LD;
};
template <>
struct ShuntKind<UN> {
  static constexpr u32 nodeMark = ND_HAS_UN;
  static constexpr u8 stationMark = ST_HAS_UN;
};
template <>
struct ShuntKind<CP> {
  static constexpr u32 nodeMark = ND_HAS_CP;
  static constexpr u8 stationMark = ST_HAS_CP;
};
template <>
struct ShuntKind<BUS> {
  static constexpr u32 nodeMark = ND_HAS_BUS;
  static constexpr u8 stationMark = 0;  // a station isn't marked for its buses
};

// Lines

/// How the two kinds of line differ.
template <class Line>
struct LineKind;

template <>
struct LineKind<LN> {
  static constexpr const char* endsFull = full::kLineEnds;
  static constexpr Message inOtherStation = message::kLineInOtherStation;
  static constexpr u32 districtOfToEnd = LN_DISTRICT_OF_TO_END;
  static constexpr bool hasOneVoltage = true;
};

template <>
struct LineKind<DLN> {
  static constexpr const char* endsFull = full::kDcLineEnds;
  static constexpr Message inOtherStation = message::kDcLineInOtherStation;
  static constexpr u32 districtOfToEnd = DLN_DISTRICT_OF_TO_END;
  static constexpr bool hasOneVoltage = false;  // converters join any two voltages
};

/// Notes in a line of `district` whether that is the district of its to end only.
template <class Line>
void MarkDistrict(Line& line, int district, int fromDistrict, int toDistrict) {
  constexpr u32 kMark = LineKind<Line>::districtOfToEnd;
  line.status &= ~kMark;
  if (district == toDistrict && district != fromDistrict) line.status |= kMark;
}

}  // namespace dtsdb
