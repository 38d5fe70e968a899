// What a reader takes of a file that has no end or no measure: one line, and soon.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class ReaderLimits : public testing::Test {
 protected:
  ReaderLimits() { here.CopyModel("m"); }
  std::string Refused(const std::string& arguments) const {
    const CommandResult result = here.Run(arguments.c_str());
    EXPECT_NE(result.code, 0) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << arguments << ": " << result.err.substr(0, 300);
    EXPECT_LT(result.err.size(), 500U) << arguments;
    return result.err;
  }

  Workplace here;
};

TEST_F(ReaderLimits, AScriptWithoutAnEndIsRefused) {
  for (const char* command :
       {"switch m --script /dev/zero", "edit m --dry-run --script /dev/zero", "screen m --pairs @/dev/zero"}) {
    EXPECT_EQ(Refused(command), "dtsdb: /dev/zero: has more than 64 MiB\n") << command;
  }
}

TEST_F(ReaderLimits, AScriptOfOneEndlessLineEndsInOneLine) {
  here.Write("s", std::string(10'000'000, 'x'));
  Refused("switch m --script s");
  here.Write("s", "open CB '" + std::string(10'000'000, 'x'));
  Refused("switch m --script s");
  here.Write("s", "open CB " + std::string(3'000'000, '"'));
  Refused("switch m --script s");
}

TEST_F(ReaderLimits, TextTablesTakeLongLinesAndRefuseTooManyColumns) {
  // Under the sanitizers each byte takes microseconds.
#ifdef DTSDB_FEWER_CASES
  constexpr std::size_t kLong = 500'000;
#else
  constexpr std::size_t kLong = 10'000'000;
#endif
  here.Write("n/CO.csv", "id\r\n\"" + std::string(2 * kLong, 'x') + "\"\r\n");
  EXPECT_EQ(here.Run("convert n n.obj").code, 0);
  here.Write("n/CO.csv", "id" + std::string(2'000'000, ',') + "\r\n");
  EXPECT_TRUE(Contains(Refused("convert n n.obj"), "row 1: "));
  here.Write("n/CO.csv", "id\r\na" + std::string(2'000'000, ',') + "\r\n");
  EXPECT_TRUE(Contains(Refused("convert n n.obj"), "the row has 2000001 fields"));
  here.Write("n/CO.csv", "id\r\n" + std::string(kLong, '"'));
  here.Run("convert n n.obj");
  EXPECT_EQ(here.Run("check n").code, 0) << "an even number of quotes is a text";
}

TEST_F(ReaderLimits, AFileThatIsTooLargeIsNotRead) {
  constexpr std::uintmax_t kMebibyte = std::uintmax_t{1} << 20;
  std::filesystem::resize_file(here / "m/CB.csv", 4096 * kMebibyte + 1);  // with nothing on the disk
  EXPECT_EQ(Refused("convert m n.obj"), "dtsdb: m/CB.csv: has more than 4096 MiB\n");
  EXPECT_TRUE(Contains(here.Run("check m").out, "has more than 4096 MiB"));
  here.Write("s", "");
  std::filesystem::resize_file(here / "s", 64 * kMebibyte + 1);
  here.CopyModel("good");
  for (const char* const command :
       {"switch good --script s", "edit good --dry-run --script s", "screen good --pairs @s"}) {
    EXPECT_EQ(Refused(command), "dtsdb: s: has more than 64 MiB\n") << command;
  }
}

TEST_F(ReaderLimits, ATextTableThatIsAPipeIsRefused) {
  ASSERT_EQ(::mkfifo((here / "m/TPL.csv").c_str(), 0600), 0);
  EXPECT_EQ(Refused("convert m n.obj"), "dtsdb: m/TPL.csv: can't be read: it is a pipe or device\n");
}

TEST_F(ReaderLimits, AnObjectFileIsAFile) {
  ASSERT_EQ(::mkfifo((here / "p.obj").c_str(), 0600), 0);
  EXPECT_TRUE(Contains(Refused("check p.obj"), "is neither a file nor a folder"));
  EXPECT_TRUE(Contains(Refused("check /dev/zero"), "is neither a file nor a folder"));
  Refused("convert /dev/zero n.obj");
}

TEST_F(ReaderLimits, OneLongIdentityDoesNotWidenAllRows) {
  std::string rows = "id\r\n" + std::string(10'000, 'x') + "\r\n";
  for (int i = 0; i < 1000; ++i) rows += "co " + std::to_string(i) + "\r\n";
  here.Write("n/CO.csv", rows);
  EXPECT_LT(here.Run("dump n CO").out.size(), 300'000U);
}

}  // namespace
}  // namespace dtsdb::tools
