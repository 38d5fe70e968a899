/// \file
/// Taking a graph of nodes and breakers apart from its leaves.
#pragma once

#include <functional>
#include <vector>

#include "breakerflow/cbflow.h"

namespace dtsdb::internal {

/// A breaker between two nodes, which may be the same.
struct FlowEdge {
  cbBreaker* breaker;
  cbNode* a;
  cbNode* b;
};

/// Takes away, one by one, the edges that are the last at one of their nodes, until there is none. The `degree` of each
/// node counts the edges at it and is lowered with them.
///
/// The order is that of passes through `edges` from first to last, each taking the edges that can be taken when their
/// turn comes: sums made on the way always round alike. `take` is called with each, `a` or else `b` being the leaf.
/// The cost is n log n all the same.
void TakeLeaves(const std::vector<FlowEdge>& edges, const std::function<void(const FlowEdge&, bool aIsLeaf)>& take);

}  // namespace dtsdb::internal
