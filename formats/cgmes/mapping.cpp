#include "formats/cgmes/mapping.h"

#include <fmt/format.h>

#include "formats/text_layout.h"

namespace dtsdb::tools::cgmes {
namespace {}  // namespace

Mapping::Mapping(const ProfileSet& read, const ImportOptions& chosen)
    : set(read),
      objects(read.objects),
      options(chosen),
      connections(read.objects),
      places(read.objects, connections),
      ids(
          [this](int object) {
            return ObjectName{objects.Mrid(object), objects.Name(object), objects.File(object), objects.Line(object)};
          },
          chosen.idsAreMrids),
      account(read) {}

std::vector<int> Mapping::Standing(Role role, std::size_t ends) {
  std::vector<int> standing = connections.WithRole(role);
  std::erase_if(standing, [&](int equipment) { return !IsStanding(equipment, ends); });
  return standing;
}

bool Mapping::IsStanding(int equipment, std::size_t ends) {
  const std::span<const int> terminals = connections.TerminalsOf(equipment);
  if (terminals.size() != ends) {
    account.LeaveOut(equipment, fmt::format("it has {}, not {}",
                                            Counted(static_cast<long long>(terminals.size()), "terminal"), ends));
    return false;
  }
  for (const int terminal : terminals) {
    if (connections.NodeOf(terminal) != kNone) continue;
    account.LeaveOut(equipment, "a terminal of it is on no connectivity node");
    return false;
  }
  if (ends == 2 && connections.NodeOf(terminals[0]) == connections.NodeOf(terminals[1])) {
    account.LeaveOut(equipment, "both of its ends are on one node");
    return false;
  }
  return true;
}

const Level& Mapping::LevelAt(int terminal) const {
  return places.Levels()[static_cast<std::size_t>(places.LevelOf(connections.NodeOf(terminal)))];
}

QString Mapping::DistrictId(int terminal) const { return ids.Id(KIND_DV, LevelAt(terminal).region); }

QString Mapping::LevelText(int equipment) const { return ids.Text(KIND_KV, LevelAt(Terminal(equipment, 0)).object); }

QString Mapping::Point(int terminal, Measured measured) const {
  const int equipment = connections.EquipmentOf(terminal);
  auto found = points.find({equipment, terminal, measured});
  if (found == points.end() && connections.TerminalsOf(equipment).size() == 1) {
    found = points.find({equipment, kNone, measured});
  }
  return found == points.end() ? QString() : found->second;
}

QString Mapping::StatusPoint(int equipment) const {
  const auto found = points.find({equipment, kNone, Measured::kPosition});
  return found == points.end() ? QString() : found->second;
}

}  // namespace dtsdb::tools::cgmes
