#include "formats/cgmes/switch_joints.h"

#include <fmt/format.h>

#include <algorithm>

#include "formats/text_layout.h"

namespace dtsdb::tools::cgmes {

SwitchJoints::SwitchJoints(const Mapping& mapping, const ImportReport& report) : m_mapping(mapping) {
  std::set<std::string> mapped;
  for (const ImportReport::Identity& row : report.identities) {
    if (row.table == CB::kTableName) mapped.insert(row.mrid);
  }
  for (const Role role : {Role::kBreaker, Role::kDisconnector}) {
    for (const int equipment : mapping.connections.WithRole(role)) Add(equipment, mapped);
  }
}

void SwitchJoints::Add(int equipment, const std::set<std::string>& mapped) {
  const auto terminals = m_mapping.connections.TerminalsOf(equipment);
  if (terminals.size() != 2) return;
  Joint joint;
  joint.equipment = equipment;
  joint.from = m_mapping.connections.NodeOf(terminals[0]);
  joint.to = m_mapping.connections.NodeOf(terminals[1]);
  if (joint.from == Objects::kNone || joint.to == Objects::kNone) return;
  joint.isClosed = !m_mapping.IsOpen(equipment);
  joint.isRetained = m_mapping.objects.IsTrue(equipment, kSwitchRetained);
  joint.isInModel = mapped.contains(m_mapping.objects.Mrid(equipment));
  m_atNode[joint.from].push_back(m_joints.size());
  m_atNode[joint.to].push_back(m_joints.size());
  m_joints.push_back(joint);
}

std::vector<const Joint*> SwitchJoints::At(int node) const {
  std::vector<const Joint*> joints;
  const auto found = m_atNode.find(node);
  if (found == m_atNode.end()) return joints;
  for (const std::size_t place : found->second) joints.push_back(&m_joints[place]);
  return joints;
}

std::string SwitchJoints::StateOf(const Joint& joint) const {
  if (joint.isClosed && !joint.isInModel) return "is left out of the model";
  if (joint.isClosed) return joint.isRetained ? "is closed and retained" : "is closed";
  if (!m_mapping.connections.IsInService(joint.equipment)) return "is out of service";
  const auto terminals = m_mapping.connections.TerminalsOf(joint.equipment);
  const bool isConnected = std::all_of(terminals.begin(), terminals.end(),
                                       [this](int terminal) { return m_mapping.connections.IsConnected(terminal); });
  return isConnected ? "is open" : "isn't connected at both ends";
}

std::string SwitchJoints::Describe(const Joint& joint) const {
  const int type = m_mapping.objects.Class(joint.equipment);
  return fmt::format("{} {} {}", m_mapping.objects.ClassName(type), Quoted(m_mapping.objects.Name(joint.equipment)),
                     StateOf(joint));
}

}  // namespace dtsdb::tools::cgmes
