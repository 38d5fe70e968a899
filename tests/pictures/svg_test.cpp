// Pictures as SVG: texts are escaped, hostile identities included; what the sample's stations look like is kept in
// tests/pictures/golden, its map in docs/ieee14.svg. With DTSDB_UPDATE_GOLDEN=1 in the environment these files are
// written anew instead of compared.

#include "pictures/svg.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "analysis/flows.h"
#include "analysis/topology.h"
#include "pictures/grid_map.h"
#include "pictures/station_diagram.h"
#include "tests/pictures/picture_checks.h"
#include "tests/support/bytes.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

TEST(Svg, EscapesHostileIdentities) {
  Station station;
  station.name = {"ST", QStringLiteral("a"), "</title><script>alert(1)</script>\x01&\"'"};
  StationLevel& level = station.levels.emplace_back();
  level.name = {"KV", QStringLiteral("\" onload=\"x"), "\" onload=\"x"};
  level.nodes.push_back({{"ND", QStringLiteral("<n>"), "<n>"}, 2, 0});
  level.buses.push_back({{"BUS", QStringLiteral("]]>"), "]]>"}, 0, "live"});
  const std::string svg = ToSvg(DrawStation(station));
  test::ExpectSoundSvg(svg);
  EXPECT_EQ(svg.find("<script"), std::string::npos);
  EXPECT_EQ(svg.find("onload=\"x"), std::string::npos);
  EXPECT_EQ(svg.find('\x01'), std::string::npos);
  EXPECT_NE(svg.find("id=\"KV-_22_20onload_3d_22x\""), std::string::npos);
}

/// Compares a picture with the file that it is kept in, or writes it there anew.
void ExpectAsKept(const Picture& picture, const std::string& file) {
  const std::string svg = ToSvg(picture);
  const std::string path = dtsdb::test::SourcePath(file);
  if (std::getenv("DTSDB_UPDATE_GOLDEN") != nullptr) {
    dtsdb::test::WriteBytes(path, svg);
    return;
  }
  EXPECT_EQ(svg, dtsdb::test::ReadBytes(path));
}

class GoldenDiagram : public testing::TestWithParam<const char*> {};

TEST_P(GoldenDiagram, IsAsKept) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model);
  const analysis::Result<Flows> flows = analysis::WorkOutFlows(*model);
  ASSERT_TRUE(flows);
  const Result<Station> station = StationReader(model->Tables(), &*flows).Read(QLatin1String(GetParam()));
  ASSERT_TRUE(station);
  ExpectAsKept(DrawStation(*station, {true}), std::string("tests/pictures/golden/") + GetParam() + ".svg");
}

// Three windings and a double bus, a ring, breaker-and-a-half, a single bus with a sectioner.
INSTANTIATE_TEST_SUITE_P(Pictures, GoldenDiagram, testing::Values("Hekou", "Baiyun", "Dongshan", "Pingan"),
                         [](const testing::TestParamInfo<const char*>& test) { return std::string(test.param); });

// The README begins with it; dtsdb draw examples/ieee14 --grid --flows prints the same.
TEST(GoldenMap, OfTheSampleIsAsKept) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::SourcePath("examples/ieee14"));
  ASSERT_TRUE(model && analysis::WorkOutTopology(*model));
  ExpectAsKept(DrawGrid(GridReader(model->Tables()).Read(), {true}), "docs/ieee14.svg");
}

}  // namespace
}  // namespace dtsdb::pictures
