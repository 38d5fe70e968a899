#include "command/place_filter.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/record_places.h"
#include "model/table_info.h"

namespace dtsdb::tools {
namespace {

/// The identity of the record of class `T` that the user calls `name`; empty for an empty name.
template <class T>
QString Known(DTSDB& database, const std::string& name) {
  if (name.empty()) return {};
  const std::string text = UserText(name);
  tTable<T>& table = TableOf<T>(database);
  const auto id = IdFromUtf8(text);
  if (id && table.Find(T(*id)) != -1) return *id;
  std::vector<std::string> known;
  known.reserve(static_cast<std::size_t>(table.GetCount()));
  for (int i = 0; i < table.GetCount(); ++i) known.push_back(IdText(table[i].id));
  throw Failure(kExitUsage,
                fmt::format("table {} has no record {}{}", T::kTableName, Quoted(text), DidYouMean(text, known)));
}

using Named = std::pair<std::string, std::string>;  ///< table and identity

}  // namespace

void AddPlaceOptions(CommandLine& command, Place& place) {
  command.Add("--station", place.station, "Only what belongs to this station").Shown("ID");
  command.Add("--kv", place.level, "Only what belongs to this voltage level").Shown("ID");
}

PlaceFilter::PlaceFilter(const Place& place, DTSDB& database)
    : m_database(database), m_station(Known<ST>(database, place.station)), m_level(Known<KV>(database, place.level)) {
  if (m_station.isEmpty() || m_level.isEmpty()) return;
  const QString& station = database.m_kvTable->GetPh(database.m_kvTable->Find(KV(m_level))).st;
  if (station == m_station) return;
  throw Failure(kExitUsage, fmt::format("voltage level {} lies in station {}, not in {}", IdText(m_level),
                                        IdText(station), IdText(m_station)));
}

bool PlaceFilter::Takes(TableKind table, const void* record) const {
  if (IsEmpty()) return true;
  const RecordPlaces places = PlacesOf(m_database, table, record);
  const std::vector<QString>& found = m_level.isEmpty() ? places.stations : places.levels;
  return std::find(found.begin(), found.end(), m_level.isEmpty() ? m_station : m_level) != found.end();
}

bool PlaceFilter::TakesLevel(const QString& level) const {
  const int number = m_database.m_kvTable->Find(KV(level));
  return IsEmpty() || (number != -1 && Takes(KIND_KV, &m_database.m_kvTable->GetPh(number)));
}

void PlaceFilter::Restrict(analysis::Topology& topology) const {
  if (IsEmpty()) return;
  std::set<Named> taken;
  ForEachType(TypeList<KV, BUS, UN, LD, CP, LN, XF, DLN, ZBR, CB>(), [&]<class T> {
    const tTable<T>& table = TableOf<T>(m_database);
    for (int i = 0; i < table.GetCount(); ++i) {
      if (Takes(T::kKind, &table[i])) taken.emplace(T::kTableName, IdText(table[i].id));
    }
  });
  const auto isOut = [&](const std::string& table, const std::string& id) { return !taken.contains({table, id}); };
  const auto isElsewhere = [&](const auto& thing) { return isOut(KV::kTableName, thing.level); };
  std::erase_if(topology.sections, isElsewhere);
  std::erase_if(topology.nodes, isElsewhere);
  std::erase_if(topology.dead, [&](const analysis::Dead& dead) { return isOut(dead.table, dead.identity); });
  std::erase_if(topology.leftOut, [&](const std::string& branch) { return isOut(ZBR::kTableName, branch); });
  topology.findings.removeIf([&](const Finding& found) { return isOut(TableName(found.table), IdText(found.id)); });
  std::erase_if(topology.islands, [&](const analysis::Island& island) {
    return std::none_of(topology.sections.begin(), topology.sections.end(),
                        [&](const analysis::Section& section) { return section.island == island.number; });
  });
}

void PlaceFilter::Restrict(Flows& flows) const {
  if (IsEmpty()) return;
  Flows kept;
  kept.tolerance = flows.tolerance;
  std::vector<int> newSet(flows.sets.size(), -1);
  for (std::size_t i = 0; i < flows.sets.size(); ++i) {
    if (!TakesLevel(flows.sets[i].kv)) continue;
    newSet[i] = static_cast<int>(kept.sets.size());
    kept.sets.push_back(flows.sets[i]);
    kept.sets.back().breakers.clear();
  }
  for (BreakerFlow breaker : flows.breakers) {
    if (!TakesLevel(breaker.kv)) continue;
    if (breaker.set != -1) {
      breaker.set = newSet[static_cast<std::size_t>(breaker.set)];
      kept.sets[static_cast<std::size_t>(breaker.set)].breakers.push_back(static_cast<int>(kept.breakers.size()));
    }
    kept.breakers.push_back(breaker);
  }
  flows = std::move(kept);
}

}  // namespace dtsdb::tools
