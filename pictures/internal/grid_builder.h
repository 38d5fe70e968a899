/// \file
/// A LevelGrid while things are put on it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "pictures/internal/bar_plan.h"
#include "pictures/internal/level_grid.h"
#include "pictures/internal/level_shape.h"

namespace dtsdb::pictures::internal {

/// Where the zones of a level begin, as rows. Rows that stay empty are taken out at the end.
inline constexpr int kZone = 1 << 27;
inline constexpr int kAboveBars = -1;  ///< and upwards from here
inline constexpr int kUpperBars = 0;
inline constexpr int kBetweenBars = kZone;
inline constexpr int kLowerBars = 2 * kZone;
inline constexpr int kBelowBars = 3 * kZone;

/// Puts nodes on rows, switches and feeders in columns, from left to right.
class GridBuilder {
 public:
  explicit GridBuilder(const LevelShape& shape) : m_shape(shape), m_isPlaced(shape.Level().switches.size()) {}

  const LevelShape& Shape() const { return m_shape; }
  int NewColumn() {
    m_grid.columns = std::max(m_grid.columns, m_nextColumn + 1);
    m_grid.sides.resize(static_cast<std::size_t>(m_grid.columns), m_side);
    return m_nextColumn++;
  }
  /// New columns are on this side of the bars from now on.
  void SetSide(ColumnSide side) { m_side = side; }
  int LastColumn() const { return m_nextColumn - 1; }
  /// The next new column is `column`, which may be one that others use on other rows.
  void ContinueAt(int column) { m_nextColumn = column; }

  void PutNode(int node, int row) { m_grid.rowOf[node] = row; }
  bool HasRow(int node) const { return m_grid.rowOf.contains(node); }
  int RowOf(int node) const { return m_grid.rowOf.at(node); }
  void PutBar(int node, int first, int last) { m_grid.bars.push_back({node, first, last}); }
  void PutFeeder(int device, GridPoint from, bool up) { m_grid.feeders.push_back({device, from, up}); }

  bool IsPlaced(int number) const { return m_isPlaced[static_cast<std::size_t>(number)]; }
  void MarkPlaced(int number) { m_isPlaced[static_cast<std::size_t>(number)] = true; }
  /// A switch upright in `column`, next to `node`, which it joins to one on another row.
  void PutUpright(int number, int column, int node);
  /// A switch on row `row`. The ways begin on the rails of its left and right node.
  void PutLevel(int number, int leftNode, GridPoint at, std::vector<GridPoint> left, std::vector<GridPoint> right);

  /// A switch between two legs that go to row `row`, from the left and the right node.
  void PutLoop(int number, int leftNode, int rightNode, int row);

  /// A tree of nodes, from `node` on row `row`, entered in `column`, in direction `step`: 1 downwards, -1 upwards.
  /// `isRoot`: a way to a bar may go on in `column` against that direction.
  void PutTree(int node, int row, int column, int step, bool isRoot);

  /// What hangs on a node that has its row already, each in a column of its own, in direction `step`.
  void PutSides(int node, int step);

  /// The grid with its rows numbered from 0 without gaps.
  LevelGrid Finish();

 private:
  /// A node of a tree while what hangs on it is put on the grid.
  struct Branching {
    int node;
    int row;
    int column;            ///< for the first thing; others get new ones
    bool isColumnTaken;    ///< there is one in it
    std::size_t next = 0;  ///< place of the switch to be looked at next
  };

  void PutLegs(int node, int column, bool isRoot);
  void PutHanging(Branching first, int step);
  int ColumnFor(Branching& branching);

  const LevelShape& m_shape;
  LevelGrid m_grid;
  int m_nextColumn = 0;
  ColumnSide m_side = ColumnSide::kBoth;
  std::vector<bool> m_isPlaced;
};

}  // namespace dtsdb::pictures::internal
