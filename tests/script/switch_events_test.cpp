// Switching operations in words.

#include "script/switch_events.h"

#include <gtest/gtest.h>

#include "formats/failure.h"
#include "script/script_lines.h"
#include "tests/support/model_builder.h"
#include "topology/component_types.h"

namespace dtsdb::tools {
namespace {

using Words = std::vector<std::string>;

/// The message of a call that must fail as wrong usage.
template <class Call>
std::string Refusal(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitUsage);
    return failure.what();
  }
  return "";
}

std::string RefusalOf(const Words& words) {
  return Refusal([&] {
    std::size_t at = 0;
    TakeSwitchEvent(words, at);
  });
}

TEST(SwitchEvents, EveryTypeHasItsWordsBothWays) {
  std::set<int> types;
  std::apply([&](const auto&... type) { (types.insert(type.code), ...); }, kComponentTypes);
  for (const int type : types) {
    for (const bool on : {true, false}) {
      const Words words = SplitWords(SwitchEventText({type, on, "X"}));
      std::size_t at = 0;
      const SwitchEvent event = TakeSwitchEvent(words, at);
      EXPECT_EQ(event.type, type);
      EXPECT_EQ(event.on, on);
      EXPECT_EQ(event.id, "X");
      EXPECT_EQ(at, words.size());
    }
  }
}

TEST(SwitchEvents, AreTakenOneBehindTheOther) {
  const Words words = {"open", "CB", "B 1", "break", "XF", "T", "to", "on", "LD", "D"};
  std::size_t at = 0;
  EXPECT_EQ(SwitchEventText(TakeSwitchEvent(words, at)), "open CB B 1");
  EXPECT_EQ(SwitchEventText(TakeSwitchEvent(words, at)), "break XF T to");
  EXPECT_EQ(SwitchEventText(TakeSwitchEvent(words, at)), "on LD D");
  EXPECT_EQ(at, words.size());
}

TEST(SwitchEvents, WrongWordsAreRefusedWithTheRightOnes) {
  EXPECT_EQ(RefusalOf({"opn", "CB", "B"}), "'opn' is not a verb (open, close, off, on, out, in, break, join)");
  EXPECT_EQ(RefusalOf({"open", "LN", "L"}), "'LN' is not a table that goes with 'open' (CB)");
  EXPECT_EQ(RefusalOf({"off", "CB", "B"}), "'CB' is not a table that goes with 'off' (UN, LD, CP)");
  EXPECT_EQ(RefusalOf({"join", "LN", "L", "middle"}), "'middle' is not an end (from, to)");
  EXPECT_EQ(RefusalOf({"join", "LN", "L"}), "behind 'L' an end (from, to) is missing");
  EXPECT_EQ(RefusalOf({"open", "CB"}), "behind 'CB' the identity is missing");
  EXPECT_TRUE(RefusalOf({}).starts_with("behind the event a verb"));
}

TEST(SwitchEvents, UnknownIdentityGetsTheNearest) {
  dtsdb::test::ModelBuilder m;
  m.Put(CB(dtsdb::test::Id("联络"))).Put(CB(dtsdb::test::Id("Breaker 7")));
  EXPECT_EQ(Refusal([&] {
              RequireComponent(m.Db(), {1, true, "Braker 7"});
            }),
            "table CB has no record 'Braker 7'; did you mean Breaker 7?");
  EXPECT_EQ(ComponentNumber(m.Db(), {1, true, "联络"}), m.Number<CB>("联络"));
  EXPECT_EQ(ComponentNumber(m.Db(), {1, true, "\xF0\x9F\x98\x80"}), -1) << "no identity can be that";
}

TEST(SwitchEvents, StatesAreReportedAndSet) {
  dtsdb::test::ModelBuilder m;
  m.Put(XF(dtsdb::test::Id("T")));
  const SwitchEvent open{14, false, "T"};
  const SwitchEvent closed{14, true, "T"};
  EXPECT_TRUE(Stands(m.Db(), closed, 0));
  PutInState(m.Db(), open, 0);
  EXPECT_EQ(m.Of<XF>("T").status, 8U);
  EXPECT_TRUE(Stands(m.Db(), open, 0));
  EXPECT_FALSE(Stands(m.Db(), closed, 0));
}

}  // namespace
}  // namespace dtsdb::tools
