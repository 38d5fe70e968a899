// Comparing topologies, as --verify does.

#include <gtest/gtest.h>

#include "analysis/model.h"
#include "analysis/topology.h"
#include "tests/support/places.h"

namespace dtsdb::analysis {
namespace {

Model TwoStations() { return *Model::Open(dtsdb::test::SourcePath("tests/command/two_stations")); }

TEST(TopologyComparison, CopyIsTheSame) {
  const Model model = TwoStations();
  const Result<Model> copy = model.Copy();
  ASSERT_TRUE(copy.has_value());
  EXPECT_TRUE(CompareTopology(model.Tables(), copy->Tables()).empty());
  EXPECT_EQ(copy->Tables().m_cbTable->GetCount(), model.Tables().m_cbTable->GetCount());
}

// So a copy that isn't whole can't pass for one without differences.
TEST(TopologyComparison, MissingRecordsAreDifferences) {
  const Model model = TwoStations();
  DTSDB nothing;
  const std::vector<Difference> differences = CompareTopology(model.Tables(), nothing);
  ASSERT_FALSE(differences.empty());
  const Difference& last = differences.back();
  EXPECT_EQ(last.table, "CB");
  EXPECT_EQ(last.identity, "");
  EXPECT_EQ(last.here, "3 records");
  EXPECT_EQ(last.there, "0 records");
  EXPECT_EQ(CompareTopology(nothing, model.Tables()).size(), differences.size());
}

// Of each table the first model's records stand on the left.
TEST(TopologyComparison, EveryTableIsComparedInTheSameDirection) {
  const Model model = TwoStations();
  DTSDB nothing;
  for (const Difference& difference : CompareTopology(model.Tables(), nothing)) {
    EXPECT_EQ(difference.there, "0 records") << difference.table;
    EXPECT_NE(difference.here, "0 records") << difference.table;
  }
}

}  // namespace
}  // namespace dtsdb::analysis
