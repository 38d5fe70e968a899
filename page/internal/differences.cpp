#include "page/internal/differences.h"

#include <algorithm>

#include "analysis/effect.h"
#include "formats/field_text.h"
#include "formats/record_places.h"
#include "include/type_list.h"
#include "model/branch_kinds.h"
#include "model/record_bits.h"

namespace dtsdb::page::internal {
namespace {

using tools::IdText;

template <class T>
concept HasPower = requires(const T& record) {
  record.p;
  record.q;
};
template <class T>
concept HasFarPower = requires(const T& record) {
  record.zp;
  record.zq;
};

/// Equal, or both no number.
template <class V>
bool IsSame(V a, V b) {
  return a == b || (a != a && b != b);
}

template <class T>
bool HasSamePowers(const T& a, const T& b) {
  if constexpr (HasPower<T>) {
    if (!IsSame(a.p, b.p) || !IsSame(a.q, b.q)) return false;
  }
  if constexpr (HasFarPower<T>) {
    if (!IsSame(a.zp, b.zp) || !IsSame(a.zq, b.zq)) return false;
  }
  return true;
}

/// Collects stations by the records in them.
class StationsTouched {
 public:
  explicit StationsTouched(DTSDB& tables) : m_tables(tables) {}

  template <class T>
  void Add(const T& record) {
    for (const QString& station : tools::PlacesOf(m_tables, T::kKind, &record).stations) m_stations.insert(station);
  }

  /// In the order of their table.
  std::vector<std::string> Take() const {
    std::vector<std::string> stations;
    for (int i = 0; i < m_tables.m_stTable->GetCount(); ++i) {
      const QString& id = (*m_tables.m_stTable)[i].id;
      if (m_stations.contains(id)) stations.push_back(IdText(id));
    }
    return stations;
  }

 private:
  DTSDB& m_tables;
  std::set<QString> m_stations;
};

/// Calls `visit(before, after)` with the records of both states.
template <class T, class Visit>
void ForEachPair(const GridState& before, const GridState& after, Visit visit) {
  tTable<T>& a = TableOf<T>(before.model.Tables());
  tTable<T>& b = TableOf<T>(after.model.Tables());
  for (int i = 0; i < std::min(a.GetCount(), b.GetCount()); ++i) visit(a[i], b[i]);
}

void AddSwitched(const GridState& before, const GridState& after, std::set<RecordKey>& changed) {
  ForEachPair<CB>(before, after, [&](const CB& a, const CB& b) {
    if (((a.flags ^ b.flags) & CB_OPEN) != 0) changed.emplace(CB::kTableName, IdText(b.id));
  });
}

std::vector<std::string> TouchedStations(const GridState& before, const GridState& after) {
  StationsTouched touched(after.model.Tables());
  const std::set<RecordKey> changed = ChangedRecords(before, after);
  ForEachType(TypeList<ND, BUS, UN, LD, CP, LN, XF, DLN, ZBR, CB>(), [&]<class T> {
    ForEachPair<T>(before, after, [&](const T& a, const T& b) {
      if (!HasSamePowers(a, b) || changed.contains({T::kTableName, IdText(b.id)})) touched.Add(b);
    });
  });
  const std::vector<BreakerFlow>& flows = after.flows.breakers;
  for (std::size_t i = 0; i < std::min(flows.size(), before.flows.breakers.size()); ++i) {
    const BreakerFlow& was = before.flows.breakers[i];
    const BreakerFlow& is = flows[i];
    if (was.state == is.state && IsSame(was.p, is.p) && IsSame(was.q, is.q)) continue;
    const int level = after.model.Tables().m_kvTable->Find(KV(is.kv));
    if (level >= 0) touched.Add(after.model.Tables().m_kvTable->GetPh(level));
  }
  return touched.Take();
}

analysis::Effect EffectBetween(const GridState& before, const GridState& after) {
  return analysis::EffectOf(analysis::DescribeSupply(before.model.Tables()),
                            analysis::DescribeSupply(after.model.Tables()));
}

std::vector<Thing> ThingsOf(const std::vector<analysis::Supplied>& supplied) {
  std::vector<Thing> things;
  things.reserve(supplied.size());
  for (const analysis::Supplied& thing : supplied) things.push_back({thing.table, thing.identity, thing.station});
  return things;
}

}  // namespace

std::set<RecordKey> ChangedRecords(const GridState& before, const GridState& after) {
  std::set<RecordKey> changed;
  const analysis::Effect effect = EffectBetween(before, after);
  for (const analysis::Difference& difference :
       analysis::CompareTopology(before.model.Tables(), after.model.Tables())) {
    changed.emplace(difference.table, difference.identity);
  }
  AddSwitched(before, after, changed);
  for (const auto* const things : {&effect.lost, &effect.regained}) {
    for (const analysis::Supplied& thing : *things) changed.emplace(thing.table, thing.identity);
  }
  return changed;
}

Changes ChangesBetween(const GridState& before, const GridState& after) {
  Changes changes;
  if (!before.hasTopology || !after.hasTopology) return changes;
  const analysis::Effect effect = EffectBetween(before, after);
  changes.becameDead = ThingsOf(effect.lost);
  changes.becameLive = ThingsOf(effect.regained);
  changes.islandsBefore = static_cast<int>(before.topology.islands.size());
  changes.islandsAfter = static_cast<int>(after.topology.islands.size());
  changes.lostLoad = analysis::TotalsOf(effect.lost).p;
  changes.stations = TouchedStations(before, after);
  return changes;
}

}  // namespace dtsdb::page::internal
