// Flows of a model at hand.
#include "analysis/flows.h"

#include <gtest/gtest.h>

#include "analysis/topology.h"
#include "tests/support/model_builder.h"

namespace dtsdb::analysis {
namespace {

using test::ModelBuilder;

/// A unit on one side of a closed breaker, on the other a line to a load.
///
///     U a ---[Q]--- b ====L==== c D
class ModelFlows : public testing::Test {
 protected:
  ModelFlows() {
    m.Station("S").Kv("K").Bus("B", "K", "a").Bus("C", "K", "b").Breaker("Q", "K", "a", "b");
    m.Unit("U", "K", "a");
    m.Station("T").Kv("KT").Bus("E", "KT", "c").Load("D", "KT", "c");
    m.Line("L", "DV", "S", "T", "K", "KT", "b", "c");
  }

  ModelBuilder m;
};

TEST_F(ModelFlows, AModelWithoutTopologyGetsOne) {
  Model model = Model::Of(m.Db());
  const Result<Flows> flows = WorkOutFlows(model);
  ASSERT_TRUE(flows.has_value()) << flows.error().message;
  EXPECT_TRUE(model.IsGood());
  ASSERT_EQ(flows->breakers.size(), 1U);
  EXPECT_EQ(flows->breakers[0].state, BreakerState::kComputed);
  EXPECT_EQ(flows->sets.size(), 1U);
}

TEST_F(ModelFlows, ATopologyThatIsThereIsLeftAsItIs) {
  Model model = Model::Of(m.Db());
  ASSERT_TRUE(WorkOutTopology(model).has_value());
  m.Of<CB>("Q").flags |= CB_OPEN;  // a state that no run has followed up
  const Result<Flows> flows = WorkOutFlows(model);
  ASSERT_TRUE(flows.has_value());
  EXPECT_EQ(flows->breakers[0].state, BreakerState::kOpen);
  EXPECT_GT(m.Of<ND>("a").ibs, 0);
  EXPECT_EQ(m.Of<ND>("a").ibs, m.Of<ND>("b").ibs);
}

TEST_F(ModelFlows, AModelWithErrorsHasNone) {
  m.Of<CB>("Q").nd = QString();
  Model model = Model::Of(m.Db(), "grid");
  const Result<Flows> flows = WorkOutFlows(model);
  ASSERT_FALSE(flows.has_value());
  EXPECT_EQ(flows.error().code, ErrorCode::kFaultyModel);
  EXPECT_EQ(flows.error().message, "grid: the model has 1 error; 'dtsdb validate grid' shows them");
}

}  // namespace
}  // namespace dtsdb::analysis
