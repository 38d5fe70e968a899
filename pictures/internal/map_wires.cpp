#include "pictures/internal/map_wires.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr double kBetweenParallels = 5;
constexpr double kMostAside = 10;    // of a parallel line, from the middle of all
constexpr double kBundleStart = 18;  // from a station to where its parallel lines are parallel
constexpr int kLoopHeight = 24;
constexpr int kLoopStep = 5;
constexpr int kLoopHalf = 6;

Point Moved(Point from, double x, double y) {
  return {from.x + static_cast<int>(std::lround(x)), from.y + static_cast<int>(std::lround(y))};
}

/// The wire from a to b, `aside` to the right of the straight one.
Wire Bent(Point a, Point b, double aside) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double length = std::hypot(dx, dy);
  if (length < 1 || aside == 0) return {a, b};
  const double x = dx / length;
  const double y = dy / length;
  const double start = std::min(kBundleStart, length / 3);
  return {a, Moved(a, x * start - y * aside, y * start + x * aside),
          Moved(b, -x * start - y * aside, -y * start + x * aside), b};
}

/// The wire of a line of `count` lines between two stations.
Wire WireOf(Point a, Point b, int number, int count) {
  if (count == 1) return {a, b};
  const double between = std::min(kBetweenParallels, 2 * kMostAside / (count - 1));
  return Bent(a, b, between * (number - (count - 1) / 2.0));
}

Wire Loop(Point at, int number) {
  const int top = at.y - kLoopHeight - kLoopStep * number;
  const int half = kLoopHalf + 2 * number;
  return {at, {at.x - half, top}, {at.x + half, top}, at};
}

}  // namespace

std::vector<Wire> WiresOf(const Grid& grid, const std::vector<Point>& stations) {
  std::map<std::pair<int, int>, std::vector<std::size_t>> bundles;
  for (std::size_t i = 0; i < grid.lines.size(); ++i) {
    bundles[std::minmax(grid.lines[i].from, grid.lines[i].to)].push_back(i);
  }
  std::vector<Wire> wires(grid.lines.size());
  for (const auto& [ends, bundle] : bundles) {
    const auto [a, b] = ends;
    for (std::size_t i = 0; i < bundle.size(); ++i) {
      const int number = static_cast<int>(i);
      Wire wire = a == b ? Loop(stations[Place(a)], number)
                         : WireOf(stations[Place(a)], stations[Place(b)], number, static_cast<int>(bundle.size()));
      if (grid.lines[bundle[i]].from != a) std::reverse(wire.begin(), wire.end());
      wires[bundle[i]] = std::move(wire);
    }
  }
  return wires;
}

}  // namespace dtsdb::pictures::internal
