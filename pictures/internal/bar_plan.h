/// \file
/// Where the bars of a level stand: in blocks from left to right, in a block on lanes one below the other.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <vector>

#include "pictures/internal/level_shape.h"

namespace dtsdb::pictures::internal {

struct BarPlace {
  int block = 0;
  bool below = false;  ///< under the rows of breakers that hang between two bars
  int lane = 0;        ///< from the upper one, counted apart above and below those rows

  bool operator==(const BarPlace&) const = default;
};

/// The plan for the bars of a level. Bars that a cell joins stand in one block, on different lanes; two blocks side by
/// side are joined at most by a coupler in line with its bars.
class BarPlan {
 public:
  explicit BarPlan(const LevelShape& shape);

  const std::vector<std::vector<int>>& Blocks() const { return m_blocks; }
  const BarPlace& PlaceOf(int bar) const { return m_places.at(bar); }
  /// The cell (a place in Cells) between this block and the next one; -1 for none.
  int LinkBehind(std::size_t block) const { return m_links[block]; }
  /// The cell is a chain from a bar above to a bar below, with devices along it.
  bool IsRowOfBreakers(int cell) const { return m_rows.contains(cell); }

 private:
  void ChooseSides();
  bool PutOnSides(int above, int below);
  void JoinBlocks();
  void LinkBlocks();
  void MergeBlocks(const std::vector<std::size_t>& ends, const std::vector<int>& links);
  void AssignLanes();

  const LevelShape& m_shape;
  std::set<int> m_rows;
  std::map<int, bool> m_isBelow;
  std::vector<std::vector<int>> m_blocks;
  std::vector<int> m_links;
  std::map<int, BarPlace> m_places;
};

}  // namespace dtsdb::pictures::internal
