// The powers of a generated utility fit each other, and its live parts are one island.

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "breakerflow/flows.h"
#include "model/record_bits.h"
#include "tests/generate/generated_utility.h"

namespace dtsdb::tools {
namespace {

using test::CountOf;
using test::Generated;
using test::MakeTopologyOf;

/// Utilities of several sizes, from the seed 1 to `seeds`.
template <class Check>
void ForEachUtility(quint64 seeds, Check check) {
  for (quint64 seed = 1; seed <= seeds; ++seed) {
    const int stations = static_cast<int>(seed % 10 == 0 ? 100 : 3 + seed % 25);
    SCOPED_TRACE(testing::Message() << stations << " stations, seed " << seed);
    DTSDB model = Generated(stations, seed);
    ASSERT_NO_FATAL_FAILURE(MakeTopologyOf(model));
    check(model);
  }
}

TEST(GeneratedPowers, BalanceInEverySetToTheLastBit) {
  ForEachUtility(50, [](DTSDB& model) {
    const Flows flows = ComputeFlows(model);
    EXPECT_EQ(flows.Count(FlowSetState::kBalanced), static_cast<int>(flows.sets.size()));
    EXPECT_GT(flows.sets.size(), 0U);
    for (const FlowSet& set : flows.sets) {
      EXPECT_EQ(set.surplus.p, 0.0F) << set.kv.toStdString();
      EXPECT_EQ(set.surplus.q, 0.0F) << set.kv.toStdString();
    }
  });
}

TEST(GeneratedPowers, BreakersCarrySome) {
  DTSDB model = Generated(20, 1);
  MakeTopologyOf(model);
  int carrying = 0;
  const Flows flows = ComputeFlows(model);
  for (const BreakerFlow& breaker : flows.breakers) carrying += std::abs(breaker.p) > 0.5F ? 1 : 0;
  EXPECT_GT(carrying, flows.Count(BreakerState::kComputed) / 2);
}

TEST(GeneratedPowers, BalanceInEveryStarPoint) {
  ForEachUtility(20, [](DTSDB& model) {
    std::map<QString, std::pair<double, double>> sums;
    const auto add = [&sums](const XF& winding) {
      if (!winding.zkv.endsWith(QLatin1String("star"))) return false;
      sums[winding.znd].first += double{winding.zp};
      sums[winding.znd].second += double{winding.zq};
      return true;
    };
    const int windings = CountOf(*model.m_xfTable, add);
    EXPECT_EQ(windings, 3 * static_cast<int>(sums.size()));
    for (const auto& [node, sum] : sums) {
      EXPECT_EQ(sum.first, 0.0) << node.toStdString();
      EXPECT_EQ(sum.second, 0.0) << node.toStdString();
    }
  });
}

TEST(GeneratedPowers, ZeroImpedanceBranchCarriesWhatItsBreakerCarries) {
  int branches = 0;
  ForEachUtility(20, [&branches](DTSDB& model) {
    const Flows flows = ComputeFlows(model);
    std::map<QString, const BreakerFlow*> flowOf;
    for (const BreakerFlow& flow : flows.breakers) flowOf[flow.id] = &flow;
    for (int i = 0; i < model.m_zbrTable->GetCount(); ++i) {
      const ZBR& branch = model.m_zbrTable->GetPh(i);
      ASSERT_EQ(flowOf.count(branch.cb), 1U);
      EXPECT_EQ(flowOf[branch.cb]->p, branch.p) << branch.id.toStdString();
      EXPECT_EQ(flowOf[branch.cb]->q, branch.q) << branch.id.toStdString();
      ++branches;
    }
  });
  EXPECT_GT(branches, 10);
}

TEST(GeneratedPowers, AreWithinWhatUnitsCanGive) {
  ForEachUtility(20, [](DTSDB& model) {
    const auto isOutside = [](const UN& unit) { return unit.p < 0 || unit.p > unit.pmax || unit.p != unit.pcur; };
    EXPECT_EQ(CountOf(*model.m_unTable, isOutside), 0);
  });
}

TEST(GeneratedPowers, AreZeroWhereEquipmentIsDead) {
  ForEachUtility(20, [](DTSDB& model) {
    const auto givesDead = [](const UN& unit) { return (unit.tp_status & SHUNT_DEAD) != 0 && unit.p != 0; };
    EXPECT_EQ(CountOf(*model.m_unTable, givesDead), 0);
    const auto takesDead = [](const LD& load) { return (load.tp_status & SHUNT_DEAD) != 0 && load.p != 0; };
    EXPECT_EQ(CountOf(*model.m_ldTable, takesDead), 0);
    const auto carriesDead = [](const LN& line) { return line.tp_status != 0 && (line.p != 0 || line.zp != 0); };
    EXPECT_EQ(CountOf(*model.m_lnTable, carriesDead), 0);
    const auto hasVoltage = [](const BUS& bus) { return (bus.v > 0) == ((bus.tp_status & SHUNT_DEAD) != 0); };
    EXPECT_EQ(CountOf(*model.m_busTable, hasVoltage), 0);
  });
}

TEST(GeneratedPowers, AreMeasuredAsTheyAre) {
  DTSDB model = Generated(60, 2);
  tTable<ANALOG>& points = *model.m_analogTable;
  const auto measured = [&points](const QString& id) {
    const int point = points.Find(ANALOG(id));
    return point == -1 ? std::nanf("") : points.GetPh(point).value;
  };
  const auto differs = [&measured](const auto& branch) {
    return measured(branch.ana_p) != branch.p || measured(branch.ana_q) != branch.q ||
           measured(branch.ana_i) != branch.i || measured(branch.zana_p) != branch.zp ||
           measured(branch.zana_q) != branch.zq || measured(branch.zana_i) != branch.zi;
  };
  EXPECT_EQ(CountOf(*model.m_lnTable, differs), 0);
  EXPECT_EQ(CountOf(*model.m_xfTable, differs), 0);
}

TEST(GeneratedTopology, HasOneLiveIslandAtEverySize) {
  ForEachUtility(50, [](DTSDB& model) { EXPECT_EQ(model.m_islandTable->GetCount(), 1); });
}

TEST(GeneratedTopology, FewBusesAreDeadAndAllOfThemOnlyFeedLoads) {
  DTSDB model = Generated(1000, 3);
  MakeTopologyOf(model);
  const int buses = model.m_busTable->GetCount();
  const int dead = CountOf(*model.m_busTable, [](const BUS& bus) { return (bus.tp_status & SHUNT_DEAD) != 0; });
  EXPECT_GT(dead, 0);
  EXPECT_LT(dead, buses / 10);
  std::set<QString> gridLevels;
  for (int i = 0; i < model.m_lnTable->GetCount(); ++i) {
    gridLevels.insert({model.m_lnTable->GetPh(i).kv, model.m_lnTable->GetPh(i).zkv});
  }
  for (int i = 0; i < model.m_unTable->GetCount(); ++i) gridLevels.insert(model.m_unTable->GetPh(i).kv);
  const auto isDeadInGrid = [&gridLevels](const BUS& bus) {
    return (bus.tp_status & SHUNT_DEAD) != 0 && gridLevels.count(bus.kv) == 1;
  };
  EXPECT_EQ(CountOf(*model.m_busTable, isDeadInGrid), 0);
}

}  // namespace
}  // namespace dtsdb::tools
