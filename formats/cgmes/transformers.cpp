#include <algorithm>

#include "formats/cgmes/branch_rows.h"
#include "formats/cgmes/steps.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr u8 kTwoWindings = 1;

/// The terminals of a transformer, that of the highest rated voltage first.
std::vector<int> HighFirst(const Mapping& mapping, int transformer) {
  const auto terminals = mapping.connections.TerminalsOf(transformer);
  std::vector<int> sorted(terminals.begin(), terminals.end());
  const auto ratedU = [&](int terminal) {
    return mapping.connections.Number(mapping.connections.ReferringTo(terminal, kEndTerminal), kEndRatedU);
  };
  std::stable_sort(sorted.begin(), sorted.end(), [&](int a, int b) { return ratedU(a) > ratedU(b); });
  return sorted;
}

/// The station of a transformer: that which contains it, or else that of its first terminal.
QString StationOf(const Mapping& mapping, int transformer, int terminal) {
  const QString own = mapping.ids.Id(KIND_ST, mapping.objects.Target(transformer, kContainer));
  return own.isNull() ? mapping.StationId(terminal) : own;
}

void AddWinding(Mapping& mapping, int transformer) {
  const std::vector<int> ends = HighFirst(mapping, transformer);
  XF row(mapping.ids.Id(KIND_XF, transformer));
  row.type = kTwoWindings;
  row.st = StationOf(mapping, transformer, ends[0]);
  SetEnds(mapping, row, ends[0], ends[1]);
  SetPowers(mapping, row, ends[0], ends[1]);
  row.status = StatusOf<XF>(mapping, ends[0], ends[1]);
  mapping.rows.Of<XF>().push_back(row);
}

/// The level of a star point. Its base voltage is 0: no line leads to it.
KV StarLevel(const Mapping& mapping, int transformer, const QString& station) {
  KV row(mapping.ids.Id(KIND_KV, transformer));
  row.st = station;
  return row;
}

/// Three windings to a star point; what flows into one at its terminal leaves it there.
void AddStar(Mapping& mapping, int transformer) {
  const std::vector<int> ends = HighFirst(mapping, transformer);
  const QString station = StationOf(mapping, transformer, ends[0]);
  mapping.rows.Of<KV>().push_back(StarLevel(mapping, transformer, station));
  for (std::size_t i = 0; i < ends.size(); ++i) {
    XF row(mapping.ids.Id(KIND_XF, transformer, static_cast<int>(i) + 1));
    row.type = static_cast<u8>(i + 1);
    row.st = station;
    SetEnds(mapping, row, ends[i], Objects::kNone);
    row.zkv = mapping.ids.Id(KIND_KV, transformer);
    row.znd = mapping.ids.Id(KIND_ND, transformer);
    const Power in = mapping.connections.FlowInto(ends[i]);
    row.p = row.zp = Single(in.p);
    row.q = row.zq = Single(in.q);
    row.status = StatusOf<XF>(mapping, ends[i], Objects::kNone);
    mapping.rows.Of<XF>().push_back(row);
  }
}

/// Adds the windings of a transformer to the names. False for one that can't be mapped.
bool Name(Mapping& mapping, int transformer) {
  const std::size_t windings = mapping.connections.TerminalsOf(transformer).size();
  if (windings > 3) {
    mapping.account.LeaveOut(transformer, "it has more than three windings");
    return false;
  }
  if (!mapping.IsStanding(transformer, windings == 3 ? 3 : 2)) return false;
  const QString level = mapping.LevelText(transformer);
  if (windings == 2) mapping.ids.Add(KIND_XF, transformer, level);
  for (int i = 1; windings == 3 && i <= 3; ++i) {
    mapping.ids.Add(KIND_XF, transformer, level, i, QStringLiteral(" %1").arg(i));
  }
  return true;
}

}  // namespace

void MapTransformers(Mapping& mapping) {
  std::vector<int> transformers = mapping.connections.WithRole(Role::kTransformer);
  std::erase_if(transformers, [&](int transformer) { return !Name(mapping, transformer); });
  mapping.ids.Settle(KIND_XF);
  for (const int transformer : transformers) {
    if (mapping.ids.Has(KIND_XF, transformer)) {
      AddWinding(mapping, transformer);
    } else {
      AddStar(mapping, transformer);
    }
  }
}

}  // namespace dtsdb::tools::cgmes
