/// \file
/// Which parts of a tree give power to others.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace dtsdb::tools {

/// What the points of a tree need and can give, each vector by point.
struct TreeSupply {
  std::span<const int> order;       ///< the points of the tree, each behind its parent
  std::span<const int> parent;      ///< -1 of the root
  std::vector<int64_t> need;        ///< of what stands on a point
  std::vector<int64_t> leastGiven;  ///< by its units
  std::vector<int64_t> mostGiven;
};

/// What each point's part of the tree, itself and all behind it, is to give towards the root; below 0 it takes.
///
/// A part whose units can feed it gives nothing, one that has too little takes no more than it lacks, and what another
/// lacks comes from those near it that have some left. So power travels no farther than it must.
std::vector<int64_t> PlanExports(const TreeSupply& supply);

}  // namespace dtsdb::tools
