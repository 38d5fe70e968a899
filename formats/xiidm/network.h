/// \file
/// What an XIIDM file contains, as far as the import reads it.
#pragma once

#include <string>
#include <vector>

#include "formats/import/exceptions.h"
#include "formats/xiidm/objects.h"

namespace dtsdb::tools::xiidm {

/// Joins two nodes of a level for good.
struct InternalConnection {
  int level;  ///< the object
  int node1;
  int node2;
};

/// The voltage of nodes that are one bus as the file was written.
struct CalculatedBus {
  int level;  ///< the object
  double v;   ///< in kV
  double angle;
  std::vector<int> nodes;
};

/// The name of a node, which only our own export gives.
struct NodeName {
  int level;  ///< the object
  int node;
  std::string name;
};

struct Network {
  std::string file;     ///< the name of the file in messages
  std::string version;  ///< such as "1.17"
  std::string caseDate;
  Objects objects;
  std::vector<InternalConnection> connections;
  std::vector<CalculatedBus> buses;
  std::vector<NodeName> nodeNames;
  std::vector<std::string> slackTerminals;  ///< the ids of the equipment with a slack terminal
  Exceptions unknown;                       ///< what no table has room for

  /// An object for a message: element, id and line.
  std::string Describe(int object) const;
  /// Refuses the file because of an object: throws Failure with the file, the line and the object's id.
  [[noreturn]] void Refuse(int object, const std::string& what) const;
};

}  // namespace dtsdb::tools::xiidm
