// Topology written as CGMES profiles and compared with them; the way between two states. On the grid of examples/coast.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "formats/files.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {
namespace {

constexpr const char* kTopology = "20261122T0730Z__coast.example_TP_1.xml";
constexpr const char* kIslands = "20261122T0730Z__coast.example_SV_1.xml";
constexpr const char* kState = "20261122T0730Z__coast.example_SSH_1.xml";
constexpr const char* kEquipment = "20261122T0730Z__coast.example_EQ_1.xml";

/// A folder with the grid as "coast".
class ProfileCommand : public testing::Test {
 protected:
  ProfileCommand() { m_here.CopyModel("coast", "examples/coast"); }

  CommandResult Run(const std::string& arguments) const { return m_here.Run(arguments.c_str()); }
  std::string Bytes(const std::string& file) const { return ReadFile(m_here / file); }

  /// Writes the state of the grid with a switch opened or closed, as `file`.
  void WriteState(const std::string& file, const std::string& from, const std::string& to) const {
    std::string text = Bytes(std::string("coast/") + kState);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, from.size(), to);
    m_here.Write(file, text);
  }

  const Workplace m_here;
};

TEST_F(ProfileCommand, AnExportIsWrittenAndReadAsItWas) {
  const CommandResult exported = Run("topology coast --export tp:out/profiles --sheet islands");
  ASSERT_EQ(exported.code, 0) << exported.err;
  EXPECT_EQ(exported.err, std::string("dtsdb: written: out/profiles/") + kTopology + "\ndtsdb: written: out/profiles/" +
                              kIslands + "\n");
  const CommandResult compared =
      Run(std::string("topology cgmes:coast/") + kEquipment + ",coast/" + kState + ",out/profiles --compare-tp");
  EXPECT_EQ(compared.code, 0) << compared.err;
  EXPECT_TRUE(Contains(compared.out, "0 differences, and 0 by design.")) << compared.out;
}

TEST_F(ProfileCommand, AConvertedModelGivesTheSameFiles) {
  ASSERT_EQ(Run("topology coast --export tp:direct --created 2026-11-22T08:00:00Z").code, 0);
  ASSERT_EQ(Run("convert coast grid.obj").code, 0);
  const CommandResult exported = Run("topology grid.obj --export tp:converted --created 2026-11-22T08:00:00Z");
  ASSERT_EQ(exported.code, 0) << exported.err;
  for (const char* const file : {kTopology, kIslands}) {
    EXPECT_EQ(Bytes(std::string("direct/") + file), Bytes(std::string("converted/") + file));
  }
}

TEST_F(ProfileCommand, AModelOfItsOwnGetsDerivedMrids) {
  m_here.CopyModel("own");
  const CommandResult exported = Run("topology own --export tp:out --created 2026-11-22T08:00:00Z");
  ASSERT_EQ(exported.code, 0);
  EXPECT_TRUE(Contains(exported.err, "the mRIDs written are derived from its identities")) << exported.err;
  const std::string topology = Bytes("out/20261122T0800Z___TP_1.xml");
  EXPECT_TRUE(Contains(topology, "http://entsoe.eu/CIM/Topology/4/1"));
  EXPECT_TRUE(Contains(topology, "TopologicalNode.BaseVoltage"));
}

TEST_F(ProfileCommand, AFaultInTheFileOfIdentitiesIsNamedWithItsLine) {
  ASSERT_EQ(Run("convert coast grid.obj").code, 0);
  m_here.Write("grid.obj.ids.csv", "table,identity,mrid,name\r\nND,N\r\n");
  const CommandResult exported = Run("topology grid.obj --export tp:out");
  EXPECT_EQ(exported.code, 3);
  EXPECT_EQ(exported.err,
            "dtsdb: grid.obj.ids.csv, line 2: a line has the four fields table, identity, mrid and name\n");
  EXPECT_EQ(Run("topology grid.obj").code, 0);  // not needed there
}

TEST_F(ProfileCommand, WrongPlacesAndTimesAreRefused) {
  for (const char* const arguments :
       {"topology coast --export out", "topology coast --export tp:", "topology coast --export tp:coast",
        "topology coast --export tp:coast/.", "topology coast --export tp:out --created yesterday"}) {
    const CommandResult result = Run(arguments);
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  }
  EXPECT_FALSE(std::filesystem::exists(m_here / "out"));
}

TEST_F(ProfileCommand, WhatDiffersFromThePublishedTopologyIsListed) {
  WriteState("open.xml", "<cim:Switch.open>false", "<cim:Switch.open>true");
  const CommandResult result = Run(std::string("topology cgmes:coast/") + kEquipment + ",open.xml,coast/" + kTopology +
                                   ",coast/" + kIslands + " --compare-tp --format json");
  EXPECT_EQ(result.code, 1) << result.err;
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["same"], false);
  ASSERT_FALSE(report["differences"].empty());
  EXPECT_EQ(report["differences"][0]["what"], "apart here");
  EXPECT_EQ(report["differences"][0]["station"], "Harbour");
  EXPECT_EQ(report["differences"][0]["why"], "Disconnector 'Harbour 110 G1 QB1' is open");
}

TEST_F(ProfileCommand, MergedRetainedSwitchesDifferByDesign) {
  const CommandResult result = Run("topology coast --compare-tp --merge-retained --sheet by_design --format csv");
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(Contains(result.out, "together here,Harbour,Harbour 110,")) << result.out;
  EXPECT_TRUE(Contains(result.out, "Breaker 'Harbour 110 K QA' is closed and retained")) << result.out;
}

TEST_F(ProfileCommand, OnlySetsHaveATopologyToCompareWith) {
  const CommandResult own =
      m_here.Run(QStringList{QStringLiteral("topology"), QString::fromStdString(dtsdb::test::SourcePath(kSample)),
                             QStringLiteral("--compare-tp")});
  EXPECT_EQ(own.code, 2);
  EXPECT_TRUE(Contains(own.err, "is no CGMES set")) << own.err;
  EXPECT_EQ(Run("topology coast --compare-tp --station Pier").code, 2);
  const CommandResult bare = Run(std::string("topology cgmes:coast/") + kEquipment + " --compare-tp");
  EXPECT_EQ(bare.code, 3);
  EXPECT_TRUE(Contains(bare.err, "the set has no topology (TP) to compare with")) << bare.err;
}

TEST_F(ProfileCommand, EventsLeadFromOneStateToAnother) {
  WriteState("evening.xml", "<cim:Switch.open>false", "<cim:Switch.open>true");
  const std::string noon = std::string("cgmes:coast/") + kEquipment + ",coast/" + kState;
  const std::string evening = std::string("cgmes:coast/") + kEquipment + ",evening.xml";
  const CommandResult way = Run("diff " + noon + " " + evening + " --events");
  EXPECT_EQ(way.code, 0) << way.err;
  EXPECT_EQ(way.out, "open CB \"Harbour 110 G1 QB1\"\n");
  m_here.Write("evening.txt", way.out);
  ASSERT_EQ(Run("switch " + noon + " --script evening.txt -o switched.obj").code, 0);
  EXPECT_EQ(Run("diff switched.obj " + evening + " --events").out, "");
  ASSERT_EQ(Run("topology switched.obj -o again.obj --export tp:switched --created 2026-11-22T08:00:00Z").code, 0);
  ASSERT_EQ(Run("topology " + evening + " --export tp:evening --created 2026-11-22T08:00:00Z").code, 0);
  EXPECT_EQ(Bytes(std::string("switched/") + kTopology), Bytes(std::string("evening/") + kTopology));
  EXPECT_EQ(Bytes("again.obj.ids.csv"), Bytes("switched.obj.ids.csv"));
}

TEST_F(ProfileCommand, WhatEventsCannotReachIsReported) {
  m_here.CopyModel("a");
  m_here.CopyModel("b");
  std::string loads = Bytes("b/LD.csv");
  const std::string load = "乙荷";
  for (std::size_t at = loads.find(load); at != std::string::npos; at = loads.find(load, at + 1)) {
    loads.replace(at, load.size(), "丙荷");
  }
  m_here.Write("b/LD.csv", loads);
  const CommandResult way = Run("diff a b --events");
  EXPECT_EQ(way.code, 1);
  EXPECT_EQ(way.err, "dtsdb: LD '乙荷': only A has it\ndtsdb: LD '丙荷': only B has it\n");
  const auto report = nlohmann::json::parse(Run("diff a b --events --format json").out);
  EXPECT_EQ(report["reachable"], false);
  EXPECT_EQ(report["unreachable"].size(), 2U);
}

/// The second example of the README: its commands with the lines that they print, "[...]" for what is left out.
std::vector<std::pair<std::string, std::vector<std::string>>> ReadmeCommands() {
  std::istringstream readme(ReadFile(dtsdb::test::SourcePath("README.md")));
  std::vector<std::pair<std::string, std::vector<std::string>>> commands;
  const std::string indent = "    ";
  const std::string prompt = indent + "$ dtsdb ";
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with(prompt)) {
      commands.emplace_back(line.substr(prompt.size()), std::vector<std::string>());
    } else if (line.starts_with(indent) && !commands.empty()) {
      commands.back().second.push_back(line.substr(indent.size()));
    } else if (!line.empty() && !commands.empty()) {
      break;
    }
  }
  return commands;
}

TEST(ReadmeExample, PrintsWhatTheReadmeShows) {
  const Workplace here;
  std::filesystem::create_directory(here / "examples");
  here.CopyModel("examples/coast", "examples/coast");
  const auto commands = ReadmeCommands();
  EXPECT_EQ(commands.size(), 4U);
  for (const auto& [command, lines] : commands) {
    const CommandResult result = here.Run(command.c_str());
    EXPECT_EQ(result.code, 0) << command << ": " << result.err;
    std::size_t at = 0;
    for (const std::string& line : lines) {
      if (line == "[...]") continue;
      at = result.out.find(line + "\n", at);
      ASSERT_NE(at, std::string::npos) << command << ": " << line << "\n" << result.out;
    }
  }
  EXPECT_TRUE(std::filesystem::exists(here / (std::string("coast-tp/") + kTopology)));
}

}  // namespace
}  // namespace dtsdb::tools::test
