// The command dtsdb switch on the network of tests/command/golden_test.cpp; its output is kept in tests/command/golden.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class SwitchCommand : public testing::Test {
 protected:
  SwitchCommand() { here.CopyModel("m"); }

  /// Opens the to end of the line in the model.
  void OpenToEnd() const {
    here.Write("m/LN.csv", "id,dv,st,zst,kv,zkv,nd,znd,status\n甲乙线,东区,甲站,乙站,甲站220,乙站220,甲2,乙2,2\n");
  }

  nlohmann::json Json(const std::string& arguments) const {
    const CommandResult result = here.Run((arguments + " --format json").c_str());
    return nlohmann::json::parse(result.out);
  }
  std::string Refusal(const char* arguments) const {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  }

  Workplace here;
};

TEST_F(SwitchCommand, WritesTheModelWithItsTopology) {
  EXPECT_EQ(here.Run("switch m open CB 甲开关 -o switched.obj").code, 0);
  EXPECT_TRUE(Contains(here.Run("dump switched.obj CB --format csv").out, "甲开关,甲站220,257,"));
  EXPECT_TRUE(Contains(here.Run("dump switched.obj ND --id 甲2").out, "4")) << "its section";
  EXPECT_TRUE(Contains(here.Run("topology switched.obj").out, "Live islands: 0."));
}

TEST_F(SwitchCommand, EventsOfOneCallAreOneRun) {
  const auto report = Json("switch m open CB 甲开关 out LN 甲乙线");
  EXPECT_EQ(report["runs"].size(), 2U);
  EXPECT_EQ(report["events"].size(), 2U);
}

TEST_F(SwitchCommand, ScriptDoesTheSameAsTheCommandLine) {
  here.Write(
      "evening.txt",
      "# evening\nopen CB 甲开关\nrun\n\nout LN \"甲乙线\"   # for work\nrun\nrun\nin LN 甲乙线\nclose CB 甲开关");
  EXPECT_EQ(Json("switch m --script evening.txt --verify"),
            Json("switch m open CB 甲开关 run out LN 甲乙线 run in LN 甲乙线 close CB 甲开关 --verify"));
}

TEST_F(SwitchCommand, ScriptComesInFrontOfTheCommandLine) {
  here.Write("first.txt", "open CB 甲开关\nrun\n");
  const auto report = Json("switch m close CB 甲开关 --script first.txt");
  EXPECT_EQ(report["events"][0]["event"], "open CB 甲开关");
  EXPECT_EQ(report["events"][1]["event"], "close CB 甲开关");
  EXPECT_EQ(report["events"][1]["run"], 2);
}

TEST_F(SwitchCommand, ScriptFaultsNameTheLine) {
  here.Write("faulty.txt", "open CB 甲开关\n\nopen CB\n");
  EXPECT_EQ(Refusal("switch m --script faulty.txt"),
            "dtsdb: faulty.txt, line 3: behind 'CB' the identity is missing\n");
  const CommandResult missing = here.Run("switch m --script none.txt");
  EXPECT_EQ(missing.code, 3);
  EXPECT_TRUE(Contains(missing.err, "none.txt: "));
}

TEST_F(SwitchCommand, WrongWordsAreRefusedBeforeAnythingIsSwitched) {
  EXPECT_TRUE(Contains(Refusal("switch m"), "there is no event"));
  EXPECT_TRUE(Contains(Refusal("switch m run"), "there is no event"));
  EXPECT_TRUE(Contains(Refusal("switch m opne CB 甲开关"), "'opne' is not a verb"));
  EXPECT_TRUE(Contains(Refusal("switch m open CB 甲开关 off UN 丙机 -o x.obj"), "table UN has no record '丙机'"));
  EXPECT_FALSE(here.Exists("x.obj"));
}

TEST_F(SwitchCommand, OpeningInARingIsReportedInWords) {
  here.Write("m/CB.csv", here.Read("m/CB.csv") + "甲旁路,甲站220,甲1,甲2,1\n");
  const auto report = Json("switch m open CB 甲开关 run open CB 甲开关 run close CB 甲开关");
  ASSERT_EQ(report["events"].size(), 3U);
  EXPECT_EQ(report["events"][0]["result"], 0);
  EXPECT_EQ(report["events"][0]["effect"], "stands open, but other breakers join its nodes; not followed up");
  EXPECT_EQ(report["events"][1]["effect"], "stood so already; nothing to follow up");
  EXPECT_EQ(report["events"][2]["effect"], "stands closed within one section; nothing to follow up");
  EXPECT_EQ(report["runs"][1]["kind"], "nothing to do");
}

TEST_F(SwitchCommand, FiftyEventsGiveOneFullRunAndNoCircle) {
  std::string arguments = "switch m";
  for (int i = 0; i < 50; ++i) arguments += " in LN 甲乙线";
  const auto report = Json(arguments + " run in LN 甲乙线");
  EXPECT_EQ(report["runs"][1]["kind"], "full, for many changes");
  EXPECT_EQ(report["runs"][2]["kind"], "incremental");
}

TEST_F(SwitchCommand, LinesOfARunThatFailsBearTheCommandsName) {
  OpenToEnd();
  const CommandResult result = here.Run("switch m break LN 甲乙线 from --as-is");
  EXPECT_EQ(result.code, 0);
  const QStringList lines = QString::fromStdString(result.err).split(QLatin1Char('\n'));
  ASSERT_GE(lines.size(), 3) << "the stage that failed, the run and the command each write one";
  EXPECT_EQ(lines.last(), QString()) << "the last line is ended";
  for (int i = 0; i + 1 < lines.size(); ++i) {
    EXPECT_TRUE(lines[i].startsWith(QStringLiteral("dtsdb: "))) << result.err;
    EXPECT_FALSE(lines[i].mid(7).trimmed().isEmpty()) << result.err;
  }
  EXPECT_TRUE(lines.first().startsWith(QStringLiteral("dtsdb: TP:infinite loop-failed at ("))) << result.err;
}

TEST_F(SwitchCommand, ScriptMayBeginWithAByteOrderMark) {
  here.Write("s.txt", "\xEF\xBB\xBFopen CB 甲开关\r\n");
  EXPECT_EQ(Json("switch m --script s.txt")["events"][0]["event"], "open CB 甲开关");
  here.Write("s.txt", "\xEF\xBB\xBF# a note alone\nopen CB 甲开关\n");
  EXPECT_EQ(Json("switch m --script s.txt")["events"][0]["event"], "open CB 甲开关");
}

// The fragment of the end that is open from the start is orphaned when the other end opens too.
TEST_F(SwitchCommand, RunThatFailsIsReplacedByAFullOneAndTheNextGoesOn) {
  OpenToEnd();
  const CommandResult result =
      here.Run("switch m break LN 甲乙线 from run off UN 甲机 run on UN 甲机 --as-is --verify --format json");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(Contains(result.err, "dtsdb: run 1: the incremental run failed; a full run has taken its place\n"));
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["good"], true);
  EXPECT_EQ(report["runs"][1]["kind"], "failed, full instead");
  EXPECT_EQ(report["runs"][2]["kind"], "incremental");
  EXPECT_EQ(report["runs"][3]["kind"], "incremental");
  EXPECT_TRUE(report["differences"].empty());
}

TEST_F(SwitchCommand, VerifyListsWhatDiffersFromAFullRun) {
  const CommandResult result = here.Run("switch m break LN 甲乙线 from --as-is --verify --format json");
  EXPECT_EQ(result.code, 1);
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["good"], false);
  ASSERT_EQ(report["differences"].size(), 1U);
  EXPECT_EQ(report["differences"][0]["identity"], "甲乙线");
  EXPECT_EQ(report["differences"][0]["here"], "from end open");
  EXPECT_EQ(report["differences"][0]["full_run"], "from end open, dead");
}

TEST_F(SwitchCommand, ResultIsThatOfAFullRunAndTheKindNamesWhy) {
  OpenToEnd();
  const CommandResult result =
      here.Run("switch m break LN 甲乙线 from run off UN 甲机 run join LN 甲乙线 from --verify --format json");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["runs"][1]["kind"], "full, for the open end of LN 甲乙线");
  EXPECT_EQ(report["runs"][2]["kind"], "full, for the open end of LN 甲乙线");
  EXPECT_TRUE(report["differences"].empty());
}

TEST_F(SwitchCommand, BreakerTakesItsZeroImpedanceBranchAlong) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  const auto report = Json("switch m open CB 甲开关 run close CB 甲开关 --verify");
  ASSERT_EQ(report["events"].size(), 4U);
  EXPECT_EQ(report["events"][1]["event"], "out ZBR 甲阻");
  EXPECT_EQ(report["events"][1]["effect"], "with its breaker 甲开关");
  EXPECT_EQ(report["events"][3]["event"], "in ZBR 甲阻");
  ASSERT_EQ(report["islands"].size(), 3U);
  EXPECT_EQ(report["islands"][1]["nodes"], 1) << "the unit's alone";
  EXPECT_EQ(report["islands"][2]["nodes"], 4);
  EXPECT_TRUE(report["differences"].empty());
  EXPECT_TRUE(report["findings"].empty());
}

TEST_F(SwitchCommand, FindingNamesBreakerAndBranchThatDisagree) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  const auto report = Json("switch m out ZBR 甲阻");
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["run"], 1);
  EXPECT_EQ(report["findings"][0]["identity"], "甲阻");
  EXPECT_EQ(report["findings"][0]["text"],
            "CB 甲开关 is closed, but ZBR 甲阻 on it is out of service and parts its nodes");
  EXPECT_TRUE(Json("topology m")["findings"].empty());
}

TEST_F(SwitchCommand, FindingsAreInTheLanguageAskedFor) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  const auto english = Json("switch m out ZBR 甲阻")["findings"][0];
  EXPECT_EQ(english["code"], "TOPOLOGY_ZBR_OUT_AT_CLOSED_BREAKER");
  EXPECT_EQ(english["field"], "status");
  EXPECT_EQ(english["what_to_do"], "return the branch to service, or open the breaker");
  const auto chinese = Json("switch m out ZBR 甲阻 --lang zh")["findings"][0];
  EXPECT_EQ(chinese["code"], english["code"]);
  EXPECT_EQ(chinese["text"], "开关甲开关已合上，但其上的零阻抗支路甲阻已退出运行，断开两端结点.");
  EXPECT_EQ(chinese["what_to_do"], "将该支路投入运行，或断开该开关");
}

TEST_F(SwitchCommand, TopologyNamesBranchesThatAreLeftOut) {
  here.Write("m/ZBR.csv", "id,cb,status\n甲阻,甲开关,16\n");
  const auto english = Json("topology m")["findings"];
  ASSERT_EQ(english.size(), 2U);
  EXPECT_EQ(english[0]["code"], "TOPOLOGY_ZBR_OPEN_AT_CLOSED_BREAKER");
  EXPECT_EQ(english[1]["code"], "TOPOLOGY_ZBR_LEFT_OUT");
  EXPECT_EQ(english[1]["identity"], "甲阻");
  const auto chinese = Json("topology m --lang zh")["findings"];
  EXPECT_EQ(chinese[1]["text"], "按退出运行处理：仅末端断开时无法得出拓扑.");
  EXPECT_EQ(chinese[1]["what_to_do"], "将该支路退出运行，或合上其末端");
}

TEST_F(SwitchCommand, EndsWithWhatLostAndRegainedSupply) {
  here.Write("m/LD.csv", "id,kv,nd,p,q\n乙荷,乙站220,乙2,120,22\n");
  const auto opened = Json("switch m open CB 甲开关 -o switched.obj");
  EXPECT_EQ(opened["lost_stations"], 2);
  EXPECT_EQ(opened["lost_loads"], 1);
  EXPECT_EQ(opened["lost_load_p"], 120);
  EXPECT_EQ(opened["lost_load_q"], 22);
  EXPECT_EQ(opened["regained_loads"], 0);
  const auto load = opened["effect"].back();
  EXPECT_EQ(load["change"], "lost");
  EXPECT_EQ(load["identity"], "乙荷");
  EXPECT_EQ(load["station"], "乙站");
  EXPECT_EQ(load["p"], 120);
  EXPECT_EQ(opened["island_changes"][0]["change"], "died");
  const std::string closed = here.Run("switch switched.obj close CB 甲开关").out;
  EXPECT_TRUE(
      closed.ends_with("Lost supply: nothing.\n"
                       "Regained supply: 2 stations, 2 buses, 1 unit, 1 load (120 MW, 22 Mvar).\n"))
      << closed;
}

TEST_F(SwitchCommand, UndoLeadsBack) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  EXPECT_EQ(here.Run("topology m -o first.obj").code, 0);
  EXPECT_EQ(here.Run("topology first.obj -o before.obj").code, 0) << "its reference is no longer a newly chosen one";
  EXPECT_EQ(
      here.Run("switch before.obj open CB 甲开关 off UN 甲机 break LN 甲乙线 to -o after.obj --undo back.txt").code, 0);
  EXPECT_TRUE(here.Read("back.txt").ends_with("\nclose CB 甲开关\non UN 甲机\njoin LN 甲乙线 to\n"))
      << here.Read("back.txt");
  EXPECT_EQ(here.Run("diff before.obj after.obj").code, 1);
  EXPECT_EQ(here.Run("switch after.obj --script back.txt -o back.obj").code, 0);
  for (const char* table : {"CB", "UN", "LD", "LN", "ZBR", "ND"}) {
    const std::string arguments = std::string(" ") + table + " --format csv";
    EXPECT_EQ(here.Run(("dump back.obj" + arguments).c_str()).out,
              here.Run(("dump before.obj" + arguments).c_str()).out);
  }
}

TEST_F(SwitchCommand, UndoNamesTheRulesAndIsWrittenInFrontOfTheModel) {
  EXPECT_EQ(here.Run("switch m open CB 甲开关 --as-is --undo back.txt").code, 0);
  EXPECT_TRUE(Contains(here.Read("back.txt"), "with --as-is"));
  const CommandResult failed = here.Run("switch m open CB 甲开关 --undo none/back.txt -o x.obj");
  EXPECT_EQ(failed.code, 3);
  EXPECT_TRUE(IsOneLine(failed.err)) << failed.err;
  EXPECT_FALSE(here.Exists("x.obj"));
}

TEST_F(SwitchCommand, FaultyModelIsRefused) {
  here.Write("m/CB.csv", here.Read("m/CB.csv") + "坏开关,甲站220,,甲9,5\n");
  const CommandResult result = here.Run("switch m open CB 甲开关");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Contains(result.err, "dtsdb validate m"));
}

}  // namespace
}  // namespace dtsdb::tools
