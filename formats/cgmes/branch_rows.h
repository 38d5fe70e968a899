/// \file
/// What the rows of lines and windings have in common.
#pragma once

#include "formats/cgmes/mapping.h"
#include "model/branch_kinds.h"

namespace dtsdb::tools::cgmes {

/// Fills in levels, nodes and measurement points of a branch between two terminals. Objects::kNone for the to end
/// leaves that to the caller.
template <class Branch>
void SetEnds(const Mapping& mapping, Branch& row, int from, int to) {
  row.kv = mapping.LevelId(from);
  row.nd = mapping.NodeId(from);
  row.ana_p = mapping.Point(from, Measured::kP);
  row.ana_q = mapping.Point(from, Measured::kQ);
  row.ana_i = mapping.Point(from, Measured::kI);
  if (to == Objects::kNone) return;
  row.zkv = mapping.LevelId(to);
  row.znd = mapping.NodeId(to);
  row.zana_p = mapping.Point(to, Measured::kP);
  row.zana_q = mapping.Point(to, Measured::kQ);
  row.zana_i = mapping.Point(to, Measured::kI);
}

/// Fills in the powers: into the branch at its from end, out of it at its to end.
template <class Branch>
void SetPowers(const Mapping& mapping, Branch& row, int from, int to) {
  const Power in = mapping.connections.FlowInto(from);
  row.p = Single(in.p);
  row.q = Single(in.q);
  const Power out = mapping.connections.FlowInto(to);
  row.zp = Single(-out.p);
  row.zq = Single(-out.q);
}

/// The status bits of a branch between two terminals.
template <class Branch>
u32 StatusOf(const Mapping& mapping, int from, int to) {
  using Kind = BranchKind<Branch>;
  if (!mapping.connections.IsInService(mapping.connections.EquipmentOf(from))) return Kind::kOut;
  u32 status = 0;
  if (!mapping.connections.IsConnected(from)) status |= Kind::kOpen1;
  if (to != Objects::kNone && !mapping.connections.IsConnected(to)) status |= Kind::kOpen2;
  return status;
}

}  // namespace dtsdb::tools::cgmes
