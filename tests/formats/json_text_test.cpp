#include "formats/json_text.h"

#include <gtest/gtest.h>

namespace dtsdb::tools {
namespace {

TEST(JsonText, EscapesAndStandsInQuotes) { EXPECT_EQ(JsonText("a\"b\\\n甲"), "\"a\\\"b\\\\\\n甲\""); }

TEST(JsonText, ReplacesWhatIsNoUtf8) { EXPECT_EQ(JsonText("a\xff"), "\"a\xEF\xBF\xBD\""); }

TEST(JsonCell, WritesNumbersByTheirDigits) { EXPECT_EQ(JsonCell(Number{"0.1"}), "0.1"); }

TEST(JsonCell, WritesNumbersThatJsonLacksAsTexts) {
  EXPECT_EQ(JsonCell(Number{"nan"}), "\"nan\"");
  EXPECT_EQ(JsonCell(Number{"-inf"}), "\"-inf\"");
}

TEST(JsonCell, WritesNothingAndTruth) {
  EXPECT_EQ(JsonCell(Cell()), "null");
  EXPECT_EQ(JsonCell(true), "true");
}

}  // namespace
}  // namespace dtsdb::tools
