/// \file
/// Puts the cells of a level on its grid, each in columns of its own.
#pragma once

#include "pictures/internal/bar_plan.h"
#include "pictures/internal/grid_builder.h"
#include "pictures/internal/level_shape.h"

namespace dtsdb::pictures::internal {

/// Puts cells on a grid on which the bars have their rows. What it is given must outlive it.
class CellPlacer {
 public:
  CellPlacer(const LevelShape& shape, const BarPlan& plan, GridBuilder& grid)
      : m_shape(shape), m_plan(plan), m_grid(grid) {}

  /// A cell (a place in Cells) in the next columns.
  void Put(int cell);
  /// The side of the bars on which a cell stands; both for what stands between them.
  ColumnSide SideOf(int cell) const;
  /// A coupler in line between bar `left`, which ends in the last column, and a bar that begins behind it.
  void PutInLine(const Cell& coupler, int left);

 private:
  void PutBay(const Cell& cell);
  void PutOnBar(const Cell& cell);
  void PutCoupler(const Cell& cell);
  void PutCouplerBelow(const Path& way);
  void PutUpright(const Path& way, int column, int firstRow);
  void PutRowOfBreakers(const Cell& cell);
  bool HasSides(int node) const;
  struct Side {
    int nodes = 0;
    int winding = -1;
  };
  Side HangingOn(int node) const;

  const LevelShape& m_shape;
  const BarPlan& m_plan;
  GridBuilder& m_grid;
};

}  // namespace dtsdb::pictures::internal
