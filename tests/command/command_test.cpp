// The command as a program: exit codes, what goes to which stream, what is left behind.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

/// The message of a call that is wrong usage.
std::string UsageError(const char* arguments) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult result = here.Run(arguments);
  EXPECT_EQ(result.code, 2) << arguments;
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  EXPECT_EQ(here.EntryCount(), 1) << "nothing may be written";
  return result.err;
}

TEST(Command, WrongUsageGivesTwoAndOneLine) {
  UsageError("fly m");
  UsageError("validate");
  UsageError("validate m --format xml");
  UsageError("convert m");
  UsageError("convert m out --to paper");
  UsageError("generate out --stations many");
  UsageError("generate out --stations -1");
  UsageError("diff m");
}

// So a script whose variable is empty learns of it.
TEST(Command, AnEmptyOutputPathIsWrongUsage) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("s.txt", "remove CP 乙容\n");
  for (const char* call : {"validate m -o", "validate m --output", "topology m -o", "switch m open CB 甲开关 -o",
                           "edit m --script s.txt -o", "edit m --script s.txt --dry-run -o", "convert m",
                           "convert --to object m", "generate"}) {
    const CommandResult result = here.Run(QString::fromUtf8(call).split(u' ') + QStringList{QString()});
    EXPECT_EQ(result.code, 2) << call;
    EXPECT_EQ(result.out, "") << call;
    EXPECT_TRUE(Contains(result.err, "the path is empty; name an output")) << result.err;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  }
  EXPECT_EQ(here.EntryCount(), 2) << "nothing may be written";
}

TEST(Command, UnknownNamesGetTheNearestOnes) {
  EXPECT_EQ(UsageError("dump m CBB"), "dtsdb: there is no table 'CBB'; did you mean CB or CB2?\n");
  EXPECT_EQ(UsageError("info --fields LNN"), "dtsdb: there is no table 'LNN'; did you mean LN or LN2?\n");
  EXPECT_EQ(UsageError("dump m CB --id 甲开管"), "dtsdb: table CB has no record '甲开管'; did you mean 甲开关?\n");
  EXPECT_EQ(UsageError("dump m --id 乙战220"), "dtsdb: m has no record '乙战220'; did you mean 乙站220 or 甲站220?\n");
  EXPECT_EQ(UsageError("topology m --format csv --sheet section"),
            "dtsdb: there is no sheet 'section' in this result; it has islands, sections, contents, dead, findings\n");
}

TEST(Command, AnUnknownCommandGetsTheNearestOne) {
  EXPECT_EQ(UsageError("validat m"), "dtsdb: there is no command 'validat'; did you mean validate?\n");
  EXPECT_EQ(UsageError("fly m"), "dtsdb: there is no command 'fly'; 'dtsdb --help' describes how to call it\n");
}

TEST(Command, CsvOfAWholeModelIsRefused) {
  EXPECT_EQ(UsageError("dump m --format csv"), "dtsdb: CSV holds one table: name the TABLE\n");
}

TEST(Command, InfoTakesAModelOrATable) {
  UsageError("info");
  UsageError("info m --fields CB");
}

TEST(Command, HelpGoesToTheStandardOutputAndGivesZero) {
  const Workplace here;
  for (const char* arguments : {"--help", "validate --help", "topology --help", "edit --help", "convert --help",
                                "generate --help", "info --help", "dump --help", "diff --help"}) {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, 0) << arguments;
    EXPECT_EQ(result.err, "") << arguments;
    EXPECT_TRUE(Contains(result.out, "--help")) << arguments;
  }
  EXPECT_TRUE(Contains(here.Run("diff --help").out, "Examples:"));
}

TEST(Command, ByItselfPrintsItsHelp) {
  const Workplace here;
  const CommandResult alone = here.Run("");
  EXPECT_EQ(alone.code, 0);
  EXPECT_EQ(alone.err, "");
  EXPECT_EQ(alone.out, here.Run("--help").out);
}

TEST(Command, EveryHelpDescribesTheExitCodes) {
  const Workplace here;
  for (const char* command : {"validate", "topology", "switch", "screen", "run", "flow", "edit", "convert", "generate",
                              "info", "dump", "diff", "rtdb ls", "rtdb show", "rtdb put", "rtdb check", "rtdb prune"}) {
    const std::string help = here.Run((std::string(command) + " --help").c_str()).out;
    EXPECT_TRUE(Contains(help, "Exit codes: 0 ")) << command;
    EXPECT_TRUE(Contains(help, ", 2 wrong usage, 3 ")) << command;
  }
}

TEST(Command, VersionIsPrinted) {
  const CommandResult result = Workplace().Run("--version");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(result.out.starts_with("dtsdb ")) << result.out;
}

TEST(Validate, LeavesALogWhereItIsAskedForOnly) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("nmd.log", "of another program");
  EXPECT_EQ(here.Run("validate m").code, 0);
  EXPECT_EQ(here.Read("nmd.log"), "of another program");
  EXPECT_EQ(here.EntryCount(), 2);
  EXPECT_EQ(here.Run("validate m --log check.log").code, 0);
  const std::string log = here.Read("check.log");
  EXPECT_TRUE(Contains(log, "--NMD \xCC\xE1\xCA\xBE:")) << "a notice, in GBK";  // 提示
  EXPECT_TRUE(log.ends_with("\n"));
  EXPECT_EQ(here.EntryCount(), 3);
}

// Every command that validates on its way can be asked for the log of that.
TEST(Validate, LogOfAValidationOnTheWayIsKeptWhenAskedFor) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("s.txt", "remove CP 乙容\n");
  for (const char* call : {"topology m --log log", "switch m open CB 甲开关 --log log", "flow m --log log",
                           "edit m --script s.txt --dry-run --log log"}) {
    here.Run(call);
    EXPECT_TRUE(Contains(here.Read("log"), "--NMD ")) << call;
    std::filesystem::remove(here / "log");
    EXPECT_EQ(here.EntryCount(), 2) << call;
  }
}

TEST(Validate, RefusedModelLeavesTheLogOfBefore) {
  const Workplace here;
  here.Write("log", "of before");
  EXPECT_EQ(here.Run("validate missing --log log").code, 3);
  EXPECT_EQ(here.Read("log"), "of before");
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(Validate, LogThatCannotBeWrittenEndsTheCommand) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult nowhere = here.Run("validate m -o good.obj --log no/where");
  EXPECT_EQ(nowhere.code, 3);
  EXPECT_EQ(nowhere.out, "");
  EXPECT_EQ(nowhere.err, "dtsdb: no/where: can't be written: No such file or directory\n");
  EXPECT_FALSE(here.Exists("good.obj"));
  const CommandResult full = here.Run("validate m --log /dev/full");
  EXPECT_EQ(full.code, 3);
  EXPECT_TRUE(Contains(full.err, "dtsdb: /dev/full: can't be written: No space left on device\n")) << full.err;
  EXPECT_EQ(
      here.Run(QStringList{QStringLiteral("validate"), QStringLiteral("m"), QStringLiteral("--log"), QString()}).code,
      2);
}

TEST(Validate, WritesAGoodModel) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_EQ(here.Run("validate m -o good.obj").code, 0);
  EXPECT_TRUE(Contains(here.Run("info good.obj").out, "verdict:      good"));
}

TEST(Validate, DoesNotWriteAModelWithFaults) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("m/DV.csv", "id,co\n东区,\n");
  const CommandResult result = here.Run("validate m -o bad.obj");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Contains(result.out, "the model is not good: "));
  EXPECT_EQ(result.err, "dtsdb: bad.obj isn't written, since the model is not good\n");
  EXPECT_FALSE(here.Exists("bad.obj"));
}

/// A model with an error behind 40 loads without measurements.
Workplace WithManyWarnings() {
  Workplace here;
  here.CopyModel("m");
  std::string loads = here.Read("m/LD.csv");
  for (int i = 0; i < 40; ++i) loads += "L" + std::to_string(i) + ",乙站220,乙1,1,0,0\n";
  here.Write("m/LD.csv", loads + "Z,乙站220,,1,0,0\n");
  return here;
}

TEST(Validate, ListsErrorsFirstAndCountsWarningsByKind) {
  const Workplace here = WithManyWarnings();
  const std::string out = here.Run("validate m").out;
  EXPECT_TRUE(out.starts_with("Errors\nseverity  code           id  field")) << out;
  EXPECT_TRUE(Contains(out, "error     LD_NODE_EMPTY  Z   nd ")) << out;
  EXPECT_TRUE(Contains(out, "   42  LD_P_UNKNOWN             L0, L1, L10, ... ")) << out;
  EXPECT_FALSE(Contains(out, "L39")) << out;
  EXPECT_LT(std::count(out.begin(), out.end(), '\n'), 25);
}

TEST(Validate, ListsEachWarningWithAllAndForPrograms) {
  const Workplace here = WithManyWarnings();
  const std::string all = here.Run("validate m --all").out;
  EXPECT_LT(all.find("LD_NODE_EMPTY"), all.find("LD_P_UNKNOWN")) << all;
  EXPECT_TRUE(Contains(all, "warning   LD_P_UNKNOWN             L39")) << all;
  EXPECT_TRUE(Contains(here.Run("validate m --format csv").out, "warning,LD_P_UNKNOWN,LD,L39,ana_p,"));
  EXPECT_TRUE(Contains(here.Run("validate m --format json").out, "\"id\": \"L39\""));
}

TEST(Validate, SpeaksTheLanguageOfTheLocale) {
  const Workplace here = WithManyWarnings();
  const auto run = [&here](const char* locale, const QStringList& more = {}) {
    return here.Run(QStringList{QStringLiteral("validate"), QStringLiteral("m")} + more, locale).out;
  };
  for (const char* locale : {"C", "C.UTF-8", "en_GB.UTF-8", "de_DE"}) {
    EXPECT_TRUE(Contains(run(locale), "it names no node")) << locale;
  }
  for (const char* locale : {"zh_CN.UTF-8", "zh_TW", "zh"}) {
    EXPECT_TRUE(Contains(run(locale), "关联的结点名称为空.")) << locale;
  }
  EXPECT_TRUE(Contains(run("zh_CN.UTF-8", {QStringLiteral("--lang"), QStringLiteral("en")}), "it names no node"));
  EXPECT_TRUE(Contains(run("C", {QStringLiteral("--lang"), QStringLiteral("zh")}), "关联的结点名称为空."));
}

TEST(Topology, ValidatesOnTheWayWithoutLeavingALog) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_EQ(here.Run("topology m").code, 0);
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(Topology, OfAModelWithFaultsNamesTheCommandThatListsThem) {
  const Workplace here;
  here.CopyModel("m");
  here.Write("m/DV.csv", "id,co\n东区,\n");
  const CommandResult result = here.Run("topology m -o out.obj");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  EXPECT_TRUE(Contains(result.err, "'dtsdb validate m' shows them")) << result.err;
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(Topology, GivesTheSameForTheValidatedModelAndItsTextTables) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("validate m -o good.obj").code, 0);
  ASSERT_EQ(here.Run("convert good.obj good").code, 0);
  const std::string expected = here.Run("topology m --format json").out;
  EXPECT_EQ(here.Run("topology good.obj --format json").out, expected);
  EXPECT_EQ(here.Run("topology good --format json").out, expected);
}

TEST(Topology, WritesTheModelWithItsTopology) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("topology m -o live.obj").code, 0);
  const CommandResult islands = here.Run("dump live.obj ISLAND --format csv");
  EXPECT_TRUE(Contains(islands.out, "0,2,0,0,0,0,0,甲机,")) << islands.out;
}

TEST(Topology, WithoutAUnitThereIsNoLiveIslandAndNoStrayText) {
  const Workplace here;
  here.CopyModel("m");
  std::filesystem::remove(here / "m/UN.csv");
  const CommandResult result = here.Run("topology m --format json");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(result.out.starts_with("{\n  \"live_islands\": 0,\n")) << result.out;
  EXPECT_EQ(result.err, "");
}

TEST(Convert, ThereAndBackGivesTheSameObjectFile) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("convert m a.obj").code, 0);
  ASSERT_EQ(here.Run("convert a.obj tables/").code, 0);
  ASSERT_EQ(here.Run("convert tables b.obj").code, 0);
  EXPECT_EQ(here.Read("a.obj"), here.Read("b.obj"));
}

TEST(Convert, OptionToOverridesTheName) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("convert m file --to object").code, 0);
  EXPECT_TRUE(std::filesystem::is_regular_file(here / "file"));
  ASSERT_EQ(here.Run("convert m folder.obj --to text").code, 0);
  EXPECT_TRUE(here.Exists("folder.obj/CB.csv"));
}

TEST(Generate, SameSeedSameModelOtherSeedOtherModel) {
  const Workplace here;
  ASSERT_EQ(here.Run("generate --stations 5 --seed 3 a.obj").code, 0);
  ASSERT_EQ(here.Run("generate --stations 5 --seed 3 b.obj").code, 0);
  ASSERT_EQ(here.Run("generate --stations 5 --seed 4 c.obj").code, 0);
  EXPECT_EQ(here.Read("a.obj"), here.Read("b.obj"));
  EXPECT_EQ(here.Run("diff a.obj c.obj").code, 1);
  EXPECT_EQ(here.EntryCount(), 3) << "no log is left";
}

TEST(Generate, TakesItsOutputAsTheOtherCommandsDo) {
  const Workplace here;
  ASSERT_EQ(here.Run("generate --stations 5 a.obj").code, 0);
  ASSERT_EQ(here.Run("generate --stations 5 -o b.obj").code, 0);
  EXPECT_EQ(here.Read("a.obj"), here.Read("b.obj"));
  EXPECT_EQ(UsageError("generate --stations 5"), "dtsdb: name the place of the model with -o OUT\n");
  UsageError("generate c.obj -o d.obj");
}

TEST(Generate, OrderOfItsOptionsMakesNoDifference) {
  const Workplace here;
  ASSERT_EQ(here.Run("generate --stations 9 --seed 2 --arrangements ring=1,double=2 --dc-lines 50 a.obj").code, 0);
  ASSERT_EQ(here.Run("generate --dc-lines 50 --arrangements double=2,ring=1 -o b.obj --seed 2 --stations 9").code, 0);
  ASSERT_EQ(here.Run("generate --stations 9 --seed 2 --dc-lines 50 c.obj").code, 0);
  EXPECT_EQ(here.Read("a.obj"), here.Read("b.obj"));
  EXPECT_NE(here.Read("a.obj"), here.Read("c.obj"));
}

TEST(Generate, NamesWhatIsWrongWithShares) {
  EXPECT_EQ(UsageError("generate out --arrangements star=3"),
            "dtsdb: --arrangements: there is no arrangement 'star'; there are single, sectioned, double, "
            "breaker-and-a-half, ring\n");
  EXPECT_EQ(UsageError("generate out --arrangements double=x"),
            "dtsdb: --arrangements: the share of double is a number from 0 to 1000000, as in double=30\n");
  UsageError("generate out --arrangements double");
  UsageError("generate out --arrangements double=1,");
  UsageError("generate out --arrangements double=-1");
  UsageError("generate out --three-windings 101");
  UsageError("generate out --dc-lines -1");
  UsageError("generate out --zero-impedance many");
}

TEST(Generate, MakesAModelThatIsGood) {
  const Workplace here;
  ASSERT_EQ(here.Run("generate --stations 5 m").code, 0);
  EXPECT_EQ(here.Run("validate m").code, 0);
  EXPECT_EQ(here.Run("topology m").code, 0);
  EXPECT_EQ(here.Run("flow m").code, 0) << "every set balances";
}

TEST(Diff, OfAModelWithItselfGivesZero) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("convert m a.obj").code, 0);
  const CommandResult result = here.Run("diff m a.obj");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "The models are the same.\n");
}

TEST(Terminal, TextComesInItsEncodingAndProgramsGetUtf8) {
  const Workplace here;
  here.CopyModel("m");
  const QStringList asText = {QStringLiteral("dump"), QStringLiteral("m"), QStringLiteral("CO")};
  EXPECT_TRUE(Contains(here.Run(asText, "C.UTF-8").out, "电网公司"));
  EXPECT_TRUE(Contains(here.Run(asText, "C").out, "电网公司")) << "a locale of ASCII doesn't describe the terminal";
  const QStringList asJson = asText + QStringList{QStringLiteral("--format"), QStringLiteral("json")};
  EXPECT_TRUE(Contains(here.Run(asJson, "C").out, "电网公司"));
}

TEST(Terminal, NoColourReachesAPipe) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_FALSE(Contains(here.Run("validate m").out, "\033"));
}

TEST(Terminal, AFullStandardOutputIsAFileThatCantBeWritten) {
  const Workplace here;
  here.CopyModel("m");
  QProcess process;
  process.setWorkingDirectory(QString::fromStdString(here.Path().string()));
  process.setStandardOutputFile(QStringLiteral("/dev/full"));
  process.start(QString::fromUtf8(dtsdb::test::TestProgram()), {QStringLiteral("info"), QStringLiteral("m")});
  ASSERT_TRUE(process.waitForFinished(60000));
  EXPECT_EQ(process.exitCode(), 3);
  EXPECT_EQ(process.readAllStandardError().toStdString(), "dtsdb: standard output: No space left on device\n");
}

}  // namespace
}  // namespace dtsdb::tools
