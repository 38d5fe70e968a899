// What the command leaves when it is ended at any moment: by Ctrl-C and SIGTERM, by a reader of its output that goes
// away, by kill -9. In the short form at some of its system calls, with COMMAND_ENDS in the environment at each.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <set>

#include "tests/command/stepped_command.h"
#include "tests/support/command_runner.h"
#include "tests/support/every_place.h"

namespace dtsdb::tools {
namespace {

namespace fs = std::filesystem;
using test::CommandResult;
using test::SteppedCommand;
using test::Surroundings;
using test::Workplace;

using Files = std::map<std::string, std::string>;

/// The files of a folder; none when it isn't there.
Files FilesIn(const fs::path& folder) {
  Files files;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    files[entry.path().filename().string()] = dtsdb::test::ReadBytes(entry.path());
  }
  return files;
}

std::set<std::string> NamesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
  return names;
}

/// Tries `at(step)` for the steps of a run until it returns false: for every one in the long form, else for some, and
/// for fewer under the sanitizers.
template <class At>
void ForSteps(At at) {
  const bool isLong = std::getenv("COMMAND_ENDS") != nullptr;
  int steps = 0;
  for (int step = 0, by = 1; at(step); step += by, ++steps) {
    if (!isLong && step >= 4) by = 9 * static_cast<int>(dtsdb::test::kPlaceStep);
  }
  if (isLong) std::cout << steps << " moments\n";
  EXPECT_GT(steps, 4);
}

/// A folder of text tables that is replaced by another one.
class EndedReplacement : public testing::Test {
 protected:
  EndedReplacement() {
    here.CopyModel("old");
    EXPECT_EQ(here.Run("convert old grid.obj").code, 0);
    EXPECT_EQ(here.Run("validate old -o new").code, 0);
    EXPECT_EQ(here.Run("convert new new.obj").code, 0);
    old = FilesIn(here / "old");
    renewed = FilesIn(here / "new");
    EXPECT_NE(old, renewed);
    fs::create_directory(place);
  }

  void PutOld() {
    fs::remove_all(place);
    fs::create_directory(place);
    here.CopyModel("place/m");
  }
  Surroundings Around() const { return {place, here.Path(), canExchange, true}; }
  CommandResult Convert() const { return here.Run("convert new.obj place/m"); }
  void ExpectOldOrNew(const char* when) {
    const Files now = FilesIn(place / "m");
    EXPECT_TRUE(now == old || now == renewed) << when;
  }

  /// Ends the command at `step` by `signal`. False when it has ended before.
  bool EndAt(int step, int signal) {
    PutOld();
    SteppedCommand command(Around(), {"convert", "../new.obj", "m"});
    const bool stopped = command.StepTo(step);
    if (canExchange) ExpectOldOrNew("while it runs");
    hasSeenAside = hasSeenAside || fs::exists(place / ".m.dtsdb-was");
    command.End(signal);
    // A call that ends the process comes before the signal.
    EXPECT_TRUE(!stopped || command.Signal() == signal || command.Code() == 0) << "step " << step;
    return stopped;
  }

  void ExpectNothingLeftBy(int signal) {
    ForSteps([&](int step) {
      const bool stopped = EndAt(step, signal);
      EXPECT_EQ(NamesIn(place), std::set<std::string>{"m"}) << "step " << step;
      ExpectOldOrNew("afterwards");
      return stopped && !HasFailure();
    });
  }

  void ExpectRecoveryFromAKill() {
    ForSteps([&](int step) {
      const bool stopped = EndAt(step, SIGKILL);
      EXPECT_EQ(here.Run("info place/m").code, 0) << "step " << step;
      ExpectOldOrNew("to a reader");
      EXPECT_EQ(Convert().code, 0);
      EXPECT_EQ(NamesIn(place), std::set<std::string>{"m"}) << "step " << step;
      EXPECT_EQ(FilesIn(place / "m"), renewed);
      return stopped && !HasFailure();
    });
  }

  Workplace here;
  fs::path place = here / "place";
  Files old;
  Files renewed;
  bool canExchange = true;
  bool hasSeenAside = false;
};

TEST_F(EndedReplacement, LeavesNothingHiddenOnSigterm) { ExpectNothingLeftBy(SIGTERM); }

TEST_F(EndedReplacement, LeavesNothingHiddenOnCtrlC) { ExpectNothingLeftBy(SIGINT); }

TEST_F(EndedReplacement, KilledIsClearedAwayByTheNextRun) { ExpectRecoveryFromAKill(); }

TEST_F(EndedReplacement, LeavesNothingHiddenWithoutExchange) {
  canExchange = false;
  ExpectNothingLeftBy(SIGTERM);
}

TEST_F(EndedReplacement, KilledIsClearedAwayWithoutExchange) {
  canExchange = false;
  ExpectRecoveryFromAKill();
  EXPECT_TRUE(hasSeenAside) << "the old folder is set aside in between";
}

TEST_F(EndedReplacement, OldFolderSetAsideIsFoundAndPutBackByAReader) {
  PutOld();
  fs::rename(place / "m", place / ".m.dtsdb-was");
  EXPECT_EQ(here.Run("info place/m").code, 0);
  EXPECT_EQ(NamesIn(place), std::set<std::string>{"m"});
  EXPECT_EQ(FilesIn(place / "m"), old);
}

TEST_F(EndedReplacement, FolderOfALivingProcessIsLeftAlone) {
  ForSteps([&](int step) {
    PutOld();
    SteppedCommand command(Around(), {"convert", "../new.obj", "m"});
    const bool stopped = command.StepTo(step);
    EXPECT_EQ(here.Run("convert grid.obj place/m").code, 0);
    command.End(0);
    EXPECT_EQ(command.Code(), 0) << "step " << step;
    EXPECT_EQ(NamesIn(place), std::set<std::string>{"m"}) << "step " << step;
    return stopped && !HasFailure();
  });
}

// The tables of two folders are no model.
TEST_F(EndedReplacement, ReaderTakesTheOldFolderOrTheNewOne) {
  ASSERT_EQ(here.Run("convert new fresh.obj").code, 0);
  ForSteps([&](int step) {
    PutOld();
    SteppedCommand reader({here.Path(), here.Path(), true, true}, {"convert", "place/m", "read.obj"});
    const bool stopped = reader.StepTo(step, SYS_getdents64);
    EXPECT_EQ(Convert().code, 0);
    reader.End(0);
    EXPECT_EQ(reader.Code(), 0) << "step " << step;
    const std::string read = here.Read("read.obj");
    EXPECT_TRUE(read == here.Read("grid.obj") || read == here.Read("fresh.obj")) << "step " << step;
    return stopped && !HasFailure();
  });
}

TEST_F(EndedReplacement, NamesThatOnlyLookLikeLeftoversStay) {
  PutOld();
  for (const char* name : {".m.dtsdb-12345", ".m.dtsdb-12345x", "m.dtsdb-123456", ".dtsdb-", "notes"}) {
    fs::create_directory(place / name);
  }
  here.Write("place/.m.dtsdb-abcdef", "a file");
  EXPECT_EQ(Convert().code, 0);
  EXPECT_EQ(NamesIn(place).size(), 7U);
}

TEST(EndedFlow, HasNoTemporaryFolderThatItCouldLeave) {
  const Workplace here;
  here.CopyModel("m");
  const fs::path temporary = here / "temporary";
  fs::create_directory(temporary);
  SteppedCommand command({here.Path(), temporary, true, true}, {"flow", "m"});
  EXPECT_FALSE(command.StepTo(0)) << "it makes a folder";
  EXPECT_EQ(command.Code(), 1) << "the sets of this model don't balance";
  EXPECT_TRUE(fs::is_empty(temporary));
  EXPECT_EQ(here.EntryCount(), 2);
}

TEST(EndedFlow, EndsWhenNobodyReadsItsOutput) {
  const Workplace here;
  here.CopyModel("m");
  SteppedCommand command({here.Path(), here.Path(), true, false}, {"flow", "m"});
  command.End(0);
  EXPECT_EQ(command.Signal(), SIGPIPE);
}

}  // namespace
}  // namespace dtsdb::tools
