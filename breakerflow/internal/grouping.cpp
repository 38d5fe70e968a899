#include "breakerflow/internal/grouping.h"

#include <algorithm>
#include <set>
#include <utility>

#include "breakerflow/internal/find.h"
#include "breakerflow/internal/leaves.h"
#include "breakerflow/internal/sets.h"

namespace dtsdb::internal {

/// A tree of breakers over the nodes that the walk has reached.
struct LoopGrouping::SpanningTree {
  /// By node: the breaker towards the root, -1 at the root.
  std::unordered_map<int, int> parent;

  /// That breaker, -1 also for a node out of reach.
  int ParentOf(int nd) const {
    const auto found = parent.find(nd);
    return found == parent.end() ? -1 : found->second;
  }
};

void LoopGrouping::GroupSet(int set) {
  if (!HasBreakers(m_network, set)) return;
  Prepare(set);
  PruneTrees(set);
  const QList<int> breakers = m_network.setBreakers.value(set);
  for (const int key : breakers) {
    cbBreaker* const breaker = Find(m_network.breakers, key);
    if (breaker != nullptr && (breaker->flags & CB_RADIAL) == 0) breaker->flags |= CB_BRIDGE;
  }
  const int root = GreatestNode(set);
  if (root == -1) return;
  FindLoops(root, set);
  for (const int key : breakers) {
    cbBreaker* const breaker = Find(m_network.breakers, key);
    if (breaker == nullptr || breaker->loops == 0) continue;
    breaker->flags |= CB_LOOP;
    breaker->flags &= ~(CB_BRIDGE | CB_RADIAL);
  }
}

void LoopGrouping::Prepare(int set) {
  for (const int nd : m_network.setNodes.value(set)) {
    cbNode* const node = Find(m_network.nodes, nd);
    if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
    node->degree = static_cast<int>(m_network.breakersAt.value(nd).size());
    node->flags |= kWorkMark;
  }
  for (const int key : m_network.setBreakers.value(set)) {
    cbBreaker* const breaker = Find(m_network.breakers, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    breaker->loops = 0;
    breaker->flags |= kWorkMark;
  }
}

/// Takes what dangles from the set off it, breaker by breaker.
void LoopGrouping::PruneTrees(int set) {
  TakeLeaves(MarkedEdges(m_network, set, &cbBreaker::ind, &cbBreaker::iznd), [](const FlowEdge& edge, bool aIsLeaf) {
    (aIsLeaf ? edge.a : edge.b)->flags &= ~kWorkMark;
    edge.breaker->flags &= ~kWorkMark;
    edge.breaker->flags |= CB_RADIAL;
  });
}

/// The first of the nodes on which most breakers are left, -1 when no loop is left.
int LoopGrouping::GreatestNode(int set) const {
  int greatest = -1;
  int degree = 1;
  for (const int nd : m_network.setNodes.value(set)) {
    const cbNode* const node = Find(m_network.nodes, nd);
    if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
    if (node->degree <= degree) continue;
    degree = node->degree;
    greatest = nd;
  }
  return greatest;
}

/// Spans a tree over what is left of the set; each breaker that the tree doesn't need closes a loop. A node joins
/// right behind the one it was reached from, so the latest to join is visited first.
void LoopGrouping::FindLoops(int root, int set) {
  SpanningTree tree;
  tree.parent[root] = -1;
  m_network.nodes[root].flags &= ~kWorkMark;
  m_groups.ofSet[set].clear();
  std::vector<int> toVisit{root};
  while (!toVisit.empty()) {
    const int nd = toVisit.back();
    toVisit.pop_back();
    if (!DTSDB_ASSERT(m_network.breakersAt.contains(nd), "m_ndcbMap.find(curNode) != m_ndcbMap.end()")) continue;
    for (const int key : m_network.breakersAt.value(nd)) {
      cbBreaker* const breaker = Find(m_network.breakers, key);
      if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
      if ((breaker->flags & kWorkMark) == 0) continue;
      const int other = OtherEnd(*breaker, nd);
      cbNode* const node = Find(m_network.nodes, other);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(iznd) != m_ndArray.end()")) continue;
      breaker->flags &= ~kWorkMark;
      if ((node->flags & kWorkMark) != 0) {
        node->flags &= ~kWorkMark;
        tree.parent[other] = key;
        toVisit.push_back(other);
      } else {
        ++breaker->loops;
        TreatLoop(tree, *breaker, set);
      }
    }
  }
}

/// The nodes from `from` towards the root, up to `until` or else to the root.
std::vector<int> LoopGrouping::PathUp(const SpanningTree& tree, int from, int until) const {
  std::vector<int> path{from};
  while (path.back() != until) {
    const int up = tree.ParentOf(path.back());
    if (up == -1) break;
    const cbBreaker* const breaker = Find(m_network.breakers, up);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(cba) != m_cbArray.end()")) break;
    path.push_back(OtherEnd(*breaker, path.back()));
  }
  return path;
}

/// The node where the ways from both ends of a breaker towards the root meet, -1 when they don't.
int LoopGrouping::MeetingNode(const SpanningTree& tree, int ind, int iznd) const {
  const std::vector<int> path = PathUp(tree, ind, iznd);
  if (path.back() == iznd) return iznd;
  const std::vector<int> other = PathUp(tree, iznd, ind);
  if (other.back() == ind) return ind;
  const auto apart = std::mismatch(path.rbegin(), path.rend(), other.rbegin(), other.rend());
  return apart.first == path.rbegin() ? -1 : *std::prev(apart.first);
}

/// Makes the loop that `breaker` closes in the tree a group, by itself or with those that it touches.
void LoopGrouping::TreatLoop(const SpanningTree& tree, const cbBreaker& breaker, int set) {
  const int com = MeetingNode(tree, breaker.ind, breaker.iznd);
  if (!DTSDB_ASSERT(com != -1, "comNode != -1")) return;
  ndGroup loop;
  AddTo(loop, com, "m_ndArray.find(comNode) != m_ndArray.end()");
  const std::pair<int, const char*> ends[] = {{breaker.ind, "m_ndArray.find(ind) != m_ndArray.end()"},
                                              {breaker.iznd, "m_ndArray.find(iznd) != m_ndArray.end()"}};
  for (const auto& [end, assertion] : ends) {
    for (const int nd : PathUp(tree, end, com)) {
      if (nd == com) break;
      AddTo(loop, nd, assertion);
      if (cbBreaker* const up = Find(m_network.breakers, tree.ParentOf(nd))) ++up->loops;
    }
  }
  InsertLoop(com, loop, set);
}

void LoopGrouping::AddTo(ndGroup& group, int nd, const char* assertion) const {
  const cbNode* const node = Find(m_network.nodes, nd);
  if (DTSDB_ASSERT(node != nullptr, assertion)) group.add(nd, node->p, node->q, node->v, node->a);
}

/// Puts a loop among the groups. Those it shares a node with become one with it, under the least of their keys.
void LoopGrouping::InsertLoop(int com, ndGroup& loop, int set) {
  std::set<int> touched;
  for (const int nd : std::as_const(loop.m_nodes)) {
    const auto found = m_groups.ofNode.find(nd);
    if (found != m_groups.ofNode.end()) touched.insert(found->second);
  }
  const int key = touched.empty() ? com : *touched.begin();
  if (touched.empty()) {
    m_groups.groups.insert(com, loop);
    m_groups.ofSet[set].append(com);
  } else {
    ndGroup& first = m_groups.groups[key];
    for (auto further = std::next(touched.begin()); further != touched.end(); ++further) {
      ndGroup& other = m_groups.groups[*further];
      Merge(first, other);
      for (const int nd : std::as_const(other.m_nodes)) m_groups.ofNode[nd] = key;
      m_groups.groups.remove(*further);
      m_groups.ofSet[set].removeAll(*further);
    }
    Merge(first, loop);
  }
  for (const int nd : std::as_const(loop.m_nodes)) m_groups.ofNode[nd] = key;
}

void LoopGrouping::Merge(ndGroup& into, const ndGroup& from) const {
  for (const int nd : from.m_nodes) AddTo(into, nd, "m_ndArray.find(*it) != m_ndArray.end()");
}

void ContractGroup(const FlowNetwork& network, int key, const ndGroup& group) {
  for (const int nd : group.m_nodes) {
    for (const int cb : network.breakersAt.value(nd)) {
      cbBreaker* const breaker = Find(network.breakers, cb);
      if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
      if ((breaker->flags & CB_LOOP) != 0) {
        breaker->g1 = breaker->g2 = key;
      } else if (breaker->ind == nd) {
        breaker->g1 = key;
      } else {
        breaker->g2 = key;
      }
    }
  }
  cbNode* const node = Find(network.nodes, key);
  if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(key) != m_ndArray.end()")) return;
  node->p = group.m_p;
  node->q = group.m_q;
}

}  // namespace dtsdb::internal
