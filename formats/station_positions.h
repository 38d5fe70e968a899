/// \file
/// Where stations stand on a map, for models made of a grid that has such places.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace dtsdb::tools {

struct ImportReport;

/// A place on a map: degrees of longitude and latitude, or lengths to the east and to the north in any unit.
struct MapPosition {
  double x = 0;  ///< longitude, or length to the east
  double y = 0;  ///< latitude, or length to the north

  /// Two are the same when both coordinates are.
  bool operator==(const MapPosition& other) const = default;
};

/// Positions by the identities of stations, in UTF-8. Stations may be missing.
using StationPositions = std::map<std::string, MapPosition>;

/// The positions that an import has found, or that are kept beside its model (formats/import_ids.h).
StationPositions PositionsOf(const ImportReport& report);

/// A position as the text in which it is kept, "X Y", and back; nothing for a text that is no position.
std::string PositionText(const MapPosition& position);
std::optional<MapPosition> PositionOfText(std::string_view text);

}  // namespace dtsdb::tools
