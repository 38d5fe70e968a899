/// \file
/// Small graphs of breakers, as they stand in a cbFlow after loading.
#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "tests/breakerflow/cbflow_probe.h"

namespace dtsdb::test {

/// A cbFlow with breakers between nodes and injections into them, without a database.
///
///     BreakerGraph graph({{1, 2}, {2, 3}});  // breaker 0 from node 1 to 2, breaker 1 from 2 to 3
///     graph.Inject(1, 10);
///     graph.Inject(3, -10);
///     graph.Calculate();
///     graph.P(0);  // 10
class BreakerGraph {
 public:
  explicit BreakerGraph(const std::vector<std::pair<int, int>>& breakers = {}) {
    for (const auto& [from, to] : breakers) Breaker(from, to);
  }
  BreakerGraph(const BreakerGraph&) = delete;
  BreakerGraph& operator=(const BreakerGraph&) = delete;

  /// Adds a closed breaker; returns its key. Its nodes are made with a voltage of 220 at `angle`, in radians.
  int Breaker(int from, int to, float angle = 0.3F) {
    cbBreaker breaker;
    breaker.id = QString::number(m_probe.Breakers().size());
    breaker.ind = from;
    breaker.iznd = to;
    const int key = static_cast<int>(m_probe.Breakers().size());
    m_probe.Breakers().insert(key, breaker);
    for (const int nd : {from, to}) {
      m_probe.BreakersOfNode()[nd].append(key);
      if (m_probe.Nodes().contains(nd)) continue;
      cbNode& node = m_probe.Nodes()[nd];
      node.name = QStringLiteral("N%1").arg(nd);
      node.v = 220;
      node.a = angle;
    }
    return key;
  }

  /// Lets a unit feed node `nd`.
  void Inject(int nd, float p, float q = 0) {
    cbDevice unit;
    unit.ind = nd;
    unit.p = p;
    unit.q = q;
    m_probe.Units().insert(static_cast<int>(m_probe.Units().size()), unit);
  }

  void Calculate() { m_flow.calculate(); }
  /// Makes the sets and groups the loops of set 0.
  void Group() {
    m_probe.NodeInject();
    m_probe.Frombs();
    m_probe.Group(0);
  }

  float P(int breaker) const { return m_flow.Breakers()[breaker].p; }
  float Q(int breaker) const { return m_flow.Breakers()[breaker].q; }
  /// The class of a breaker: CB_LOOP, CB_BRIDGE, CB_RADIAL or what it should never be.
  u32 Class(int breaker) const { return m_flow.Breakers()[breaker].flags & (CB_LOOP | CB_BRIDGE | CB_RADIAL); }
  std::vector<u32> Classes() const {
    std::vector<u32> classes;
    classes.reserve(static_cast<std::size_t>(m_flow.Breakers().size()));
    for (int key = 0; key < m_flow.Breakers().size(); ++key) classes.push_back(Class(key));
    return classes;
  }
  /// The keys of the groups, and the nodes of one.
  QList<int> GroupKeys() { return m_probe.Groups().keys(); }
  QList<int> GroupNodes(int key) { return m_probe.Groups()[key].m_nodes.keys(); }

  cbFlow& Flow() { return m_flow; }
  CbFlowProbe& Probe() { return m_probe; }

 private:
  cbFlow m_flow{nullptr};
  CbFlowProbe m_probe{m_flow};
};

}  // namespace dtsdb::test
