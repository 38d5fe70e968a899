/// \file
/// The flows that follow from the injections alone, every loop group standing as one node; and what they leave for the
/// nodes of the groups.
#pragma once

#include "breakerflow/internal/network.h"

namespace dtsdb::internal {

/// Works out the flows of the breakers of a set that lie on no loop. Reads the injections, leaves them as they were.
void SolveTree(const FlowNetwork& network, const FlowGroups& groups, int set);

/// Makes what the breakers of the trees carry part of the injections into the nodes of groups, and turns these into
/// currents.
void InjectIntoGroups(const FlowNetwork& network, const FlowGroups& groups);

}  // namespace dtsdb::internal
