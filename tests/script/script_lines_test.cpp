// Scripts as lines of words: quotes, notes and line ends, the same for edit scripts and switch scripts.

#include "script/script_lines.h"

#include <gtest/gtest.h>

#include <utility>

namespace dtsdb::tools {
namespace {

using Words = std::vector<std::string>;

/// The message on a line that can't be split.
std::string Refusal(const char* line) {
  try {
    SplitWords(line);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitUsage);
    return failure.what();
  }
  return "";
}

TEST(ScriptLines, AreSplitAtBlanksOutsideQuotes) {
  EXPECT_EQ(SplitWords("  open\tCB  B1 \r"), (Words{"open", "CB", "B1"}));
  EXPECT_EQ(SplitWords("open CB 'Breaker 7'"), (Words{"open", "CB", "Breaker 7"}));
  EXPECT_EQ(SplitWords("open CB \"it's\" ''"), (Words{"open", "CB", "it's", ""}));
  EXPECT_EQ(SplitWords(""), Words());
}

TEST(ScriptLines, DoubleQuotesStandAnywhereInAWord) {
  EXPECT_EQ(SplitWords(R"(id="a b"c "d e")"), (Words{"id=a bc", "d e"}));
  EXPECT_EQ(SplitWords(R"('a 'b" c")"), (Words{"a b c"}));
}

TEST(ScriptLines, SingleQuotesWithinAWordAreCharacters) {
  EXPECT_EQ(SplitWords("O'Hara id='x'"), (Words{"O'Hara", "id='x'"}));
}

TEST(ScriptLines, ADoubledQuoteStandsForOne) {
  EXPECT_EQ(SplitWords(R"("a ""b""")"), (Words{R"(a "b")"}));
  EXPECT_EQ(SplitWords("'it''s' x"), (Words{"it's", "x"}));
  EXPECT_EQ(SplitWords(R"("""" '''')"), (Words{"\"", "'"}));
}

TEST(ScriptLines, NotesBeginTheLineOrStandApart) {
  EXPECT_EQ(SplitWords("open CB B#1 # a note"), (Words{"open", "CB", "B#1"}));
  EXPECT_EQ(SplitWords("open CB #1 #"), (Words{"open", "CB", "#1"})) << "an identity may begin with #";
  EXPECT_EQ(SplitWords("open CB '#' \"# 2\""), (Words{"open", "CB", "#", "# 2"}));
  EXPECT_EQ(SplitWords(" #only a note"), Words());
  EXPECT_EQ(SplitWords("#\r"), Words());
}

TEST(ScriptLines, AnOpenQuoteIsRefused) {
  for (const char* line : {"open CB 'B", "remove CB \"a b", "id=\"", "'''", "\"a\"\""}) {
    EXPECT_EQ(Refusal(line), "a quote isn't closed") << line;
  }
}

TEST(ScriptLines, AreNumberedWhateverTheirEnds) {
  std::vector<std::pair<int, std::string>> lines;
  ForEachLine("s.txt",
              "\xEF\xBB\xBF"
              "a\r\n\nb",
              kExitFile, [&](int number, std::string_view line) { lines.emplace_back(number, line); });
  EXPECT_EQ(lines, (std::vector<std::pair<int, std::string>>{{1, "a\r"}, {2, ""}, {3, "b"}}));
}

TEST(ScriptLines, FailuresNameFileAndLine) {
  try {
    ForEachLine("s.txt", "a\n'b\n", kExitFile, [](int, std::string_view line) { SplitWords(line); });
    FAIL() << "was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitFile);
    EXPECT_STREQ(failure.what(), "s.txt, line 2: a quote isn't closed");
  }
}

}  // namespace
}  // namespace dtsdb::tools
