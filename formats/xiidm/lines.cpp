#include "formats/import/line_voltages.h"
#include "formats/xiidm/branch_rows.h"
#include "formats/xiidm/steps.h"

namespace dtsdb::tools::xiidm {
namespace {

/// A line on its way into a row.
struct Line {
  int object;
  const Terminal* from;
  const Terminal* to;
};

std::vector<Line> FindLines(Mapping& mapping) {
  std::vector<Line> lines;
  for (const Role role : {Role::kLine, Role::kTieLine}) {
    for (const int line : mapping.Standing(role)) {
      if (mapping.connections.TerminalsOf(line).empty()) continue;  // a tie line of two boundary lines
      lines.push_back({line, &mapping.connections.End(line, 0), &mapping.connections.End(line, 1)});
    }
  }
  for (const TieLine& tie : mapping.tieLines) {
    const Terminal& from = mapping.connections.End(tie.half1, 0);
    const Terminal& to = mapping.connections.End(tie.half2, 0);
    if (mapping.HasTwoNodes(tie.object, from, to)) lines.push_back({tie.object, &from, &to});
  }
  return lines;
}

void AddLine(Mapping& mapping, const Line& line) {
  LN& row = mapping.rows.Of<LN>().emplace_back(mapping.ids.Id(KIND_LN, line.object));
  row.dv = mapping.DistrictId(*line.from);
  row.st = mapping.StationId(*line.from);
  row.zst = mapping.StationId(*line.to);
  SetFrom(mapping, row, *line.from);
  SetTo(mapping, row, *line.to);
  SetPowers(row, mapping.connections.FlowInto(*line.from), mapping.connections.FlowInto(*line.to));
  row.status = StatusOf<LN>(mapping, line.object, line.from->isConnected, line.to->isConnected);
  const int from = line.from->level;
  const int to = line.to->level;
  if (PartVoltages(mapping.LevelRow(from), mapping.LevelRow(to), false) != nullptr) {
    mapping.Change(to, "a line leads from it to a level of another nominal voltage: vbase is 0");
  }
}

/// A boundary line leads to a station at the border. Without a published flow it loses nothing on its way.
void AddBorderLine(Mapping& mapping, int border) {
  const Terminal& from = mapping.connections.End(border, 0);
  const Inflow atBorder = mapping.AtBorder(border);
  LN& row = mapping.rows.Of<LN>().emplace_back(mapping.ids.Id(KIND_LN, border));
  row.dv = mapping.DistrictId(from);
  row.st = mapping.StationId(from);
  row.zst = mapping.ids.Id(KIND_ST, border);
  SetFrom(mapping, row, from);
  row.zkv = mapping.ids.Id(KIND_KV, border);
  row.znd = mapping.ids.Id(KIND_ND, border);
  SetPowers(row, mapping.connections.HasFlow(from) ? mapping.connections.FlowInto(from) : atBorder,
            {-atBorder.p, -atBorder.q});
  row.status = StatusOf<LN>(mapping, border, from.isConnected, true);
}

}  // namespace

void MapLines(Mapping& mapping) {
  const std::vector<Line> lines = FindLines(mapping);
  for (const Line& line : lines) {
    mapping.ids.Add(KIND_LN, line.object, mapping.ids.Text(KIND_KV, line.from->level));
  }
  for (const int border : mapping.borders) mapping.ids.Add(KIND_LN, border, mapping.LevelText(border));
  mapping.ids.Settle(KIND_LN);
  for (const Line& line : lines) AddLine(mapping, line);
  for (const int border : mapping.borders) AddBorderLine(mapping, border);
}

}  // namespace dtsdb::tools::xiidm
