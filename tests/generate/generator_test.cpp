// Random utilities: repeatable, valid at every size, and like real ones.

#include "generate/generator.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>

#include "model/record_bits.h"
#include "tests/formats/random_model.h"
#include "tests/support/temporary_directory.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
namespace {

using dtsdb::test::TemporaryDirectory;
using test::FirstDifference;

DTSDB Generated(int stations, quint64 seed) {
  DTSDB database;
  GenerateUtility(database, {stations, seed});
  return database;
}

/// The errors and warnings of a validation, a line for each.
QString Faults(DTSDB& database) {
  const TemporaryDirectory directory;
  NMD validation(&database);
  EXPECT_TRUE(validation.DetectAll());
  QString faults;
  for (const Finding& finding : validation.Findings()) {
    if (finding.severity != Severity::kNotice) faults += finding.text + QLatin1Char('\n');
  }
  return faults;
}

/// Number of records that fulfil `is`.
template <class T, class Predicate>
int Count(tTable<T>& table, Predicate is) {
  int count = 0;
  for (int i = 0; i < table.GetCount(); ++i) count += is(table[i]) ? 1 : 0;
  return count;
}

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
  EXPECT_EQ(digest.toStdString(), "521d3a43df0ad631f63655a4a548a9fbad536492e8f69bd5bbc67628375e61eb");
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
    ASSERT_EQ(Faults(database).toStdString(), "");
    TP topology(&database);
    EXPECT_EQ(topology.tpAllnew(), 1) << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Stations, GeneratedUtility, testing::Values(0, 1, 2, 3, 5, 21, 100));

TEST(Generator, MostOfALargeUtilityIsOneLiveIsland) {
  DTSDB database = Generated(400, 3);
  ASSERT_EQ(Faults(database).toStdString(), "");
  TP topology(&database);
  ASSERT_EQ(topology.tpAllnew(), 1);
  const int buses = database.m_busTable->GetCount();
  const int dead = Count(*database.m_busTable, [](const BUS& bus) { return (bus.tp_status & SHUNT_DEAD) != 0; });
  EXPECT_GT(dead, 0);
  EXPECT_LT(dead, buses / 10);
}

TEST(Generator, HasAboutOneAndAThirdLinesAStation) {
  const int lines = Generated(2000, 1).m_lnTable->GetCount();
  EXPECT_GT(lines, 2000 * 1.2);
  EXPECT_LT(lines, 2000 * 1.4);
}

TEST(Generator, LeavesSomeEquipmentOpenOrOutOfService) {
  DTSDB database = Generated(400, 1);
  const int switches = database.m_cbTable->GetCount();
  const int open = Count(*database.m_cbTable, [](const CB& cb) { return (cb.flags & CB_OPEN) != 0; });
  EXPECT_GT(open, 0);
  EXPECT_LT(open, switches / 3);

  const auto has = [](u32 bit) { return [bit](const LN& line) { return (line.status & bit) != 0; }; };
  EXPECT_GT(Count(*database.m_lnTable, has(BranchKind<LN>::kOut)), 0);
  EXPECT_GT(Count(*database.m_lnTable, has(BranchKind<LN>::kOpen1 | BranchKind<LN>::kOpen2)), 0);
  EXPECT_GT(Count(*database.m_unTable, [](const UN& unit) { return unit.ref == 0; }), 0);
}

TEST(Generator, EveryStatusPointHoldsThePositionOfItsSwitch) {
  DTSDB database = Generated(100, 4);
  tTable<STATUS>& points = *database.m_statusTable;
  ASSERT_EQ(points.GetCount(), database.m_cbTable->GetCount());
  const auto disagrees = [&points](const CB& cb) {
    const int point = points.Find(STATUS(cb.status_id));
    return point == -1 || points.GetPh(point).value != ((cb.flags & CB_OPEN) != 0 ? 2 : 1);
  };
  EXPECT_EQ(Count(*database.m_cbTable, disagrees), 0);
}

TEST(Generator, RowsAStationDoNotGrowWithTheUtility) {
  DTSDB small = Generated(200, 1);
  DTSDB large = Generated(2000, 1);
  EXPECT_NEAR(RowCount(large) / 2000.0, RowCount(small) / 200.0, 5.0);
}

}  // namespace
}  // namespace dtsdb::tools
