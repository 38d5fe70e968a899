// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Which row of the realtime database stands for a record, and how a table is written there.
#pragma once

#include "model/records.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb {

/// How a table is written.
enum class Writer {
  Merging,    ///< rows that exist are updated and keep what no record holds; none is deleted
  Replacing,  ///< all rows are deleted and written anew
};

/// What is known of the rows of record class `Record`: their class, how their table is written, and the query that it
/// is read with.
template <class Record>
struct Twin;

template <>
struct Twin<ANALOG> {
  using Row = analog;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &ANALOG::id;
  static constexpr auto name = &ANALOG::name;
  static constexpr auto value = &ANALOG::value;
  static constexpr auto quality = &ANALOG::quality;
  static constexpr auto idx = &ANALOG::idx;
  static constexpr auto f1 = &ANALOG::f1;
  static constexpr auto f2 = &ANALOG::f2;
  static constexpr auto f3 = &ANALOG::f3;
  static constexpr auto flag = &ANALOG::flag;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BS> {
  using Row = bs;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &BS::id;
  static constexpr auto name = &BS::name;
  static constexpr auto ikv = &BS::ikv;
  static constexpr auto f0 = &BS::f0;
  static constexpr auto island = &BS::island;
  static constexpr auto status = &BS::status;
  static constexpr auto flags = &BS::flags;
  static constexpr auto next = &BS::next;
  static constexpr auto prev = &BS::prev;
  static constexpr auto ibsl = &BS::ibsl;
  static constexpr auto v = &BS::v;
  static constexpr auto a = &BS::a;
  static constexpr auto f1 = &BS::f1;
  static constexpr auto f2 = &BS::f2;
  static constexpr auto f3 = &BS::f3;
  static constexpr auto f4 = &BS::f4;
  static constexpr auto n1 = &BS::n1;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BSL> {
  using Row = bsl;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &BSL::id;
  static constexpr auto next = &BSL::next;
  static constexpr auto prev = &BSL::prev;
  static constexpr auto kind = &BSL::kind;
  static constexpr auto ref = &BSL::ref;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BUS> {
  using Row = bus;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &BUS::id;
  static constexpr auto kv = &BUS::kv;
  static constexpr auto nd = &BUS::nd;
  static constexpr auto ind = &BUS::ind;
  static constexpr auto ibs = &BUS::ibs;
  static constexpr auto ana_v = &BUS::ana_v;
  static constexpr auto ana_a = &BUS::ana_a;
  static constexpr auto iana_v = &BUS::iana_v;
  static constexpr auto iana_a = &BUS::iana_a;
  static constexpr auto v = &BUS::v;
  static constexpr auto a = &BUS::a;
  static constexpr auto f1 = &BUS::f1;
  static constexpr auto f2 = &BUS::f2;
  static constexpr auto f3 = &BUS::f3;
  static constexpr auto tp_status = &BUS::tp_status;
  static constexpr auto r_kv_bus = &BUS::r_kv_bus;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CB> {
  using Row = cb;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &CB::id;
  static constexpr auto kv = &CB::kv;
  static constexpr auto flags = &CB::flags;
  static constexpr auto status_id = &CB::status_id;
  static constexpr auto istatus = &CB::istatus;
  static constexpr auto cb2 = &CB::cb2;
  static constexpr auto zcb2 = &CB::zcb2;
  static constexpr auto nd = &CB::nd;
  static constexpr auto ind = &CB::ind;
  static constexpr auto znd = &CB::znd;
  static constexpr auto iznd = &CB::iznd;
  static constexpr auto ibs = &CB::ibs;
  static constexpr auto izbs = &CB::izbs;
  static constexpr auto tp_status = &CB::tp_status;
  static constexpr auto r_kv_cb = &CB::r_kv_cb;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CB2> {
  using Row = cb2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &CB2::id;
  static constexpr auto icb = &CB2::icb;
  static constexpr auto r_nd_cb2 = &CB2::r_nd_cb2;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CHND> {
  using Row = chnd;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &CHND::id;
  static constexpr auto ind = &CHND::ind;
  static constexpr auto ibs_new = &CHND::ibs_new;
  static constexpr auto ibs_old = &CHND::ibs_old;
  static constexpr auto ikv = &CHND::ikv;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CO> {
  using Row = co;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &CO::id;
  static constexpr auto f1 = &CO::f1;
  static constexpr auto f2 = &CO::f2;
  static constexpr auto f3 = &CO::f3;
  static constexpr auto f4 = &CO::f4;
  static constexpr auto f5 = &CO::f5;
  static constexpr auto f6 = &CO::f6;
  static constexpr auto f7 = &CO::f7;
  static constexpr auto f8 = &CO::f8;
  static constexpr auto r_co_dv = &CO::r_co_dv;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CP> {
  using Row = cp;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &CP::id;
  static constexpr auto kv = &CP::kv;
  static constexpr auto nd = &CP::nd;
  static constexpr auto ind = &CP::ind;
  static constexpr auto ibs = &CP::ibs;
  static constexpr auto ana_q = &CP::ana_q;
  static constexpr auto iana_q = &CP::iana_q;
  static constexpr auto status = &CP::status;
  static constexpr auto tp_status = &CP::tp_status;
  static constexpr auto f1 = &CP::f1;
  static constexpr auto f2 = &CP::f2;
  static constexpr auto f3 = &CP::f3;
  static constexpr auto f4 = &CP::f4;
  static constexpr auto p = &CP::p;
  static constexpr auto q = &CP::q;
  static constexpr auto f5 = &CP::f5;
  static constexpr auto r_kv_cp = &CP::r_kv_cp;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DLN> {
  using Row = dln;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &DLN::id;
  static constexpr auto dv = &DLN::dv;
  static constexpr auto nd = &DLN::nd;
  static constexpr auto ind = &DLN::ind;
  static constexpr auto znd = &DLN::znd;
  static constexpr auto iznd = &DLN::iznd;
  static constexpr auto ibs = &DLN::ibs;
  static constexpr auto izbs = &DLN::izbs;
  static constexpr auto dln2 = &DLN::dln2;
  static constexpr auto zdln2 = &DLN::zdln2;
  static constexpr auto st = &DLN::st;
  static constexpr auto zst = &DLN::zst;
  static constexpr auto kv = &DLN::kv;
  static constexpr auto zkv = &DLN::zkv;
  static constexpr auto ana_p = &DLN::ana_p;
  static constexpr auto ana_q = &DLN::ana_q;
  static constexpr auto ana_i = &DLN::ana_i;
  static constexpr auto zana_p = &DLN::zana_p;
  static constexpr auto zana_q = &DLN::zana_q;
  static constexpr auto zana_i = &DLN::zana_i;
  static constexpr auto iana_p = &DLN::iana_p;
  static constexpr auto iana_q = &DLN::iana_q;
  static constexpr auto iana_i = &DLN::iana_i;
  static constexpr auto izana_p = &DLN::izana_p;
  static constexpr auto izana_q = &DLN::izana_q;
  static constexpr auto izana_i = &DLN::izana_i;
  static constexpr auto status = &DLN::status;
  static constexpr auto tp_status = &DLN::tp_status;
  static constexpr auto r_dv_dln = &DLN::r_dv_dln;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DLN2> {
  using Row = dln2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &DLN2::id;
  static constexpr auto p = &DLN2::p;
  static constexpr auto q = &DLN2::q;
  static constexpr auto i = &DLN2::i;
  static constexpr auto iana_p = &DLN2::iana_p;
  static constexpr auto iana_q = &DLN2::iana_q;
  static constexpr auto idln = &DLN2::idln;
  static constexpr auto flags = &DLN2::flags;
  static constexpr auto r_nd = &DLN2::r_nd;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DV> {
  using Row = dv;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &DV::id;
  static constexpr auto co = &DV::co;
  static constexpr auto f1 = &DV::f1;
  static constexpr auto f2 = &DV::f2;
  static constexpr auto f3 = &DV::f3;
  static constexpr auto f4 = &DV::f4;
  static constexpr auto f5 = &DV::f5;
  static constexpr auto f6 = &DV::f6;
  static constexpr auto f7 = &DV::f7;
  static constexpr auto f8 = &DV::f8;
  static constexpr auto r_co_dv = &DV::r_co_dv;
  static constexpr auto r_dv_st = &DV::r_dv_st;
  static constexpr auto r_dv_ln = &DV::r_dv_ln;
  static constexpr auto r_dv_dln = &DV::r_dv_dln;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<GLOBAL> {
  using Row = global;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &GLOBAL::id;
  static constexpr auto f1 = &GLOBAL::f1;
  static constexpr auto bs_free = &GLOBAL::bs_free;
  static constexpr auto bs_dead = &GLOBAL::bs_dead;
  static constexpr auto bs_live = &GLOBAL::bs_live;
  static constexpr auto bsl_free = &GLOBAL::bsl_free;
  static constexpr auto bsl_head = &GLOBAL::bsl_head;
  static constexpr auto n1 = &GLOBAL::n1;
  static constexpr auto u1 = &GLOBAL::u1;
  static constexpr auto time = &GLOBAL::time;
  static constexpr auto valid = &GLOBAL::valid;
  static constexpr auto check_time = &GLOBAL::check_time;
  static constexpr auto invalid = &GLOBAL::invalid;
  static constexpr auto errors = &GLOBAL::errors;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ISLAND> {
  using Row = island;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &ISLAND::id;
  static constexpr auto ref_ibs = &ISLAND::ref_ibs;
  static constexpr auto ref_un = &ISLAND::ref_un;
  static constexpr auto ref_a = &ISLAND::ref_a;
  static constexpr auto f1 = &ISLAND::f1;
  static constexpr auto f2 = &ISLAND::f2;
  static constexpr auto f3 = &ISLAND::f3;
  static constexpr auto ref_id = &ISLAND::ref_id;
  static constexpr auto name = &ISLAND::name;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<KV> {
  using Row = kv;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &KV::id;
  static constexpr auto name = &KV::name;
  static constexpr auto st = &KV::st;
  static constexpr auto ibs = &KV::ibs;
  static constexpr auto ibsl = &KV::ibsl;
  static constexpr auto vbase = &KV::vbase;
  static constexpr auto vmax = &KV::vmax;
  static constexpr auto vmin = &KV::vmin;
  static constexpr auto f1 = &KV::f1;
  static constexpr auto f2 = &KV::f2;
  static constexpr auto n2 = &KV::n2;
  static constexpr auto r_st_kv = &KV::r_st_kv;
  static constexpr auto r_kv_un = &KV::r_kv_un;
  static constexpr auto r_kv_cb = &KV::r_kv_cb;
  static constexpr auto r_kv_ld = &KV::r_kv_ld;
  static constexpr auto r_kv_cp = &KV::r_kv_cp;
  static constexpr auto r_kv_bus = &KV::r_kv_bus;
  static constexpr auto r_kv_zbr = &KV::r_kv_zbr;
  static constexpr auto r_kv_nd = &KV::r_kv_nd;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LD> {
  using Row = ld;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &LD::id;
  static constexpr auto kv = &LD::kv;
  static constexpr auto nd = &LD::nd;
  static constexpr auto ind = &LD::ind;
  static constexpr auto ibs = &LD::ibs;
  static constexpr auto ana_p = &LD::ana_p;
  static constexpr auto ana_q = &LD::ana_q;
  static constexpr auto ana_i = &LD::ana_i;
  static constexpr auto ana_v = &LD::ana_v;
  static constexpr auto iana_p = &LD::iana_p;
  static constexpr auto iana_q = &LD::iana_q;
  static constexpr auto iana_i = &LD::iana_i;
  static constexpr auto iana_v = &LD::iana_v;
  static constexpr auto status = &LD::status;
  static constexpr auto tp_status = &LD::tp_status;
  static constexpr auto f1 = &LD::f1;
  static constexpr auto f2 = &LD::f2;
  static constexpr auto p = &LD::p;
  static constexpr auto q = &LD::q;
  static constexpr auto f3 = &LD::f3;
  static constexpr auto f4 = &LD::f4;
  static constexpr auto f5 = &LD::f5;
  static constexpr auto f6 = &LD::f6;
  static constexpr auto f7 = &LD::f7;
  static constexpr auto a = &LD::a;
  static constexpr auto f9 = &LD::f9;
  static constexpr auto ref = &LD::ref;
  static constexpr auto r_kv_ld = &LD::r_kv_ld;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LN> {
  using Row = ln;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &LN::id;
  static constexpr auto type = &LN::type;
  static constexpr auto dv = &LN::dv;
  static constexpr auto nd = &LN::nd;
  static constexpr auto ind = &LN::ind;
  static constexpr auto znd = &LN::znd;
  static constexpr auto iznd = &LN::iznd;
  static constexpr auto ibs = &LN::ibs;
  static constexpr auto izbs = &LN::izbs;
  static constexpr auto ln2 = &LN::ln2;
  static constexpr auto zln2 = &LN::zln2;
  static constexpr auto st = &LN::st;
  static constexpr auto zst = &LN::zst;
  static constexpr auto kv = &LN::kv;
  static constexpr auto zkv = &LN::zkv;
  static constexpr auto ana_p = &LN::ana_p;
  static constexpr auto ana_q = &LN::ana_q;
  static constexpr auto ana_i = &LN::ana_i;
  static constexpr auto zana_p = &LN::zana_p;
  static constexpr auto zana_q = &LN::zana_q;
  static constexpr auto zana_i = &LN::zana_i;
  static constexpr auto iana_p = &LN::iana_p;
  static constexpr auto iana_q = &LN::iana_q;
  static constexpr auto iana_i = &LN::iana_i;
  static constexpr auto izana_p = &LN::izana_p;
  static constexpr auto izana_q = &LN::izana_q;
  static constexpr auto izana_i = &LN::izana_i;
  static constexpr auto f1 = &LN::f1;
  static constexpr auto f2 = &LN::f2;
  static constexpr auto f3 = &LN::f3;
  static constexpr auto f4 = &LN::f4;
  static constexpr auto f5 = &LN::f5;
  static constexpr auto f6 = &LN::f6;
  static constexpr auto f7 = &LN::f7;
  static constexpr auto f8 = &LN::f8;
  static constexpr auto p = &LN::p;
  static constexpr auto q = &LN::q;
  static constexpr auto i = &LN::i;
  static constexpr auto zp = &LN::zp;
  static constexpr auto zq = &LN::zq;
  static constexpr auto zi = &LN::zi;
  static constexpr auto f9 = &LN::f9;
  static constexpr auto f10 = &LN::f10;
  static constexpr auto status = &LN::status;
  static constexpr auto tp_status = &LN::tp_status;
  static constexpr auto r_dv_ln = &LN::r_dv_ln;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LN2> {
  using Row = ln2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &LN2::id;
  static constexpr auto p = &LN2::p;
  static constexpr auto q = &LN2::q;
  static constexpr auto i = &LN2::i;
  static constexpr auto iana_p = &LN2::iana_p;
  static constexpr auto iana_q = &LN2::iana_q;
  static constexpr auto iln = &LN2::iln;
  static constexpr auto flags = &LN2::flags;
  static constexpr auto r_nd = &LN2::r_nd;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ND> {
  using Row = nd;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &ND::id;
  static constexpr auto ibs = &ND::ibs;
  static constexpr auto ibs0 = &ND::ibs0;
  static constexpr auto flags = &ND::flags;
  static constexpr auto next = &ND::next;
  static constexpr auto n1 = &ND::n1;
  static constexpr auto r_kv_nd = &ND::r_kv_nd;
  static constexpr auto r_nd_cb2 = &ND::r_nd_cb2;
  static constexpr auto r_nd_ln2 = &ND::r_nd_ln2;
  static constexpr auto r_nd_xf2 = &ND::r_nd_xf2;
  static constexpr auto r_nd_zbr2 = &ND::r_nd_zbr2;
  static constexpr auto r_nd_dln2 = &ND::r_nd_dln2;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<R_CO_DV> {
  using Row = r_co_dv;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto co_id = &R_CO_DV::co_id;
  static constexpr auto dv_id = &R_CO_DV::dv_id;
  static constexpr auto ico = &R_CO_DV::ico;
  static constexpr auto idv = &R_CO_DV::idv;
  static constexpr auto next = &R_CO_DV::next;
  static constexpr auto prev = &R_CO_DV::prev;
  static constexpr const char* kReadingOrder = "order by co_id,dv_id";
};

template <>
struct Twin<R_DV_DLN> {
  using Row = r_dv_dln;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto dv_id = &R_DV_DLN::dv_id;
  static constexpr auto dln_id = &R_DV_DLN::dln_id;
  static constexpr auto idv = &R_DV_DLN::idv;
  static constexpr auto idln = &R_DV_DLN::idln;
  static constexpr auto next = &R_DV_DLN::next;
  static constexpr auto prev = &R_DV_DLN::prev;
  static constexpr const char* kReadingOrder = "order by dv_id,dln_id";
};

template <>
struct Twin<R_DV_LN> {
  using Row = r_dv_ln;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto dv_id = &R_DV_LN::dv_id;
  static constexpr auto ln_id = &R_DV_LN::ln_id;
  static constexpr auto idv = &R_DV_LN::idv;
  static constexpr auto iln = &R_DV_LN::iln;
  static constexpr auto next = &R_DV_LN::next;
  static constexpr auto prev = &R_DV_LN::prev;
  static constexpr const char* kReadingOrder = "order by dv_id,ln_id";
};

template <>
struct Twin<R_DV_ST> {
  using Row = r_dv_st;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto dv_id = &R_DV_ST::dv_id;
  static constexpr auto st_id = &R_DV_ST::st_id;
  static constexpr auto idv = &R_DV_ST::idv;
  static constexpr auto ist = &R_DV_ST::ist;
  static constexpr auto next = &R_DV_ST::next;
  static constexpr auto prev = &R_DV_ST::prev;
  static constexpr const char* kReadingOrder = "order by dv_id,st_id";
};

template <>
struct Twin<R_KV_BUS> {
  using Row = r_kv_bus;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_BUS::kv_id;
  static constexpr auto bus_id = &R_KV_BUS::bus_id;
  static constexpr auto ikv = &R_KV_BUS::ikv;
  static constexpr auto ibus = &R_KV_BUS::ibus;
  static constexpr auto next = &R_KV_BUS::next;
  static constexpr auto prev = &R_KV_BUS::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,bus_id";
};

template <>
struct Twin<R_KV_CB> {
  using Row = r_kv_cb;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_CB::kv_id;
  static constexpr auto cb_id = &R_KV_CB::cb_id;
  static constexpr auto ikv = &R_KV_CB::ikv;
  static constexpr auto icb = &R_KV_CB::icb;
  static constexpr auto next = &R_KV_CB::next;
  static constexpr auto prev = &R_KV_CB::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,cb_id";
};

template <>
struct Twin<R_KV_CP> {
  using Row = r_kv_cp;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_CP::kv_id;
  static constexpr auto cp_id = &R_KV_CP::cp_id;
  static constexpr auto ikv = &R_KV_CP::ikv;
  static constexpr auto icp = &R_KV_CP::icp;
  static constexpr auto next = &R_KV_CP::next;
  static constexpr auto prev = &R_KV_CP::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,cp_id";
};

template <>
struct Twin<R_KV_LD> {
  using Row = r_kv_ld;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_LD::kv_id;
  static constexpr auto ld_id = &R_KV_LD::ld_id;
  static constexpr auto ikv = &R_KV_LD::ikv;
  static constexpr auto ild = &R_KV_LD::ild;
  static constexpr auto next = &R_KV_LD::next;
  static constexpr auto prev = &R_KV_LD::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,ld_id";
};

template <>
struct Twin<R_KV_ND> {
  using Row = r_kv_nd;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_ND::kv_id;
  static constexpr auto nd_id = &R_KV_ND::nd_id;
  static constexpr auto ikv = &R_KV_ND::ikv;
  static constexpr auto ind = &R_KV_ND::ind;
  static constexpr auto next = &R_KV_ND::next;
  static constexpr auto prev = &R_KV_ND::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,nd_id";
};

template <>
struct Twin<R_KV_UN> {
  using Row = r_kv_un;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_UN::kv_id;
  static constexpr auto un_id = &R_KV_UN::un_id;
  static constexpr auto ikv = &R_KV_UN::ikv;
  static constexpr auto iun = &R_KV_UN::iun;
  static constexpr auto next = &R_KV_UN::next;
  static constexpr auto prev = &R_KV_UN::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,un_id";
};

template <>
struct Twin<R_KV_ZBR> {
  using Row = r_kv_zbr;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto kv_id = &R_KV_ZBR::kv_id;
  static constexpr auto zbr_id = &R_KV_ZBR::zbr_id;
  static constexpr auto ikv = &R_KV_ZBR::ikv;
  static constexpr auto izbr = &R_KV_ZBR::izbr;
  static constexpr auto next = &R_KV_ZBR::next;
  static constexpr auto prev = &R_KV_ZBR::prev;
  static constexpr const char* kReadingOrder = "order by kv_id,zbr_id";
};

template <>
struct Twin<R_ND_CB2> {
  using Row = r_nd_cb2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto nd_id = &R_ND_CB2::nd_id;
  static constexpr auto cb2_id = &R_ND_CB2::cb2_id;
  static constexpr auto ind = &R_ND_CB2::ind;
  static constexpr auto icb2 = &R_ND_CB2::icb2;
  static constexpr auto next = &R_ND_CB2::next;
  static constexpr auto prev = &R_ND_CB2::prev;
  static constexpr const char* kReadingOrder = "order by nd_id,cb2_id";
};

template <>
struct Twin<R_ND_DLN2> {
  using Row = r_nd_dln2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto nd_id = &R_ND_DLN2::nd_id;
  static constexpr auto dln2_id = &R_ND_DLN2::dln2_id;
  static constexpr auto ind = &R_ND_DLN2::ind;
  static constexpr auto idln2 = &R_ND_DLN2::idln2;
  static constexpr auto next = &R_ND_DLN2::next;
  static constexpr auto prev = &R_ND_DLN2::prev;
  static constexpr const char* kReadingOrder = "order by nd_id,dln2_id";
};

template <>
struct Twin<R_ND_LN2> {
  using Row = r_nd_ln2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto nd_id = &R_ND_LN2::nd_id;
  static constexpr auto ln2_id = &R_ND_LN2::ln2_id;
  static constexpr auto ind = &R_ND_LN2::ind;
  static constexpr auto iln2 = &R_ND_LN2::iln2;
  static constexpr auto next = &R_ND_LN2::next;
  static constexpr auto prev = &R_ND_LN2::prev;
  static constexpr const char* kReadingOrder = "order by nd_id,ln2_id";
};

template <>
struct Twin<R_ND_XF2> {
  using Row = r_nd_xf2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto nd_id = &R_ND_XF2::nd_id;
  static constexpr auto xf2_id = &R_ND_XF2::xf2_id;
  static constexpr auto ind = &R_ND_XF2::ind;
  static constexpr auto ixf2 = &R_ND_XF2::ixf2;
  static constexpr auto next = &R_ND_XF2::next;
  static constexpr auto prev = &R_ND_XF2::prev;
  static constexpr const char* kReadingOrder = "order by nd_id,xf2_id";
};

template <>
struct Twin<R_ND_ZBR2> {
  using Row = r_nd_zbr2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto nd_id = &R_ND_ZBR2::nd_id;
  static constexpr auto zbr2_id = &R_ND_ZBR2::zbr2_id;
  static constexpr auto ind = &R_ND_ZBR2::ind;
  static constexpr auto izbr2 = &R_ND_ZBR2::izbr2;
  static constexpr auto next = &R_ND_ZBR2::next;
  static constexpr auto prev = &R_ND_ZBR2::prev;
  static constexpr const char* kReadingOrder = "order by nd_id,zbr2_id";
};

template <>
struct Twin<R_ST_KV> {
  using Row = r_st_kv;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto st_id = &R_ST_KV::st_id;
  static constexpr auto kv_id = &R_ST_KV::kv_id;
  static constexpr auto ist = &R_ST_KV::ist;
  static constexpr auto ikv = &R_ST_KV::ikv;
  static constexpr auto next = &R_ST_KV::next;
  static constexpr auto prev = &R_ST_KV::prev;
  static constexpr const char* kReadingOrder = "order by st_id,kv_id";
};

template <>
struct Twin<R_ST_XF> {
  using Row = r_st_xf;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto st_id = &R_ST_XF::st_id;
  static constexpr auto xf_id = &R_ST_XF::xf_id;
  static constexpr auto ist = &R_ST_XF::ist;
  static constexpr auto ixf = &R_ST_XF::ixf;
  static constexpr auto next = &R_ST_XF::next;
  static constexpr auto prev = &R_ST_XF::prev;
  static constexpr const char* kReadingOrder = "order by st_id,xf_id";
};

template <>
struct Twin<ST> {
  using Row = st;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &ST::id;
  static constexpr auto dv = &ST::dv;
  static constexpr auto type = &ST::type;
  static constexpr auto flag = &ST::flag;
  static constexpr auto f1 = &ST::f1;
  static constexpr auto f2 = &ST::f2;
  static constexpr auto f3 = &ST::f3;
  static constexpr auto f4 = &ST::f4;
  static constexpr auto r_dv_st = &ST::r_dv_st;
  static constexpr auto r_st_kv = &ST::r_st_kv;
  static constexpr auto r_st_xf = &ST::r_st_xf;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<STATUS> {
  using Row = status;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &STATUS::id;
  static constexpr auto name = &STATUS::name;
  static constexpr auto value = &STATUS::value;
  static constexpr auto quality = &STATUS::quality;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<TPL> {
  using Row = tpl;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &TPL::id;
  static constexpr auto kind = &TPL::kind;
  static constexpr auto n1 = &TPL::n1;
  static constexpr auto name = &TPL::name;
  static constexpr auto n2 = &TPL::n2;
  static constexpr auto n3 = &TPL::n3;
  static constexpr auto time = &TPL::time;
  static constexpr auto event = &TPL::event;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<TPTRACE> {
  using Row = tptrace;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &TPTRACE::id;
  static constexpr auto name = &TPTRACE::name;
  static constexpr auto type = &TPTRACE::type;
  static constexpr auto n1 = &TPTRACE::n1;
  static constexpr auto status = &TPTRACE::status;
  static constexpr auto time = &TPTRACE::time;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<UN> {
  using Row = un;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &UN::id;
  static constexpr auto kv = &UN::kv;
  static constexpr auto nd = &UN::nd;
  static constexpr auto ind = &UN::ind;
  static constexpr auto ibs = &UN::ibs;
  static constexpr auto pmax = &UN::pmax;
  static constexpr auto f1 = &UN::f1;
  static constexpr auto pcur = &UN::pcur;
  static constexpr auto f2 = &UN::f2;
  static constexpr auto f3 = &UN::f3;
  static constexpr auto f4 = &UN::f4;
  static constexpr auto f5 = &UN::f5;
  static constexpr auto f6 = &UN::f6;
  static constexpr auto ana_p = &UN::ana_p;
  static constexpr auto iana_p = &UN::iana_p;
  static constexpr auto ana_q = &UN::ana_q;
  static constexpr auto iana_q = &UN::iana_q;
  static constexpr auto ana_v = &UN::ana_v;
  static constexpr auto iana_v = &UN::iana_v;
  static constexpr auto p = &UN::p;
  static constexpr auto q = &UN::q;
  static constexpr auto f7 = &UN::f7;
  static constexpr auto a = &UN::a;
  static constexpr auto f8 = &UN::f8;
  static constexpr auto ref = &UN::ref;
  static constexpr auto f9 = &UN::f9;
  static constexpr auto f10 = &UN::f10;
  static constexpr auto status = &UN::status;
  static constexpr auto tp_status = &UN::tp_status;
  static constexpr auto r_kv_un = &UN::r_kv_un;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<XF> {
  using Row = xf;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &XF::id;
  static constexpr auto type = &XF::type;
  static constexpr auto f0 = &XF::f0;
  static constexpr auto st = &XF::st;
  static constexpr auto kv = &XF::kv;
  static constexpr auto zkv = &XF::zkv;
  static constexpr auto nd = &XF::nd;
  static constexpr auto znd = &XF::znd;
  static constexpr auto ind = &XF::ind;
  static constexpr auto iznd = &XF::iznd;
  static constexpr auto ibs = &XF::ibs;
  static constexpr auto izbs = &XF::izbs;
  static constexpr auto xf2 = &XF::xf2;
  static constexpr auto zxf2 = &XF::zxf2;
  static constexpr auto ana_p = &XF::ana_p;
  static constexpr auto ana_q = &XF::ana_q;
  static constexpr auto ana_i = &XF::ana_i;
  static constexpr auto ana_t = &XF::ana_t;
  static constexpr auto zana_p = &XF::zana_p;
  static constexpr auto zana_q = &XF::zana_q;
  static constexpr auto zana_i = &XF::zana_i;
  static constexpr auto zana_t = &XF::zana_t;
  static constexpr auto iana_p = &XF::iana_p;
  static constexpr auto iana_q = &XF::iana_q;
  static constexpr auto iana_i = &XF::iana_i;
  static constexpr auto iana_t = &XF::iana_t;
  static constexpr auto izana_p = &XF::izana_p;
  static constexpr auto izana_q = &XF::izana_q;
  static constexpr auto izana_i = &XF::izana_i;
  static constexpr auto izana_t = &XF::izana_t;
  static constexpr auto p = &XF::p;
  static constexpr auto q = &XF::q;
  static constexpr auto i = &XF::i;
  static constexpr auto zp = &XF::zp;
  static constexpr auto zq = &XF::zq;
  static constexpr auto zi = &XF::zi;
  static constexpr auto f1 = &XF::f1;
  static constexpr auto f2 = &XF::f2;
  static constexpr auto status = &XF::status;
  static constexpr auto tp_status = &XF::tp_status;
  static constexpr auto r_st_xf = &XF::r_st_xf;
  static constexpr auto f3 = &XF::f3;
  static constexpr auto f4 = &XF::f4;
  static constexpr auto f5 = &XF::f5;
  static constexpr auto f6 = &XF::f6;
  static constexpr auto f7 = &XF::f7;
  static constexpr auto f8 = &XF::f8;
  static constexpr auto f9 = &XF::f9;
  static constexpr auto f10 = &XF::f10;
  static constexpr auto n1 = &XF::n1;
  static constexpr auto n2 = &XF::n2;
  static constexpr auto f11 = &XF::f11;
  static constexpr auto f12 = &XF::f12;
  static constexpr auto n3 = &XF::n3;
  static constexpr auto n4 = &XF::n4;
  static constexpr auto n5 = &XF::n5;
  static constexpr auto n6 = &XF::n6;
  static constexpr auto f13 = &XF::f13;
  static constexpr auto f14 = &XF::f14;
  static constexpr auto n7 = &XF::n7;
  static constexpr auto n8 = &XF::n8;
  static constexpr auto flag = &XF::flag;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<XF2> {
  using Row = xf2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &XF2::id;
  static constexpr auto p = &XF2::p;
  static constexpr auto q = &XF2::q;
  static constexpr auto i = &XF2::i;
  static constexpr auto iana_p = &XF2::iana_p;
  static constexpr auto iana_q = &XF2::iana_q;
  static constexpr auto ixf = &XF2::ixf;
  static constexpr auto flags = &XF2::flags;
  static constexpr auto r_nd = &XF2::r_nd;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ZBR> {
  using Row = zbr;
  static constexpr Writer kWriter = Writer::Merging;
  static constexpr auto id = &ZBR::id;
  static constexpr auto cb = &ZBR::cb;
  static constexpr auto icb = &ZBR::icb;
  static constexpr auto ind = &ZBR::ind;
  static constexpr auto iznd = &ZBR::iznd;
  static constexpr auto ibs = &ZBR::ibs;
  static constexpr auto izbs = &ZBR::izbs;
  static constexpr auto zbr2 = &ZBR::zbr2;
  static constexpr auto zzbr2 = &ZBR::zzbr2;
  static constexpr auto ana_p = &ZBR::ana_p;
  static constexpr auto ana_q = &ZBR::ana_q;
  static constexpr auto ana_i = &ZBR::ana_i;
  static constexpr auto iana_p = &ZBR::iana_p;
  static constexpr auto iana_q = &ZBR::iana_q;
  static constexpr auto iana_i = &ZBR::iana_i;
  static constexpr auto p = &ZBR::p;
  static constexpr auto q = &ZBR::q;
  static constexpr auto i = &ZBR::i;
  static constexpr auto status = &ZBR::status;
  static constexpr auto tp_status = &ZBR::tp_status;
  static constexpr auto r_kv_zbr = &ZBR::r_kv_zbr;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ZBR2> {
  using Row = zbr2;
  static constexpr Writer kWriter = Writer::Replacing;
  static constexpr auto id = &ZBR2::id;
  static constexpr auto p = &ZBR2::p;
  static constexpr auto q = &ZBR2::q;
  static constexpr auto i = &ZBR2::i;
  static constexpr auto iana_p = &ZBR2::iana_p;
  static constexpr auto iana_q = &ZBR2::iana_q;
  static constexpr auto izbr = &ZBR2::izbr;
  static constexpr auto flags = &ZBR2::flags;
  static constexpr auto r_nd = &ZBR2::r_nd;
  static constexpr const char* kReadingOrder = "order by id";
};

}  // namespace dtsdb
