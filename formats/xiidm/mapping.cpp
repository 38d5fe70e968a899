#include "formats/xiidm/mapping.h"

#include <map>
#include <set>

#include "formats/text_layout.h"

namespace dtsdb::tools::xiidm {
namespace {}  // namespace

Mapping::Mapping(const Network& read, const ImportOptions& chosen)
    : network(read),
      objects(read.objects),
      options(chosen),
      connections(read),
      ids(
          [this](int object) {
            return ObjectName{objects.Id(object), objects.Name(object), 0, objects.Line(object)};
          },
          chosen.idsAreMrids) {
  FindTieLines();
}

/// The boundary line that a tie line names as its half.
int Mapping::Half(int tieLine, Attribute half) const {
  const std::string_view id = objects.Text(tieLine, half);
  const int found = objects.Find(id);
  if (found == kNone || objects.RoleOf(found) != Role::kBoundaryLine) {
    network.Refuse(tieLine, "its half " + Quoted(id) + " is no boundary line of the file");
  }
  return found;
}

void Mapping::FindTieLines() {
  std::set<int> halves;
  for (const int tieLine : objects.WithRole(Role::kTieLine)) {
    if (!objects.Has(tieLine, kBoundary1)) continue;
    const int half1 = Half(tieLine, kBoundary1);
    const int half2 = Half(tieLine, kBoundary2);
    if (half1 == half2 || halves.contains(half1) || halves.contains(half2)) {
      LeaveOut(tieLine, "one of its halves is a half already");
      continue;
    }
    halves.insert({half1, half2});
    tieLines.push_back({tieLine, half1, half2});
  }
  for (const int line : objects.WithRole(Role::kBoundaryLine)) {
    if (!halves.contains(line)) borders.push_back(line);
  }
}

std::vector<int> Mapping::Standing(Role role) {
  std::vector<int> standing;
  for (const int object : objects.WithRole(role)) {
    const auto terminals = connections.TerminalsOf(object);
    if (terminals.size() != 2 || HasTwoNodes(object, terminals[0], terminals[1])) standing.push_back(object);
  }
  return standing;
}

bool Mapping::HasTwoNodes(int object, const Terminal& from, const Terminal& to) {
  if (from.node == to.node) LeaveOut(object, "both of its ends are on one node");
  return from.node != to.node;
}

Inflow Mapping::AtBorder(int boundaryLine) const {
  return {objects.NumberOrZero(boundaryLine, kP0) - objects.NumberOrZero(boundaryLine, kGenerationP),
          objects.NumberOrZero(boundaryLine, kQ0) - objects.NumberOrZero(boundaryLine, kGenerationQ)};
}

int Mapping::StationOf(int level) const {
  const int station = objects.Parent(level);
  return station == kNone || objects.RoleOf(station) != Role::kStation ? level : station;
}

QString Mapping::DistrictId(const Terminal& terminal) const {
  return ids.Id(KIND_DV, districtOf.at(StationOf(terminal.level)));
}

int Mapping::NodeNumber(int node) const {
  const int bus = connections.Nodes()[static_cast<std::size_t>(node)].bus;
  return bus == kNone ? objects.Count() + node : bus;
}

void Mapping::AddLevelRow(int level, const KV& row) {
  m_levelRows.emplace(level, rows.Of<KV>().size());
  rows.Of<KV>().push_back(row);
}

ImportReport Mapping::Report() const {
  ImportReport report;
  report.files.push_back({network.file, "XIIDM", network.version, network.caseDate, objects.Count()});
  std::map<std::string, ImportReport::Class> classes;
  for (int i = 0; i < objects.Count(); ++i) {
    const ElementRow& row = objects.RowOf(i);
    if (row.role == Role::kWithout) continue;
    ImportReport::Class& mapped = classes[row.name];
    mapped.name = row.name;
    mapped.tables = row.tables;
    ++mapped.count;
  }
  for (const auto& [name, mapped] : classes) report.classes.push_back(mapped);
  report.leftOut = m_leftOut.List();
  report.changed = m_changed.List();
  report.unknown = network.unknown.List();
  report.identities = ids.List();
  return report;
}

}  // namespace dtsdb::tools::xiidm
