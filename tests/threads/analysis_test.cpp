// The analysis layer on several threads of a program, each with models of its own.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "analysis/flows.h"
#include "analysis/model.h"
#include "analysis/screening.h"
#include "analysis/topology.h"
#include "generate/generator.h"
#include "include/log_sink.h"
#include "model/dtsdb.h"
#include "tests/threads/side_by_side.h"

namespace dtsdb::test {
namespace {

/// Logs go nowhere.
class AnalysisOnThreads : public testing::Test {
 protected:
  AnalysisOnThreads() {
    SetLogSink([](LogKind, std::string_view) {});
  }
  ~AnalysisOnThreads() override { SetLogSink({}); }
};

analysis::Model Grid(int number) {
  DTSDB tables;
  tools::GenerateUtility(tables, {.stations = 6, .seed = static_cast<quint64>(number) + 1});
  return analysis::Model::Of(tables);
}

/// What the outages of all lines cost, worked out by `jobs` threads.
std::string ScreeningOf(const analysis::Model& model, std::size_t jobs) {
  const auto outages = analysis::SingleOutages(model, {"LN", "XF"});
  EXPECT_TRUE(outages.has_value());
  std::size_t done = 0;
  const auto screening = analysis::Screen(
      model, *outages, {.jobs = jobs, .progress = [&](std::size_t count) { done = count; }, .isCancelled = {}});
  EXPECT_TRUE(screening.has_value());
  EXPECT_LE(done, outages->size());
  std::string text;
  for (const analysis::OutageResult& outage : screening->outages) {
    text += analysis::OutageText(outage.outage) + ": " + std::to_string(outage.lost.size()) + ", " + outage.run + "\n";
  }
  return text;
}

TEST_F(AnalysisOnThreads, ScreensOnSeveralThreadsAtOnce) {
  std::vector<std::string> alone;
  for (int i = 0; i < kThreads; ++i) alone.push_back(ScreeningOf(Grid(i), 1));
  std::vector<std::string> together(kThreads);
  SideBySide(kThreads, [&](int i) { together[static_cast<std::size_t>(i)] = ScreeningOf(Grid(i), 2); });
  EXPECT_GT(alone[0].size(), 100U);
  EXPECT_TRUE(together == alone);
}

/// The number of dead nodes and devices, and of breakers with a flow.
std::string TopologyAndFlows(analysis::Model model) {
  const auto topology = analysis::WorkOutTopology(model);
  EXPECT_TRUE(topology.has_value());
  const auto flows = analysis::WorkOutFlows(model);
  EXPECT_TRUE(flows.has_value());
  return std::to_string(topology->nodes.size()) + " " + std::to_string(topology->dead.size()) + " " +
         std::to_string(flows->Count(BreakerState::kComputed));
}

TEST_F(AnalysisOnThreads, WorksOutTopologiesAndFlowsOfCopies) {
  analysis::Model model = Grid(0);
  const std::string alone = TopologyAndFlows(*model.Copy());
  std::vector<analysis::Model> copies;
  for (int i = 0; i < kThreads; ++i) copies.push_back(*model.Copy());
  SideBySide(kThreads,
             [&](int i) { EXPECT_EQ(TopologyAndFlows(std::move(copies[static_cast<std::size_t>(i)])), alone); });
}

}  // namespace
}  // namespace dtsdb::test
