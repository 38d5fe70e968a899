#include "command/effect_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "command/power_cell.h"
#include "formats/text_layout.h"
#include "model/records.h"

namespace dtsdb::tools {
namespace {

using analysis::Effect;
using analysis::IslandChange;
using analysis::Supplied;
using analysis::SupplyTotals;

/// Such as "1 station, 2 buses, 3 loads (120 MW, 22 Mvar)"; "nothing" where there is nothing.
std::string TotalsText(const SupplyTotals& totals) {
  std::vector<std::string> parts;
  if (totals.stations > 0) parts.push_back(Counted(totals.stations, "station"));
  if (totals.buses > 0) parts.push_back(fmt::format("{} {}", totals.buses, totals.buses == 1 ? "bus" : "buses"));
  if (totals.units > 0) parts.push_back(Counted(totals.units, "unit"));
  if (totals.loads > 0) {
    parts.push_back(fmt::format("{} ({} MW, {} Mvar)", Counted(totals.loads, "load"), CellText(PowerCell(totals.p)),
                                CellText(PowerCell(totals.q))));
  }
  return parts.empty() ? "nothing" : fmt::format("{}", fmt::join(parts, ", "));
}

void AddFacts(Report& report, const std::string& name, const SupplyTotals& totals) {
  report.Fact(name + "_stations", NumberCell(totals.stations));
  report.Fact(name + "_buses", NumberCell(totals.buses));
  report.Fact(name + "_units", NumberCell(totals.units));
  report.Fact(name + "_loads", NumberCell(totals.loads));
  report.Fact(name + "_load_p", PowerCell(totals.p));
  report.Fact(name + "_load_q", PowerCell(totals.q));
}

void AddThings(Sheet& sheet, const char* change, const std::vector<Supplied>& things) {
  for (const Supplied& thing : things) {
    const bool hasPower = thing.table == UN::kTableName || thing.table == LD::kTableName;
    sheet.Add({change, thing.table, thing.identity, thing.station, thing.level.empty() ? Cell() : Cell(thing.level),
               thing.state, hasPower ? PowerCell(thing.p) : Cell(), hasPower ? PowerCell(thing.q) : Cell()});
  }
}

Cell NumbersCell(const std::vector<int>& numbers) {
  return numbers.empty() ? Cell() : Cell(fmt::format("{}", fmt::join(numbers, " ")));
}

Sheet EffectSheet() {
  Sheet sheet("effect", "What lost and regained supply",
              {"change", "table", "identity", "station", "voltage_level", "state", "p", "q"});
  sheet.GroupBy(1).HideWhenEmpty();
  return sheet;
}

Sheet IslandChangeSheet() {
  Sheet sheet("island_changes", "Islands that split, joined, died or arose", {"change", "before", "after"});
  sheet.HideWhenEmpty();
  return sheet;
}

}  // namespace

void AddEffect(Report& report, const Effect& effect) {
  const SupplyTotals lost = TotalsOf(effect.lost);
  const SupplyTotals regained = TotalsOf(effect.regained);
  AddFacts(report, "lost", lost);
  AddFacts(report, "regained", regained);
  Sheet things = EffectSheet();
  AddThings(things, "lost", effect.lost);
  AddThings(things, "regained", effect.regained);
  Sheet islands = IslandChangeSheet();
  for (const IslandChange& change : effect.islands) {
    islands.Add({KindName(change.kind), NumbersCell(change.before), NumbersCell(change.after)});
  }
  report.Add(std::move(things));
  report.Add(std::move(islands));
  report.Line("");
  report.Line("Lost supply: " + TotalsText(lost) + ".");
  report.Line("Regained supply: " + TotalsText(regained) + ".");
}

}  // namespace dtsdb::tools
