// The sample network of examples/ieee14, as its users meet it.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::kSample;
using test::Workplace;

TEST(Sample, IsGood) {
  const Workplace here;
  here.CopyModel("ieee14", kSample);
  const CommandResult result = here.Run("validate ieee14");
  EXPECT_EQ(result.code, 0);
  EXPECT_NE(result.out.find("ieee14: the model is good: 0 errors, "), std::string::npos) << result.out;
}

/// Validates a copy of the sample in which the first `good` in CB.csv reads `bad`. Returns the findings as CSV.
CommandResult ValidateWith(const std::string& good, const std::string& bad) {
  const Workplace here;
  here.CopyModel("ieee14", kSample);
  std::string table = here.Read("ieee14/CB.csv");
  const std::size_t place = table.find(good);
  EXPECT_NE(place, std::string::npos) << good;
  if (place != std::string::npos) table.replace(place, good.size(), bad);
  here.Write("ieee14/CB.csv", table);
  return here.Run("validate ieee14 --format csv");
}

TEST(Sample, WithABreakersNodeMisspeltAsOneOfAnotherLevelNamesTheBreaker) {
  const CommandResult result = ValidateWith(",Dongshan-33-I,", ",Dongshan-132-I,");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Contains(result.out, "error,CB_FROM_NODE_IN_OTHER_LEVEL,CB,Dongshan-33-")) << result.out;
}

// A name that no other device uses makes a node of its own: that is no error.
TEST(Sample, WithABreakersNodeMisspeltAsANewNameWarnsOfBothNodes) {
  const CommandResult result = ValidateWith(",Baiyun-132-T1,Baiyun-132-T1c", ",Baiyun-132-T1,Baiyun-132-TIc");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(Contains(result.out, "warning,ND_IDLE,ND,Baiyun-132-T1c,")) << result.out;
  EXPECT_TRUE(Contains(result.out, "warning,ND_IDLE,ND,Baiyun-132-TIc,")) << result.out;
}

TEST(Sample, ConvertedTwiceIsTheSameFile) {
  const Workplace here;
  here.CopyModel("ieee14", kSample);
  ASSERT_EQ(here.Run("convert ieee14 a.obj").code, 0);
  ASSERT_EQ(here.Run("convert a.obj b.obj").code, 0);
  EXPECT_FALSE(here.Read("a.obj").empty());
  EXPECT_EQ(here.Read("a.obj"), here.Read("b.obj"));
}

TEST(Sample, SurvivesTheWayThroughTextTables) {
  const Workplace here;
  here.CopyModel("ieee14", kSample);
  ASSERT_EQ(here.Run("convert ieee14 a.obj").code, 0);
  ASSERT_EQ(here.Run("convert a.obj tables").code, 0);
  EXPECT_EQ(here.Run("diff ieee14 tables").out, "The models are the same.\n");
}

}  // namespace
}  // namespace dtsdb::tools
