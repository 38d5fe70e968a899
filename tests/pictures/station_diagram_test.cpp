// Diagrams of generated stations, of the sample and of the public grids: whatever the station, nothing overlaps, every
// record is there, and the SVG is sound.

#include "pictures/station_diagram.h"

#include <gtest/gtest.h>

#include "analysis/topology.h"
#include "generate/generator.h"
#include "tests/pictures/model_checks.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

/// The sanitizers take several times as long.
#ifdef DTSDB_FEWER_CASES
constexpr int kStations = 60;
constexpr std::size_t kSvgEvery = 1;
#else
constexpr int kStations = 1000;
constexpr std::size_t kSvgEvery = 10;  // the SVG of each tenth station is read again
#endif

class GeneratedStations : public testing::TestWithParam<bool> {};

TEST_P(GeneratedStations, HaveSoundDiagrams) {
  DTSDB tables;
  tools::GeneratorOptions options;
  options.stations = kStations;
  options.seed = 15;
  tools::GenerateUtility(tables, options);
  analysis::Model model = analysis::Model::Of(tables);
  test::ExpectSoundStations(model, GetParam(), kSvgEvery);
}

INSTANTIATE_TEST_SUITE_P(Pictures, GeneratedStations, testing::Bool(), [](const testing::TestParamInfo<bool>& test) {
  return std::string(test.param ? "WithFlows" : "WithoutFlows");
});

TEST(StationDiagram, OfEveryStationOfTheSampleIsSound) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model) << model.error().message;
  test::ExpectSoundStations(*model, true);
  test::ExpectSoundStations(*model, false);
}

TEST(StationDiagram, IsTheSameEachTime) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model && analysis::WorkOutTopology(*model));
  const StationReader reader(model->Tables());
  const Result<Station> station = reader.Read(QStringLiteral("Hekou"));
  ASSERT_TRUE(station);
  EXPECT_EQ(ToSvg(DrawStation(*station)), ToSvg(DrawStation(*station)));
}

/// A level that is one chain of switches from a bus on, as a damaged file may contain it.
Station ChainOf(int switches) {
  Station station;
  station.name = {"ST", QStringLiteral("S"), "S"};
  StationLevel& level = station.levels.emplace_back();
  level.name = {"KV", QStringLiteral("V"), "V"};
  level.voltage = 220;
  for (int i = 0; i <= switches; ++i) {
    const std::string name = std::to_string(i);
    level.nodes.push_back({{"ND", QString::fromStdString(name), name}, 0, 0});
  }
  for (int i = 0; i < switches; ++i) {
    const std::string name = std::to_string(i);
    level.switches.push_back({{"CB", QString::fromStdString(name), name}, i, i + 1, true, false, "live"});
  }
  level.buses.push_back({{"BUS", QStringLiteral("B"), "B"}, 0, "live"});
  return station;
}

TEST(StationDiagram, OfAChainOfAnyLengthIsDrawn) {
  constexpr int kSwitches = 150'000;
  const Picture picture = DrawStation(ChainOf(kSwitches));
  EXPECT_EQ(picture.elements.size(), 2 * kSwitches + 4U);  // station, level, a node more than switches, a bus
  EXPECT_EQ(test::Overlaps(DrawStation(ChainOf(100))), "");
}

TEST(StationDiagram, OfAnUnknownStationIsAnErrorWithTheNearestNames) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model && analysis::WorkOutTopology(*model));
  const Result<Station> station = StationReader(model->Tables()).Read(QStringLiteral("Hekau"));
  ASSERT_FALSE(station);
  EXPECT_EQ(station.error().code, analysis::ErrorCode::kUnknownComponent);
  EXPECT_EQ(station.error().message, "the model has no station 'Hekau'; did you mean Hekou?");
}

}  // namespace
}  // namespace dtsdb::pictures
