#include "pictures/internal/map_layout.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <utility>

#include "pictures/internal/place.h"
#include "pictures/internal/spacing.h"
#include "pictures/internal/spring_layout.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr double kNearestBySprings = 76;  // pixels to the nearest station, of half of the stations at least
constexpr double kNearestOnMap = 44;      // likewise; cities are dense, and the land between them wide
constexpr double kNearestOfFew = 120;     // likewise, in a grid that has few
constexpr std::size_t kFew = 40;
constexpr double kMostPerStation = 260;  // width and height of a map, for the root of its number of stations
constexpr double kFurthest = 1e9;        // of a position from its origin
constexpr int kBlockGap = 40;
constexpr int kVerticalMargin = 30;
constexpr int kRowColumn = 170;  // stations without lines
constexpr int kRowHeight = 34;
constexpr int kLeastWidth = 640;
constexpr double kShape = 1.4;  // width for height

/// Where a station stands; null where that isn't known, and for what is no place on Earth in any unit.
const MapPosition* PositionOf(const GridStation& station) {
  if (!station.position) return nullptr;
  const bool isPlace = std::fabs(station.position->x) <= kFurthest && std::fabs(station.position->y) <= kFurthest;
  return isPlace ? &*station.position : nullptr;
}

/// Degrees, unless a position is beyond them.
bool AreDegrees(const std::vector<GridStation>& stations) {
  return std::all_of(stations.begin(), stations.end(), [](const GridStation& station) {
    const MapPosition* const position = PositionOf(station);
    return position == nullptr || (std::fabs(position->x) <= 180 && std::fabs(position->y) <= 90);
  });
}

/// The factor by which distances in `points` become pixels.
double ScaleOf(const std::vector<PlanePoint>& points, double nearest, double most) {
  std::vector<double> distances = NearestDistances(points);
  distances.erase(std::remove(distances.begin(), distances.end(), 0.0), distances.end());
  if (distances.empty()) return 1;
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
  std::nth_element(distances.begin(), middle, distances.end());
  const PlaneBox box = BoxAround(points);
  const double extent = std::max(box.right - box.left, box.bottom - box.top);
  return std::min(nearest / *middle, most / extent);
}

/// The layout of one map, block by block from top to bottom.
class Layouter {
 public:
  Layouter(const Grid& grid, int top) : m_grid(grid), m_neighbours(grid.stations.size()), m_top(top) {
    m_layout.stations.resize(grid.stations.size());
    for (const GridLine& line : grid.lines) {
      if (line.from == line.to) continue;
      m_neighbours[Place(line.from)].insert(line.to);
      m_neighbours[Place(line.to)].insert(line.from);
    }
  }

  MapLayout LayOut() {
    const std::vector<int> located = Located();
    std::vector<int> sprung;
    std::vector<int> alone;
    for (std::size_t i = 0; i < m_neighbours.size(); ++i) {
      if (m_isPlaced[i]) continue;
      (m_neighbours[i].empty() ? alone : sprung).push_back(static_cast<int>(i));
    }
    m_layout.width = kLeastWidth;
    if (!located.empty()) PutParts({Sized(located, m_located, HasFew() ? kNearestOfFew : kNearestOnMap)});
    if (!sprung.empty()) PutBySprings(sprung, alone);
    PutInRows(alone);
    m_layout.height = m_top;
    return std::move(m_layout);
  }

 private:
  bool HasFew() const { return m_neighbours.size() <= kFew; }

  /// Stations that stand together, in pixels from the upper left corner of the box around them.
  struct Part {
    std::vector<int> stations;
    std::vector<PlanePoint> points;
    int width = 0;
    int height = 0;
  };

  /// The stations with a position, and what hangs on them: each where its neighbours stand in the mean.
  std::vector<int> Located() {
    m_isPlaced.resize(m_grid.stations.size());
    std::vector<PlanePoint> places(m_grid.stations.size());
    PlaceLocated(places);
    for (std::vector<int> last = Placed(); !last.empty();) last = PlaceNext(last, places);
    std::vector<int> located;
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!m_isPlaced[i]) continue;
      located.push_back(static_cast<int>(i));
      m_located.push_back(places[i]);
    }
    return located;
  }

  std::vector<int> Placed() const {
    std::vector<int> placed;
    for (std::size_t i = 0; i < m_isPlaced.size(); ++i) {
      if (m_isPlaced[i]) placed.push_back(static_cast<int>(i));
    }
    return placed;
  }

  /// Places the stations that hang on those placed last, and returns them.
  std::vector<int> PlaceNext(const std::vector<int>& last, std::vector<PlanePoint>& places) {
    std::set<int> next;
    for (const int station : last) {
      for (const int neighbour : m_neighbours[Place(station)]) {
        if (!m_isPlaced[Place(neighbour)]) next.insert(neighbour);
      }
    }
    for (const int station : next) {
      int count = 0;
      PlanePoint sum;
      for (const int neighbour : m_neighbours[Place(station)]) {
        if (!m_isPlaced[Place(neighbour)]) continue;
        sum = {sum.x + places[Place(neighbour)].x, sum.y + places[Place(neighbour)].y};
        ++count;
      }
      places[Place(station)] = {sum.x / count, sum.y / count};
    }
    for (const int station : next) m_isPlaced[Place(station)] = true;
    return {next.begin(), next.end()};
  }

  /// North is up. Degrees of longitude are as long as in the middle of the map.
  void PlaceLocated(std::vector<PlanePoint>& places) {
    double south = 90;
    double north = -90;
    for (const GridStation& station : m_grid.stations) {
      const MapPosition* const position = PositionOf(station);
      if (position == nullptr) continue;
      south = std::min(south, position->y);
      north = std::max(north, position->y);
    }
    const double middle = (south + north) / 2 * std::numbers::pi / 180;
    const double stretch = AreDegrees(m_grid.stations) ? std::max(std::cos(middle), 0.1) : 1;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const MapPosition* const position = PositionOf(m_grid.stations[i]);
      if (position == nullptr) continue;
      places[i] = {position->x * stretch, -position->y};
      m_isPlaced[i] = true;
    }
  }

  /// Parts that don't hang together are laid out each for itself.
  void PutBySprings(const std::vector<int>& stations, std::vector<int>& alone) {
    std::vector<Part> parts;
    for (std::vector<int>& part : PartsOf(stations)) {
      std::vector<PlanePoint> points = LayOutBySprings(static_cast<int>(part.size()), EdgesAmong(part));
      if (points.size() != part.size()) {
        alone.insert(alone.end(), part.begin(), part.end());
        continue;
      }
      const PlaneBox box = BoxAround(points);
      if (box.bottom - box.top > box.right - box.left) {
        for (PlanePoint& point : points) std::swap(point.x, point.y);
      }
      parts.push_back(Sized(std::move(part), std::move(points), HasFew() ? kNearestOfFew : kNearestBySprings));
    }
    std::sort(alone.begin(), alone.end());
    PutParts(parts);
  }

  /// The stations that hang together by lines, in the order of their first.
  std::vector<std::vector<int>> PartsOf(const std::vector<int>& stations) const {
    std::vector<std::vector<int>> parts;
    std::vector<bool> isSeen = m_isPlaced;
    for (const int first : stations) {
      if (isSeen[Place(first)]) continue;
      isSeen[Place(first)] = true;
      std::vector<int>& part = parts.emplace_back(1, first);
      for (std::size_t i = 0; i < part.size(); ++i) {
        for (const int next : m_neighbours[Place(part[i])]) {
          if (!isSeen[Place(next)]) part.push_back(next);
          isSeen[Place(next)] = true;
        }
      }
      std::sort(part.begin(), part.end());
    }
    return parts;
  }

  /// The lines among `stations`, by their places in it.
  Edges EdgesAmong(const std::vector<int>& stations) const {
    std::vector<int> placeOf(m_neighbours.size(), -1);
    for (std::size_t i = 0; i < stations.size(); ++i) placeOf[Place(stations[i])] = static_cast<int>(i);
    Edges edges;
    for (const int station : stations) {
      for (const int other : m_neighbours[Place(station)]) {
        if (station < other && placeOf[Place(other)] >= 0)
          edges.emplace_back(placeOf[Place(station)], placeOf[Place(other)]);
      }
    }
    return edges;
  }

  Part Sized(std::vector<int> stations, std::vector<PlanePoint> points, double nearest) const {
    const double scale = ScaleOf(points, nearest, kMostPerStation * std::sqrt(static_cast<double>(points.size())));
    for (PlanePoint& point : points) point = {point.x * scale, point.y * scale};
    Spread(points, EdgesAmong(stations));
    const PlaneBox box = BoxAround(points);
    for (PlanePoint& point : points) point = {point.x - box.left, point.y - box.top};
    return {std::move(stations), std::move(points), static_cast<int>(std::lround(box.right - box.left)),
            static_cast<int>(std::lround(box.bottom - box.top))};
  }

  /// Puts parts in rows, as wide as the widest of them or as makes the whole about as high as wide. The largest come
  /// first.
  void PutParts(std::vector<Part> parts) {
    std::stable_sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
      return std::pair(a.height, a.stations.size()) > std::pair(b.height, b.stations.size());
    });
    double area = 0;
    int widest = kLeastWidth;
    for (const Part& part : parts) {
      area += (part.width + 2.0 * kMapMargin) * (part.height + kBlockGap);
      widest = std::max(widest, part.width + 2 * kMapMargin);
    }
    const int width = std::max(widest, static_cast<int>(std::lround(std::sqrt(area * kShape))));
    int x = 0;
    int bottom = m_top;
    for (const Part& part : parts) {
      if (x > 0 && x + part.width + 2 * kMapMargin > width) {
        x = 0;
        m_top = bottom;
      }
      PutPart(part, x + kMapMargin, m_top + kVerticalMargin);
      x += part.width + 2 * kMapMargin;
      m_layout.width = std::max(m_layout.width, x);
      bottom = std::max(bottom, m_top + kVerticalMargin + part.height + kBlockGap);
    }
    m_top = bottom;
  }

  void PutPart(const Part& part, int left, int top) {
    for (std::size_t i = 0; i < part.stations.size(); ++i) {
      m_layout.stations[Place(part.stations[i])] = {left + static_cast<int>(std::lround(part.points[i].x)),
                                                    top + static_cast<int>(std::lround(part.points[i].y))};
    }
  }

  void PutInRows(const std::vector<int>& stations) {
    const int columns = std::max(1, (m_layout.width - kMapMargin / 2) / kRowColumn);
    int column = 0;
    for (const int station : stations) {
      if (column == 0) m_top += kRowHeight;
      m_layout.stations[Place(station)] = {kMapMargin / 3 + column * kRowColumn, m_top};
      column = (column + 1) % columns;
    }
    if (!stations.empty()) m_top += kRowHeight;
  }

  const Grid& m_grid;
  std::vector<std::set<int>> m_neighbours;  // by station
  std::vector<bool> m_isPlaced;
  std::vector<PlanePoint> m_located;
  int m_top;
  MapLayout m_layout;
};

}  // namespace

MapLayout LayOutMap(const Grid& grid, int top) { return Layouter(grid, top).LayOut(); }

}  // namespace dtsdb::pictures::internal
