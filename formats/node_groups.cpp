#include "formats/node_groups.h"

#include <algorithm>

#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr int kFirstSection = 2;  // in front of it stand the heads of the two rings

/// The section of a group, with the island that it lies in.
void PlaceGroup(DTSDB& tables, NodeGroup& group) {
  const int section = (*tables.m_ndTable)[group.nodes.front()].ibs;
  if (section < kFirstSection || section >= tables.m_bsTable->GetSize()) return;
  const BS& record = tables.m_bsTable->GetPh(section);
  group.section = section;
  group.isFragment = (record.status & BS_ISOLATED) != 0;
  group.island = std::max(record.island, ISLAND_DEAD);
}

}  // namespace

std::vector<NodeGroup> NodeGroups(DTSDB& tables) {
  tTable<ND>& nodes = *tables.m_ndTable;
  const int count = nodes.GetCount();
  std::vector<bool> isTaken(static_cast<std::size_t>(count), false);
  std::vector<NodeGroup> groups;
  for (int i = 0; i < count; ++i) {
    if (isTaken[static_cast<std::size_t>(i)]) continue;
    NodeGroup& group = groups.emplace_back();
    // The nodes of a group stand in a ring.
    for (int nd = i; nd >= 0 && nd < count && !isTaken[static_cast<std::size_t>(nd)]; nd = nodes.GetPh(nd).next) {
      isTaken[static_cast<std::size_t>(nd)] = true;
      group.nodes.push_back(nd);
    }
    std::sort(group.nodes.begin(), group.nodes.end());
    PlaceGroup(tables, group);
  }
  return groups;
}

}  // namespace dtsdb::tools
