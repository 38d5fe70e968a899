// Diagrams of all stations of the public grids.

#include <gtest/gtest.h>

#include "analysis/flows.h"
#include "pictures/station_diagram.h"
#include "tests/pictures/picture_checks.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

class PublicStations : public testing::TestWithParam<const char*> {};

TEST_P(PublicStations, HaveSoundDiagrams) {
  const std::string folder = dtsdb::test::DataPath("relicapgrid/");
  analysis::Result<analysis::Model> model =
      analysis::Model::Open("cgmes:" + folder + GetParam() + "," + folder + "common");
  ASSERT_TRUE(model) << model.error().message;
  const analysis::Result<Flows> flows = analysis::WorkOutFlows(*model);
  ASSERT_TRUE(flows) << flows.error().message;
  const StationReader reader(model->Tables(), &*flows);
  for (const QString& id : reader.Stations()) {
    const Result<Station> station = reader.Read(id);
    ASSERT_TRUE(station) << station.error().message;
    SCOPED_TRACE(station->name.identity);
    const Picture picture = DrawStation(*station, {true});
    EXPECT_EQ(test::Overlaps(picture), "");
    EXPECT_EQ(test::Outside(picture), "");
    test::ExpectSoundSvg(ToSvg(picture));
  }
}

INSTANTIATE_TEST_SUITE_P(Pictures, PublicStations, testing::Values("belgovia", "galia", "espheim"),
                         [](const testing::TestParamInfo<const char*>& test) { return std::string(test.param); });

}  // namespace
}  // namespace dtsdb::pictures
