/// \file
/// Distances between points in the plane, and making them large enough.
#pragma once

#include <vector>

#include "pictures/internal/spring_layout.h"

namespace dtsdb::pictures::internal {

struct PlaneBox {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

/// The smallest box with all points.
PlaneBox BoxAround(const std::vector<PlanePoint>& points);

/// For each point the distance to the nearest other one; none for a single point.
std::vector<double> NearestDistances(const std::vector<PlanePoint>& points);

/// Moves points, in pixels, away from each other and from edges that aren't theirs, until symbols fit between them or
/// no more is gained. The same points move the same way.
void Spread(std::vector<PlanePoint>& points, const Edges& edges);

}  // namespace dtsdb::pictures::internal
