#include "command/topology_compare.h"

#include <QBuffer>
#include <algorithm>
#include <map>

#include "command/equipment_state.h"
#include "formats/field_text.h"
#include "formats/text_layout.h"
#include "model/qarchive.h"
#include "topology/tp.h"

namespace dtsdb::tools {
namespace {

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
    AddWord(state, (section.status & BS_ISOLATED) != 0, "fragment");
    states.push_back(std::move(state));
  }
  return states;
}

/// Adds what differs between two tables in the states that `stateAt(database, table, logicalNumber)` gives.
template <class T, class StateAt>
void Compare(DTSDB& here, DTSDB& there, StateAt stateAt, std::vector<TopologyDifference>& differences) {
  const int count = TableOf<T>(here).GetCount();
  const int other = TableOf<T>(there).GetCount();
  if (count != other) differences.push_back({T::kTableName, "", Counted(count, "record"), Counted(other, "record")});
  for (int i = 0; i < std::min(count, other); ++i) {
    const std::string a = stateAt(here, i);
    const std::string b = stateAt(there, i);
    if (a != b) differences.push_back({T::kTableName, IdText(TableOf<T>(here)[i].id), a, b});
  }
}

template <class T>
void CompareEquipment(DTSDB& here, DTSDB& there, std::vector<TopologyDifference>& differences) {
  Compare<T>(
      here, there, [](DTSDB& database, int i) { return StateOf(TableOf<T>(database)[i]); }, differences);
}

}  // namespace

std::optional<DTSDB> CopyOf(DTSDB& database) {
  QBuffer buffer;
  buffer.open(QIODevice::ReadWrite);
  QArchive out(&buffer, false);
  database.Serialize(out);
  if (out.status() != QDataStream::Ok) return std::nullopt;
  buffer.seek(0);
  QArchive in(&buffer, true);
  DTSDB copy;
  copy.Serialize(in);
  if (in.IsRefused() || in.BytesLeft() != 0) return std::nullopt;
  return copy;
}

std::vector<TopologyDifference> CompareTopology(DTSDB& here, DTSDB& there) {
  std::vector<TopologyDifference> differences;
  const std::vector<std::string> nodesHere = NodeStates(here);
  const std::vector<std::string> nodesThere = NodeStates(there);
  const auto nodeState = [&](DTSDB& database, int i) {
    return (&database == &here ? nodesHere : nodesThere)[static_cast<std::size_t>(i)];
  };
  Compare<ND>(here, there, nodeState, differences);
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

std::vector<TopologyDifference> CompareWithFullRun(DTSDB& database) {
  std::optional<DTSDB> copy = CopyOf(database);
  if (!copy) return {{"", "", "", "the model can't be copied"}};
  TP full(&*copy);
  if (full.tpAllnew() == 0) return {{"", "", "", "the full run fails"}};
  return CompareTopology(database, *copy);
}

}  // namespace dtsdb::tools
