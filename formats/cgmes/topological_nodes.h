/// \file
/// The topological nodes and islands of a model, named as CGMES has them.
#pragma once

#include <string>
#include <vector>

#include "formats/import_report.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::cgmes {

/// A connectivity node in a topological node, or a terminal on it. Texts are UTF-8.
struct Member {
  std::string mrid;
  std::string name;
  bool isLinked = false;  ///< a boundary set names the topological node of this connectivity node
};

/// A group of nodes that closed breakers join: a section, a fragment, or too small to be one.
struct TopologicalNode {
  std::string mrid;  ///< derived from those of its connectivity nodes, so that the same group always has the same one
  std::string name;  ///< of its first bus, else of its first node
  std::string station;                 ///< identity
  std::string level;                   ///< identity
  std::string container;               ///< mRID of the level; empty where the nodes have none
  std::string baseVoltage;             ///< mRID; empty where none is known
  bool isGiven = false;                ///< a boundary set defines it
  bool isFragment = false;             ///< a live branch ends in it, and it is no section by itself
  int section = -1;                    ///< -1: too small to be one
  int island = -1;                     ///< number of its live island, -1 when it is dead
  std::vector<Member> nodes;           ///< its connectivity nodes, by mRID
  std::vector<std::string> terminals;  ///< mRIDs, sorted
};

/// A live island.
struct TopologicalIsland {
  std::string mrid;  ///< derived from those of its topological nodes
  std::string name;
  std::vector<std::string> nodes;  ///< mRIDs, sorted
  std::string reference;           ///< mRID of the topological node that is its reference; empty for none
};

/// All topological nodes, in the order of the node table; behind them the connectivity nodes without equipment in the
/// model, each alone. `tables` has been worked out by the topology; `objects` are those that its records stand for.
/// What has no object gets an mRID derived from its table and identity. The star points of transformers are no
/// topological nodes.
std::vector<TopologicalNode> TopologicalNodes(DTSDB& tables, const ImportReport& objects);

/// The live islands of these nodes, by number.
std::vector<TopologicalIsland> TopologicalIslands(DTSDB& tables, const std::vector<TopologicalNode>& nodes);

/// An mRID that follows from `kind` and `text` alone: a UUID of version 5.
std::string DerivedMrid(const std::string& kind, const std::string& text);

}  // namespace dtsdb::tools::cgmes
