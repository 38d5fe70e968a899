/// \file
/// The elements of transformers.
#pragma once

#include <string>
#include <vector>

#include "pictures/internal/level_drawing.h"
#include "pictures/picture.h"
#include "pictures/station.h"

namespace dtsdb::pictures::internal {

inline constexpr int kAside = 8;  ///< of the second and third circle of three, from the middle of the first

/// An end of a winding in the picture.
struct DrawnEnd {
  const StationDevice* device = nullptr;
  std::string classes;             ///< of its node
  Pin pin;                         ///< where its wire ends at the edge of its level
  std::vector<std::string> words;  ///< what is written beside it
};

/// A transformer: the primary end, which bears the symbol, and one or two others.
struct DrawnTransformer {
  DrawnEnd primary;
  std::vector<DrawnEnd> others;
  const StationLevel* star = nullptr;  ///< the star point of three windings
  bool flows = false;
};

/// Where the wires to the other ends begin, in their order.
std::vector<Point> TerminalsOf(const DrawnTransformer& transformer);

/// Adds the elements of a transformer: one for each winding and, for a star point, its level, node and buses.
void DrawTransformer(const DrawnTransformer& transformer, Picture& picture);

}  // namespace dtsdb::pictures::internal
