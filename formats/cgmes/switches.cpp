#include "formats/cgmes/steps.h"
#include "formats/import/switch_rows.h"
#include "model/record_bits.h"

namespace dtsdb::tools::cgmes {
namespace {

/// The switches that lie within one level. Those between levels that have become one are among them (Places).
std::vector<int> WithinLevels(Mapping& mapping, Role role) {
  std::vector<int> switches = mapping.Standing(role, 2);
  std::erase_if(switches, [&](int equipment) {
    const int from = mapping.LevelAt(mapping.Terminal(equipment, 0)).object;
    const int to = mapping.LevelAt(mapping.Terminal(equipment, 1)).object;
    if (from == to) return false;
    mapping.account.LeaveOut(equipment, mapping.IsOpen(equipment)
                                            ? "it is open between two voltage levels"
                                            : "it joins voltage levels whose nominal voltages differ or aren't known");
    return true;
  });
  return switches;
}

CB BreakerRow(const Mapping& mapping, int equipment, bool isBreaker) {
  CB row(mapping.ids.Id(KIND_CB, equipment));
  row.kv = mapping.LevelId(mapping.Terminal(equipment, 0));
  row.nd = mapping.NodeId(mapping.Terminal(equipment, 0));
  row.znd = mapping.NodeId(mapping.Terminal(equipment, 1));
  row.flags = TypeOfSwitch(isBreaker) | (mapping.IsOpen(equipment) ? CB_OPEN : 0);
  row.status_id = mapping.StatusPoint(equipment);
  return row;
}

ZBR BranchRow(const Mapping& mapping, int equipment, const QString& breaker) {
  ZBR row(ZeroImpedanceId(mapping.ids.Text(KIND_CB, equipment)));
  row.cb = breaker;
  const int terminal = mapping.Terminal(equipment, 0);
  const Power flow = mapping.connections.FlowInto(terminal);
  row.p = Single(flow.p);
  row.q = Single(flow.q);
  row.ana_p = mapping.Point(terminal, Measured::kP);
  row.ana_q = mapping.Point(terminal, Measured::kQ);
  row.ana_i = mapping.Point(terminal, Measured::kI);
  return row;
}

void MapRole(Mapping& mapping, const std::vector<int>& switches, bool areBreakers) {
  for (const int equipment : switches) {
    const CB row = BreakerRow(mapping, equipment, areBreakers);
    mapping.rows.Of<CB>().push_back(row);
    const bool isRetained = mapping.objects.IsTrue(equipment, kSwitchRetained) && !(row.flags & CB_OPEN);
    if (!isRetained) continue;
    if (mapping.options.mergesRetained) {
      mapping.account.Change(equipment, "it is retained, but joins its nodes, as --merge-retained asks for");
    } else {
      mapping.rows.Of<ZBR>().push_back(BranchRow(mapping, equipment, row.id));
    }
  }
}

}  // namespace

void MapSwitches(Mapping& mapping) {
  const std::vector<int> breakers = WithinLevels(mapping, Role::kBreaker);
  const std::vector<int> disconnectors = WithinLevels(mapping, Role::kDisconnector);
  for (const auto* switches : {&breakers, &disconnectors}) {
    for (const int equipment : *switches) mapping.ids.Add(KIND_CB, equipment, mapping.LevelText(equipment));
  }
  mapping.ids.Settle(KIND_CB);
  MapRole(mapping, breakers, true);
  MapRole(mapping, disconnectors, false);
}

}  // namespace dtsdb::tools::cgmes
