#include "command/flow_report.h"

#include <fmt/format.h>

#include <cmath>

#include "command/power_cell.h"
#include "formats/field_text.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

Sheet SetSheet(const Flows& flows) {
  Sheet sheet("sets", "Sets of nodes that closed breakers join",
              {"set", "voltage_level", "nodes", "breakers", "surplus_p", "surplus_q", "state"});
  for (std::size_t number = 0; number < flows.sets.size(); ++number) {
    const FlowSet& set = flows.sets[number];
    sheet.Add({NumberCell(static_cast<long long>(number)), IdText(set.kv), NumberCell(set.nodes),
               NumberCell(static_cast<long long>(set.breakers.size())), PowerCell(set.surplus.p),
               PowerCell(set.surplus.q), StateName(set.state)});
  }
  return sheet;
}

/// What stands for a flow that wasn't computed: nothing where nobody tried, nan where it has no value.
Cell FlowCell(const BreakerFlow& breaker, float power) {
  if (breaker.state == BreakerState::kNotBalanced) return {};
  return PowerCell(breaker.state == BreakerState::kNoVoltage ? std::nanf("") : power);
}

Sheet BreakerSheet(const Flows& flows) {
  Sheet sheet("breakers", "Flows through the breakers", {"set", "breaker", "from", "to", "class", "p", "q", "state"});
  sheet.GroupBy(1);
  bool areAllComputed = true;
  for (const FlowSet& set : flows.sets) {
    for (const int place : set.breakers) {
      const BreakerFlow& breaker = flows.breakers[place];
      const bool isTried = breaker.state != BreakerState::kNotBalanced;
      areAllComputed = areAllComputed && breaker.state == BreakerState::kComputed;
      sheet.Add({NumberCell(breaker.set), IdText(breaker.id), IdText(breaker.nd), IdText(breaker.znd),
                 isTried ? Cell(ClassName(breaker.where)) : Cell(), FlowCell(breaker, breaker.p),
                 FlowCell(breaker, breaker.q), StateName(breaker.state)});
    }
  }
  if (areAllComputed) sheet.HideColumn(sheet.Columns().size() - 1);
  return sheet;
}

}  // namespace

bool IsWhole(const Flows& flows) {
  return flows.Count(FlowSetState::kNotBalanced) == 0 && flows.Count(FlowSetState::kNoVoltage) == 0;
}

Report FlowReport(const Flows& flows) {
  const int open = flows.Count(BreakerState::kOpen);
  const int closed = static_cast<int>(flows.breakers.size()) - open;
  const int refused = flows.Count(FlowSetState::kNotBalanced);
  const int sets = flows.Count(FlowSetState::kNoVoltage);
  const int breakers = flows.Count(BreakerState::kNoVoltage);

  Report report;
  report.Fact("not_balanced", NumberCell(refused));
  report.Fact("no_voltage", NumberCell(sets));
  report.Fact("closed_breakers", NumberCell(closed));
  report.Fact("open_or_dead_breakers", NumberCell(open));
  report.Fact("breakers_without_voltage", NumberCell(breakers));
  report.Fact("tolerance", Number{NumberText(flows.tolerance)});
  report.Line(fmt::format("Closed live breakers: {}, in {} sets, {} of them not balanced.", closed, flows.sets.size(),
                          refused));
  if (sets > 0) {
    report.Line(fmt::format("No voltage in {}: {} on loops without a flow.", Counted(sets, "set"),
                            Counted(breakers, "breaker")));
  }
  report.Add(SetSheet(flows));
  report.Add(BreakerSheet(flows));
  return report;
}

}  // namespace dtsdb::tools
