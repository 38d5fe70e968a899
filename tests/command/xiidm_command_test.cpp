// XIIDM files as a MODEL of the command, and as its OUT.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/formats/xiidm/network_text.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {
namespace {

/// A unit and a load with a retained breaker between them, and a switch that leads nowhere.
std::string SmallNetwork() {
  const std::string breaker = "kind=\"BREAKER\" retained=\"true\" open=\"false\" ";
  return xiidm::test::NetworkText(xiidm::test::Level(
      "<iidm:busbarSection id=\"Bus\" node=\"0\"/>\n<iidm:switch id=\"Q\" " + breaker +
          "node1=\"0\" node2=\"1\"/>\n<iidm:switch id=\"R\" " + breaker + "node1=\"1\" node2=\"1\"/>\n",
      "<iidm:generator id=\"G\" maxP=\"9\" targetP=\"5\" node=\"0\"/>\n<iidm:load id=\"L\" p0=\"5\" q0=\"0\" "
      "node=\"1\"/>\n<iidm:ground id=\"E\" node=\"2\"/>\n"));
}

TEST(XiidmCommand, InfoShowsWhatIsInside) {
  const Workplace here;
  here.Write("grid.xml", SmallNetwork());
  const CommandResult result = here.Run("info grid.xml --format json");
  ASSERT_EQ(result.code, 0) << result.err;
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["form"], "XIIDM file");
  EXPECT_EQ(report["files"][0]["version"], "1.17");
  EXPECT_EQ(report["left_out"][0]["first"], "switch 'R' (grid.xml, line 8)");
  EXPECT_EQ(report["unknown"][0]["class"], "ground");
}

TEST(XiidmCommand, ConvertsToAndFro) {
  const Workplace here;
  here.Write("grid.xml", SmallNetwork());
  ASSERT_EQ(here.Run("convert grid.xml grid.obj").code, 0);
  EXPECT_TRUE(std::filesystem::exists(here / "grid.obj.ids.csv"));
  ASSERT_EQ(here.Run("convert grid.obj grid.xiidm.gz").code, 0);
  ASSERT_EQ(here.Run("convert --to xiidm grid.obj again").code, 0);
  const std::string islands = here.Run("topology grid.obj --sheet sections --format csv").out;
  EXPECT_EQ(here.Run("topology grid.xiidm.gz --sheet sections --format csv").out, islands);
  EXPECT_EQ(here.Run("topology xiidm:again --sheet sections --format csv").out, islands);
  const auto dump = here.Run("dump again LD --format csv").out;
  EXPECT_TRUE(Contains(dump, "L,")) << dump;
}

TEST(XiidmCommand, MergesRetainedSwitchesOnDemand) {
  const Workplace here;
  here.Write("grid.xml", SmallNetwork());
  const auto kept = nlohmann::json::parse(here.Run("info grid.xml --format json").out);
  EXPECT_TRUE(kept["changed"].empty());
  const auto merged = nlohmann::json::parse(here.Run("info grid.xml --merge-retained --format json").out);
  EXPECT_EQ(merged["changed"][0]["first"], "switch 'Q' (grid.xml, line 7)");
}

TEST(XiidmCommand, AFaultIsOneLine) {
  const Workplace here;
  here.Write("grid.xml", SmallNetwork().substr(0, 700));
  const CommandResult result = here.Run("validate grid.xml");
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(result.err.starts_with("dtsdb: grid.xml, line ")) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

}  // namespace
}  // namespace dtsdb::tools::test
