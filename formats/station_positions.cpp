#include "formats/station_positions.h"

#include <fmt/format.h>

#include <cmath>

#include "formats/field_text.h"
#include "formats/import_report.h"

namespace dtsdb::tools {

std::string PositionText(const MapPosition& position) { return fmt::format("{} {}", position.x, position.y); }

std::optional<MapPosition> PositionOfText(std::string_view text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  MapPosition position;
  const bool isRead =
      ParseNumber(text.substr(0, blank), position.x).empty() && ParseNumber(text.substr(blank + 1), position.y).empty();
  if (!isRead || !std::isfinite(position.x) || !std::isfinite(position.y)) return std::nullopt;
  return position;
}

StationPositions PositionsOf(const ImportReport& report) {
  StationPositions positions;
  for (const ImportReport::Identity& part : report.parts) {
    if (part.table != part_of::kPosition) continue;
    if (const auto position = PositionOfText(part.name)) positions.emplace(part.identity, *position);
  }
  return positions;
}

}  // namespace dtsdb::tools
