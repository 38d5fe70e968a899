#include <algorithm>
#include <set>

#include "formats/cgmes/steps.h"
#include "formats/failure.h"
#include "model/text.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr const char* kMade = "(none)";  // what lies in no region is in this district of this company

/// The companies and districts that stations lie in, kNone for those that no object describes.
struct Regions {
  std::set<int> companies;
  std::set<int> districts;
};

Regions FindRegions(const Mapping& mapping) {
  Regions regions;
  for (const int company : mapping.connections.WithRole(Role::kCompany)) regions.companies.insert(company);
  for (const int district : mapping.connections.WithRole(Role::kDistrict)) regions.districts.insert(district);
  for (const Level& level : mapping.places.Levels()) regions.districts.insert(level.region);
  for (const int station : mapping.connections.WithRole(Role::kStation)) {
    regions.districts.insert(mapping.objects.Target(station, kStationRegion));
  }
  for (const int district : regions.districts) {
    regions.companies.insert(mapping.objects.Target(district, kRegionOfRegion));
  }
  return regions;
}

void AddTo(Mapping& mapping, TableKind table, int object, const QString& container = {}) {
  if (object == kNone) {
    mapping.ids.AddMade(table, kNone, QString::fromLatin1(kMade));
  } else {
    mapping.ids.Add(table, object, container);
  }
}

void MapRegions(Mapping& mapping, const Regions& regions) {
  for (const int company : regions.companies) AddTo(mapping, KIND_CO, company);
  mapping.ids.Settle(KIND_CO);
  for (const int company : regions.companies) mapping.rows.Of<CO>().emplace_back(mapping.ids.Id(KIND_CO, company));
  const auto companyOf = [&](int district) { return mapping.objects.Target(district, kRegionOfRegion); };
  for (const int district : regions.districts) {
    AddTo(mapping, KIND_DV, district, mapping.ids.Text(KIND_CO, companyOf(district)));
  }
  mapping.ids.Settle(KIND_DV);
  for (const int district : regions.districts) {
    DV& row = mapping.rows.Of<DV>().emplace_back(mapping.ids.Id(KIND_DV, district));
    row.co = mapping.ids.Id(KIND_CO, companyOf(district));
  }
}

void MapStations(Mapping& mapping) {
  std::map<int, int> regionOf;  // by station
  for (const int station : mapping.connections.WithRole(Role::kStation)) {
    regionOf[station] = mapping.objects.Target(station, kStationRegion);
  }
  for (const Level& level : mapping.places.Levels()) regionOf[level.station] = level.region;
  for (const auto& [station, region] : regionOf) {
    mapping.ids.Add(KIND_ST, station, mapping.ids.Text(KIND_DV, region));
  }
  mapping.ids.Settle(KIND_ST);
  for (const auto& [station, region] : regionOf) {
    ST& row = mapping.rows.Of<ST>().emplace_back(mapping.ids.Id(KIND_ST, station));
    row.dv = mapping.ids.Id(KIND_DV, region);
  }
}

KV LevelRow(const Mapping& mapping, const Level& level) {
  KV row(mapping.ids.Id(KIND_KV, level.object));
  row.st = mapping.ids.Id(KIND_ST, level.station);
  row.vbase = Single(level.nominal);
  row.vmax = Single(level.high);
  row.vmin = Single(level.low);
  return row;
}

/// A transformer with three windings has a level and a node of its own, its star point.
void AddStarPoints(Mapping& mapping) {
  for (const int transformer : mapping.connections.WithRole(Role::kTransformer)) {
    if (mapping.connections.TerminalsOf(transformer).size() != 3) continue;
    const int node = mapping.connections.NodeOf(mapping.Terminal(transformer, 0));
    if (node == kNone) continue;
    const int station = mapping.places.Levels()[static_cast<std::size_t>(mapping.places.LevelOf(node))].station;
    mapping.ids.Add(KIND_KV, transformer, mapping.ids.Text(KIND_ST, station), 0, QStringLiteral(" star"));
  }
}

/// The levels that closed switches make one.
void ReportJoined(Mapping& mapping) {
  for (const int equipment : mapping.places.JoiningSwitches()) {
    mapping.account.Change(equipment, "it is closed between voltage levels of one nominal voltage: they are one level");
  }
  for (const JoinedLevel& joined : mapping.places.Joined()) {
    std::string why = "a closed switch joins it to " + mapping.set.Describe(joined.into) + ": it is part of that level";
    if (joined.level.station != joined.station) why += ", in " + mapping.set.Describe(joined.station);
    mapping.account.Change(joined.level.object, why);
  }
}

void MapLevels(Mapping& mapping) {
  for (const Level& level : mapping.places.Levels()) {
    mapping.ids.Add(KIND_KV, level.object, mapping.ids.Text(KIND_ST, level.station));
    if (level.hasTwoVoltages) mapping.account.Change(level.object, "lines of several voltages meet in it: vbase is 0");
  }
  ReportJoined(mapping);
  AddStarPoints(mapping);
  mapping.ids.Settle(KIND_KV);
  for (const Level& level : mapping.places.Levels()) mapping.rows.Of<KV>().push_back(LevelRow(mapping, level));
}

/// The records of nodes are made by the validation, from the names that equipment gives them.
void NameNodes(Mapping& mapping) {
  for (const int node : mapping.places.Nodes()) {
    const Level& level = mapping.places.Levels()[static_cast<std::size_t>(mapping.places.LevelOf(node))];
    mapping.ids.Add(KIND_ND, node, mapping.ids.Text(KIND_KV, level.object));
    if (mapping.objects.Class(node) == kNone) {
      mapping.account.Change(node,
                             "no file describes this connectivity node (is the boundary set missing?): it gets "
                             "a station of its own");
    }
  }
  for (const int transformer : mapping.connections.WithRole(Role::kTransformer)) {
    if (!mapping.ids.Has(KIND_KV, transformer)) continue;
    mapping.ids.Add(KIND_ND, transformer, mapping.ids.Text(KIND_KV, transformer), 0, QStringLiteral(" star"));
  }
  mapping.ids.Settle(KIND_ND);
}

}  // namespace

void MapContainers(Mapping& mapping) {
  if (!mapping.set.Has(ProfileKind::kEquipment)) {
    throw Failure(kExitFile, mapping.set.profiles.front().file + ": the set has no equipment (EQ); add its file");
  }
  if (mapping.places.Nodes().empty()) {
    throw Failure(kExitFile,
                  mapping.set.profiles.front().file +
                      ": the set has no connectivity nodes with terminals: it describes buses and branches as they are "
                      "switched now, and without its breakers' nodes no topology can be worked out");
  }
  MapRegions(mapping, FindRegions(mapping));
  MapStations(mapping);
  MapLevels(mapping);
  NameNodes(mapping);
}

}  // namespace dtsdb::tools::cgmes
