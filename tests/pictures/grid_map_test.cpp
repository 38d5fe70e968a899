// Maps of generated grids, of the sample and of hand-made ones: whatever the grid, nothing overlaps, every station and
// line is there once, and the SVG is sound.

#include "pictures/grid_map.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/topology.h"
#include "generate/generator.h"
#include "tests/pictures/model_checks.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

#ifdef DTSDB_FEWER_CASES
constexpr int kMapStations = 100;
#else
constexpr int kMapStations = 1000;
#endif

/// The sample with a topology.
analysis::Model Sample() {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  EXPECT_TRUE(model && analysis::WorkOutTopology(*model));
  return std::move(*model);
}

/// A grid written by hand: stations A, B and so on, lines between them.
class HandMadeGrid {
 public:
  HandMadeGrid& Station(const std::string& id, float voltage = 220) {
    GridStation& station = m_grid.stations.emplace_back();
    station.name = {"ST", QString::fromStdString(id), id};
    station.voltage = voltage;
    station.island = 0;
    return *this;
  }
  HandMadeGrid& At(double x, double y) {
    m_grid.stations.back().position = MapPosition{x, y};
    return *this;
  }
  HandMadeGrid& Line(int from, int to) {
    const std::string id = "L" + std::to_string(m_grid.lines.size());
    m_grid.lines.push_back({{"LN", QString::fromStdString(id), id}, DeviceKind::kLine, from, to, 220, 0, "live"});
    return *this;
  }
  Grid& Get() { return m_grid; }

 private:
  Grid m_grid;
};

Element ElementOf(const Picture& picture, const std::string& id) {
  const auto found = std::find_if(picture.elements.begin(), picture.elements.end(),
                                  [&](const Element& element) { return element.id == id; });
  EXPECT_NE(found, picture.elements.end()) << id;
  return *found;
}

Point PlaceOf(const Picture& picture, const std::string& station) {
  return ElementOf(picture, "ST-" + station).symbols.front().centre;
}

class GeneratedGrid : public testing::TestWithParam<bool> {};

TEST_P(GeneratedGrid, HasASoundMap) {
  DTSDB tables;
  tools::GeneratorOptions options;
  options.stations = kMapStations;
  options.seed = 15;
  tools::GenerateUtility(tables, options);
  analysis::Model model = analysis::Model::Of(tables);
  ASSERT_TRUE(analysis::WorkOutTopology(model));
  const GridReader reader(model.Tables());
  EXPECT_EQ(reader.Read().stations.size(), static_cast<std::size_t>(kMapStations));
  test::ExpectSoundMap(reader.Read(), {GetParam()});
}

INSTANTIATE_TEST_SUITE_P(Pictures, GeneratedGrid, testing::Bool(), [](const testing::TestParamInfo<bool>& test) {
  return std::string(test.param ? "WithFlows" : "WithoutFlows");
});

TEST(GridMap, OfTheSampleIsTheSameEachTime) {
  const analysis::Model model = Sample();
  const GridReader reader(model.Tables());
  test::ExpectSoundMap(reader.Read(), {true});
  EXPECT_EQ(ToSvg(DrawGrid(reader.Read())), ToSvg(DrawGrid(GridReader(model.Tables()).Read())));
}

TEST(GridMap, StationsStandWhereTheirPositionsAre) {
  HandMadeGrid grid;
  grid.Station("South").At(10, 50).Station("North").At(10, 52).Station("East").At(13, 51).Station("Beside");
  grid.Line(0, 1).Line(1, 2).Line(2, 3);
  const Picture picture = DrawGrid(grid.Get());
  EXPECT_LT(PlaceOf(picture, "North").y, PlaceOf(picture, "East").y);
  EXPECT_LT(PlaceOf(picture, "East").y, PlaceOf(picture, "South").y);
  EXPECT_GT(PlaceOf(picture, "East").x, PlaceOf(picture, "North").x);
  const Point east = PlaceOf(picture, "East");
  const Point beside = PlaceOf(picture, "Beside");
  EXPECT_LT(std::hypot(beside.x - east.x, beside.y - east.y), 60);
  test::ExpectSoundMap(grid.Get());
}

TEST(GridMap, WhatIsNoPlaceOnEarthCountsAsNoPosition) {
  HandMadeGrid grid;
  grid.Station("A").At(10, 50).Station("B").At(1e300, -1e300).Station("C").At(NAN, 50).Line(0, 1).Line(1, 2);
  test::ExpectSoundMap(grid.Get());
  const Picture picture = DrawGrid(grid.Get());
  EXPECT_LT(picture.width, 2000);
  EXPECT_LT(picture.height, 2000);
}

TEST(GridMap, StationsOnOnePlaceAreMovedApart) {
  HandMadeGrid grid;
  for (int i = 0; i < 30; ++i) grid.Station("S" + std::to_string(i)).At(5, 5);
  for (int i = 1; i < 30; ++i) grid.Line(0, i);
  test::ExpectSoundMap(grid.Get());
}

TEST(GridMap, StationsWithoutLinesStandInRowsBelow) {
  HandMadeGrid grid;
  grid.Station("A").Station("B").Line(0, 1);
  for (int i = 0; i < 5; ++i) grid.Station("alone" + std::to_string(i));
  const Picture picture = DrawGrid(grid.Get());
  const int row = PlaceOf(picture, "alone0").y;
  EXPECT_GT(row, PlaceOf(picture, "A").y);
  EXPECT_GT(row, PlaceOf(picture, "B").y);
  EXPECT_EQ(PlaceOf(picture, "alone1").y, row);
  test::ExpectSoundMap(grid.Get());
}

TEST(GridMap, ParallelLinesLieSideBySide) {
  HandMadeGrid grid;
  grid.Station("A").At(0, 0).Station("B").At(1, 0).Line(0, 1).Line(1, 0).Line(0, 1);
  const Picture picture = DrawGrid(grid.Get());
  std::set<int> heights;
  for (const char* const line : {"LN-L0", "LN-L1", "LN-L2"}) {
    const Wire wire = ElementOf(picture, line).wires.front();
    ASSERT_GE(wire.size(), 2U);
    heights.insert(wire[wire.size() / 2].y);
  }
  EXPECT_EQ(heights.size(), 3U);
}

TEST(GridMap, ALineWithinAStationIsALoop) {
  HandMadeGrid grid;
  grid.Station("A").Station("B").Line(0, 1).Line(0, 0).Line(0, 0);
  test::ExpectSoundMap(grid.Get());
}

TEST(GridMap, ArrowsPointWherePowerGoes) {
  HandMadeGrid grid;
  grid.Station("W").At(0, 0).Station("E").At(1, 0).Line(0, 1);
  grid.Get().lines[0].flow = Power{10, 1};
  EXPECT_EQ(ElementOf(DrawGrid(grid.Get(), {true}), "LN-L0").symbols.front().degrees, 270);  // to the east
  grid.Get().lines[0].flow = Power{-10, 1};
  EXPECT_EQ(ElementOf(DrawGrid(grid.Get(), {true}), "LN-L0").symbols.front().degrees, 90);
  EXPECT_TRUE(ElementOf(DrawGrid(grid.Get()), "LN-L0").symbols.empty());
}

TEST(GridMap, AWindingBetweenStationsBearsTheSignOfATransformer) {
  HandMadeGrid grid;
  grid.Station("A").At(0, 0).Station("B").At(1, 0).Line(0, 1);
  grid.Get().lines[0].kind = DeviceKind::kWinding;
  const Element winding = ElementOf(DrawGrid(grid.Get()), "LN-L0");
  EXPECT_EQ(winding.classes, "on-map winding t2 live s0");
  ASSERT_EQ(winding.symbols.size(), 1U);
  EXPECT_EQ(winding.symbols.front().name, "transformer");
}

TEST(GridMap, DeadPartsAreMarked) {
  HandMadeGrid grid;
  grid.Station("A").Station("B").Line(0, 1);
  grid.Get().stations[1].island = -1;
  grid.Get().lines[0].island = -1;
  grid.Get().lines[0].state = "dead";
  const Picture picture = DrawGrid(grid.Get());
  EXPECT_EQ(ElementOf(picture, "ST-A").classes, "on-map station live s0");
  EXPECT_EQ(ElementOf(picture, "ST-B").classes, "on-map station dead");
  EXPECT_EQ(ElementOf(picture, "LN-L0").classes, "on-map line t2 dead");
}

TEST(GridMap, OfNothingIsEmpty) { test::ExpectSoundMap({}); }

TEST(GridReader, ReadsTheNeighbourhoodOfAStation) {
  const analysis::Model model = Sample();
  const GridReader reader(model.Tables());
  const Result<Grid> alone = reader.ReadAround(QStringLiteral("Hekou"), 0);
  ASSERT_TRUE(alone);
  ASSERT_EQ(alone->stations.size(), 1U);
  EXPECT_EQ(alone->centre, 0);
  EXPECT_GT(alone->stations[0].linesBeyond, 0);
  const Result<Grid> near = reader.ReadAround(QStringLiteral("Hekou"), 1);
  ASSERT_TRUE(near);
  EXPECT_GE(near->lines.size(), static_cast<std::size_t>(alone->stations[0].linesBeyond));
  const Result<Grid> all = reader.ReadAround(QStringLiteral("Hekou"), 100);
  ASSERT_TRUE(all);
  EXPECT_GT(all->stations.size(), near->stations.size());
  for (const GridStation& station : all->stations) EXPECT_EQ(station.linesBeyond, 0);
  test::ExpectSoundMap(*near);
}

TEST(GridReader, OfAnUnknownStationIsAnErrorWithTheNearestNames) {
  const analysis::Model model = Sample();
  const Result<Grid> grid = GridReader(model.Tables()).ReadAround(QStringLiteral("Hekau"), 1);
  ASSERT_FALSE(grid);
  EXPECT_EQ(grid.error().message, "the model has no station 'Hekau'; did you mean Hekou?");
}

}  // namespace
}  // namespace dtsdb::pictures
