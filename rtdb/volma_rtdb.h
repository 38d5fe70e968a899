// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The rows of the realtime database: one class for each record class of the model, under its lower-case name.
///
/// A row has all the fields of its record, each as a column of the same name, and where other programs keep things of
/// their own either a named column or a range of raw bytes. docs/realtime-exchange.md describes the tables.
#pragma once

#include "include/type_list.h"
#include "rtdb/rows/branch_ends.h"
#include "rtdb/rows/branches.h"
#include "rtdb/rows/devices.h"
#include "rtdb/rows/hierarchy.h"
#include "rtdb/rows/measurements.h"
#include "rtdb/rows/relations_of_levels.h"
#include "rtdb/rows/relations_of_nodes.h"
#include "rtdb/rows/relations_of_owners.h"
#include "rtdb/rows/results.h"

namespace dtsdb {

/// The classes of rows, in the order of the tables.
using Rows = TypeList<analog, bs, bsl, bus, cb, cb2, chnd, co, cp, dln, dln2, dv, global, island, kv, ld, ln, ln2, nd,
                      r_co_dv, r_dv_dln, r_dv_ln, r_dv_st, r_kv_bus, r_kv_cb, r_kv_cp, r_kv_ld, r_kv_nd, r_kv_un,
                      r_kv_zbr, r_nd_cb2, r_nd_dln2, r_nd_ln2, r_nd_xf2, r_nd_zbr2, r_st_kv, r_st_xf, st, status, tpl,
                      tptrace, un, xf, xf2, zbr, zbr2>;

/// Calls `visit.operator()<Row>()` for every class of rows, in order.
template <class Visitor>
constexpr void ForEachRowClass(Visitor&& visit) {
  ForEachType(Rows(), visit);
}

}  // namespace dtsdb
