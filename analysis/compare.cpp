#include <algorithm>
#include <map>

#include "analysis/internal/equipment_state.h"
#include "analysis/internal/points.h"
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

/// Adds the nodes that are live in both results, but in islands that are joined in the one and parted in the other.
void CompareIslands(DTSDB& here, DTSDB& there, std::vector<Difference>& differences) {
  const std::vector<int> a = internal::IslandsOfNodes(here);
  const std::vector<int> b = internal::IslandsOfNodes(there);
  tTable<ND>& nodes = *here.m_ndTable;
  std::map<int, std::string> firstHere;  // node of each island
  std::map<int, std::string> firstThere;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    if (a[i] < 0 || b[i] < 0) continue;
    const std::string id = IdText(nodes[static_cast<int>(i)].id);
    const std::string& first = firstHere.emplace(a[i], id).first->second;
    const std::string& other = firstThere.emplace(b[i], id).first->second;
    if (first == other) continue;
    differences.push_back({ND::kTableName, id, "live, in the island of " + first, "live, in the island of " + other});
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
