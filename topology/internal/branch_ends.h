/// \file
/// The ends of branches: which are isolated, and on which sections they lie.
#pragma once

#include "topology/internal/fragments.h"
#include "topology/internal/levels.h"

namespace dtsdb::internal {

/// Works out the branch ends of the voltage levels of the run.
///
/// Reads the nodes, the status words of the branches and the levels of the run. Writes the branches' `tp_status`,
/// `ibs` and `izbs`, the end records' `flags`, and through Fragments sections and nodes.
class BranchEnds {
 public:
  explicit BranchEnds(const State& state)
      : m_network(state.network), m_levels(state.levels), m_sections(state.Sections()), m_fragments(state) {}

  /// Works out all ends on the nodes of level `kv`.
  bool WorkOutLevel(int kv) const;
  /// Works out one branch end as seen from node `nd` of level `kv`: its isolation bits, and with them the fragments of
  /// both ends. Runs once from each end; the second run finds the work done. A failure has written its line through
  /// qDebug.
  bool WorkOut(int kv, int nd, const BranchView& branch, const EndMemory& memory) const;
  /// Gives the closed ends of the branches in the levels of the run the sections of their nodes.
  void AssignSections() const;

 private:
  template <class Branch>
  void AssignSections(Branch& branch, int number) const;
  template <class Branch>
  bool IsEnd2Open(const Branch& branch, int number) const;

  Network m_network;
  Levels m_levels;
  Sections m_sections;
  Fragments m_fragments;
};

}  // namespace dtsdb::internal
