// Every kind of bad input has one line, with file, row and column, and nothing is written.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Workplace;

struct Damage {
  const char* name;     ///< of the test
  const char* file;     ///< file in the folder m
  std::string content;  ///< its bytes
  std::string message;  ///< what stands behind "dtsdb: m/"
};

class DamagedTextTable : public testing::TestWithParam<Damage> {};

TEST_P(DamagedTextTable, IsRefusedInOneLineAndNothingIsWritten) {
  const Workplace here;
  here.Write(std::string("m/") + GetParam().file, GetParam().content);
  const CommandResult result = here.Run("convert m out.obj");
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.err, "dtsdb: m/" + GetParam().message + "\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(here.EntryCount(), 1) << "only the folder m";
}

const Damage kDamages[] = {
    {"EmptyFile", "CB.csv", "", "CB.csv: the header with the names of the columns is missing"},
    {"UnknownColumn", "CB.csv", "id,staus_id\nB1,S1\n",
     "CB.csv, row 1, column staus_id: the table has no such field; did you mean status_id?"},
    {"UnknownColumnLikeNone", "CB.csv", "id,elephant\n", "CB.csv, row 1, column elephant: the table has no such field"},
    {"DoubleColumn", "CB.csv", "id,kv,id\n", "CB.csv, row 1, column id: the column stands twice in the header"},
    {"ColumnWithoutName", "CB.csv", "id,,kv\n", "CB.csv, row 1: column 2 has no name"},
    {"TooManyFields", "CB.csv", "id,kv\nB1,K1\nB2,K1,5\n",
     "CB.csv, row 3, column 3: the row has 3 fields, the header 2"},
    {"TooFewFields", "CB.csv", "id,kv,nd\nB1,K1\n", "CB.csv, row 2, column nd: the row has 2 fields, the header 3"},
    {"BadWholeNumber", "CB.csv", "id,flags\nB1,1\nB2,x1\n", "CB.csv, row 3, column flags: 'x1' is no whole number"},
    {"BadNumber", "KV.csv", "id,vbase\nK1,220kV\n", "KV.csv, row 2, column vbase: '220kV' is no number"},
    {"NumberOutOfRange", "ST.csv", "id,type\nS1,256\n", "ST.csv, row 2, column type: '256' is out of range, 0 to 255"},
    {"FloatOutOfRange", "KV.csv", "vbase,id\n1e39,K1\n",
     "KV.csv, row 2, column vbase: '1e39' is out of range for a number of 4 bytes"},
    {"TextThatGbkCantHold", "CB.csv", "id,kv\nB1,220\nB2,한글\n",
     "CB.csv, row 3, column kv: GBK can't hold the text '한글'"},
    {"BadUtf8", "CB.csv", "id\nB\xFF\n", "CB.csv, row 2, column id: the text is no valid UTF-8"},
    {"GbkInsteadOfUtf8", "CB.csv", "id\n\xBC\xD7\xD5\xBE\n", "CB.csv, row 2, column id: the text is no valid UTF-8"},
    {"UnterminatedQuote", "CB.csv", "id,kv\nB1,\"K1\nB2,K1\n",
     "CB.csv, row 2, column kv: the closing quote is missing"},
    {"QuoteInsideField", "CB.csv", "id,kv\nB1,K\"1\n",
     "CB.csv, row 2, column kv: a quote stands inside a field that isn't quoted, or something behind the closing "
     "quote"},
    {"UnterminatedQuoteInHeader", "CB.csv", "id,\"kv\n", "CB.csv, row 1, column 2: the closing quote is missing"},
    {"DuplicateIdentity", "CB.csv", "id\nB2\nB1\n\nB2\nB1\n", "CB.csv, row 5, column id: 'B2' stands already in row 2"},
    {"DuplicateNumber", "BS.csv", "id\n7\n7\n", "BS.csv, row 3, column id: '7' stands already in row 2"},
    {"DuplicateRelation", "R_KV_CB.csv", "cb_id,kv_id\nB1,K1\nB1,K1\n",
     "R_KV_CB.csv, row 3, column kv_id: 'K1 > B1' stands already in row 2"},
    {"RowNumberBehindALineEndInsideAField", "CB.csv", "id,kv,flags\n\"B\n1\",K1,1\nB2,K1,?\n",
     "CB.csv, row 4, column flags: '?' is no whole number"},
    {"ValueOfSeveralLines", "CB.csv", "id,flags\nB1,\"1\n2\"\n",
     "CB.csv, row 2, column flags: '1\\n2' is no whole number"},
    {"UnknownTable", "CBX.csv", "id\n",
     "CBX.csv: there is no table of this name; did you mean CB.csv, CB2.csv or BS.csv?"},
    {"TableInLowerCase", "global.csv", "id\n", "global.csv: there is no table of this name; did you mean GLOBAL.csv?"},
    {"TableWithSuffixInUpperCase", "ISLAND.CSV", "id\n",
     "ISLAND.CSV: there is no table of this name; did you mean ISLAND.csv?"},
};

std::string TestName(const testing::TestParamInfo<Damage>& test) { return test.param.name; }

INSTANTIATE_TEST_SUITE_P(TextTables, DamagedTextTable, testing::ValuesIn(kDamages), TestName);

/// Runs a command that must fail with code 3 and one line, and print nothing.
std::string Refusal(const Workplace& here, const char* arguments) {
  const CommandResult result = here.Run(arguments);
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.out, "");
  return result.err;
}

TEST(BadInput, MissingFileOrFolder) {
  const Workplace here;
  EXPECT_EQ(Refusal(here, "convert nowhere out.obj"), "dtsdb: nowhere: there is no such file or folder\n");
  EXPECT_EQ(here.EntryCount(), 0);
}

TEST(BadInput, FolderWithoutTextTables) {
  const Workplace here;
  here.Write("m/notes.txt", "none\n");
  EXPECT_EQ(Refusal(here, "convert m out.obj"), "dtsdb: m: holds no text tables (CO.csv, KV.csv and so on)\n");
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(BadInput, TableThatIsAFolder) {
  const Workplace here;
  std::filesystem::create_directories(here / "m/CB.csv");
  EXPECT_EQ(Refusal(here, "convert m out.obj"), "dtsdb: m/CB.csv: can't be read: file to open is a directory\n");
}

TEST(BadInput, ShortObjectFile) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("convert m whole.obj").code, 0);
  here.Write("half.obj", here.Read("whole.obj").substr(0, 1000));
  const std::string line = Refusal(here, "convert half.obj out.obj");
  EXPECT_TRUE(line.starts_with("dtsdb: half.obj: not a sound object file, table ")) << line;
  EXPECT_NE(line.find(", byte "), std::string::npos) << line;
  EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << line;
  EXPECT_FALSE(here.Exists("out.obj"));
}

TEST(BadInput, OutputIntoAMissingFolder) {
  const Workplace here;
  here.CopyModel("m");
  const std::string line = Refusal(here, "convert m missing/out.obj");
  EXPECT_TRUE(line.starts_with("dtsdb: missing/out.obj: ")) << line;
}

TEST(BadInput, AFailedConversionLeavesTheOldOutput) {
  const Workplace here;
  here.Write("m/CB.csv", "id\nB1\nB1\n");
  here.Write("out.obj", "old");
  here.Write("out/CB.csv", "old");
  Refusal(here, "convert m out.obj");
  Refusal(here, "convert m out/");
  EXPECT_EQ(here.Read("out.obj"), "old");
  EXPECT_EQ(here.Read("out/CB.csv"), "old");
}

}  // namespace
}  // namespace dtsdb::tools
