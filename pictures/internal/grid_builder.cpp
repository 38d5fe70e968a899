#include "pictures/internal/grid_builder.h"

#include <algorithm>
#include <set>
#include <utility>

namespace dtsdb::pictures::internal {

// While the grid is built, an upright switch stands on an odd number: twice the row that it is next to, plus or minus
// one.
void GridBuilder::PutUpright(int number, int column, int node) {
  const StationSwitch& item = m_shape.Switch(number);
  const int from = RowOf(item.from);
  const int to = RowOf(item.to);
  const int row = RowOf(node);
  const int slot = 2 * row + (row == std::min(from, to) ? 1 : -1);
  m_isPlaced[static_cast<std::size_t>(number)] = true;
  m_grid.switches.push_back({number, {column, slot}, true, {{column, from}}, {{column, to}}, from < to});
}

void GridBuilder::PutLevel(int number, int leftNode, GridPoint at, std::vector<GridPoint> left,
                           std::vector<GridPoint> right) {
  const bool fromIsLeft = m_shape.Switch(number).from == leftNode;
  if (!fromIsLeft) std::swap(left, right);
  m_isPlaced[static_cast<std::size_t>(number)] = true;
  m_grid.switches.push_back({number, at, false, std::move(left), std::move(right), fromIsLeft});
}

void GridBuilder::PutTree(int node, int row, int column, int step, bool isRoot) {
  PutNode(node, row);
  PutLegs(node, column, isRoot);
  PutHanging({node, row, column, false}, step);
}

void GridBuilder::PutSides(int node, int step) { PutHanging({node, RowOf(node), 0, true}, step); }

int GridBuilder::ColumnFor(Branching& branching) {
  return std::exchange(branching.isColumnTaken, true) ? NewColumn() : branching.column;
}

/// What hangs on a node, then on what hangs there. A level can be one long chain: no call stands for a node.
void GridBuilder::PutHanging(Branching first, int step) {
  std::vector<Branching> open;
  const auto begin = [&](Branching branching) {
    for (const int device : m_shape.DevicesOf(branching.node)) {
      PutFeeder(device, {ColumnFor(branching), branching.row}, step < 0);
    }
    open.push_back(branching);
  };
  begin(first);
  while (!open.empty()) {
    Branching& here = open.back();
    const std::vector<int>& switches = m_shape.SwitchesOf(here.node);
    if (here.next == switches.size()) {
      open.pop_back();
      continue;
    }
    const int number = switches[here.next++];
    if (IsPlaced(number)) continue;
    const int other = m_shape.Other(number, here.node);
    const int row = here.row + step;
    if (other == here.node) {
      PutLoop(number, other, other, row);
    } else if (HasRow(other)) {  // the way closes a loop to a node nearer the bars
      PutUpright(number, NewColumn(), here.node);
    } else {
      const int column = ColumnFor(here);
      PutNode(other, row);
      PutUpright(number, column, here.node);
      PutLegs(other, column, false);
      begin({other, row, column, false});
    }
  }
}

/// The switches from a node to bars.
void GridBuilder::PutLegs(int node, int column, bool isRoot) {
  bool taken = !isRoot;
  for (const int number : m_shape.SwitchesOf(node)) {
    if (IsPlaced(number) || !m_shape.IsBar(m_shape.Other(number, node))) continue;
    PutUpright(number, std::exchange(taken, true) ? NewColumn() : column, node);
  }
}

void GridBuilder::PutLoop(int number, int leftNode, int rightNode, int row) {
  const int left = NewColumn();
  const int middle = NewColumn();
  const int right = NewColumn();
  PutLevel(number, leftNode, {middle, row}, {{left, RowOf(leftNode)}, {left, row}},
           {{right, RowOf(rightNode)}, {right, row}});
}

LevelGrid GridBuilder::Finish() {
  std::set<int> used;
  for (const auto& [node, row] : m_grid.rowOf) used.insert(row);
  for (const GridSwitch& item : m_grid.switches) {
    for (const GridPoint& point : item.from) used.insert(point.row);
    for (const GridPoint& point : item.to) used.insert(point.row);
    if (!item.upright) used.insert(item.at.row);
  }
  const std::vector<int> rows(used.begin(), used.end());
  const auto number = [&](int row) {
    return static_cast<int>(std::lower_bound(rows.begin(), rows.end(), row) - rows.begin());
  };
  m_grid.rows = static_cast<int>(rows.size());
  for (auto& [node, row] : m_grid.rowOf) row = number(row);
  for (GridSwitch& item : m_grid.switches) {
    for (GridPoint& point : item.from) point.row = number(point.row);
    for (GridPoint& point : item.to) point.row = number(point.row);
    // The slot right below a row, or right above one.
    const int beside = item.at.row >= 0 ? item.at.row / 2 : (item.at.row - 1) / 2;
    item.at.row = item.upright ? number(beside + 1) - 1 : number(item.at.row);
  }
  for (GridFeeder& feeder : m_grid.feeders) feeder.from.row = number(feeder.from.row);
  return std::move(m_grid);
}

}  // namespace dtsdb::pictures::internal
