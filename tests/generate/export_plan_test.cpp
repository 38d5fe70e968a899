// What the parts of a tree give each other.

#include "generate/export_plan.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace dtsdb::tools {
namespace {

/// A tree under construction; the root is point 0.
struct Tree {
  std::vector<int> order;
  std::vector<int> parent;
  std::vector<int64_t> need;
  std::vector<int64_t> least;
  std::vector<int64_t> most;

  int Add(int under, int64_t needs, int64_t givesLeast, int64_t givesMost) {
    order.push_back(static_cast<int>(order.size()));
    parent.push_back(under);
    need.push_back(needs);
    least.push_back(givesLeast);
    most.push_back(givesMost);
    return order.back();
  }

  std::vector<int64_t> Exports() const { return PlanExports({order, parent, need, least, most}); }
};

TEST(ExportPlan, PartsThatFeedThemselvesGiveNothing) {
  Tree tree;
  tree.Add(-1, 10, 0, 20);
  tree.Add(0, 30, 0, 40);
  tree.Add(0, 5, 5, 5);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, 0, 0}));
}

TEST(ExportPlan, APartThatLacksPowerTakesNoMoreThanThat) {
  Tree tree;
  tree.Add(-1, 0, 0, 100);
  tree.Add(0, 30, 0, 20);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, -10}));
}

TEST(ExportPlan, WhatAPartMustGiveItGives) {
  Tree tree;
  tree.Add(-1, 50, 0, 100);
  tree.Add(0, 5, 20, 40);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, 15}));
}

TEST(ExportPlan, NeighboursHelpInProportionToWhatTheyHaveLeft) {
  Tree tree;
  tree.Add(-1, 30, 0, 0);
  tree.Add(0, 10, 0, 30);  // 20 left
  tree.Add(0, 10, 0, 50);  // 40 left
  tree.Add(0, 0, 0, 0);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, 10, 20, 0}));
}

TEST(ExportPlan, HelpComesFromBehindTooManySteps) {
  Tree tree;
  const int root = tree.Add(-1, 12, 0, 0);
  const int middle = tree.Add(root, 0, 0, 0);
  tree.Add(middle, 0, 0, 100);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, 12, 12}));
}

TEST(ExportPlan, PartsTakeMoreWhereTheRestGivesTooMuch) {
  Tree tree;
  tree.Add(-1, 0, 30, 30);
  tree.Add(0, 40, 5, 40);
  EXPECT_EQ(tree.Exports(), (std::vector<int64_t>{0, -30}));
}

RC_GTEST_PROP(ExportPlan, IsWithinWhatEachPartCanGive, ()) {
  Tree tree;
  const int count = *rc::gen::inRange(1, 40);
  for (int i = 0; i < count; ++i) {
    const int parent = i == 0 ? -1 : *rc::gen::inRange(0, i);
    const int64_t least = *rc::gen::inRange(0, 100);
    tree.Add(parent, *rc::gen::inRange(-50, 200), least, least + *rc::gen::inRange(0, 300));
  }
  const std::vector<int64_t> exports = tree.Exports();

  std::vector<int64_t> least(exports.size());
  std::vector<int64_t> most(exports.size());
  for (std::size_t i = exports.size(); i-- > 0;) {
    least[i] += tree.least[i] - tree.need[i];
    most[i] += tree.most[i] - tree.need[i];
    if (i == 0) break;
    least[static_cast<std::size_t>(tree.parent[i])] += least[i];
    most[static_cast<std::size_t>(tree.parent[i])] += most[i];
  }
  RC_ASSERT(exports[0] == std::clamp(int64_t{0}, least[0], most[0]));
  for (std::size_t i = 0; i < exports.size(); ++i) {
    RC_ASSERT(exports[i] >= least[i]);
    RC_ASSERT(exports[i] <= most[i]);
  }
}

}  // namespace
}  // namespace dtsdb::tools
