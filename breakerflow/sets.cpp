// Injections, the sets of nodes that closed breakers join, and whether they balance.

#include <vector>

#include "breakerflow/cbflow.h"
#include "breakerflow/find.h"
#include "breakerflow/leaves.h"
#include "breakerflow/log.h"

namespace dtsdb {

void cbFlow::nodeInject() {
  for (cbNode& node : m_ndArray) node.p = node.q = 0;
  Inject(m_unArray, "m_ndArray.find(it_un.data().ind) != m_ndArray.end()");
  Inject(m_ldArray, "m_ndArray.find(it_ld.data().ind) != m_ndArray.end()");
  Inject(m_cpArray, "m_ndArray.find(it_cp.data().ind) != m_ndArray.end()");
  Inject(m_lnArray, "m_ndArray.find(it_ln.data().ind) != m_ndArray.end()");
  Inject(m_dlnArray, "m_ndArray.find(it_dln.data().ind) != m_ndArray.end()");
  Inject(m_xfArray, "m_ndArray.find(it_xf.data().ind) != m_ndArray.end()");
}

/// Adds the power of each device to its node. `assertion` is what the warning of a missing node says.
void cbFlow::Inject(const QMap<int, cbDevice>& devices, const char* assertion) {
  for (const cbDevice& device : devices) {
    cbNode* const node = Find(m_ndArray, device.ind);
    if (!DTSDB_ASSERT(node != nullptr, assertion)) continue;
    node->p += device.p;
    node->q += device.q;
  }
}

void cbFlow::frombs() {
  for (cbNode& node : m_ndArray) node.flags |= kWorkMark;
  for (cbBreaker& breaker : m_cbArray) breaker.flags |= kWorkMark;
  m_bsNdMap.clear();
  m_bsValid.clear();
  m_bsBalance.clear();
  int set = 0;
  for (auto it = m_ndArray.begin(); it != m_ndArray.end(); ++it) {
    if ((it->flags & kWorkMark) != 0) GatherSet(it.key(), set++);
  }
}

/// Gathers the nodes and breakers that hang together with node `first`. A node joins right behind the one it was
/// reached from, so the latest to join is visited first.
void cbFlow::GatherSet(int first, int set) {
  const auto join = [set](cbNode& node) {
    node.flags &= ~kWorkMark;
    node.bs = set;
  };
  QList<int> nodes;
  QList<int> breakers;
  join(m_ndArray[first]);
  std::vector<int> toVisit{first};
  while (!toVisit.empty()) {
    const int nd = toVisit.back();
    toVisit.pop_back();
    nodes.append(nd);
    for (const int key : m_ndcbMap.value(nd)) {
      cbBreaker* const breaker = Find(m_cbArray, key);
      if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
      if (breaker->open || (breaker->flags & kWorkMark) == 0) continue;
      const int other = OtherEnd(*breaker, nd);
      cbNode* const node = Find(m_ndArray, other);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(kknd) != m_ndArray.end()")) continue;
      if ((node->flags & kWorkMark) != 0) {
        join(*node);
        toVisit.push_back(other);
      }
      breakers.append(key);
      breaker->flags &= ~kWorkMark;
    }
  }
  m_bsGroupMap[set] = {};
  m_bsCbMap[set] = breakers;
  m_bsNdMap[set] = nodes;
  m_bsValid[set] = 0;
}

void cbFlow::valid() {
  FlowLog() << "m_delta = " << m_delta << "\n\n";
  for (auto it = m_bsNdMap.cbegin(); it != m_bsNdMap.cend(); ++it) {
    float wtotal = 0;
    float rtotal = 0;
    for (const int nd : it.value()) {
      const cbNode* const node = Find(std::as_const(m_ndArray), nd);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*itnd) != m_ndArray.end()")) continue;
      wtotal += node->p;
      rtotal += node->q;
    }
    // Deliberately without absolute values: a set that lacks power passes, however much it lacks.
    const bool balanced = wtotal <= m_delta && rtotal <= m_delta;
    m_bsValid[it.key()] = balanced ? 1 : 0;
    m_bsBalance[it.key()] = {wtotal, rtotal};
    if (balanced) continue;
    FlowLog() << "bs No. =" << it.key() << "\nwtotal = " << wtotal << "\nrtotal = " << rtotal << "\n\n";
  }
}

/// A set without them needs no computation: a node of its own can't be part of it.
bool cbFlow::HasBreakers(int set) const { return m_bsNdMap.value(set).size() > 1 && !m_bsCbMap.value(set).isEmpty(); }

/// The breakers of a set that bear the work mark, between their ends as they are or as contracted.
std::vector<FlowEdge> cbFlow::MarkedEdges(int set, int cbBreaker::*end1, int cbBreaker::*end2) {
  std::vector<FlowEdge> edges;
  for (const int key : m_bsCbMap.value(set)) {
    cbBreaker* const breaker = Find(m_cbArray, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    if ((breaker->flags & kWorkMark) == 0) continue;
    cbNode* const a = Find(m_ndArray, breaker->*end1);
    cbNode* const b = Find(m_ndArray, breaker->*end2);
    if (!DTSDB_ASSERT(a != nullptr, "m_ndArray.find(ind) != m_ndArray.end()")) continue;
    if (!DTSDB_ASSERT(b != nullptr, "m_ndArray.find(iznd) != m_ndArray.end()")) continue;
    edges.push_back({breaker, a, b});
  }
  return edges;
}

}  // namespace dtsdb
