#include <algorithm>
#include <map>

#include "analysis/internal/equipment_state.h"
#include "analysis/topology.h"
#include "formats/field_text.h"
#include "formats/text_layout.h"

namespace dtsdb::analysis {
namespace {

using tools::IdText;

/// The state of each node, by logical number.
std::vector<std::string> NodeStates(DTSDB& database) {
  tTable<ND>& nodes = *database.m_ndTable;
  std::map<int, std::string> firstOf;  // node of each section
  std::vector<std::string> states;
  for (int i = 0; i < nodes.GetCount(); ++i) {
    const int number = nodes[i].ibs;
    if (number <= 0 || number >= database.m_bsTable->GetSize()) {
      states.emplace_back("in no section");
      continue;
    }
    const BS& section = database.m_bsTable->GetPh(number);
    std::string state = "with " + firstOf.emplace(number, IdText(nodes[i].id)).first->second;
    state += section.island >= 0 ? ", live" : ", dead";
    internal::AddWord(state, (section.status & BS_ISOLATED) != 0, "fragment");
    states.push_back(std::move(state));
  }
  return states;
}

/// Adds what differs between two tables in the states that `stateAt(database, table, logicalNumber)` gives.
template <class T, class StateAt>
void Compare(DTSDB& here, DTSDB& there, StateAt stateAt, std::vector<Difference>& differences) {
  const int count = TableOf<T>(here).GetCount();
  const int other = TableOf<T>(there).GetCount();
  if (count != other) {
    differences.push_back({T::kTableName, "", tools::Counted(count, "record"), tools::Counted(other, "record")});
  }
  for (int i = 0; i < std::min(count, other); ++i) {
    const std::string a = stateAt(here, i);
    const std::string b = stateAt(there, i);
    if (a != b) differences.push_back({T::kTableName, IdText(TableOf<T>(here)[i].id), a, b});
  }
}

template <class T>
void CompareEquipment(DTSDB& here, DTSDB& there, std::vector<Difference>& differences) {
  Compare<T>(
      here, there, [](DTSDB& database, int i) { return internal::StateOf(TableOf<T>(database)[i]); }, differences);
}

/// The first node of the live island that each node lies in, by logical number; empty for none.
std::vector<std::string> FirstOfIslands(DTSDB& database) {
  tTable<ND>& nodes = *database.m_ndTable;
  std::map<int, std::string> firstOf;
  std::vector<std::string> first;
  for (int i = 0; i < nodes.GetCount(); ++i) {
    const int section = nodes[i].ibs;
    const bool known = section > 0 && section < database.m_bsTable->GetSize();
    const int island = known ? database.m_bsTable->GetPh(section).island : -1;
    first.push_back(island >= 0 ? firstOf.emplace(island, IdText(nodes[i].id)).first->second : "");
  }
  return first;
}

/// Nodes may be live in both results and yet lie in islands that are joined in the one and parted in the other.
void CompareIslands(DTSDB& here, DTSDB& there, std::vector<Difference>& differences) {
  const std::vector<std::string> a = FirstOfIslands(here);
  const std::vector<std::string> b = FirstOfIslands(there);
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    if (a[i].empty() || b[i].empty() || a[i] == b[i]) continue;
    differences.push_back({ND::kTableName, IdText((*here.m_ndTable)[static_cast<int>(i)].id),
                           "live, in the island of " + a[i], "live, in the island of " + b[i]});
  }
}

}  // namespace

std::vector<Difference> CompareTopology(DTSDB& here, DTSDB& there) {
  std::vector<Difference> differences;
  const std::vector<std::string> nodesHere = NodeStates(here);
  const std::vector<std::string> nodesThere = NodeStates(there);
  const auto nodeState = [&](DTSDB& database, int i) {
    return (&database == &here ? nodesHere : nodesThere)[static_cast<std::size_t>(i)];
  };
  Compare<ND>(here, there, nodeState, differences);
  CompareIslands(here, there, differences);
  CompareEquipment<BUS>(here, there, differences);
  CompareEquipment<UN>(here, there, differences);
  CompareEquipment<LD>(here, there, differences);
  CompareEquipment<CP>(here, there, differences);
  CompareEquipment<LN>(here, there, differences);
  CompareEquipment<XF>(here, there, differences);
  CompareEquipment<DLN>(here, there, differences);
  CompareEquipment<ZBR>(here, there, differences);
  CompareEquipment<CB>(here, there, differences);
  return differences;
}

}  // namespace dtsdb::analysis
