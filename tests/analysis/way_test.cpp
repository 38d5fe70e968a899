// The way from the states of one model to those of another.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "analysis/switching.h"
#include "formats/field_text.h"
#include "script/switch_script.h"
#include "tests/support/messages.h"
#include "tests/topology/random_network.h"
#include "topology/component_types.h"

namespace dtsdb::analysis {
namespace {

using test::ModelBuilder;

/// Puts components of a model into random states.
void PutRandomStates(test::RandomNetwork& network, DTSDB& tables) {
  for (int left = network.Number(0, 40); left > 0; --left) {
    WithComponentType(network.Number(1, 16), [&](const auto& type) {
      auto& table = TableOf<typename std::remove_cvref_t<decltype(type)>::Record>(tables);
      if (table.GetCount() == 0) return;
      const int number = network.Number(0, table.GetCount() - 1);
      const SwitchEvent event = {type.code, network.Chance(50), tools::IdText(table[number].id)};
      tools::PutInState(tables, event, number);
    });
  }
}

/// The events of a script with these events.
std::vector<SwitchEvent> ThroughScript(const std::vector<SwitchEvent>& events) {
  std::vector<tools::SwitchRun> runs(1);
  tools::TakeSwitchScript("way.txt", *ScriptOf(events), runs);
  return runs.front();
}

template <class T>
void ExpectSameStates(DTSDB& a, DTSDB& b, u32 T::*word) {
  for (int i = 0; i < TableOf<T>(a).GetCount(); ++i) {
    RC_ASSERT(((TableOf<T>(a)[i].*word ^ TableOf<T>(b)[i].*word) & ComponentBits<T>()) == 0U);
  }
}

RC_GTEST_PROP(WayBetween, LeadsToTheStatesAndTheTopologyOfTheOther, (unsigned seed, bool withZbrs)) {
  const test::MessageCatcher catcher;
  test::RandomNetwork network(seed, withZbrs);
  RC_ASSERT(network.Model().Validate());
  const Model a = Model::Of(network.Model().Db());
  const Model b = *a.Copy();
  PutRandomStates(network, b.Tables());
  const Result<Way> way = FindWay(a, b);
  RC_ASSERT(way.has_value());
  RC_ASSERT(way->unreachable.empty());
  Result<Switching> session = Switching::Begin(a);
  RC_ASSERT(session.has_value());
  RC_ASSERT(session->Apply(ThroughScript(way->events)).has_value());
  RC_ASSERT(Switching::Begin(b).has_value());
  RC_ASSERT(CompareTopology(a.Tables(), b.Tables()).empty());
  std::apply([&](const auto&... types) { (ExpectSameStates(a.Tables(), b.Tables(), types.word), ...); },
             kComponentTypes);
  RC_ASSERT(FindWay(a, b)->events.empty());
}

/// Unit and load on either side of breaker B, which is open or carries branch Z.
ModelBuilder UnitAndLoad(bool isOpen, const char* load = "D") {
  ModelBuilder model;
  model.Station("S").Kv("K").Bus("M", "K", "N1").Breaker("B", "K", "N1", "N2").Unit("U", "K", "N1");
  model.Load(load, "K", "N2");
  if (isOpen) {
    model.Of<CB>("B").flags |= CB_OPEN;
  } else {
    model.Zbr("Z", "B");
  }
  EXPECT_TRUE(model.Validate());
  return model;
}

std::string WayText(const Way& way) {
  std::string text;
  for (const SwitchEvent& event : way.events) text += EventText(event) + "\n";
  for (const auto& [table, identity, why] : way.unreachable) text += table + " " + identity + ": " + why + "\n";
  return text;
}

TEST(WayBetween, ABranchThatOnlyTheFirstHasGoesOutWithItsBreaker) {
  const test::MessageCatcher catcher;  // the topology warns that no line has the branch's number
  ModelBuilder a = UnitAndLoad(false);
  ModelBuilder b = UnitAndLoad(true);
  const Model from = Model::Of(a.Db());
  const Result<Way> way = FindWay(from, Model::Of(b.Db()));
  ASSERT_TRUE(way);
  EXPECT_EQ(WayText(*way), "open CB B\n");
  ASSERT_TRUE(Switching::Begin(from)->Apply(way->events));
  EXPECT_EQ(a.Of<ZBR>("Z").status, BranchKind<ZBR>::kOut);
}

// The branch comes back with its breaker, as it has gone.
TEST(WayBetween, ABranchThatIsOutWithItsBreakerGoesAndComesWithIt) {
  const test::MessageCatcher catcher;  // the topology warns that no line has the branch's number
  ModelBuilder a = UnitAndLoad(false);
  ModelBuilder b = UnitAndLoad(false);
  const Model from = Model::Of(a.Db());
  const Model to = Model::Of(b.Db());
  ASSERT_TRUE(Switching::Begin(to)->Apply("open CB B"));
  ASSERT_NE(b.Of<ZBR>("Z").tp_status & ZBR_OUT_WITH_BREAKER, 0U);
  EXPECT_EQ(WayText(*FindWay(from, to)), "open CB B\n");
  EXPECT_EQ(WayText(*FindWay(to, from)), "close CB B\n");
}

TEST(WayBetween, WhatOnlyOneModelHasIsReported) {
  ModelBuilder a = UnitAndLoad(true);
  ModelBuilder b = UnitAndLoad(false, "E");
  EXPECT_EQ(WayText(*FindWay(Model::Of(a.Db()), Model::Of(b.Db()))),
            "close CB B\n"
            "LD D: only A has it\nLD E: only B has it\n"
            "ZBR Z: only B has it: no event makes one on its breaker\n");
}

TEST(WayBetween, WhatStandsElsewhereIsReported) {
  ModelBuilder a = UnitAndLoad(true);
  ModelBuilder b = UnitAndLoad(true);
  b.Of<LD>("D").nd = test::Id("N1");
  ASSERT_TRUE(b.Validate());
  EXPECT_EQ(WayText(*FindWay(Model::Of(a.Db()), Model::Of(b.Db()))), "LD D: it stands at other nodes in B\n");
}

}  // namespace
}  // namespace dtsdb::analysis
