#include <set>

#include "formats/text_layout.h"
#include "formats/xiidm/branch_rows.h"
#include "formats/xiidm/steps.h"

namespace dtsdb::tools::xiidm {
namespace {

/// The converter station that a line names.
int Station(const Mapping& mapping, int line, Attribute end) {
  const std::string_view id = mapping.objects.Text(line, end);
  const int found = mapping.objects.Find(id);
  if (found == Objects::kNone || mapping.objects.RoleOf(found) != Role::kConverterStation) {
    mapping.network.Refuse(line, "its end " + Quoted(id) + " is no converter station of the file");
  }
  return found;
}

void AddLine(Mapping& mapping, int line) {
  const Terminal& from = mapping.connections.End(Station(mapping, line, kConverter1), 0);
  const Terminal& to = mapping.connections.End(Station(mapping, line, kConverter2), 0);
  DLN& row = mapping.rows.Of<DLN>().emplace_back(mapping.ids.Id(KIND_DLN, line));
  row.dv = mapping.DistrictId(from);
  row.st = mapping.StationId(from);
  row.zst = mapping.StationId(to);
  SetFrom(mapping, row, from);
  SetTo(mapping, row, to);
  row.status = StatusOf<DLN>(mapping, line, from.isConnected, to.isConnected);
}

}  // namespace

std::vector<int> MapDcLines(Mapping& mapping) {
  std::vector<int> lines;
  std::set<int> joined;
  for (const int line : mapping.objects.WithRole(Role::kDcLine)) {
    const int one = Station(mapping, line, kConverter1);
    const int other = Station(mapping, line, kConverter2);
    if (one == other || joined.contains(one) || joined.contains(other)) {
      mapping.LeaveOut(line, "one of its converter stations is the end of a line already");
      continue;
    }
    joined.insert({one, other});
    if (!mapping.HasTwoNodes(line, mapping.connections.End(one, 0), mapping.connections.End(other, 0))) continue;
    mapping.ids.Add(KIND_DLN, line, mapping.LevelText(one));
    lines.push_back(line);
  }
  mapping.ids.Settle(KIND_DLN);
  for (const int line : lines) AddLine(mapping, line);
  std::vector<int> others = mapping.objects.WithRole(Role::kConverter);
  for (const int station : mapping.objects.WithRole(Role::kConverterStation)) {
    if (!joined.contains(station)) others.push_back(station);
  }
  return others;
}

}  // namespace dtsdb::tools::xiidm
