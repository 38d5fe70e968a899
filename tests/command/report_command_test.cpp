// The command dtsdb report, and the page of dtsdb switch, on the network of tests/command/golden_test.cpp. What the
// page contains is tested in tests/page, how it works in tests/web.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Workplace;

TEST(ReportCommand, WritesOneFile) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("report m -o page.html");
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "");
  const std::string page = here.Read("page.html");
  EXPECT_EQ(page.substr(0, 15), "<!doctype html>");
  EXPECT_NE(page.find("data-station=\"甲站\""), std::string::npos);
}

TEST(ReportCommand, WritesTheSameBytesAgain) {
  const Workplace here;
  here.CopyModel("m");
  here.Run("report m -o a.html");
  here.Run("report m -o b.html");
  EXPECT_EQ(here.Read("a.html"), here.Read("b.html"));
}

TEST(ReportCommand, ReportsOnAModelWithErrorsToo) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("m/ST.csv", "id,dv\nNorth,Nowhere\n");
  const CommandResult result = here.Run("report m -o page.html");
  EXPECT_EQ(result.code, 1);
  const std::string page = here.Read("page.html");
  EXPECT_NE(page.find("id=\"data\""), std::string::npos);
  EXPECT_EQ(page.find("data-station="), std::string::npos);
}

TEST(ReportCommand, AsksForAFile) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("report m");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "dtsdb: name the file to be written with -o FILE\n");
}

TEST(SwitchPage, ShowsTheRunsAndLeavesTheOutputAsItIs) {
  const Workplace here;
  here.CopyModel("m");
  const std::string events = "switch m open CB 甲开关 run close CB 甲开关";
  const CommandResult plain = here.Run(events.c_str());
  const CommandResult withPage = here.Run((events + " --report page.html").c_str());
  EXPECT_EQ(withPage.code, 0) << withPage.err;
  EXPECT_EQ(withPage.out, plain.out);
  EXPECT_NE(here.Read("page.html").find("data-station=\"甲站\""), std::string::npos);
}

}  // namespace
}  // namespace dtsdb::tools
