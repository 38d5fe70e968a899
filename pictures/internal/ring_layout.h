/// \file
/// Levels whose switches form a ring.
#pragma once

#include <vector>

#include "pictures/internal/level_grid.h"
#include "pictures/internal/level_shape.h"

namespace dtsdb::pictures::internal {

/// A closed way: nodes[i] - switches[i] - nodes[i + 1], and from the last one to the first.
struct Ring {
  std::vector<int> nodes;
  std::vector<int> switches;
};

/// The ring of a level, when all of it is one ring with trees on it: three places of it at least carry something, and
/// all buses stand on it. Else empty.
Ring FindRing(const LevelShape& shape);

/// Half of what the ring carries stands on its upper side, half on its lower one.
LevelGrid LayOutRing(const LevelShape& shape, const Ring& ring);

}  // namespace dtsdb::pictures::internal
