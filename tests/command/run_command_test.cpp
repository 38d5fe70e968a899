// The command dtsdb run: following up the trace.

#include "tests/command/running_task.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::RunningTask;

class RunCommand : public test::RunPlace {};

TEST_F(RunCommand, StoresTheTopologyAtTheStart) {
  Store();
  EXPECT_TRUE(Once().starts_with("start: full run, 1 live island, "));
  EXPECT_TRUE(Contains(Rows("BS", "2"), "甲母"));
  EXPECT_TRUE(Contains(here.Run("rtdb show x ISLAND").out, "甲机"));
}

TEST_F(RunCommand, FollowsUpWhatAnotherProgramWritesAndStopsOnSigterm) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0);
  const std::string line = task.Line();
  EXPECT_TRUE(line.starts_with("run 1: incremental, 1 row, 2 levels, 3 sections changed, log 0..4, ")) << line;
  EXPECT_TRUE(IsOpen("甲开关"));
  EXPECT_EQ(LogCount(), 5);
  EXPECT_TRUE(Contains(Rows("LD", "乙荷"), "\"tp_status\": 1"));

  // The same by the command that other tests don't use.
  const auto now = QString::number(QDateTime::currentSecsSinceEpoch());
  const QString put = QStringLiteral("rtdb put x TPTRACE id=2 name=甲开关 type=1 status=1 time=") + now;
  EXPECT_EQ(here.Run(put.toUtf8().constData()).code, 0);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, 2 levels, 3 sections changed, log 5..9, "));
  EXPECT_FALSE(IsOpen("甲开关"));
  EXPECT_TRUE(Contains(here.Run("rtdb show x ISLAND").out, "甲机")) << "an island has its reference again";

  task.Signal(SIGTERM);
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_EQ(task.Messages(), "");
  EXPECT_EQ(here.Run("rtdb check x").code, 0);
}

TEST_F(RunCommand, StopsOnTheInterruptOfATerminal) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  task.Signal(SIGINT);
  EXPECT_EQ(task.End(), 0);
}

TEST_F(RunCommand, TakesARowOnceAndAgainWhenItHasChanged) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "乙荷", 3, 0);
  EXPECT_TRUE(task.Line().starts_with("run 1: "));
  EXPECT_EQ(task.Line(500), "") << "the row is still in the second of the last run";
  Trace(1, "乙荷", 3, 1);
  EXPECT_TRUE(task.Line().starts_with("run 2: "));
  EXPECT_TRUE(Contains(Rows("LD", "乙荷"), "\"status\": 0"));
}

TEST_F(RunCommand, TakesARowThatWasStampedBeforeItCouldBeWritten) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "乙荷", 3, 0);
  ASSERT_TRUE(task.Line().starts_with("run 1: "));
  Trace(2, "甲机", 2, 0, 30);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, "));
  EXPECT_TRUE(Contains(Rows("UN", "甲机"), "\"status\": 5"));
}

TEST_F(RunCommand, RowsGoByTheirTimeWhateverTheirNumbers) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(9, "甲开关", 1, 0, 10);
  ASSERT_TRUE(task.Line().starts_with("run 1: "));
  ASSERT_TRUE(IsOpen("甲开关"));
  Trace(3, "甲开关", 1, 1);
  ASSERT_TRUE(task.Line().starts_with("run 2: "));
  EXPECT_FALSE(IsOpen("甲开关"));
  Trace(4, "乙荷", 3, 0);
  ASSERT_TRUE(task.Line().starts_with("run 3: incremental, 1 row, 1 level, "));
  EXPECT_FALSE(IsOpen("甲开关")) << "row 9 is read again and doesn't open it again";
}

TEST_F(RunCommand, RowAheadOfTheClockIsReportedOnceAndPinsNothing) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0, -86400);
  ASSERT_TRUE(task.Line().starts_with("run 1: incremental, 1 row, 2 levels, "));
  EXPECT_TRUE(IsOpen("甲开关"));
  Trace(2, "甲开关", 1, 1);
  ASSERT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, 2 levels, "));
  EXPECT_FALSE(IsOpen("甲开关"));
  EXPECT_EQ(task.Line(500), "");
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  const std::string messages = task.Messages();
  EXPECT_TRUE(IsOneLine(messages)) << messages;
  EXPECT_TRUE(messages.starts_with("dtsdb: trace row 1: '甲开关' is stamped 8")) << messages;
  EXPECT_TRUE(Contains(messages, " s ahead of the clock; it counts as of now\n")) << messages;
}

TEST_F(RunCommand, ManyRowsGiveOneFullRunAndNoCircle) {
  Store();
  Once();
  for (int id = 0; id < 50; ++id) Trace(id, "甲开关", 1, id % 2 == 0 ? 1 : 0);
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  const std::string line = task.Line();
  EXPECT_TRUE(line.starts_with("run 1: full, for many changes, 50 rows, 2 levels, 0 sections changed, no log, "))
      << line;
  EXPECT_TRUE(IsOpen("甲开关"));
  EXPECT_EQ(task.Line(500), "");
  Trace(50, "甲开关", 1, 1);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, "));
}

TEST_F(RunCommand, ManyRowsAtOneLookAreFollowedUpInTurnAndEachIsLogged) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0);
  ASSERT_TRUE(task.Line().starts_with("run 1: ")) << "the first look is over";
  TraceMany(2, 121);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 49 rows, 1 level, "));
  EXPECT_TRUE(task.Line().starts_with("run 3: incremental, 49 rows, 1 level, "));
  EXPECT_TRUE(task.Line().starts_with("run 4: incremental, 23 rows, 1 level, "));
  EXPECT_EQ(LogCount("REMOVE") + LogCount("UNREMOVE"), 121);
  EXPECT_FALSE(Contains(Rows("LD", "乙荷"), "\"status\": 0")) << "off, as the last row has it";
}

TEST_F(RunCommand, LateRowAmongManyIsFollowedUpFirst) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0);
  ASSERT_TRUE(task.Line().starts_with("run 1: "));
  TraceMany(2, 61, 20);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, "));
  EXPECT_TRUE(task.Line().starts_with("run 3: incremental, 49 rows, "));
  EXPECT_TRUE(task.Line().starts_with("run 4: incremental, 11 rows, "));
  EXPECT_TRUE(IsOpen("甲开关"));
}

TEST_F(RunCommand, TooManyRowsAtOneLookGiveOneFullRun) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0);
  ASSERT_TRUE(task.Line().starts_with("run 1: "));
  TraceMany(2, 2001);
  const std::string line = task.Line();
  EXPECT_TRUE(line.starts_with("run 2: full, for many changes, 2001 rows, 2 levels, ")) << line;
  EXPECT_FALSE(Contains(Rows("LD", "乙荷"), "\"status\": 0")) << "off, as the last row has it";
  EXPECT_EQ(LogCount("REMOVE"), 0);
}

TEST_F(RunCommand, RowsWrittenWhileNoTaskRanAreFollowedUpByTheNext) {
  Store();
  Once();
  Trace(1, "甲开关", 1, 0);
  EXPECT_TRUE(Contains(Once(), "run 1: incremental, 1 row, 2 levels, 3 sections changed, log 0..4, "));
  EXPECT_TRUE(IsOpen("甲开关"));
}

// The fragment of the end that is open from the start is orphaned when the other end opens too.
TEST_F(RunCommand, RunThatFailsIsReplacedByAFullOneAndTheNextGoesOn) {
  here.Write("m/LN.csv", "id,dv,st,zst,kv,zkv,nd,znd,status\n甲乙线,东区,甲站,乙站,甲站220,乙站220,甲2,乙2,2\n");
  Store();
  RunningTask task(here, {QStringLiteral("--as-is"), QStringLiteral("--verify")});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲乙线", 9, 0);
  const std::string line = task.Line();
  EXPECT_TRUE(line.starts_with("run 1: failed, full instead, 1 row, 2 levels, 0 sections changed, no log, ")) << line;
  EXPECT_TRUE(Contains(Rows("LN", "甲乙线"), "\"status\": 3"));
  EXPECT_TRUE(Contains(Rows("LN", "甲乙线"), "\"tp_status\": 7"));
  Trace(2, "甲机", 2, 0);
  EXPECT_TRUE(task.Line().starts_with("run 2: incremental, 1 row, "));
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_TRUE(Contains(task.Messages(), "dtsdb: run 1: the incremental run failed; a full run has taken its place\n"));
}

TEST_F(RunCommand, OpenEndIsFollowedUpByAFullRun) {
  Store();
  Once();
  Trace(1, "甲乙线", 9, 0);
  EXPECT_TRUE(Contains(Once("--verify"), "run 1: full, for the open end of LN 甲乙线, 1 row, 2 levels, "));
  EXPECT_TRUE(Contains(Rows("LN", "甲乙线"), "\"tp_status\": 5"));
}

TEST_F(RunCommand, BreakerTakesItsZeroImpedanceBranchAlong) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  Store();
  Once();
  Trace(1, "甲开关", 1, 0);
  const std::string lines = Once("--verify");
  EXPECT_TRUE(Contains(lines, "run 1: full, beside ZBR 甲阻, 1 row, ")) << lines;
  EXPECT_TRUE(Contains(lines, "run 1: ZBR 甲阻 out with its breaker 甲开关\n")) << lines;
  EXPECT_TRUE(Contains(Rows("ZBR", "甲阻"), "\"status\": 1"));
}

TEST_F(RunCommand, VerifyReportsWhatDiffersFromAFullRun) {
  Store();
  Once();
  Trace(1, "甲乙线", 9, 0);
  EXPECT_TRUE(Contains(Once("--as-is --verify", 1),
                       "run 1 differs from a full one: LN 甲乙线: from end open; full run: from end open, dead\n"));
}

TEST_F(RunCommand, UnknownNameIsReportedOnce) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "丙开关", 1, 0);
  EXPECT_TRUE(task.Line().starts_with("run 1: incremental, 1 row, 0 levels, "));
  EXPECT_EQ(task.Line(500), "");
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_EQ(task.Messages(), "dtsdb: trace row 1: there is no '丙开关'\n");
}

TEST_F(RunCommand, TakesPositionsFromTheStatusTableWhenAsked) {
  here.Write("m/CB.csv", "id,kv,nd,znd,flags,status_id\n甲开关,甲站220,甲1,甲2,1,甲位\n乙开关,乙站220,乙1,乙2,1,\n");
  here.Write("m/STATUS.csv", "id,value\n甲位,2\n");
  Store();
  Once();
  EXPECT_FALSE(IsOpen("甲开关"));
  EXPECT_TRUE(Once("--status").starts_with("start: full run, 0 live islands, "));
  EXPECT_TRUE(IsOpen("甲开关"));
}

TEST_F(RunCommand, WrongCallsAreRefused) {
  const auto refused = [&](const char* arguments, int code) {
    const CommandResult result = here.Run(arguments);
    EXPECT_EQ(result.code, code) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << result.err;
    return result.err;
  };
  EXPECT_TRUE(Contains(refused("run rtdb:x --once", 3), "x.fdb: No such file or directory"));
  EXPECT_FALSE(here.Exists("x.fdb"));
  EXPECT_TRUE(Contains(refused("run m --once", 2), "m is no realtime database"));
  refused("run", 2);
  refused("run rtdb:x --interval 0", 2);
  EXPECT_EQ(here.Run("convert m rtdb:x").code, 0);
  EXPECT_TRUE(Contains(refused("run rtdb:x --once", 1), "is not marked good"));
}

}  // namespace
}  // namespace dtsdb::tools
