// Realtime databases as models of all commands, and the command that looks into them.

#include <gtest/gtest.h>

#include <QByteArray>
#include <cstdlib>

#include "model/text.h"
#include "rtdb/volma_rtdb.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::kSample;
using test::Workplace;

/// The outcome of a call that must succeed.
std::string Good(const Workplace& here, const char* arguments) {
  const CommandResult result = here.Run(arguments);
  EXPECT_EQ(result.code, 0) << arguments << ": " << result.err;
  EXPECT_EQ(result.err, "") << arguments;
  return result.out;
}

/// The message of a call that must end with `code`.
std::string Bad(const Workplace& here, const char* arguments, int code) {
  const CommandResult result = here.Run(arguments);
  EXPECT_EQ(result.code, code) << arguments;
  EXPECT_EQ(result.out, "") << arguments;
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  return result.err;
}

/// Two stations in folder m and in the database x.fdb; without analog points, whose identities a database changes.
Workplace StoredModel() {
  Workplace here;
  here.CopyModel("m");
  std::filesystem::remove(here / "m/ANALOG.csv");
  Good(here, "convert m rtdb:x");
  return here;
}

/// Opens x.fdb of `here` as another program does.
void OpenStore(const Workplace& here, dbDatabase& database) { ASSERT_TRUE(database.open((here / "x").c_str())); }

TEST(RealtimeModel, CarriesTheSampleToAnObjectFile) {
  const Workplace here;
  here.CopyModel("m", kSample);
  std::filesystem::remove(here / "m/ANALOG.csv");
  Good(here, "convert m rtdb:x");
  Good(here, "convert rtdb:x x.obj");
  EXPECT_EQ(Good(here, "diff m x.obj"), "The models are the same.\n");
  EXPECT_EQ(Good(here, "diff rtdb:x m"), "The models are the same.\n");
  EXPECT_EQ(Good(here, "validate x.obj --format json"), Good(here, "validate m --format json"));
}

TEST(RealtimeModel, ThatWasNotValidatedIsNotMarkedGoodInThePlaceOfAGoodOne) {
  const Workplace here;
  here.CopyModel("m", kSample);
  std::filesystem::remove(here / "m/ANALOG.csv");
  Good(here, "validate m -o good.obj");
  Good(here, "convert good.obj rtdb:x");
  EXPECT_EQ(here.Run("diff m rtdb:x").code, 1);
  Good(here, "convert m rtdb:x");
  const std::string rows = Good(here, "rtdb show x GLOBAL --format csv");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 1) << "the header alone: " << rows;
  EXPECT_FALSE(Contains(Good(here, "diff m rtdb:x --sheet tables --format csv"), "GLOBAL"));
}

TEST(RealtimeModel, NewAnalogPointsBearTheirNameAsIdentity) {
  const Workplace here;
  here.CopyModel("m", kSample);
  Good(here, "convert m rtdb:x");
  const CommandResult diff = here.Run("diff m rtdb:x --sheet tables --format csv");
  EXPECT_EQ(diff.code, 1);
  EXPECT_TRUE(Contains(diff.out, "\r\nANALOG,")) << diff.out;
  EXPECT_EQ(std::count(diff.out.begin(), diff.out.end(), '\n'), 2) << "a header and this table: " << diff.out;
  EXPECT_TRUE(Contains(Good(here, "rtdb show x ANALOG --format csv"), "\r\n\"Longtan 132 I voltage, kV\",\"\","));
}

TEST(RealtimeModel, IsATopologysInputAndOutput) {
  const Workplace here;
  here.CopyModel("m", kSample);
  Good(here, "convert m rtdb:x");
  EXPECT_EQ(Good(here, "topology rtdb:x -o rtdb:x --format json"), Good(here, "topology m --format json"));
  EXPECT_TRUE(Contains(Good(here, "info rtdb:x"), "verdict:      good"));
  EXPECT_TRUE(Contains(Good(here, "dump rtdb:x ISLAND --format csv"), "Longtan-G1"));
}

TEST(RealtimeModel, MayBeNamedWithItsEndingOrInAFolder) {
  const Workplace here = StoredModel();
  std::filesystem::create_directory(here / "sub");
  Good(here, "convert rtdb:x.fdb rtdb:sub/y.fdb");
  EXPECT_TRUE(here.Exists("sub/y.fdb"));
  Good(here, "diff rtdb:sub/y rtdb:x");
  EXPECT_TRUE(Contains(Good(here, "info rtdb:sub/y"), "form:         realtime database"));
}

TEST(RealtimeModel, MayHaveTheNameOfAFolderOfTextTables) {
  const Workplace here;
  here.CopyModel("m");
  Good(here, "convert m rtdb:m");
  EXPECT_TRUE(here.Exists("m.fdb"));
  EXPECT_TRUE(Contains(Good(here, "rtdb ls m"), "CB"));
}

TEST(RealtimeModel, MissingOneIsReportedAndNotMade) {
  const Workplace here;
  for (const char* arguments : {"info rtdb:x", "validate rtdb:x", "convert rtdb:x y.obj", "rtdb ls x", "rtdb show x CB",
                                "rtdb check x", "rtdb check sub/x"}) {
    EXPECT_TRUE(Contains(Bad(here, arguments, 3), "x.fdb: No such file or directory")) << arguments;
    EXPECT_EQ(here.EntryCount(), 0) << arguments;
  }
}

TEST(RealtimeModel, CannotBeWrittenIntoAMissingFolder) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_EQ(Bad(here, "convert m rtdb:no/x", 3), "dtsdb: no/x.fdb: no such folder\n");
  EXPECT_EQ(Bad(here, "rtdb put no/x CO id=a", 3), "dtsdb: no/x.fdb: no such folder\n");
}

TEST(RealtimeModel, NeedsANameAndHasNoOtherForm) {
  const Workplace here;
  here.CopyModel("m");
  EXPECT_TRUE(Contains(Bad(here, "info rtdb:", 2), "needs a NAME"));
  EXPECT_TRUE(Contains(Bad(here, "convert m rtdb:", 2), "needs a NAME"));
  Bad(here, "convert m rtdb:x --to object", 2);
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(RealtimeModel, KeepsOtherProgramsColumnsAndRowsWhenItIsWrittenAgain) {
  const Workplace here = StoredModel();
  Good(here, "rtdb put x CB id=甲开关 p=12.5 flags=0");
  Good(here, "rtdb put x CO id=电网公司 raw_4=0a0B0c0D");
  Good(here, "rtdb put x CO id=旧公司");
  Good(here, "convert m rtdb:x");
  EXPECT_TRUE(Contains(Good(here, "rtdb show x CB --id 甲开关 --format json"), "\"p\": 12.5,"));
  EXPECT_TRUE(Contains(Good(here, "rtdb show x CB --id 甲开关 --format json"), "\"flags\": 1,"));
  EXPECT_TRUE(Contains(Good(here, "rtdb show x CO --id 电网公司 --format json"), "\"raw_4\": \"0a0b0c0d\""));
  EXPECT_TRUE(Contains(Good(here, "rtdb show x CO"), "旧公司"));
}

TEST(RtdbLs, ListsTheTablesThatHaveRows) {
  const Workplace here = StoredModel();
  EXPECT_TRUE(Good(here, "rtdb ls x --format csv").starts_with("table,rows,meaning\r\nBUS,2,"));
  const std::string text = Good(here, "rtdb ls rtdb:x");
  EXPECT_TRUE(Contains(text, "\nThe other 36 tables are empty.\n")) << text;
  EXPECT_FALSE(Contains(text, "ISLAND"));
}

TEST(RtdbShow, ShowsAllColumnsToProgramsAndThoseThatTellSomethingToPeople) {
  const Workplace here = StoredModel();
  EXPECT_TRUE(Good(here, "rtdb show x co --format csv").starts_with("id,raw_4,f1,"));
  EXPECT_EQ(Good(here, "rtdb show x CO"), "CO\nid\n电网公司\n");
  EXPECT_EQ(Good(here, "rtdb show x ISLAND"), "ISLAND: none\n");
}

TEST(RtdbShow, FindsRowsByIdentityAndRelationRowsByEither) {
  const Workplace here = StoredModel();
  Good(here, "topology m -o rtdb:y");
  const std::string load = Good(here, "rtdb show x LD --id 乙荷 --format csv");
  EXPECT_EQ(std::count(load.begin(), load.end(), '\n'), 2) << load;
  EXPECT_TRUE(Contains(Good(here, "rtdb show y R_KV_LD --id 乙荷"), "乙站220"));
  EXPECT_TRUE(Contains(Good(here, "rtdb show y R_KV_LD --id 乙站220"), "乙荷"));
  EXPECT_TRUE(Contains(Good(here, "rtdb show y BS --id 2"), "甲母"));
  EXPECT_EQ(Bad(here, "rtdb show x LD --id 乙河", 2),
            "dtsdb: table LD has no row '乙河'; did you mean 乙备 or 乙荷?\n");
  EXPECT_EQ(Bad(here, "rtdb show x LDD", 2), "dtsdb: there is no table 'LDD'; did you mean LD?\n");
}

TEST(RtdbPut, ChangesOnlyTheGivenColumnsOfARow) {
  const Workplace here = StoredModel();
  EXPECT_EQ(Good(here, "rtdb put x ld id=乙荷 p=130.5 status=1"), "LD 乙荷: changed.\n");
  Good(here, "convert rtdb:x changed");
  const std::string diff = here.Run("diff m changed --sheet differences --format csv").out;
  EXPECT_EQ(std::count(diff.begin(), diff.end(), '\n'), 3) << diff;
  EXPECT_TRUE(Contains(diff, "LD,乙荷,changed,p,120,130.5")) << diff;
  EXPECT_TRUE(Contains(diff, "LD,乙荷,changed,status,0,1")) << diff;
}

TEST(RtdbPut, AddsAMissingRowWithDefaultsAndReportsIt) {
  const Workplace here = StoredModel();
  EXPECT_EQ(Good(here, "rtdb put x LD id=新荷 kv=乙站220 nd=乙1"), "LD 新荷: added, there was no such row.\n");
  here.Write("m/LD.csv", here.Read("m/LD.csv") + "新荷,乙站220,乙1,,,\n");
  EXPECT_EQ(Good(here, "diff m rtdb:x"), "The models are the same.\n");
}

TEST(RtdbPut, MakesADatabaseThatIsMissing) {
  const Workplace here;
  Good(here, "rtdb put new DV id=东区");
  EXPECT_TRUE(Contains(Good(here, "rtdb ls new"), "DV"));
}

TEST(RtdbPut, FindsRelationRowsByBothIdentities) {
  const Workplace here = StoredModel();
  EXPECT_TRUE(Contains(Good(here, "rtdb put x R_CO_DV co_id=甲 dv_id=乙 next=4"), "R_CO_DV 甲 > 乙: added"));
  EXPECT_TRUE(Contains(Good(here, "rtdb put x R_CO_DV co_id=甲 dv_id=丙"), "added"));
  EXPECT_EQ(Good(here, "rtdb put x R_CO_DV next=5 dv_id=乙 co_id=甲"), "R_CO_DV 甲 > 乙: changed.\n");
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x R_CO_DV co_id=甲", 2), "dv_id=... is missing"));
}

TEST(RtdbPut, FindsNumberedRowsByTheirNumber) {
  const Workplace here = StoredModel();
  EXPECT_EQ(Good(here, "rtdb put x BS id=7 name=母线"), "BS 7: added, there was no such row.\n");
  EXPECT_EQ(Good(here, "rtdb put x BS id=7 island=-1"), "BS 7: changed.\n");
  EXPECT_TRUE(Contains(Good(here, "rtdb show x BS --id 7 --format csv"), "母线"));
}

TEST(RtdbPut, StoresTextsAsGbkWhateverTheTerminalSends) {
  const Workplace here = StoredModel();
  Good(here, "rtdb put x LD id=乙荷 kv=变电站");
  // The same from a terminal in GBK, as raw bytes.
  QByteArray line("rtdb put x LD kv=\xB1\xE4\xB5\xE7 id=\xD2\xD2\xB1\xB8");
  const std::string shell =
      "cd '" + here.Path().string() + "' && " + dtsdb::test::TestProgram() + " " + line.toStdString() + " > /dev/null";
  EXPECT_EQ(std::system(shell.c_str()), 0);

  dbDatabase database(dbDatabase::dbReadOnly);
  OpenStore(here, database);
  dbCursor<ld> cursor(&database);
  ASSERT_EQ(cursor.select("order by id"), 2);
  EXPECT_STREQ(cursor->id, "\xD2\xD2\xB1\xB8");
  EXPECT_STREQ(cursor->kv, "\xB1\xE4\xB5\xE7");
  ASSERT_NE(cursor.next(), nullptr);
  EXPECT_STREQ(cursor->id, "\xD2\xD2\xBA\xC9");
  EXPECT_STREQ(cursor->kv, "\xB1\xE4\xB5\xE7\xD5\xBE");
}

TEST(RtdbPut, TakesNothingOfAWrongCall) {
  const Workplace here = StoredModel();
  const std::string before = Good(here, "rtdb show x LD --format csv");
  EXPECT_EQ(Bad(here, "rtdb put x LD id=乙荷 p=1 statu=1", 2),
            "dtsdb: column statu: table LD has no such column; did you mean status?\n");
  EXPECT_EQ(Bad(here, "rtdb put x LD id=乙荷 p=1 q=much", 2), "dtsdb: column q: 'much' is no number\n");
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x CO id=电网公司 raw_4=0a0b0c", 2), "is not 8 hexadecimal digits"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x CO id=电网公司 raw_4=0a0b0cxy", 2), "is not 8 hexadecimal digits"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x ST id=甲站 type=300", 2), "out of range, 0 to 255"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD id=乙荷 p=", 2), "'' is no number"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD id=乙荷 p=1 kv=\xF0\x9F\x98\x80", 2), "GBK can't hold the text"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD id=乙荷 p=1 p=2", 2), "column p stands twice"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD id=乙荷 p", 2), "'p' is not of the form COLUMN=VALUE"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD p=1", 2), "id=... is missing"));
  EXPECT_TRUE(Contains(Bad(here, "rtdb put x LD id= p=1", 2), "column id: a row needs one"));
  Bad(here, "rtdb put x LD", 2);
  Bad(here, "rtdb put x LOAD id=乙荷", 2);
  EXPECT_EQ(Good(here, "rtdb show x LD --format csv"), before);
  Bad(here, "rtdb put none LD id=a pp=1", 2);
  EXPECT_FALSE(here.Exists("none.fdb"));
}

TEST(RtdbPut, DoesNotChooseAmongRowsOfOneIdentity) {
  const Workplace here = StoredModel();
  {
    dbDatabase database;
    OpenStore(here, database);
    co row;
    row.id = "twin";
    database.insert(row);
    database.insert(row);
    database.commit();
    database.close();
  }
  const std::string before = Good(here, "rtdb show x CO --format csv");
  EXPECT_EQ(Bad(here, "rtdb put x CO id=twin f1=2", 2), "dtsdb: CO twin stands 2 times in the table\n");
  EXPECT_EQ(Good(here, "rtdb show x CO --format csv"), before);
}

TEST(RtdbCheck, PrintsWhatAGoodDatabaseContains) {
  const Workplace here = StoredModel();
  EXPECT_EQ(Good(here, "rtdb check x"), "x: good: 16 rows in 10 of 46 tables.\n");
}

TEST(RtdbCheck, RefusesDamageAndSoDoesEveryReader) {
  const Workplace here = StoredModel();
  const std::string whole = here.Read("x.fdb");
  ASSERT_GT(whole.size(), 3U * 4096);
  // Behind the two heads, every page is overwritten; then the file is cut off; then it is something else.
  const std::string damaged = whole.substr(0, 2 * 4096) + std::string(whole.size() - 2 * 4096, '\xFF');
  for (const std::string& bytes : {damaged, whole.substr(0, 3 * 4096), std::string(20000, 'x')}) {
    here.Write("x.fdb", bytes);
    for (const char* arguments :
         {"rtdb check x", "rtdb ls x", "rtdb show x CB", "rtdb put x CO id=a", "info rtdb:x", "convert m rtdb:x"}) {
      EXPECT_TRUE(Contains(Bad(here, arguments, 3), "x.fdb: ")) << arguments;
      EXPECT_EQ(here.Read("x.fdb"), bytes) << arguments;
    }
  }
}

TEST(Rtdb, WrongCallsGetTheNearestWord) {
  const Workplace here;
  EXPECT_EQ(Bad(here, "rtdb shw x CB", 2), "dtsdb: there is no command 'shw'; did you mean show?\n");
  Bad(here, "rtdb", 2);
  Bad(here, "rtdb ls", 2);
  Bad(here, "rtdb show x", 2);
  EXPECT_EQ(here.EntryCount(), 0);
}

TEST(Rtdb, HelpGivesExamples) {
  const Workplace here;
  EXPECT_TRUE(Contains(Good(here, "--help"), "rtdb:NAME"));
  EXPECT_TRUE(Contains(Good(here, "rtdb --help"), "check"));
  for (const char* arguments : {"rtdb ls --help", "rtdb show --help", "rtdb put --help", "rtdb check --help"}) {
    EXPECT_TRUE(Contains(Good(here, arguments), "Example")) << arguments;
  }
}

}  // namespace
}  // namespace dtsdb::tools
