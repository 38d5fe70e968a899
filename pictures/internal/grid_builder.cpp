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
  bool taken = false;
  const auto next = [&] { return std::exchange(taken, true) ? NewColumn() : column; };
  for (const int device : m_shape.DevicesOf(node)) PutFeeder(device, {next(), row}, step < 0);
  for (const int number : m_shape.SwitchesOf(node)) {
    if (IsPlaced(number)) continue;
    const int other = m_shape.Other(number, node);
    if (other == node) {
      PutLoop(number, node, node, row + step);
    } else if (HasRow(other)) {  // the way closes a loop to a node nearer the bars
      PutUpright(number, NewColumn(), node);
    } else {
      const int below = next();
      PutNode(other, row + step);
      PutUpright(number, below, node);
      PutTree(other, row + step, below, step, false);
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

void GridBuilder::PutSides(int node, int step) {
  const int row = RowOf(node);
  for (const int device : m_shape.DevicesOf(node)) PutFeeder(device, {NewColumn(), row}, step < 0);
  for (const int number : m_shape.SwitchesOf(node)) {
    if (IsPlaced(number)) continue;
    const int other = m_shape.Other(number, node);
    if (other == node) {
      PutLoop(number, node, node, row + step);
    } else if (HasRow(other)) {
      PutUpright(number, NewColumn(), node);
    } else {
      const int column = NewColumn();
      PutNode(other, row + step);
      PutUpright(number, column, node);
      PutTree(other, row + step, column, step, false);
    }
  }
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
