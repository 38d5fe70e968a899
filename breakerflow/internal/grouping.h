/// \file
/// What is a tree and what is a loop in a set, and which loops touch each other.
#pragma once

#include <vector>

#include "breakerflow/internal/network.h"

namespace dtsdb::internal {

/// Classifies the breakers of a set as radial, bridge or loop, and gathers loops that touch each other into groups.
///
/// Reads the graph and the sets; writes the flags, degrees and loop counts of nodes and breakers, and the groups.
class LoopGrouping {
 public:
  LoopGrouping(const FlowNetwork& network, const FlowGroups& groups) : m_network(network), m_groups(groups) {}

  void GroupSet(int set);
  /// Takes the nodes of `from` into `into`.
  void Merge(ndGroup& into, const ndGroup& from) const;

 private:
  struct SpanningTree;
  void Prepare(int set);
  void PruneTrees(int set);
  int GreatestNode(int set) const;
  void FindLoops(int root, int set);
  std::vector<int> PathUp(const SpanningTree& tree, int from, int until) const;
  int MeetingNode(const SpanningTree& tree, int ind, int iznd) const;
  void TreatLoop(const SpanningTree& tree, const cbBreaker& breaker, int set);
  void AddTo(ndGroup& group, int nd, const char* assertion) const;
  void InsertLoop(int com, ndGroup& loop, int set);

  FlowNetwork m_network;
  FlowGroups m_groups;
};

/// Contracts a group to its node `key`: writes the contracted ends of its breakers and the injection of that node.
void ContractGroup(const FlowNetwork& network, int key, const ndGroup& group);

}  // namespace dtsdb::internal
