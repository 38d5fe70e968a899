// Diagrams of all stations of the public grids, and their maps.

#include <gtest/gtest.h>

#include <cctype>
#include <string>

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

class SampleStations : public testing::TestWithParam<std::string> {};

TEST_P(SampleStations, HaveSoundPictures) {
  analysis::Result<analysis::Model> model = analysis::Model::Open(dtsdb::test::DataPath("xiidm/" + GetParam()));
  ASSERT_TRUE(model) << model.error().message;
  test::ExpectSoundStations(*model, true);
  test::ExpectSoundMap(GridReader(model->Tables()).Read(), {true});
}

INSTANTIATE_TEST_SUITE_P(Pictures, SampleStations, testing::ValuesIn(dtsdb::test::XiidmSamples()),
                         [](const testing::TestParamInfo<std::string>& test) {
                           std::string name = test.param;
                           for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                           return name;
                         });

}  // namespace
}  // namespace dtsdb::pictures
