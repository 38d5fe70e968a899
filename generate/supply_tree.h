/// \file
/// How power reaches every point of a network.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "generate/plan.h"

namespace dtsdb::tools {

/// Numbers by the points that they belong to, in one block.
class ListsByPoint {
 public:
  ListsByPoint() = default;
  /// Lists the numbers from 0 to `count` - 1; `pointsOf(i)` are the points of number i, -1 for none.
  template <class PointsOf>
  ListsByPoint(std::size_t points, int count, PointsOf pointsOf) : m_first(points + 1) {
    const auto each = [&](auto use) {
      for (int i = 0; i < count; ++i) {
        for (const int point : pointsOf(i)) {
          if (point != -1) use(Index(point), i);
        }
      }
    };
    each([this](std::size_t point, int) { ++m_first[point + 1]; });
    for (std::size_t i = 0; i < points; ++i) m_first[i + 1] += m_first[i];
    m_numbers.resize(m_first.back());
    std::vector<std::size_t> next(m_first.begin(), m_first.end() - 1);
    each([this, &next](std::size_t point, int number) { m_numbers[next[point]++] = number; });
  }

  std::span<const int> Of(int point) const {
    return {m_numbers.data() + m_first[Index(point)], m_numbers.data() + m_first[Index(point) + 1]};
  }

 private:
  std::vector<std::size_t> m_first;
  std::vector<int> m_numbers;
};

/// Branches in service between the same two points, which share what they carry. Star points of transformers side by
/// side count as the same; `from` and `to` are the first of them.
struct Link {
  int from = 0;
  int to = 0;
  std::vector<int> branches;
  bool leadsToStar = false;  ///< `to` is a star point

  int OtherEnd(int point) const { return from == point ? to : from; }
};

struct SupplyTree {
  std::vector<Link> links;   ///< of the whole network
  std::vector<char> inTree;  ///< of each link
  std::vector<int> order;    ///< the points of the tree, each behind the one that it is fed from
  std::vector<int> upward;   ///< of each point: the link that feeds it; -1 of the root and outside the tree
  std::vector<int> parent;   ///< of each point: where that comes from, or -1
};

/// The links of `plan`, and a tree of them from point `root` to all that hang together with it. It goes as far as it
/// can at the higher voltages first, so that power comes down from them.
SupplyTree GrowSupplyTree(const Plan& plan, int root);

}  // namespace dtsdb::tools
