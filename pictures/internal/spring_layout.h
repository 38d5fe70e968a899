/// \file
/// Places for the nodes of a graph that have none, by Graphviz.
#pragma once

#include <utility>
#include <vector>

namespace dtsdb::pictures::internal {

/// A place in the plane, in any unit.
struct PlanePoint {
  double x = 0;
  double y = 0;
};

/// Pairs of nodes, by number.
using Edges = std::vector<std::pair<int, int>>;

/// Lays out a graph with nodes 0 to `nodes` - 1 by springs (sfdp): neighbours stand near each other, parts that don't
/// hang together beside each other. The same graph gets the same places. Empty where Graphviz can't do it, such as
/// without its plugins. Calls from several threads wait for each other.
std::vector<PlanePoint> LayOutBySprings(int nodes, const Edges& edges);

}  // namespace dtsdb::pictures::internal
