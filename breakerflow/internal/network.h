/// \file
/// What the stages of a breaker flow work on, by reference to the maps of a cbFlow: each takes only the parts it needs.
#pragma once

#include <QList>
#include <QMap>
#include <unordered_map>

#include "breakerflow/cbflow.h"

namespace dtsdb::internal {

/// Bit of `flags` of nodes and breakers: a walk has still to deal with this one. Set by the stage that reads it.
inline constexpr u32 kWorkMark = 8;

/// What stands on the nodes.
struct FlowDevices {
  QMap<int, cbDevice>& units;
  QMap<int, cbDevice>& loads;
  QMap<int, cbDevice>& capacitors;
  QMap<int, cbDevice>& lines;
  QMap<int, cbDevice>& dcLines;
  QMap<int, cbDevice>& windings;
};

/// The graph of nodes and closed breakers, and the sets that it falls into.
struct FlowNetwork {
  QMap<int, cbNode>& nodes;            ///< by node number
  QMap<int, cbBreaker>& breakers;      ///< by running number, open ones included
  QMap<int, QList<int>>& breakersAt;   ///< by node: its closed breakers
  QMap<int, QList<int>>& setNodes;     ///< by set
  QMap<int, QList<int>>& setBreakers;  ///< by set
};

/// Whether the sets balance.
struct FlowBalances {
  QMap<int, int>& valid;            ///< by set: 1 balanced
  QMap<int, FlowBalance>& balance;  ///< by set
};

/// The groups of loops.
struct FlowGroups {
  QMap<int, QList<int>>& ofSet;          ///< by set: the keys of its groups
  QMap<int, ndGroup>& groups;            ///< by one of their nodes
  std::unordered_map<int, int>& ofNode;  ///< by node: the key of its group; no node is in two
};

}  // namespace dtsdb::internal
