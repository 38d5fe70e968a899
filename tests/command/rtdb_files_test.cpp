// The command where its streams are closed, and where its realtime database goes away, has several names or may only be
// read.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <cstdlib>

#include "tests/support/command_runner.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

/// Two stations in folder m and, marked good, in the database x.fdb.
class RealtimeFiles : public testing::Test {
 protected:
  RealtimeFiles() {
    here.CopyModel("m");
    fs::remove(here / "m/ANALOG.csv");
    EXPECT_EQ(here.Run("validate m -o rtdb:x").code, 0);
  }
  ~RealtimeFiles() override { ::chmod(here.Path().c_str(), 0755); }

  /// Runs a line of the shell here, with the command as $dtsdb. Returns its exit code.
  int Shell(const std::string& line) const {
    const std::string all = "export LC_ALL=C.UTF-8; dtsdb='" + std::string(dtsdb::test::TestProgram()) + "'; cd '" +
                            here.Path().string() + "' || exit 99; " + line;
    const int status = std::system(all.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Bad(const char* arguments, int code) const {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, code) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  }

  Workplace here;
};

TEST_F(RealtimeFiles, WithoutStandardStreamsNothingIsPrintedIntoTheDatabase) {
  const std::string now = std::to_string(QDateTime::currentSecsSinceEpoch());
  EXPECT_EQ(Shell("$dtsdb run rtdb:x --interval 20 <&- >&- 2>&- & task=$!;"
                  "for i in 1 2 3 4 5 6 7 8 9 10 11 12; do"
                  "  $dtsdb rtdb put x TPTRACE id=$i name=甲开关 type=1 status=$((i % 2)) time=" +
                  now +
                  " <&- >&- 2>&- || exit 1; done;"
                  "$dtsdb rtdb put x CB <&- >&- 2>&-; [ $? = 2 ] || exit 2;"
                  "sleep 0.2; kill $task; wait $task"),
            0);
  EXPECT_TRUE(Contains(here.Run("rtdb check x").out, "x: good: "));
  EXPECT_TRUE(Contains(here.Run("rtdb ls x --format csv").out, "\r\nTPTRACE,12,"));
}

TEST_F(RealtimeFiles, WithoutStandardStreamsOutputsAreTheSame) {
  EXPECT_EQ(Shell("$dtsdb convert m x.obj && $dtsdb convert m y.obj <&- >&- 2>&- && cmp x.obj y.obj &&"
                  "$dtsdb convert m n <&- >&- 2>&- && $dtsdb diff m n > /dev/null"),
            0);
  for (const char* closed : {"<&-", ">&-", "2>&-"}) {
    EXPECT_EQ(Shell(std::string("$dtsdb info m ") + closed + " > /dev/null"), 0) << closed;
  }
}

TEST_F(RealtimeFiles, RunEndsWhenItsDatabaseGoesAway) {
  for (const char* away : {"rm x.fdb", "mv x.fdb y.fdb", "cp x.fdb z.fdb; mv z.fdb x.fdb", "rm x.fdb-lock"}) {
    EXPECT_EQ(Shell("rm -f *.fdb *-lock out; $dtsdb validate m -o rtdb:x > /dev/null 2>&1;"
                    "{ $dtsdb run rtdb:x --interval 20 > out 2> err; echo $? > code; } &"
                    "for i in $(seq 500); do [ -s out ] && break; sleep 0.02; done;" +
                    std::string(away) + "; wait; exit $(cat code)"),
              3)
        << away;
    const std::string reported = here.Read("err");
    EXPECT_TRUE(IsOneLine(reported)) << away << ": " << reported;
    const bool lock = Contains(away, "lock");
    EXPECT_TRUE(reported.starts_with("dtsdb: x.fdb: ")) << reported;
    EXPECT_TRUE(Contains(reported, lock ? "its lock file " : "since it was opened; open it anew")) << reported;
  }
}

TEST_F(RealtimeFiles, NewDatabaseWorksBesideARunThatHasLostItsOwn) {
  EXPECT_EQ(Shell("$dtsdb run rtdb:x --interval 60000 > out & task=$!;"
                  "for i in $(seq 500); do [ -s out ] && break; sleep 0.02; done;"
                  "rm x.fdb; $dtsdb validate m -o rtdb:x > /dev/null 2>&1 && $dtsdb rtdb put x CO id=a > /dev/null &&"
                  "$dtsdb rtdb check x > /dev/null && $dtsdb run rtdb:x --once > /dev/null; code=$?;"
                  "kill $task; wait $task; exit $code"),
            0);
}

TEST_F(RealtimeFiles, HardLinksAreRefused) {
  fs::create_hard_link(here / "x.fdb", here / "y.fdb");
  for (const char* arguments : {"rtdb ls x", "info rtdb:y", "rtdb put y CO id=a", "convert m rtdb:x"}) {
    EXPECT_TRUE(Contains(Bad(arguments, 3), ".fdb: the file has 2 names (hard links)")) << arguments;
  }
}

TEST_F(RealtimeFiles, LinkIsTheSameDatabase) {
  fs::create_directory(here / "sub");
  fs::create_symlink("../x.fdb", here / "sub/y.fdb");
  EXPECT_EQ(here.Run("rtdb put sub/y CO id=linked").code, 0);
  EXPECT_TRUE(Contains(here.Run("rtdb show x CO").out, "linked"));
  EXPECT_FALSE(here.Exists("sub/y.fdb-lock"));
}

/// Every command that reads, for a user who may write nothing in the folder.
TEST_F(RealtimeFiles, ThatMayOnlyBeReadServeEveryReadingCommand) {
  const std::string asOther = ::geteuid() == 0 ? "setpriv --reuid 65534 --regid 65534 --clear-groups " : "";
  fs::copy_file(here / "x.fdb", here / "z.fdb");  // without a lock file
  Shell("$dtsdb topology m -o rtdb:x > /dev/null; chmod 444 *.fdb *-lock; chmod 555 .");
  for (const char* arguments :
       {"rtdb ls x", "rtdb show x CB", "rtdb check x", "info rtdb:x", "dump rtdb:x CB", "diff rtdb:x rtdb:x",
        "validate rtdb:x", "topology rtdb:x", "rtdb ls z", "info rtdb:z", "validate rtdb:z"}) {
    EXPECT_EQ(Shell(asOther + "$dtsdb " + arguments + " > /dev/null"), 0) << arguments;
  }
  EXPECT_EQ(Shell(asOther + "$dtsdb flow rtdb:x > /dev/null"), here.Run("flow m").code);
  EXPECT_FALSE(here.Exists("z.fdb-lock"));
  for (const char* arguments : {"rtdb put x CO id=a", "run rtdb:x --once", "convert m rtdb:x", "rtdb put z CO id=a"}) {
    EXPECT_EQ(Shell(asOther + "$dtsdb " + arguments + " > /dev/null 2>&1"), 3) << arguments;
  }
}

}  // namespace
}  // namespace dtsdb::tools
