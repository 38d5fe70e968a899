#include "command/flow_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "formats/field_text.h"
#include "model/text.h"

namespace dtsdb::tools {
namespace {

/// A power in MW or Mvar, rounded to what the data are good for. Never -0.
Cell PowerCell(float power) {
  if (!std::isfinite(power)) return Number{NumberText(power)};
  const double rounded = std::round(static_cast<double>(power) * 1000) / 1000;
  return Number{NumberText(rounded == 0 ? 0.0 : rounded)};
}

bool LacksPower(const cbFlow& flow, const FlowBalance& balance) {
  return balance.p < -flow.getDelta() || balance.q < -flow.getDelta();
}

std::string SetState(const cbFlow& flow, int set) {
  if (!flow.IsBalanced(set)) return "not balanced";
  return LacksPower(flow, flow.SetBalance(set)) ? "lacks power" : "balanced";
}

std::string ClassOf(const cbBreaker& breaker) {
  if ((breaker.flags & CB_RADIAL) != 0) return "radial";
  if ((breaker.flags & CB_BRIDGE) != 0) return "bridge";
  return (breaker.flags & CB_LOOP) != 0 ? "loop" : "";
}

/// The voltage level of the set's first breaker.
std::string LevelOf(const cbFlow& flow, int set, const LevelOfBreaker& levels) {
  const QList<int> breakers = flow.SetBreakers(set);
  if (breakers.isEmpty()) return "";
  const auto found = levels.find(IdToBytes(flow.Breakers()[breakers.first()].id).toStdString());
  return found == levels.end() ? "" : IdText(IdFromBytes(found->second.c_str()));
}

Sheet SetSheet(const cbFlow& flow, const LevelOfBreaker& levels) {
  Sheet sheet("sets", "Sets of nodes that closed breakers join",
              {"set", "voltage_level", "nodes", "breakers", "surplus_p", "surplus_q", "state"});
  for (int set = 0; set < flow.SetCount(); ++set) {
    const FlowBalance balance = flow.SetBalance(set);
    sheet.Add({NumberCell(set), LevelOf(flow, set, levels), NumberCell(flow.SetNodes(set).size()),
               NumberCell(flow.SetBreakers(set).size()), PowerCell(balance.p), PowerCell(balance.q),
               SetState(flow, set)});
  }
  return sheet;
}

std::vector<int> InOrder(QList<int> keys) {
  std::sort(keys.begin(), keys.end());
  return {keys.begin(), keys.end()};
}

Sheet BreakerSheet(const cbFlow& flow) {
  Sheet sheet("breakers", "Flows through the breakers", {"set", "breaker", "from", "to", "class", "p", "q"});
  sheet.GroupBy(1);
  for (int set = 0; set < flow.SetCount(); ++set) {
    const bool computed = flow.IsBalanced(set);
    for (const int key : InOrder(flow.SetBreakers(set))) {
      const cbBreaker breaker = flow.Breakers()[key];
      sheet.Add({NumberCell(set), IdText(breaker.id), IdText(breaker.nd), IdText(breaker.znd),
                 computed ? Cell(ClassOf(breaker)) : Cell(), computed ? PowerCell(breaker.p) : Cell(),
                 computed ? PowerCell(breaker.q) : Cell()});
    }
  }
  return sheet;
}

/// Number of breakers without a finite flow: loops where a section has no voltage.
int BreakersWithoutResult(const cbFlow& flow) {
  int count = 0;
  for (const cbBreaker& breaker : flow.Breakers()) count += std::isfinite(breaker.p + breaker.q) ? 0 : 1;
  return count;
}

}  // namespace

int RefusedSets(const cbFlow& flow) {
  int refused = 0;
  for (int set = 0; set < flow.SetCount(); ++set) refused += flow.IsBalanced(set) ? 0 : 1;
  return refused;
}

Report FlowReport(const cbFlow& flow, const LevelOfBreaker& levels) {
  int closed = 0;
  for (const cbBreaker& breaker : flow.Breakers()) closed += breaker.open ? 0 : 1;
  const int refused = RefusedSets(flow);
  const int without = BreakersWithoutResult(flow);

  Report report;
  report.Fact("not_balanced", NumberCell(refused));
  report.Fact("closed_breakers", NumberCell(closed));
  report.Fact("open_or_dead_breakers", NumberCell(flow.Breakers().size() - closed));
  report.Fact("tolerance", Number{NumberText(flow.getDelta())});
  report.Line(
      fmt::format("Closed live breakers: {}, in {} sets, {} of them not balanced.", closed, flow.SetCount(), refused));
  if (without > 0) {
    report.Line(fmt::format("{} breakers on loops have no flow: their bus sections have no voltage.", without));
  }
  report.Add(SetSheet(flow, levels));
  report.Add(BreakerSheet(flow));
  return report;
}

}  // namespace dtsdb::tools
