// Diagrams of all stations of the public grids, and their maps.

#include <gtest/gtest.h>

#include "tests/pictures/model_checks.h"
#include "tests/support/places.h"

namespace dtsdb::pictures {
namespace {

class PublicStations : public testing::TestWithParam<const char*> {};

TEST_P(PublicStations, HaveSoundPictures) {
  const std::string folder = dtsdb::test::DataPath("relicapgrid/");
  analysis::Result<analysis::Model> model =
      analysis::Model::Open("cgmes:" + folder + GetParam() + "," + folder + "common");
  ASSERT_TRUE(model) << model.error().message;
  test::ExpectSoundStations(*model, true);
  test::ExpectSoundMap(GridReader(model->Tables()).Read(), {true});
}

INSTANTIATE_TEST_SUITE_P(Pictures, PublicStations, testing::Values("belgovia", "galia", "espheim"),
                         [](const testing::TestParamInfo<const char*>& test) { return std::string(test.param); });

}  // namespace
}  // namespace dtsdb::pictures
