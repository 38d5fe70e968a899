/// \file
/// What an incremental run means for branch ends and shunt devices, and for the islands.
#pragma once

#include "topology/internal/fragments.h"
#include "topology/internal/levels.h"

namespace dtsdb::internal {

/// What a change reaches beyond its component; only ever set.
struct ChangeReach {
  bool* islands;  ///< the islands have to be worked out again
  bool* level;    ///< something in the voltage level stands on another section
};

/// A branch end that is followed up: its record and the memory of both ends of the branch.
struct EndVisit {
  int number;  ///< of the end record
  int kind;    ///< kind code of its table
  EndMemory memory[2];
};

/// Compares the branch ends and shunt devices of the levels of the run with what their records remember.
///
/// Reads the nodes, the `status` of branches and devices and the levels of the run. Writes end records' `flags`;
/// `tp_status` of branches; isolation bits and `ibs` of devices; BS `island`; TPL; the levels of the run, which those
/// of far ends with a new fragment join; and through Fragments sections, nodes, CHND and the branches' sections. A
/// failed call has written its line through qDebug.
class ComponentChange {
 public:
  explicit ComponentChange(const State& state)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_levels(state.levels),
        m_log(state.Log()),
        m_fragments(state) {}

  /// Goes over the levels of the run, those included that it adds on the way. A branch with both ends in them is seen
  /// once from each end.
  bool FollowAll(bool* islandChanged) const;
  /// One branch as seen from its end at node `nd` of level `kv`. Only the visit from an end changes its memory.
  bool FollowBranch(int kv, int nd, const BranchView& branch, const EndVisit& visit, const ChangeReach& reach) const;
  /// One shunt device.
  bool FollowShunt(const ShuntView& device, const ChangeReach& reach) const;

 private:
  struct Sides;
  bool FollowBranches(int kv, const ChangeReach& reach) const;
  bool FollowShunts(int kv, const ChangeReach& reach) const;
  bool AdjustFragments(int kv, const Sides& sides) const;
  void CompareEnd(const Sides& sides, bool nearWas, bool farWas, bool* islandChanged) const;

  Network m_network;
  Sections m_sections;
  Levels m_levels;
  ChangeLog m_log;
  Fragments m_fragments;
};

}  // namespace dtsdb::internal
