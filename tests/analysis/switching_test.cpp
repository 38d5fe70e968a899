// Careful switching, event by event, on small networks.
#include "analysis/switching.h"

#include <gtest/gtest.h>

#include "analysis/internal/certainty.h"
#include "tests/support/messages.h"
#include "tests/support/model_builder.h"
#include "validation/message_catalog.h"

namespace dtsdb::analysis {
namespace {

using test::ModelBuilder;

/// Two stations, A with a unit and B with a load, joined by the lines L and M. In A breaker Q carries the
/// zero-impedance branch Z, between the unit's bus and the lines.
///
///     U a ---[Q Z]--- c ====L==== b D
///                     c ====M==== b
class SwitchingTest : public testing::Test {
 protected:
  SwitchingTest() {
    m.Station("A").Kv("KA").Bus("BA", "KA", "a").Unit("U", "KA", "a").Bus("BC", "KA", "c").Breaker("Q", "KA", "a", "c");
    m.Station("B").Kv("KB").Bus("BB", "KB", "b").Load("D", "KB", "b");
    m.Zbr("Z", "Q");
    m.Line("L", "DV", "A", "B", "KA", "KB", "c", "b").Line("M", "DV", "A", "B", "KA", "KB", "c", "b");
    EXPECT_TRUE(m.Validate());
  }

  Switching Begin(Rules rules = Rules::kCareful) { return std::move(*Switching::Begin(Model::Of(m.Db()), rules)); }

  static bool IsLive(const Topology& topology, const std::string& node) {
    for (const Node& found : topology.nodes) {
      if (found.identity == node) return found.live;
    }
    ADD_FAILURE() << "no node " << node;
    return false;
  }

  ModelBuilder m;
};

TEST_F(SwitchingTest, BaseSectionWithoutNodesIsNoSection) {
  m.Station("C").Kv("KC").Breaker("P", "KC", "e", "f");
  m.Of<CB>("P").flags |= CB_OPEN;
  ASSERT_TRUE(m.Validate());
  const Topology topology = Begin().Now();
  EXPECT_FALSE(topology.sections.empty());
  for (const Section& section : topology.sections) {
    EXPECT_NE(section.level, "KC");
    EXPECT_FALSE(section.items.empty()) << section.number;
  }
}

TEST_F(SwitchingTest, AMomentIsTheWayBackToIt) {
  Switching session = Begin();
  ASSERT_TRUE(session.Apply("out LN L").has_value());
  const Model model = Model::Of(m.Db());
  const Moment moment(model);
  ASSERT_TRUE(session.Apply("open CB Q").has_value());
  EXPECT_FALSE(moment.EffectUntil(model).lost.empty());
  ASSERT_TRUE(session.Apply(moment.WayBack(model)).has_value());
  EXPECT_TRUE(moment.EffectUntil(model).lost.empty());
  EXPECT_TRUE(moment.WayBack(model).empty());
  EXPECT_TRUE(IsLive(session.Now(), "b"));
  EXPECT_NE(m.Of<LN>("L").status & BranchKind<LN>::kOut, 0U) << "what was switched before stays";
}

TEST_F(SwitchingTest, BreakerTakesItsZeroImpedanceBranchOutAndBack) {
  Switching session = Begin();
  const Result<Outcome> opened = session.Apply("open CB Q");
  ASSERT_TRUE(opened.has_value()) << opened.error().message;
  ASSERT_EQ(opened->run.followed.size(), 1U);
  EXPECT_EQ(opened->run.followed[0].branch, "Z");
  EXPECT_EQ(opened->run.followed[0].breaker, "Q");
  EXPECT_FALSE(opened->run.followed[0].on);
  EXPECT_TRUE(opened->run.findings.empty());
  EXPECT_FALSE(IsLive(session.Now(), "b"));

  const Result<Outcome> closed = session.Apply("close CB Q");
  ASSERT_TRUE(closed.has_value());
  ASSERT_EQ(closed->run.followed.size(), 1U);
  EXPECT_TRUE(closed->run.followed[0].on);
  EXPECT_TRUE(IsLive(session.Now(), "b"));
  EXPECT_EQ(m.Of<ZBR>("Z").status, 0U);
  EXPECT_EQ(m.Of<ZBR>("Z").tp_status & ZBR_OUT_WITH_BREAKER, 0U);
}

TEST_F(SwitchingTest, BranchThatWasOutByItselfStaysOut) {
  Switching session = Begin();
  ASSERT_TRUE(session.Apply("out ZBR Z").has_value());
  ASSERT_TRUE(session.Apply("open CB Q").has_value());
  const Result<Outcome> closed = session.Apply("close CB Q");
  ASSERT_TRUE(closed.has_value());
  EXPECT_TRUE(closed->run.followed.empty());
  EXPECT_EQ(m.Of<ZBR>("Z").status, BranchKind<ZBR>::kOut);
  ASSERT_EQ(closed->run.findings.size(), 1);
  EXPECT_EQ(closed->run.findings[0].text.toStdString(),
            "CB Q is closed, but ZBR Z on it is out of service and parts its nodes");
}

// The mark is kept in the model: whoever goes on with it knows which branch goes back with its breaker.
TEST_F(SwitchingTest, NextSessionBringsTheBranchBack) {
  { ASSERT_TRUE(Begin().Apply("open CB Q").has_value()); }
  Switching session = Begin();
  EXPECT_TRUE(session.First().run.findings.empty());
  ASSERT_TRUE(session.Apply("close CB Q").has_value());
  EXPECT_EQ(m.Of<ZBR>("Z").status, 0U);
}

TEST_F(SwitchingTest, AsIsLeavesTheBranchWhereItIs) {
  Switching session = Begin(Rules::kAsIs);
  const Result<Outcome> opened = session.Apply("open CB Q");
  ASSERT_TRUE(opened.has_value());
  EXPECT_TRUE(opened->run.followed.empty());
  EXPECT_EQ(m.Of<ZBR>("Z").status, 0U);
  EXPECT_TRUE(IsLive(session.Now(), "b"));
}

TEST_F(SwitchingTest, FullTopologyNamesBreakerAndBranchThatDisagree) {
  m.Of<CB>("Q").flags |= CB_OPEN;
  Model model = Model::Of(m.Db());
  const Result<Topology> topology = WorkOutTopology(model);
  ASSERT_TRUE(topology.has_value());
  ASSERT_EQ(topology->findings.size(), 1);
  EXPECT_EQ(topology->findings[0].severity, Severity::kWarning);
  EXPECT_EQ(topology->findings[0].table, KIND_ZBR);
  EXPECT_STREQ(topology->findings[0].code, "TOPOLOGY_ZBR_JOINS_AT_OPEN_BREAKER");
  EXPECT_EQ(topology->findings[0].text.toStdString(),
            "CB Q is open, but ZBR Z on it is in service and joins its nodes");
}

// By the rules such a branch fails a full run (docs/kept-behaviour.md, K37).
TEST_F(SwitchingTest, BranchWithItsToEndAloneOpenIsLeftOut) {
  Switching session = Begin();
  const test::MessageCatcher catcher;
  const Result<Outcome> outcome = session.Apply("break ZBR Z to");
  ASSERT_TRUE(outcome.has_value()) << outcome.error().message;
  EXPECT_EQ(outcome->run.leftOut, std::vector<std::string>{"Z"});
  EXPECT_NE(FindMessage(kLeftOutCode), nullptr);
  EXPECT_EQ(m.Of<ZBR>("Z").status, BranchKind<ZBR>::kOpen2) << "as the user has put it";
  EXPECT_FALSE(IsLive(session.Now(), "b"));
  EXPECT_TRUE(test::MessageCatcher::Lines().isEmpty());
  EXPECT_TRUE(session.CompareWithFullRun().empty());
}

// A full run fails on such a branch unless the line of its number has its to end open; here there is no line at all.
TEST(ZeroImpedanceBranch, WithItsToEndAloneOpenIsLeftOutWithoutAskingALineThatIsNotThere) {
  ModelBuilder m;
  m.Station("A").Kv("KA").Bus("M", "KA", "a").Unit("U", "KA", "a").Breaker("Q", "KA", "a", "c").Zbr("Z", "Q");
  m.Load("D", "KA", "c").Winding("X", "A", "KA", "KA", "a", "c");
  m.Table<LN>().SetSize(0);
  ASSERT_TRUE(m.Validate());
  m.Of<ZBR>("Z").status = BranchKind<ZBR>::kOpen2;
  Model model = Model::Of(m.Db());
  const test::MessageCatcher catcher;
  const Result<Topology> topology = WorkOutTopology(model);
  EXPECT_TRUE(topology.has_value());
  EXPECT_EQ(test::MessageCatcher::Lines(), QStringList());
}

TEST_F(SwitchingTest, RunNamesWhyItIsAFullOne) {
  Switching session = Begin();
  EXPECT_EQ(session.First().run.Text(), "full");
  EXPECT_EQ(session.Apply("off LD D")->run.Text(), "incremental") << "level KB has neither";
  EXPECT_EQ(session.Apply("out LN L")->run.Text(), "incremental") << "no node moves at ZBR Z, which is in service";
  EXPECT_EQ(session.Apply("break LN L to")->run.Text(), "full, for the open end of LN L");
  EXPECT_EQ(session.Apply("on LD D")->run.Text(), "incremental") << "LN L is out";
  EXPECT_EQ(session.Apply("in LN L")->run.Text(), "full, for the open end of LN L");
  EXPECT_EQ(session.Apply("off LD D")->run.Text(), "full, for the open end of LN L");
  EXPECT_EQ(session.Apply("join LN L to")->run.Text(), "full, for the open end of LN L");
  EXPECT_EQ(session.Apply("open CB Q")->run.Text(), "full, beside ZBR Z");
  EXPECT_EQ(session.Apply("out LN M")->run.Text(), "full, beside ZBR Z") << "it is out with its breaker";
}

// Line V leads to node e, which is no section by itself. On the same level the to end of line O is open.
TEST_F(SwitchingTest, AnOpenEndIsFoundOnALevelThatTheRunDrawsIn) {
  m.Station("C").Kv("KC").Load("F", "KC", "f").Line("O", "DV", "B", "C", "KB", "KC", "b", "f");
  m.Of<LN>("O").status = BranchKind<LN>::kOpen2;
  m.Station("E").Kv("KE").Breaker("T", "KE", "g", "h").Load("G", "KE", "g").Load("H", "KE", "h");
  m.Line("V", "DV", "E", "C", "KE", "KC", "g", "e").Line("W", "DV", "E", "B", "KE", "KB", "h", "b");
  ASSERT_TRUE(m.Validate());
  Switching session = Begin();
  EXPECT_EQ(session.Apply("open CB T")->run.Text(), "full, for the open end of LN O");
}

TEST_F(SwitchingTest, UnknownComponentIsAnErrorAndNothingIsSwitched) {
  Switching session = Begin();
  const Result<Outcome> outcome = session.Apply({{1, false, "Q"}, {5, false, "LL"}});
  ASSERT_FALSE(outcome.has_value());
  EXPECT_EQ(outcome.error().code, ErrorCode::kUnknownComponent);
  EXPECT_EQ(outcome.error().message, "table LN has no record 'LL'; did you mean L?");
  EXPECT_EQ(m.Of<CB>("Q").flags & CB_OPEN, 0U);
}

TEST_F(SwitchingTest, WordsThatAreNoEventAreAnError) {
  const Result<SwitchEvent> event = ParseEvent("opne CB Q");
  ASSERT_FALSE(event.has_value());
  EXPECT_EQ(event.error().code, ErrorCode::kUsage);
  EXPECT_FALSE(ParseEvent("open CB Q P").has_value());
  EXPECT_EQ(EventText(*ParseEvent("break LN 'L' to")), "break LN L to");
}

TEST_F(SwitchingTest, SectionWithAHundredNeighboursIsNamed) {
  for (int i = 0; i < 100; ++i) {
    m.Line(("P" + std::to_string(i)).c_str(), "DV", "A", "B", "KA", "KB", "c", "b");
  }
  ASSERT_TRUE(m.Validate());
  const test::MessageCatcher catcher;
  const Result<Switching> session = Switching::Begin(Model::Of(m.Db(), "grid"));
  ASSERT_FALSE(session.has_value());
  EXPECT_EQ(session.error().code, ErrorCode::kNoTopology);
  EXPECT_EQ(session.error().message,
            "grid: the topology can't be worked out: the section of node b in station B, voltage level KB, has 100 or "
            "more branch ends that lead somewhere; part it by an open breaker");
}

TEST_F(SwitchingTest, TryingOutLeavesTheModelAsItIs) {
  Model model = Model::Of(m.Db());
  ASSERT_TRUE(WorkOutTopology(model).has_value());
  const Result<WhatIf> tried = TryOut(model, {*ParseEvent("off UN U")});
  ASSERT_TRUE(tried.has_value());
  EXPECT_FALSE(IsLive(tried->topology, "b"));
  EXPECT_TRUE(IsLive(DescribeTopology(model.Tables()), "b"));
  EXPECT_EQ(m.Of<UN>("U").status & SHUNT_OFF, 0U);
  bool found = false;
  for (const Difference& change : tried->changes) found = found || (change.table == "LD" && change.identity == "D");
  EXPECT_TRUE(found);
}

TEST_F(SwitchingTest, NodesOfASmallPointBearItsName) {
  m.Bus("BX", "KB", "x").Bus("BY", "KB", "y").Breaker("R", "KB", "x", "y");
  ASSERT_TRUE(m.Validate());
  Model model = Model::Of(m.Db());
  const Result<Topology> topology = WorkOutTopology(model);
  ASSERT_TRUE(topology.has_value());
  for (const Node& node : topology->nodes) {
    if (node.identity != "x" && node.identity != "y") continue;
    EXPECT_FALSE(node.IsInSection());
    EXPECT_EQ(node.point, "x");
    EXPECT_EQ(node.level, "KB");
    EXPECT_EQ(node.station, "B");
  }
}

TEST_F(SwitchingTest, DoubtAboutANodeWithoutALevelLooksAtNone) {
  ASSERT_EQ(TP(&m.Db()).tpAllnew(), 1);
  m.Of<ND>("b").r_kv_nd = -1;
  const test::MessageCatcher catcher;
  EXPECT_FALSE(internal::DoubtAbout({{3, m.Number<LD>("D")}}, m.Db()).has_value());
  EXPECT_EQ(test::MessageCatcher::Lines(), QStringList());
}

}  // namespace
}  // namespace dtsdb::analysis
