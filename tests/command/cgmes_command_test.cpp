// CGMES profiles as a MODEL of the command.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/formats/cgmes/profile_text.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {
namespace {

/// Station S with a machine on a bus, a retained breaker to a load, a line to a border with an injection, and a line of
/// which one end is missing.
std::string Grid() {
  cgmes::test::ProfileText text;
  text.Node("N1").Node("N2").Equipment("BusbarSection", "Bus", {"N1"}).Equipment("SynchronousMachine", "G", {"N1"});
  text.Equipment("Breaker", "Q0", {"N1", "N2"}, {{"Switch.open", "false"}, {"Switch.retained", "true"}});
  text.Equipment("ConformLoad", "Load", {"N2"}, {{"EnergyConsumer.p", "5"}});
  text.Add("Line", "Border").Node("X", "Border").Equipment("ACLineSegment", "L", {"N2", "X"});
  text.Equipment("EquivalentInjection", "Tie", {"X"}).Equipment("ACLineSegment", "Cut", {"N2"});
  return text.Text();
}

TEST(CgmesCommand, InfoShowsWhatIsInside) {
  const Workplace here;
  here.Write("grid.xml", Grid());
  const CommandResult result = here.Run("info grid.xml --format json");
  ASSERT_EQ(result.code, 0) << result.err;
  const auto report = nlohmann::json::parse(result.out);
  EXPECT_EQ(report["form"], "CGMES profiles");
  EXPECT_EQ(report["files"][0]["profiles"], "EQ, SSH, SV, TP");
  EXPECT_EQ(report["left_out"][0]["class"], "ACLineSegment");
  EXPECT_EQ(report["left_out"][0]["why"], "it has 1 terminal, not 2");
  EXPECT_TRUE(report["unknown"].empty());
}

TEST(CgmesCommand, ConvertWritesTheModelAndWhichObjectsItStandsFor) {
  const Workplace here;
  here.Write("grid.xml", Grid());
  const CommandResult result = here.Run("convert --ids mrid --ties unit grid.xml grid.obj");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "dtsdb: grid.xml: 1 object left out; 'dtsdb info grid.xml' lists them\n");
  EXPECT_TRUE(std::filesystem::exists(here / "grid.obj.ids.csv"));
  const auto units = here.Run("dump grid.obj UN --format csv").out;
  EXPECT_TRUE(Contains(units, "Tie,")) << units;
}

TEST(CgmesCommand, FindingsNameTheObjectAndWhereItIsDefined) {
  const Workplace here;
  here.Write("grid.xml", Grid());
  const CommandResult result = here.Run("validate grid.xml --format json");
  ASSERT_EQ(result.code, 0) << result.err;
  const auto report = nlohmann::json::parse(result.out);
  int named = 0;
  for (const auto& finding : report["findings"]) {
    if (finding["table"] != "CB") continue;
    EXPECT_EQ(finding["mrid"], "Q0");
    EXPECT_TRUE(finding["source"].get<std::string>().starts_with("grid.xml, line ")) << finding["source"];
    ++named;
  }
  EXPECT_GT(named, 0) << "a breaker without a status point is warned of";
  const auto text = here.Run("validate grid.xml --all").out;
  EXPECT_TRUE(Contains(text, "mrid")) << text;
  here.CopyModel("m");
  EXPECT_FALSE(Contains(here.Run("validate m --sheet findings --format csv").out, "mrid"));
}

TEST(CgmesCommand, OtherCommandsCountWhatTheyLack) {
  const Workplace here;
  here.Write("grid.xml", Grid());
  for (const char* const line : {"dump grid.xml CB", "flow grid.xml", "diff grid.xml grid.xml"}) {
    EXPECT_TRUE(here.Run(line).err.starts_with("dtsdb: grid.xml: 1 object left out; ")) << line;
  }
}

TEST(CgmesCommand, SeveralPathsAreOneSet) {
  const Workplace here;
  const std::string text = Grid();
  std::filesystem::create_directory(here / "eq");
  here.Write("eq/grid.xml", text);
  here.Write("again.xml", text);
  const CommandResult result = here.Run("topology cgmes:eq,again.xml --sheet islands --format json");
  ASSERT_EQ(result.code, 0) << result.err;
  const auto report = nlohmann::json::parse(result.out);
  ASSERT_EQ(report["islands"].size(), 1U);
  EXPECT_EQ(report["islands"][0]["sections"], 3);
  const auto merged =
      nlohmann::json::parse(here.Run("topology cgmes:eq,again.xml --merge-retained --sheet islands --format json").out);
  EXPECT_EQ(merged["islands"][0]["sections"], 2);
}

TEST(CgmesCommand, NothingIsWrittenOverProfiles) {
  const Workplace here;
  here.Write("grid.xml", Grid());
  const CommandResult result = here.Run(QStringList{
      QStringLiteral("convert"), QString::fromStdString(dtsdb::test::SourcePath(kSample)), QStringLiteral("grid.xml")});
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  EXPECT_EQ(here.Run("info grid.xml").code, 0);
}

TEST(CgmesCommand, AFaultIsOneLineWithFileAndLine) {
  const Workplace here;
  here.Write("cut.xml", Grid().substr(0, 900));
  const CommandResult result = here.Run("validate cut.xml");
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(result.err.starts_with("dtsdb: cut.xml, line ")) << result.err;
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
}

}  // namespace
}  // namespace dtsdb::tools::test
