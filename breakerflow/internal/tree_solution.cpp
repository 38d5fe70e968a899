#include "breakerflow/internal/tree_solution.h"

#include <cmath>
#include <utility>

#include "breakerflow/internal/find.h"
#include "breakerflow/internal/grouping.h"
#include "breakerflow/internal/leaves.h"
#include "breakerflow/internal/sets.h"

namespace dtsdb::internal {
namespace {

/// Adds what `breaker` carries to the injection of `node`, where it arrives, or takes it away, where it leaves.
void Arrive(cbNode& node, const cbBreaker& breaker) {
  node.p += breaker.p;
  node.q += breaker.q;
}
void Leave(cbNode& node, const cbBreaker& breaker) {
  node.p -= breaker.p;
  node.q -= breaker.q;
}

/// From the leaves inwards each breaker carries the injection of the leaf, which then stands at its other end.
void TakeFromLeaves(const FlowNetwork& network, int set) {
  const std::vector<FlowEdge> edges = MarkedEdges(network, set, &cbBreaker::g1, &cbBreaker::g2);
  for (const FlowEdge& edge : edges) {
    ++edge.a->degree;
    ++edge.b->degree;
  }
  TakeLeaves(edges, [](const FlowEdge& edge, bool aIsLeaf) {
    const cbNode& leaf = aIsLeaf ? *edge.a : *edge.b;
    edge.breaker->p = aIsLeaf ? leaf.p : -leaf.p;
    edge.breaker->q = aIsLeaf ? leaf.q : -leaf.q;
    if (aIsLeaf) {
      Arrive(*edge.b, *edge.breaker);
    } else {
      Leave(*edge.a, *edge.breaker);
    }
    edge.breaker->flags &= ~kWorkMark;
  });
}

/// Makes what the tree's breakers bring to node `nd` of a group, and take from it, part of its injection.
void TakeTreeFlows(const FlowNetwork& network, int nd) {
  cbNode* const node = Find(network.nodes, nd);
  if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) return;
  for (const int key : network.breakersAt.value(nd)) {
    cbBreaker* const breaker = Find(network.breakers, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    if ((breaker->flags & kWorkMark) == 0 || (breaker->flags & (CB_RADIAL | CB_BRIDGE)) == 0) continue;
    const bool leaves = breaker->ind == nd;
    if (leaves) {
      Leave(*node, *breaker);
    } else {
      Arrive(*node, *breaker);
    }
    if ((breaker->flags & CB_RADIAL) == 0) {  // a bridge: the node at its other end may be of a group too
      cbNode* const far = Find(network.nodes, leaves ? breaker->iznd : breaker->ind);
      if (!DTSDB_ASSERT(far != nullptr, "m_ndArray.find(iznd) != m_ndArray.end()")) continue;
      if (leaves) {
        Arrive(*far, *breaker);
      } else {
        Leave(*far, *breaker);
      }
    }
    breaker->flags &= ~kWorkMark;
  }
}

}  // namespace

void SolveTree(const FlowNetwork& network, const FlowGroups& groups, int set) {
  if (!HasBreakers(network, set)) return;
  for (const int key : network.setBreakers.value(set)) {
    cbBreaker* const breaker = Find(network.breakers, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    breaker->g1 = breaker->ind;
    breaker->g2 = breaker->iznd;
    breaker->p = breaker->q = 0;
    breaker->flags |= kWorkMark;
    if ((breaker->flags & CB_LOOP) != 0) breaker->flags &= ~kWorkMark;
  }
  for (const int nd : network.setNodes.value(set)) {
    cbNode* const node = Find(network.nodes, nd);
    if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
    node->degree = 0;
    node->sp = node->p;
    node->sq = node->q;
  }
  for (const int key : groups.ofSet.value(set)) {
    ndGroup* const contracted = Find(groups.groups, key);
    if (!DTSDB_ASSERT(contracted != nullptr, "m_groups.find(*it) != m_groups.end()")) continue;
    ContractGroup(network, key, *contracted);
  }
  TakeFromLeaves(network, set);
  for (const int nd : network.setNodes.value(set)) {
    cbNode* const node = Find(network.nodes, nd);
    if (node == nullptr) continue;
    node->p = std::exchange(node->sp, 0.0F);
    node->q = std::exchange(node->sq, 0.0F);
  }
}

/// A node without voltage gets infinite currents. Kept: K59.
void InjectIntoGroups(const FlowNetwork& network, const FlowGroups& groups) {
  for (cbBreaker& breaker : network.breakers) breaker.flags |= kWorkMark;
  for (const ndGroup& group : std::as_const(groups.groups)) {
    for (const int nd : group.m_nodes) TakeTreeFlows(network, nd);
  }
  for (const ndGroup& group : std::as_const(groups.groups)) {
    for (const int nd : group.m_nodes) {
      cbNode* const node = Find(network.nodes, nd);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
      const double a = node->a;
      node->sp = static_cast<float>((std::cos(a) * node->p + std::sin(a) * node->q) / node->v);
      node->sq = static_cast<float>((std::sin(a) * node->p - std::cos(a) * node->q) / node->v);
    }
  }
}

}  // namespace dtsdb::internal
