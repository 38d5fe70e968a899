// The n-th allocation of a command fails, or all from it on. The command ends with one line, and leaves what it writes
// as it was or whole. The short form takes a few of the allocations, FAULTS=all in the environment 400 of each command.

#include <gtest/gtest.h>

#include <cerrno>
#include <iostream>

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

class MemoryFaults : public testing::TestWithParam<Scenario> {
 protected:
  void SetUp() override { m_scenario.Prepare(); }

  void Try(const Fault& fault) {
    m_scenario.Restore();
    const FaultedResult result = RunWithFault(m_scenario.Place(), m_scenario.Command(), fault);
    if (!result.failed) return;
    SCOPED_TRACE(testing::Message() << m_scenario.Name() << ": allocation " << fault.at
                                    << (fault.stays ? " and all behind it fail" : " fails") << ", exit code "
                                    << result.code << ", error output: " << result.err);
    const Contents now = test::ContentsOf(m_scenario.Place().Path());
    for (const auto& [name, content] : now) {
      EXPECT_TRUE(IsWhole(m_scenario.Before(), name, content) || IsWhole(m_scenario.After(), name, content)) << name;
    }
    EXPECT_TRUE(result.code == 0 || result.code == 3) << "no end of its own";
    EXPECT_TRUE(result.code == 0 || test::IsOneLine(result.err)) << "not one line";
    m_codes[result.code] += 1;
  }

  static bool IsWhole(const Contents& contents, const std::string& name, const std::string& content) {
    const auto found = contents.find(name);
    return found == contents.end() ? content == test::kNothing : found->second == content;
  }

  Scenario m_scenario = GetParam();
  std::map<int, int> m_codes;
};

TEST_P(MemoryFaults, EndTheCommandCleanly) {
  m_scenario.After();
  m_scenario.Restore();
  const long calls = RunWithFault(m_scenario.Place(), m_scenario.Command(), {CallKind::kMemory}).calls;
  for (const long at : dtsdb::test::Spread(calls, dtsdb::test::IsLongForm() ? 400 : 2)) {
    Try({CallKind::kMemory, ENOMEM, at, false});
    Try({CallKind::kMemory, ENOMEM, at, true});
  }
  std::cout << m_scenario.Name() << ": " << calls << " allocations, " << m_codes[0] << " failures got over, "
            << m_codes[3] << " ends\n";
}

INSTANTIATE_TEST_SUITE_P(All, MemoryFaults, testing::ValuesIn(test::WritingCommands()),
                         [](const auto& about) { return about.param.Name(); });

}  // namespace
}  // namespace dtsdb::tools
