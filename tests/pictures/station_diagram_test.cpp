// Diagrams of generated stations, of the sample and of the public grids: whatever the station, nothing overlaps, every
// record is there, and the SVG is sound.

#include "pictures/station_diagram.h"

#include <gtest/gtest.h>

#include "analysis/flows.h"
#include "analysis/topology.h"
#include "generate/generator.h"
#include "pictures/svg.h"
#include "tests/pictures/picture_checks.h"
#include "tests/pictures/station_records.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

/// The sanitizers take several times as long.
#ifdef DTSDB_SANITIZE
constexpr int kStations = 60;
constexpr std::size_t kSvgEvery = 1;
#else
constexpr int kStations = 1000;
constexpr std::size_t kSvgEvery = 10;  // the SVG of each tenth station is read again
#endif

/// Draws every station of a model and checks each picture.
void CheckAllStations(analysis::Model& model, bool flows) {
  const analysis::Result<Flows> computed = analysis::WorkOutFlows(model);
  ASSERT_TRUE(computed) << computed.error().message;
  const StationReader reader(model.Tables(), flows ? &*computed : nullptr);
  test::StationRecords records(model.Tables());
  const std::vector<QString> stations = reader.Stations();
  ASSERT_FALSE(stations.empty());
  for (std::size_t i = 0; i < stations.size(); ++i) {
    const Result<Station> station = reader.Read(stations[i]);
    ASSERT_TRUE(station) << station.error().message;
    SCOPED_TRACE(station->name.identity);
    const Picture picture = DrawStation(*station, {flows});
    ASSERT_EQ(test::Overlaps(picture), "");
    ASSERT_EQ(test::Outside(picture), "");
    ASSERT_EQ(test::RecordsOf(picture), records.Of(stations[i]));
    if (i % kSvgEvery == 0) test::ExpectSoundSvg(ToSvg(picture));
  }
}

class GeneratedStations : public testing::TestWithParam<bool> {};

TEST_P(GeneratedStations, HaveSoundDiagrams) {
  DTSDB tables;
  tools::GeneratorOptions options;
  options.stations = kStations;
  options.seed = 15;
  tools::GenerateUtility(tables, options);
  analysis::Model model = analysis::Model::Of(tables);
  CheckAllStations(model, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Pictures, GeneratedStations, testing::Bool(), [](const testing::TestParamInfo<bool>& test) {
  return std::string(test.param ? "WithFlows" : "WithoutFlows");
});

TEST(StationDiagram, OfEveryStationOfTheSampleIsSound) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model) << model.error().message;
  CheckAllStations(*model, true);
  CheckAllStations(*model, false);
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
