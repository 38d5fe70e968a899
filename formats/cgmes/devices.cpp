#include "formats/cgmes/steps.h"
#include "model/record_bits.h"

namespace dtsdb::tools::cgmes {
namespace {

/// The voltage of a bus: that of its topological node.
void MapBuses(Mapping& mapping) {
  const std::vector<int> buses = mapping.Standing(Role::kBus, 1);
  for (const int bus : buses) mapping.ids.Add(KIND_BUS, bus, mapping.LevelText(bus));
  mapping.ids.Settle(KIND_BUS);
  for (const int bus : buses) {
    const int terminal = mapping.Terminal(bus, 0);
    BUS& row = mapping.rows.Of<BUS>().emplace_back(mapping.ids.Id(KIND_BUS, bus));
    row.kv = mapping.LevelId(terminal);
    row.nd = mapping.NodeId(terminal);
    row.ana_v = mapping.Point(terminal, Measured::kV);
    row.ana_a = mapping.Point(terminal, Measured::kAngle);
    const int node = mapping.connections.NodeOf(terminal);
    int topological = mapping.objects.Target(node, kNodeTopological);
    if (topological == kNone) topological = mapping.objects.Target(terminal, kTerminalTopological);
    const int voltage = mapping.connections.ReferringTo(topological, kVoltageNode);
    row.v = mapping.connections.Number(voltage, kVoltageV);
    row.a = mapping.connections.Number(voltage, kVoltageAngle);
  }
}

/// A device on a node with its power, which counts into the equipment.
template <class Device>
Device DeviceRow(const Mapping& mapping, int equipment, double sign) {
  const int terminal = mapping.Terminal(equipment, 0);
  Device row(mapping.ids.Id(Device::kKind, equipment));
  row.kv = mapping.LevelId(terminal);
  row.nd = mapping.NodeId(terminal);
  row.ana_q = mapping.Point(terminal, Measured::kQ);
  row.status = mapping.IsOn(terminal) ? 0 : SHUNT_OFF;
  const Power power = mapping.connections.FlowInto(terminal);
  row.p = Single(sign * power.p);
  row.q = Single(sign * power.q);
  return row;
}

/// The greatest output of a unit, as its class or what stands behind it has it.
double GreatestOutput(const Mapping& mapping, int equipment) {
  const Connections& connections = mapping.connections;
  const Property own = connections.RowOf(equipment).maxP;
  if (own != kPropertyCount) return connections.Number(equipment, own);
  const int unit = mapping.objects.Target(equipment, kMachineUnit);
  if (unit != kNone) return connections.Number(unit, kUnitMaxP);
  return connections.Number(connections.ReferringTo(equipment, kElectronicsUnitConnection), kElectronicsUnitMaxP);
}

/// A unit whose reference priority is 1 is a reference. What it produces now is the lower term of its margin.
UN UnitRow(const Mapping& mapping, int equipment) {
  UN row = DeviceRow<UN>(mapping, equipment, -1);
  const int terminal = mapping.Terminal(equipment, 0);
  row.ana_p = mapping.Point(terminal, Measured::kP);
  row.ana_v = mapping.Point(terminal, Measured::kV);
  row.pmax = Single(GreatestOutput(mapping, equipment));
  row.pcur = row.p;
  const bool isReference = mapping.connections.Number(equipment, mapping.connections.RowOf(equipment).priority) == 1;
  row.ref = isReference ? 0 : -1;
  return row;
}

LD LoadRow(const Mapping& mapping, int equipment) {
  LD row = DeviceRow<LD>(mapping, equipment, 1);
  const int terminal = mapping.Terminal(equipment, 0);
  row.ana_p = mapping.Point(terminal, Measured::kP);
  row.ana_i = mapping.Point(terminal, Measured::kI);
  row.ana_v = mapping.Point(terminal, Measured::kV);
  return row;
}

/// The equipment of the three tables.
struct Devices {
  std::vector<int> units;
  std::vector<int> loads;
  std::vector<int> shunts;
};

Devices FindDevices(Mapping& mapping, const std::vector<int>& converters) {
  Devices devices;
  devices.units = mapping.Standing(Role::kUnit, 1);
  devices.loads = mapping.Standing(Role::kLoad, 1);
  devices.shunts = mapping.Standing(Role::kShunt, 1);
  std::vector<int>& ties = mapping.options.tiesAreUnits ? devices.units : devices.loads;
  for (const int tie : mapping.Standing(Role::kTie, 1)) ties.push_back(tie);
  for (const int converter : converters) {
    const bool produces = mapping.connections.FlowInto(mapping.Terminal(converter, 0)).p < 0;
    (produces ? devices.units : devices.loads).push_back(converter);
    mapping.account.Change(converter, produces ? "it belongs to no DC line between two converters: a unit"
                                               : "it belongs to no DC line between two converters: a load");
  }
  return devices;
}

}  // namespace

void MapDevices(Mapping& mapping, const std::vector<int>& converters) {
  MapBuses(mapping);
  const Devices devices = FindDevices(mapping, converters);
  const auto name = [&mapping](TableKind table, const std::vector<int>& equipment) {
    for (const int device : equipment) mapping.ids.Add(table, device, mapping.LevelText(device));
    mapping.ids.Settle(table);
  };
  name(KIND_UN, devices.units);
  name(KIND_LD, devices.loads);
  name(KIND_CP, devices.shunts);
  for (const int unit : devices.units) mapping.rows.Of<UN>().push_back(UnitRow(mapping, unit));
  for (const int load : devices.loads) mapping.rows.Of<LD>().push_back(LoadRow(mapping, load));
  for (const int shunt : devices.shunts) mapping.rows.Of<CP>().push_back(DeviceRow<CP>(mapping, shunt, 1));
}

}  // namespace dtsdb::tools::cgmes
