/// \file
/// What the rows of lines and windings have in common.
#pragma once

#include "formats/xiidm/mapping.h"
#include "model/branch_kinds.h"

namespace dtsdb::tools::xiidm {

template <class Branch>
void SetFrom(const Mapping& mapping, Branch& row, const Terminal& from) {
  row.kv = mapping.LevelId(from);
  row.nd = mapping.NodeId(from);
}

template <class Branch>
void SetTo(const Mapping& mapping, Branch& row, const Terminal& to) {
  row.zkv = mapping.LevelId(to);
  row.znd = mapping.NodeId(to);
}

/// Fills in the powers: `in` flows into the branch at its from end, `out` at its to end, where ours flows out of it.
template <class Branch>
void SetPowers(Branch& row, const Inflow& in, const Inflow& out) {
  row.p = Single(in.p);
  row.q = Single(in.q);
  row.zp = Single(0 - out.p);
  row.zq = Single(0 - out.q);
}

/// The status bits of a branch with these ends connected.
template <class Branch>
u32 StatusOf(const Mapping& mapping, int object, bool from, bool to) {
  using Kind = BranchKind<Branch>;
  if (mapping.objects.IsTrue(object, kOwnOut)) return Kind::kOut;
  return (from ? 0 : Kind::kOpen1) | (to ? 0 : Kind::kOpen2);
}

}  // namespace dtsdb::tools::xiidm
