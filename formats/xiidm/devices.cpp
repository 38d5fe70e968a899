#include <map>
#include <set>

#include "formats/text_layout.h"
#include "formats/xiidm/steps.h"
#include "model/record_bits.h"

namespace dtsdb::tools::xiidm {
namespace {

/// The calculated buses by level and the numbers of their nodes.
std::map<std::pair<int, int>, const CalculatedBus*> VoltagesOfNodes(const Network& network) {
  std::map<std::pair<int, int>, const CalculatedBus*> voltages;
  for (const CalculatedBus& bus : network.buses) {
    for (const int number : bus.nodes) voltages.emplace(std::pair(bus.level, number), &bus);
  }
  return voltages;
}

/// Busbar sections, and the buses of bus-breaker levels.
void MapBuses(Mapping& mapping) {
  const std::vector<int> sections = mapping.objects.WithRole(Role::kBusbarSection);
  const std::vector<int> buses = mapping.objects.WithRole(Role::kBus);
  for (const int section : sections) mapping.ids.Add(KIND_BUS, section, mapping.LevelText(section));
  for (const int bus : buses) {
    mapping.ids.Add(KIND_BUS, bus, mapping.ids.Text(KIND_KV, mapping.objects.Parent(bus)));
  }
  mapping.ids.Settle(KIND_BUS);
  const auto add = [&mapping](int object) -> BUS& {
    BUS& row = mapping.rows.Of<BUS>().emplace_back(mapping.ids.Id(KIND_BUS, object));
    row.v = mapping.objects.NumberOrZero(object, kV);
    row.a = mapping.objects.NumberOrZero(object, kAngle);
    return row;
  };
  const auto voltages = VoltagesOfNodes(mapping.network);
  for (const int section : sections) {
    const Terminal& terminal = mapping.connections.End(section, 0);
    BUS& row = add(section);
    row.kv = mapping.LevelId(terminal);
    row.nd = mapping.NodeId(terminal);
    const auto calculated =
        voltages.find({terminal.level, NodeNumberOf(mapping.objects.Text(section, kNode)).value_or(-1)});
    if (calculated == voltages.end()) continue;
    row.v = calculated->second->v;
    row.a = calculated->second->angle;
  }
  for (const int bus : buses) {
    BUS& row = add(bus);
    row.kv = mapping.ids.Id(KIND_KV, mapping.objects.Parent(bus));
    row.nd = mapping.ids.Id(KIND_ND, bus);
  }
}

/// A device to be: at a terminal, or at the border behind a boundary line.
struct Device {
  int object;
  int part;                  ///< of a converter with two ends the number of the end, else 0
  const Terminal* terminal;  ///< null at a border
  Inflow power;              ///< into the equipment
};

template <class Record>
Record DeviceRow(const Mapping& mapping, const Device& device, double sign) {
  Record row(mapping.ids.Id(Record::kKind, device.object, device.part));
  if (device.terminal == nullptr) {
    row.kv = mapping.ids.Id(KIND_KV, device.object);
    row.nd = mapping.ids.Id(KIND_ND, device.object);
  } else {
    row.kv = mapping.LevelId(*device.terminal);
    row.nd = mapping.NodeId(*device.terminal);
    row.status = device.terminal->isConnected ? 0 : SHUNT_OFF;
  }
  row.p = Single(sign * device.power.p);
  row.q = Single(sign * device.power.q);
  return row;
}

/// The published flow into a device, or else the one that it is set to, times `sign`.
Inflow PowerOf(const Mapping& mapping, const Terminal& terminal, Attribute p, Attribute q, double sign) {
  if (mapping.connections.HasFlow(terminal)) return mapping.connections.FlowInto(terminal);
  return {sign * mapping.objects.NumberOrZero(terminal.object, p),
          sign * mapping.objects.NumberOrZero(terminal.object, q)};
}

/// Without a published flow, what a shunt compensator takes at the nominal voltage of its level.
Inflow PowerOfShunt(const Mapping& mapping, const Terminal& terminal) {
  const Objects& objects = mapping.objects;
  const int shunt = terminal.object;
  if (objects.Has(shunt, AtSide(kQ, 0))) return mapping.connections.FlowInto(terminal);
  const double sections =
      objects.NumberOrZero(shunt, objects.Has(shunt, kSolvedSections) ? kSolvedSections : kSections);
  const double b =
      objects.Has(shunt, kB) ? objects.NumberOrZero(shunt, kB) : objects.NumberOrZero(shunt, kBPerSection) * sections;
  const double u = objects.NumberOrZero(terminal.level, kNominalV);
  return {0, -b * u * u};
}

/// The devices of the three tables.
struct Devices {
  std::vector<Device> units;
  std::vector<Device> loads;
  std::vector<Device> shunts;
};

void AddConverters(Mapping& mapping, const std::vector<int>& converters, Devices& devices) {
  for (const int converter : converters) {
    const auto terminals = mapping.connections.TerminalsOf(converter);
    for (const Terminal& terminal : terminals) {
      const Inflow power = mapping.connections.FlowInto(terminal);
      const bool produces = power.p < 0;
      (produces ? devices.units : devices.loads)
          .push_back({converter, terminals.size() > 1 ? terminal.side : 0, &terminal, power});
      mapping.Change(converter, produces ? "it belongs to no hvdcLine: a unit" : "it belongs to no hvdcLine: a load");
    }
  }
}

Devices FindDevices(Mapping& mapping, const std::vector<int>& converters) {
  Devices devices;
  const auto add = [&mapping](std::vector<Device>& list, Role role, const auto& powerOf) {
    for (const int object : mapping.objects.WithRole(role)) {
      const Terminal& terminal = mapping.connections.End(object, 0);
      list.push_back({object, 0, &terminal, powerOf(terminal)});
    }
  };
  const auto target = [&](const Terminal& terminal) { return PowerOf(mapping, terminal, kTargetP, kTargetQ, -1); };
  const auto battery = [&](const Terminal& terminal) {
    const bool isOld = !mapping.objects.Has(terminal.object, kTargetP);
    return isOld ? PowerOf(mapping, terminal, kP0, kQ0, -1) : target(terminal);
  };
  add(devices.units, Role::kGenerator, target);
  add(devices.units, Role::kBattery, battery);
  add(devices.loads, Role::kLoad, [&](const Terminal& terminal) { return PowerOf(mapping, terminal, kP0, kQ0, 1); });
  add(devices.shunts, Role::kShunt, [&](const Terminal& terminal) { return PowerOfShunt(mapping, terminal); });
  add(devices.shunts, Role::kStaticVar,
      [&](const Terminal& terminal) { return mapping.connections.FlowInto(terminal); });
  std::vector<Device>& ties = mapping.options.tiesAreUnits ? devices.units : devices.loads;
  for (const int border : mapping.borders) ties.push_back({border, 0, nullptr, mapping.AtBorder(border)});
  AddConverters(mapping, converters, devices);
  return devices;
}

void Name(Mapping& mapping, TableKind table, const std::vector<Device>& devices) {
  for (const Device& device : devices) {
    const QString suffix = device.part == 0 ? QString() : QStringLiteral(" %1").arg(device.part);
    mapping.ids.Add(table, device.object, mapping.LevelText(device.object), device.part, suffix);
  }
  mapping.ids.Settle(table);
}

/// The units and loads that are marked as a reference: named by a slack terminal, or units on the node of what it
/// names.
class References {
 public:
  explicit References(Mapping& mapping) : m_mapping(mapping) {
    for (const std::string& id : mapping.network.slackTerminals) {
      const int object = mapping.objects.Find(id);
      if (object != Objects::kNone) Add(object);
    }
  }

  bool Has(const Device& device, bool isUnit) const {
    if (m_objects.contains(device.object) || m_mapping.objects.Has(device.object, kOwnReference)) return true;
    return isUnit && device.terminal != nullptr && m_nodes.contains(device.terminal->node);
  }

 private:
  void Add(int object) {
    const Role role = m_mapping.objects.RoleOf(object);
    const auto terminals = m_mapping.connections.TerminalsOf(object);
    if (role == Role::kGenerator || role == Role::kBattery || role == Role::kLoad) {
      m_objects.insert(object);
    } else if (!terminals.empty()) {
      m_nodes.insert(terminals[0].node);
    }
  }

  Mapping& m_mapping;
  std::set<int> m_objects;
  std::set<int> m_nodes;
};

/// What a unit is set to is the lower term of its margin.
UN UnitRow(const Mapping& mapping, const Device& device) {
  UN row = DeviceRow<UN>(mapping, device, -1);
  row.pmax = Single(mapping.objects.NumberOrZero(device.object, kMaxP));
  const std::optional<double> target = mapping.objects.Number(device.object, kTargetP);
  row.pcur = target ? Single(*target) : row.p;
  return row;
}

}  // namespace

void MapDevices(Mapping& mapping, const std::vector<int>& converters) {
  MapBuses(mapping);
  const Devices devices = FindDevices(mapping, converters);
  Name(mapping, KIND_UN, devices.units);
  Name(mapping, KIND_LD, devices.loads);
  Name(mapping, KIND_CP, devices.shunts);
  const References references(mapping);
  for (const Device& unit : devices.units) {
    UN& row = mapping.rows.Of<UN>().emplace_back(UnitRow(mapping, unit));
    row.ref = references.Has(unit, true) ? 0 : -1;
  }
  for (const Device& load : devices.loads) {
    LD& row = mapping.rows.Of<LD>().emplace_back(DeviceRow<LD>(mapping, load, 1));
    row.ref = references.Has(load, false) ? 0 : -1;
  }
  for (const Device& shunt : devices.shunts) mapping.rows.Of<CP>().push_back(DeviceRow<CP>(mapping, shunt, 1));
}

}  // namespace dtsdb::tools::xiidm
