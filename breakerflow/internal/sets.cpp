#include "breakerflow/internal/sets.h"

#include <vector>

#include "breakerflow/internal/find.h"
#include "breakerflow/internal/log.h"

namespace dtsdb::internal {
namespace {

/// Adds the power of each device to its node. `assertion` is the text of the warning of a missing node.
void Inject(QMap<int, cbNode>& nodes, const QMap<int, cbDevice>& devices, const char* assertion) {
  for (const cbDevice& device : devices) {
    cbNode* const node = Find(nodes, device.ind);
    if (!DTSDB_ASSERT(node != nullptr, assertion)) continue;
    node->p += device.p;
    node->q += device.q;
  }
}

/// Gathers the nodes and breakers that hang together with node `first`. A node joins right behind the one it was
/// reached from, so the latest to join is visited first.
void GatherSet(const FlowNetwork& network, int first, int set) {
  const auto join = [set](cbNode& node) {
    node.flags &= ~kWorkMark;
    node.bs = set;
  };
  QList<int> nodes;
  QList<int> breakers;
  join(network.nodes[first]);
  std::vector<int> toVisit{first};
  while (!toVisit.empty()) {
    const int nd = toVisit.back();
    toVisit.pop_back();
    nodes.append(nd);
    for (const int key : network.breakersAt.value(nd)) {
      cbBreaker* const breaker = Find(network.breakers, key);
      if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
      if (breaker->open || (breaker->flags & kWorkMark) == 0) continue;
      const int other = OtherEnd(*breaker, nd);
      cbNode* const node = Find(network.nodes, other);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(kknd) != m_ndArray.end()")) continue;
      if ((node->flags & kWorkMark) != 0) {
        join(*node);
        toVisit.push_back(other);
      }
      breakers.append(key);
      breaker->flags &= ~kWorkMark;
    }
  }
  network.setBreakers[set] = breakers;
  network.setNodes[set] = nodes;
}

}  // namespace

void InjectPower(QMap<int, cbNode>& nodes, const FlowDevices& devices) {
  for (cbNode& node : nodes) node.p = node.q = 0;
  Inject(nodes, devices.units, "m_ndArray.find(it_un.data().ind) != m_ndArray.end()");
  Inject(nodes, devices.loads, "m_ndArray.find(it_ld.data().ind) != m_ndArray.end()");
  Inject(nodes, devices.capacitors, "m_ndArray.find(it_cp.data().ind) != m_ndArray.end()");
  Inject(nodes, devices.lines, "m_ndArray.find(it_ln.data().ind) != m_ndArray.end()");
  Inject(nodes, devices.dcLines, "m_ndArray.find(it_dln.data().ind) != m_ndArray.end()");
  Inject(nodes, devices.windings, "m_ndArray.find(it_xf.data().ind) != m_ndArray.end()");
}

void GatherSets(const FlowNetwork& network, const FlowBalances& balances, QMap<int, QList<int>>& groupsOfSet) {
  for (cbNode& node : network.nodes) node.flags |= kWorkMark;
  for (cbBreaker& breaker : network.breakers) breaker.flags |= kWorkMark;
  network.setNodes.clear();
  balances.valid.clear();
  balances.balance.clear();
  int set = 0;
  for (auto it = network.nodes.begin(); it != network.nodes.end(); ++it) {
    if ((it->flags & kWorkMark) == 0) continue;
    GatherSet(network, it.key(), set);
    groupsOfSet[set] = {};
    balances.valid[set] = 0;
    ++set;
  }
}

void TestBalance(const FlowNetwork& network, const FlowBalances& balances, float delta) {
  FlowLogLines log;
  log << "m_delta = " << delta << "\n\n";
  for (auto it = network.setNodes.cbegin(); it != network.setNodes.cend(); ++it) {
    float wtotal = 0;
    float rtotal = 0;
    for (const int nd : it.value()) {
      const cbNode* const node = Find(std::as_const(network.nodes), nd);
      if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*itnd) != m_ndArray.end()")) continue;
      wtotal += node->p;
      rtotal += node->q;
    }
    // Without absolute values: a set that lacks power passes, however much it lacks. Kept: K56.
    const bool balanced = wtotal <= delta && rtotal <= delta;
    balances.valid[it.key()] = balanced ? 1 : 0;
    balances.balance[it.key()] = {wtotal, rtotal};
    if (balanced) continue;
    log << "bs No. =" << it.key() << "\nwtotal = " << wtotal << "\nrtotal = " << rtotal << "\n\n";
  }
}

bool HasBreakers(const FlowNetwork& network, int set) {
  return network.setNodes.value(set).size() > 1 && !network.setBreakers.value(set).isEmpty();
}

std::vector<FlowEdge> MarkedEdges(const FlowNetwork& network, int set, int cbBreaker::*end1, int cbBreaker::*end2) {
  std::vector<FlowEdge> edges;
  for (const int key : network.setBreakers.value(set)) {
    cbBreaker* const breaker = Find(network.breakers, key);
    if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
    if ((breaker->flags & kWorkMark) == 0) continue;
    cbNode* const a = Find(network.nodes, breaker->*end1);
    cbNode* const b = Find(network.nodes, breaker->*end2);
    if (!DTSDB_ASSERT(a != nullptr, "m_ndArray.find(ind) != m_ndArray.end()")) continue;
    if (!DTSDB_ASSERT(b != nullptr, "m_ndArray.find(iznd) != m_ndArray.end()")) continue;
    edges.push_back({breaker, a, b});
  }
  return edges;
}

}  // namespace dtsdb::internal
