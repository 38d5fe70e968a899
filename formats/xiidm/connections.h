/// \file
/// How the objects of an XIIDM file hang together: the nodes of all levels, and the ends of equipment on them.
#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/import/inflow.h"
#include "formats/xiidm/network.h"

namespace dtsdb::tools::xiidm {

/// An end of equipment.
struct Terminal {
  int object;
  int side;   ///< 0 for the one end of a device, else 1, 2 or 3
  int level;  ///< the object
  int node;   ///< a place in Connections::Nodes()
  bool isConnected;
};

/// A node of a node-breaker level, or a bus.
struct Node {
  int level;              ///< the object
  int number;             ///< in a node-breaker level, else Objects::kNone
  int bus;                ///< the object, else Objects::kNone
  std::string name = {};  ///< the name that our own export gave it
};

/// The connections of `network`, which must live as long as this and stay as it is.
///
/// Internal connections can't be opened: nodes that they join are one, that of the lowest number. A switch of our own
/// export that stands for what is off makes a terminal one that isn't connected to the node behind it.
class Connections {
 public:
  /// Throws Failure, with file, line and id, for equipment on a level, node or bus that isn't there.
  explicit Connections(const Network& network);

  const std::vector<Node>& Nodes() const { return m_nodes; }
  /// The place of the node that stands for those joined to `node`.
  int Joined(int node) const { return m_parent[static_cast<std::size_t>(node)]; }

  /// The ends of equipment, by their numbers, on nodes that stand for those joined to them; none for what has no ends.
  std::span<const Terminal> TerminalsOf(int object) const;
  const Terminal& End(int object, std::size_t place) const { return TerminalsOf(object)[place]; }

  /// The published flow into the equipment; 0 where there is none.
  Inflow FlowInto(const Terminal& terminal) const;
  bool HasFlow(const Terminal& terminal) const {
    return m_network.objects.Has(terminal.object, AtSide(kP, terminal.side));
  }

  /// The node of a level with this number; Objects::kNone without one.
  int FindNode(int level, int number) const;

 private:
  int NodeOf(int level, int number);
  void AddBuses();
  void AddTerminals(int object);
  Terminal MakeTerminal(int object, int side);
  int LevelOf(int object, int side) const;
  int BusOf(int object, int side, int level, std::string_view id) const;
  void MoveDisconnected();
  void Join();

  const Network& m_network;
  std::vector<Node> m_nodes;
  std::unordered_map<long long, int> m_byNumber;  // by level and number
  std::unordered_map<int, int> m_ofBus;           // by the bus
  std::vector<int> m_parent;                      // of joined nodes
  std::vector<Terminal> m_terminals;
  std::vector<std::pair<int, int>> m_ofObject;  // the stretch of m_terminals
};

}  // namespace dtsdb::tools::xiidm
