// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. Nodes, and what stands on one node: buses, units, loads, capacitors and reactors.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Electrical node (结点).
class nd {
 public:
  char const* id{};  ///< node identity (validation)
  int4 ibs{};        ///< bus-section the node is in now (topology)
  int4 ibs0{};       ///< number of the structural bus-section of the node, set together with ibs by the first node pass
                     ///< (topology)
  nat4 flags{};      ///< bit 1 node is dead, 2 carries a UN, 4 a LD, 8 a CP, 16 a BUS, 64 work mark of the node pass
                     ///< (validation, topology)
  int4 next{};       ///< next node in the ring of nodes of the same group (topology)
  int4 n1{};         ///< work field of tpNodeConnect (topology)
  int4 r_kv_nd{};    ///< R_KV_ND row of the node (validation)
  int4 r_nd_cb2{};   ///< head of R_ND_CB2 chain (validation)
  int4 r_nd_ln2{};   ///< head of R_ND_LN2 chain (validation)
  int4 r_nd_xf2{};   ///< head of R_ND_XF2 chain (validation)
  int4 r_nd_zbr2{};  ///< head of R_ND_ZBR2 chain (validation)
  int4 r_nd_dln2{};  ///< head of R_ND_DLN2 chain (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "nd";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(ibs), FIELD(ibs0), FIELD(flags), FIELD(next), FIELD(n1), FIELD(r_kv_nd),
                   FIELD(r_nd_cb2), FIELD(r_nd_ln2), FIELD(r_nd_xf2), FIELD(r_nd_zbr2), FIELD(r_nd_dln2)));
};
static_assert(sizeof(void*) != 4 || sizeof(nd) == 48, "the layout of nd is fixed");

/// Physical bus on a voltage level.
class bus {
 public:
  char raw_0[80]{};     ///< bytes that other programs keep here
  char const* id{};     ///< identity of the physical bus (物理母线 in the messages)
  char raw_84[4]{};     ///< bytes that other programs keep here
  char const* kv{};     ///< identity of the owning KV
  char const* nd{};     ///< node identity of the bus
  int4 ind{};           ///< node number, into ND (validation)
  int4 ibs{};           ///< bus-section number (topology)
  char const* ana_v{};  ///< voltage measurement identity
  char const* ana_a{};  ///< angle measurement identity
  int4 iana_v{};        ///< index of ana_v in ANALOG, -1 absent (validation)
  int4 iana_a{};        ///< index of ana_a in ANALOG, -1 absent (validation)
  real8 v{};            ///< voltage value
  real8 a{};            ///< angle value
  real4 f1{};           ///< carried value
  real4 f2{};           ///< copy of KV.vmax, made by the validation, in kV (validation)
  real4 f3{};           ///< copy of KV.vmin, made by the validation, in kV (validation)
  char raw_148[4]{};    ///< bytes that other programs keep here
  nat4 tp_status{};     ///< bit 1: the bus lies in a dead section (topology)
  int4 r_kv_bus{};      ///< number of the R_KV_BUS row of this bus (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "bus";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_84), FIELD(kv), FIELD(nd), FIELD(ind), FIELD(ibs),
                   FIELD(ana_v), FIELD(ana_a), FIELD(iana_v), FIELD(iana_a), FIELD(v), FIELD(a), FIELD(f1), FIELD(f2),
                   FIELD(f3), RAWFIELD(raw_148), FIELD(tp_status), FIELD(r_kv_bus)));
};
static_assert(sizeof(void*) != 4 || sizeof(bus) == 160, "the layout of bus is fixed");

/// Generating unit.
class un {
 public:
  char raw_0[80]{};     ///< bytes that other programs keep here
  char const* id{};     ///< generating unit identity
  char raw_84[4]{};     ///< bytes that other programs keep here
  char const* kv{};     ///< KV identity
  char const* nd{};     ///< node identity
  int4 ind{};           ///< node number (validation)
  int4 ibs{};           ///< bus-section (topology)
  real4 pmax{};         ///< upper output; the reference choice takes pmax - pcur as the margin of a unit, in MW
  real4 f1{};           ///< carried value
  real4 pcur{};         ///< lower term of that margin, in MW
  real4 f2{};           ///< carried value
  real4 f3{};           ///< carried value
  real4 f4{};           ///< carried value
  real4 f5{};           ///< carried value
  real4 f6{};           ///< carried value
  char const* ana_p{};  ///< P measurement
  int4 iana_p{};        ///< index in ANALOG (validation)
  char const* ana_q{};  ///< Q measurement
  int4 iana_q{};        ///< index in ANALOG (validation)
  char const* ana_v{};  ///< third measurement identity
  int4 iana_v{};        ///< index of ana_v in ANALOG, -1 when absent (validation)
  char raw_160[8]{};    ///< bytes that other programs keep here
  real4 p{};            ///< active power, input of the breaker flow, in MW
  real4 q{};            ///< reactive power, input of the breaker flow, in Mvar
  real4 f7{};           ///< carried value
  real4 a{};            ///< value copied into ISLAND.ref_a when the unit becomes the reference
  real4 f8{};           ///< carried value
  int4 ref{};           ///< reference mark of the unit; default -1; the value 0 makes it a candidate (topology)
  char raw_192[52]{};   ///< bytes that other programs keep here
  real4 f9{};           ///< carried value
  real4 f10{};          ///< carried value
  char raw_252[16]{};   ///< bytes that other programs keep here
  nat4 status{};        ///< component status bits 1 and 4; bit 16: reference chosen by the system (topology)
  nat4 tp_status{};     ///< bit 1: the unit lies in a dead section (topology)
  int4 r_kv_un{};       ///< R_KV_UN row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "un";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_84), FIELD(kv), FIELD(nd), FIELD(ind), FIELD(ibs),
                   FIELD(pmax), FIELD(f1), FIELD(pcur), FIELD(f2), FIELD(f3), FIELD(f4), FIELD(f5), FIELD(f6),
                   FIELD(ana_p), FIELD(iana_p), FIELD(ana_q), FIELD(iana_q), FIELD(ana_v), FIELD(iana_v),
                   RAWFIELD(raw_160), FIELD(p), FIELD(q), FIELD(f7), FIELD(a), FIELD(f8), FIELD(ref), RAWFIELD(raw_192),
                   FIELD(f9), FIELD(f10), RAWFIELD(raw_252), FIELD(status), FIELD(tp_status), FIELD(r_kv_un)));
};
static_assert(sizeof(void*) != 4 || sizeof(un) == 280, "the layout of un is fixed");

/// Load.
class ld {
 public:
  char raw_0[120]{};    ///< bytes that other programs keep here
  char const* id{};     ///< load identity
  char raw_124[8]{};    ///< bytes that other programs keep here
  char const* kv{};     ///< KV identity
  char const* nd{};     ///< node identity
  int4 ind{};           ///< node number (validation)
  int4 ibs{};           ///< bus-section (topology)
  char const* ana_p{};  ///< P measurement
  char const* ana_q{};  ///< Q measurement
  char const* ana_i{};  ///< third measurement identity
  char const* ana_v{};  ///< V measurement
  int4 iana_p{};        ///< index in ANALOG (validation)
  int4 iana_q{};        ///< index in ANALOG (validation)
  int4 iana_i{};        ///< index of ana_i in ANALOG, -1 when absent (validation)
  int4 iana_v{};        ///< index in ANALOG (validation)
  nat4 status{};        ///< component status bits 1 and 4 (topology)
  nat4 tp_status{};     ///< bit 1: the load lies in a dead section (topology)
  real4 f1{};           ///< carried value
  real4 f2{};           ///< carried value
  real4 p{};            ///< active power, input of the breaker flow, in MW
  real4 q{};            ///< reactive power, input of the breaker flow, in Mvar
  real4 f3{};           ///< carried value
  real4 f4{};           ///< carried value
  real4 f5{};           ///< carried value
  real4 f6{};           ///< carried value
  real4 f7{};           ///< carried value
  real4 a{};            ///< value copied into ISLAND.ref_a when the load becomes the reference
  real4 f9{};           ///< carried value
  int4 ref{};           ///< reference mark of the load; default -1; the value 0 makes it a candidate
  char raw_236[32]{};   ///< bytes that other programs keep here
  int4 r_kv_ld{};       ///< R_KV_LD row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "ld";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_124), FIELD(kv), FIELD(nd), FIELD(ind), FIELD(ibs),
                   FIELD(ana_p), FIELD(ana_q), FIELD(ana_i), FIELD(ana_v), FIELD(iana_p), FIELD(iana_q), FIELD(iana_i),
                   FIELD(iana_v), FIELD(status), FIELD(tp_status), FIELD(f1), FIELD(f2), FIELD(p), FIELD(q), FIELD(f3),
                   FIELD(f4), FIELD(f5), FIELD(f6), FIELD(f7), FIELD(a), FIELD(f9), FIELD(ref), RAWFIELD(raw_236),
                   FIELD(r_kv_ld)));
};
static_assert(sizeof(void*) != 4 || sizeof(ld) == 272, "the layout of ld is fixed");

/// Capacitor or reactor.
class cp {
 public:
  char raw_0[160]{};    ///< bytes that other programs keep here
  char const* id{};     ///< capacitor/reactor identity
  char raw_164[8]{};    ///< bytes that other programs keep here
  char const* kv{};     ///< KV identity
  char const* nd{};     ///< node identity
  int4 ind{};           ///< node number (validation)
  int4 ibs{};           ///< bus-section (topology)
  char const* ana_q{};  ///< reactive measurement identity
  int4 iana_q{};        ///< index of ana_q in ANALOG (validation)
  nat4 status{};        ///< component status bits 1 and 4 (topology)
  nat4 tp_status{};     ///< bit 1: the device lies in a dead section (topology)
  real4 f1{};           ///< carried value
  real4 f2{};           ///< carried value
  real4 f3{};           ///< carried value
  real4 f4{};           ///< carried value
  real4 p{};            ///< active power, input of the breaker flow, in MW
  real4 q{};            ///< reactive power, input of the breaker flow, in Mvar
  real4 f5{};           ///< carried value
  char raw_232[36]{};   ///< bytes that other programs keep here
  int4 r_kv_cp{};       ///< number of the R_KV_CP row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "cp";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_164), FIELD(kv), FIELD(nd), FIELD(ind), FIELD(ibs),
                   FIELD(ana_q), FIELD(iana_q), FIELD(status), FIELD(tp_status), FIELD(f1), FIELD(f2), FIELD(f3),
                   FIELD(f4), FIELD(p), FIELD(q), FIELD(f5), RAWFIELD(raw_232), FIELD(r_kv_cp)));
};
static_assert(sizeof(void*) != 4 || sizeof(cp) == 272, "the layout of cp is fixed");

}  // namespace dtsdb
