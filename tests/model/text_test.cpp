// Identity texts are raw bytes; what is real text, and back.
#include "model/text.h"

#include <gtest/gtest.h>

#include "tests/support/id_encoding.h"

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

TEST(TextEncoding, IsGbkUnlessAnotherIsChosen) {
  EXPECT_EQ(CurrentIdEncoding(), IdEncoding::kGbk);
  {
    const EncodingInEffect utf8(IdEncoding::kUtf8);
    EXPECT_EQ(CurrentIdEncoding(), IdEncoding::kUtf8);
    EXPECT_EQ(IdToBytes(IdFromLiteral("北京")), QByteArray("北京"));
  }
  EXPECT_EQ(IdToBytes(IdFromLiteral("北京")), QByteArray(kBeijing));
}

TEST(TextEncoding, HasTwoNames) {
  EXPECT_EQ(FindIdEncoding("gbk"), IdEncoding::kGbk);
  EXPECT_EQ(FindIdEncoding("utf-8"), IdEncoding::kUtf8);
  EXPECT_EQ(FindIdEncoding("UTF-8"), IdEncoding::kUtf8);
  for (const char* const name : {"", "utf", "utf-16", "gb18030", "latin1", "gbk "}) {
    EXPECT_EQ(FindIdEncoding(name), std::nullopt) << name;
  }
  EXPECT_STREQ(NameOf(IdEncoding::kGbk), "GBK");
  EXPECT_STREQ(NameOf(IdEncoding::kUtf8), "UTF-8");
}

TEST(Utf8Text, EveryCharacterGoesThroughUnchanged) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  for (char32_t code = 0; code <= 0x10FFFF; code += code < 0x3000 ? 1 : 61) {
    if (QChar::isSurrogate(code) || code == QChar::ReplacementCharacter) continue;
    const QString text = QString::fromUcs4(&code, 1);
    const std::optional<QString> id = IdFromText(text);
    ASSERT_TRUE(id) << static_cast<unsigned>(code);
    EXPECT_EQ(IdToBytes(*id), text.toUtf8());
    EXPECT_EQ(TextFromId(*id), text);
    EXPECT_EQ(ExactTextFromId(*id), text);
  }
}

TEST(Utf8Text, LettersOfManyTonguesMix) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  const QString text = QString::fromUtf8("\xEF\xBB\xBFŁódź 220kV 北京 ﷺ 😀");
  EXPECT_EQ(TextFromId(IdFromText(text).value()), text) << "a byte order mark is a character like any other";
}

TEST(Utf8Text, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  for (const char* const bytes :
       {"\xC5", "ok\xE5\x8C", "a\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", kBeijing}) {
    const QString id = IdFromBytes(bytes);
    EXPECT_TRUE(TextFromId(id).contains(QChar(0xFFFD))) << bytes;
    EXPECT_EQ(ExactTextFromId(id), std::nullopt) << bytes;
  }
  EXPECT_EQ(TextFromId(IdFromBytes("ok\xC5")), QString::fromUtf8("ok\xEF\xBF\xBD"));
}

TEST(Utf8Text, WhatIsNoTextHasNoIdentity) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  EXPECT_EQ(IdFromText(QString::fromUtf8("a\xEF\xBF\xBD")), std::nullopt) << "the mark of bytes that are no text";
  EXPECT_EQ(IdFromText(QString(QChar(0xD800))), std::nullopt) << "half a surrogate pair";
  EXPECT_EQ(IdFromText(QString(QChar(0xDC00)) + u'a'), std::nullopt);
}

TEST(Text, OfBytesInAnEncodingOfTheirOwn) {
  for (const IdEncoding setting : {IdEncoding::kGbk, IdEncoding::kUtf8}) {
    const EncodingInEffect inEffect(setting);
    EXPECT_EQ(TextFromBytes(kBeijing, IdEncoding::kGbk), QString::fromUtf8("北京"));
    EXPECT_EQ(TextFromBytes("北京", IdEncoding::kUtf8), QString::fromUtf8("北京"));
    EXPECT_EQ(ExactTextFromBytes(kBeijing, IdEncoding::kGbk), QString::fromUtf8("北京"));
    EXPECT_EQ(ExactTextFromBytes(kBeijing, IdEncoding::kUtf8), std::nullopt);
    EXPECT_EQ(ExactTextFromBytes("\xC5", IdEncoding::kUtf8), std::nullopt);
    EXPECT_EQ(ExactTextFromBytes("\xEF\xBF\xBD", IdEncoding::kUtf8), QString::fromUtf8("\xEF\xBF\xBD"));
    EXPECT_EQ(ExactTextFromBytes("\xFF\xFF", IdEncoding::kGbk), std::nullopt);
  }
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
