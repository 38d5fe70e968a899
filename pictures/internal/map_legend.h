/// \file
/// The legend of a map.
#pragma once

#include "pictures/grid.h"
#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

/// Adds the legend in lines from `top` downwards: what widths, colours and discs stand for, as far as the grid has
/// them. Returns where it ends.
int DrawMapLegend(const Grid& grid, int top, Picture& picture);

}  // namespace dtsdb::pictures::internal
