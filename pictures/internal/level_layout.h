/// \file
/// Lays a voltage level out on rows and columns.
#pragma once

#include "pictures/internal/level_grid.h"
#include "pictures/internal/level_shape.h"

namespace dtsdb::pictures::internal {

/// The grid of a level. Bars stand one above the other, where a coupler allows it side by side; cells hang below or
/// above them, rows of breakers between them. A level that is a ring is drawn as one (ring_layout.h).
LevelGrid LayOutLevel(const LevelShape& shape);

}  // namespace dtsdb::pictures::internal
