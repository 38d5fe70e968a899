#include "pictures/internal/level_layout.h"

#include <algorithm>
#include <vector>

#include "pictures/internal/bar_plan.h"
#include "pictures/internal/cell_placer.h"
#include "pictures/internal/grid_builder.h"
#include "pictures/internal/ring_layout.h"

namespace dtsdb::pictures::internal {
namespace {

/// A level around its bars.
class LevelLayout {
 public:
  explicit LevelLayout(const LevelShape& shape)
      : m_shape(shape), m_plan(shape), m_grid(shape), m_cells(shape, m_plan, m_grid) {}

  LevelGrid Build() {
    for (const int bar : m_shape.Bars()) {
      const BarPlace& place = m_plan.PlaceOf(bar);
      m_grid.PutNode(bar, (place.below ? kLowerBars : kUpperBars) + place.lane);
    }
    AssignCells();
    for (std::size_t i = 0; i < m_plan.Blocks().size(); ++i) PutBlock(i);
    for (std::size_t i = 0; i < m_shape.Cells().size(); ++i) {
      if (m_shape.Cells()[i].bars.empty()) m_cells.Put(static_cast<int>(i));
    }
    return m_grid.Finish();
  }

 private:
  /// The cells of each block, but for the links between blocks.
  void AssignCells() {
    m_cellsOf.resize(m_plan.Blocks().size());
    for (std::size_t i = 0; i < m_shape.Cells().size(); ++i) {
      const std::vector<int>& bars = m_shape.Cells()[i].bars;
      if (bars.empty()) continue;
      const auto block = static_cast<std::size_t>(m_plan.PlaceOf(bars.front()).block);
      const int cell = static_cast<int>(i);
      const bool isLink = cell == m_plan.LinkBehind(block) || (block > 0 && cell == m_plan.LinkBehind(block - 1));
      if (!isLink) m_cellsOf[block].push_back(cell);
    }
  }

  void PutBlock(std::size_t block) {
    const int first = m_grid.NewColumn();
    if (m_plan.Blocks()[block].size() == 1) {
      PutOnBothSides(block, first + 1);
    } else {
      for (const int cell : m_cellsOf[block]) {
        m_grid.SetSide(m_cells.SideOf(cell));
        m_cells.Put(cell);
      }
      m_grid.SetSide(ColumnSide::kBoth);
    }
    for (const int bar : m_plan.Blocks()[block]) m_grid.PutBar(bar, first, m_grid.LastColumn());
    const int link = m_plan.LinkBehind(block);
    if (link < 0) return;
    const Cell& coupler = m_shape.Cells()[static_cast<std::size_t>(link)];
    const bool firstIsLeft = m_plan.PlaceOf(coupler.bars[0]).block == static_cast<int>(block);
    m_cells.PutInLine(coupler, coupler.bars[firstIsLeft ? 0 : 1]);
  }

  /// What stands above a single bar and what hangs below it meet nowhere, so they share columns.
  void PutOnBothSides(std::size_t block, int first) {
    PutCells(block, true);
    const int end = m_grid.LastColumn();
    m_grid.ContinueAt(first);
    PutCells(block, false);
    m_grid.ContinueAt(std::max(end, m_grid.LastColumn()) + 1);
  }

  /// The cells on one side of the bars of a block.
  void PutCells(std::size_t block, bool up) {
    for (const int cell : m_cellsOf[block]) {
      if (m_shape.Cells()[static_cast<std::size_t>(cell)].up == up) m_cells.Put(cell);
    }
  }

  const LevelShape& m_shape;
  BarPlan m_plan;
  GridBuilder m_grid;
  CellPlacer m_cells;
  std::vector<std::vector<int>> m_cellsOf;  // by block
};

}  // namespace

LevelGrid LayOutLevel(const LevelShape& shape) {
  if (shape.Level().nodes.empty()) return {};
  const Ring ring = FindRing(shape);
  return ring.nodes.empty() ? LevelLayout(shape).Build() : LayOutRing(shape, ring);
}

}  // namespace dtsdb::pictures::internal
