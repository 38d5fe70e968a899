// The command dtsdb screen on the network of tests/command/golden_test.cpp, and on the sample; its output is kept in
// tests/command/golden.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class ScreenCommand : public testing::Test {
 protected:
  ScreenCommand() { here.CopyModel("m"); }

  nlohmann::json Json(const std::string& arguments) const {
    const CommandResult result = here.Run((arguments + " --format json").c_str());
    EXPECT_EQ(result.code, 0) << arguments << ": " << result.err;
    return nlohmann::json::parse(result.out);
  }
  CommandResult Screen(const std::vector<std::string>& words, const std::vector<std::string>& more = {}) const {
    QStringList arguments = {QStringLiteral("screen"), QStringLiteral("m")};
    for (const auto* list : {&words, &more}) {
      for (const std::string& word : *list) arguments.append(QString::fromStdString(word));
    }
    return here.Run(arguments);
  }
  /// The texts of the outages, in the order of the result.
  std::string Outages(const std::vector<std::string>& words) const {
    const CommandResult result = Screen(words, {"--format", "json"});
    EXPECT_EQ(result.code, 0) << result.err;
    std::string text;
    const auto report = nlohmann::json::parse(result.out);
    for (const auto& row : report["outages"]) {
      text += (text.empty() ? "" : ", ") + row["outage"].get<std::string>();
    }
    return text;
  }
  std::string Refusal(const std::vector<std::string>& words) const {
    const CommandResult result = Screen(words);
    EXPECT_EQ(result.code, 2) << result.out;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  }

  Workplace here;
};

TEST_F(ScreenCommand, KindsChooseWhatGoesOut) {
  EXPECT_EQ(Outages({"--kinds", "UN,LN"}), "UN 甲机, LN 甲乙线");
  EXPECT_EQ(Outages({"--kinds", "BUS"}), "BUS 甲母, BUS 乙母");
  EXPECT_EQ(Outages({"--kinds", "DLN"}), "");
  EXPECT_EQ(Refusal({"--kinds", "LN,LD"}),
            "dtsdb: 'LD' is no table of outages; these are LN, XF, DLN, ZBR, CB, BUS, UN\n");
  EXPECT_EQ(Refusal({"--kinds", ""}), "dtsdb: '' is no table of outages; these are LN, XF, DLN, ZBR, CB, BUS, UN\n");
}

TEST_F(ScreenCommand, ResultsDoNotDependOnTheNumberOfThreads) {
  here.CopyModel("sample", "examples/ieee14");
  const CommandResult alone = here.Run("screen sample --format json");
  EXPECT_EQ(alone.code, 0);
  EXPECT_GT(alone.out.size(), 10000U);
  for (const char* jobs : {"2", "7"}) {
    const CommandResult together = here.Run((std::string("screen sample --format json --jobs ") + jobs).c_str());
    EXPECT_EQ(alone.out, together.out) << jobs;
  }
}

TEST_F(ScreenCommand, TopLimitsWhatIsShown) {
  const auto report = Json("screen m --top 2");
  EXPECT_EQ(report["screened"], 6);
  EXPECT_EQ(report["shown"], 2);
  EXPECT_EQ(report["outages"].size(), 2U);
  for (const auto& row : report["lost"]) EXPECT_LE(row["rank"], 2);
  EXPECT_TRUE(
      Contains(here.Run("screen m --top 2").out, "\n4 more outages, 4 of them with an effect; --top N shows N.\n"));
  EXPECT_FALSE(Contains(here.Run("screen m --top 6").out, "more outage"));
}

TEST_F(ScreenCommand, TextShowsTwentyAndProgramsGetAll) {
  here.CopyModel("sample", "examples/ieee14");
  EXPECT_TRUE(Contains(here.Run("screen sample").out, "236 more outages, "));
  EXPECT_EQ(Json("screen sample")["outages"].size(), 256U);
}

TEST_F(ScreenCommand, PairsAreThoseOfTheOutagesNamed) {
  EXPECT_EQ(Outages({"--pairs", "UN 甲机 LN 甲乙线 'CB' \"乙开关\" UN 甲机"}),
            "UN 甲机 + CB 乙开关, UN 甲机 + LN 甲乙线, LN 甲乙线 + CB 乙开关");
  here.Write("list.txt", "# what may fail together\nUN 甲机\n\nLN 甲乙线 CB 乙开关\n");
  EXPECT_EQ(Outages({"--pairs", "@list.txt"}), "UN 甲机 + CB 乙开关, UN 甲机 + LN 甲乙线, LN 甲乙线 + CB 乙开关");
  const auto row = Json("screen m --pairs @list.txt --top 1")["outages"][0];
  EXPECT_EQ(row["table"], "UN");
  EXPECT_EQ(row["identity"], "甲机");
  EXPECT_EQ(row["second_table"], "CB");
  EXPECT_EQ(row["second_identity"], "乙开关");
}

TEST_F(ScreenCommand, ListsOfPairsAreChecked) {
  EXPECT_EQ(Refusal({"--pairs", "LN 甲乙线"}), "dtsdb: --pairs needs two outages at least, such as 'LN L1 LN L2'\n");
  EXPECT_EQ(Refusal({"--pairs", "LN 甲乙线 CB"}), "dtsdb: behind 'CB' the identity is missing\n");
  EXPECT_EQ(Refusal({"--pairs", "LN 甲乙线 CB 甲开"}), "dtsdb: table CB has no record '甲开'; did you mean 甲开关?\n");
  here.Write("list.txt", "LN 甲乙线\nCB\n");
  EXPECT_EQ(Refusal({"--pairs", "@list.txt"}), "dtsdb: list.txt, line 2: behind 'CB' the identity is missing\n");
  EXPECT_EQ(here.Run("screen m --pairs @none.txt").code, 3);
}

TEST_F(ScreenCommand, SampleTakesPairsAtRandom) {
  here.CopyModel("sample", "examples/ieee14");
  const auto first = Json("screen sample --kinds LN,XF,CB --sample 12");
  EXPECT_EQ(first["screened"], 12);
  EXPECT_EQ(first, Json("screen sample --kinds LN,XF,CB --sample 12 --seed 1 --jobs 3"));
  EXPECT_NE(first["outages"], Json("screen sample --kinds LN,XF,CB --sample 12 --seed 2")["outages"]);
  EXPECT_TRUE(Contains(Refusal({"--sample", "2", "--pairs", "LN 甲乙线 UN 甲机"}), "--pairs"));
  EXPECT_EQ(Refusal({"--sample", "0"}).substr(0, 7), "dtsdb: ");
}

TEST_F(ScreenCommand, ReadsObjectFilesAndModelsWithATopology) {
  EXPECT_EQ(here.Run("switch m open CB 甲开关 -o switched.obj").code, 0);
  EXPECT_EQ(Json("screen switched.obj --kinds CB")["screened"], 1) << "the open ones are left out";
}

TEST_F(ScreenCommand, LeavesNothingBehind) {
  const int entries = here.EntryCount();
  EXPECT_EQ(here.Run("screen m").code, 0);
  EXPECT_EQ(here.EntryCount(), entries);
}

TEST_F(ScreenCommand, ModelWithErrorsIsRefused) {
  here.Write("m/CB.csv", here.Read("m/CB.csv") + "坏开关,甲站220,,甲9,5\n");
  const CommandResult result = here.Run("screen m");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "dtsdb: m: the model has 1 error; 'dtsdb validate m' shows them\n");
}

TEST_F(ScreenCommand, FindingsAreInTheLanguageAskedFor) {
  here.Write("m/ZBR.csv", "id,cb,status\n甲零支,甲开关,1\n");
  const CommandResult english = here.Run("screen m --sheet findings --lang en");
  const CommandResult chinese = here.Run("screen m --sheet findings --lang zh");
  EXPECT_EQ(english.code, 0) << english.err;
  EXPECT_TRUE(Contains(english.out, "甲零支")) << english.out;
  EXPECT_NE(english.out, chinese.out);
  EXPECT_TRUE(Contains(chinese.out, "TOPOLOGY_ZBR_OUT_AT_CLOSED_BREAKER")) << chinese.out;
}

}  // namespace
}  // namespace dtsdb::tools
