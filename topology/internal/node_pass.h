/// \file
/// The node pass: which nodes are electrically one point, and which of these groups are bus sections.
#pragma once

#include <vector>

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Groups nodes and gives each group its section.
///
/// Reads the breakers, the nodes' devices and branch ends, and both lists of levels. Writes the sections and both
/// rings of them; ND `ibs`, `ibs0`, `next`, `n1`, ND_MARK and ND_DEAD; KV `ibs`; CHND. A failed call has written its
/// line through qDebug.
class NodePass {
 public:
  explicit NodePass(const State& state)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_levels(state.levels),
        m_log(state.Log()),
        m_markedNodes(state.arrays ? &state.arrays->markedNodes : nullptr) {}

  /// Lays down the base sections: the groups of nodes that would be one point if every breaker were closed.
  bool LayBaseSections();
  /// Regroups the nodes of the levels of the run by the breakers as they stand. `allnew`: moves are not recorded.
  bool Sort(bool allnew);

  /// Gives a legal group its section, the one that it had where that can be. `nd` is any node of the group, of level
  /// `kv`, whose sections end before `end`.
  bool GiveSection(int nd, int kv, int end, bool allnew);
  /// Puts an illegal group on the dead head.
  bool TakeSection(int nd, int kv, bool allnew);

  /// A section for node `nd`: one that a breaker, open or closed, leads to from its group or, failing that, from a
  /// group so reached; else its base section.
  int SectionNear(int kv, int nd) const;

 private:
  bool SortLevel(int kv, int* givenBack, bool allnew);
  int* MarkedNodes(int bs);
  void CountMarked(int bs, int step);
  void MarkNodes(int kv);
  bool SetSectionsAside(int kv, int end, int* givenBack);
  int UnlinkSectionFor(int nd);
  bool MoveToSection(int nd, int bs, int kv, bool allnew);
  void Claim(int bs);
  int FirstReached(int kv) const;

  Network m_network;
  Sections m_sections;
  Levels m_levels;
  ChangeLog m_log;
  std::vector<int>* m_markedNodes;
};

}  // namespace dtsdb::internal
