// Every scenario of tests/scenarios as a test of its own.
#include "tests/topology/scenario.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>

#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::test {
namespace {

class Scenarios : public testing::TestWithParam<Scenario> {};

TEST_P(Scenarios, GoesAsExpected) { RunScenario(GetParam()); }

/// "breakers.txt", "A ring opened" becomes "breakers_A_ring_opened".
std::string TestName(const testing::TestParamInfo<Scenario>& test) {
  std::string name = std::filesystem::path(test.param.file).stem().string() + "_" + test.param.name;
  std::string clean;
  for (const char c : name) {
    const bool letter = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (letter) clean += c;
    if (!letter && !clean.empty() && clean.back() != '_') clean += '_';
  }
  while (!clean.empty() && clean.back() == '_') clean.pop_back();
  return clean;
}

/// The scenarios of a file with these lines.
std::vector<Scenario> Read(const char* lines) {
  const TemporaryDirectory directory;
  QFile file(QStringLiteral("case.txt"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(lines);
  file.close();
  return ReadScenarios(directory.Path().toStdString());
}

constexpr const char* kNetwork =
    "# Two stations\n"
    "scenario A case\n"
    "station A\n"
    "level A220 a\n"
    "unit U a\n"
    "station B\n"
    "level B220 b\n"
    "load D b\n"
    "line L a b\n"
    "run full\n";

/// Runs kNetwork and then `lines`, the first of which is line 11 of its file.
void RunBehindNetwork(const std::string& lines) { RunScenario(Read((kNetwork + lines).c_str()).front()); }

TEST(ScenarioLanguage, CasesOfAFileStandInOrderWithTheirLines) {
  const std::vector<Scenario> scenarios =
      Read("scenario First one # note\nstation A\n\nscenario Second\nstation 'B C'");
  ASSERT_EQ(scenarios.size(), 2U);
  EXPECT_EQ(scenarios[0].name, "First one");
  EXPECT_EQ(scenarios[0].statements.size(), 1U);
  EXPECT_EQ(scenarios[1].name, "Second");
  EXPECT_EQ(scenarios[1].statements[0].line, 5);
  EXPECT_EQ(scenarios[1].statements[0].words, (std::vector<std::string>{"station", "B C"}));
}

TEST(ScenarioLanguage, FaultsNameFileAndLine) {
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    RunBehindNetwork("frobnicate");
  }
  ASSERT_EQ(failures.size(), 1);
  EXPECT_TRUE(std::string(failures.GetTestPartResult(0).file_name()).ends_with("case.txt"));
  EXPECT_EQ(failures.GetTestPartResult(0).line_number(), 11);

  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("frobnicate"), "there is no statement 'frobnicate'");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("open CB"), "the identity is missing");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("at LN x 2 3"), "table LN has no record 'x'");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("is LN L colour red"), "there is no field 'colour'");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("load E b"), "in front of the first run");
  EXPECT_NONFATAL_FAILURE(RunScenario(Read("scenario x\nstation A\nunit U a").front()), "belongs to no level");
  EXPECT_NONFATAL_FAILURE(RunScenario(Read("scenario x\nislands none").front()), "in front of the first 'run full'");
  EXPECT_NONFATAL_FAILURE(RunScenario(Read("station A").front()), "in front of the first scenario");
  EXPECT_NONFATAL_FAILURE(RunScenario(Read("scenario x\nstation 'A").back()), "a quote isn't closed");
}

TEST(ScenarioLanguage, ExpectationsThatAreNotMetShowBothSides) {
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("islands 0: 2"), "expected: 0: 2\nis:       0: 2 3");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("out LN L returns 0"), "returns 1 instead of 0");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("dead LD D"), "is:       live");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("stands out LN L"), "doesn't stand so");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("differs LN L: x / full run: y"), "is:       none");
}

TEST(ScenarioLanguage, WhatNobodyNamesIsAFailure) {
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("open CB x returns 0"), "unexpected message: x not exists in cb table");
  EXPECT_NONFATAL_FAILURE(RunBehindNetwork("out LN L\nchange\nlog LN L REMOVE status 4 old 2 new 3"),
                          "unexpected log row: BS 3 BSDEAD status 0 old 3 new 3");
}

INSTANTIATE_TEST_SUITE_P(Topology, Scenarios, testing::ValuesIn(ReadScenarios(SourcePath("tests/scenarios"))),
                         TestName);

}  // namespace
}  // namespace dtsdb::test
