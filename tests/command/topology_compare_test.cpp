// Comparing topologies, as --verify does.

#include "command/topology_compare.h"

#include <gtest/gtest.h>

#include "formats/model_io.h"
#include "tests/support/places.h"

namespace dtsdb::tools {
namespace {

DTSDB TwoStations() { return LoadModel(ModelName(dtsdb::test::SourcePath("tests/command/two_stations"))); }

TEST(TopologyComparison, CopyIsTheSame) {
  DTSDB model = TwoStations();
  std::optional<DTSDB> copy = CopyOf(model);
  ASSERT_TRUE(copy.has_value());
  EXPECT_TRUE(CompareTopology(model, *copy).empty());
  EXPECT_EQ(copy->m_cbTable->GetCount(), model.m_cbTable->GetCount());
}

// So a copy that isn't whole can't pass for one without differences.
TEST(TopologyComparison, MissingRecordsAreDifferences) {
  DTSDB model = TwoStations();
  DTSDB nothing;
  const std::vector<TopologyDifference> differences = CompareTopology(model, nothing);
  ASSERT_FALSE(differences.empty());
  const TopologyDifference& last = differences.back();
  EXPECT_EQ(last.table, "CB");
  EXPECT_EQ(last.identity, "");
  EXPECT_EQ(last.here, "3 records");
  EXPECT_EQ(last.there, "0 records");
  EXPECT_EQ(CompareTopology(nothing, model).size(), differences.size());
}

}  // namespace
}  // namespace dtsdb::tools
