/// \file
/// The switches of a set as joints between connectivity nodes, for what looks at published topologies.
#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/cgmes/mapping.h"
#include "formats/import_report.h"

namespace dtsdb::tools::cgmes {

/// A switch with its two nodes.
struct Joint {
  int equipment = Objects::kNone;
  int from = Objects::kNone;
  int to = Objects::kNone;
  bool isClosed = false;    ///< it conducts
  bool isRetained = false;  ///< it keeps its nodes apart even so
  bool isInModel = true;    ///< false: the import has left it out

  int OtherNode(int node) const { return node == from ? to : from; }
};

/// All switches with two terminals on connectivity nodes. `mapping` must outlive them; `report` is that of the import.
class SwitchJoints {
 public:
  SwitchJoints(const Mapping& mapping, const ImportReport& report);

  /// The joints at a node.
  std::vector<const Joint*> At(int node) const;
  /// A joint in words: class, name and state.
  std::string Describe(const Joint& joint) const;

 private:
  void Add(int equipment, const std::set<std::string>& mapped);
  std::string StateOf(const Joint& joint) const;

  const Mapping& m_mapping;
  std::vector<Joint> m_joints;
  std::unordered_map<int, std::vector<std::size_t>> m_atNode;  // places in m_joints
};

}  // namespace dtsdb::tools::cgmes
