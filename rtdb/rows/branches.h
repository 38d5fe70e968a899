// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. What joins two nodes: breakers, lines, windings and zero-impedance branches.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Breaker or switch between two nodes of a voltage level.
class cb {
 public:
  char raw_0[40]{};         ///< bytes that other programs keep here
  char const* id{};         ///< breaker identity
  char raw_44[8]{};         ///< bytes that other programs keep here
  char const* kv{};         ///< KV identity
  nat4 flags{};             ///< bits 1 and 4: breaker type, exactly one set in a valid model; 0x100: the breaker is
                            ///< open; 0x800: read as open by the realtime exchange; 0x2000: a ZBR stands on the
                            ///< breaker, set by the validation and by AddZBR (validation, topology)
  char const* status_id{};  ///< identity of the STATUS point of the breaker
  int4 istatus{};           ///< index of status_id in STATUS, -1 absent (validation)
  int4 cb2{};               ///< number of the CB2 row of the from end (validation)
  int4 zcb2{};              ///< number of the CB2 row of the to end (validation)
  char const* nd{};         ///< from-end node identity
  int4 ind{};               ///< from-end node number (validation)
  char const* znd{};        ///< to-end node identity
  int4 iznd{};              ///< to-end node number (validation)
  int4 ibs{};               ///< from-end bus-section (topology)
  int4 izbs{};              ///< to-end bus-section (topology)
  nat4 tp_status{};         ///< bit 1 from side isolated, 2 to side isolated, 4 both sides dead; bits 8, 16, 32: the
                            ///< breaker's class in the breaker flow (topology, breaker flow)
  real4 p{};                ///< active power through the breaker, a result of the breaker flow, in MW (breaker flow)
  real4 q{};                ///< reactive power through the breaker, a result of the breaker flow, in Mvar (breaker
                            ///< flow)
  int4 r_kv_cb{};           ///< number of the R_KV_CB row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "cb";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_44), FIELD(kv), FIELD(flags), FIELD(status_id),
                   FIELD(istatus), FIELD(cb2), FIELD(zcb2), FIELD(nd), FIELD(ind), FIELD(znd), FIELD(iznd), FIELD(ibs),
                   FIELD(izbs), FIELD(tp_status), FIELD(p), FIELD(q), FIELD(r_kv_cb)));
};
static_assert(sizeof(void*) != 4 || sizeof(cb) == 116, "the layout of cb is fixed");

/// AC line between two stations.
class ln {
 public:
  char raw_0[160]{};     ///< bytes that other programs keep here
  char const* id{};      ///< line identity
  char raw_164[4]{};     ///< bytes that other programs keep here
  int4 type{};           ///< carried byte
  char const* dv{};      ///< district identity
  char const* nd{};      ///< from node
  int4 ind{};            ///< from node number (validation)
  char const* znd{};     ///< to node
  int4 iznd{};           ///< to node number (validation)
  char raw_192[4]{};     ///< bytes that other programs keep here
  int4 ibs{};            ///< from bus-section (topology)
  int4 izbs{};           ///< to bus-section (topology)
  int4 ln2{};            ///< LN2 row of from end (validation)
  int4 zln2{};           ///< LN2 row of to end (validation)
  char const* st{};      ///< from station
  char const* zst{};     ///< to station
  char const* kv{};      ///< from KV
  char const* zkv{};     ///< to KV
  char const* ana_p{};   ///< from P
  char const* ana_q{};   ///< from Q
  char const* ana_i{};   ///< from I
  char const* zana_p{};  ///< to P
  char const* zana_q{};  ///< to Q
  char const* zana_i{};  ///< to I
  int4 iana_p{};         ///< index (validation)
  int4 iana_q{};         ///< index (validation)
  int4 iana_i{};         ///< index (validation)
  int4 izana_p{};        ///< index (validation)
  int4 izana_q{};        ///< index (validation)
  int4 izana_i{};        ///< index (validation)
  real4 f1{};            ///< carried value
  real4 f2{};            ///< carried value
  real4 f3{};            ///< carried value
  real4 f4{};            ///< carried value
  real4 f5{};            ///< carried value
  real4 f6{};            ///< carried value
  real4 f7{};            ///< carried value
  real4 f8{};            ///< carried value
  real4 p{};             ///< from P, input of the breaker flow, in MW
  real4 q{};             ///< from Q, input of the breaker flow, in Mvar
  real4 i{};             ///< from I, in A
  real4 zp{};            ///< to P, input of the breaker flow, in MW
  real4 zq{};            ///< to Q, input of the breaker flow, in Mvar
  real4 zi{};            ///< to I, in A
  real4 f9{};            ///< carried value
  real4 f10{};           ///< carried value
  char raw_340[32]{};    ///< bytes that other programs keep here
  nat4 status{};         ///< bit 4 out of service, 1 from end open, 2 to end open; bit 64: the line's district is that
                         ///< of its to end only (validation, topology)
  nat4 tp_status{};      ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  int4 r_dv_ln{};        ///< R_DV_LN row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "ln";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_164), FIELD(type), FIELD(dv), FIELD(nd), FIELD(ind),
                   FIELD(znd), FIELD(iznd), RAWFIELD(raw_192), FIELD(ibs), FIELD(izbs), FIELD(ln2), FIELD(zln2),
                   FIELD(st), FIELD(zst), FIELD(kv), FIELD(zkv), FIELD(ana_p), FIELD(ana_q), FIELD(ana_i),
                   FIELD(zana_p), FIELD(zana_q), FIELD(zana_i), FIELD(iana_p), FIELD(iana_q), FIELD(iana_i),
                   FIELD(izana_p), FIELD(izana_q), FIELD(izana_i), FIELD(f1), FIELD(f2), FIELD(f3), FIELD(f4),
                   FIELD(f5), FIELD(f6), FIELD(f7), FIELD(f8), FIELD(p), FIELD(q), FIELD(i), FIELD(zp), FIELD(zq),
                   FIELD(zi), FIELD(f9), FIELD(f10), RAWFIELD(raw_340), FIELD(status), FIELD(tp_status),
                   FIELD(r_dv_ln)));
};
static_assert(sizeof(void*) != 4 || sizeof(ln) == 384, "the layout of ln is fixed");

/// DC line between two stations.
class dln {
 public:
  char raw_0[160]{};     ///< bytes that other programs keep here
  char const* id{};      ///< DC line identity
  char raw_164[8]{};     ///< bytes that other programs keep here
  char const* dv{};      ///< district identity
  char const* nd{};      ///< from node identity
  int4 ind{};            ///< from node number (validation)
  char const* znd{};     ///< to node identity
  int4 iznd{};           ///< to node number (validation)
  int4 ibs{};            ///< from bus-section (topology)
  int4 izbs{};           ///< to bus-section (topology)
  int4 dln2{};           ///< DLN2 row of from end (validation)
  int4 zdln2{};          ///< DLN2 row of to end (validation)
  char const* st{};      ///< from station identity
  char const* zst{};     ///< to station identity
  char const* kv{};      ///< from KV identity
  char const* zkv{};     ///< to KV identity
  char const* ana_p{};   ///< from P measurement
  char const* ana_q{};   ///< from Q measurement
  char const* ana_i{};   ///< from I measurement
  char const* zana_p{};  ///< to P measurement
  char const* zana_q{};  ///< to Q measurement
  char const* zana_i{};  ///< to I measurement
  int4 iana_p{};         ///< index in ANALOG (validation)
  int4 iana_q{};         ///< index in ANALOG (validation)
  int4 iana_i{};         ///< index in ANALOG (validation)
  int4 izana_p{};        ///< index in ANALOG (validation)
  int4 izana_q{};        ///< index in ANALOG (validation)
  int4 izana_i{};        ///< index in ANALOG (validation)
  nat4 status{};         ///< bit 4 out of service, 1 from end open, 2 to end open; bit 32: the line's district is that
                         ///< of its to end only (validation, topology)
  nat4 tp_status{};      ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  int4 r_dv_dln{};       ///< R_DV_DLN row (validation)
  char raw_284[176]{};   ///< bytes that other programs keep here
  real4 p{};             ///< from P, input of the breaker flow, in MW
  real4 q{};             ///< from Q, input of the breaker flow, in Mvar
  char raw_468[4]{};     ///< bytes that other programs keep here
  real4 zp{};            ///< to P, input of the breaker flow, in MW
  real4 zq{};            ///< to Q, input of the breaker flow, in Mvar

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "dln";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_164), FIELD(dv), FIELD(nd), FIELD(ind), FIELD(znd),
                   FIELD(iznd), FIELD(ibs), FIELD(izbs), FIELD(dln2), FIELD(zdln2), FIELD(st), FIELD(zst), FIELD(kv),
                   FIELD(zkv), FIELD(ana_p), FIELD(ana_q), FIELD(ana_i), FIELD(zana_p), FIELD(zana_q), FIELD(zana_i),
                   FIELD(iana_p), FIELD(iana_q), FIELD(iana_i), FIELD(izana_p), FIELD(izana_q), FIELD(izana_i),
                   FIELD(status), FIELD(tp_status), FIELD(r_dv_dln), RAWFIELD(raw_284), FIELD(p), FIELD(q),
                   RAWFIELD(raw_468), FIELD(zp), FIELD(zq)));
};
static_assert(sizeof(void*) != 4 || sizeof(dln) == 480, "the layout of dln is fixed");

/// Transformer winding between two voltage levels of a station.
class xf {
 public:
  char raw_0[160]{};     ///< bytes that other programs keep here
  char const* id{};      ///< transformer winding identity
  char raw_164[8]{};     ///< bytes that other programs keep here
  int4 type{};           ///< winding type, 1, 2 or 3 in a valid model
  real4 f0{};            ///< carried value
  char const* st{};      ///< station identity
  char const* kv{};      ///< from KV
  char const* zkv{};     ///< to KV
  char const* nd{};      ///< from-end (high voltage) node identity
  char const* znd{};     ///< to-end (low voltage) node identity
  int4 ind{};            ///< from node number (validation)
  int4 iznd{};           ///< to node number (validation)
  int4 ibs{};            ///< from bus-section (topology)
  int4 izbs{};           ///< to bus-section (topology)
  int4 xf2{};            ///< XF2 row of from end (validation)
  int4 zxf2{};           ///< XF2 row of to end (validation)
  char const* ana_p{};   ///< from P
  char const* ana_q{};   ///< from Q
  char const* ana_i{};   ///< from I
  char const* ana_t{};   ///< fourth measurement identity of the from end; carried, not validated
  char const* zana_p{};  ///< to P
  char const* zana_q{};  ///< to Q
  char const* zana_i{};  ///< to I
  char const* zana_t{};  ///< fourth measurement identity of the to end; carried, not validated
  int4 iana_p{};         ///< index (validation)
  int4 iana_q{};         ///< index (validation)
  int4 iana_i{};         ///< index (validation)
  int4 iana_t{};         ///< carried integer
  int4 izana_p{};        ///< index (validation)
  int4 izana_q{};        ///< index (validation)
  int4 izana_i{};        ///< index (validation)
  int4 izana_t{};        ///< carried integer
  real4 p{};             ///< from P, input of the breaker flow, in MW
  real4 q{};             ///< from Q, input of the breaker flow, in Mvar
  real4 i{};             ///< from I, in A
  real4 zp{};            ///< to P, input of the breaker flow, in MW
  real4 zq{};            ///< to Q, input of the breaker flow, in Mvar
  real4 zi{};            ///< to I, in A
  real4 f1{};            ///< carried value
  real4 f2{};            ///< carried value
  nat4 status{};         ///< bit 1 out of service, 4 from end open, 8 to end open (topology)
  nat4 tp_status{};      ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  int4 r_st_xf{};        ///< R_ST_XF row (validation)
  char raw_332[12]{};    ///< bytes that other programs keep here
  real4 f3{};            ///< carried value
  real4 f4{};            ///< carried value
  real4 f5{};            ///< carried value
  real4 f6{};            ///< carried value
  real4 f7{};            ///< carried value
  real4 f8{};            ///< carried value
  real4 f9{};            ///< carried value
  char raw_372[28]{};    ///< bytes that other programs keep here
  real4 f10{};           ///< carried value
  int4 n1{};             ///< carried value
  int4 n2{};             ///< carried value
  real4 f11{};           ///< carried value
  real4 f12{};           ///< carried value
  int4 n3{};             ///< carried value
  int4 n4{};             ///< carried value
  int4 n5{};             ///< carried value
  int4 n6{};             ///< carried value
  real4 f13{};           ///< carried value
  real4 f14{};           ///< carried value
  int4 n7{};             ///< carried value
  int4 n8{};             ///< carried value
  int4 flag{};           ///< carried value

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "xf";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_164), FIELD(type), FIELD(f0), FIELD(st), FIELD(kv),
                   FIELD(zkv), FIELD(nd), FIELD(znd), FIELD(ind), FIELD(iznd), FIELD(ibs), FIELD(izbs), FIELD(xf2),
                   FIELD(zxf2), FIELD(ana_p), FIELD(ana_q), FIELD(ana_i), FIELD(ana_t), FIELD(zana_p), FIELD(zana_q),
                   FIELD(zana_i), FIELD(zana_t), FIELD(iana_p), FIELD(iana_q), FIELD(iana_i), FIELD(iana_t),
                   FIELD(izana_p), FIELD(izana_q), FIELD(izana_i), FIELD(izana_t), FIELD(p), FIELD(q), FIELD(i),
                   FIELD(zp), FIELD(zq), FIELD(zi), FIELD(f1), FIELD(f2), FIELD(status), FIELD(tp_status),
                   FIELD(r_st_xf), RAWFIELD(raw_332), FIELD(f3), FIELD(f4), FIELD(f5), FIELD(f6), FIELD(f7), FIELD(f8),
                   FIELD(f9), RAWFIELD(raw_372), FIELD(f10), FIELD(n1), FIELD(n2), FIELD(f11), FIELD(f12), FIELD(n3),
                   FIELD(n4), FIELD(n5), FIELD(n6), FIELD(f13), FIELD(f14), FIELD(n7), FIELD(n8), FIELD(flag)));
};
static_assert(sizeof(void*) != 4 || sizeof(xf) == 456, "the layout of xf is fixed");

/// Zero-impedance branch, tied to a breaker.
class zbr {
 public:
  char const* id{};     ///< zero-impedance branch identity
  char raw_4[4]{};      ///< bytes that other programs keep here
  char const* cb{};     ///< identity of the associated CB
  int4 icb{};           ///< number of the associated CB, -1 when it is not found (validation)
  int4 ind{};           ///< from node number, copied from CB (validation)
  int4 iznd{};          ///< to node number, copied from CB (validation)
  int4 ibs{};           ///< from bus-section (topology)
  int4 izbs{};          ///< to bus-section (topology)
  int4 zbr2{};          ///< ZBR2 row of from end (validation)
  int4 zzbr2{};         ///< ZBR2 row of to end (validation)
  char const* ana_p{};  ///< P measurement
  char const* ana_q{};  ///< Q measurement
  char const* ana_i{};  ///< I measurement
  int4 iana_p{};        ///< index (validation)
  int4 iana_q{};        ///< index (validation)
  int4 iana_i{};        ///< index (validation)
  real4 p{};            ///< P value, in MW
  real4 q{};            ///< Q value, in Mvar
  real4 i{};            ///< I value, in A
  nat4 status{};        ///< bit 1 out of service, 4 from end open, 16 to end open (topology)
  nat4 tp_status{};     ///< bit 1 from end isolated, 2 to end isolated, 4 both dead; bit 256: out of service together
                        ///< with its breaker, by the careful switching (topology)
  int4 r_kv_zbr{};      ///< R_KV_ZBR row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "zbr";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), RAWFIELD(raw_4), FIELD(cb), FIELD(icb), FIELD(ind), FIELD(iznd), FIELD(ibs),
                   FIELD(izbs), FIELD(zbr2), FIELD(zzbr2), FIELD(ana_p), FIELD(ana_q), FIELD(ana_i), FIELD(iana_p),
                   FIELD(iana_q), FIELD(iana_i), FIELD(p), FIELD(q), FIELD(i), FIELD(status), FIELD(tp_status),
                   FIELD(r_kv_zbr)));
};
static_assert(sizeof(void*) != 4 || sizeof(zbr) == 88, "the layout of zbr is fixed");

}  // namespace dtsdb
