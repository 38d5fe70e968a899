// The number of threads as a user chooses it.

#include <gtest/gtest.h>

#include <QByteArray>
#include <string>

#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {
namespace {

/// Sets DTSDB_THREADS and takes it out again.
class ThreadsVariable {
 public:
  explicit ThreadsVariable(const char* value) { qputenv("DTSDB_THREADS", value); }
  ThreadsVariable(const ThreadsVariable&) = delete;
  ThreadsVariable& operator=(const ThreadsVariable&) = delete;
  ~ThreadsVariable() { qunsetenv("DTSDB_THREADS"); }
};

TEST(ThreadsOption, ChangesNoResult) {
  const Workplace here;
  ASSERT_EQ(here.Run("generate --stations 100 -o grid.obj").code, 0);
  for (const char* const line : {"validate grid.obj --all --format json", "flow grid.obj --format csv",
                                 "topology grid.obj --format json", "screen grid.obj --kinds LN --format csv"}) {
    const CommandResult alone = here.Run(line);
    const CommandResult together = here.Run(("--threads 2 " + std::string(line)).c_str());
    EXPECT_EQ(together.code, alone.code) << line;
    EXPECT_EQ(together.out, alone.out) << line;
    EXPECT_EQ(together.err, alone.err) << line;
  }
}

TEST(ThreadsOption, StandsBeforeOrBehindTheCommand) {
  const Workplace here;
  here.CopyModel("m");
  for (const char* const line : {"--threads 2 validate m", "validate m --threads 2", "validate --threads=4 m"}) {
    EXPECT_EQ(here.Run(line).code, 0) << line;
  }
}

TEST(ThreadsOption, WithAnotherValueIsWrongUsage) {
  const Workplace here;
  here.CopyModel("m");
  for (const char* const number : {"0", "257", "-1", "two"}) {
    const CommandResult result = here.Run((std::string("validate m --threads ") + number).c_str());
    EXPECT_EQ(result.code, 2) << number;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  }
}

TEST(ThreadsOption, HasTheEnvironmentBehindIt) {
  const Workplace here;
  here.CopyModel("m");
  {
    const ThreadsVariable variable("2");
    EXPECT_EQ(here.Run("validate m").code, 0);
  }
  const ThreadsVariable variable("many");
  const CommandResult result = here.Run("validate m");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "dtsdb: DTSDB_THREADS is 'many'; it must be a number from 1 to 256\n");
  EXPECT_EQ(here.Run("validate m --threads 2").code, 0) << "the option counts before the variable";
}

}  // namespace
}  // namespace dtsdb::tools::test
