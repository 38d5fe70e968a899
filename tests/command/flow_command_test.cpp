// The command that shows the flows through the breakers, beside its kept outputs in golden_test.cpp.

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "rtdb/volma_rtdb.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using nlohmann::json;
using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

/// The outcome of a call that must end with `code` and without a message.
std::string Output(const Workplace& here, const char* arguments, int code = 0) {
  const CommandResult result = here.Run(arguments);
  EXPECT_EQ(result.code, code) << arguments << ": " << result.err;
  EXPECT_EQ(result.err, "") << arguments;
  return result.out;
}

json Result(const Workplace& here, const char* arguments, int code = 0) {
  return json::parse(Output(here, arguments, code));
}

/// The row of a breaker in the result.
json Breaker(const json& result, const std::string& id) {
  for (const json& breaker : result["breakers"]) {
    if (breaker["breaker"] == id) return breaker;
  }
  ADD_FAILURE() << "no breaker " << id;
  return {};
}

/// The sample with its topology, in the database x.fdb.
Workplace StoredSample() {
  Workplace here;
  here.CopyModel("m", "examples/ieee14");
  Output(here, "topology m -o rtdb:x");
  return here;
}

TEST(FlowCommand, SampleBalancesAndItsCouplersCarryWhatIsMeasured) {
  const Workplace here;
  here.CopyModel("m", "examples/ieee14");
  const json result = Result(here, "flow m --format json");
  EXPECT_EQ(result["not_balanced"], 0);
  for (const json& set : result["sets"]) EXPECT_EQ(set["state"], "balanced") << set;
  for (const json& breaker : result["breakers"]) EXPECT_TRUE(breaker["p"].is_number()) << breaker;

  // The two zero-impedance branches stand on these: ZBR.csv has the flows of the network's solution.
  const json coupler = Breaker(result, "Shiqiao-132-E04-Q0");
  EXPECT_NEAR(coupler["p"], 136.454, 0.002);
  EXPECT_NEAR(coupler["q"], 17.431, 0.002);
  const json sectioner = Breaker(result, "Pingan-33-E04-Q0");
  EXPECT_NEAR(sectioner["p"], 4.392, 0.002);
  EXPECT_NEAR(sectioner["q"], 1.852, 0.002);
}

TEST(FlowCommand, LeavesNothingInTheFolderAndAnotherProgramsLogAlone) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("cbFlow.txt", "of another program");
  Output(here, "flow m", 1);
  EXPECT_EQ(here.EntryCount(), 2);
  EXPECT_EQ(here.Read("cbFlow.txt"), "of another program");
}

TEST(FlowCommand, TakesAnObjectFileWithItsTopologyAsItIs) {
  const Workplace here;
  here.CopyModel("m", "examples/ieee14");
  Output(here, "topology m -o live.obj");
  EXPECT_EQ(Output(here, "flow live.obj"), Output(here, "flow m"));
}

TEST(FlowCommand, RealtimeDatabaseIsNotChangedUnlessAskedFor) {
  const Workplace here = StoredSample();
  Output(here, "rtdb put x CB id=Taohua-33-C1-Q0 p=7");
  const std::string before = Output(here, "rtdb show x CB --format csv");
  Output(here, "flow rtdb:x");
  EXPECT_EQ(Output(here, "rtdb show x CB --format csv"), before);
}

TEST(FlowCommand, StoresFlowsAndClassesInARealtimeDatabase) {
  const Workplace here = StoredSample();
  const json flows = Result(here, "flow rtdb:x --store --format json");
  const json row = json::parse(Output(here, "rtdb show x CB --id Nanhu-33-E01-Q0 --format json"))["CB"][0];
  EXPECT_NEAR(row["p"], Breaker(flows, "Nanhu-33-E01-Q0")["p"].get<double>(), 0.001);
  EXPECT_NE(row["p"], 0);
  EXPECT_EQ(row["tp_status"].get<unsigned>() & 56U, 32U) << "radial";
}

TEST(FlowCommand, KeepsTheLogOnlyWhereItIsAskedFor) {
  const Workplace here;
  here.CopyModel("m");
  Output(here, "topology m -o live.obj");
  Output(here, "flow live.obj --log flow.log", 1);
  const std::string log = here.Read("flow.log");
  EXPECT_TRUE(log.starts_with("m_delta = 0.01\n\nbs No. =0\nwtotal = 182.5\nrtotal = 31.25\n\n")) << log;
  EXPECT_TRUE(log.ends_with("\n\n"));
  EXPECT_TRUE(Contains(log, "nodeName = \xBC\xD7\x31\n")) << "in GBK";  // 甲1
  EXPECT_EQ(here.EntryCount(), 3);
}

// No program has put voltages into the database: those of the buses serve, as with files.
TEST(FlowCommand, DatabaseWithoutVoltagesGivesWhatTheFileGives) {
  const Workplace here = StoredSample();
  EXPECT_EQ(Output(here, "flow rtdb:x"), Output(here, "flow m"));
}

/// Takes all voltages from the database x.fdb that the breaker flow could use.
void RemoveVoltages(const Workplace& here) {
  dbDatabase database;
  ASSERT_TRUE(database.open((here / "x").c_str()));
  dbCursor<kv> levels(&database, dbCursorForUpdate);
  levels.select();
  for (kv* row = levels.get(); row != nullptr; row = levels.next()) {
    row->vbase = 0;
    levels.update();
  }
  dbCursor<bus> buses(&database, dbCursorForUpdate);
  buses.select();
  for (bus* row = buses.get(); row != nullptr; row = buses.next()) {
    row->v = 0;
    buses.update();
  }
  database.close();
}

TEST(FlowCommand, NamesSetsAndBreakersWithoutAVoltage) {
  const Workplace here = StoredSample();
  RemoveVoltages(here);
  const json result = Result(here, "flow rtdb:x --format json", 1);
  EXPECT_EQ(result["not_balanced"], 0);
  EXPECT_EQ(result["breakers_without_voltage"], 69);
  int sets = 0;
  for (const json& set : result["sets"]) sets += set["state"] == "no voltage" ? 1 : 0;
  EXPECT_GT(sets, 0);
  EXPECT_EQ(result["no_voltage"], sets);
  int breakers = 0;
  for (const json& breaker : result["breakers"]) {
    const bool isOnLoop = breaker["class"] == "loop";
    breakers += isOnLoop ? 1 : 0;
    EXPECT_EQ(breaker["state"], isOnLoop ? "no voltage" : "computed") << breaker;
    EXPECT_EQ(breaker["p"].is_number(), !isOnLoop) << breaker;
    if (isOnLoop) {
      EXPECT_EQ(breaker["q"], "nan");
    }
  }
  EXPECT_EQ(breakers, 69);
  const std::string text = Output(here, "flow rtdb:x", 1);
  EXPECT_TRUE(Contains(text, fmt::format("\nNo voltage in {} sets: 69 breakers on loops without a flow.\n", sets)));
  EXPECT_FALSE(Contains(text, "-nan")) << text;
}

TEST(FlowCommand, RealtimeDatabaseNeedsATopology) {
  const Workplace here;
  here.CopyModel("m");
  Output(here, "convert m rtdb:x");
  const CommandResult result = here.Run("flow rtdb:x");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "dtsdb: rtdb:x: there is no topology; 'dtsdb topology rtdb:x -o rtdb:x' works it out\n");
}

TEST(FlowCommand, StoresInRealtimeDatabasesOnly) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run("flow m --store");
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
}

TEST(FlowCommand, ReportsAMissingModelAndFaults) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_EQ(here.Run("flow none").code, 3);
  EXPECT_EQ(here.Run("flow rtdb:none").code, 3);
  here.Write("m/CB.csv", here.Read("m/CB.csv") + "坏开关,甲站220,,甲9,5\n");
  const CommandResult result = here.Run("flow m");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Contains(result.err, "'dtsdb validate m' shows them")) << result.err;
}

TEST(FlowCommand, ToleranceDecidesWhatBalances) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_EQ(Result(here, "flow m --format json", 1)["not_balanced"], 1);
  EXPECT_EQ(Result(here, "flow m --delta 200 --format json")["not_balanced"], 0);
}

}  // namespace
}  // namespace dtsdb::tools
