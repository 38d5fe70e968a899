#include <map>

#include "formats/cgmes/branch_rows.h"
#include "formats/cgmes/steps.h"
#include "formats/import/groups.h"

namespace dtsdb::tools::cgmes {
namespace {

/// What hangs together on the DC side: the converters, and the first line segment.
struct DcNetwork {
  std::vector<int> converters;
  int segment = kNone;
};

std::map<int, DcNetwork> FindNetworks(const Mapping& mapping) {
  const Objects& objects = mapping.objects;
  Groups groups(static_cast<std::size_t>(objects.Count()));
  for (int i = 0; i < objects.Count(); ++i) {
    const int node = objects.Target(i, kDcTerminalNode);
    if (node == kNone) continue;
    for (const Property property : {kDcTerminalEquipment, kDcTerminalConverter}) {
      const int equipment = objects.Target(i, property);
      if (equipment != kNone) groups.Join(equipment, node);
    }
  }
  std::map<int, DcNetwork> networks;
  for (const int converter : mapping.connections.WithRole(Role::kConverter)) {
    networks[groups.Of(converter)].converters.push_back(converter);
  }
  for (int i = 0; i < objects.Count(); ++i) {
    if (objects.Class(i) == kNone || objects.ClassName(objects.Class(i)) != "DCLineSegment") continue;
    DcNetwork& network = networks[groups.Of(i)];
    if (network.segment == kNone) network.segment = i;
  }
  return networks;
}

DLN LineRow(const Mapping& mapping, const DcNetwork& network) {
  const int from = mapping.Terminal(network.converters[0], 0);
  const int to = mapping.Terminal(network.converters[1], 0);
  DLN row(mapping.ids.Id(KIND_DLN, network.segment));
  row.dv = mapping.DistrictId(from);
  row.st = mapping.StationId(from);
  row.zst = mapping.StationId(to);
  SetEnds(mapping, row, from, to);
  const auto isInService = [&](int converter) { return mapping.connections.IsInService(converter); };
  const bool isOut = !isInService(network.converters[0]) || !isInService(network.converters[1]);
  row.status = isOut ? BranchKind<DLN>::kOut : StatusOf<DLN>(mapping, from, to);
  return row;
}

/// Two converters, each with one AC terminal, on different nodes, and a line between them.
bool IsLine(const Mapping& mapping, const DcNetwork& network) {
  if (network.converters.size() != 2 || network.segment == kNone) return false;
  int nodes[2] = {kNone, kNone};
  for (std::size_t i = 0; i < 2; ++i) {
    const auto terminals = mapping.connections.TerminalsOf(network.converters[i]);
    if (terminals.size() != 1) return false;
    nodes[i] = mapping.connections.NodeOf(terminals[0]);
    if (nodes[i] == kNone) return false;
  }
  return nodes[0] != nodes[1];
}

}  // namespace

std::vector<int> MapDcLines(Mapping& mapping) {
  std::vector<int> others;
  std::vector<DcNetwork> lines;
  for (const auto& [group, network] : FindNetworks(mapping)) {
    if (IsLine(mapping, network)) {
      mapping.ids.Add(KIND_DLN, network.segment, mapping.LevelText(network.converters[0]));
      lines.push_back(network);
      continue;
    }
    for (const int converter : network.converters) {
      if (mapping.IsStanding(converter, 1)) others.push_back(converter);
    }
    if (network.segment != kNone) {
      mapping.account.LeaveOut(network.segment, "it doesn't join two converters with one AC terminal each");
    }
  }
  mapping.ids.Settle(KIND_DLN);
  for (const DcNetwork& line : lines) mapping.rows.Of<DLN>().push_back(LineRow(mapping, line));
  return others;
}

}  // namespace dtsdb::tools::cgmes
