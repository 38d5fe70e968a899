// The encoding of identities as a user chooses it.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"
#include "tests/support/id_encoding.h"

namespace dtsdb::tools::test {
namespace {

using dtsdb::test::EncodingVariable;

constexpr const char* kBreakers = "id,kv,nd,znd\r\nŁódź 北京站,V,N1,N2\r\n";

/// A folder with a model whose names only UTF-8 holds.
void WriteModel(const Workplace& here) { here.Write("m/CB.csv", kBreakers); }

bool ShowsTheName(const CommandResult& result) {
  return result.code == 0 && result.err.empty() && Contains(result.out, "Łódź 北京站");
}

TEST(EncodingOption, StandsBeforeOrBehindTheCommand) {
  const Workplace here;
  WriteModel(here);
  ASSERT_EQ(here.Run("--encoding utf-8 convert m m.obj").err, "");
  for (const char* const line : {"--encoding utf-8 dump m.obj CB", "dump --encoding utf-8 m.obj CB",
                                 "dump m.obj CB --encoding=utf-8", "--encoding=UTF-8 dump m.obj CB --format csv"}) {
    EXPECT_TRUE(ShowsTheName(here.Run(line))) << line;
  }
}

TEST(EncodingOption, HasTheEnvironmentBehindIt) {
  const Workplace here;
  WriteModel(here);
  const EncodingVariable variable("utf-8");
  ASSERT_EQ(here.Run("convert m m.obj").err, "");
  EXPECT_TRUE(ShowsTheName(here.Run("dump m.obj CB")));
  const CommandResult gbk = here.Run("--encoding gbk convert m again.obj");
  EXPECT_EQ(gbk.code, 3);
  EXPECT_TRUE(Contains(gbk.err, "GBK can't hold the text 'Łódź 北京站'")) << gbk.err;
}

TEST(EncodingOption, WithAnotherValueIsWrongUsage) {
  const Workplace here;
  WriteModel(here);
  for (const char* const line : {"--encoding latin1 info m", "info m --encoding latin1"}) {
    const CommandResult result = here.Run(line);
    EXPECT_EQ(result.code, 2) << line;
    EXPECT_TRUE(Contains(result.err, "'latin1' is no encoding of identities; it is gbk or utf-8")) << result.err;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  }
  const EncodingVariable variable("latin1");
  const CommandResult result = here.Run("info m");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "dtsdb: DTSDB_ENCODING is 'latin1', no encoding of identities; it is gbk or utf-8\n");
  EXPECT_EQ(here.Run("info m --encoding utf-8").code, 0) << "the option counts before the variable";
  EXPECT_EQ(here.Run("info --help").code, 0);
}

TEST(EncodingOption, LeavesTheFirstWordsTheirMeaning) {
  const Workplace here;
  const CommandResult unknown = here.Run("--encoding utf-8 validat m");
  EXPECT_EQ(unknown.code, 2);
  EXPECT_TRUE(Contains(unknown.err, "there is no command 'validat'; did you mean")) << unknown.err;
  EXPECT_EQ(here.Run("--encoding").code, 2);
  EXPECT_EQ(here.Run("--encoding utf-8").code, 2);
  EXPECT_TRUE(Contains(here.Run("--help").out, "--encoding gbk|utf-8"));
}

TEST(EncodingOption, IsThatOfTheLog) {
  const Workplace here;
  here.Write("m/ST.csv", "id,dv\r\nŁódź,无\r\n");
  EXPECT_EQ(here.Run("--encoding utf-8 validate m --log nmd.log").code, 1);
  EXPECT_TRUE(Contains(here.Read("nmd.log"), "--NMD 错误:ST Łódźdv字段在分区表中没有相应记录.\n"));
}

TEST(EncodingHintOfTheCommand, IsOneLineThatNamesTheModel) {
  const Workplace here;
  WriteModel(here);
  ASSERT_EQ(here.Run("--encoding utf-8 convert m m.obj").code, 0);
  for (const char* const command : {"info", "validate", "topology", "dump", "flow"}) {
    const CommandResult result = here.Run((std::string(command) + " m.obj").c_str());
    EXPECT_TRUE(
        result.err.starts_with("dtsdb: m.obj: its identities are no valid GBK but valid UTF-8; --encoding utf-8 "
                               "reads them as such\n"))
        << command << ": " << result.err;
  }
  EXPECT_EQ(here.Run("info m.obj --encoding utf-8").err, "");
}

TEST(EncodingOfTheDatabase, IsThatOfWhoReadsAndWrites) {
  const Workplace here;
  WriteModel(here);
  ASSERT_EQ(here.Run("--encoding utf-8 convert m rtdb:grid").err, "");
  EXPECT_EQ(here.Run("--encoding utf-8 rtdb put grid LD id=Łódź kv=V").code, 0);
  EXPECT_TRUE(ShowsTheName(here.Run("rtdb show grid CB --encoding utf-8")));
  EXPECT_TRUE(Contains(here.Run("--encoding utf-8 dump rtdb:grid LD --id Łódź").out, "Łódź"));
}

}  // namespace
}  // namespace dtsdb::tools::test
