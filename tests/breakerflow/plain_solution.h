/// \file
/// What the breaker flow must come to, worked out by other means and in double precision.
#pragma once

#include <Eigen/Dense>
#include <map>
#include <utility>
#include <vector>

#include "breakerflow/cbflow.h"

namespace dtsdb::test {

using Ends = std::vector<std::pair<int, int>>;

/// A row for each node, a column for each breaker: 1 where it begins, -1 where it ends.
inline Eigen::MatrixXd IncidenceOf(int nodes, const Ends& breakers) {
  Eigen::MatrixXd incidence = Eigen::MatrixXd::Zero(nodes, static_cast<Eigen::Index>(breakers.size()));
  for (std::size_t j = 0; j < breakers.size(); ++j) {
    const auto column = static_cast<Eigen::Index>(j);
    incidence(breakers[j].first, column) += 1;
    incidence(breakers[j].second, column) -= 1;
  }
  return incidence;
}

/// The flows of least norm through `breakers` that fit the injections, a column for each column of those. In the parts
/// without loops they are the only ones that fit, and loops that share no node don't influence each other: so one
/// solution of the whole graph serves.
inline Eigen::MatrixXd LeastNormFlows(const Ends& breakers, const Eigen::MatrixXd& injections) {
  const auto nodes = static_cast<int>(injections.rows());
  return IncidenceOf(nodes, breakers).completeOrthogonalDecomposition().solve(injections);
}

/// The flows in a graph without loops, by recursion: a breaker carries all that is injected behind it.
class TreeFlows {
 public:
  TreeFlows(const Ends& breakers, const Eigen::VectorXd& injections)
      : m_injections(injections), m_flows(Eigen::VectorXd::Zero(static_cast<Eigen::Index>(breakers.size()))) {
    for (int j = 0; j < static_cast<int>(breakers.size()); ++j) {
      m_at[breakers[j].first].push_back({j, breakers[j].second, -1});
      m_at[breakers[j].second].push_back({j, breakers[j].first, 1});
    }
    Behind(0, -1);
  }
  const Eigen::VectorXd& Flows() const { return m_flows; }

 private:
  struct Edge {
    int breaker;
    int to;
    int sign;  ///< of the flow from `to` to here
  };
  double Behind(int node, int from) {
    double sum = m_injections[node];
    for (const Edge& edge : m_at[node]) {
      if (edge.breaker == from) continue;
      const double flow = Behind(edge.to, edge.breaker);
      m_flows[edge.breaker] = edge.sign * flow;
      sum += flow;
    }
    return sum;
  }

  std::map<int, std::vector<Edge>> m_at;
  const Eigen::VectorXd& m_injections;
  Eigen::VectorXd m_flows;
};

/// The class of breaker `taken`, found by taking it out: the graph hangs together still (a loop), a part without loops
/// comes off (radial), or both parts have loops (a bridge).
inline u32 ClassOf(int nodes, const Ends& breakers, std::size_t taken) {
  std::vector<int> part(static_cast<std::size_t>(nodes));
  for (int i = 0; i < nodes; ++i) part[i] = i;
  const auto find = [&part](int node) {
    while (part[node] != node) node = part[node] = part[part[node]];
    return node;
  };
  for (std::size_t j = 0; j < breakers.size(); ++j) {
    if (j != taken) part[find(breakers[j].first)] = find(breakers[j].second);
  }
  const auto [from, to] = breakers[taken];
  if (find(from) == find(to)) return CB_LOOP;
  const auto isTree = [&](int root) {
    int edgesLessNodes = 0;
    for (int i = 0; i < nodes; ++i) edgesLessNodes -= find(i) == root ? 1 : 0;
    for (std::size_t j = 0; j < breakers.size(); ++j) {
      if (j != taken && find(breakers[j].first) == root) ++edgesLessNodes;
    }
    return edgesLessNodes == -1;
  };
  return isTree(find(from)) || isTree(find(to)) ? CB_RADIAL : CB_BRIDGE;
}

}  // namespace dtsdb::test
