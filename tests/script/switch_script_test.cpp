// Switching operations in runs, from a script and from the command line behind it.

#include "script/switch_script.h"

#include <gtest/gtest.h>

#include "formats/failure.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

/// The events of all runs, a line for each run.
std::string Text(const std::vector<SwitchRun>& runs) {
  std::string text;
  for (const SwitchRun& run : runs) {
    for (const SwitchEvent& event : run) text += SwitchEventText(event) + ";";
    text += "\n";
  }
  return text;
}

TEST(SwitchScript, TheWordRunBeginsAnotherRun) {
  std::vector<SwitchRun> runs(1);
  TakeSwitchScript("s.txt", "# evening\nopen CB 'B 1' # first\r\n\nrun\nout LN #1\n", runs);
  TakeSwitchRuns({"close", "CB", "B 1", "run", "in", "LN", "#1"}, runs);
  EXPECT_EQ(Text(runs), "open CB B 1;\nout LN #1;close CB B 1;\nin LN #1;\n");
}

TEST(SwitchScript, TextOfEventsReadsBackToThem) {
  const SwitchRun events = {{1, false, "B 1"}, {5, true, "#"},        {9, false, "a\"b"}, {10, true, "'x'"},
                            {2, true, ""},     {3, false, "甲\t荷 "}, {4, true, "#1"}};
  std::vector<SwitchRun> runs(1);
  TakeSwitchScript("s.txt", SwitchScriptText(events), runs);
  EXPECT_EQ(Text(runs), Text({events}));
}

TEST(SwitchScript, LinesInGbkAreReadToo) {
  std::vector<SwitchRun> runs(1);
  const QString id = IdFromLiteral("甲开关");
  TakeSwitchScript("s.txt", "open CB " + IdToBytes(id).toStdString() + "\nclose CB 甲开关\n", runs);
  EXPECT_EQ(Text(runs), "open CB 甲开关;close CB 甲开关;\n");
}

TEST(SwitchScript, WrongLinesAreRefusedWithTheirNumber) {
  std::vector<SwitchRun> runs(1);
  try {
    TakeSwitchScript("s.txt", "open CB a\nopen CB\n", runs);
    FAIL() << "was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitUsage);
    EXPECT_STREQ(failure.what(), "s.txt, line 2: behind 'CB' the identity is missing");
  }
}

}  // namespace
}  // namespace dtsdb::tools
