#include "formats/cgmes/places.h"

namespace dtsdb::tools::cgmes {
namespace {}  // namespace

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
  JoinLevels();
}

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
    if (IsMade(level)) TakeVoltageOfLines(level, node);
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

/// True for a level that is no VoltageLevel of the set.
bool Places::IsMade(const Level& level) const { return m_connections.RowOf(level.object).role != Role::kLevel; }

bool Places::StandsFirst(const Level& a, const Level& b) const {
  if (IsMade(a) != IsMade(b)) return IsMade(b);
  return m_objects.Mrid(a.object) < m_objects.Mrid(b.object);
}

/// The places of the two levels that a closed switch makes one; nothing for any other switch.
std::optional<std::pair<int, int>> Places::Joins(int equipment) const {
  const std::span<const int> terminals = m_connections.TerminalsOf(equipment);
  if (terminals.size() != 2) return std::nullopt;
  const int from = m_connections.NodeOf(terminals[0]);
  const int to = m_connections.NodeOf(terminals[1]);
  if (from == kNone || to == kNone || LevelOf(from) == LevelOf(to)) return std::nullopt;
  const double nominal = m_levels[static_cast<std::size_t>(LevelOf(from))].nominal;
  const double other = m_levels[static_cast<std::size_t>(LevelOf(to))].nominal;
  if (nominal <= 0 || nominal != other || m_connections.IsOpen(equipment)) return std::nullopt;
  return std::pair(LevelOf(from), LevelOf(to));
}

void Places::JoinLevels() {
  Groups groups(m_levels.size());
  for (const Role role : {Role::kBreaker, Role::kDisconnector}) {
    for (const int equipment : m_connections.WithRole(role)) {
      const auto levels = Joins(equipment);
      if (!levels) continue;
      m_joiningSwitches.push_back(equipment);
      const int a = groups.Of(levels->first);
      const int b = groups.Of(levels->second);
      const bool isFirst = StandsFirst(m_levels[static_cast<std::size_t>(a)], m_levels[static_cast<std::size_t>(b)]);
      groups.Join(isFirst ? b : a, isFirst ? a : b);
    }
  }
  if (!m_joiningSwitches.empty()) KeepFirstLevels(groups);
}

/// Leaves the level that stands for each group, for all of its nodes.
void Places::KeepFirstLevels(Groups& groups) {
  std::vector<Level> kept;
  std::vector<int> places(m_levels.size(), kNone);  // in `kept`
  for (std::size_t i = 0; i < m_levels.size(); ++i) {
    const int first = groups.Of(static_cast<int>(i));
    if (first != static_cast<int>(i)) {
      const Level& into = m_levels[static_cast<std::size_t>(first)];
      m_joined.push_back({m_levels[i], into.object, into.station});
      continue;
    }
    places[i] = static_cast<int>(kept.size());
    kept.push_back(m_levels[i]);
  }
  for (int& level : m_levelOf) {
    if (level != kNone) level = places[static_cast<std::size_t>(groups.Of(level))];
  }
  m_levels = std::move(kept);
}

}  // namespace dtsdb::tools::cgmes
