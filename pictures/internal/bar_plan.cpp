#include "pictures/internal/bar_plan.h"

#include <algorithm>
#include <utility>

#include "formats/import/groups.h"

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
  LinkBlocks();
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
  tools::Groups groups(m_shape.Level().nodes.size());
  for (const Cell& cell : m_shape.Cells()) {
    if (cell.bars.size() < 2 || IsCoupler(m_shape, cell)) continue;
    for (const int bar : cell.bars) groups.Join(bar, cell.bars.front());
  }
  std::map<int, std::vector<int>> blocks;
  for (const int bar : m_shape.Bars()) blocks[groups.Of(bar)].push_back(bar);
  for (auto& [group, block] : blocks) {
    std::sort(block.begin(), block.end());
    m_blocks.push_back(std::move(block));
  }
  std::sort(m_blocks.begin(), m_blocks.end());
}

/// Finds the couplers between neighbouring blocks. Blocks are joined for a coupler that can't stand in line, with those
/// between them.
void BarPlan::LinkBlocks() {
  tools::Groups groups(m_blocks.size());  // by the first block of each
  std::vector<std::size_t> ends(m_blocks.size());
  std::vector<int> links(m_blocks.size(), -1);  // by the last block in front of the link
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    ends[i] = i + 1;
    for (const int bar : m_blocks[i])
      m_places[bar] = {static_cast<int>(i), m_isBelow.contains(bar) && m_isBelow[bar], 0};
  }
  for (std::size_t i = 0; i < m_shape.Cells().size(); ++i) {
    const std::vector<int>& bars = m_shape.Cells()[i].bars;
    if (bars.size() != 2) continue;
    const BarPlace& a = m_places[bars[0]];
    const BarPlace& b = m_places[bars[1]];
    const auto [left, right] = std::minmax({groups.Of(a.block), groups.Of(b.block)});
    if (left == right) continue;
    std::size_t& end = ends[static_cast<std::size_t>(left)];
    const bool isNext = end == static_cast<std::size_t>(right);
    if (isNext && links[end - 1] == -1 && a.below == b.below) {
      links[end - 1] = static_cast<int>(i);
      continue;
    }
    const std::size_t last = ends[static_cast<std::size_t>(right)];
    for (; end < last; end = ends[end]) groups.Join(static_cast<int>(end), left);
  }
  MergeBlocks(ends, links);
}

/// Leaves the blocks of which `ends` has where the next one begins, with the links behind them.
void BarPlan::MergeBlocks(const std::vector<std::size_t>& ends, const std::vector<int>& links) {
  std::vector<std::vector<int>> merged;
  for (std::size_t first = 0; first < m_blocks.size(); first = ends[first]) {
    std::vector<int>& block = merged.emplace_back();
    for (std::size_t i = first; i < ends[first]; ++i) block.insert(block.end(), m_blocks[i].begin(), m_blocks[i].end());
    std::sort(block.begin(), block.end());
    for (const int bar : block) m_places[bar].block = static_cast<int>(merged.size()) - 1;
    m_links.push_back(links[ends[first] - 1]);
  }
  m_blocks = std::move(merged);
}

/// A bar that a coupler joins to the block in front stands on the lane of its partner there.
void BarPlan::AssignLanes() {
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    int linked = -1;
    if (i > 0 && m_links[i - 1] >= 0) {
      const std::vector<int>& bars = m_shape.Cells()[static_cast<std::size_t>(m_links[i - 1])].bars;
      const bool firstIsHere = m_places[bars[0]].block == static_cast<int>(i);
      linked = firstIsHere ? bars[0] : bars[1];
      m_places[linked].lane = m_places[firstIsHere ? bars[1] : bars[0]].lane;
    }
    int above = 0;
    int below = 0;
    for (const int bar : m_blocks[i]) {
      if (bar == linked) continue;
      BarPlace& place = m_places[bar];
      int& next = place.below ? below : above;
      const bool isTaken = linked >= 0 && m_places[linked].below == place.below && m_places[linked].lane == next;
      place.lane = next + (isTaken ? 1 : 0);
      next = place.lane + 1;
    }
  }
}

}  // namespace dtsdb::pictures::internal
