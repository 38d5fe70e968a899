// The options --station and --kv of topology, flow and dump.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using nlohmann::json;
using test::CommandResult;
using test::IsOneLine;
using test::Workplace;

class PlaceTest : public testing::Test {
 protected:
  PlaceTest() { here.CopyModel("m"); }

  json Json(const std::string& arguments, int code = 0) const {
    const CommandResult result = here.Run((arguments + " --format json").c_str());
    EXPECT_EQ(result.code, code) << arguments << ": " << result.err;
    return json::parse(result.out);
  }

  /// What the rows of a sheet have in a column.
  static std::vector<std::string> Column(const json& sheet, const char* column) {
    std::vector<std::string> cells;
    for (const json& row : sheet) cells.push_back(row[column]);
    return cells;
  }

  std::string Refusal(const char* arguments) const {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  }

  Workplace here;
};

TEST_F(PlaceTest, TopologyShowsWhatBelongsToTheStation) {
  const json result = Json("topology m --station 乙站");
  EXPECT_EQ(Column(result["sections"], "name"), std::vector<std::string>{"乙母"});
  EXPECT_EQ(Column(result["dead"], "identity"), (std::vector<std::string>{"乙3", "乙备", "乙容", "乙联络"}));
  ASSERT_EQ(result["islands"].size(), 1U);
  EXPECT_EQ(result["islands"][0]["nodes"], 4) << "the island as a whole";
  EXPECT_TRUE(Json("topology m --kv 甲站220")["dead"].empty());
}

TEST_F(PlaceTest, TopologyWritesTheWholeModel) {
  EXPECT_EQ(here.Run("topology m --kv 甲站220 -o part.obj").code, 0);
  EXPECT_EQ(here.Run("topology m -o whole.obj").code, 0);
  EXPECT_EQ(Json("dump part.obj BS"), Json("dump whole.obj BS"));
}

TEST_F(PlaceTest, FindingsAreThoseOfThePlace) {
  here.Write("m/ZBR.csv", "id,cb,status\n甲阻,甲开关,1\n");
  EXPECT_EQ(Json("topology m --station 甲站")["findings"].size(), 1U);
  EXPECT_EQ(Json("topology m --station 乙站")["findings"].size(), 0U);
}

TEST_F(PlaceTest, FlowShowsTheSetsOfTheLevel) {
  here.CopyModel("grid", "examples/ieee14");
  const json whole = Json("flow grid");
  const std::string level = whole["sets"].back()["voltage_level"];
  const json part = Json("flow grid --kv " + level);
  ASSERT_FALSE(part["sets"].empty());
  EXPECT_LT(part["sets"].size(), whole["sets"].size());
  std::vector<std::string> breakers;
  for (const json& set : part["sets"]) EXPECT_EQ(set["voltage_level"], level);
  for (const json& breaker : whole["breakers"]) {
    if (whole["sets"][breaker["set"].get<std::size_t>()]["voltage_level"] == level)
      breakers.push_back(breaker["breaker"]);
  }
  EXPECT_EQ(Column(part["breakers"], "breaker"), breakers);
  EXPECT_EQ(part["closed_breakers"], breakers.size());
}

TEST_F(PlaceTest, FlowOfADatabaseIsRestrictedToo) {
  here.CopyModel("grid", "examples/ieee14");
  EXPECT_EQ(here.Run("topology grid -o rtdb:x").code, 0);
  const std::string level = Json("flow grid")["sets"][0]["voltage_level"];
  EXPECT_EQ(Json("flow rtdb:x --kv " + level)["breakers"], Json("flow grid --kv " + level)["breakers"]);
}

TEST_F(PlaceTest, FlowTakesTheExitCodeFromThePlace) {
  const json whole = Json("flow m", 1);
  for (const json& set : whole["sets"]) {
    const std::string level = set["voltage_level"];
    Json("flow m --kv " + level, set["state"] == "not balanced" ? 1 : 0);
  }
}

TEST_F(PlaceTest, DumpShowsWhatBelongsToTheLevel) {
  EXPECT_EQ(here.Run("validate m -o v.obj").code, 0);
  EXPECT_EQ(Column(Json("dump v.obj CB --kv 乙站220")["CB"], "kv"), (std::vector<std::string>{"乙站220", "乙站220"}));
  EXPECT_EQ(Column(Json("dump v.obj LN --kv 乙站220")["LN"], "id"), std::vector<std::string>{"甲乙线"});
  EXPECT_EQ(Column(Json("dump v.obj ND --station 甲站")["ND"], "id"), (std::vector<std::string>{"甲1", "甲2"}));
  EXPECT_EQ(Column(Json("dump v.obj R_KV_ND --station 甲站")["R_KV_ND"], "nd_id"),
            (std::vector<std::string>{"甲1", "甲2"}));
  EXPECT_EQ(Column(Json("dump v.obj ST --station 甲站")["ST"], "id"), std::vector<std::string>{"甲站"});
  EXPECT_EQ(Column(Json("dump v.obj KV --station 甲站")["KV"], "id"), std::vector<std::string>{"甲站220"});
  const json all = Json("dump v.obj --station 甲站");
  EXPECT_TRUE(all.contains("CB2"));
  EXPECT_FALSE(all.contains("CO"));
  EXPECT_FALSE(all.contains("ANALOG"));
}

TEST_F(PlaceTest, UnknownNamesGetTheNearestOnes) {
  for (const char* command : {"topology m", "flow m", "dump m"}) {
    EXPECT_EQ(Refusal((std::string(command) + " --station 甲战").c_str()),
              "dtsdb: table ST has no record '甲战'; did you mean 甲站?\n");
    EXPECT_EQ(Refusal((std::string(command) + " --kv 乙站110").c_str()),
              "dtsdb: table KV has no record '乙站110'; did you mean 乙站220?\n");
  }
}

TEST_F(PlaceTest, LevelOfAnotherStationIsRefused) {
  EXPECT_EQ(Refusal("topology m --station 甲站 --kv 乙站220"),
            "dtsdb: voltage level 乙站220 lies in station 乙站, not in 甲站\n");
  EXPECT_EQ(here.Run("topology m --station 乙站 --kv 乙站220").code, 0);
}

TEST_F(PlaceTest, RecordElsewhereIsNotFoundInThePlace) {
  EXPECT_EQ(Refusal("dump m CB --id 甲开关 --kv 乙站220"),
            "dtsdb: table CB has no record '甲开关' at this place; did you mean 乙开关?\n");
}

}  // namespace
}  // namespace dtsdb::tools
