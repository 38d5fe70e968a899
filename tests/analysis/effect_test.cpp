// What switching does to the supply, and the way back.
#include "analysis/effect.h"

#include <gtest/gtest.h>

#include <limits>

#include "analysis/switching.h"
#include "tests/support/model_builder.h"

namespace dtsdb::analysis {
namespace {

using test::ModelBuilder;

/// Station A with a unit, station B with two loads, and station C with a unit and a load, joined in a row by lines. In
/// A breaker Q carries the zero-impedance branch Z.
///
///     U a ---[Q Z]--- c ====L==== b D, E ====M==== d V, F
class EffectTest : public testing::Test {
 protected:
  EffectTest() {
    m.Station("A").Kv("KA").Unit("U", "KA", "a").Bus("BA", "KA", "a").Load("G", "KA", "c");
    m.Breaker("Q", "KA", "a", "c").Zbr("Z", "Q");
    m.Station("B").Kv("KB").Bus("BB", "KB", "b").Load("D", "KB", "b").Load("E", "KB", "b");
    m.Station("C").Kv("KC").Bus("BC", "KC", "d").Unit("V", "KC", "d").Load("F", "KC", "d");
    m.Line("L", "DV", "A", "B", "KA", "KB", "c", "b").Line("M", "DV", "B", "C", "KB", "KC", "b", "d");
    SetPower("D", 120, 22);
    SetPower("E", 30.5F, -2);
    EXPECT_TRUE(m.Validate());
  }

  void SetPower(const char* load, float p, float q) {
    m.Of<LD>(load).p = p;
    m.Of<LD>(load).q = q;
  }

  Switching Begin(Rules rules = Rules::kCareful) { return std::move(*Switching::Begin(Model::Of(m.Db()), rules)); }

  static void Do(Switching& session, const std::vector<const char*>& events) {
    for (const char* event : events) {
      const Result<Outcome> outcome = session.Apply(event);
      ASSERT_TRUE(outcome.has_value()) << event << ": " << outcome.error().message;
    }
  }

  /// The same in a session of its own.
  void Prepare(const std::vector<const char*>& events) {
    Switching session = Begin();
    Do(session, events);
  }

  /// Such as "LD D dead, LD E dead".
  static std::string Text(const std::vector<Supplied>& things) {
    std::string text;
    for (const Supplied& thing : things) {
      text += (text.empty() ? "" : "; ") + thing.table + " " + thing.identity + " " + thing.state;
    }
    return text;
  }

  /// Such as "split 0 > 0 1".
  static std::string Text(const std::vector<IslandChange>& changes) {
    std::string text;
    for (const IslandChange& change : changes) {
      text += (text.empty() ? "" : "; ") + std::string(KindName(change.kind));
      for (const int island : change.before) text += " " + std::to_string(island);
      text += " >";
      for (const int island : change.after) text += " " + std::to_string(island);
    }
    return text;
  }

  ModelBuilder m;
};

TEST_F(EffectTest, NamesWhatLostSupplyWithItsPower) {
  Switching session = Begin();
  Do(session, {"off UN U", "off UN V"});
  const Effect effect = session.EffectSoFar();
  EXPECT_EQ(Text(effect.lost),
            "ST A dead; ST B dead; ST C dead; BUS BA dead; BUS BB dead; BUS BC dead; UN U switched off; "
            "UN V switched off; LD D dead; LD E dead; LD F dead; LD G dead");
  EXPECT_TRUE(effect.regained.empty());
  EXPECT_EQ(Text(effect.islands), "died 0 >");
  const SupplyTotals totals = TotalsOf(effect.lost);
  EXPECT_EQ(totals.stations, 3);
  EXPECT_EQ(totals.buses, 3);
  EXPECT_EQ(totals.units, 2);
  EXPECT_EQ(totals.loads, 4);
  EXPECT_DOUBLE_EQ(totals.p, 150.5);
  EXPECT_DOUBLE_EQ(totals.q, 20);
}

TEST_F(EffectTest, ThingsBearStationAndLevel) {
  Switching session = Begin();
  Do(session, {"off LD D"});
  const Effect effect = session.EffectSoFar();
  ASSERT_EQ(Text(effect.lost), "LD D switched off");
  EXPECT_EQ(effect.lost[0].station, "B");
  EXPECT_EQ(effect.lost[0].level, "KB");
  EXPECT_EQ(effect.lost[0].p, 120);
  EXPECT_EQ(effect.lost[0].q, 22);
}

TEST_F(EffectTest, NamesWhatRegainedSupplyInItsStateBefore) {
  Prepare({"off UN U", "off UN V"});
  Switching session = Begin();
  Do(session, {"on UN V"});
  const Effect effect = session.EffectSoFar();
  EXPECT_TRUE(effect.lost.empty());
  EXPECT_EQ(Text(effect.regained),
            "ST A dead; ST B dead; ST C dead; BUS BA dead; BUS BB dead; BUS BC dead; UN V switched off; "
            "LD D dead; LD E dead; LD F dead; LD G dead");
  EXPECT_EQ(Text(effect.islands), "arose > 0");
}

TEST_F(EffectTest, NamesIslandsThatSplitAndJoin) {
  {
    Switching session = Begin();
    Do(session, {"out LN L"});
    EXPECT_EQ(Text(session.EffectSoFar().islands), "split 0 > 0 1");
    EXPECT_TRUE(session.EffectSoFar().lost.empty());
  }
  Switching session = Begin();
  Do(session, {"in LN L"});
  EXPECT_EQ(Text(session.EffectSoFar().islands), "joined 0 1 > 0");
}

TEST_F(EffectTest, OfSwitchingThereAndBackIsNothing) {
  Switching session = Begin();
  Do(session, {"open CB Q", "off UN V", "on UN V", "close CB Q"});
  const Effect effect = session.EffectSoFar();
  EXPECT_TRUE(effect.lost.empty());
  EXPECT_TRUE(effect.regained.empty());
  EXPECT_TRUE(effect.islands.empty());
  EXPECT_TRUE(session.WayBack().empty());
}

TEST_F(EffectTest, PowerThatIsNotFiniteCountsAsNothing) {
  SetPower("D", std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity());
  Switching session = Begin();
  Do(session, {"out LN L", "out LN M"});
  const SupplyTotals totals = TotalsOf(session.EffectSoFar().lost);
  EXPECT_EQ(totals.loads, 2);
  EXPECT_DOUBLE_EQ(totals.p, 30.5);
  EXPECT_DOUBLE_EQ(totals.q, -2);
}

TEST_F(EffectTest, IsAPartOfTryingOut) {
  const Result<WhatIf> tried = TryOut(Model::Of(m.Db()), {*ParseEvent("out LN L"), *ParseEvent("out LN M")});
  ASSERT_TRUE(tried.has_value());
  EXPECT_EQ(Text(tried->effect.lost), "ST B dead; BUS BB dead; LD D dead; LD E dead");
}

/// The way back, played on sessions of their own. Each test names what was switched before, and what then.
class WayBackTest : public EffectTest {
 protected:
  /// Switches `events` in a session, and back by the script. The records must then be as they were.
  void ExpectBack(const std::vector<const char*>& events, const std::string& script, Rules rules = Rules::kCareful) {
    Prepare({});  // so that both pictures are those of a full run
    const Result<Model> before = Model::Of(m.Db()).Copy();
    Result<std::string> back;
    {
      Switching session = Begin(rules);
      Do(session, events);
      back = ScriptOf(session.WayBack());
      ASSERT_TRUE(back.has_value());
      EXPECT_EQ(*back, script);
    }
    Switching session = Begin(rules);
    std::vector<SwitchEvent> read;
    for (std::size_t at = 0; at < back->size(); at = back->find('\n', at) + 1) {
      const Result<SwitchEvent> event = ParseEvent(back->substr(at, back->find('\n', at) - at));
      ASSERT_TRUE(event.has_value()) << event.error().message;
      read.push_back(*event);
    }
    ASSERT_TRUE(session.Apply(read).has_value());
    EXPECT_TRUE(CompareTopology(m.Db(), before->Tables()).empty());
    ExpectStates<CB>(before->Tables(), &CB::flags);
    ExpectStates<UN>(before->Tables(), &UN::status,
                     SHUNT_OFF | SHUNT_ISOLATED);  // the mark of a reference goes by the runs
    ExpectStates<LD>(before->Tables(), &LD::status);
    ExpectStates<LN>(before->Tables(), &LN::status);
    ExpectStates<ZBR>(before->Tables(), &ZBR::status);
    ExpectStates<ZBR>(before->Tables(), &ZBR::tp_status);
  }

  template <class T>
  void ExpectStates(DTSDB& before, u32 T::*word, u32 bits = ~0U) {
    for (int i = 0; i < TableOf<T>(before).GetCount(); ++i) {
      EXPECT_EQ(TableOf<T>(m.Db())[i].*word & bits, TableOf<T>(before)[i].*word & bits) << T::kTableName << " " << i;
    }
  }
};

TEST_F(WayBackTest, RestoresEachKindOfState) {
  ExpectBack({"off UN V", "off LD D", "out LN L", "break LN M to"}, "on UN V\non LD D\nin LN L\njoin LN M to\n");
}

TEST_F(WayBackTest, BreakerBringsItsZeroImpedanceBranchBack) { ExpectBack({"open CB Q"}, "close CB Q\n"); }

TEST_F(WayBackTest, BreakerTakesItsZeroImpedanceBranchOutAgain) {
  Prepare({"open CB Q"});
  ExpectBack({"close CB Q"}, "open CB Q\n");
}

TEST_F(WayBackTest, BranchThatWasOutByItselfIsSoAgain) {
  Prepare({"out ZBR Z", "open CB Q"});
  ExpectBack({"close CB Q", "in ZBR Z"}, "open CB Q\nout ZBR Z\n");
}

TEST_F(WayBackTest, BranchThatWasSwitchedItselfGoesWithItsBreakerAgain) {
  Prepare({"open CB Q"});
  ExpectBack({"in ZBR Z"}, "open CB Q\n");
}

TEST_F(WayBackTest, MarkThatAnEventHasTakenIsRestored) {
  Prepare({"open CB Q"});
  ExpectBack({"in ZBR Z", "out ZBR Z"}, "in ZBR Z\nopen CB Q\n");
}

TEST_F(WayBackTest, ByTheRulesAsTheyStandLeavesTheBranchAlone) {
  ExpectBack({"open CB Q"}, "close CB Q\n", Rules::kAsIs);
}

TEST(ScriptOf, QuotesIdentitiesThatNeedIt) {
  const std::vector<SwitchEvent> events = {
      {1, false, "Line 1"}, {5, true, "a \"b\" #"}, {9, false, "'x"}, {2, true, ""}};
  const Result<std::string> script = ScriptOf(events);
  ASSERT_TRUE(script.has_value()) << script.error().message;
  EXPECT_EQ(*script, "open CB \"Line 1\"\nin LN \"a \"\"b\"\" #\"\nbreak LN \"'x\" from\non UN \"\"\n");
}

TEST(ScriptOf, RefusesWhatNoScriptCanHold) {
  const Result<std::string> script = ScriptOf({{1, false, "a\nb"}});
  ASSERT_FALSE(script.has_value());
  EXPECT_EQ(script.error().code, ErrorCode::kUsage);
  EXPECT_EQ(script.error().message, "'a\\nb' has a line feed, and can't stand in a script");
  EXPECT_FALSE(ScriptOf({{1, false, "\xEF\xBF\xBD"}}).has_value());
}

}  // namespace
}  // namespace dtsdb::analysis
