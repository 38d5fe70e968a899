/// \file
/// A voltage level laid out on rows and columns, before anything has a size.
///
/// Every node is a horizontal rail on its row, from the first to the last column in which something is attached to it;
/// a node with one column is a point. A switch or feeder runs in a column of its own. So no two symbols meet, and
/// lines cross at right angles only.
#pragma once

#include <map>
#include <vector>

namespace dtsdb::pictures::internal {

struct GridPoint {
  int column = 0;
  int row = 0;
};

/// A switch: its symbol, and the way from each of its nodes to there.
struct GridSwitch {
  int number = -1;              ///< place in StationLevel::switches
  GridPoint at;                 ///< an upright one stands between row and row + 1, another on the row
  bool upright = true;          ///< the wires reach it from above and below; else from left and right
  std::vector<GridPoint> from;  ///< begins on the rail of its from node
  std::vector<GridPoint> to;    ///< begins on the rail of its to node
  bool fromIsFirst = true;      ///< the from node is above, or on the left
};

/// A device at the upper or lower edge of the level.
struct GridFeeder {
  int number = -1;  ///< place in StationLevel::devices
  GridPoint from;   ///< on the rail of its node
  bool up = false;
};

/// A rail that is drawn as a busbar.
struct GridBar {
  int node = -1;
  int first = 0;  ///< the column in which it begins; kept free for its name
  int last = 0;   ///< it reaches at least over all columns up to this one
};

/// Where the things of a column stand. Columns above the bars of a block and columns below them stand one above the
/// other, but on different tracks.
enum class ColumnSide { kBoth, kAbove, kBelow };

struct LevelGrid {
  int columns = 0;
  std::vector<ColumnSide> sides;  ///< by column
  int rows = 0;
  std::map<int, int> rowOf;  ///< of nodes
  std::vector<GridBar> bars;
  std::vector<GridSwitch> switches;
  std::vector<GridFeeder> feeders;
};

}  // namespace dtsdb::pictures::internal
