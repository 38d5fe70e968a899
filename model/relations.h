// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The relations: whom each joins and where the ends of its chains are kept.
#pragma once

#include "model/records.h"

namespace dtsdb {

/// What is known of relation class `Row`. One routine written on these names serves all relations.
///
/// `kHead` is the field of the parent that holds the first row of its chain, `kOwn` the field of the child that holds
/// the number of the child's row.
template <class Row>
struct Relation;

template <>
struct Relation<R_CO_DV> {
  using Parent = CO;
  using Child = DV;
  static constexpr auto kParentId = &R_CO_DV::co_id;
  static constexpr auto kChildId = &R_CO_DV::dv_id;
  static constexpr auto kParentNumber = &R_CO_DV::ico;
  static constexpr auto kChildNumber = &R_CO_DV::idv;
  static constexpr auto kHead = &CO::r_co_dv;
  static constexpr auto kOwn = &DV::r_co_dv;
};

template <>
struct Relation<R_DV_DLN> {
  using Parent = DV;
  using Child = DLN;
  static constexpr auto kParentId = &R_DV_DLN::dv_id;
  static constexpr auto kChildId = &R_DV_DLN::dln_id;
  static constexpr auto kParentNumber = &R_DV_DLN::idv;
  static constexpr auto kChildNumber = &R_DV_DLN::idln;
  static constexpr auto kHead = &DV::r_dv_dln;
  static constexpr auto kOwn = &DLN::r_dv_dln;
};

template <>
struct Relation<R_DV_LN> {
  using Parent = DV;
  using Child = LN;
  static constexpr auto kParentId = &R_DV_LN::dv_id;
  static constexpr auto kChildId = &R_DV_LN::ln_id;
  static constexpr auto kParentNumber = &R_DV_LN::idv;
  static constexpr auto kChildNumber = &R_DV_LN::iln;
  static constexpr auto kHead = &DV::r_dv_ln;
  static constexpr auto kOwn = &LN::r_dv_ln;
};

template <>
struct Relation<R_DV_ST> {
  using Parent = DV;
  using Child = ST;
  static constexpr auto kParentId = &R_DV_ST::dv_id;
  static constexpr auto kChildId = &R_DV_ST::st_id;
  static constexpr auto kParentNumber = &R_DV_ST::idv;
  static constexpr auto kChildNumber = &R_DV_ST::ist;
  static constexpr auto kHead = &DV::r_dv_st;
  static constexpr auto kOwn = &ST::r_dv_st;
};

template <>
struct Relation<R_KV_BUS> {
  using Parent = KV;
  using Child = BUS;
  static constexpr auto kParentId = &R_KV_BUS::kv_id;
  static constexpr auto kChildId = &R_KV_BUS::bus_id;
  static constexpr auto kParentNumber = &R_KV_BUS::ikv;
  static constexpr auto kChildNumber = &R_KV_BUS::ibus;
  static constexpr auto kHead = &KV::r_kv_bus;
  static constexpr auto kOwn = &BUS::r_kv_bus;
};

template <>
struct Relation<R_KV_CB> {
  using Parent = KV;
  using Child = CB;
  static constexpr auto kParentId = &R_KV_CB::kv_id;
  static constexpr auto kChildId = &R_KV_CB::cb_id;
  static constexpr auto kParentNumber = &R_KV_CB::ikv;
  static constexpr auto kChildNumber = &R_KV_CB::icb;
  static constexpr auto kHead = &KV::r_kv_cb;
  static constexpr auto kOwn = &CB::r_kv_cb;
};

template <>
struct Relation<R_KV_CP> {
  using Parent = KV;
  using Child = CP;
  static constexpr auto kParentId = &R_KV_CP::kv_id;
  static constexpr auto kChildId = &R_KV_CP::cp_id;
  static constexpr auto kParentNumber = &R_KV_CP::ikv;
  static constexpr auto kChildNumber = &R_KV_CP::icp;
  static constexpr auto kHead = &KV::r_kv_cp;
  static constexpr auto kOwn = &CP::r_kv_cp;
};

template <>
struct Relation<R_KV_LD> {
  using Parent = KV;
  using Child = LD;
  static constexpr auto kParentId = &R_KV_LD::kv_id;
  static constexpr auto kChildId = &R_KV_LD::ld_id;
  static constexpr auto kParentNumber = &R_KV_LD::ikv;
  static constexpr auto kChildNumber = &R_KV_LD::ild;
  static constexpr auto kHead = &KV::r_kv_ld;
  static constexpr auto kOwn = &LD::r_kv_ld;
};

template <>
struct Relation<R_KV_ND> {
  using Parent = KV;
  using Child = ND;
  static constexpr auto kParentId = &R_KV_ND::kv_id;
  static constexpr auto kChildId = &R_KV_ND::nd_id;
  static constexpr auto kParentNumber = &R_KV_ND::ikv;
  static constexpr auto kChildNumber = &R_KV_ND::ind;
  static constexpr auto kHead = &KV::r_kv_nd;
  static constexpr auto kOwn = &ND::r_kv_nd;
};

template <>
struct Relation<R_KV_UN> {
  using Parent = KV;
  using Child = UN;
  static constexpr auto kParentId = &R_KV_UN::kv_id;
  static constexpr auto kChildId = &R_KV_UN::un_id;
  static constexpr auto kParentNumber = &R_KV_UN::ikv;
  static constexpr auto kChildNumber = &R_KV_UN::iun;
  static constexpr auto kHead = &KV::r_kv_un;
  static constexpr auto kOwn = &UN::r_kv_un;
};

template <>
struct Relation<R_KV_ZBR> {
  using Parent = KV;
  using Child = ZBR;
  static constexpr auto kParentId = &R_KV_ZBR::kv_id;
  static constexpr auto kChildId = &R_KV_ZBR::zbr_id;
  static constexpr auto kParentNumber = &R_KV_ZBR::ikv;
  static constexpr auto kChildNumber = &R_KV_ZBR::izbr;
  static constexpr auto kHead = &KV::r_kv_zbr;
  static constexpr auto kOwn = &ZBR::r_kv_zbr;
};

template <>
struct Relation<R_ND_CB2> {
  using Parent = ND;
  using Child = CB2;
  static constexpr auto kParentId = &R_ND_CB2::nd_id;
  static constexpr auto kChildId = &R_ND_CB2::cb2_id;
  static constexpr auto kParentNumber = &R_ND_CB2::ind;
  static constexpr auto kChildNumber = &R_ND_CB2::icb2;
  static constexpr auto kHead = &ND::r_nd_cb2;
  static constexpr auto kOwn = &CB2::r_nd_cb2;
};

template <>
struct Relation<R_ND_DLN2> {
  using Parent = ND;
  using Child = DLN2;
  static constexpr auto kParentId = &R_ND_DLN2::nd_id;
  static constexpr auto kChildId = &R_ND_DLN2::dln2_id;
  static constexpr auto kParentNumber = &R_ND_DLN2::ind;
  static constexpr auto kChildNumber = &R_ND_DLN2::idln2;
  static constexpr auto kHead = &ND::r_nd_dln2;
  static constexpr auto kOwn = &DLN2::r_nd;
};

template <>
struct Relation<R_ND_LN2> {
  using Parent = ND;
  using Child = LN2;
  static constexpr auto kParentId = &R_ND_LN2::nd_id;
  static constexpr auto kChildId = &R_ND_LN2::ln2_id;
  static constexpr auto kParentNumber = &R_ND_LN2::ind;
  static constexpr auto kChildNumber = &R_ND_LN2::iln2;
  static constexpr auto kHead = &ND::r_nd_ln2;
  static constexpr auto kOwn = &LN2::r_nd;
};

template <>
struct Relation<R_ND_XF2> {
  using Parent = ND;
  using Child = XF2;
  static constexpr auto kParentId = &R_ND_XF2::nd_id;
  static constexpr auto kChildId = &R_ND_XF2::xf2_id;
  static constexpr auto kParentNumber = &R_ND_XF2::ind;
  static constexpr auto kChildNumber = &R_ND_XF2::ixf2;
  static constexpr auto kHead = &ND::r_nd_xf2;
  static constexpr auto kOwn = &XF2::r_nd;
};

template <>
struct Relation<R_ND_ZBR2> {
  using Parent = ND;
  using Child = ZBR2;
  static constexpr auto kParentId = &R_ND_ZBR2::nd_id;
  static constexpr auto kChildId = &R_ND_ZBR2::zbr2_id;
  static constexpr auto kParentNumber = &R_ND_ZBR2::ind;
  static constexpr auto kChildNumber = &R_ND_ZBR2::izbr2;
  static constexpr auto kHead = &ND::r_nd_zbr2;
  static constexpr auto kOwn = &ZBR2::r_nd;
};

template <>
struct Relation<R_ST_KV> {
  using Parent = ST;
  using Child = KV;
  static constexpr auto kParentId = &R_ST_KV::st_id;
  static constexpr auto kChildId = &R_ST_KV::kv_id;
  static constexpr auto kParentNumber = &R_ST_KV::ist;
  static constexpr auto kChildNumber = &R_ST_KV::ikv;
  static constexpr auto kHead = &ST::r_st_kv;
  static constexpr auto kOwn = &KV::r_st_kv;
};

template <>
struct Relation<R_ST_XF> {
  using Parent = ST;
  using Child = XF;
  static constexpr auto kParentId = &R_ST_XF::st_id;
  static constexpr auto kChildId = &R_ST_XF::xf_id;
  static constexpr auto kParentNumber = &R_ST_XF::ist;
  static constexpr auto kChildNumber = &R_ST_XF::ixf;
  static constexpr auto kHead = &ST::r_st_xf;
  static constexpr auto kOwn = &XF::r_st_xf;
};

/// The relation by which a record hangs on its parent: ParentRow<LD> is R_KV_LD.
template <class Child>
struct ParentOf;
template <>
struct ParentOf<DV> {
  using Row = R_CO_DV;
};
template <>
struct ParentOf<DLN> {
  using Row = R_DV_DLN;
};
template <>
struct ParentOf<LN> {
  using Row = R_DV_LN;
};
template <>
struct ParentOf<ST> {
  using Row = R_DV_ST;
};
template <>
struct ParentOf<BUS> {
  using Row = R_KV_BUS;
};
template <>
struct ParentOf<CB> {
  using Row = R_KV_CB;
};
template <>
struct ParentOf<CP> {
  using Row = R_KV_CP;
};
template <>
struct ParentOf<LD> {
  using Row = R_KV_LD;
};
template <>
struct ParentOf<ND> {
  using Row = R_KV_ND;
};
template <>
struct ParentOf<UN> {
  using Row = R_KV_UN;
};
template <>
struct ParentOf<ZBR> {
  using Row = R_KV_ZBR;
};
template <>
struct ParentOf<CB2> {
  using Row = R_ND_CB2;
};
template <>
struct ParentOf<DLN2> {
  using Row = R_ND_DLN2;
};
template <>
struct ParentOf<LN2> {
  using Row = R_ND_LN2;
};
template <>
struct ParentOf<XF2> {
  using Row = R_ND_XF2;
};
template <>
struct ParentOf<ZBR2> {
  using Row = R_ND_ZBR2;
};
template <>
struct ParentOf<KV> {
  using Row = R_ST_KV;
};
template <>
struct ParentOf<XF> {
  using Row = R_ST_XF;
};
/// The same in one word.
template <class Child>
using ParentRow = typename ParentOf<Child>::Row;

}  // namespace dtsdb
