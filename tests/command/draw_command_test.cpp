// The command dtsdb draw on the network of tests/command/golden_test.cpp; its picture is kept in tests/command/golden.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Workplace;

TEST(DrawCommand, WritesTheSamePictureIntoAFile) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult printed = here.Run("draw m --station 甲站");
  const CommandResult written = here.Run("draw m --station 甲站 -o station.svg");
  EXPECT_EQ(printed.code, 0);
  EXPECT_EQ(written.code, 0);
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(here.Read("station.svg"), printed.out);
}

TEST(DrawCommand, DrawsOneLevelOfAStation) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("draw m --kv 乙站220");
  EXPECT_EQ(result.code, 0);
  EXPECT_NE(result.out.find("data-table=\"CB\" data-id=\"乙开关\""), std::string::npos);
}

TEST(DrawCommand, AsksWhatToDraw) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("draw m");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "dtsdb: name what to draw with --station ID, --kv ID or --grid\n");
}

TEST(DrawCommand, DrawsTheNeighbourhoodOfAStation) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult alone = here.Run("draw m --grid --around 甲站 --hops 0");
  EXPECT_EQ(alone.code, 0);
  EXPECT_NE(alone.out.find("data-id=\"甲站\""), std::string::npos);
  EXPECT_EQ(alone.out.find("data-id=\"乙站\""), std::string::npos);
  const CommandResult near = here.Run("draw m --grid --around 甲站");
  EXPECT_NE(near.out.find("data-id=\"乙站\""), std::string::npos);
}

TEST(DrawCommand, RefusesOptionsThatDontFit) {
  const Workplace here;
  here.CopyModel("m");
  const auto refusal = [&](const std::string& options) {
    const CommandResult result = here.Run(("draw m " + options).c_str());
    EXPECT_EQ(result.code, 2);
    return result.err;
  };
  EXPECT_EQ(refusal("--grid --station 甲站"), "dtsdb: name what to draw with --station ID, --kv ID or --grid\n");
  EXPECT_EQ(refusal("--station 甲站 --around 甲站"), "dtsdb: --around needs --grid\n");
  EXPECT_EQ(refusal("--grid --hops 1"), "dtsdb: --hops needs --around ID\n");
  EXPECT_NE(refusal("--grid --around 丙站").find("the model has no station '丙站'"), std::string::npos);
}

TEST(DrawCommand, RefusesAnUnknownStation) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("draw m --station 丙站");
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("丙站"), std::string::npos);
}

}  // namespace
}  // namespace dtsdb::tools
