#include "formats/xiidm/branch_rows.h"
#include "formats/xiidm/steps.h"

namespace dtsdb::tools::xiidm {
namespace {

constexpr int kWindings = 3;

/// The station of a transformer: the substation that it stands in, or else that of its first end.
QString StationOf(const Mapping& mapping, int transformer) {
  const QString own = mapping.ids.Id(KIND_ST, mapping.objects.Parent(transformer));
  return own.isNull() ? mapping.StationId(mapping.connections.End(transformer, 0)) : own;
}

void AddWinding(Mapping& mapping, int transformer) {
  const Terminal& from = mapping.connections.End(transformer, 0);
  const Terminal& to = mapping.connections.End(transformer, 1);
  XF& row = mapping.rows.Of<XF>().emplace_back(mapping.ids.Id(KIND_XF, transformer));
  const double winding = mapping.objects.NumberOrZero(transformer, kOwnWinding);
  row.type = winding == 2 || winding == 3 ? static_cast<u8>(winding) : u8{1};
  row.st = StationOf(mapping, transformer);
  SetFrom(mapping, row, from);
  SetTo(mapping, row, to);
  SetPowers(row, mapping.connections.FlowInto(from), mapping.connections.FlowInto(to));
  row.status = StatusOf<XF>(mapping, transformer, from.isConnected, to.isConnected);
}

/// Three windings to a star point; what flows into one at its terminal leaves it there.
void AddStar(Mapping& mapping, int transformer) {
  const QString station = StationOf(mapping, transformer);
  KV level(mapping.ids.Id(KIND_KV, transformer));  // its base voltage is 0: no line leads to it
  level.st = station;
  mapping.rows.Of<KV>().push_back(level);
  for (int i = 0; i < kWindings; ++i) {
    const Terminal& end = mapping.connections.End(transformer, static_cast<std::size_t>(i));
    XF& row = mapping.rows.Of<XF>().emplace_back(mapping.ids.Id(KIND_XF, transformer, i + 1));
    row.type = static_cast<u8>(i + 1);
    row.st = station;
    SetFrom(mapping, row, end);
    row.zkv = level.id;
    row.znd = mapping.ids.Id(KIND_ND, transformer);
    const Inflow in = mapping.connections.FlowInto(end);
    SetPowers(row, in, {-in.p, -in.q});
    row.status = StatusOf<XF>(mapping, transformer, end.isConnected, true);
  }
}

}  // namespace

void MapTransformers(Mapping& mapping) {
  const std::vector<int> twos = mapping.Standing(Role::kTwoWindings);
  const std::vector<int> threes = mapping.Standing(Role::kThreeWindings);
  for (const int two : twos) mapping.ids.Add(KIND_XF, two, mapping.LevelText(two));
  for (const int three : threes) {
    for (int i = 1; i <= kWindings; ++i) {
      mapping.ids.Add(KIND_XF, three, mapping.LevelText(three), i, QStringLiteral(" %1").arg(i));
    }
  }
  mapping.ids.Settle(KIND_XF);
  for (const int two : twos) AddWinding(mapping, two);
  for (const int three : threes) AddStar(mapping, three);
}

}  // namespace dtsdb::tools::xiidm
