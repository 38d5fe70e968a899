/// \file
/// Comparing electrical results: which nodes are one point, what is live and what is dead.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// A node or piece of equipment that is in another state in each of two results.
struct TopologyDifference {
  std::string table;
  std::string identity;
  std::string here;
  std::string there;
};

/// A model of its own with all records and all numbering of `database`; nothing when it can't be copied.
std::optional<DTSDB> CopyOf(DTSDB& database);

/// What differs between the topologies of two models that should have the same records. Another number of records is a
/// difference without identity. The numbers of sections and islands
/// don't count: a node's state is the first node of its section and whether it is live.
std::vector<TopologyDifference> CompareTopology(DTSDB& here, DTSDB& there);

/// What differs between the topology in `database` and that of a full run, which is made on a copy. A model that
/// can't be copied and a full run that fails are a difference without table and identity.
std::vector<TopologyDifference> CompareWithFullRun(DTSDB& database);

}  // namespace dtsdb::tools
