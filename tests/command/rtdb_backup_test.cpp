// dtsdb rtdb backup and restore.

#include <gtest/gtest.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class RtdbBackup : public testing::Test {
 protected:
  RtdbBackup() {
    here.CopyModel("m", test::kSample);
    EXPECT_EQ(here.Run("convert m rtdb:s").code, 0);
  }
  std::string Refused(const char* arguments, int code = 3) const {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, code) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  }

  Workplace here;
};

TEST_F(RtdbBackup, IsADatabaseLikeAnyOther) {
  for (const char* form : {"backup s b.fdb", "backup s b.fdb --compact --replace"}) {
    const CommandResult result = here.Run((std::string("rtdb ") + form).c_str());
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_TRUE(result.out.starts_with("s: backed up to b.fdb, ")) << result.out;
    EXPECT_EQ(here.Run("rtdb check b").out, "b: good: 822 rows in 15 of 46 tables.\n");
    EXPECT_EQ(here.Run("diff rtdb:s rtdb:b").code, 0);
  }
  EXPECT_EQ(Refused("rtdb backup s b.fdb", 2), "dtsdb: b.fdb exists already; --replace overwrites it\n");
  EXPECT_TRUE(Contains(Refused("rtdb backup s s.fdb --replace"), "is the store itself"));
  EXPECT_TRUE(Contains(Refused("rtdb backup none b2.fdb"), "none"));
}

TEST_F(RtdbBackup, IsRestoredRowByRow) {
  EXPECT_EQ(here.Run("rtdb backup s b.fdb").code, 0);
  EXPECT_EQ(here.Run("rtdb put s CO id=more").code, 0);
  const CommandResult result = here.Run("rtdb restore b.fdb s --keep before.fdb");
  EXPECT_EQ(result.out, "s: restored from b.fdb, 822 rows.\n") << result.err;
  EXPECT_EQ(here.Run("diff rtdb:s rtdb:b").code, 0);
  EXPECT_EQ(here.Run("rtdb check before").out, "before: good: 823 rows in 15 of 46 tables.\n");
  EXPECT_EQ(here.Run("rtdb restore b.fdb new").code, 0);
  EXPECT_EQ(here.Run("diff rtdb:new rtdb:b").code, 0);
}

TEST_F(RtdbBackup, ThatIsDamagedIsNotRestored) {
  EXPECT_EQ(here.Run("rtdb backup s b.fdb").code, 0);
  std::string bytes = here.Read("b.fdb");
  const std::size_t row = bytes.rfind("Dongshan");
  ASSERT_NE(row, std::string::npos);
  bytes[bytes.size() / 2 / 4096 * 4096 + 12] = '\x7F';
  here.Write("b.fdb", bytes);
  EXPECT_TRUE(Contains(Refused("rtdb restore b.fdb s"), "b.fdb: the store is damaged"));
  EXPECT_TRUE(Contains(Refused("rtdb restore none.fdb s"), "none.fdb: No such file"));
  EXPECT_TRUE(Contains(Refused("rtdb restore m s"), "m: is no file"));
  EXPECT_TRUE(Contains(here.Run("rtdb check s").out, "s: good: 822 rows"));
}

}  // namespace
}  // namespace dtsdb::tools
