// Which arrangement is recognised in a level, and on which rows its nodes then stand.
//
// A level is written as its buses, switches and devices: "b1" a bus, "b1-n:q" a disconnector and "n-m:Q" a breaker
// between two nodes, "n:line" a device on a node.

#include "pictures/internal/level_layout.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "pictures/internal/ring_layout.h"

namespace dtsdb::pictures::internal {
namespace {

/// A level made of words, and its grid.
class DrawnLevel {
 public:
  explicit DrawnLevel(const std::string& words) {
    std::istringstream in(words);
    for (std::string word; in >> word;) Add(word);
    m_shape = std::make_unique<LevelShape>(m_level, std::vector<bool>(m_level.devices.size(), false));
    m_grid = LayOutLevel(*m_shape);
  }

  int RowOf(const std::string& node) const { return m_grid.rowOf.at(m_nodes.at(node)); }
  bool IsRing() const { return !FindRing(*m_shape).nodes.empty(); }
  const LevelGrid& Grid() const { return m_grid; }
  std::size_t Switches() const { return m_level.switches.size(); }
  std::size_t Devices() const { return m_level.devices.size(); }

 private:
  int Node(const std::string& name) {
    const auto [place, isNew] = m_nodes.emplace(name, static_cast<int>(m_level.nodes.size()));
    if (isNew) m_level.nodes.push_back({{"ND", QString::fromStdString(name), name}, 0, 0});
    return place->second;
  }

  void Add(const std::string& word) {
    const std::size_t colon = word.find(':');
    const std::size_t hyphen = word.find('-');
    const RecordName name{"", QString::fromStdString(word), word};
    if (colon == std::string::npos) {
      m_level.buses.push_back({name, Node(word), "live"});
    } else if (hyphen == std::string::npos) {
      StationDevice device;
      device.name = name;
      device.node = Node(word.substr(0, colon));
      m_level.devices.push_back(device);
    } else {
      StationSwitch item;
      item.name = name;
      item.from = Node(word.substr(0, hyphen));
      item.to = Node(word.substr(hyphen + 1, colon - hyphen - 1));
      item.isBreaker = word.back() == 'Q';
      m_level.switches.push_back(item);
    }
  }

  StationLevel m_level;
  std::map<std::string, int> m_nodes;
  std::unique_ptr<LevelShape> m_shape;
  LevelGrid m_grid;
};

TEST(LevelLayout, HangsTheBaysOfASingleBusBelowIt) {
  const DrawnLevel level("I I-a:q a-b:Q b:line I-c:q c-d:Q d:load");
  EXPECT_EQ(level.RowOf("I"), 0);
  EXPECT_EQ(level.RowOf("a"), 1);
  EXPECT_EQ(level.RowOf("b"), 2);
  EXPECT_EQ(level.RowOf("d"), 2);
}

TEST(LevelLayout, PutsTheBarsOfAForkOneAboveTheOther) {
  const DrawnLevel level("I II I-a:q II-a:q a-b:Q b:line I-c:q II-c:q c-d:Q d:load I-e:q e-f:Q f-II:q");
  EXPECT_EQ(level.RowOf("I"), 0);
  EXPECT_EQ(level.RowOf("II"), 1);
  EXPECT_EQ(level.RowOf("a"), 2);
  EXPECT_EQ(level.RowOf("b"), 3);
  EXPECT_EQ(level.RowOf("e"), level.RowOf("f"));  // the feet of the coupler
}

TEST(LevelLayout, PutsASectionaliserInLineWithItsBars) {
  const DrawnLevel level("I II I-a:q a-b:Q b:line II-c:q c-d:Q d:load I-e:q e-f:Q f-II:q");
  for (const char* node : {"II", "e", "f"}) EXPECT_EQ(level.RowOf(node), level.RowOf("I"));
}

TEST(LevelLayout, PutsARowOfBreakersBetweenTwoBars) {
  const DrawnLevel level("I II I-a:Q a-b:Q b-II:Q a:line b:line I-c:Q c-d:Q d-II:Q c:load d:unit");
  EXPECT_FALSE(level.IsRing());
  EXPECT_EQ(level.RowOf("I"), 0);
  EXPECT_EQ(level.RowOf("a"), 1);
  EXPECT_EQ(level.RowOf("b"), 2);
  EXPECT_EQ(level.RowOf("d"), 2);
  EXPECT_EQ(level.RowOf("II"), 3);
}

TEST(LevelLayout, PutsARingOnTwoRows) {
  const DrawnLevel level("a-b:Q b-c:Q c-d:Q d-a:Q a:line b:line c:load d:unit");
  EXPECT_TRUE(level.IsRing());
  std::multiset<int> rows;
  for (const char* node : {"a", "b", "c", "d"}) rows.insert(level.RowOf(node));
  EXPECT_EQ(rows, (std::multiset<int>{0, 0, 1, 1}));
}

TEST(LevelLayout, TakesABypassedBreakerForNoRing) {
  EXPECT_FALSE(DrawnLevel("I I-a:q a-b:Q a-b:q b:line I-c:q c:load").IsRing());
}

TEST(LevelLayout, PutsEverySwitchAndDeviceOfAMeshInAColumnOfItsOwn) {
  const DrawnLevel level("a-b:Q b-c:Q c-a:Q a-d:q d-e:Q e-b:Q c-e:q e-e:q a-b:q d:line e:load c:unit a:line");
  ASSERT_EQ(level.Grid().switches.size(), level.Switches());
  ASSERT_EQ(level.Grid().feeders.size(), level.Devices());
  std::set<std::pair<int, int>> places;
  for (const GridSwitch& item : level.Grid().switches) {
    EXPECT_TRUE(places.emplace(item.at.column, item.at.row).second);
    EXPECT_GE(item.at.row, 0);
    EXPECT_LT(item.at.row, level.Grid().rows);
  }
}

// Such a level comes from a damaged file, or from switches that were read as a chain.
TEST(LevelLayout, FollowsAChainOfAnyLength) {
  constexpr int kSwitches = 150'000;
  std::string words = "0";
  for (int i = 0; i < kSwitches; ++i) words += " " + std::to_string(i) + "-" + std::to_string(i + 1) + ":Q";
  const DrawnLevel level(words);
  EXPECT_EQ(level.RowOf(std::to_string(kSwitches)) - level.RowOf("0"), kSwitches);
}

// Quadratic work would take hours here.
TEST(LevelLayout, PlacesManyBarsWithManyBaysEach) {
  constexpr int kBars = 30'000;
  std::string words;
  for (int i = 0; i < kBars; ++i) {
    const std::string bar = std::to_string(i);
    words += bar + " " + bar + "-a" + bar + ":Q a" + bar + ":line ";
    if (i > 0) words += bar + "-" + std::to_string(i - 1) + ":Q ";  // a coupler to the one in front
    if (i > 1) words += bar + "-c" + bar + ":Q c" + bar + "-" + std::to_string(i - 2) + ":q ";  // and to one further on
  }
  const DrawnLevel level(words);
  EXPECT_EQ(level.Grid().bars.size(), static_cast<std::size_t>(kBars));
  EXPECT_EQ(level.Grid().switches.size(), level.Switches());
}

TEST(LevelLayout, PlacesManyBaysOnTwoBars) {
  constexpr int kBays = 50'000;
  std::string words = "I II ";
  for (int i = 0; i < kBays; ++i) {
    const std::string bay = std::to_string(i);
    words += "I-" + bay + ":q II-" + bay + ":q " + bay + "-l" + bay + ":Q l" + bay + ":line ";
  }
  const DrawnLevel level(words);
  EXPECT_EQ(level.Grid().feeders.size(), static_cast<std::size_t>(kBays));
  EXPECT_EQ(level.RowOf("I") + 1, level.RowOf("II"));
}

TEST(LevelLayout, OfALevelWithoutAnythingIsEmpty) { EXPECT_EQ(DrawnLevel("").Grid().rows, 0); }

}  // namespace
}  // namespace dtsdb::pictures::internal
