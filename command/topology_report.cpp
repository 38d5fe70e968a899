#include "command/topology_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "command/finding_report.h"
#include "formats/field_text.h"
#include "model/table_info.h"

namespace dtsdb::tools {
namespace {

using analysis::Counts;
using analysis::Section;
using analysis::SectionKind;
using analysis::Topology;

Cell NumberOrNothing(int number) { return number >= 0 ? NumberCell(number) : Cell(); }

/// Live, dead, or a fragment that only holds the open or dead end of a branch.
std::string StateOf(const Section& section) {
  const std::string state = section.IsLive() ? "live" : "dead";
  switch (section.kind) {
    case SectionKind::kSection:
      return state;
    case SectionKind::kFragment:
      return state + ", fragment";
    case SectionKind::kOpenEnd:
      break;
  }
  return state + ", open end";
}

Sheet SectionSheet(const Topology& topology) {
  Sheet sheet("sections", "Bus sections",
              {"section", "name", "station", "voltage_level", "island", "state", "nodes", "buses", "units", "loads",
               "shunts", "branches"});
  for (const Section& section : topology.sections) {
    const Counts& counts = section.counts;
    sheet.Add({NumberCell(section.number), TextOrNothing(section.name), section.station, section.level,
               NumberOrNothing(section.island), StateOf(section), NumberCell(counts.nodes), NumberCell(counts.buses),
               NumberCell(counts.units), NumberCell(counts.loads), NumberCell(counts.shunts),
               NumberCell(counts.branches)});
  }
  return sheet;
}

Sheet ContentSheet(const Topology& topology) {
  Sheet sheet("contents", "What hangs on the sections",
              {"section", "name", "table", "identity", "end", "leads_to", "state"});
  sheet.GroupBy(2);
  for (const Section& section : topology.sections) {
    for (const analysis::Item& item : section.items) {
      sheet.Add({NumberCell(section.number), TextOrNothing(section.name), item.table, item.identity,
                 TextOrNothing(item.end), NumberOrNothing(item.leadsTo), TextOrNothing(item.state)});
    }
  }
  return sheet;
}

Sheet DeadSheet(const Topology& topology) {
  Sheet sheet("dead", "Dead and isolated", {"table", "identity", "state"});
  sheet.GroupBy(1);
  for (const analysis::Node& node : topology.nodes) {
    if (node.live) continue;
    sheet.Add({ND::kTableName, node.identity, node.IsInSection() ? "dead" : "in no section"});
  }
  for (const analysis::Dead& dead : topology.dead) sheet.Add({dead.table, dead.identity, dead.state});
  return sheet;
}

}  // namespace

Sheet IslandSheet(const std::vector<analysis::Island>& islands) {
  Sheet sheet("islands", "Live islands",
              {"island", "sections", "nodes", "buses", "units", "loads", "reference", "reference_section"});
  for (const analysis::Island& island : islands) {
    const Counts& counts = island.counts;
    sheet.Add({NumberCell(island.number), NumberCell(island.sections), NumberCell(counts.nodes),
               NumberCell(counts.buses), NumberCell(counts.units), NumberCell(counts.loads),
               TextOrNothing(island.reference), NumberOrNothing(island.referenceSection)});
  }
  return sheet;
}

Sheet RunFindingSheet(const QList<Finding>& findings, const std::vector<std::string>& leftOut, Language language) {
  constexpr std::size_t kFieldColumn = 3;
  Sheet sheet("findings", "Findings", {"code", "table", "identity", "field", "text", "what_to_do"});
  sheet.HideWhenEmpty().HideColumn(kFieldColumn);  // text and what to do name what they are about
  const auto add = [&](const MessageInfo& message, const std::string& identity, const std::string& text) {
    sheet.Add({message.code, TableName(message.table), identity, message.field, text, RemedyOf(message, language)});
  };
  for (const Finding& finding : findings) {
    add(*FindMessage(finding.code), IdText(finding.id), TextOf(finding, language).toStdString());
  }
  const MessageInfo& message = *FindMessage(analysis::kLeftOutCode);
  for (const std::string& branch : leftOut) add(message, branch, TextOf(message, language));
  return sheet;
}

Report TopologyReport(const Topology& topology, Language language) {
  const auto all = static_cast<long long>(topology.sections.size());
  const auto live =
      std::count_if(topology.sections.begin(), topology.sections.end(), [](const Section& s) { return s.IsLive(); });
  const std::size_t islands = topology.islands.size();

  Report report;
  report.Fact("live_islands", NumberCell(static_cast<long long>(islands)));
  report.Fact("live_sections", NumberCell(static_cast<long long>(live)));
  report.Fact("dead_sections", NumberCell(all - live));
  report.Line(fmt::format("Live islands: {}. Bus sections: {}, {} of them dead.", islands, all, all - live));
  report.Add(IslandSheet(topology.islands));
  report.Add(SectionSheet(topology));
  report.Add(ContentSheet(topology));
  report.Add(DeadSheet(topology));
  report.Add(RunFindingSheet(topology.findings, topology.leftOut, language));
  return report;
}

}  // namespace dtsdb::tools
