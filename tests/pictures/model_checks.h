/// \file
/// What holds of the pictures of any model: nothing overlaps, every record is there as often as it should be.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <map>
#include <string>
#include <vector>

#include "analysis/flows.h"
#include "pictures/grid_map.h"
#include "pictures/station_diagram.h"
#include "pictures/svg.h"
#include "tests/pictures/picture_checks.h"
#include "tests/pictures/station_records.h"

namespace dtsdb::pictures::test {

/// Draws every station of a model and checks each picture; the SVG of each `svgEvery`th one is read again.
inline void ExpectSoundStations(analysis::Model& model, bool showsFlows, std::size_t svgEvery = 1) {
  const analysis::Result<Flows> flows = analysis::WorkOutFlows(model);
  ASSERT_TRUE(flows) << flows.error().message;
  const StationReader reader(model.Tables(), showsFlows ? &*flows : nullptr);
  StationRecords records(model.Tables());
  const std::vector<QString> stations = reader.Stations();
  ASSERT_FALSE(stations.empty());
  for (std::size_t i = 0; i < stations.size(); ++i) {
    const Result<Station> station = reader.Read(stations[i]);
    ASSERT_TRUE(station) << station.error().message;
    SCOPED_TRACE(station->name.identity);
    const Picture picture = DrawStation(*station, {showsFlows});
    ASSERT_EQ(Overlaps(picture), "");
    ASSERT_EQ(Outside(picture), "");
    ASSERT_EQ(WrongRecords(picture, records.Of(stations[i])), "");
    if (i % svgEvery == 0) ExpectSoundSvg(ToSvg(picture));
  }
}

/// Draws a grid and checks its map.
inline void ExpectSoundMap(const Grid& grid, const GridOptions& options = {}) {
  const Picture picture = DrawGrid(grid, options);
  EXPECT_EQ(Overlaps(picture), "");
  EXPECT_EQ(Outside(picture), "");
  std::map<std::string, int> expected;
  for (const GridStation& station : grid.stations) ++expected["ST " + station.name.identity];
  for (const GridLine& line : grid.lines) ++expected[line.name.table + " " + line.name.identity];
  EXPECT_EQ(WrongRecords(picture, expected), "");
  ExpectSoundSvg(ToSvg(picture));
}

}  // namespace dtsdb::pictures::test
