#include "formats/cgmes/positions.h"

#include <QString>
#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "formats/station_positions.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr int kNone = Objects::kNone;

/// The positions of one set.
class Positions {
 public:
  explicit Positions(const Mapping& mapping) : m_mapping(mapping), m_objects(mapping.objects) {}

  std::vector<ImportReport::Identity> Collect() {
    FindPoints();
    if (m_points.empty()) return {};
    for (int object = 0; object < m_objects.Count(); ++object) {
      const int location = m_objects.Target(object, kLocation);
      if (location != kNone) Locate(object, location);
    }
    for (const auto& [location, points] : m_points) Locate(m_objects.Target(location, kLocationOf), location);
    std::vector<ImportReport::Identity> rows;
    for (const auto& [station, found] : m_stations) rows.push_back(RowOf(station, found));
    return rows;
  }

 private:
  struct Point {
    double number;
    MapPosition at;
  };
  /// What is known of a station: its own position, or the sum of those that lie in it.
  struct Found {
    bool isOwn = false;
    int location = kNone;
    MapPosition sum;
    int count = 0;
  };

  void FindPoints() {
    for (const int point : m_mapping.connections.WithRole(Role::kPoint)) {
      const int location = m_objects.Target(point, kPointLocation);
      const auto x = m_objects.Number(point, kPointX);
      const auto y = m_objects.Number(point, kPointY);
      if (location == kNone || !x || !y) continue;
      m_points[location].push_back({m_mapping.connections.Number(point, kPointNumber), {*x, *y}});
    }
    for (auto& [location, points] : m_points) {
      std::stable_sort(points.begin(), points.end(),
                       [](const Point& a, const Point& b) { return a.number < b.number; });
    }
  }

  void Locate(int object, int location) {
    const auto points = m_points.find(location);
    const int station = object == kNone || points == m_points.end() ? kNone : StationOf(object);
    if (station == kNone) return;
    Found& found = m_stations[station];
    const bool isOwn = station == object;
    if (found.isOwn) return;
    if (isOwn) found = {true, kNone, {}, 0};
    if (found.location == kNone) found.location = location;
    const MapPosition& middle = points->second[points->second.size() / 2].at;
    found.sum.x += middle.x;
    found.sum.y += middle.y;
    ++found.count;
  }

  /// The object of the station that something is or lies in, kNone for none.
  int StationOf(int object) const {
    constexpr int kDeepest = 4;  // equipment in a bay of a level of a station
    for (int depth = 0; depth < kDeepest && object != kNone; ++depth) {
      if (m_mapping.ids.Has(KIND_ST, object)) return object;
      int container = kNone;
      for (const Property property : {kContainer, kBayLevel, kLevelStation}) {
        if (container == kNone) container = m_objects.Target(object, property);
      }
      object = container;
    }
    return kNone;
  }

  ImportReport::Identity RowOf(int station, const Found& found) const {
    const MapPosition mean{found.sum.x / found.count, found.sum.y / found.count};
    return {part_of::kPosition, m_mapping.ids.Text(KIND_ST, station).toStdString(), m_objects.Mrid(found.location),
            PositionText(mean)};
  }

  const Mapping& m_mapping;
  const Objects& m_objects;
  std::map<int, std::vector<Point>> m_points;  // by location
  std::map<int, Found> m_stations;
};

}  // namespace

void AddPositions(const Mapping& mapping, std::vector<ImportReport::Identity>& parts) {
  for (ImportReport::Identity& row : Positions(mapping).Collect()) parts.push_back(std::move(row));
  std::sort(parts.begin(), parts.end(), [](const auto& a, const auto& b) {
    return std::tie(a.table, a.identity, a.mrid) < std::tie(b.table, b.identity, b.mrid);
  });
}

}  // namespace dtsdb::tools::cgmes
