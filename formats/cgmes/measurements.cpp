#include <algorithm>

#include "formats/cgmes/steps.h"
#include "model/record_bits.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr i8 kClosed = 1;
constexpr i8 kOpen = 2;

struct TypeRow {
  std::string_view type;
  Measured measured;
};
constexpr TypeRow kTypes[] = {
    {"ThreePhaseActivePower", Measured::kP},
    {"ThreePhaseReactivePower", Measured::kQ},
    {"LineCurrent", Measured::kI},
    {"LineToLineVoltage", Measured::kV},
    {"PhaseVoltage", Measured::kV},
    {"Voltage", Measured::kV},
    {"Angle", Measured::kAngle},
    {"SwitchPosition", Measured::kPosition},
};

Measured MeasuredBy(const Mapping& mapping, int measurement) {
  const std::string_view type = mapping.objects.Text(measurement, kMeasurementType);
  const auto* const found =
      std::find_if(std::begin(kTypes), std::end(kTypes), [type](const TypeRow& row) { return row.type == type; });
  return found == std::end(kTypes) ? Measured::kOther : found->measured;
}

/// What a measurement is of.
int ResourceOf(const Mapping& mapping, int measurement) {
  const int resource = mapping.objects.Target(measurement, kMeasurementResource);
  if (resource != kNone) return resource;
  return mapping.connections.EquipmentOf(mapping.objects.Target(measurement, kMeasurementTerminal));
}

/// Names the points of a table; a name that several have is made unique with that of what they are of.
void Name(Mapping& mapping, TableKind table, const std::vector<int>& points) {
  for (const int point : points) {
    const int resource = ResourceOf(mapping, point);
    const QString owner =
        resource == kNone ? QString() : Representable(QString::fromStdString(mapping.objects.Name(resource)));
    mapping.ids.Add(table, point, owner);
  }
  mapping.ids.Settle(table);
}

void Link(Mapping& mapping, int point, Measured measured, const QString& id) {
  const int resource = ResourceOf(mapping, point);
  const int terminal = measured == Measured::kPosition ? kNone : mapping.objects.Target(point, kMeasurementTerminal);
  if (resource != kNone) mapping.points.emplace(std::make_tuple(resource, terminal, measured), id);
}

/// The position of a switch, so that point and switch agree; of anything else the value.
i8 StatusValue(const Mapping& mapping, int point) {
  const int resource = ResourceOf(mapping, point);
  const Role role = resource == kNone ? Role::kUnknown : mapping.connections.RowOf(resource).role;
  if (role == Role::kBreaker || role == Role::kDisconnector) return mapping.IsOpen(resource) ? kOpen : kClosed;
  const int value = mapping.connections.ReferringTo(point, kDiscreteOfValue);
  return static_cast<i8>(std::clamp(mapping.connections.Number(value, kDiscreteValue), 0.0, 127.0));
}

}  // namespace

void MapMeasurements(Mapping& mapping) {
  const std::vector<int> analogs = mapping.connections.WithRole(Role::kAnalog);
  Name(mapping, KIND_ANALOG, analogs);
  for (const int point : analogs) {
    ANALOG& row = mapping.rows.Of<ANALOG>().emplace_back(mapping.ids.Id(KIND_ANALOG, point));
    const int value = mapping.connections.ReferringTo(point, kAnalogOfValue);
    row.value = Single(mapping.connections.Number(value, kAnalogValue));
    Link(mapping, point, MeasuredBy(mapping, point), row.id);
  }
  const std::vector<int> discretes = mapping.connections.WithRole(Role::kDiscrete);
  Name(mapping, KIND_STATUS, discretes);
  for (const int point : discretes) {
    STATUS& row = mapping.rows.Of<STATUS>().emplace_back(mapping.ids.Id(KIND_STATUS, point));
    row.value = StatusValue(mapping, point);
    Link(mapping, point, MeasuredBy(mapping, point), row.id);
  }
}

}  // namespace dtsdb::tools::cgmes
