/// \file
/// Random sets of breakers, as a station's arrangements are made of: trees, rings, parallel breakers and what joins
/// them.
#pragma once

#include <algorithm>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace dtsdb::test {

/// Nodes numbered from 0, breakers between them, and injections that sum to zero. The same seed gives the same graph.
///
/// The graph hangs together. Injections are multiples of 1/8, so that single precision sums them exactly.
class RandomGraph {
 public:
  /// Of up to `breakers` breakers, with rings of up to `ringSize` nodes.
  RandomGraph(unsigned seed, int breakers, int ringSize) : m_random(seed), m_ringSize(ringSize) {
    while (static_cast<int>(m_breakers.size()) + m_ringSize + 1 <= breakers) AddPart();
    if (m_nodes == 1) Join(0, NewNode());
    Scramble();
    Inject();
  }

  int NodeCount() const { return static_cast<int>(m_p.size()); }
  const std::vector<std::pair<int, int>>& Breakers() const { return m_breakers; }
  float P(int node) const { return m_p[node]; }
  float Q(int node) const { return m_q[node]; }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }
  int AnyNode() { return Number(0, m_nodes - 1); }
  int NewNode() { return m_nodes++; }
  void Join(int a, int b) {
    if (Number(0, 1) == 1) std::swap(a, b);
    m_breakers.emplace_back(a, b);
  }

  void AddPart() {
    switch (Number(0, 5)) {
      case 0: {  // dangling
        const int to = AnyNode();
        return Join(to, NewNode());
      }
      case 1:  // a ring that shares a node with what is there
        return AddRing(AnyNode());
      case 2: {  // a ring at the end of a breaker
        const int first = NewNode();
        Join(Number(0, first - 1), first);
        return AddRing(first);
      }
      case 3: {  // two or three parallel breakers
        const int from = AnyNode();
        const int to = NewNode();
        for (int i = Number(2, 3); i > 0; --i) Join(from, to);
        return;
      }
      case 4: {  // from a node to itself
        const int node = AnyNode();
        if (Number(0, 3) == 0) Join(node, node);
        return;
      }
      default:  // a breaker beside one that is there
        if (!m_breakers.empty()) {
          const auto [a, b] = m_breakers[Number(0, static_cast<int>(m_breakers.size()) - 1)];
          Join(a, b);
        }
    }
  }

  /// A ring through node `first`, sometimes with a chord.
  void AddRing(int first) {
    std::vector<int> ring{first};
    for (int i = Number(1, m_ringSize - 1); i > 0; --i) ring.push_back(NewNode());
    for (std::size_t i = 0; i < ring.size(); ++i) Join(ring[i], ring[(i + 1) % ring.size()]);
    if (ring.size() > 3 && Number(0, 1) == 1) Join(ring[0], ring[2]);
  }

  /// Numbers the nodes and orders the breakers at random.
  void Scramble() {
    std::vector<int> number(static_cast<std::size_t>(m_nodes));
    for (int i = 0; i < m_nodes; ++i) number[i] = i;
    std::shuffle(number.begin(), number.end(), m_random);
    for (auto& [a, b] : m_breakers) std::tie(a, b) = std::pair(number[a], number[b]);
    std::shuffle(m_breakers.begin(), m_breakers.end(), m_random);
  }

  void Inject() {
    m_p = Balanced();
    m_q = Balanced();
  }
  std::vector<float> Balanced() {
    std::vector<float> values(static_cast<std::size_t>(m_nodes), 0.0F);
    for (int node = 0; node < m_nodes; ++node) {
      if (Number(0, 2) == 0) continue;  // most nodes feed or draw something
      const float value = static_cast<float>(Number(-800, 800)) / 8;
      values[node] += value;
      values[AnyNode()] -= value;
    }
    return values;
  }

  std::mt19937 m_random;
  int m_ringSize;
  int m_nodes = 1;
  std::vector<std::pair<int, int>> m_breakers;
  std::vector<float> m_p;
  std::vector<float> m_q;
};

}  // namespace dtsdb::test
