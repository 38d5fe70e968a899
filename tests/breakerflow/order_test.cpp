// The order of operations, which the last digits of every flow depend on: what is done for speed must give the same
// bits, and take the same breakers in the same order, as the plain form written out here.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "breakerflow/internal/leaves.h"
#include "tests/breakerflow/cbflow_probe.h"

namespace dtsdb::test {
namespace {

using internal::FlowEdge;
using internal::TakeLeaves;

/// The inversion element by element, with the pivot compared in double precision.
bool PlainInversion(Matrix<float>& a) {
  const int n = a.cols();
  std::vector<int> rowOf(static_cast<std::size_t>(n));
  std::vector<int> colOf(static_cast<std::size_t>(n));
  const auto swapRows = [&](int k, int other) {
    for (int j = 0; j < n; ++j) std::swap(a.data()[k][j], a.data()[other][j]);
  };
  const auto swapColumns = [&](int k, int other) {
    for (int i = 0; i < n; ++i) std::swap(a.data()[i][k], a.data()[i][other]);
  };
  for (int k = 0; k < n; ++k) {
    double greatest = 0;
    rowOf[k] = colOf[k] = k;
    for (int i = k; i < n; ++i) {
      for (int j = k; j < n; ++j) {
        const double size = std::fabs(static_cast<double>(a.get(i, j)));
        if (!(size > greatest)) continue;
        greatest = size;
        rowOf[k] = i;
        colOf[k] = j;
      }
    }
    if (greatest == 0) return false;
    swapRows(k, rowOf[k]);
    swapColumns(k, colOf[k]);
    a.set(k, k, static_cast<float>(1.0 / a.get(k, k)));
    for (int j = 0; j < n; ++j) {
      if (j != k) a.set(k, j, a.get(k, j) * a.get(k, k));
    }
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        if (i != k && j != k) a.set(i, j, a.get(i, j) - a.get(i, k) * a.get(k, j));
      }
    }
    for (int i = 0; i < n; ++i) {
      if (i != k) a.set(i, k, -a.get(i, k) * a.get(k, k));
    }
  }
  for (int k = n - 1; k >= 0; --k) {
    swapRows(k, colOf[k]);
    swapColumns(k, rowOf[k]);
  }
  return true;
}

Matrix<float> PlainProduct(const Matrix<float>& a, const Matrix<float>& b) {
  Matrix<float> c(a.rows(), b.cols(), 0.0F);
  for (int i = 0; i < c.rows(); ++i) {
    for (int j = 0; j < c.cols(); ++j) {
      float sum = 0;
      for (int k = 0; k < a.cols(); ++k) sum += a.get(i, k) * b.get(k, j);
      c.set(i, j, sum);
    }
  }
  return c;
}

/// Same bits; any two that are no number count as the same.
void ExpectSame(const Matrix<float>& expected, const Matrix<float>& actual) {
  for (int i = 0; i < expected.rows(); ++i) {
    for (int j = 0; j < expected.cols(); ++j) {
      const float one = expected.get(i, j);
      const float other = actual.get(i, j);
      if (std::isnan(one) && std::isnan(other)) continue;
      ASSERT_EQ(std::bit_cast<u32>(one), std::bit_cast<u32>(other)) << i << ", " << j << ": " << one << ", " << other;
    }
  }
}

class OrderOfOperations : public ::testing::Test {
 protected:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }

  /// Random elements: some zero, and where `wild` some infinite, tiny or no number.
  Matrix<float> RandomMatrix(int rows, int cols, bool wild) {
    Matrix<float> matrix(rows, cols, 0.0F);
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < cols; ++j) matrix.set(i, j, RandomElement(wild));
    }
    return matrix;
  }
  float RandomElement(bool wild) {
    switch (Number(0, wild ? 9 : 5)) {
      case 0:
        return 0.0F;
      case 1:
        return -0.0F;
      case 2:
        return static_cast<float>(Number(-1, 1));
      case 6:
        return std::numeric_limits<float>::infinity();
      case 7:
        return std::numeric_limits<float>::quiet_NaN();
      case 8:
        return std::numeric_limits<float>::denorm_min() * static_cast<float>(Number(-3, 3));
      default:
        return static_cast<float>(Number(-1000000, 1000000)) / 7919;
    }
  }

  /// Calls `check` with many random states, each by itself repeatable.
  void ForEachSeed(const std::function<void()>& check) {
    for (unsigned seed = 0; seed < 200 && !HasFailure(); ++seed) {
      SCOPED_TRACE(seed);
      m_random.seed(seed);
      check();
    }
  }

  std::mt19937 m_random;
  cbFlow m_flow{nullptr};
  CbFlowProbe m_probe{m_flow};
};

TEST_F(OrderOfOperations, OfAnInversionIsKept) {
  ForEachSeed([this] {
    for (const bool wild : {false, true}) {
      const int n = Number(1, 24);
      Matrix<float> actual = RandomMatrix(n, n, wild);
      Matrix<float> expected(actual);
      EXPECT_EQ(PlainInversion(expected), m_probe.InvertGaussJordan(actual));
      ExpectSame(expected, actual);
    }
  });
}

TEST_F(OrderOfOperations, OfAProductIsKept) {
  ForEachSeed([this] {
    for (const bool wild : {false, true}) {
      Matrix<float> a = RandomMatrix(Number(1, 12), Number(1, 12), wild);
      Matrix<float> b = RandomMatrix(a.cols(), Number(1, 12), wild);
      Matrix<float> c(a.rows(), b.cols(), 0.0F);
      ASSERT_TRUE(m_probe.MatrixMultiply(a, b, c));
      ExpectSame(PlainProduct(a, b), c);
    }
  });
}

/// Breakers between random nodes, with the degrees of the nodes.
struct Graph {
  std::vector<cbNode> nodes;
  std::vector<cbBreaker> breakers;
  std::vector<FlowEdge> edges;

  Graph(const std::vector<std::pair<int, int>>& ends, int nodeCount)
      : nodes(static_cast<std::size_t>(nodeCount)), breakers(ends.size()) {
    for (std::size_t i = 0; i < ends.size(); ++i) {
      edges.push_back({&breakers[i], &nodes[ends[i].first], &nodes[ends[i].second]});
      ++nodes[ends[i].first].degree;
      ++nodes[ends[i].second].degree;
    }
  }
  int PlaceOf(const FlowEdge& edge) const { return static_cast<int>(edge.breaker - breakers.data()); }
};

using Taken = std::vector<std::pair<int, bool>>;  // place and whether `a` was the leaf

/// Pass by pass through all edges.
Taken TakePlainly(Graph& graph) {
  Taken taken;
  std::vector<bool> left(graph.edges.size(), true);
  for (bool any = true; any;) {
    any = false;
    for (std::size_t i = 0; i < graph.edges.size(); ++i) {
      const FlowEdge& edge = graph.edges[i];
      const bool aIsLeaf = edge.a->degree == 1;
      if (!left[i] || (!aIsLeaf && edge.b->degree != 1)) continue;
      taken.emplace_back(static_cast<int>(i), aIsLeaf);
      left[i] = false;
      any = true;
      --edge.a->degree;
      --edge.b->degree;
    }
  }
  return taken;
}

TEST_F(OrderOfOperations, OfLeavesTakenIsKept) {
  ForEachSeed([this] {
    const int nodeCount = Number(2, 60);
    std::vector<std::pair<int, int>> ends;
    for (int node = 1; node < nodeCount; ++node) {
      ends.emplace_back(node, Number(0, 9) == 0 ? node : Number(std::max(0, node - 5), node - 1));
      if (Number(0, 9) == 0) ends.emplace_back(Number(0, nodeCount - 1), Number(0, nodeCount - 1));
      if (Number(0, 1) == 0) std::swap(ends.back().first, ends.back().second);
    }
    std::shuffle(ends.begin(), ends.end(), m_random);
    Graph plain(ends, nodeCount);
    Graph graph(ends, nodeCount);
    Taken taken;
    TakeLeaves(graph.edges,
               [&](const FlowEdge& edge, bool aIsLeaf) { taken.emplace_back(graph.PlaceOf(edge), aIsLeaf); });
    EXPECT_EQ(taken, TakePlainly(plain));
    for (int node = 0; node < nodeCount; ++node) EXPECT_EQ(graph.nodes[node].degree, plain.nodes[node].degree);
  });
}

TEST(TakingLeaves, CostsNoMoreThanTheyAreMany) {
  // A chain listed against the direction in which it falls apart: each pass finds one breaker.
  constexpr int kNodes = 100000;
  std::vector<std::pair<int, int>> ends;
  for (int node = kNodes - 1; node > 1; --node) ends.emplace_back(node - 1, node);
  ends.emplace_back(0, 1);
  ends.emplace_back(kNodes - 1, kNodes - 1);  // a loop at one end: only the other is a leaf
  Graph graph(ends, kNodes);
  int taken = 0;
  TakeLeaves(graph.edges, [&taken](const FlowEdge&, bool) { ++taken; });
  EXPECT_EQ(taken, kNodes - 1);
}

}  // namespace
}  // namespace dtsdb::test
