/// \file
/// Fragments, the sections that stand for a dead branch end.
#pragma once

#include "topology/internal/change_log.h"
#include "topology/internal/component_views.h"
#include "topology/internal/sections.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// One end of a branch as its fragment is decided on. A fragment is only for a branch with exactly one live end, and
/// stands for the other one.
struct BranchSide {
  BranchEnd end;
  bool hasFragment;  ///< it stands on a fragment
  bool cut;          ///< no power passes: open, on no proper section, or the branch is out of service

  bool NeedsFragment(const BranchSide& facing) const { return cut && !facing.cut; }
  /// The fragment is missing, or there without need.
  bool IsDue(const BranchSide& facing) const { return hasFragment != NeedsFragment(facing); }
};

/// Makes and removes fragments.
///
/// Reads the node rings, the list of all levels and whether the run is a full one. Writes the sections, ND `ibs` of
/// the nodes that move, CHND in an incremental run, and the section of the branch end that it is given. A failed call
/// has written its line through qDebug.
class Fragments {
 public:
  explicit Fragments(const State& state) : m_network(state.network), m_sections(state.Sections()), m_log(state.Log()) {}

  /// How the end `end` of a branch stands. `out`: the branch is out of service.
  BranchSide SideOf(const BranchEnd& end, bool out) const;
  /// The section that a branch end stands on now: an open end what the branch holds, a closed one that of its node.
  int SectionAt(const BranchEnd& end) const { return end.open ? *end.bs : m_network.Node(end.nd).ibs; }

  /// Makes or removes the fragment of a branch end at a node of level `kv`. The fragment of an open end belongs to the
  /// branch alone; the fragment of a closed one takes all nodes of the group.
  bool Toggle(int kv, const BranchEnd& end) const;
  /// The same for the group of a node, without a branch.
  bool ToggleGroup(int kv, int nd) const;
  /// Makes the fragment of an open end, with the number `*bs`.
  bool AddBroken(int kv, int* bs) const;

 private:
  bool MoveGroup(int kv, int nd, int* bs) const;

  Network m_network;
  Sections m_sections;
  ChangeLog m_log;
};

}  // namespace dtsdb::internal
