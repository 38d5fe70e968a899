// Commands that run until they are ended, with calls of the system that fail: dtsdb serve and dtsdb relay follow.

#include <gtest/gtest.h>

#include <QProcess>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>
#include <thread>
#include <vector>

#include "tests/faults/faulted_command.h"
#include "tests/faults/scenarios.h"
#include "tests/support/long_form.h"
#ifdef DTSDB_WITH_RELAY
#include "tests/support/nats_broker.h"
#endif

namespace dtsdb::tools {
namespace {

using test::CallKind;
using test::CommandResult;
using test::Contents;
using test::ContentsOf;
using test::Fault;
using test::FaultedResult;
using test::FaultLibraryLoaded;
using test::Workplace;

/// A fault of each kind that a command must not lose anything by.
std::vector<Fault> SomeFaults() {
  return {{CallKind::kOpen, EACCES}, {CallKind::kOpen, EMFILE},  {CallKind::kRead, EIO},   {CallKind::kRead, EINTR},
          {CallKind::kWrite, EIO},   {CallKind::kWrite, ENOSPC}, {CallKind::kSync, EIO},   {CallKind::kMap, ENOMEM},
          {CallKind::kSize, ENOSPC}, {CallKind::kRename, EIO},   {CallKind::kRemove, EIO}, {CallKind::kClose, EIO}};
}

/// dtsdb serve until it has printed its address or has ended by itself; then it gets SIGTERM.
struct Served {
  CommandResult result;
  bool hasServed = false;
};

class ServeFaults : public testing::Test {
 protected:
  ServeFaults() {
    here.CopyModel("m");
    EXPECT_EQ(here.Run("topology m -o rtdb:grid").code, 0);
  }

  /// `meanwhile` is done while it serves.
  Served Serve(
      const char* model, const std::function<void()>& meanwhile = [] {}) const {
    Served served;
    QProcess process;
    process.setWorkingDirectory(QString::fromStdString(here.Path().string()));
    process.start(QString::fromUtf8(dtsdb::test::TestProgram()),
                  {QStringLiteral("serve"), QString::fromUtf8(model), QStringLiteral("--port"), QStringLiteral("0")});
    while (!process.canReadLine() && process.waitForReadyRead(60000)) {
    }
    served.hasServed = process.canReadLine();
    if (served.hasServed) {
      meanwhile();
      EXPECT_EQ(process.state(), QProcess::Running);
      process.terminate();
    }
    process.waitForFinished(60000);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    served.result = {process.exitCode(), process.readAllStandardOutput().toStdString(),
                     process.readAllStandardError().toStdString()};
    return served;
  }

  Workplace here;
};

TEST_F(ServeFaults, ItServesOrEndsInOneLineAndWritesNothing) {
  int tried = 0;
  for (const char* const model : {"m", "rtdb:grid"}) {
    const Contents before = ContentsOf(here.Path());
    for (Fault fault : SomeFaults()) {
      long calls = 0;
      {
        const FaultLibraryLoaded counting(here.Path(), {fault.kind});
        EXPECT_TRUE(Serve(model).hasServed);
        calls = counting.Counts().calls[static_cast<std::size_t>(fault.kind)];
      }
      for (const long at : dtsdb::test::Spread(calls, dtsdb::test::IsLongForm() ? 40 : 1)) {
        fault.at = at;
        const FaultLibraryLoaded loaded(here.Path(), fault);
        const Served served = Serve(model);
        tried += static_cast<int>(loaded.Counts().failed);
        SCOPED_TRACE(testing::Message() << model << ": call " << at << " of kind " << static_cast<int>(fault.kind)
                                        << " fails: " << std::strerror(fault.error) << ": " << served.result.err);
        EXPECT_EQ(served.result.code, served.hasServed ? 0 : 3);
        EXPECT_EQ(served.hasServed, served.result.err.empty());
        EXPECT_EQ(served.hasServed, !test::IsOneLine(served.result.err));
      }
    }
    EXPECT_EQ(ContentsOf(here.Path()), before);
  }
  EXPECT_GT(tried, 4);
}

TEST_F(ServeFaults, AModelThatVanishesWhileItServesEndsNothing) {
  for (const char* const model : {"m", "rtdb:grid"}) {
    const std::string file = model == std::string("m") ? "m" : "grid.fdb";
    const Served served = Serve(model, [&] {
      std::filesystem::rename(here / file, here / "away");
      std::this_thread::sleep_for(std::chrono::milliseconds(200));  // some looks
      std::filesystem::rename(here / "away", here / file);
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    });
    EXPECT_EQ(served.result.code, 0) << model;
    EXPECT_EQ(served.result.err, "") << model;
  }
}

#ifdef DTSDB_WITH_RELAY

/// A database that is published, and room for its copy beside it.
class FollowFaults : public testing::Test {
 protected:
  FollowFaults() {
    // A store synchronises nothing in a memory file system.
    qputenv("TMPDIR", std::filesystem::current_path().c_str());
    here.emplace();
    broker.Start();
    here->CopyModel("m");
    EXPECT_EQ(here->Run("topology m -o rtdb:grid").code, 0);
    EXPECT_EQ(here->Run(("relay publish rtdb:grid --once --to " + broker.Url()).c_str()).code, 0);
  }
  void RemoveCopy() const {
    for (const char* const name : {"copy.fdb", "copy.fdb-lock"}) std::filesystem::remove(*here / name);
  }
  QStringList Follow() const {
    return {QStringLiteral("relay"),     QStringLiteral("follow"),
            QStringLiteral("--once"),    QString::fromStdString(broker.Url()),
            QStringLiteral("rtdb:copy"), QStringLiteral("--name"),
            QStringLiteral("grid")};
  }

  dtsdb::test::NatsBroker broker;
  std::optional<Workplace> here;
};

TEST_F(FollowFaults, TheCopyIsNoneOrWholeAndTheNextRunMakesIt) {
  ASSERT_EQ(here->Run(Follow()).code, 0);
  const Contents whole = ContentsOf(here->Path());
  ASSERT_EQ(whole.at("copy.fdb"), whole.at("grid.fdb"));
  int tried = 0;
  std::vector<Fault> faults = SomeFaults();
  // A copy that can't be written is tried again every second.
  if (!dtsdb::test::IsLongForm()) {
    faults = {{CallKind::kOpen, EACCES}, {CallKind::kWrite, ENOSPC}, {CallKind::kSync, EIO}, {CallKind::kMap, ENOMEM}};
  }
  for (Fault fault : faults) {
    RemoveCopy();
    const long calls = RunWithFault(*here, Follow(), {fault.kind}).calls;
    for (const long at : dtsdb::test::Spread(calls, dtsdb::test::IsLongForm() ? 40 : 1)) {
      RemoveCopy();
      fault.at = at;
      const FaultedResult result = RunWithFault(*here, Follow(), fault);
      tried += result.failed ? 1 : 0;
      SCOPED_TRACE(testing::Message() << "call " << at << " of kind " << static_cast<int>(fault.kind)
                                      << " fails: " << std::strerror(fault.error) << ", exit code " << result.code
                                      << ": " << result.err);
      // It goes on behind what can be got over, with a line.
      EXPECT_TRUE(result.code == 0 || result.code == 3);
      EXPECT_TRUE(result.err.empty() ? result.code == 0 : test::IsOneLine(result.err));
      Contents now = ContentsOf(here->Path());
      const std::string copy = now.contains("copy.fdb") ? now["copy.fdb"] : test::kNothing;
      EXPECT_TRUE(copy == whole.at("copy.fdb") || (result.code == 3 && copy == test::kNothing)) << copy.substr(0, 200);
      EXPECT_EQ(now["grid.fdb"], whole.at("grid.fdb"));
      EXPECT_EQ(here->Run(Follow()).code, 0) << "the next run";
      EXPECT_EQ(ContentsOf(here->Path()), whole);
      EXPECT_EQ(here->Run("relay status rtdb:copy").code, 0);
    }
  }
  EXPECT_GT(tried, 2);
}

#endif

}  // namespace
}  // namespace dtsdb::tools
