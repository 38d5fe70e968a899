/// \file
/// The wires of the lines on a map.
#pragma once

#include <vector>

#include "pictures/grid.h"
#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

/// A wire for each line, from its from station to its to station, which stand at `stations`: straight, parallel lines
/// side by side, and a line that begins and ends in one station as a loop above it.
std::vector<Wire> WiresOf(const Grid& grid, const std::vector<Point>& stations);

}  // namespace dtsdb::pictures::internal
