/// \file
/// A grid as a map shows it: its stations and the lines between them, with their states.
#pragma once

#include <QString>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/topology.h"
#include "formats/station_positions.h"
#include "pictures/station.h"

namespace dtsdb::pictures {

using tools::MapPosition;
using tools::StationPositions;

/// A station on the map.
struct GridStation {
  RecordName name;                        ///< the record that it stands for
  float voltage = 0;                      ///< the highest base voltage of its levels in kV, 0 when none is known
  int levels = 0;                         ///< number of its voltage levels
  int island = -1;                        ///< number of the live island of most of its nodes, -1 when all are dead
  int islands = 0;                        ///< number of live islands that it has a part in
  int linesBeyond = 0;                    ///< lines to stations that the map doesn't show
  std::optional<MapPosition> position{};  ///< where it stands, where that is known
};

/// A line, a DC line, or a winding between two stations. A line that begins and ends in the same station is on the map
/// too.
struct GridLine {
  RecordName name;                      ///< the record that it stands for
  DeviceKind kind = DeviceKind::kLine;  ///< what it is
  int from = -1;                        ///< place in Grid::stations, as `to`
  int to = -1;                          ///< place of the station at the other end
  float voltage = 0;                    ///< of its higher end in kV, 0 when it isn't known
  int island = -1;                      ///< number of its live island, -1 when it is dead
  std::string state{};                  ///< "live", or what it is in its place
  std::optional<Power> flow{};          ///< from `from` towards `to`, at its live end
};

/// Stations in the order of their table, lines by class and identity.
struct Grid {
  std::string title;                  ///< what is shown, in words
  std::vector<GridStation> stations;  ///< in the order of their identities
  std::vector<GridLine> lines;        ///< lines and other connections between stations
  int centre = -1;                    ///< the station that the others stand around, a place in `stations`; -1 for none
};

/// Reads the grid, or a part of it, out of a model with a topology. The tables must outlive this and stay as they are.
class GridReader {
 public:
  /// Reads `tables`, which must outlive it.
  explicit GridReader(DTSDB& tables, const StationPositions& positions = {});

  /// All stations and lines.
  const Grid& Read() const { return m_grid; }
  /// The station with this identity, and what up to `hops` lines lead to from it. An Error of usage, with the nearest
  /// identities, when there is no such station.
  Result<Grid> ReadAround(const QString& id, int hops) const;

 private:
  void ReadStations(const StationPositions& positions);
  void ReadIslands(const analysis::Topology& topology);
  int StationOfLevel(const QString& level) const;
  int IslandOf(const analysis::Node& node) const;
  template <class Line>
  void ReadLines(DeviceKind kind, const analysis::Topology& topology);
  std::set<int> Around(int centre, int hops) const;

  DTSDB& m_tables;
  Grid m_grid;
};

}  // namespace dtsdb::pictures
