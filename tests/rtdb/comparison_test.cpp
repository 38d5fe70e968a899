// The database's headers leave the comparison of other types alone: FastDB brings templates that compare any two
// objects of one type bytewise.

#include <gtest/gtest.h>

#include <QString>
#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "rtdb/backend.h"

struct ComparisonProbe {
  int value;
};

namespace {

template <class T>
concept HasLess = requires(const T& a, const T& b) {
  a < b;
};
template <class T>
concept HasGreater = requires(const T& a, const T& b) {
  a > b;
};

TEST(Comparison, TypesWithoutAnOrderHaveNone) {
  EXPECT_FALSE(HasLess<ComparisonProbe>);
  EXPECT_FALSE(HasGreater<ComparisonProbe>);
}

TEST(Comparison, TuplesOfReferencesGoByWhatTheyReferTo) {
  const std::pair<int, QString> one(1, QStringLiteral("a"));
  const std::pair<int, QString> same(1, QStringLiteral("a"));
  const std::pair<int, QString> larger(256, QStringLiteral("a"));
  const auto contents = [](const std::pair<int, QString>& row) { return std::tie(row.first, row.second); };
  EXPECT_FALSE(contents(one) < contents(same));
  EXPECT_FALSE(contents(same) < contents(one));
  EXPECT_TRUE(contents(one) < contents(larger));
  EXPECT_TRUE(contents(larger) > contents(one));
}

TEST(Comparison, PairsAreSortedByTheirMembers) {
  std::vector<std::pair<QString, int>> rows;
  for (const int number : {256, 1, -1}) rows.emplace_back(QStringLiteral("a"), number);
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(rows[0].second, -1);
  EXPECT_EQ(rows[1].second, 1);
  EXPECT_EQ(rows[2].second, 256);
}

}  // namespace
