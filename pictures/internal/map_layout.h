/// \file
/// Where the stations of a map stand.
#pragma once

#include <vector>

#include "pictures/grid.h"
#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

inline constexpr int kMapMargin = 90;  ///< left and right of the stations, for their names

struct MapLayout {
  std::vector<Point> stations;  ///< middles, by place in Grid::stations
  int width = 0;
  int height = 0;
};

/// Lays out a map from `top` downwards. Stations whose position is known stand as on the map, north is up; what hangs
/// on them stands near its neighbours. Below them stand those of which no position is known, by springs, and at the
/// end, in rows, those without lines and position. None is nearer to another, or to a line that isn't its own, than
/// symbols need, but for grids that are too dense.
MapLayout LayOutMap(const Grid& grid, int top);

}  // namespace dtsdb::pictures::internal
