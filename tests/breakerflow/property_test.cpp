// Random sets of breakers: the flows and classes against other means of finding them, and Kirchhoff's law.
//
// BREAKER_GRAPHS in the environment sets how many graphs of each kind are tried; BREAKER_ERRORS=1 prints the errors.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>

#include "tests/breakerflow/breaker_graph.h"
#include "tests/breakerflow/plain_solution.h"
#include "tests/breakerflow/random_graph.h"

namespace dtsdb::test {
namespace {

int GraphCount(int usual) {
  const char* const wish = std::getenv("BREAKER_GRAPHS");
  return wish != nullptr ? std::atoi(wish) : usual;
}

/// The computed flows beside the plain ones; errors are parts of the largest flow.
class Compared {
 public:
  Compared(const Ends& breakers, const Eigen::VectorXd& p, const Eigen::VectorXd& q) : m_graph(breakers) {
    for (int node = 0; node < p.size(); ++node) {
      m_graph.Inject(node, static_cast<float>(p[node]), static_cast<float>(q[node]));
    }
    m_graph.Flow().setDelta(0);
    m_graph.Calculate();
    EXPECT_TRUE(m_graph.Flow().IsBalanced(0));
    Eigen::MatrixXd injections(p.size(), 2);
    injections << p, q;
    const Eigen::MatrixXd flows = LeastNormFlows(breakers, injections);
    // The angle mixes active and reactive power on their way through the current: one scale for both.
    const double largest = flows.cwiseAbs().maxCoeff();
    Eigen::MatrixXd actual(flows.rows(), 2);
    for (int j = 0; j < flows.rows(); ++j) actual.row(j) << m_graph.P(j), m_graph.Q(j);
    const Eigen::MatrixXd left = IncidenceOf(static_cast<int>(p.size()), breakers) * actual - injections;
    if (largest == 0) {
      EXPECT_EQ(actual.cwiseAbs().maxCoeff(), 0);
    } else {
      m_error = (actual - flows).cwiseAbs().maxCoeff() / largest;
      m_imbalance = left.cwiseAbs().maxCoeff() / largest;
    }
  }

  double Error() const { return m_error; }
  /// By how much what flows into a node differs from what flows out of it, at the worst node.
  double Imbalance() const { return m_imbalance; }
  BreakerGraph& Graph() { return m_graph; }

  /// Nodes of the largest group of loops.
  int LargestGroup() {
    qsizetype largest = 0;
    for (const ndGroup& group : m_graph.Probe().Groups()) largest = std::max(largest, group.m_nodes.size());
    return static_cast<int>(largest);
  }

 private:
  BreakerGraph m_graph;
  double m_error = 0;
  double m_imbalance = 0;
};

Eigen::VectorXd Injections(const RandomGraph& random, float (RandomGraph::*value)(int) const) {
  Eigen::VectorXd injections(random.NodeCount());
  for (int node = 0; node < random.NodeCount(); ++node) injections[node] = (random.*value)(node);
  return injections;
}

Compared CompareRandom(const RandomGraph& random) {
  return {random.Breakers(), Injections(random, &RandomGraph::P), Injections(random, &RandomGraph::Q)};
}

/// A ring of `nodes` nodes in an order of their numbers by chance: every third one with an injection into one node and
/// out of another only, the others with injections everywhere.
Compared CompareRing(unsigned seed, int nodes) {
  std::mt19937 random(seed);
  std::vector<int> order(static_cast<std::size_t>(nodes));
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), random);
  Ends breakers;
  for (int i = 0; i < nodes; ++i) breakers.emplace_back(order[i], order[(i + 1) % nodes]);
  Eigen::VectorXd p = Eigen::VectorXd::Zero(nodes);
  for (int transfers = seed % 3 == 0 ? 1 : nodes; transfers > 0; --transfers) {
    const double value = std::uniform_int_distribution<int>(-800, 800)(random) / 8.0;
    p[std::uniform_int_distribution<int>(0, nodes - 1)(random)] += value;
    p[std::uniform_int_distribution<int>(0, nodes - 1)(random)] -= value;
  }
  return {breakers, p, -0.5 * p};
}

// What single precision costs, as parts of the largest flow (docs/breaker-flow.md).
constexpr double kError30 = 1e-5;   // groups of up to 30 nodes
constexpr double kError200 = 2e-4;  // groups of up to 200 nodes

double ErrorLimit(int nodes) { return nodes <= 30 ? kError30 : kError200; }

void Report(const char* kind, int nodes, double error, double imbalance) {
  if (std::getenv("BREAKER_ERRORS") == nullptr) return;
  std::printf("%s %d nodes: error %.2e, imbalance %.2e\n", kind, nodes, error, imbalance);
}

class RandomBreakers : public ::testing::TestWithParam<std::pair<int, int>> {};

TEST_P(RandomBreakers, HaveTheFlowsAndClassesOfPlainReasoning) {
  const auto [size, ring] = GetParam();
  for (int seed = 0; seed < GraphCount(60); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const RandomGraph random(static_cast<unsigned>(seed), size, ring);
    Compared compared = CompareRandom(random);
    const int nodes = compared.LargestGroup();
    Report("random", nodes, compared.Error(), compared.Imbalance());
    EXPECT_LE(compared.Error(), ErrorLimit(nodes)) << nodes << " nodes in a group";
    EXPECT_LE(compared.Imbalance(), ErrorLimit(nodes));
    for (std::size_t j = 0; j < random.Breakers().size(); ++j) {
      EXPECT_EQ(compared.Graph().Class(static_cast<int>(j)), ClassOf(random.NodeCount(), random.Breakers(), j));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, RandomBreakers,
                         ::testing::Values(std::pair(6, 2), std::pair(12, 4), std::pair(30, 5), std::pair(60, 8),
                                           std::pair(200, 6), std::pair(200, 30)),
                         [](const auto& test) {
                           return std::to_string(test.param.first) + "BreakersWithRingsOf" +
                                  std::to_string(test.param.second);
                         });

TEST(RandomTrees, HaveTheOnlyFlowsThatFit) {
  for (int seed = 0; seed < GraphCount(60); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(static_cast<unsigned>(seed));
    const int nodes = std::uniform_int_distribution<int>(2, 201)(random);
    Ends breakers;
    Eigen::VectorXd p = Eigen::VectorXd::Zero(nodes);
    for (int node = 1; node < nodes; ++node) {
      const int to = std::uniform_int_distribution<int>(std::max(0, node - 10), node - 1)(random);
      breakers.push_back(seed % 2 == 0 ? std::pair(node, to) : std::pair(to, node));
      const double value = std::uniform_int_distribution<int>(-800, 800)(random) / 8.0;
      p[node] += value;
      p[to] -= value;
    }
    std::shuffle(breakers.begin(), breakers.end(), random);
    Compared compared(breakers, p, 2 * p);
    const Eigen::VectorXd expected = TreeFlows(breakers, p).Flows();
    for (int j = 0; j < expected.size(); ++j) {
      EXPECT_EQ(compared.Graph().P(j), expected[j]) << "sums of eighths are exact";
      EXPECT_EQ(compared.Graph().Class(j), CB_RADIAL);
    }
  }
}

class Rings : public ::testing::TestWithParam<int> {};

TEST_P(Rings, HaveTheLeastNormFlows) {
  for (int seed = 0; seed < GraphCount(10); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Compared compared = CompareRing(static_cast<unsigned>(seed), GetParam());
    Report("ring", GetParam(), compared.Error(), compared.Imbalance());
    EXPECT_LE(compared.Error(), ErrorLimit(GetParam()));
    EXPECT_LE(compared.Imbalance(), ErrorLimit(GetParam()));
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Rings, ::testing::Values(2, 3, 5, 10, 20, 30, 60, 100, 150, 200),
                         [](const auto& test) { return "Of" + std::to_string(test.param); });

}  // namespace
}  // namespace dtsdb::test
