#include "command/screening_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "command/power_cell.h"
#include "command/topology_report.h"
#include "formats/text_layout.h"
#include "model/records.h"

namespace dtsdb::tools {
namespace {

using analysis::IslandLoss;
using analysis::IslandPart;
using analysis::Outage;
using analysis::OutageResult;
using analysis::Screening;
using analysis::Supplied;

Cell CountCell(std::size_t count) { return NumberCell(static_cast<long long>(count)); }

/// Number of things for which `holds`.
template <class Things, class Holds>
std::size_t CountOf(const Things& things, Holds holds) {
  return static_cast<std::size_t>(std::count_if(things.begin(), things.end(), holds));
}

bool HasSplit(const IslandLoss& loss) { return loss.parts.size() > 1; }
bool HasDied(const IslandLoss& loss) { return loss.parts.empty(); }
bool HasLostReference(const IslandLoss& loss) { return loss.lostReference; }

/// The outages with an island for which `holds`.
template <class Holds>
std::size_t OutagesWith(const Screening& screening, Holds holds) {
  return CountOf(screening.outages, [&](const OutageResult& result) {
    return std::any_of(result.islands.begin(), result.islands.end(), holds);
  });
}

/// What went out: the text, and its parts for programs.
std::vector<Cell> OutageCells(const Outage& outage) {
  const bool isPair = outage.size() > 1;
  return {analysis::OutageText(outage), outage[0].table, outage[0].identity, isPair ? Cell(outage[1].table) : Cell(),
          isPair ? Cell(outage[1].identity) : Cell()};
}

Sheet OutageSheet(const Screening& screening, std::size_t shown) {
  Sheet sheet("outages", "Outages by what they cost",
              {"rank", "outage", "table", "identity", "second_table", "second_identity", "load_p", "load_q", "loads",
               "buses", "stations", "units", "islands_split", "islands_died", "references_lost", "run", "note"});
  for (std::size_t i = 0; i < shown; ++i) {
    const OutageResult& result = screening.outages[i];
    std::vector<Cell> row = OutageCells(result.outage);
    row.insert(row.begin(), CountCell(i + 1));
    const auto add = [&](Cell cell) { row.push_back(std::move(cell)); };
    if (result.failure.empty()) {
      add(PowerCell(result.totals.p));
      add(PowerCell(result.totals.q));
      for (const int count : {result.totals.loads, result.totals.buses, result.totals.stations, result.totals.units}) {
        add(NumberCell(count));
      }
      add(CountCell(CountOf(result.islands, HasSplit)));
      add(CountCell(CountOf(result.islands, HasDied)));
      add(CountCell(CountOf(result.islands, HasLostReference)));
      add(result.run);
      add(TextOrNothing(result.note));
    } else {
      row.resize(sheet.Columns().size() - 2);
      add("failed");
      add(result.failure);
    }
    sheet.Add(std::move(row));
  }
  return sheet;
}

/// Hides in text what only programs need.
void HideForPeople(Sheet& sheet) {
  for (const std::size_t column : {2, 3, 4, 5, 15}) sheet.HideColumn(column);
  std::vector<Cell> defaults(sheet.Columns().size(), Cell("-"));
  for (const std::size_t column : {12, 13, 14}) defaults[column] = NumberCell(0);
  defaults[16] = Cell();
  sheet.HideDefaults(defaults);
}

/// What is lost in a station.
struct StationLoss {
  std::string station;
  analysis::SupplyTotals totals;
};

/// The stations that lose something, those that lose most MW of loads first.
std::vector<StationLoss> LossesByStation(const std::vector<Supplied>& lost) {
  std::vector<std::string> stations;
  std::map<std::string, std::vector<Supplied>> things;
  for (const Supplied& thing : lost) {
    if (!things.contains(thing.station)) stations.push_back(thing.station);
    things[thing.station].push_back(thing);
  }
  std::vector<StationLoss> losses;
  losses.reserve(stations.size());
  for (const std::string& station : stations) losses.push_back({station, analysis::TotalsOf(things[station])});
  std::stable_sort(losses.begin(), losses.end(),
                   [](const StationLoss& a, const StationLoss& b) { return a.totals.p > b.totals.p; });
  return losses;
}

Sheet StationSheet(const Screening& screening, std::size_t shown) {
  Sheet sheet("stations", "Where supply is lost",
              {"rank", "outage", "station", "state", "load_p", "load_q", "loads", "buses", "units"});
  sheet.GroupBy(2).HideWhenEmpty();
  for (std::size_t i = 0; i < shown; ++i) {
    for (const auto& [station, totals] : LossesByStation(screening.outages[i].lost)) {
      sheet.Add({CountCell(i + 1), analysis::OutageText(screening.outages[i].outage), station,
                 totals.stations > 0 ? "dead" : "partly", PowerCell(totals.p), PowerCell(totals.q),
                 NumberCell(totals.loads), NumberCell(totals.buses), NumberCell(totals.units)});
    }
  }
  return sheet;
}

Sheet LostSheet(const Screening& screening, std::size_t shown) {
  Sheet sheet("lost", "What loses supply",
              {"rank", "outage", "table", "identity", "station", "voltage_level", "state", "p", "q"});
  sheet.GroupBy(2).HideUnlessNamed();
  for (std::size_t i = 0; i < shown; ++i) {
    const OutageResult& result = screening.outages[i];
    for (const Supplied& thing : result.lost) {
      const bool hasPower = thing.table == UN::kTableName || thing.table == LD::kTableName;
      sheet.Add({CountCell(i + 1), analysis::OutageText(result.outage), thing.table, thing.identity, thing.station,
                 TextOrNothing(thing.level), thing.state, hasPower ? PowerCell(thing.p) : Cell(),
                 hasPower ? PowerCell(thing.q) : Cell()});
    }
  }
  return sheet;
}

const char* ChangeText(const IslandLoss& loss) {
  if (HasSplit(loss)) return "split";
  return HasDied(loss) ? "died" : "lost its reference";
}

Sheet IslandLossSheet(const Screening& screening, std::size_t shown) {
  Sheet sheet("islands", "Islands that split, die or lose their reference",
              {"rank", "outage", "island", "change", "reference", "part_station", "part_node", "part_reference"});
  sheet.GroupBy(5).HideWhenEmpty();
  for (std::size_t i = 0; i < shown; ++i) {
    const OutageResult& result = screening.outages[i];
    for (const IslandLoss& loss : result.islands) {
      const std::vector<Cell> island = {CountCell(i + 1), analysis::OutageText(result.outage), NumberCell(loss.island),
                                        ChangeText(loss), TextOrNothing(loss.reference)};
      if (HasDied(loss)) sheet.Add(island);
      for (const IslandPart& part : loss.parts) {
        std::vector<Cell> row = island;
        for (const std::string& text : {part.station, part.node, part.reference}) row.push_back(TextOrNothing(text));
        sheet.Add(std::move(row));
      }
    }
  }
  return sheet;
}

void AddFacts(Report& report, const Screening& screening, std::size_t shown) {
  const auto& outages = screening.outages;
  const std::size_t failed = CountOf(outages, [](const OutageResult& result) { return !result.failure.empty(); });
  const std::size_t costing = CountOf(outages, [](const OutageResult& result) { return result.HasEffect(); });
  const std::size_t loads = CountOf(outages, [](const OutageResult& result) { return result.totals.loads > 0; });
  const std::size_t split = OutagesWith(screening, HasSplit);
  const std::size_t died = OutagesWith(screening, HasDied);
  const std::size_t references = OutagesWith(screening, HasLostReference);
  const std::size_t full = CountOf(outages, [](const OutageResult& result) { return result.fullRun; });
  report.Fact("screened", CountCell(outages.size()));
  report.Fact("shown", CountCell(shown));
  report.Fact("with_effect", CountCell(costing));
  report.Fact("with_loads_lost", CountCell(loads));
  report.Fact("with_islands_split", CountCell(split));
  report.Fact("with_islands_died", CountCell(died));
  report.Fact("with_references_lost", CountCell(references));
  report.Fact("full_runs", CountCell(full));
  report.Fact("failed", CountCell(failed));
  report.Line(
      fmt::format("Of {} {} cost loads their supply, {} split an island, {} leave one dead, {} take a reference.",
                  Counted(static_cast<long long>(outages.size()), "outage"), loads, split, died, references));
  if (failed > 0) report.Line(fmt::format("{} have no topology.", Counted(static_cast<long long>(failed), "outage")));
}

/// The line that names how many outages aren't shown.
void AddRest(Report& report, const Screening& screening, std::size_t shown) {
  const auto& outages = screening.outages;
  if (shown == outages.size()) return;
  const auto costing = std::count_if(outages.begin() + static_cast<std::ptrdiff_t>(shown), outages.end(),
                                     [](const OutageResult& result) { return result.HasEffect(); });
  report.Line("");
  report.Line(fmt::format("{}, {} of them with an effect; --top N shows N.",
                          Counted(static_cast<long long>(outages.size() - shown), "more outage"), costing));
}

}  // namespace

Report ScreeningReport(const Screening& screening, std::size_t most, Language language) {
  const std::size_t shown = std::min(most, screening.outages.size());
  Report report;
  AddFacts(report, screening, shown);
  HideForPeople(report.Add(OutageSheet(screening, shown)));
  report.Add(StationSheet(screening, shown));
  report.Add(IslandLossSheet(screening, shown));
  report.Add(LostSheet(screening, shown));
  report.Add(RunFindingSheet(screening.findings, screening.leftOut, language));
  AddRest(report, screening, shown);
  return report;
}

}  // namespace dtsdb::tools
