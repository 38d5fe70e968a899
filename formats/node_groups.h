/// \file
/// Which nodes are one electrical point, as the last topology run has left it in the tables.
#pragma once

#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// Nodes that closed breakers join, or a node alone: a bus section, a fragment, or too small to be one.
struct NodeGroup {
  std::vector<int> nodes;   ///< their numbers in the node table, in its order
  int section = -1;         ///< number of the section or fragment, -1: too small to be one
  bool isFragment = false;  ///< it is no section by itself: a live branch ends in it
  int island = -1;          ///< number of its live island, -1 when it is dead
};

/// All groups, in the order of their first nodes.
std::vector<NodeGroup> NodeGroups(DTSDB& tables);

}  // namespace dtsdb::tools
