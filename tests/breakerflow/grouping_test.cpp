// What is a tree and what is a loop, and which loops make one group.

#include <gtest/gtest.h>

#include "tests/breakerflow/breaker_graph.h"
#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

using Classes = std::vector<u32>;
using Keys = QList<int>;

TEST(BreakerGroups, ASingleBreakerIsRadialAndMakesNoGroup) {
  BreakerGraph graph({{1, 2}});
  graph.Group();
  EXPECT_EQ(graph.Class(0), CB_RADIAL);
  EXPECT_TRUE(graph.GroupKeys().isEmpty());
  EXPECT_EQ(graph.Probe().Nodes()[1].degree, 0);
  EXPECT_EQ(graph.Probe().Nodes()[2].degree, 0);
}

TEST(BreakerGroups, TheFromEndOfTheLastBreakerLosesItsMarkFirst) {
  BreakerGraph graph({{1, 2}});
  graph.Group();
  EXPECT_EQ(graph.Probe().Nodes()[1].flags & 8, 0U);
  EXPECT_EQ(graph.Probe().Nodes()[2].flags & 8, 8U);
}

TEST(BreakerGroups, TwoParallelBreakersAreALoopOfTwoNodes) {
  BreakerGraph graph({{1, 2}, {1, 2}});
  graph.Group();
  EXPECT_EQ(graph.Classes(), (Classes{CB_LOOP, CB_LOOP}));
  EXPECT_EQ(graph.GroupKeys(), Keys{1}) << "under the node where the loop meets, the root";
  EXPECT_EQ(graph.GroupNodes(1), (Keys{1, 2}));
  EXPECT_EQ(graph.Probe().GroupsOfSet()[0], Keys{1});
  EXPECT_EQ(graph.Probe().Breakers()[0].loops, 1);
  EXPECT_EQ(graph.Probe().Breakers()[1].loops, 1);
}

//   1 - 2        4
//    \ /        / \        two rings that share node 3
//     3 -------'---5
TEST(BreakerGroups, RingsThatShareANodeAreOneGroup) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {3, 4}, {4, 5}, {5, 3}});
  graph.Group();
  EXPECT_EQ(graph.Classes(), Classes(6, CB_LOOP));
  ASSERT_EQ(graph.GroupKeys().size(), 1);
  EXPECT_EQ(graph.GroupNodes(graph.GroupKeys().first()), (Keys{1, 2, 3, 4, 5}));
  EXPECT_EQ(graph.Probe().GroupsOfSet()[0], graph.GroupKeys());
}

//   1 - 2            5
//    \ /            / \         two rings joined by breaker 3 - 4
//     3 ---------- 4 - 6
TEST(BreakerGroups, RingsJoinedByABreakerAreTwoGroupsAndABridge) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {3, 4}, {4, 5}, {5, 6}, {6, 4}});
  graph.Group();
  EXPECT_EQ(graph.Classes(), (Classes{CB_LOOP, CB_LOOP, CB_LOOP, CB_BRIDGE, CB_LOOP, CB_LOOP, CB_LOOP}));
  ASSERT_EQ(graph.GroupKeys(), (Keys{3, 4}));
  EXPECT_EQ(graph.GroupNodes(3), (Keys{1, 2, 3}));
  EXPECT_EQ(graph.GroupNodes(4), (Keys{4, 5, 6}));
  EXPECT_EQ(graph.Probe().Breakers()[3].loops, 0);
}

TEST(BreakerGroups, WhatDanglesFromARingIsRadial) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {4, 3}, {5, 4}});
  graph.Group();
  EXPECT_EQ(graph.Classes(), (Classes{CB_LOOP, CB_LOOP, CB_LOOP, CB_RADIAL, CB_RADIAL}));
  ASSERT_EQ(graph.GroupKeys().size(), 1);
  EXPECT_EQ(graph.GroupNodes(graph.GroupKeys().first()), (Keys{1, 2, 3}));
}

TEST(BreakerGroups, ANodeThatIsInTheGroupAlreadyChangesNothing) {
  ndGroup group;
  group.add(7, 10, 1, 220, 0.5F);
  group.add(7, 99, 99, 99, 99);
  EXPECT_EQ(group.m_p, 10);
  EXPECT_EQ(group.m_q, 1);
  EXPECT_EQ(group.m_v, 220);
  EXPECT_EQ(group.m_a, 0.5F);
  group.add(3, 5, 2, 221, 0.25F);
  EXPECT_EQ(group.m_p, 15);
  EXPECT_EQ(group.m_q, 3);
  EXPECT_EQ(group.m_v, 221) << "that of the node last added";
  EXPECT_EQ(group.m_a, 0.25F);
  EXPECT_TRUE(group.contains(3));
  EXPECT_FALSE(group.contains(4));
  EXPECT_EQ(group.m_nodes, (QMap<int, int>{{3, 3}, {7, 7}}));
}

//   1 === 2     1 to 2 twice, 2 to 3, 3 to 1: degrees 3, 3, 2
//    \   /
//      3
TEST(BreakerGroups, TheRootIsTheFirstOfTheNodesOfGreatestDegree) {
  BreakerGraph graph({{3, 2}, {3, 1}, {1, 2}, {2, 1}});
  graph.Group();
  EXPECT_EQ(graph.Probe().NodesOfSet()[0], (Keys{1, 2, 3}));
  const ndGroup& group = graph.Probe().Groups().first();
  EXPECT_EQ(group.m_nodes.keys(), (Keys{1, 2, 3}));
  EXPECT_EQ(graph.GroupKeys(), Keys{1}) << "all loops meet in the root";
}

TEST(BreakerGroups, TheRootNeedNotBeTheFirstNode) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {3, 4}, {4, 5}, {5, 3}});
  graph.Group();
  EXPECT_EQ(graph.GroupKeys(), Keys{3}) << "degree 4";
}

//   The loops of 1-2-3 and 5-6-7 stand apart when the breakers 3-5 and 2-6 between them are found to close a third.
TEST(BreakerGroups, ALoopThatTouchesTwoGroupsMergesThemUnderTheLeastKey) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {5, 6}, {6, 7}, {7, 5}, {3, 5}, {2, 6}});
  graph.Group();
  ASSERT_EQ(graph.GroupKeys().size(), 1);
  EXPECT_EQ(graph.GroupNodes(graph.GroupKeys().first()), (Keys{1, 2, 3, 5, 6, 7}));
  EXPECT_EQ(graph.Probe().GroupsOfSet()[0], graph.GroupKeys());
  EXPECT_EQ(graph.Classes(), Classes(8, CB_LOOP));
}

TEST(BreakerGroups, ABreakerFromANodeToItselfIsALoopOfOneNode) {
  BreakerGraph graph({{1, 2}, {2, 2}});
  graph.Group();
  EXPECT_EQ(graph.Classes(), (Classes{CB_RADIAL, CB_LOOP}));
  EXPECT_EQ(graph.GroupKeys(), Keys{2});
  EXPECT_EQ(graph.GroupNodes(2), Keys{2});
}

TEST(BreakerGroups, MergingTakesTheNodesOwnValues) {
  BreakerGraph graph({{1, 2}, {2, 3}});
  graph.Inject(2, 4, 1);
  graph.Probe().NodeInject();
  ndGroup into;
  into.add(1, 5, 0, 0, 0);
  ndGroup from;
  from.add(2, 100, 100, 100, 100);
  graph.Probe().Merge(into, from);
  EXPECT_EQ(into.m_nodes.keys(), (Keys{1, 2}));
  EXPECT_EQ(into.m_p, 9);
  EXPECT_EQ(into.m_q, 1);
  EXPECT_EQ(into.m_v, 220);
}

TEST(BreakerGroups, ContractionLetsLoopsEndInTheKeyAndOthersWithOneEnd) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {4, 3}, {2, 5}});
  graph.Inject(2, 6, 3);
  graph.Group();
  ASSERT_EQ(graph.GroupKeys().size(), 1);
  const int key = graph.GroupKeys().first();
  for (cbBreaker& breaker : graph.Probe().Breakers()) {
    breaker.g1 = breaker.ind;
    breaker.g2 = breaker.iznd;
  }
  graph.Probe().Modify(key, graph.Probe().Groups()[key]);
  const auto ends = [&](int breaker) {
    return std::pair(graph.Probe().Breakers()[breaker].g1, graph.Probe().Breakers()[breaker].g2);
  };
  for (int loop = 0; loop < 3; ++loop) EXPECT_EQ(ends(loop), std::pair(key, key));
  EXPECT_EQ(ends(3), std::pair(4, key));
  EXPECT_EQ(ends(4), std::pair(key, 5));
  EXPECT_EQ(graph.Probe().Nodes()[key].p, 6);
  EXPECT_EQ(graph.Probe().Nodes()[key].q, 3);
}

TEST(BreakerGroups, ASetWithoutBreakersOrThatDoesNotExistIsLeftAlone) {
  const MessageCatcher catcher;
  BreakerGraph graph;
  graph.Probe().Group(0);
  graph.Probe().Group(-5);
  graph.Probe().Calculate(3);
  EXPECT_TRUE(graph.GroupKeys().isEmpty());
  EXPECT_TRUE(MessageCatcher::Lines().isEmpty());
}

TEST(BreakerGroups, MissingEntriesAreWarnedOfAndPassedOver) {
  BreakerGraph graph({{1, 2}, {2, 3}, {3, 1}, {3, 4}});
  graph.Probe().Frombs();
  graph.Probe().Nodes().remove(2);
  graph.Probe().Breakers().remove(3);
  graph.Probe().BreakersOfNode().remove(1);
  const MessageCatcher catcher;
  graph.Probe().Group(0);
  const QString lines = MessageCatcher::Lines().join(QLatin1Char('\n'));
  for (const char* assertion : {"m_ndArray.find(*it) != m_ndArray.end()", "m_cbArray.find(*it) != m_cbArray.end()"}) {
    EXPECT_TRUE(lines.contains(QStringLiteral("ASSERT: \"%1\" in grouping (").arg(QLatin1String(assertion))))
        << lines.toStdString();
  }
}

}  // namespace
}  // namespace dtsdb::test
