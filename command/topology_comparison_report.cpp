#include "command/topology_comparison_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

Sheet DifferenceSheet(const char* name, const char* title, const cgmes::TopologyComparison& comparison,
                      bool isByDesign) {
  Sheet sheet(name, title, {"what", "station", "voltage_level", "here", "published", "why"});
  sheet.HideWhenEmpty();
  for (const cgmes::TopologyDifference& difference : comparison.differences) {
    if (difference.isByDesign != isByDesign) continue;
    sheet.Add({difference.what, TextOrNothing(difference.station), TextOrNothing(difference.level),
               TextOrNothing(difference.here), TextOrNothing(difference.there), TextOrNothing(difference.why)});
  }
  return sheet;
}

}  // namespace

bool IsAsPublished(const cgmes::TopologyComparison& comparison) {
  return std::all_of(comparison.differences.begin(), comparison.differences.end(),
                     [](const auto& difference) { return difference.isByDesign; });
}

Report ComparisonReport(const cgmes::TopologyComparison& comparison) {
  Sheet differences = DifferenceSheet("differences", "Differences", comparison, false);
  Sheet byDesign = DifferenceSheet("by_design", "Different by design", comparison, true);
  Report report;
  report.Fact("same", IsAsPublished(comparison));
  report.Fact("groups", NumberCell(comparison.groups));
  report.Fact("published_nodes", NumberCell(comparison.published));
  report.Fact("same_groups", NumberCell(comparison.same));
  const bool hasIslands = comparison.publishedIslands > 0;
  report.Fact("live_islands", hasIslands ? NumberCell(comparison.islands) : Cell());
  report.Fact("published_islands", hasIslands ? NumberCell(comparison.publishedIslands) : Cell());
  report.Line(fmt::format("Topological nodes: {} here, {} published, {} the same.", comparison.groups,
                          comparison.published, comparison.same));
  report.Line(hasIslands
                  ? fmt::format("Live islands: {} here, {} published.", comparison.islands, comparison.publishedIslands)
                  : "The set publishes no islands.");
  report.Line(fmt::format("{}, and {} by design.",
                          Counted(static_cast<long long>(differences.Rows().size()), "difference"),
                          byDesign.Rows().size()));
  report.Add(std::move(differences));
  report.Add(std::move(byDesign));
  return report;
}

}  // namespace dtsdb::tools
