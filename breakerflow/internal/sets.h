/// \file
/// Injections, the sets of nodes that closed breakers join, and whether they balance.
#pragma once

#include <vector>

#include "breakerflow/internal/leaves.h"
#include "breakerflow/internal/network.h"

namespace dtsdb::internal {

/// Sums the power of the devices on each node. Reads the devices, writes the injections of the nodes.
void InjectPower(QMap<int, cbNode>& nodes, const FlowDevices& devices);

/// Gathers the nodes and breakers of each set, in the order of a walk. Reads the graph; writes the nodes' and breakers'
/// marks, the sets with a balance that is still open, and an empty list of groups for each.
void GatherSets(const FlowNetwork& network, const FlowBalances& balances, QMap<int, QList<int>>& groupsOfSet);

/// Tests whether the injections of each set sum to no more than `delta`, and logs those that exceed it.
void TestBalance(const FlowNetwork& network, const FlowBalances& balances, float delta);

/// True when there is something to compute in a set. A node of its own can't be part of it.
bool HasBreakers(const FlowNetwork& network, int set);

/// The breakers of a set that bear the work mark, between their ends as they are or as contracted.
std::vector<FlowEdge> MarkedEdges(const FlowNetwork& network, int set, int cbBreaker::*end1, int cbBreaker::*end2);

}  // namespace dtsdb::internal
