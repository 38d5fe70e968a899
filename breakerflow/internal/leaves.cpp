#include "breakerflow/internal/leaves.h"

#include <queue>
#include <unordered_map>
#include <utility>

namespace dtsdb::internal {
namespace {

/// The edges whose turn has come: by pass, then by place.
using Turn = std::pair<int, int>;
using Turns = std::priority_queue<Turn, std::vector<Turn>, std::greater<>>;

}  // namespace

void TakeLeaves(const std::vector<FlowEdge>& edges, const std::function<void(const FlowEdge&, bool aIsLeaf)>& take) {
  const int count = static_cast<int>(edges.size());
  // The places of the edges left at a node, all in one number by exclusive or: of a leaf, the place of its last edge.
  std::unordered_map<const cbNode*, int> placesAt;
  for (int i = 0; i < count; ++i) {
    placesAt[edges[i].a] ^= i;
    placesAt[edges[i].b] ^= i;
  }

  Turns turns;
  for (int i = 0; i < count; ++i) {
    if (edges[i].a->degree == 1 || edges[i].b->degree == 1) turns.emplace(0, i);
  }
  while (!turns.empty()) {
    const auto [pass, place] = turns.top();
    turns.pop();
    const FlowEdge& edge = edges[place];
    const bool aIsLeaf = edge.a->degree == 1;
    if (!aIsLeaf && edge.b->degree != 1) continue;
    take(edge, aIsLeaf);
    for (cbNode* const node : {edge.a, edge.b}) {
      --node->degree;
      int& left = placesAt[node];
      left ^= place;
      if (node->degree == 1 && left < count) turns.emplace(left > place ? pass : pass + 1, left);
    }
  }
}

}  // namespace dtsdb::internal
