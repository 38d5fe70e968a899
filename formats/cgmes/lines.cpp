#include <algorithm>

#include "formats/cgmes/branch_rows.h"
#include "formats/cgmes/steps.h"

namespace dtsdb::tools::cgmes {
namespace {

LN LineRow(const Mapping& mapping, int equipment) {
  const int from = mapping.Terminal(equipment, 0);
  const int to = mapping.Terminal(equipment, 1);
  LN row(mapping.ids.Id(KIND_LN, equipment));
  row.dv = mapping.DistrictId(from);
  row.st = mapping.StationId(from);
  row.zst = mapping.StationId(to);
  SetEnds(mapping, row, from, to);
  SetPowers(mapping, row, from, to);
  row.status = StatusOf<LN>(mapping, from, to);
  return row;
}

/// The row of the level with this object.
KV& LevelRow(Mapping& mapping, const Level& level) {
  const auto place = static_cast<std::size_t>(&level - mapping.places.Levels().data());
  return mapping.rows.kv[place];
}

/// A line joins levels of one base voltage. Where the set has another at its two ends, the base voltage of one becomes
/// 0, which isn't compared: that of an end that is no voltage level of a station, or else that of the to end.
void PartVoltages(Mapping& mapping, int equipment) {
  const Level& from = mapping.LevelAt(mapping.Terminal(equipment, 0));
  const Level& to = mapping.LevelAt(mapping.Terminal(equipment, 1));
  const f32 one = LevelRow(mapping, from).vbase;
  const f32 other = LevelRow(mapping, to).vbase;
  if (one == other || one == 0 || other == 0) return;
  const bool isMade = mapping.connections.RowOf(from.object).role != Role::kLevel;
  const Level& changed = isMade ? from : to;
  LevelRow(mapping, changed).vbase = 0;
  mapping.account.Change(changed.object, "a line leads from it to a level of another nominal voltage: vbase is 0");
}

}  // namespace

void MapLines(Mapping& mapping) {
  const std::vector<int> lines = mapping.Standing(Role::kLine, 2);
  for (const int line : lines) mapping.ids.Add(KIND_LN, line, mapping.LevelText(line));
  mapping.ids.Settle(KIND_LN);
  for (const int line : lines) {
    mapping.rows.ln.push_back(LineRow(mapping, line));
    PartVoltages(mapping, line);
  }
}

}  // namespace dtsdb::tools::cgmes
