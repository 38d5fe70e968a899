#include "pictures/internal/bar_plan.h"

#include <algorithm>

namespace dtsdb::pictures::internal {
namespace {

/// Devices hang along a way from bar to bar that goes through breakers; in a fork it goes through disconnectors only.
bool HangsBetweenBars(const LevelShape& shape, const Cell& cell) {
  if (cell.bars.size() != 2 || cell.devices.empty()) return false;
  const Path way = WayThrough(shape, cell, cell.bars[0], cell.bars[1]);
  return std::any_of(way.switches.begin(), way.switches.end(),
                     [&](int number) { return shape.Switch(number).isBreaker; });
}

}  // namespace

BarPlan::BarPlan(const LevelShape& shape) : m_shape(shape) {
  ChooseSides();
  JoinBlocks();
  while (!LinkBlocks()) {
  }
  AssignLanes();
}

void BarPlan::ChooseSides() {
  for (std::size_t i = 0; i < m_shape.Cells().size(); ++i) {
    const Cell& cell = m_shape.Cells()[i];
    if (HangsBetweenBars(m_shape, cell) && PutOnSides(cell.bars[0], cell.bars[1])) m_rows.insert(static_cast<int>(i));
  }
}

/// False when they stand on one side already.
bool BarPlan::PutOnSides(int above, int below) {
  const bool knowsAbove = m_isBelow.contains(above);
  const bool knowsBelow = m_isBelow.contains(below);
  if (!knowsAbove && !knowsBelow) m_isBelow[above] = false;
  if (!knowsAbove && knowsBelow) m_isBelow[above] = !m_isBelow[below];
  if (!knowsBelow) m_isBelow[below] = !m_isBelow[above];
  return m_isBelow[above] != m_isBelow[below];
}

/// Blocks of bars that cells other than couplers join.
void BarPlan::JoinBlocks() {
  for (const int bar : m_shape.Bars()) m_blocks.push_back({bar});
  for (const Cell& cell : m_shape.Cells()) {
    if (cell.bars.size() < 2 || IsCoupler(m_shape, cell)) continue;
    std::vector<int> joined;
    std::vector<std::vector<int>> others;
    for (std::vector<int>& block : m_blocks) {
      const bool touches = std::any_of(block.begin(), block.end(), [&](int bar) {
        return std::binary_search(cell.bars.begin(), cell.bars.end(), bar);
      });
      if (touches) {
        joined.insert(joined.end(), block.begin(), block.end());
      } else {
        others.push_back(std::move(block));
      }
    }
    others.push_back(std::move(joined));
    m_blocks = std::move(others);
  }
  for (std::vector<int>& block : m_blocks) std::sort(block.begin(), block.end());
  std::sort(m_blocks.begin(), m_blocks.end());
}

/// Finds the couplers between neighbouring blocks. False when blocks had to be joined for a coupler that can't stand in
/// line.
bool BarPlan::LinkBlocks() {
  m_links.assign(m_blocks.size(), -1);
  m_places.clear();
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    for (const int bar : m_blocks[i])
      m_places[bar] = {static_cast<int>(i), m_isBelow.contains(bar) && m_isBelow[bar], 0};
  }
  for (std::size_t i = 0; i < m_shape.Cells().size(); ++i) {
    if (!LinkBlocksBy(static_cast<int>(i))) return false;
  }
  return true;
}

bool BarPlan::LinkBlocksBy(int cell) {
  const std::vector<int>& bars = m_shape.Cells()[static_cast<std::size_t>(cell)].bars;
  if (bars.size() != 2) return true;
  const BarPlace& a = m_places[bars[0]];
  const BarPlace& b = m_places[bars[1]];
  if (a.block == b.block) return true;
  const auto [left, right] = std::minmax(a.block, b.block);
  int& link = m_links[static_cast<std::size_t>(left)];
  if (right == left + 1 && link == -1 && a.below == b.below) {
    link = cell;
    return true;
  }
  const auto first = m_blocks.begin() + left;
  for (auto block = first + 1; block <= m_blocks.begin() + right; ++block) {
    first->insert(first->end(), block->begin(), block->end());
  }
  std::sort(first->begin(), first->end());
  m_blocks.erase(first + 1, m_blocks.begin() + right + 1);
  return false;
}

/// A bar that a coupler joins to the block in front stands on the lane of its partner there.
void BarPlan::AssignLanes() {
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    std::set<std::pair<bool, int>> taken;
    int linked = -1;
    if (i > 0 && m_links[i - 1] >= 0) {
      const std::vector<int>& bars = m_shape.Cells()[static_cast<std::size_t>(m_links[i - 1])].bars;
      const bool firstIsHere = m_places[bars[0]].block == static_cast<int>(i);
      linked = firstIsHere ? bars[0] : bars[1];
      m_places[linked].lane = m_places[firstIsHere ? bars[1] : bars[0]].lane;
      taken.emplace(m_places[linked].below, m_places[linked].lane);
    }
    for (const int bar : m_blocks[i]) {
      if (bar == linked) continue;
      BarPlace& place = m_places[bar];
      while (!taken.emplace(place.below, place.lane).second) ++place.lane;
    }
  }
}

}  // namespace dtsdb::pictures::internal
