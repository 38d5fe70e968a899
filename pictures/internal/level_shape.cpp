#include "pictures/internal/level_shape.h"

#include <algorithm>
#include <deque>
#include <map>

#include "formats/import/groups.h"
#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr std::size_t kFewestOnBar = 3;

void SortUnique(std::vector<int>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

}  // namespace

LevelShape::LevelShape(const StationLevel& level, const std::vector<bool>& isUp)
    : m_level(level),
      m_isUp(isUp),
      m_switchesOf(level.nodes.size()),
      m_devicesOf(level.nodes.size()),
      m_isBar(level.nodes.size()) {
  for (std::size_t i = 0; i < level.switches.size(); ++i) {
    const StationSwitch& item = level.switches[i];
    m_switchesOf[Place(item.from)].push_back(static_cast<int>(i));
    if (item.to != item.from) m_switchesOf[Place(item.to)].push_back(static_cast<int>(i));
  }
  for (std::size_t i = 0; i < level.devices.size(); ++i) {
    m_devicesOf[Place(level.devices[i].node)].push_back(static_cast<int>(i));
  }
  ChooseBars();
  CollectCells();
}

/// The nodes with buses; of what hangs together without any, the node on which most things hang, if these are enough.
void LevelShape::ChooseBars() {
  for (const StationBus& bus : m_level.buses) AddBar(bus.node);
  const int count = static_cast<int>(m_level.nodes.size());
  const auto weight = [&](int node) { return SwitchesOf(node).size() + DevicesOf(node).size(); };
  tools::Groups groups(m_level.nodes.size());
  for (const StationSwitch& item : m_level.switches) groups.Join(item.from, item.to);
  std::vector<bool> hasBar(m_level.nodes.size());
  for (const int bar : m_bars) hasBar[Place(groups.Of(bar))] = true;
  std::vector<int> best(m_level.nodes.size(), -1);  // by what hangs together
  int bestOfAll = -1;
  for (int node = 0; node < count; ++node) {
    int& here = best[Place(groups.Of(node))];
    if (here < 0 || weight(node) > weight(here)) here = node;
    if (bestOfAll < 0 || weight(node) > weight(bestOfAll)) bestOfAll = node;
  }
  const bool hasBuses = !m_bars.empty();
  for (int node = 0; node < count; ++node) {
    const int group = groups.Of(node);
    if (node != best[Place(group)] || hasBar[Place(group)]) continue;
    if (weight(node) >= kFewestOnBar || (!hasBuses && node == bestOfAll)) AddBar(node);
  }
}

void LevelShape::AddBar(int node) {
  if (!IsBar(node)) m_bars.push_back(node);
  m_isBar[Place(node)] = true;
}

void LevelShape::CollectCells() {
  std::vector<bool> done = m_isBar;
  for (int node = 0; node < static_cast<int>(m_level.nodes.size()); ++node) {
    if (!done[Place(node)]) CollectCellOf(node, done);
  }
  for (std::size_t i = 0; i < m_level.switches.size(); ++i) {
    const StationSwitch& item = m_level.switches[i];
    if (!IsBar(item.from) || !IsBar(item.to)) continue;
    Cell& cell = m_cells.emplace_back();
    cell.switches = {static_cast<int>(i)};
    Finish(cell);
  }
  for (const int bar : m_bars) {
    for (const int device : DevicesOf(bar)) {
      Cell& cell = m_cells.emplace_back();
      cell.devices = {device};
      cell.bars = {bar};
      Finish(cell);
    }
  }
  // By the first switch or device, as the names run.
  const auto first = [](const Cell& cell) {
    const bool hasSwitches = !cell.switches.empty();
    return std::pair(!hasSwitches, hasSwitches            ? cell.switches.front()
                                   : cell.devices.empty() ? 0
                                                          : cell.devices.front());
  };
  std::stable_sort(m_cells.begin(), m_cells.end(), [&](const Cell& a, const Cell& b) { return first(a) < first(b); });
}

void LevelShape::CollectCellOf(int node, std::vector<bool>& done) {
  Cell& cell = m_cells.emplace_back();
  std::vector<int> waiting = {node};
  done[Place(node)] = true;
  while (!waiting.empty()) {
    const int here = waiting.back();
    waiting.pop_back();
    cell.nodes.push_back(here);
    for (const int number : SwitchesOf(here)) {
      cell.switches.push_back(number);
      const int other = Other(number, here);
      if (done[Place(other)]) continue;
      done[Place(other)] = true;
      waiting.push_back(other);
    }
    cell.devices.insert(cell.devices.end(), DevicesOf(here).begin(), DevicesOf(here).end());
  }
  Finish(cell);
}

void LevelShape::Finish(Cell& cell) const {
  SortUnique(cell.nodes);
  SortUnique(cell.switches);
  SortUnique(cell.devices);
  for (const int number : cell.switches) {
    for (const int node : {Switch(number).from, Switch(number).to}) {
      if (IsBar(node)) cell.bars.push_back(node);
    }
  }
  SortUnique(cell.bars);
  cell.up = !cell.devices.empty() &&
            std::all_of(cell.devices.begin(), cell.devices.end(), [&](int device) { return m_isUp[Place(device)]; });
}

Path WayThrough(const LevelShape& shape, const Cell& cell, int from, int to) {
  std::map<int, int> cameBy = {{from, -1}};  // a switch
  std::deque<int> waiting;
  const auto take = [&](int number, int here) {
    const int next = shape.Other(number, here);
    if (cameBy.emplace(next, number).second) waiting.push_back(next);
  };
  for (const int number : cell.switches) {  // a bar may have many more
    if (shape.Switch(number).from == from || shape.Switch(number).to == from) take(number, from);
  }
  while (!waiting.empty() && !cameBy.contains(to)) {
    const int here = waiting.front();
    waiting.pop_front();
    if (shape.IsBar(here)) continue;
    for (const int number : shape.SwitchesOf(here)) take(number, here);  // all of them are in the cell
  }
  Path path;
  if (from == to || !cameBy.contains(to)) return path;
  for (int here = to; here != from; here = shape.Other(cameBy[here], here)) {
    path.nodes.push_back(here);
    path.switches.push_back(cameBy[here]);
  }
  path.nodes.push_back(from);
  std::reverse(path.nodes.begin(), path.nodes.end());
  std::reverse(path.switches.begin(), path.switches.end());
  return path;
}

bool IsCoupler(const LevelShape& shape, const Cell& cell) {
  if (cell.bars.size() != 2 || !cell.devices.empty()) return false;
  return WayThrough(shape, cell, cell.bars[0], cell.bars[1]).switches.size() == cell.switches.size();
}

}  // namespace dtsdb::pictures::internal
