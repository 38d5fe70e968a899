#include <map>

#include "formats/xiidm/steps.h"
#include "model/text.h"

namespace dtsdb::tools::xiidm {
namespace {

constexpr const char* kMade = "(none)";  // of what no district or company is given

/// The first of two texts that isn't empty, or else "(none)".
std::string FirstOf(std::string_view one, std::string_view other) {
  if (!one.empty()) return std::string(one);
  return other.empty() ? kMade : std::string(other);
}

/// The objects that become stations: substations, levels outside of one, and borders.
std::vector<int> FindStations(const Mapping& mapping) {
  std::vector<int> stations = mapping.objects.WithRole(Role::kStation);
  for (const int level : mapping.objects.WithRole(Role::kLevel)) {
    if (mapping.StationOf(level) == level) stations.push_back(level);
  }
  stations.insert(stations.end(), mapping.borders.begin(), mapping.borders.end());
  return stations;
}

/// The substation that a station lies in or beside.
int SubstationOf(const Mapping& mapping, int station) {
  if (mapping.objects.RoleOf(station) != Role::kBoundaryLine) return station;
  return mapping.StationOf(mapping.connections.End(station, 0).level);
}

/// A company has the name of the operator, a district that of the region, each that of the country without one.
void MapRegions(Mapping& mapping, const std::vector<int>& stations) {
  std::map<std::string, int> companies;
  std::map<std::pair<std::string, std::string>, int> districts;  // by company and name
  for (const int station : stations) {
    const int substation = SubstationOf(mapping, station);
    const std::string_view country = mapping.objects.Text(substation, kCountry);
    const std::string company = FirstOf(mapping.objects.Text(substation, kTso), country);
    const std::string district = FirstOf(mapping.objects.Text(substation, kTags), country);
    companies.emplace(company, static_cast<int>(companies.size()));
    const auto [place, isNew] = districts.emplace(std::pair(company, district), static_cast<int>(districts.size()));
    mapping.districtOf[station] = place->second;
  }
  for (const auto& [name, number] : companies) mapping.ids.AddMade(KIND_CO, number, QString::fromStdString(name));
  mapping.ids.Settle(KIND_CO);
  for (const auto& [name, number] : companies) mapping.rows.Of<CO>().emplace_back(mapping.ids.Id(KIND_CO, number));
  for (const auto& [key, number] : districts) {
    mapping.ids.AddMade(KIND_DV, number, QString::fromStdString(key.second),
                        mapping.ids.Text(KIND_CO, companies.at(key.first)));
  }
  mapping.ids.Settle(KIND_DV);
  for (const auto& [key, number] : districts) {
    mapping.rows.Of<DV>().emplace_back(mapping.ids.Id(KIND_DV, number)).co =
        mapping.ids.Id(KIND_CO, companies.at(key.first));
  }
}

/// What the station, the level and the node behind a boundary line are called.
QString BorderSuffix(const Mapping& mapping, int object) {
  const bool isBorder = mapping.objects.RoleOf(object) == Role::kBoundaryLine;
  return isBorder ? QStringLiteral(" border") : QString();
}

void MapStations(Mapping& mapping, const std::vector<int>& stations) {
  for (const int station : stations) {
    mapping.ids.Add(KIND_ST, station, mapping.ids.Text(KIND_DV, mapping.districtOf.at(station)), 0,
                    BorderSuffix(mapping, station));
  }
  mapping.ids.Settle(KIND_ST);
  for (const int station : stations) {
    ST& row = mapping.rows.Of<ST>().emplace_back(mapping.ids.Id(KIND_ST, station));
    row.dv = mapping.ids.Id(KIND_DV, mapping.districtOf.at(station));
  }
}

KV LevelRow(const Mapping& mapping, int level) {
  const Objects& objects = mapping.objects;
  KV row(mapping.ids.Id(KIND_KV, level));
  row.st = mapping.ids.Id(KIND_ST, mapping.StationOf(level));
  row.vbase = Single(objects.NumberOrZero(level, objects.Has(level, kOwnVoltage) ? kOwnVoltage : kNominalV));
  const double high = objects.NumberOrZero(level, kHighLimit);
  const double low = objects.NumberOrZero(level, kLowLimit);
  if (low < 0 || high < low) return row;  // an upper limit may be missing
  row.vmax = Single(high);
  row.vmin = Single(low);
  return row;
}

/// Levels, those of star points and of borders behind them: each has a node of its own.
void MapLevels(Mapping& mapping) {
  const std::vector<int> levels = mapping.objects.WithRole(Role::kLevel);
  const std::vector<int> stars = mapping.objects.WithRole(Role::kThreeWindings);
  const auto stationText = [&](int level) { return mapping.ids.Text(KIND_ST, mapping.StationOf(level)); };
  for (const int level : levels) mapping.ids.Add(KIND_KV, level, stationText(level));
  for (const int star : stars) {
    mapping.ids.Add(KIND_KV, star, stationText(mapping.connections.End(star, 0).level), 0, QStringLiteral(" star"));
  }
  for (const int border : mapping.borders) {
    mapping.ids.Add(KIND_KV, border, mapping.ids.Text(KIND_ST, border), 0, BorderSuffix(mapping, border));
  }
  mapping.ids.Settle(KIND_KV);
  for (const int level : levels) mapping.AddLevelRow(level, LevelRow(mapping, level));
  for (const int border : mapping.borders) {
    KV row(mapping.ids.Id(KIND_KV, border));
    row.st = mapping.ids.Id(KIND_ST, border);
    row.vbase = mapping.LevelRow(mapping.connections.End(border, 0).level).vbase;
    mapping.AddLevelRow(border, row);
  }
}

/// The records of nodes are made by the validation, from the names that equipment gives them.
void NameNodes(Mapping& mapping) {
  const std::vector<Node>& nodes = mapping.connections.Nodes();
  for (int i = 0; i < static_cast<int>(nodes.size()); ++i) {
    const Node& node = nodes[static_cast<std::size_t>(i)];
    if (mapping.connections.Joined(i) != i) continue;
    const QString level = mapping.ids.Text(KIND_KV, node.level);
    if (node.bus != Objects::kNone) {
      mapping.ids.Add(KIND_ND, node.bus, level);
      continue;
    }
    const QString numbered = level + QLatin1Char(' ') + QString::number(node.number);
    mapping.ids.AddMade(KIND_ND, mapping.NodeNumber(i),
                        node.name.empty() ? numbered : QString::fromStdString(node.name), level);
  }
  for (const int star : mapping.objects.WithRole(Role::kThreeWindings)) {
    mapping.ids.Add(KIND_ND, star, mapping.ids.Text(KIND_KV, star), 0, QStringLiteral(" star"));
  }
  for (const int border : mapping.borders) {
    mapping.ids.Add(KIND_ND, border, mapping.ids.Text(KIND_KV, border), 0, BorderSuffix(mapping, border));
  }
  mapping.ids.Settle(KIND_ND);
}

}  // namespace

void MapContainers(Mapping& mapping) {
  const std::vector<int> stations = FindStations(mapping);
  MapRegions(mapping, stations);
  MapStations(mapping, stations);
  MapLevels(mapping);
  NameNodes(mapping);
}

}  // namespace dtsdb::tools::xiidm
