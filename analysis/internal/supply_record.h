/// \file
/// The effect of switching, found on the voltage levels that a run has processed.
#pragma once

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "analysis/effect.h"
#include "analysis/internal/equipment_state.h"
#include "formats/field_text.h"
#include "model/dtsdb.h"

namespace dtsdb::analysis::internal {

/// The identity of the station of voltage level `id`; empty when there is no such level.
std::string StationOfLevel(DTSDB& tables, const QString& id);

/// A bus, unit or load as it now is.
template <class T>
Supplied DescribeDevice(DTSDB& tables, const T& device) {
  Supplied thing;
  thing.table = T::kTableName;
  thing.identity = tools::IdText(device.id);
  thing.station = StationOfLevel(tables, device.kv);
  thing.level = tools::IdText(device.kv);
  thing.state = StateOf(device);
  if constexpr (!std::is_same_v<T, BUS>) {
    thing.p = device.p;
    thing.q = device.q;
  }
  return thing;
}

/// A station.
Supplied DescribeStation(const ST& station, bool isLive);

/// The live island of some node before and after, -1 for none.
using IslandPair = std::pair<int, int>;

/// What became of live islands, by the islands of some nodes.
std::vector<IslandChange> IslandChanges(std::vector<IslandPair> pairs);

/// What stands on each voltage level: numbers of a table's records, level by level.
class LevelContents {
 public:
  /// `levelOf` holds the level of each record, -1 for none; `levels` is the number of levels.
  LevelContents(const std::vector<int>& levelOf, int levels);

  /// Calls `visit(number)` for what stands on `level`, ascending; never for a level that there isn't.
  template <class Visit>
  void ForEachOn(int level, Visit visit) const {
    const auto at = static_cast<std::size_t>(level);
    if (level < 0 || at + 1 >= m_begin.size()) return;
    for (int i = m_begin[at]; i < m_begin[at + 1]; ++i) visit(m_numbers[static_cast<std::size_t>(i)]);
  }

 private:
  std::vector<int> m_begin;  // of each level in m_numbers, and the end
  std::vector<int> m_numbers;
};

/// For each live island at the start, the live islands in which its nodes are now, each with its first such node.
using IslandParts = std::map<int, std::map<int, int>>;

/// Who was supplied at the start, and what has changed since.
///
/// Made once for a model, it finds the effect of each run on the voltage levels that the run has processed, and on the
/// fragments that hang on branches from there: nothing else can have changed, so that the time follows the change and
/// not the network. The records must stay as they are, but for their states.
class SupplyRecord {
 public:
  /// Takes the tables, which must outlive it, as they are after a run on a validated model.
  explicit SupplyRecord(DTSDB& tables);

  /// What EffectOf gives for the start and now, when all runs since have processed no other levels than `levels` (KV
  /// numbers).
  Effect EffectOn(std::vector<int> levels) const;

  /// What became of the live islands at the start that have nodes on `levels`.
  IslandParts PartsOn(const std::vector<int>& levels) const;

  /// The voltage level of node `nd`, -1 when a damaged model has no such node or level.
  int LevelOf(int nd) const;
  /// The numbers of all voltage levels.
  std::vector<int> AllLevels() const;

 private:
  template <class T>
  struct Devices {
    Devices(DTSDB& tables, const std::vector<int>& levelOfNode);
    LevelContents contents;
    std::vector<bool> live;             // at the start, by number
    std::map<int, std::string> states;  // likewise, of those that weren't live
  };

  template <class Branch>
  void NoteFragments();
  void AddLevelsOfFragments(std::vector<int>& levels) const;
  int IslandOf(int nd) const;
  void AddNodes(const std::vector<int>& levels, Effect& effect) const;
  void AddStation(int station, int turned, Effect& effect) const;
  template <class T>
  void AddDevices(const std::vector<int>& levels, const Devices<T>& devices, Effect& effect) const;

  DTSDB& m_tables;
  std::vector<int> m_levelOf;    // of each node
  std::vector<int> m_stationOf;  // of each level
  LevelContents m_nodes;
  std::vector<int> m_islands;                        // of each node, at the start
  std::vector<int> m_liveNodes;                      // of each station, at the start
  std::map<int, std::vector<int>> m_fragmentLevels;  // by level: those of the fragments of branches from there
  Devices<BUS> m_buses;
  Devices<UN> m_units;
  Devices<LD> m_loads;
};

}  // namespace dtsdb::analysis::internal
