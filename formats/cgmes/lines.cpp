#include <algorithm>

#include "formats/cgmes/branch_rows.h"
#include "formats/cgmes/steps.h"
#include "formats/import/line_voltages.h"

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
  return mapping.rows.Of<KV>()[place];
}

/// Lets a line join two base voltages, and reports at which of its levels.
void PartVoltages(Mapping& mapping, int equipment) {
  const Level& from = mapping.LevelAt(mapping.Terminal(equipment, 0));
  const Level& to = mapping.LevelAt(mapping.Terminal(equipment, 1));
  const bool isMade = mapping.connections.RowOf(from.object).role != Role::kLevel;
  const KV* const changed = tools::PartVoltages(LevelRow(mapping, from), LevelRow(mapping, to), isMade);
  if (changed == nullptr) return;
  const Level& level = changed == &LevelRow(mapping, from) ? from : to;
  mapping.account.Change(level.object, "a line leads from it to a level of another nominal voltage: vbase is 0");
}

}  // namespace

void MapLines(Mapping& mapping) {
  const std::vector<int> lines = mapping.Standing(Role::kLine, 2);
  for (const int line : lines) mapping.ids.Add(KIND_LN, line, mapping.LevelText(line));
  mapping.ids.Settle(KIND_LN);
  for (const int line : lines) {
    mapping.rows.Of<LN>().push_back(LineRow(mapping, line));
    PartVoltages(mapping, line);
  }
}

}  // namespace dtsdb::tools::cgmes
