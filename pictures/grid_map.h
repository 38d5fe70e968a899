/// \file
/// The map of a grid.
#pragma once

#include "pictures/grid.h"
#include "pictures/picture.h"

namespace dtsdb::pictures {

/// What a map shows.
struct GridOptions {
  bool flows = false;  ///< powers with arrows on lines, where they are known
};

/// Draws stations as discs, the larger the higher their voltage, and lines between them, the thicker the higher theirs;
/// parallel ones side by side. Islands have colours, what is dead is grey and dashed. Stations stand where they are on
/// the map if that is known, else where the lines between them draw them. Names that would overlap are left out, those
/// of the lower voltages first; titles have them all. Every station and line is one element. The same grid gives the
/// same picture.
Picture DrawGrid(const Grid& grid, const GridOptions& options = {});

}  // namespace dtsdb::pictures
