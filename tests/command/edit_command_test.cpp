// The command that edits a model by a script: what is written, what isn't, and what is reported.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

/// A folder with the model m and the script s.txt.
Workplace WithScript(const std::string& script) {
  Workplace here;
  here.CopyModel("m");
  here.Write("s.txt", script);
  return here;
}

/// The outcome of a script that must be applied, with the model in e.obj.
CommandResult Applied(const Workplace& here) {
  const CommandResult result = here.Run("edit m --script s.txt -o e.obj");
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(here.Exists("e.obj"));
  return result;
}

/// The outcome of a script that can't be applied as a whole.
CommandResult Refused(const Workplace& here) {
  const CommandResult result = here.Run("edit m --script s.txt -o e.obj");
  EXPECT_EQ(result.code, 1) << result.out << result.err;
  EXPECT_EQ(result.err, "dtsdb: e.obj isn't written\n");
  EXPECT_FALSE(here.Exists("e.obj"));
  return result;
}

TEST(EditCommand, WritesAValidatedModelWithTheEdits) {
  const Workplace here = WithScript(
      "add LD id=乙二荷 kv=乙站220 nd=乙4 p=12.5\n"
      "add CB id=乙二开关 kv=乙站220 nd=乙1 znd=乙4 flags=1\n"
      "remove CP 乙容\n");
  EXPECT_EQ(Applied(here).out,
            "Records\n"
            "table  before  after\n"
            "LD          2      3\n"
            "CP          1      0\n"
            "CB          3      4\n"
            "\n"
            "s.txt: 3 lines applied; the edited model is good.\n");
  EXPECT_TRUE(Contains(here.Run("info e.obj").out, "verdict:      good"));
  EXPECT_TRUE(Contains(here.Run("dump e.obj LD --format csv").out, "乙二荷"));
  EXPECT_TRUE(Contains(here.Run("dump e.obj ND --format csv").out, "乙4"));
  EXPECT_EQ(here.Run("topology e.obj").code, 0);
}

TEST(EditCommand, GivesTheModelThatTheSameTablesGive) {
  const Workplace here = WithScript("add LD id=乙二荷 kv=乙站220 nd=乙1 p=12.5\n");
  Applied(here);
  here.Write("m/LD.csv", here.Read("m/LD.csv") + "乙二荷,乙站220,乙1,12.5,0,0\n");
  EXPECT_EQ(here.Run("validate m -o v.obj").code, 0);
  std::string diff = here.Run("diff e.obj v.obj --format csv").out;
  // The one thing that may come between: the second in which a model was validated.
  const std::size_t time = diff.find("GLOBAL,0,changed,check_time,");
  if (time != std::string::npos) diff.erase(time, diff.find('\n', time) + 1 - time);
  EXPECT_EQ(diff,
            "table,identity,change,field,a,b\r\n"
            "LD,乙二荷,changed,ibs,-1,0\r\n"
            "LD,乙二荷,changed,iana_i,-1,0\r\n")
      << "numbers that nothing has worked out are none in a new record, 0 by default in a table";
}

TEST(EditCommand, ChangesARecordAndWhatFollowsFromItsNames) {
  const Workplace here = WithScript("change LD 乙荷 p=80 nd=乙1\n");
  EXPECT_EQ(Applied(here).out, "\ns.txt: 1 line applied; the edited model is good.\n");
  const std::string tables = here.Run("convert e.obj tables").err;
  EXPECT_EQ(tables, "");
  EXPECT_TRUE(Contains(here.Read("tables/LD.csv"), "乙荷,乙站220,乙1"));
  EXPECT_TRUE(Contains(here.Run("dump e.obj LD --id 乙荷").out, "80"));
}

TEST(EditCommand, RefusesToChangeWhatIsNotThere) {
  const Workplace here = WithScript("change LD 乙 p=80\n");
  EXPECT_TRUE(Contains(Refused(here).out, "1  change  LD     乙"));
}

TEST(EditCommand, AChangeThatLeavesAFaultIsNotWritten) {
  const Workplace here = WithScript("change LD 乙荷 kv=丙站220\n");
  EXPECT_TRUE(Contains(Refused(here).out, "LD_"));
}

TEST(EditCommand, LinesBuildOnEachOther) {
  const Workplace here = WithScript(
      "add CO id=新公司\n"
      "add DV id=南区 co=新公司\n"
      "add ST id=丙站 dv=南区 type=8\n"
      "add KV id=丙站220 st=丙站 vbase=220 vmax=242 vmin=198\n"
      "add KV id=丙站110 st=丙站 vbase=110 vmax=121 vmin=99\n"
      "add BUS id=丙母 kv=丙站220 nd=丙1\n"
      "add UN id=丙机 kv=丙站220 nd=丙1 pmax=100\n"
      "add XF id=丙变 st=丙站 kv=丙站220 zkv=丙站110 nd=丙1 znd=丙2 type=1\n"
      "add CP id=丙容 kv=丙站110 nd=丙2\n"
      "add CB id=丙开关 kv=丙站220 nd=丙1 znd=丙3 flags=4\n"
      "add ZBR id=丙零 cb=丙开关\n"
      "add LN id=乙丙线 dv=南区 st=乙站 zst=丙站 kv=乙站220 zkv=丙站220 nd=乙1 znd=丙3\n"
      "add DLN id=甲丙线 dv=东区 st=甲站 zst=丙站 kv=甲站220 zkv=丙站110 nd=甲1 znd=丙2\n");
  Applied(here);
  EXPECT_TRUE(Contains(here.Run("topology e.obj").out, "Live islands: 1."));
}

// A line that doesn't sort last is taken for another one, and a removed one leaves its ends: a validation helps.
TEST(EditCommand, AddsALineThatDoesntSortLastOrWasThereBefore) {
  const std::string rest = " dv=东区 st=甲站 zst=乙站 kv=甲站220 zkv=乙站220 nd=甲1 znd=乙1\n";
  const Workplace here = WithScript("add LN id=A" + rest + "remove LN 甲乙线\nadd LN id=甲乙线" + rest);
  Applied(here);
  const std::string lines = here.Run("dump e.obj LN --format csv").out;
  EXPECT_TRUE(Contains(lines, "\r\nA,")) << lines;
  EXPECT_TRUE(Contains(lines, "甲乙线,")) << lines;
  const std::string ends = here.Run("dump e.obj LN2 --format csv").out;
  for (const char* end : {"Ai", "Az", "甲乙线i", "甲乙线z"}) EXPECT_TRUE(Contains(ends, end)) << ends;
}

TEST(EditCommand, RemovesAStationAfterItsLines) {
  const Workplace here = WithScript("remove LN 甲乙线\nremove ST 乙站\n");
  EXPECT_TRUE(Contains(Applied(here).out, "ST          2      1\n"));
  EXPECT_FALSE(Contains(here.Run("dump e.obj --format json").out, "乙开关"));
}

TEST(EditCommand, ReportsWhatTheEditedModelLacks) {
  const Workplace here = WithScript("remove ST 乙站\n");
  const CommandResult result = Refused(here);
  EXPECT_TRUE(Contains(result.out, "error     LN_TO_NODE_LEVEL_UNKNOWN  甲乙线  zkv")) << result.out;
  EXPECT_TRUE(Contains(result.out, "s.txt: 1 line applied; the edited model is not good: 1 error.\n")) << result.out;
}

TEST(EditCommand, ReportsAllLinesThatAreRefusedAndWritesNothing) {
  const Workplace here = WithScript(
      "add LD id=乙荷 kv=乙站220 nd=乙1\n"
      "add LD id=新荷 kv=乙站220 nd=乙1\n"
      "add LD id=二荷 kv=丙站220 nd=乙1\n"
      "remove LD 乙苛\n");
  const CommandResult result = Refused(here);
  EXPECT_TRUE(Contains(result.out, "   1  add     LD     乙荷  the table LD has a record with this id already"))
      << result.out;
  EXPECT_TRUE(Contains(result.out, "   3  add     LD     二荷  its voltage level isn't in the table KV")) << result.out;
  EXPECT_TRUE(Contains(result.out,
                       "   4  remove  LD     乙苛  the table LD has no record with this id; did you mean "
                       "乙备 or 乙荷?"))
      << result.out;
  EXPECT_TRUE(Contains(result.out, "s.txt: 1 line applied, 3 refused.\n"));
}

TEST(EditCommand, DryRunWritesNothing) {
  const Workplace here = WithScript("remove CP 乙容\n");
  const std::string before = here.Read("m/CP.csv");
  for (const char* arguments : {"edit m --script s.txt --dry-run", "edit m --script s.txt --dry-run -o e.obj"}) {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, 0) << arguments;
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(Contains(result.out, "1 line applied; the edited model is good.")) << result.out;
  }
  EXPECT_EQ(here.EntryCount(), 2) << "the model and the script, no log";
  EXPECT_EQ(here.Read("m/CP.csv"), before);
  here.Write("s.txt", "remove CP 丙容\n");
  const CommandResult refused = here.Run("edit m --script s.txt --dry-run");
  EXPECT_EQ(refused.code, 1);
  EXPECT_EQ(refused.err, "");
}

TEST(EditCommand, WritesOverItsOwnModel) {
  const Workplace here = WithScript("remove CP 乙容\n");
  EXPECT_EQ(here.Run("edit m --script s.txt -o m").code, 0);
  EXPECT_FALSE(here.Exists("m/CP.csv"));
  EXPECT_EQ(here.Run("validate m").code, 0);
  EXPECT_EQ(here.Run("edit m --script s.txt -o m").code, 1) << "it is gone";
}

TEST(EditCommand, AModelWithFaultsIsNotEdited) {
  const Workplace here = WithScript("remove CP 乙容\n");
  here.Write("m/CB.csv", "id,kv,nd,znd,flags\n坏开关,甲站220,,甲9,5\n");
  const CommandResult result = here.Run("edit m --script s.txt -o e.obj");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(IsOneLine(result.err) && Contains(result.err, "'dtsdb validate m' shows them")) << result.err;
  EXPECT_FALSE(here.Exists("e.obj"));
}

TEST(EditCommand, WrongScriptsAndUsageEndInOneLine) {
  const Workplace here = WithScript("remove CP 乙容\nadd LD id=x p=y\n");
  const auto ends = [&here](const char* arguments, int code) {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, code) << arguments;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  };
  EXPECT_EQ(ends("edit m --script s.txt -o e.obj", 3), "dtsdb: s.txt, line 2: field p: 'y' is no number\n");
  EXPECT_EQ(ends("edit m --script s.txt", 2),
            "dtsdb: name the place of the edited model with -o OUT, or only try it with --dry-run\n");
  EXPECT_TRUE(Contains(ends("edit m --script none.txt --dry-run", 3), "none.txt"));
  ends("edit m -o e.obj", 2);
  ends("edit --script s.txt -o e.obj", 2);
  here.Write("s.txt", "");
  EXPECT_TRUE(Contains(ends("edit none.obj --script s.txt --dry-run", 3), "none.obj"));
  EXPECT_FALSE(here.Exists("e.obj"));
}

TEST(EditCommand, HelpDescribesTheFormOfAScript) {
  const CommandResult result = Workplace().Run("edit --help");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(Contains(result.out, "add TABLE id=IDENTITY FIELD=VALUE"));
}

}  // namespace
}  // namespace dtsdb::tools
