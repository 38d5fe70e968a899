// Each call of the system that a command makes is made to fail once. Whatever fails, what a command writes is in the
// end as it was or as it should be, whole; the exit code and one line on the standard error show which. The short form
// takes a few calls of each kind, FAULTS=all in the environment every one, or 40 where there are more.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "include/write_whole.h"
#include "tests/faults/faulted_command.h"
#include "tests/faults/scenarios.h"
#include "tests/support/long_form.h"

namespace dtsdb::tools {
namespace {

using test::CallKind;
using test::Contents;
using test::Fault;
using test::FaultedResult;
using test::Scenario;

/// The ways in which the calls of a kind fail.
struct Failing {
  CallKind kind;
  std::vector<int> errors;
  bool succeeds = false;  ///< a command has to get over it
};

constexpr int kFewerBytes = 0;

std::vector<Failing> FailingCalls() {
  return {{CallKind::kOpen, {EACCES, EROFS, ENOSPC, EMFILE}},
          {CallKind::kRead, {EIO}},
          {CallKind::kRead, {EINTR, kFewerBytes}, true},
          {CallKind::kWrite, {ENOSPC, EIO}},
          {CallKind::kWrite, {EINTR, kFewerBytes}, true},
          {CallKind::kSync, {EIO}},
          {CallKind::kRename, {EIO, EXDEV}},
          {CallKind::kMap, {ENOMEM}},
          {CallKind::kSize, {ENOSPC}},
          {CallKind::kClose, {EIO}},
          {CallKind::kRemove, {EIO}},
          {CallKind::kMakeFolder, {ENOENT}}};
}

bool IsOldOrNew(const Contents& now, Scenario& scenario) {
  const auto at = [](const Contents& contents, const std::string& name) {
    const auto found = contents.find(name);
    return found == contents.end() ? std::string(test::kNothing) : found->second;
  };
  bool good = true;
  for (const Contents* const contents : {&now, &scenario.Before(), &scenario.After()}) {
    for (const auto& [name, content] : *contents) {
      const std::string found = at(now, name);
      if (found == at(scenario.Before(), name) || found == at(scenario.After(), name)) continue;
      ADD_FAILURE() << name << " is neither the old nor the new one: " << found.substr(0, 200);
      good = false;
    }
  }
  return good;
}

/// Removes from `contents` what the next run removes. True when there was something.
bool DropLeftovers(Contents& contents) {
  return std::erase_if(contents, [](const auto& entry) { return IsTemporaryName(entry.first); }) > 0;
}

bool NamesAPlace(const std::string& message, Scenario& scenario) {
  for (const Contents* const contents : {&scenario.Before(), &scenario.After()}) {
    for (const auto& [name, content] : *contents) {
      const std::string stem = name.substr(0, name.find('.'));
      if (test::Contains(message, stem)) return true;
    }
  }
  return false;
}

class CommandFaults : public testing::TestWithParam<Scenario> {
 protected:
  void SetUp() override { m_scenario.Prepare(); }

  void Try(const Failing& failing, Fault fault) {
    m_scenario.Restore();
    const FaultedResult result = RunWithFault(m_scenario.Place(), m_scenario.Command(), fault);
    if (!result.failed) return;  // it takes fewer calls this time
    ++m_tried;
    SCOPED_TRACE(testing::Message() << m_scenario.Name() << ": call " << fault.at << " of kind "
                                    << static_cast<int>(fault.kind) << " fails: " << std::strerror(fault.error)
                                    << ", exit code " << result.code << ", error output: " << result.err);
    Contents now = test::ContentsOf(m_scenario.Place().Path());
    // What can't be opened or removed can't be cleared away by the same run.
    const bool mayLeave = fault.kind == CallKind::kRemove || fault.kind == CallKind::kOpen;
    const bool isLeft = mayLeave && DropLeftovers(now);
    EXPECT_TRUE(IsOldOrNew(now, m_scenario));
    // The store's library takes a part of a write or of its own head for a failure.
    const bool isRefusedPart = m_scenario.WritesStore() && fault.error == kFewerBytes;
    EXPECT_TRUE(result.code == 0 || !failing.succeeds || isRefusedPart);
    if (result.code == 0) {
      EXPECT_EQ(now, m_scenario.After()) << "not all is written";
      EXPECT_EQ(result.err, "");
    } else {
      EXPECT_EQ(result.code, 3);
      EXPECT_TRUE(test::IsOneLine(result.err)) << "not one line";
      EXPECT_TRUE(NamesAPlace(result.err, m_scenario)) << "names no file";
    }
    if (dtsdb::test::IsLongForm() || isLeft) ExpectTheNextRunIsGood();
  }

  void ExpectTheNextRunIsGood() {
    const test::CommandResult next = m_scenario.Place().Run(m_scenario.Command());
    EXPECT_EQ(next.code, 0) << "the next run: " << next.err;
    // The rows of a database that are stored once more may stand in another order.
    if (m_scenario.WritesStore()) return;
    EXPECT_EQ(test::ContentsOf(m_scenario.Place().Path()), m_scenario.After()) << "after the next run";
  }

  Scenario m_scenario = GetParam();
  int m_tried = 0;
};

TEST_P(CommandFaults, LeaveTheOldStateOrTheNewOne) {
  const long most = dtsdb::test::IsLongForm() ? 40 : 2;
  m_scenario.After();
  for (const Failing& failing : FailingCalls()) {
    m_scenario.Restore();
    const long calls = RunWithFault(m_scenario.Place(), m_scenario.Command(), {failing.kind}).calls;
    std::size_t next = 0;
    for (const long at : dtsdb::test::Spread(calls, most)) {
      // The short form takes one error at each place, the next one in turn.
      const std::size_t errors = dtsdb::test::IsLongForm() ? failing.errors.size() : 1;
      for (std::size_t i = 0; i < errors; ++i) {
        Try(failing, {failing.kind, failing.errors[next++ % failing.errors.size()], at});
      }
    }
  }
  EXPECT_GT(m_tried, 0);
  std::cout << m_scenario.Name() << ": " << m_tried << " calls failed\n";
}

// A disk stays full until somebody makes room.
TEST_P(CommandFaults, FullDiskLeavesTheOldStateOrTheNewOne) {
  const Failing full{CallKind::kWrite, {ENOSPC}};
  m_scenario.After();
  m_scenario.Restore();
  const long calls = RunWithFault(m_scenario.Place(), m_scenario.Command(), {full.kind}).calls;
  for (const long at : dtsdb::test::Spread(calls, dtsdb::test::IsLongForm() ? 40 : 1)) {
    Try(full, {full.kind, ENOSPC, at, true});
  }
}

INSTANTIATE_TEST_SUITE_P(All, CommandFaults, testing::ValuesIn(test::WritingCommands()),
                         [](const auto& about) { return about.param.Name(); });

}  // namespace
}  // namespace dtsdb::tools
