// Random utilities: repeatable, valid at every size, and like real ones. Their powers stand in powers_test.cpp.

#include "generate/generator.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <map>
#include <set>

#include "model/record_bits.h"
#include "tests/formats/random_model.h"
#include "tests/generate/generated_utility.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::tools {
namespace {

using dtsdb::test::TemporaryDirectory;
using test::CountOf;
using test::Faults;
using test::FirstDifference;
using test::Generated;
using test::MakeTopologyOf;

int RowCount(DTSDB& database) {
  int rows = 0;
  ForEachTable(database, [&rows](auto& table) { rows += table.GetCount(); });
  return rows;
}

TEST(Generator, TheSameSeedGivesTheSameTables) {
  DTSDB first = Generated(60, 7);
  DTSDB second = Generated(60, 7);
  EXPECT_EQ(FirstDifference(first, second), "");
}

TEST(Generator, AnotherSeedGivesAnotherUtility) {
  DTSDB first = Generated(60, 7);
  DTSDB second = Generated(60, 8);
  EXPECT_NE(FirstDifference(first, second), "");
}

// The digest stands for the bytes on every platform: it changes only when the generator is meant to change.
TEST(Generator, GivesTheSameBytesEverywhere) {
  const TemporaryDirectory directory;
  DTSDB database = Generated(50, 7);
  ASSERT_TRUE(database.WriteObject(QStringLiteral("g.obj")));
  const QByteArray digest =
      QCryptographicHash::hash(directory.Read(QStringLiteral("g.obj")), QCryptographicHash::Sha256).toHex();
  EXPECT_EQ(digest.toStdString(), "db3fe7c4ec75cf1ef0595dec7ce84fc5744d243672922b6ec8a7bdd67a4f2e33");
}

TEST(Generator, GivesAsManyStationsAsAsked) {
  for (const int stations : {0, 1, 2, 3, 10, 41}) {
    EXPECT_EQ(Generated(stations, 1).m_stTable->GetCount(), stations);
  }
}

TEST(Generator, NegativeNumberOfStationsCountsAsNone) {
  DTSDB none = Generated(0, 5);
  DTSDB negative = Generated(-3, 5);
  EXPECT_EQ(FirstDifference(none, negative), "");
}

TEST(Generator, FillsInputTablesOnly) {
  DTSDB database = Generated(400, 1);
  ForEachTable(database, []<class T>(tTable<T>& table) {
    constexpr const char* kInput[] = {"CO", "DV", "ST", "KV",  "BUS", "CB",     "UN",    "LD",
                                      "CP", "LN", "XF", "ZBR", "DLN", "ANALOG", "STATUS"};
    const bool isInput = std::any_of(std::begin(kInput), std::end(kInput),
                                     [](const char* name) { return std::string(name) == T::kTableName; });
    EXPECT_EQ(table.GetCount() > 0, isInput) << T::kTableName;
  });
}

class GeneratedUtility : public testing::TestWithParam<int> {};

TEST_P(GeneratedUtility, PassesTheValidationWithoutAFault) {
  for (quint64 seed = 0; seed < 12; ++seed) {
    DTSDB database = Generated(GetParam(), seed);
    EXPECT_EQ(Faults(database).toStdString(), "") << "seed " << seed;
    EXPECT_EQ(database.m_globalTable->GetPh(0).valid, 1) << "seed " << seed;
  }
}

TEST_P(GeneratedUtility, HasATopology) {
  for (quint64 seed = 0; seed < 12; ++seed) {
    DTSDB database = Generated(GetParam(), seed);
    MakeTopologyOf(database);
  }
}

INSTANTIATE_TEST_SUITE_P(Stations, GeneratedUtility, testing::Values(0, 1, 2, 3, 5, 21, 100));

TEST(Generator, PassesTheValidationOnTwoHundredSeeds) {
  for (quint64 seed = 100; seed < 300; ++seed) {
    DTSDB database = Generated(static_cast<int>(seed % 23), seed);
    EXPECT_EQ(Faults(database).toStdString(), "") << "seed " << seed;
  }
}

TEST(Generator, HasAboutOneAndAThirdLinesAStation) {
  const int lines = Generated(2000, 1).m_lnTable->GetCount();
  EXPECT_GT(lines, 2000 * 1.2);
  EXPECT_LT(lines, 2000 * 1.4);
}

TEST(Generator, LeavesSomeEquipmentOpenOrOutOfService) {
  DTSDB database = Generated(400, 1);
  const int switches = database.m_cbTable->GetCount();
  const int open = CountOf(*database.m_cbTable, [](const CB& cb) { return (cb.flags & CB_OPEN) != 0; });
  EXPECT_GT(open, 0);
  EXPECT_LT(open, switches / 3);

  const auto has = [](u32 bit) { return [bit](const LN& line) { return (line.status & bit) != 0; }; };
  EXPECT_GT(CountOf(*database.m_lnTable, has(BranchKind<LN>::kOut)), 0);
  EXPECT_GT(CountOf(*database.m_lnTable, has(BranchKind<LN>::kOpen1 | BranchKind<LN>::kOpen2)), 0);
  EXPECT_GT(CountOf(*database.m_unTable, [](const UN& unit) { return unit.ref == 0; }), 0);
}

TEST(Generator, EveryStatusPointHoldsThePositionOfItsSwitch) {
  DTSDB database = Generated(100, 4);
  tTable<STATUS>& points = *database.m_statusTable;
  ASSERT_EQ(points.GetCount(), database.m_cbTable->GetCount());
  const auto disagrees = [&points](const CB& cb) {
    const int point = points.Find(STATUS(cb.status_id));
    return point == -1 || points.GetPh(point).value != ((cb.flags & CB_OPEN) != 0 ? 2 : 1);
  };
  EXPECT_EQ(CountOf(*database.m_cbTable, disagrees), 0);
}

TEST(Generator, HigherVoltagesAreRarer) {
  DTSDB database = Generated(2000, 1);
  std::map<float, int> stations;
  CountOf(*database.m_kvTable, [&stations](const KV& level) {
    if (!level.id.endsWith(QLatin1String("star"))) ++stations[level.vbase];
    return true;
  });
  ASSERT_EQ(stations.size(), 5U);
  EXPECT_GT(stations[500], 20);
  EXPECT_GT(stations[220], 2 * stations[500]);
  EXPECT_GT(stations[110], 2 * stations[220]);
  EXPECT_GT(stations[10], stations[35]);
}

TEST(Generator, ThreeStationsHaveAllVoltages) {
  DTSDB database = Generated(3, 9);
  std::set<float> voltages;
  CountOf(*database.m_kvTable, [&voltages](const KV& level) { return voltages.insert(level.vbase).second; });
  EXPECT_EQ(voltages, (std::set<float>{10, 35, 110, 220, 500}));
}

TEST(Generator, EveryStarPointJoinsThreeWindingsOfOneTransformer) {
  DTSDB database = Generated(300, 2);
  std::map<QString, std::vector<XF>> windings;
  CountOf(*database.m_xfTable, [&windings](const XF& winding) {
    if (winding.zkv.endsWith(QLatin1String("star"))) windings[winding.znd].push_back(winding);
    return true;
  });
  EXPECT_GT(windings.size(), 10U);
  for (const auto& [node, joined] : windings) {
    ASSERT_EQ(joined.size(), 3U) << node.toStdString();
    std::set<int> types;
    std::set<QString> levels;
    for (const XF& winding : joined) {
      types.insert(winding.type);
      levels.insert(winding.kv);
      EXPECT_EQ(winding.id.chopped(1), joined.front().id.chopped(1));
    }
    EXPECT_EQ(types, (std::set<int>{1, 2, 3}));
    EXPECT_EQ(levels.size(), 3U);
  }
}

/// Arrangements by what their switches are called: a level's bays have their names in common.
TEST(Generator, UsesTheArrangementsAsked) {
  for (int i = 0; i < kArrangements; ++i) {
    GeneratorOptions options;
    options.stations = 100;
    options.arrangements.emplace();
    (*options.arrangements)[static_cast<std::size_t>(i)] = 1;
    DTSDB database = Generated(options);
    const auto endsWith = [](const char* end) {
      return [end](const CB& cb) { return cb.id.endsWith(QLatin1String(end)); };
    };
    const auto arrangement = static_cast<Arrangement>(i);
    const bool coupled = arrangement == Arrangement::kSectionedBus || arrangement == Arrangement::kDoubleBus;
    tTable<CB>& switches = *database.m_cbTable;
    const int doubled = CountOf(switches, endsWith("Q2")) - CountOf(switches, endsWith("-CQ2"));
    EXPECT_EQ(CountOf(switches, endsWith("-CQ0")) > 0, coupled) << i;
    EXPECT_EQ(doubled > 0, arrangement == Arrangement::kDoubleBus) << i;
    EXPECT_EQ(CountOf(switches, endsWith("ZQ0")) > 0, arrangement == Arrangement::kBreakerAndAHalf) << i;
    EXPECT_EQ(Faults(database).toStdString(), "") << i;
  }
}

TEST(Generator, LeavesOutWhatHasNoShare) {
  GeneratorOptions options;
  options.stations = 300;
  options.threeWindings = options.dcLines = options.zeroImpedance = 0;
  DTSDB none = Generated(options);
  const auto isThird = [](const XF& winding) { return winding.type == 3; };
  EXPECT_EQ(CountOf(*none.m_xfTable, isThird), 0);
  EXPECT_EQ(none.m_dlnTable->GetCount(), 0);
  EXPECT_EQ(none.m_zbrTable->GetCount(), 0);

  options.threeWindings = options.dcLines = options.zeroImpedance = 100;
  DTSDB all = Generated(options);
  EXPECT_GT(CountOf(*all.m_xfTable, isThird), 20);
  EXPECT_GT(all.m_dlnTable->GetCount(), 20);
  EXPECT_GT(all.m_zbrTable->GetCount(), 100);
  EXPECT_EQ(Faults(all).toStdString(), "");
}

TEST(Generator, RowsAStationDoNotGrowWithTheUtility) {
  DTSDB small = Generated(200, 1);
  DTSDB large = Generated(2000, 1);
  EXPECT_NEAR(RowCount(large) / 2000.0, RowCount(small) / 200.0, 5.0);
}

}  // namespace
}  // namespace dtsdb::tools
