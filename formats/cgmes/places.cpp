#include "formats/cgmes/places.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr int kNone = Objects::kNone;

}  // namespace

Places::Places(const Objects& objects, const Connections& connections)
    : m_objects(objects),
      m_connections(connections),
      m_byObject(static_cast<std::size_t>(objects.Count()), kNone),
      m_levelOf(static_cast<std::size_t>(objects.Count()), kNone) {
  for (const int level : connections.WithRole(Role::kLevel)) AddLevel(level);
  for (int node = 0; node < objects.Count(); ++node) {
    if (connections.TerminalsAt(node).empty()) continue;
    m_nodes.push_back(node);
    m_levelOf[static_cast<std::size_t>(node)] = AddLevel(ContainerOf(node));
  }
  FindVoltages();
}

/// What becomes the level of a node: the voltage level, also that of a bay, else the container, else the node itself.
int Places::ContainerOf(int node) const {
  const int container = m_objects.Target(node, kNodeContainer);
  if (container == kNone) return node;
  const int ofBay = m_objects.Target(container, kBayLevel);
  return ofBay == kNone ? container : ofBay;
}

int Places::AddLevel(int object) {
  int& place = m_byObject[static_cast<std::size_t>(object)];
  if (place != kNone) return place;
  Level level;
  level.object = object;
  const int station = m_objects.Target(object, kLevelStation);
  level.station = station == kNone ? object : station;
  level.region = m_objects.Target(level.station, kStationRegion);
  if (level.region == kNone) level.region = m_objects.Target(level.station, kLineRegion);
  level.nominal = m_connections.Number(m_objects.Target(object, kLevelVoltage), kNominalVoltage);
  level.high = m_connections.Number(object, kLevelHigh);
  level.low = m_connections.Number(object, kLevelLow);
  place = static_cast<int>(m_levels.size());
  m_levels.push_back(level);
  return place;
}

/// A level that is no VoltageLevel has the voltage of the lines and other equipment on its nodes.
void Places::FindVoltages() {
  for (const int node : m_nodes) {
    Level& level = m_levels[static_cast<std::size_t>(LevelOf(node))];
    if (m_connections.RowOf(level.object).role != Role::kLevel) TakeVoltageOfLines(level, node);
  }
  for (Level& level : m_levels) {
    if (level.hasTwoVoltages) level.nominal = 0;
    if (level.low < 0 || level.high < level.low) level.low = level.high = 0;  // an upper limit may be missing
  }
}

void Places::TakeVoltageOfLines(Level& level, int node) const {
  for (const int terminal : m_connections.TerminalsAt(node)) {
    const int base = m_objects.Target(m_connections.EquipmentOf(terminal), kEquipmentVoltage);
    const double nominal = m_connections.Number(base, kNominalVoltage);
    if (nominal <= 0) continue;
    if (level.nominal > 0 && level.nominal != nominal) level.hasTwoVoltages = true;
    level.nominal = nominal;
  }
}

}  // namespace dtsdb::tools::cgmes
