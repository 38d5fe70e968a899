// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Which row of the realtime database stands for a record, and how a table is written there.
#pragma once

#include "model/records.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb {

/// How a table is written.
enum class Writer {
  kMerging,    ///< rows that exist are updated and keep what no record holds; none is deleted
  kReplacing,  ///< all rows are deleted and written anew
};

/// What is known of the rows of record class `Record`: their class, how their table is written, and the query that it
/// is read with.
template <class Record>
struct Twin;

template <>
struct Twin<ANALOG> {
  using Row = analog;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BS> {
  using Row = bs;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BSL> {
  using Row = bsl;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<BUS> {
  using Row = bus;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CB> {
  using Row = cb;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CB2> {
  using Row = cb2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CHND> {
  using Row = chnd;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CO> {
  using Row = co;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<CP> {
  using Row = cp;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DLN> {
  using Row = dln;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DLN2> {
  using Row = dln2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<DV> {
  using Row = dv;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<GLOBAL> {
  using Row = global;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ISLAND> {
  using Row = island;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<KV> {
  using Row = kv;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LD> {
  using Row = ld;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LN> {
  using Row = ln;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<LN2> {
  using Row = ln2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ND> {
  using Row = nd;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<R_CO_DV> {
  using Row = r_co_dv;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by co_id,dv_id";
};

template <>
struct Twin<R_DV_DLN> {
  using Row = r_dv_dln;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by dv_id,dln_id";
};

template <>
struct Twin<R_DV_LN> {
  using Row = r_dv_ln;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by dv_id,ln_id";
};

template <>
struct Twin<R_DV_ST> {
  using Row = r_dv_st;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by dv_id,st_id";
};

template <>
struct Twin<R_KV_BUS> {
  using Row = r_kv_bus;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,bus_id";
};

template <>
struct Twin<R_KV_CB> {
  using Row = r_kv_cb;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,cb_id";
};

template <>
struct Twin<R_KV_CP> {
  using Row = r_kv_cp;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,cp_id";
};

template <>
struct Twin<R_KV_LD> {
  using Row = r_kv_ld;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,ld_id";
};

template <>
struct Twin<R_KV_ND> {
  using Row = r_kv_nd;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,nd_id";
};

template <>
struct Twin<R_KV_UN> {
  using Row = r_kv_un;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,un_id";
};

template <>
struct Twin<R_KV_ZBR> {
  using Row = r_kv_zbr;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by kv_id,zbr_id";
};

template <>
struct Twin<R_ND_CB2> {
  using Row = r_nd_cb2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by nd_id,cb2_id";
};

template <>
struct Twin<R_ND_DLN2> {
  using Row = r_nd_dln2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by nd_id,dln2_id";
};

template <>
struct Twin<R_ND_LN2> {
  using Row = r_nd_ln2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by nd_id,ln2_id";
};

template <>
struct Twin<R_ND_XF2> {
  using Row = r_nd_xf2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by nd_id,xf2_id";
};

template <>
struct Twin<R_ND_ZBR2> {
  using Row = r_nd_zbr2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by nd_id,zbr2_id";
};

template <>
struct Twin<R_ST_KV> {
  using Row = r_st_kv;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by st_id,kv_id";
};

template <>
struct Twin<R_ST_XF> {
  using Row = r_st_xf;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by st_id,xf_id";
};

template <>
struct Twin<ST> {
  using Row = st;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<STATUS> {
  using Row = status;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<TPL> {
  using Row = tpl;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<TPTRACE> {
  using Row = tptrace;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<UN> {
  using Row = un;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<XF> {
  using Row = xf;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<XF2> {
  using Row = xf2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ZBR> {
  using Row = zbr;
  static constexpr Writer kWriter = Writer::kMerging;
  static constexpr const char* kReadingOrder = "order by id";
};

template <>
struct Twin<ZBR2> {
  using Row = zbr2;
  static constexpr Writer kWriter = Writer::kReplacing;
  static constexpr const char* kReadingOrder = "order by id";
};

}  // namespace dtsdb
