// Chains of relation rows: as a list, and walked in place.
//
//     row    0     1     2     3
//     child  10    11    12    13
//     next   2     -1    1     -1         chain from 0: rows 0, 2, 1
#include "include/chain.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <vector>

#include "model/records.h"
#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

using Rows = tTable<R_KV_ND>;

void Fill(Rows& rows, const std::vector<int>& next) {
  for (std::size_t i = 0; i < next.size(); ++i) {
    R_KV_ND row(QString::number(100000 + i), QString());
    row.ind = 10 + static_cast<int>(i);
    row.next = next[i];
    rows.Add(row);
  }
}

std::vector<int> Listed(Rows& rows, int head) {
  const std::unique_ptr<tChildNode> first(rows.ChildList(head));
  std::vector<int> children;
  for (const tChildNode* node = first.get(); node != nullptr; node = node->next) children.push_back(node->value);
  return children;
}

std::vector<int> Walked(Rows& rows, int head) {
  std::vector<int> children;
  for (const R_KV_ND& row : Chain(rows, head)) children.push_back(row.ind);
  return children;
}

TEST(ChildNode, StartsAtMinusOneAndWithoutANext) {
  const tChildNode node;
  EXPECT_EQ(node.value, -1);
  EXPECT_EQ(node.next, nullptr);
}

TEST(ChildList, IsNullForMinusOne) {
  Rows rows;
  EXPECT_EQ(rows.ChildList(-1), nullptr);
}

TEST(ChildList, FollowsTheChain) {
  Rows rows;
  Fill(rows, {2, -1, 1, -1});
  EXPECT_EQ(Listed(rows, 0), (std::vector<int>{10, 12, 11}));
  EXPECT_EQ(Listed(rows, 3), (std::vector<int>{13}));
}

TEST(ChildList, StopsOnACircle) {
  Rows rows;
  Fill(rows, {1, 0});
  EXPECT_EQ(Listed(rows, 0).size(), static_cast<std::size_t>(rows.GetSize()));
}

TEST(ChildList, StopsWithAWarningOutsideTheTable) {
  Rows rows;
  Fill(rows, {77});
  const MessageCatcher catcher;
  EXPECT_EQ(Listed(rows, 0), (std::vector<int>{10}));
  ASSERT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_TRUE(
      MessageCatcher::Lines().first().startsWith(QStringLiteral("ASSERT: \"nPh >= 0 && nPh < m_size\" in template (")));
  EXPECT_EQ(rows.ChildList(-2), nullptr);
}

TEST(ChildList, OfAVeryLongChainIsReleasedWithoutDeepRecursion) {
  constexpr int n = 300000;
  Rows rows;
  std::vector<R_KV_ND> data(n);
  for (int i = 0; i < n; ++i) {
    data[i].ind = i;
    data[i].next = i + 1 < n ? i + 1 : -1;
  }
  rows.SetData(data.data(), n, true);
  EXPECT_EQ(Listed(rows, 0).size(), static_cast<std::size_t>(n));
}

TEST(Chain, FollowsTheChain) {
  Rows rows;
  Fill(rows, {2, -1, 1, -1});
  EXPECT_EQ(Walked(rows, 0), (std::vector<int>{10, 12, 11}));
  EXPECT_EQ(Walked(rows, -1), std::vector<int>());
}

TEST(Chain, GivesTheRowsThemselves) {
  Rows rows;
  Fill(rows, {1, -1});
  for (R_KV_ND& row : Chain(rows, 0)) row.ind = 5;
  EXPECT_EQ(rows[0].ind, 5);
  EXPECT_EQ(rows[1].ind, 5);
}

TEST(Chain, OfAConstTableGivesItsRowsAsConst) {
  Rows rows;
  Fill(rows, {2, -1, 1, -1});
  const Rows& constRows = rows;
  static_assert(std::is_same_v<decltype(*Chain(constRows, 0).begin()), const R_KV_ND&>);
  static_assert(std::is_same_v<decltype(*Chain(rows, 0).begin()), R_KV_ND&>);
  std::vector<const R_KV_ND*> walked;
  for (const R_KV_ND& row : Chain(constRows, 0)) walked.push_back(&row);
  EXPECT_EQ(walked, (std::vector<const R_KV_ND*>{&rows[0], &rows[2], &rows[1]}));
  EXPECT_EQ(ChainLength(constRows, 0), 3);
}

TEST(Chain, StopsOnACircle) {
  Rows rows;
  Fill(rows, {1, 2, 0});
  EXPECT_EQ(Walked(rows, 1).size(), static_cast<std::size_t>(rows.GetSize()));
}

TEST(Chain, StopsWithAWarningOutsideTheTable) {
  Rows rows;
  Fill(rows, {10});
  const MessageCatcher catcher;
  EXPECT_EQ(Walked(rows, 0), (std::vector<int>{10}));
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
  EXPECT_EQ(Walked(rows, -5), std::vector<int>());
  EXPECT_EQ(MessageCatcher::Lines().size(), 2);
}

TEST(Chain, OfAnEmptyTableIsEmpty) {
  Rows rows;
  const MessageCatcher catcher;
  EXPECT_EQ(Walked(rows, 0), std::vector<int>());
}

TEST(ChainLimit, EndsTheWalkThatUsesUpTheLastStep) {
  Rows rows;
  Fill(rows, {1, 2, 3, -1});
  const ChainLimit limit(6);
  EXPECT_EQ(Walked(rows, 0).size(), 4U);
  EXPECT_EQ(Walked(rows, 0).size(), 2U);
  EXPECT_EQ(Walked(rows, 0).size(), 0U);
}

TEST(ChainLimit, HoldsAsLongAsItLives) {
  Rows rows;
  Fill(rows, {1, 2, 3, -1});
  {
    const ChainLimit limit(1);
    EXPECT_EQ(Walked(rows, 0).size(), 1U);
    {
      const ChainLimit none(ChainLimit::kNone);
      EXPECT_EQ(Walked(rows, 0).size(), 4U);
    }
    EXPECT_EQ(Walked(rows, 0).size(), 0U);
  }
  EXPECT_EQ(Walked(rows, 0).size(), 4U);
}

/// Voltage levels whose chains of nodes begin at `heads`.
void FillLevels(tTable<KV>& levels, const std::vector<int>& heads) {
  for (std::size_t i = 0; i < heads.size(); ++i) {
    KV level(QString::number(i));
    level.r_kv_nd = heads[i];
    levels.Add(level);
  }
}

TEST(ChainsFit, WhereEachRowBelongsToOneChain) {
  Rows rows;
  Fill(rows, {2, -1, 1, -1});
  tTable<KV> levels;
  FillLevels(levels, {3, -1, 0});
  EXPECT_TRUE(ChainsFit(rows, levels, &KV::r_kv_nd));
}

TEST(ChainsFit, NotWhereTheyRunIntoOneAnotherOrInACircle) {
  Rows rows;
  Fill(rows, {1, 2, 3, -1, -1, -1, -1, -1, -1, -1});
  tTable<KV> shared;
  FillLevels(shared, {0, 1, 0});
  EXPECT_FALSE(ChainsFit(rows, shared, &KV::r_kv_nd));
  rows[3].next = 0;
  tTable<KV> circle;
  FillLevels(circle, {2});
  EXPECT_FALSE(ChainsFit(rows, circle, &KV::r_kv_nd));
}

TEST(ChainsFit, WithoutAWarningWhereTheyLeadOutOfTheTable) {
  Rows rows;
  Fill(rows, {77, -5});
  tTable<KV> levels;
  FillLevels(levels, {0, 1, 99, -7});
  const MessageCatcher catcher;
  EXPECT_TRUE(ChainsFit(rows, levels, &KV::r_kv_nd));
  EXPECT_TRUE(MessageCatcher::Lines().isEmpty());
}

}  // namespace
}  // namespace dtsdb::test
