#include "formats/field_text.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <bit>
#include <cmath>
#include <limits>

#include "model/records.h"

namespace dtsdb::tools {
namespace {

template <class V>
V ReadBack(V value) {
  V back{};
  EXPECT_EQ(ParseNumber(NumberText(value), back), "");
  return back;
}

template <class V>
std::string Refusal(const char* text) {
  V value{7};
  const std::string wrong = ParseNumber(text, value);
  EXPECT_EQ(value, V{7}) << "a refused text must not change the value";
  return wrong;
}

TEST(FieldText, BytesAreNumbersNotCharacters) {
  EXPECT_EQ(NumberText(u8{65}), "65");
  EXPECT_EQ(NumberText(i8{-1}), "-1");
}

TEST(FieldText, NumbersAreAsShortAsTheyCanBe) {
  EXPECT_EQ(NumberText(0.1F), "0.1");
  EXPECT_EQ(NumberText(0.1), "0.1");
  EXPECT_EQ(NumberText(230.0F), "230");
}

TEST(FieldText, FloatsKeepNegativeZeroInfinityAndDenormals) {
  EXPECT_TRUE(std::signbit(ReadBack(-0.0F)));
  EXPECT_TRUE(std::signbit(ReadBack(-0.0)));
  EXPECT_TRUE(std::isnan(ReadBack(std::numeric_limits<f32>::quiet_NaN())));
  EXPECT_TRUE(std::isnan(ReadBack(std::numeric_limits<f64>::quiet_NaN())));
  EXPECT_EQ(ReadBack(-std::numeric_limits<f32>::infinity()), -std::numeric_limits<f32>::infinity());
  EXPECT_EQ(ReadBack(std::numeric_limits<f64>::infinity()), std::numeric_limits<f64>::infinity());
  EXPECT_EQ(ReadBack(std::numeric_limits<f32>::denorm_min()), std::numeric_limits<f32>::denorm_min());
  EXPECT_EQ(ReadBack(std::numeric_limits<f64>::denorm_min()), std::numeric_limits<f64>::denorm_min());
  EXPECT_EQ(ReadBack(std::numeric_limits<f32>::max()), std::numeric_limits<f32>::max());
}

RC_GTEST_PROP(FieldText, EveryFloatReadsBackBitForBit, (quint32 bits)) {
  const auto value = std::bit_cast<f32>(bits);
  RC_PRE(!std::isnan(value));
  RC_ASSERT(std::bit_cast<quint32>(ReadBack(value)) == bits);
}

RC_GTEST_PROP(FieldText, EveryDoubleReadsBackBitForBit, (quint64 bits)) {
  const auto value = std::bit_cast<f64>(bits);
  RC_PRE(!std::isnan(value));
  RC_ASSERT(std::bit_cast<quint64>(ReadBack(value)) == bits);
}

TEST(FieldText, WholeNumbersReachTheLimitsOfTheirType) {
  EXPECT_EQ(ReadBack(std::numeric_limits<i32>::min()), std::numeric_limits<i32>::min());
  EXPECT_EQ(ReadBack(std::numeric_limits<u32>::max()), std::numeric_limits<u32>::max());
  EXPECT_EQ(ReadBack(std::numeric_limits<i8>::min()), std::numeric_limits<i8>::min());
}

TEST(FieldText, RefusesWhatIsNoNumber) {
  EXPECT_EQ(Refusal<i32>("1x"), "'1x' is no whole number");
  EXPECT_EQ(Refusal<i32>(" 1"), "' 1' is no whole number");
  EXPECT_EQ(Refusal<i32>("1.0"), "'1.0' is no whole number");
  EXPECT_EQ(Refusal<i32>("+1"), "'+1' is no whole number");
  EXPECT_EQ(Refusal<f32>("1,5"), "'1,5' is no number");
  EXPECT_EQ(Refusal<f64>("--1"), "'--1' is no number");
}

TEST(FieldText, RefusesWhatIsOutOfRange) {
  EXPECT_EQ(Refusal<u8>("256"), "'256' is out of range, 0 to 255");
  EXPECT_EQ(Refusal<u32>("-1"), "'-1' is out of range, 0 to 4294967295");
  EXPECT_EQ(Refusal<i8>("128"), "'128' is out of range, -128 to 127");
  EXPECT_EQ(Refusal<i32>("99999999999999999999"), "'99999999999999999999' is out of range, -2147483648 to 2147483647");
  EXPECT_EQ(Refusal<f32>("1e39"), "'1e39' is out of range for a number of 4 bytes");
  EXPECT_EQ(Refusal<f64>("1e999"), "'1e999' is out of range for a number of 8 bytes");
}

TEST(FieldText, KeysNameARecord) {
  EXPECT_EQ(KeyText(CB(IdFromLiteral("甲开关"))), "甲开关");
  EXPECT_EQ(KeyText(BS(12)), "12");
  EXPECT_EQ(KeyText(R_KV_CB(IdFromLiteral("甲站220"), IdFromLiteral("甲开关"))), "甲站220 > 甲开关");
  EXPECT_STREQ(TableOfKind(KIND_CB).KeyFields().front().name, "id");
  EXPECT_STREQ(TableOfKind(KIND_R_KV_CB).KeyFields().front().name, "kv_id");
}

}  // namespace
}  // namespace dtsdb::tools
