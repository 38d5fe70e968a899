// The command dtsdb run as a service: signals, models that are replaced, a second task, lines for a log collector.

#include <QJsonDocument>
#include <QJsonObject>
#include <functional>

#include "command/topology_task.h"
#include "formats/model_io.h"
#include "formats/realtime.h"
#include "tests/command/running_task.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::RunningTask;

class RunService : public test::RunPlace {
 protected:
  /// Changes a row of the database as another program does.
  void Put(const char* arguments) const {
    const CommandResult result = here.Run((std::string("rtdb put x ") + arguments).c_str());
    EXPECT_EQ(result.code, 0) << result.err;
  }
};

// Reading the model again

TEST_F(RunService, SighupHasTheModelReadAgain) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: full run, 1 live island, "));
  Put("CB id=甲开关 flags=257");
  EXPECT_EQ(task.Line(500), "") << "a position that was changed past the trace is no other model";
  task.Signal(SIGHUP);
  EXPECT_EQ(task.Line(), "reload: on SIGHUP");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 0 live islands, "));
  EXPECT_TRUE(Contains(Rows("LD", "乙荷"), "\"tp_status\": 1"));
  Trace(1, "甲开关", 1, 1);
  EXPECT_TRUE(task.Line().starts_with("run 1: incremental, 1 row, "));
  EXPECT_TRUE(Contains(Rows("LD", "乙荷"), "\"tp_status\": 0"));
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_EQ(task.Messages(), "");
}

TEST_F(RunService, ModelWithAnotherBreakerStartsTheTaskAnew) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  here.Write("m/CB.csv",
             "id,kv,nd,znd,flags\n甲开关,甲站220,甲1,甲2,1\n乙开关,乙站220,乙1,乙2,1\n乙联络,乙站220,乙1,乙3,1\n"
             "乙旁路,乙站220,乙2,乙3,1\n");
  Store();
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 1 live island, "));
  EXPECT_EQ(task.Line(500), "") << "what the task stores is no other model";
  Trace(1, "乙旁路", 1, 0);
  EXPECT_TRUE(task.Line().starts_with("run 1: "));
  EXPECT_TRUE(IsOpen("乙旁路"));
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_EQ(task.Messages(), "");
}

TEST_F(RunService, SameModelWrittenAgainGetsItsTraceAgain) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Trace(1, "甲开关", 1, 0);
  ASSERT_TRUE(task.Line().starts_with("run 1: "));
  Store();
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 1 live island, ")) << "the breaker is closed in the model";
  EXPECT_TRUE(task.Line().starts_with("run 1: incremental, 1 row, "));
  EXPECT_TRUE(IsOpen("甲开关"));
  EXPECT_EQ(task.Line(500), "");
}

TEST_F(RunService, RowOfTheModelThatAnotherProgramChangesIsNoticed) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  Put("LD id=乙荷 p=5");
  EXPECT_EQ(task.Line(500), "") << "a measured value is no other model";
  Put("CO id=丙公司");
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 1 live island, "));
  EXPECT_EQ(task.Line(500), "");
}

TEST_F(RunService, ModelThatIsNotGoodIsWaitedOut) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  const std::string stored = Rows("LD", "乙荷");
  Put("GLOBAL id=0 valid=0");
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  Trace(1, "甲开关", 1, 0);
  EXPECT_EQ(task.Line(500), "");
  EXPECT_EQ(Rows("LD", "乙荷"), stored);
  Store();
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 1 live island, "));
  EXPECT_TRUE(task.Line().starts_with("run 1: incremental, 1 row, ")) << "what was traced meanwhile";
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 1);
  const std::string messages = task.Messages();
  EXPECT_TRUE(IsOneLine(messages)) << messages;
  EXPECT_TRUE(messages.starts_with("dtsdb: the model in the database is not marked good; ")) << messages;
  EXPECT_TRUE(Contains(messages, "; the task waits for another model\n")) << messages;
}

/// The library leaves the mark "good" of the model before.
TEST_F(RunService, ModelWrittenOverAGoodOneWithoutValidationIsNotTaken) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  const std::string stored = Rows("LD", "乙荷");
  {
    DTSDB unvalidated = LoadModel(ModelName((here / "m").string()));
    RealtimeDatabase database((here / "x").string(), dbDatabase::dbAllAccess);
    unvalidated.WriteFastdb(database.Db());
  }
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_EQ(task.Line(500), "");
  Store();
  EXPECT_EQ(task.Line(), "reload: the model in the database was replaced");
  EXPECT_TRUE(task.Line().starts_with("start: full run, 1 live island, "));
  EXPECT_EQ(Rows("LD", "乙荷"), stored);
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 1);
  EXPECT_TRUE(task.Messages().starts_with("dtsdb: the model in the database has to be validated: CB "));
}

TEST_F(RunService, NothingIsStoredOverAModelThatIsReplacedDuringARun) {
  Store();
  RealtimeDatabase database((here / "x").string(), dbDatabase::dbAllAccess);
  TaskClock clock = TaskClock::OfMachine();
  std::function<void()> atLook = [] {};
  clock.day = [&atLook, day = clock.day] {
    atLook();
    return day();
  };
  TopologyTask task(database, {}, TaskLog(Format::kText), clock);
  task.Start();
  EXPECT_TRUE(task.Look());
  Trace(1, "甲开关", 1, 0);
  atLook = [this] { Put("GLOBAL id=0 check_time=1"); };
  EXPECT_FALSE(task.Look());
  EXPECT_FALSE(IsOpen("甲开关"));
  EXPECT_EQ(LogCount(), 0);
  EXPECT_FALSE(task.Look()) << "it has no model any more";
}

// One task for a database

TEST_F(RunService, SecondTaskIsRefusedWithTheNumberOfTheFirst) {
  Store();
  std::filesystem::create_symlink("x.fdb", here / "link.fdb");
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  for (const char* arguments : {"run rtdb:x", "run rtdb:x.fdb --once", "run rtdb:link --once"}) {
    const CommandResult second = here.Run(arguments);
    EXPECT_EQ(second.code, 3) << arguments;
    EXPECT_EQ(second.out, "");
    EXPECT_TRUE(IsOneLine(second.err)) << second.err;
    const std::string refusal = ".fdb: process " + std::to_string(task.Number()) + " runs its topology task already; ";
    EXPECT_TRUE(Contains(second.err, refusal)) << second.err;
  }
  Trace(1, "甲开关", 1, 0);
  EXPECT_TRUE(task.Line().starts_with("run 1: ")) << "the first goes on";
}

TEST_F(RunService, TaskThatWasKilledKeepsNobodyOut) {
  Store();
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  task.Signal(SIGKILL);
  EXPECT_EQ(task.End(), -1);
  EXPECT_TRUE(here.Exists("x.fdb-task"));
  EXPECT_TRUE(Once().starts_with("start: "));
}

TEST_F(RunService, TasksOfTwoDatabasesRunBesideEachOther) {
  Store();
  EXPECT_EQ(here.Run("validate m -o rtdb:y").code, 0);
  RunningTask task(here, {});
  ASSERT_TRUE(task.Line().starts_with("start: "));
  EXPECT_EQ(here.Run("run rtdb:y --once").code, 0);
}

TEST_F(RunService, LockFileThatCannotBeMadeIsNamed) {
  Store();
  std::filesystem::create_directory(here / "x.fdb-task");
  const CommandResult result = here.Run("run rtdb:x --once");
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(Contains(result.err, "x.fdb-task: Is a directory")) << result.err;
}

// Lines for a log collector

class RunJson : public RunService {
 protected:
  static QJsonObject Event(const std::string& line) {
    const QJsonObject event = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
    const auto time = QDateTime::fromString(event.value(QLatin1String("time")).toString(), Qt::ISODate);
    EXPECT_TRUE(time.isValid()) << line;
    return event;
  }
  static std::string Name(const QJsonObject& event) {
    return event.value(QLatin1String("event")).toString().toStdString();
  }
  static std::string Keys(const QJsonObject& event) { return event.keys().join(QLatin1Char(' ')).toStdString(); }
  static std::string Text(const QJsonObject& event, const char* key) {
    return event.value(QLatin1String(key)).toString().toStdString();
  }
  static double Number(const QJsonObject& event, const char* key) {
    return event.value(QLatin1String(key)).toDouble(-7);
  }
};

TEST_F(RunJson, EachLineIsAnObjectWithKeysThatStay) {
  Store();
  RunningTask task(here, {QStringLiteral("--format"), QStringLiteral("json")});
  const QJsonObject start = Event(task.WholeLine());
  EXPECT_EQ(Keys(start), "event islands stored_ms time worked_ms");
  EXPECT_EQ(Name(start), "start");
  EXPECT_EQ(Number(start, "islands"), 1);

  Trace(1, "甲开关", 1, 0);
  const QJsonObject run = Event(task.WholeLine());
  EXPECT_EQ(Keys(run), "cause event kind levels log_first log_last reason rows run sections stored_ms time worked_ms");
  EXPECT_EQ(Name(run), "run");
  EXPECT_EQ(Text(run, "kind"), "incremental");
  EXPECT_EQ(Text(run, "reason"), "certain");
  EXPECT_TRUE(run.value(QLatin1String("cause")).isNull());
  EXPECT_EQ(Number(run, "rows"), 1);
  EXPECT_EQ(Number(run, "levels"), 2);
  EXPECT_EQ(Number(run, "sections"), 3);
  EXPECT_EQ(Number(run, "log_last"), 4);

  task.Signal(SIGHUP);
  const QJsonObject reload = Event(task.WholeLine());
  EXPECT_EQ(Keys(reload), "event reason time");
  EXPECT_EQ(Name(reload), "reload");
  EXPECT_EQ(Text(reload, "reason"), "signal");
  EXPECT_EQ(Name(Event(task.WholeLine())), "start");
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  EXPECT_EQ(task.Messages(), "");
}

TEST_F(RunJson, MessagesAndCausesAreObjectsToo) {
  here.Write("m/ZBR.csv", "id,cb\n甲阻,甲开关\n");
  Store();
  RunningTask task(here, {QStringLiteral("--format"), QStringLiteral("json")});
  ASSERT_EQ(Name(Event(task.WholeLine())), "start");
  Trace(1, "丙\"开关", 1, 0);
  const QJsonObject message = Event(task.WholeLine());
  EXPECT_EQ(Keys(message), "event run text time");
  EXPECT_EQ(Name(message), "message");
  EXPECT_EQ(Text(message, "text"), "trace row 1: there is no '丙\"开关'");
  ASSERT_EQ(Name(Event(task.WholeLine())), "run");

  Trace(2, "甲开关", 1, 0);
  const QJsonObject run = Event(task.WholeLine());
  EXPECT_EQ(Text(run, "kind"), "full");
  EXPECT_EQ(Text(run, "reason"), "zero_impedance");
  EXPECT_EQ(Text(run, "cause"), "ZBR 甲阻");
  EXPECT_TRUE(run.value(QLatin1String("log_first")).isNull());
  const QJsonObject branch = Event(task.WholeLine());
  EXPECT_EQ(Keys(branch), "branch breaker event in_service run time");
  EXPECT_EQ(Text(branch, "breaker"), "甲开关");
  EXPECT_TRUE(branch.value(QLatin1String("in_service")).isBool());
  EXPECT_EQ(task.Messages(), "");
}

TEST_F(RunJson, DifferencesAreObjectsToo) {
  Store();
  Once();
  Trace(1, "甲乙线", 9, 0);
  const CommandResult result = here.Run("run rtdb:x --once --as-is --verify --format json");
  EXPECT_EQ(result.code, 1);
  const QList<QByteArray> lines = QByteArray::fromStdString(result.out).trimmed().split('\n');
  const QJsonObject difference = Event(lines.last().toStdString());
  EXPECT_EQ(Keys(difference), "event full here id run table time");
  EXPECT_EQ(Name(difference), "difference");
  EXPECT_EQ(Text(difference, "id"), "甲乙线");
  EXPECT_EQ(Text(difference, "full"), "from end open, dead");
}

TEST_F(RunJson, OtherFormatsAreRefused) { EXPECT_EQ(here.Run("run rtdb:x --format csv").code, 2); }

}  // namespace
}  // namespace dtsdb::tools
