// The flows that follow from the injections alone, every loop group standing as one node; and what they leave for the
// nodes of the groups.

#include <cmath>
#include <utility>

#include "breakerflow/cbflow.h"
#include "breakerflow/find.h"
#include "breakerflow/leaves.h"

namespace dtsdb {
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

}  // namespace

void cbFlow::calculate(int bs) {
  if (!HasBreakers(bs)) return;
  for (const int key : m_bsCbMap.value(bs)) {
    cbBreaker* const breaker = Find(m_cbArray, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    breaker->g1 = breaker->ind;
    breaker->g2 = breaker->iznd;
    breaker->p = breaker->q = 0;
    breaker->flags |= kWorkMark;
    if ((breaker->flags & CB_LOOP) != 0) breaker->flags &= ~kWorkMark;
  }
  for (const int nd : m_bsNdMap.value(bs)) {
    cbNode* const node = Find(m_ndArray, nd);
    if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
    node->degree = 0;
    node->sp = node->p;
    node->sq = node->q;
  }
  for (const int key : m_bsGroupMap.value(bs)) {
    ndGroup* const contracted = Find(m_groups, key);
    if (DTSDB_ASSERT(contracted != nullptr, "m_groups.find(*it) != m_groups.end()")) modify(key, *contracted);
  }
  CalculateTree(bs);
  for (const int nd : m_bsNdMap.value(bs)) {
    cbNode* const node = Find(m_ndArray, nd);
    if (node == nullptr) continue;
    node->p = std::exchange(node->sp, 0.0F);
    node->q = std::exchange(node->sq, 0.0F);
  }
}

/// From the leaves inwards each breaker carries the injection of the leaf, which then stands at its other end.
void cbFlow::CalculateTree(int set) {
  const std::vector<FlowEdge> edges = MarkedEdges(set, &cbBreaker::g1, &cbBreaker::g2);
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

void cbFlow::calculateLoopNodeInject() {
  for (cbBreaker& breaker : m_cbArray) breaker.flags |= kWorkMark;
  for (const ndGroup& group : std::as_const(m_groups)) {
    for (const int nd : group.m_nodes) TakeTreeFlows(nd);
  }
  for (const ndGroup& group : std::as_const(m_groups)) {
    for (const int nd : group.m_nodes) {
      cbNode* const node = Find(m_ndArray, nd);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
      const double a = node->a;
      node->sp = static_cast<float>((std::cos(a) * node->p + std::sin(a) * node->q) / node->v);
      node->sq = static_cast<float>((std::sin(a) * node->p - std::cos(a) * node->q) / node->v);
    }
  }
}

/// Makes what the tree's breakers bring to node `nd` of a group, and take from it, part of its injection.
void cbFlow::TakeTreeFlows(int nd) {
  cbNode* const node = Find(m_ndArray, nd);
  if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) return;
  for (const int key : m_ndcbMap.value(nd)) {
    cbBreaker* const breaker = Find(m_cbArray, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    if ((breaker->flags & kWorkMark) == 0 || (breaker->flags & (CB_RADIAL | CB_BRIDGE)) == 0) continue;
    const bool leaves = breaker->ind == nd;
    if (leaves) {
      Leave(*node, *breaker);
    } else {
      Arrive(*node, *breaker);
    }
    if ((breaker->flags & CB_RADIAL) == 0) {  // a bridge: the node at its other end may be of a group too
      cbNode* const far = Find(m_ndArray, leaves ? breaker->iznd : breaker->ind);
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

}  // namespace dtsdb
