// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The record classes of the network model: plain values that tTable keeps by value. One class stands for each table;
/// docs/model.md describes how they hang together.
#pragma once

#include "include/type_list.h"
#include "model/records/branch_ends.h"
#include "model/records/branches.h"
#include "model/records/devices.h"
#include "model/records/hierarchy.h"
#include "model/records/measurements.h"
#include "model/records/relations_of_levels.h"
#include "model/records/relations_of_nodes.h"
#include "model/records/relations_of_owners.h"
#include "model/records/results.h"

namespace dtsdb {

/// The record classes in the order of their kind codes: of the members of DTSDB, of the object file and of every loop
/// over all tables.
using Records = TypeList<ANALOG, BS, BSL, BUS, CB, CB2, CHND, CO, CP, DLN, DLN2, DV, GLOBAL, ISLAND, KV, LD, LN, LN2,
                         ND, R_CO_DV, R_DV_DLN, R_DV_LN, R_DV_ST, R_KV_BUS, R_KV_CB, R_KV_CP, R_KV_LD, R_KV_ND, R_KV_UN,
                         R_KV_ZBR, R_ND_CB2, R_ND_DLN2, R_ND_LN2, R_ND_XF2, R_ND_ZBR2, R_ST_KV, R_ST_XF, ST, STATUS,
                         TPL, TPTRACE, UN, XF, XF2, ZBR, ZBR2>;

/// The relations among them.
using Relations = TypeList<R_CO_DV, R_DV_DLN, R_DV_LN, R_DV_ST, R_KV_BUS, R_KV_CB, R_KV_CP, R_KV_LD, R_KV_ND, R_KV_UN,
                           R_KV_ZBR, R_ND_CB2, R_ND_DLN2, R_ND_LN2, R_ND_XF2, R_ND_ZBR2, R_ST_KV, R_ST_XF>;

/// Calls `visit.operator()<T>()` for every record class `T`, in order: `ForEachRecordClass([]<class T> { ... })`.
template <class Visitor>
constexpr void ForEachRecordClass(Visitor&& visit) {
  ForEachType(Records(), visit);
}

/// The same for every relation.
template <class Visitor>
constexpr void ForEachRelation(Visitor&& visit) {
  ForEachType(Relations(), visit);
}

/// Kind code of the table of record class `T`: kKindOf<LN> is KIND_LN.
template <class T>
inline constexpr TableKind kKindOf = T::kKind;

}  // namespace dtsdb
