// The arrangements of busbars and breakers: how many switches, what they join, and what an open breaker cuts off.

#include "generate/switchyard.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <set>

#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

/// A switchyard "K" of so many circuits, as rows.
class Yard {
 public:
  Yard(Arrangement arrangement, int circuits, int openCircuit = -1, bool couplerOpen = false) {
    m_level.arrangement = arrangement;
    m_level.circuits = circuits;
    m_level.openCircuit = openCircuit;
    m_level.couplerOpen = couplerOpen;
    InputRows rows;
    Switchyard yard(rows, QStringLiteral("K"), m_level);
    yard.Build();
    for (int i = 0; i < yard.BusbarCount(); ++i) busbars.push_back(yard.BusbarNode(i));
    coupler = yard.CouplerBreaker();
    rows.FillTables(database);
    for (int i = 0; i < database.m_cbTable->GetCount(); ++i) switches.push_back(database.m_cbTable->GetPh(i));
  }

  /// The nodes that switches join with `node`: the closed ones, or all.
  std::set<QString> Reach(const QString& node, bool closedOnly = true) const {
    std::set<QString> reached{node};
    for (bool grows = true; grows;) {
      grows = false;
      for (const CB& item : switches) {
        if (closedOnly && (item.flags & CB_OPEN) != 0) continue;
        if (reached.count(item.nd) == reached.count(item.znd)) continue;
        reached.insert({item.nd, item.znd});
        grows = true;
      }
    }
    return reached;
  }

  bool Joins(const QString& one, const QString& other, bool closedOnly = true) const {
    return Reach(one, closedOnly).count(other) == 1;
  }

  int Count(u32 type) const {
    int count = 0;
    for (const CB& item : switches) count += (item.flags & CB_TYPES) == type ? 1 : 0;
    return count;
  }

  static QString Circuit(int number) { return CircuitNode(QStringLiteral("K"), number); }

  DTSDB database;
  std::vector<CB> switches;
  std::vector<QString> busbars;
  QString coupler;

 private:
  Level m_level;
};

constexpr u32 kBreaker = 1;
constexpr u32 kDisconnector = 4;

struct Expected {
  Arrangement arrangement;
  int circuits;
  int breakers;
  int disconnectors;
  int busbars;
};

class ArrangementCase : public testing::TestWithParam<Expected> {
 protected:
  Yard With(int openCircuit = -1, bool couplerOpen = false) const {
    return {GetParam().arrangement, GetParam().circuits, openCircuit, couplerOpen};
  }
};

TEST_P(ArrangementCase, HasItsBreakersDisconnectorsAndBusbars) {
  const Yard yard = With();
  EXPECT_EQ(yard.Count(kBreaker), GetParam().breakers);
  EXPECT_EQ(yard.Count(kDisconnector), GetParam().disconnectors);
  EXPECT_EQ(static_cast<int>(yard.busbars.size()), GetParam().busbars);
}

TEST_P(ArrangementCase, JoinsAllCircuitsAndBusbars) {
  const Yard yard = With();
  for (int circuit = 0; circuit < GetParam().circuits; ++circuit) {
    for (const QString& busbar : yard.busbars) EXPECT_TRUE(yard.Joins(Yard::Circuit(circuit), busbar)) << circuit;
  }
}

TEST_P(ArrangementCase, HasNoNodeThatLeadsNowhere) {
  const Yard yard = With();
  std::map<QString, int> ends;
  for (const CB& item : yard.switches) {
    EXPECT_NE(item.nd, item.znd);
    ++ends[item.nd];
    ++ends[item.znd];
  }
  for (int circuit = 0; circuit < GetParam().circuits; ++circuit) ++ends[Yard::Circuit(circuit)];
  for (const QString& busbar : yard.busbars) ++ends[busbar];
  for (const auto& [node, count] : ends) EXPECT_GE(count, 2) << node.toStdString();
}

TEST_P(ArrangementCase, OpenBreakerCutsOffItsCircuitWhereNoOtherHoldsIt) {
  for (int circuit = 0; circuit < GetParam().circuits; ++circuit) {
    const Yard yard = With(circuit);
    EXPECT_EQ(yard.Joins(Yard::Circuit(circuit), yard.busbars.front()), !HangsOnOneBreaker(GetParam().arrangement))
        << circuit;
    for (int other = 0; other < GetParam().circuits; ++other) {
      EXPECT_TRUE(other == circuit || yard.Joins(Yard::Circuit(other), yard.busbars.front())) << other;
    }
  }
}

TEST_P(ArrangementCase, OpenCouplerPartsTheCircuitsByTurns) {
  if (DataOf(GetParam().arrangement).coupler.empty()) return;
  const Yard yard = With(-1, true);
  EXPECT_FALSE(yard.Joins(yard.busbars[0], yard.busbars[1]));
  for (int circuit = 0; circuit < GetParam().circuits; ++circuit) {
    EXPECT_TRUE(yard.Joins(Yard::Circuit(circuit), yard.busbars[static_cast<std::size_t>(circuit % 2)])) << circuit;
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, ArrangementCase,
    testing::Values(Expected{Arrangement::kSingleBus, 1, 1, 1, 1}, Expected{Arrangement::kSingleBus, 5, 5, 5, 1},
                    Expected{Arrangement::kSectionedBus, 4, 5, 6, 2}, Expected{Arrangement::kDoubleBus, 3, 4, 8, 2},
                    Expected{Arrangement::kDoubleBus, 12, 13, 26, 2},
                    Expected{Arrangement::kBreakerAndAHalf, 4, 6, 6, 2},
                    Expected{Arrangement::kBreakerAndAHalf, 5, 8, 8, 2}, Expected{Arrangement::kRing, 3, 3, 3, 1},
                    Expected{Arrangement::kRing, 6, 6, 6, 1}));

TEST(Switchyard, CircuitsOfADoubleBusCanBeMovedToTheOther) {
  const Yard yard(Arrangement::kDoubleBus, 3);
  std::map<QString, std::set<QString>> busbarsByBay;
  for (const CB& item : yard.switches) {
    if (item.nd == yard.busbars[0] || item.nd == yard.busbars[1]) busbarsByBay[item.znd].insert(item.nd);
  }
  for (int circuit = 0; circuit < 3; ++circuit) {
    EXPECT_EQ(busbarsByBay[Yard::Circuit(circuit) + QLatin1Char('a')].size(), 2U) << circuit;
  }
}

TEST(Switchyard, CouplerCarriesFromTheFirstBusbarToTheSecond) {
  const Yard yard(Arrangement::kSectionedBus, 3);
  const auto coupler = std::find_if(yard.switches.begin(), yard.switches.end(),
                                    [&yard](const CB& item) { return item.id == yard.coupler; });
  ASSERT_NE(coupler, yard.switches.end());
  EXPECT_EQ(coupler->flags & CB_TYPES, kBreaker);
  const Yard open(Arrangement::kSectionedBus, 3, -1, true);
  EXPECT_TRUE(open.Joins(coupler->nd, open.busbars[0]));
  EXPECT_TRUE(open.Joins(coupler->znd, open.busbars[1]));
}

TEST(Switchyard, ThreeBreakersOfARowHoldTwoCircuits) {
  const Yard yard(Arrangement::kBreakerAndAHalf, 4);
  const auto touching = [&yard](const QString& node) {
    int count = 0;
    for (const CB& item : yard.switches) count += item.nd == node || item.znd == node ? 1 : 0;
    return count;
  };
  for (int circuit = 0; circuit < 4; ++circuit) EXPECT_EQ(touching(Yard::Circuit(circuit)), 2) << circuit;
  EXPECT_EQ(touching(yard.busbars[0]), 2) << "one for each row";
  EXPECT_EQ(touching(yard.busbars[1]), 2);
}

TEST(Arrangements, SharesOfEachVoltageSumToHundred) {
  for (int tier = 0; tier < kTiers; ++tier) {
    const ArrangementShares& shares = UsualShares(static_cast<Tier>(tier));
    EXPECT_EQ(std::accumulate(shares.begin(), shares.end(), 0), 100) << tier;
  }
}

}  // namespace
}  // namespace dtsdb::tools
