#include "command/render.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "formats/failure.h"

namespace dtsdb::tools {
namespace {

Report Sample() {
  Report report;
  report.Fact("good", true);
  report.Line("Two things.");
  Sheet& things = report.Add(Sheet("things", "Things", {"name", "voltage_level", "value"}));
  things.GroupBy(1);
  things.Add({"母线", "甲", Number{"1.5"}});
  things.Add({"母线", "long", Number{"-20"}});
  things.Add({"x,\"y\"", Cell(), Number{"nan"}});
  report.Add(Sheet("others", "Others", {"name"}));
  return report;
}

TEST(Render, TextAlignsColumnsByTheirWidthOnTheTerminal) {
  EXPECT_EQ(Sample().Render(Format::kText),
            "Two things.\n"
            "\n"
            "Things\n"
            "name   voltage level  value\n"
            "母线   甲               1.5\n"
            "       long             -20\n"
            "x,\"y\"                   nan\n"
            "\n"
            "Others: none\n");
}

TEST(Render, JsonHoldsFactsAndSheets) {
  const auto rendered = nlohmann::json::parse(Sample().Render(Format::kJson));
  EXPECT_EQ(rendered["good"], true);
  EXPECT_EQ(rendered["things"].size(), 3U);
  EXPECT_EQ(rendered["things"][0]["name"], "母线");
  EXPECT_EQ(rendered["things"][0]["value"], 1.5);
  EXPECT_TRUE(rendered["things"][2]["voltage_level"].is_null());
  EXPECT_EQ(rendered["things"][2]["value"], "nan") << "JSON has no number for it";
  EXPECT_TRUE(rendered["others"].empty());
}

TEST(Render, CsvHoldsTheFirstSheetOrTheOneNamed) {
  EXPECT_EQ(Sample().Render(Format::kCsv),
            "name,voltage_level,value\r\n母线,甲,1.5\r\n母线,long,-20\r\n\"x,\"\"y\"\"\",,nan\r\n");
  EXPECT_EQ(Sample().Render(Format::kCsv, false, "others"), "name\r\n");
}

TEST(Render, AnUnknownSheetIsWrongUsageAndListsTheSheets) {
  try {
    Sample().Render(Format::kJson, false, "thing");
    FAIL() << "rendered";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitUsage);
    EXPECT_STREQ(failure.what(), "there is no sheet 'thing' in this result; it has things, others");
  }
}

TEST(Render, AnEmptyReportIsAnEmptyObject) {
  EXPECT_EQ(nlohmann::json::parse(Report().Render(Format::kJson)), nlohmann::json::object());
  EXPECT_EQ(Report().Render(Format::kText), "");
  EXPECT_EQ(Report().Render(Format::kCsv), "");
}

TEST(Render, ControlCharactersDoNotReachTheTerminal) {
  Report report;
  report.Add(Sheet("s", "", {"a"})).Add({"\033[2J\n"});
  EXPECT_EQ(report.Render(Format::kText), "a\n\\x1B[2J\\n\n");
}

TEST(Render, ColourMarksSeveritiesOnlyWhenAskedFor) {
  Report report;
  report.Add(Sheet("s", "", {"severity"})).Add({"error"});
  EXPECT_EQ(report.Render(Format::kText, true), "severity\n\033[31merror   \033[0m\n");
  EXPECT_EQ(report.Render(Format::kText, false), "severity\nerror\n");
}

TEST(Render, HiddenColumnsAndEmptySheetsStayOutOfTextOnly) {
  Report report;
  Sheet& sheet = report.Add(Sheet("s", "", {"a", "b"}));
  sheet.HideColumn(0);
  sheet.Add({"1", "2"});
  report.Add(Sheet("empty", "Empty", {"a"})).HideWhenEmpty();
  EXPECT_EQ(report.Render(Format::kText), "b\n2\n");
  EXPECT_EQ(report.Render(Format::kCsv), "a,b\r\n1,2\r\n");
  EXPECT_TRUE(nlohmann::json::parse(report.Render(Format::kJson)).contains("empty"));
}

TEST(Sheet, DefaultsAreLeftOutOfTextWhereEveryRowHasThem) {
  Sheet sheet("s", "S", {"id", "name", "number"});
  sheet.Add({"a", {}, NumberCell(3)});
  sheet.Add({"b", "", NumberCell(0)});
  sheet.HideDefaults({{}, {}, NumberCell(0)});
  EXPECT_EQ(sheet.Text(false), "S\nid  number\na        3\nb        0\n");
  EXPECT_EQ(sheet.Csv(), "id,name,number\r\na,,3\r\nb,\"\",0\r\n");
}

}  // namespace
}  // namespace dtsdb::tools
