// Identity texts are raw bytes; what is real text, and back.
#include "model/text.h"

#include <gtest/gtest.h>

namespace dtsdb::test {
namespace {

const char* const kBeijing = "\xB1\xB1\xBE\xA9";  // 北京 in GBK

TEST(Text, EveryByteBecomesOneCharacterAndComesBack) {
  QByteArray bytes;
  for (int i = 0; i < 256; ++i) bytes.append(static_cast<char>(i));
  const QString id = IdFromBytes(bytes);
  ASSERT_EQ(id.size(), 256);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(id[i].unicode(), i);
  EXPECT_EQ(IdToBytes(id), bytes);
}

TEST(Text, APlainPointerEndsAtItsNul) {
  EXPECT_EQ(IdFromBytes("ab"), QStringLiteral("ab"));
  EXPECT_EQ(IdFromBytes(kBeijing).size(), 4);
}

TEST(Text, NullStaysNullAndEmptyStaysEmpty) {
  EXPECT_TRUE(IdFromBytes(static_cast<const char*>(nullptr)).isNull());
  EXPECT_TRUE(IdFromBytes(QByteArray()).isNull());
  EXPECT_FALSE(IdFromBytes("").isNull());
  EXPECT_FALSE(IdFromBytes(QByteArray("")).isNull());
  EXPECT_TRUE(TextFromId(QString()).isNull());
  EXPECT_FALSE(TextFromId(QStringLiteral("")).isNull());
  EXPECT_TRUE(IdFromText(QString())->isNull());
  EXPECT_FALSE(IdFromText(QStringLiteral(""))->isNull());
  EXPECT_TRUE(ExactTextFromId(QString())->isNull());
}

TEST(Text, GbkBytesBecomeRealTextAndComeBack) {
  const QString id = IdFromBytes(kBeijing);
  EXPECT_EQ(TextFromId(id), QString::fromUtf8("北京"));
  EXPECT_EQ(ExactTextFromId(id), QString::fromUtf8("北京"));
  EXPECT_EQ(IdFromText(QString::fromUtf8("北京")), id);
  EXPECT_EQ(IdFromLiteral("北京"), id);
}

TEST(Text, AsciiAndGbkMix) {
  const QString id = IdFromLiteral("220kV北京1#母线");
  EXPECT_EQ(id.size(), 5 + 4 + 2 + 4);
  EXPECT_EQ(TextFromId(id), QString::fromUtf8("220kV北京1#母线"));
}

// Every two-byte code that stands for a character comes back as the same two bytes; the others are refused.
TEST(Text, AllTwoByteCodesGoThroughUnchangedOrAreRefused) {
  int valid = 0;
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail), 0};
      const QString id = IdFromBytes(bytes);
      const std::optional<QString> text = ExactTextFromId(id);
      if (!text) continue;
      ++valid;
      EXPECT_EQ(text->size(), 1);
      EXPECT_EQ(IdFromText(*text), id);
      EXPECT_EQ(TextFromId(id), *text);
    }
  }
  EXPECT_GE(valid, 21886) << "the characters of GBK";
  EXPECT_LE(valid, 23940) << "the codes of GBK";
}

TEST(Text, BytesThatAreNoGbkBecomeReplacementCharacters) {
  for (const char* bytes : {"\xB1", "a\xFF", "\xB1\x20", "\x81\x7F", "ok\xFE"}) {
    const QString id = IdFromBytes(bytes);
    EXPECT_TRUE(TextFromId(id).contains(QChar(0xFFFD))) << id.toStdString();
    EXPECT_EQ(ExactTextFromId(id), std::nullopt);
  }
}

TEST(Text, OneUnfinishedCharacterIsOneReplacementCharacter) {
  EXPECT_EQ(TextFromId(IdFromBytes("ok\xB1")), QString::fromUtf8("ok\xEF\xBF\xBD"));
}

TEST(Text, DecodingTwiceGivesTheSame) {
  const QString broken = IdFromBytes("\xB1");
  EXPECT_EQ(TextFromId(broken), TextFromId(broken)) << "an unfinished character must not wait for the next call";
  EXPECT_EQ(TextFromId(IdFromBytes(kBeijing)), QString::fromUtf8("北京"));
}

TEST(Text, WhatGbkCanNotHoldIsRefused) {
  for (const char* text : {"😀", "ﷺ", "a한b", "\xEF\xBF\xBD"}) {
    EXPECT_EQ(IdFromText(QString::fromUtf8(text)), std::nullopt) << text;
    EXPECT_TRUE(IdFromLiteral(text).isNull()) << text;
  }
  EXPECT_EQ(IdFromText(QString(QChar(0xD800))), std::nullopt) << "half a surrogate pair";
}

TEST(Text, CharactersThatAreNoBytesBecomeQuestionMarksInBytes) {
  EXPECT_EQ(IdToBytes(QString::fromUtf8("北a")), QByteArray("?a"));
}

TEST(Text, PrintsLinesInTheEncodingOfTheTerminal) {
  testing::internal::CaptureStdout();
  PrintText(QStringLiteral("plain\n"));
  PrintText(QString());
  PrintText(QStringLiteral("without a line feed"));
  PrintText(QStringLiteral("next"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "plain\nwithout a line feed\nnext\n");
  EXPECT_EQ(TerminalBytes(QStringLiteral("plain")), QByteArray("plain"));
}

}  // namespace
}  // namespace dtsdb::test
