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
    m_codes[result.code] += 1;
    if (!m_scenario.MayEndOtherwise()) ExpectCleanEnd(result);
    if (IsFailedRun(result)) return;
    const Contents now = test::ContentsOf(m_scenario.Place().Path());
    for (const auto& [name, content] : now) {
      EXPECT_TRUE(IsWhole(m_scenario.Before(), name, content) || IsWhole(m_scenario.After(), name, content) ||
                  IsCutShort(name, content))
          << name;
    }
  }

  /// A run of 'dtsdb switch' that fails is reported, with the exit code for that, and what it leaves is written.
  static bool IsFailedRun(const FaultedResult& result) {
    return result.code == 1 && test::Contains(result.err, "run 1: there is not enough memory");
  }

  void ExpectCleanEnd(const FaultedResult& result) {
    if (result.code == -1 && result.err.empty()) {
      ++m_endedByQt;
      return;
    }
    EXPECT_TRUE(result.code == 0 || result.code == 3 || IsFailedRun(result)) << "no end of its own";
    EXPECT_TRUE(result.code == 0 || test::IsOneLine(result.err)) << "not one line";
  }

  /// The log of a command that fails shows how far it has come. A picture that Graphviz hasn't laid out for want of
  /// memory is another one.
  bool IsCutShort(const std::string& name, const std::string& content) {
    if (name == "out.log") return m_scenario.After().at(name).starts_with(content);
    return content.ends_with("</html>\n") || content.ends_with("</svg>\n");
  }

  static bool IsWhole(const Contents& contents, const std::string& name, const std::string& content) {
    const auto found = contents.find(name);
    return found == contents.end() ? content == test::kNothing : found->second == content;
  }

  Scenario m_scenario = GetParam();
  std::map<int, int> m_codes;
  int m_endedByQt = 0;
};

TEST_P(MemoryFaults, EndTheCommandCleanly) {
  m_scenario.After();
  m_scenario.Restore();
  const long calls = RunWithFault(m_scenario.Place(), m_scenario.Command(), {CallKind::kMemory}).calls;
  for (const long at : dtsdb::test::Spread(calls, dtsdb::test::IsLongForm() ? 400 : 2)) {
    Try({CallKind::kMemory, ENOMEM, at, false});
    Try({CallKind::kMemory, ENOMEM, at, true});
  }
  // Qt's calendar, which dates a log, is used by Qt whether there was memory for it or not.
  EXPECT_LE(m_endedByQt, (m_codes[0] + m_codes[3]) / 100);
  std::cout << m_scenario.Name() << ": " << calls << " allocations, " << m_codes[0] << " failures got over, "
            << m_codes[3] << " ends\n";
}

INSTANTIATE_TEST_SUITE_P(All, MemoryFaults, testing::ValuesIn(test::WritingCommands()),
                         [](const auto& about) { return about.param.Name(); });

}  // namespace
}  // namespace dtsdb::tools
