// Events tried out on a viewer's copy, taken back and tried in another order: the copy is always what a full run gives.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "analysis/careful_runner.h"
#include "formats/field_text.h"
#include "page/what_if.h"
#include "page/what_if_copies.h"
#include "tests/support/messages.h"
#include "tests/topology/random_network.h"
#include "topology/component_types.h"

namespace dtsdb::page {
namespace {

using analysis::Model;
using dtsdb::test::MessageCatcher;
using dtsdb::test::RandomNetwork;
using Events = std::vector<SwitchEvent>;

/// A state of a random network, as a viewer sees it.
std::shared_ptr<const LiveState> StateOf(RandomNetwork& network) {
  RC_ASSERT(network.Model().Validate());
  const auto live = LiveModel::Show(Model::Of(network.Model().Db()), {});
  RC_ASSERT(live.has_value());
  return (*live)->Now();
}

/// Any change of any component of the network.
SwitchEvent AnyEvent(RandomNetwork& network) {
  SwitchEvent event{1, false, "no such breaker"};
  WithComponentType(network.Number(1, 16), [&](const auto& type) {
    auto& table = network.Model().Table<typename std::remove_cvref_t<decltype(type)>::Record>();
    if (table.GetCount() == 0) return;
    const auto& component = table[network.Number(0, table.GetCount() - 1)];
    event = {type.code, network.Chance(40), tools::IdText(component.id)};
  });
  return event;
}

/// What a person does next with a list: goes on, takes back, leaves one out, begins anew.
void Edit(RandomNetwork& network, Events& events) {
  const int last = static_cast<int>(events.size()) - 1;
  if (network.Chance(60) || events.empty()) {
    events.push_back(AnyEvent(network));
  } else if (network.Chance(50)) {
    events.pop_back();
  } else if (network.Chance(80)) {
    events.erase(events.begin() + network.Number(0, last));
  } else {
    events = {AnyEvent(network)};
  }
}

/// A copy that was made at once, with the same events and one run.
Model FreshCopy(const std::shared_ptr<const LiveState>& state, const Events& events) {
  const Model copy = *state->InTurn([](const Model& model, const Documents&) { return model.Copy(); });
  analysis::Switching switching = std::move(*analysis::Switching::Begin(copy));
  for (const SwitchEvent& event : events) (void)switching.Request(event);
  RC_ASSERT(switching.Run().has_value());
  return copy;
}

RC_GTEST_PROP(WhatIf, CopyIsThatOfAFullRunWhateverWasTakenBack, (unsigned seed, bool withZbrs)) {
  const MessageCatcher catcher;
  RandomNetwork network(seed, withZbrs);
  const auto state = StateOf(network);
  const Model before = *state->InTurn([](const Model& model, const Documents&) { return model.Copy(); });
  const auto whatIf = std::move(*WhatIf::Begin(state));
  Events events;
  for (int steps = network.Number(1, 6); steps > 0; --steps) {
    Edit(network, events);
    RC_ASSERT(whatIf->Try(events).has_value());
    RC_ASSERT(whatIf->Events().size() == events.size());
    const Model fresh = FreshCopy(state, events);
    RC_ASSERT(analysis::CompareTopology(whatIf->Copy().Tables(), fresh.Tables()).empty());
    RC_ASSERT(analysis::CompareWithFullRun(whatIf->Copy().Tables()).empty());
  }
  RC_ASSERT(whatIf->Try({}).has_value());
  RC_ASSERT(analysis::CompareTopology(whatIf->Copy().Tables(), before.Tables()).empty());
  RC_ASSERT(state->InTurn([&](const Model& model, const Documents&) {
    return analysis::CompareTopology(model.Tables(), before.Tables()).empty();
  }));
}

/// Two stations behind a breaker each.
std::shared_ptr<const LiveState> TwoStations(dtsdb::test::ModelBuilder& m) {
  m.Station("S1").Kv("K1").Breaker("B1", "K1", "N1", "N2").Unit("U1", "K1", "N1");
  m.Station("S2").Kv("K2").Breaker("B2", "K2", "N3", "N4").Load("D2", "K2", "N4");
  m.Line("L12", "DV", "S1", "S2", "K1", "K2", "N2", "N3");
  m.Of<LD>("D2").p = 50;
  EXPECT_TRUE(m.Validate());
  return (*LiveModel::Show(Model::Of(m.Db()), {}))->Now();
}

TEST(WhatIf, ReportsWhatGoesDead) {
  dtsdb::test::ModelBuilder m;
  const auto whatIf = std::move(*WhatIf::Begin(TwoStations(m)));
  ASSERT_TRUE(whatIf->Try({{1, false, "B2"}}).has_value());
  const Changes changes = whatIf->ChangesSinceState();
  ASSERT_EQ(changes.becameDead.size(), 1U);
  EXPECT_EQ(changes.becameDead[0].id, "D2");
  EXPECT_EQ(changes.lostLoad, 50);
  EXPECT_EQ(changes.stations, (std::vector<std::string>{"S1", "S2"})) << "the line is in both";
  ASSERT_TRUE(whatIf->Try({}).has_value());
  EXPECT_TRUE(whatIf->ChangesSinceState().becameDead.empty());
}

TEST(WhatIf, MarksWhatHasChangedInTheStationsDocument) {
  dtsdb::test::ModelBuilder m;
  const auto whatIf = std::move(*WhatIf::Begin(TwoStations(m)));
  ASSERT_TRUE(whatIf->Try({{1, false, "B2"}}).has_value());
  const std::string station =
      whatIf->InTurn([](const Documents& documents) { return documents.Station("S2").value(); });
  EXPECT_NE(station.find("\"changed\":true"), std::string::npos);
  const std::string before =
      whatIf->State().InTurn([](const Model&, const Documents& documents) { return documents.Station("S2").value(); });
  EXPECT_EQ(before.find("\"changed\":true"), std::string::npos);
}

TEST(WhatIf, EventsThatDoNothingAreReportedInTheirPlace) {
  dtsdb::test::ModelBuilder m;
  const auto whatIf = std::move(*WhatIf::Begin(TwoStations(m)));
  ASSERT_TRUE(whatIf->Try({{1, true, "B1"}, {1, false, "B3"}, {1, false, "B2"}}).has_value());
  const std::vector<TriedEvent>& events = whatIf->Events();
  ASSERT_EQ(events.size(), 3U);
  EXPECT_FALSE(events[0].applied);
  EXPECT_EQ(events[0].text, "close CB B1: it is so already");
  EXPECT_FALSE(events[1].applied);
  EXPECT_NE(events[1].text.find("no record 'B3'"), std::string::npos) << events[1].text;
  EXPECT_TRUE(events[2].applied);
  EXPECT_EQ(events[2].text, "open CB B2");
  EXPECT_EQ(whatIf->Script().value(), "open CB B2\n");
}

TEST(WhatIf, ModelWithoutTopologyHasNoCopies) {
  dtsdb::test::ModelBuilder m;
  m.Station("S1").Kv("K1").Breaker("B1", "nowhere", "N1", "N2");
  const auto live = LiveModel::Show(Model::Of(m.Db(), "it"), {});
  ASSERT_TRUE(live.has_value());
  const auto begun = WhatIf::Begin((*live)->Now());
  ASSERT_FALSE(begun.has_value());
  EXPECT_EQ(begun.error().code, analysis::ErrorCode::kNoTopology);
}

/// Copies by a clock that the test sets.
struct Copies : testing::Test {
  std::chrono::steady_clock::time_point now{};
  WhatIfCopies copies{2, std::chrono::seconds(60), [this] { return now; }};
};

TEST_F(Copies, ViewerKeepsItsCopy) {
  const auto a = copies.FindOrMake("a");
  ASSERT_TRUE(a.has_value());
  EXPECT_EQ(copies.Find("a"), *a);
  EXPECT_EQ(*copies.FindOrMake("a"), *a);
  copies.Drop("a");
  EXPECT_EQ(copies.Find("a"), nullptr);
}

TEST_F(Copies, LongestUnusedMakesRoomOnceItWasUnusedForLong) {
  ASSERT_TRUE(copies.FindOrMake("a").has_value());
  now += std::chrono::seconds(10);
  ASSERT_TRUE(copies.FindOrMake("b").has_value());
  EXPECT_FALSE(copies.FindOrMake("c").has_value());
  now += std::chrono::seconds(45);
  EXPECT_NE(copies.Find("a"), nullptr);
  now += std::chrono::seconds(30);
  EXPECT_TRUE(copies.FindOrMake("c").has_value());
  EXPECT_EQ(copies.Find("b"), nullptr);
  EXPECT_NE(copies.Find("a"), nullptr);
  EXPECT_EQ(copies.Count(), 2U);
}

}  // namespace
}  // namespace dtsdb::page
