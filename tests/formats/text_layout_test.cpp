#include "formats/text_layout.h"

#include <gtest/gtest.h>

namespace dtsdb::tools {
namespace {

TEST(TextLayout, LettersTakeOneColumnAndWideCharactersTwo) {
  EXPECT_EQ(DisplayWidth("kV 220"), 6);
  EXPECT_EQ(DisplayWidth("甲站220"), 7);
  EXPECT_EQ(DisplayWidth("ＡＢ，。"), 8);
  EXPECT_EQ(DisplayWidth("한글"), 4);
  EXPECT_EQ(DisplayWidth("Ωé"), 2);
  EXPECT_EQ(DisplayWidth("𠀀"), 2);
  EXPECT_EQ(DisplayWidth(""), 0);
}

TEST(TextLayout, CombiningMarksTakeNoColumn) { EXPECT_EQ(DisplayWidth("e\xCC\x81"), 1); }

TEST(TextLayout, PadsByColumnsNotByBytes) {
  EXPECT_EQ(Padded("甲", 4), "甲  ");
  EXPECT_EQ(Padded("甲", 4, true), "  甲");
  EXPECT_EQ(Padded("甲乙丙", 4), "甲乙丙");
}

TEST(TextLayout, ControlCharactersBecomeVisible) {
  EXPECT_EQ(OneLine("a\nb\r\tc"), "a\\nb\\r\\tc");
  EXPECT_EQ(OneLine("\033[31m"), "\\x1B[31m");
  EXPECT_EQ(OneLine("\x7F"), "\\x7F");
}

TEST(TextLayout, SeparatorsOfLinesAndTurnedTextBecomeVisible) {
  EXPECT_EQ(OneLine("a\xE2\x80\xA8"), "a\\u2028");
  EXPECT_EQ(OneLine("a\xE2\x80\xAE"), "a\\u202E");
  EXPECT_EQ(OneLine("\xE2\x81\xA6"), "\\u2066");
}

TEST(TextLayout, WhatTurnsTextIsKnownByItsNumber) {
  std::vector<int> turning;
  for (int c = 0; c <= 0xFFFF; ++c) {
    if (TurnsText(static_cast<char16_t>(c))) turning.push_back(c);
  }
  EXPECT_EQ(turning, (std::vector<int>{0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066, 0x2067,
                                       0x2068, 0x2069}));
}

TEST(TextLayout, BrokenUtf8BecomesAReplacementCharacter) { EXPECT_EQ(OneLine("a\xFF"), "a\xEF\xBF\xBD"); }

TEST(TextLayout, QuotesAreShortenedWhenVeryLong) {
  EXPECT_EQ(Quoted("甲"), "'甲'");
  EXPECT_EQ(Quoted(std::string(100, 'x')), "'" + std::string(60, 'x') + "...'");
}

TEST(TextLayout, CountsOneThingAndSeveral) {
  EXPECT_EQ(Counted(0, "row"), "0 rows");
  EXPECT_EQ(Counted(1, "row"), "1 row");
  EXPECT_EQ(Counted(2, "row"), "2 rows");
}

}  // namespace
}  // namespace dtsdb::tools
