#include "pictures/internal/cell_placer.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

/// The same way from the other end.
Path Reversed(Path way) {
  std::reverse(way.nodes.begin(), way.nodes.end());
  std::reverse(way.switches.begin(), way.switches.end());
  return way;
}

}  // namespace

void CellPlacer::Put(int number) {
  const Cell& cell = m_shape.Cells()[Place(number)];
  if (m_plan.IsRowOfBreakers(number)) return PutRowOfBreakers(cell);
  if (IsCoupler(m_shape, cell)) return PutCoupler(cell);
  if (cell.nodes.empty()) return PutOnBar(cell);
  PutBay(cell);
}

ColumnSide CellPlacer::SideOf(int number) const {
  const Cell& cell = m_shape.Cells()[Place(number)];
  const bool joinsBars = cell.bars.size() == 2;
  const bool isBetween = joinsBars && m_plan.PlaceOf(cell.bars[0]).below != m_plan.PlaceOf(cell.bars[1]).below;
  if (isBetween) return ColumnSide::kBoth;
  return cell.up ? ColumnSide::kAbove : ColumnSide::kBelow;
}

/// A tree that hangs on the node with most ways to bars.
void CellPlacer::PutBay(const Cell& cell) {
  const auto legs = [&](int node) {
    const std::vector<int>& switches = m_shape.SwitchesOf(node);
    return std::count_if(switches.begin(), switches.end(),
                         [&](int number) { return m_shape.IsBar(m_shape.Other(number, node)); });
  };
  const int root =
      *std::max_element(cell.nodes.begin(), cell.nodes.end(), [&](int a, int b) { return legs(a) < legs(b); });
  m_grid.PutTree(root, cell.up ? kAboveBars : kBelowBars, m_grid.NewColumn(), cell.up ? -1 : 1, true);
}

/// What stands on a bar itself: a device, or a switch with both ends on it.
void CellPlacer::PutOnBar(const Cell& cell) {
  const int bar = cell.bars.front();
  for (const int device : cell.devices) m_grid.PutFeeder(device, {m_grid.NewColumn(), m_grid.RowOf(bar)}, cell.up);
  for (const int number : cell.switches) m_grid.PutLoop(number, bar, bar, kBelowBars);
}

void CellPlacer::PutCoupler(const Cell& cell) {
  Path way = WayThrough(m_shape, cell, cell.bars[0], cell.bars[1]);
  if (m_grid.RowOf(way.nodes.front()) > m_grid.RowOf(way.nodes.back())) way = Reversed(std::move(way));
  if (m_plan.PlaceOf(way.nodes.front()).below == m_plan.PlaceOf(way.nodes.back()).below) return PutCouplerBelow(way);
  PutUpright(way, m_grid.NewColumn(), kBetweenBars);
}

/// Two legs and, between their feet, the switch in the middle. With an even number of switches the feet are one node.
void CellPlacer::PutCouplerBelow(const Path& way) {
  const int count = static_cast<int>(way.switches.size());
  if (count == 1) return m_grid.PutLoop(way.switches[0], way.nodes[0], way.nodes[1], kBelowBars);
  const int leg = (count - 1) / 2 + (count % 2 == 0 ? 1 : 0);  // switches in the left leg
  for (int i = 1; i < count; ++i) m_grid.PutNode(way.nodes[Place(i)], kBelowBars + (i <= leg ? i : count - i) - 1);
  const int left = m_grid.NewColumn();
  for (int i = 0; i < leg; ++i) m_grid.PutUpright(way.switches[Place(i)], left, way.nodes[Place(i + 1)]);
  const bool hasMiddle = count % 2 == 1;
  const int middle = hasMiddle ? m_grid.NewColumn() : -1;
  const int right = m_grid.NewColumn();
  if (hasMiddle) {
    const int row = m_grid.RowOf(way.nodes[Place(leg)]);
    m_grid.PutLevel(way.switches[Place(leg)], way.nodes[Place(leg)], {middle, row}, {{left, row}}, {{right, row}});
  }
  for (int i = hasMiddle ? leg + 1 : leg; i < count; ++i) {
    m_grid.PutUpright(way.switches[Place(i)], right, way.nodes[Place(i)]);
  }
}

void CellPlacer::PutUpright(const Path& way, int column, int firstRow) {
  for (std::size_t i = 1; i + 1 < way.nodes.size(); ++i) m_grid.PutNode(way.nodes[i], firstRow + static_cast<int>(i));
  for (std::size_t i = 0; i < way.switches.size(); ++i) m_grid.PutUpright(way.switches[i], column, way.nodes[i]);
}

void CellPlacer::PutInLine(const Cell& coupler, int left) {
  const int right = coupler.bars[0] == left ? coupler.bars[1] : coupler.bars[0];
  const Path way = WayThrough(m_shape, coupler, left, right);
  const int row = m_grid.RowOf(left);
  int column = m_grid.LastColumn();
  for (std::size_t i = 0; i < way.switches.size(); ++i) {
    m_grid.PutNode(way.nodes[i], row);
    const int middle = m_grid.NewColumn();
    const bool isLast = i + 1 == way.switches.size();
    const int next = isLast ? middle + 1 : m_grid.NewColumn();  // the last one ends where the next block begins
    m_grid.PutLevel(way.switches[i], way.nodes[i], {middle, row}, {{column, row}}, {{next, row}});
    column = next;
  }
}

bool CellPlacer::HasSides(int node) const {
  const std::vector<int>& switches = m_shape.SwitchesOf(node);
  return !m_shape.DevicesOf(node).empty() ||
         std::any_of(switches.begin(), switches.end(), [&](int number) { return !m_grid.IsPlaced(number); });
}

/// The nodes that hang on a node between two bars, and the first device on them that is a winding, or -1.
CellPlacer::Side CellPlacer::HangingOn(int node) const {
  Side side;
  std::vector<int> waiting = {node};
  std::set<int> seen = {node};
  while (!waiting.empty()) {
    const int here = waiting.back();
    waiting.pop_back();
    for (const int device : m_shape.DevicesOf(here)) {
      const bool isWinding = m_shape.Level().devices[Place(device)].kind == DeviceKind::kWinding;
      if (isWinding && side.winding < 0) side.winding = device;
    }
    for (const int number : m_shape.SwitchesOf(here)) {
      const int other = m_shape.Other(number, here);
      if (!m_grid.IsPlaced(number) && !m_shape.IsBar(other) && seen.insert(other).second) waiting.push_back(other);
    }
  }
  side.nodes = static_cast<int>(seen.size()) - 1;
  return side;
}

void CellPlacer::PutRowOfBreakers(const Cell& cell) {
  Path way = WayThrough(m_shape, cell, cell.bars[0], cell.bars[1]);
  if (m_plan.PlaceOf(way.nodes.front()).below) way = Reversed(std::move(way));
  for (const int number : way.switches) m_grid.MarkPlaced(number);
  const std::vector<int> inner(way.nodes.begin() + 1, way.nodes.end() - 1);
  std::vector<int> withSides;
  std::copy_if(inner.begin(), inner.end(), std::back_inserter(withSides), [&](int node) { return HasSides(node); });
  // Windings go towards their other level, the rest away from the middle. Each node has rows for what hangs on it.
  std::map<int, int> steps;
  int row = kBetweenBars;
  for (const int node : inner) {
    const Side side = HangingOn(node);
    const auto place = std::find(withSides.begin(), withSides.end(), node) - withSides.begin();
    const bool isUpper = 2 * static_cast<std::size_t>(place) + 1 < withSides.size();
    const bool goesUp = side.winding < 0 ? isUpper : m_shape.IsUp()[Place(side.winding)];
    steps[node] = goesUp ? -1 : 1;
    m_grid.PutNode(node, row + (goesUp ? side.nodes : 0));
    row += side.nodes + 1;
  }
  const int column = m_grid.NewColumn();
  for (std::size_t i = 0; i < way.switches.size(); ++i) {
    m_grid.PutUpright(way.switches[i], column, i == 0 ? way.nodes[1] : way.nodes[i]);
  }
  for (const int node : withSides) m_grid.PutSides(node, steps[node]);
}

}  // namespace dtsdb::pictures::internal
