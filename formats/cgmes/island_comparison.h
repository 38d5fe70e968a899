/// \file
/// The live islands of a model beside the topological islands that its set publishes.
#pragma once

#include <vector>

#include "formats/cgmes/set.h"
#include "formats/cgmes/topological_nodes.h"
#include "formats/cgmes/topology_comparison.h"

namespace dtsdb::tools::cgmes {

/// Adds to `comparison` what differs, and how many islands there are. `published` are the topological nodes of the set
/// that each of `groups` is. Nothing is compared where the set has no islands.
void CompareIslands(const ProfileSet& set, const std::vector<TopologicalNode>& groups,
                    const std::vector<std::vector<int>>& published, TopologyComparison& comparison);

}  // namespace dtsdb::tools::cgmes
