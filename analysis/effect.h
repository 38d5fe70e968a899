/// \file
/// What switching does to the supply: what lost it, what regained it, and which islands split or joined.
#pragma once

#include <string>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::analysis {

/// A station, bus, unit or load. A station is live when one of its nodes is.
struct Supplied {
  std::string table;     ///< ST, BUS, UN or LD
  std::string identity;  ///< in UTF-8
  std::string station;   ///< identity of its station
  std::string level;     ///< identity of its voltage level; empty for a station
  std::string state;     ///< "live", or what it is in its place, such as "dead" or "switched off"
  float p = 0;           ///< MW of a load or unit, the field that the breaker flow takes; 0 for others
  float q = 0;           ///< Mvar, likewise

  /// True when it has supply.
  bool IsLive() const { return state == "live"; }
};

/// Who is supplied, as the last run has left it in the tables.
struct Supply {
  std::vector<Supplied> things;  ///< stations, buses, units and loads, each in the order of its table
  std::vector<int> islands;      ///< the live island of each node, in the order of the node table; -1 for none
};

/// Reads the supply from the tables.
Supply DescribeSupply(DTSDB& tables);

/// What became of live islands.
enum class IslandChangeKind {
  kSplit,   ///< nodes of one island are live in several now
  kJoined,  ///< nodes of several islands are live in one now
  kDied,    ///< no node of the island is live any more
  kArose,   ///< no node of the island was live before
};

/// A change of islands, by their numbers, ascending. Numbers hold until the next run: an island can have another one
/// before and after.
struct IslandChange {
  IslandChangeKind kind = IslandChangeKind::kSplit;  ///< what became of it
  std::vector<int> before;                           ///< empty for kArose
  std::vector<int> after;                            ///< empty for kDied
};

/// The word for a kind, which stays the same: "split", "joined", "died", "arose".
const char* KindName(IslandChangeKind kind);

/// What switching has done.
struct Effect {
  std::vector<Supplied> lost;         ///< live before and not after; in the state after
  std::vector<Supplied> regained;     ///< live after and not before; in the state before
  std::vector<IslandChange> islands;  ///< those that split or died, by number before; then those that joined or arose
};

/// How much things are together.
struct SupplyTotals {
  int stations = 0;  ///< number of stations
  int buses = 0;     ///< of buses
  int units = 0;     ///< of units
  int loads = 0;     ///< of loads
  double p = 0;      ///< MW of the loads; one without a finite power counts as 0
  double q = 0;      ///< Mvar, likewise
};

/// Counts `things` and sums up the loads among them.
SupplyTotals TotalsOf(const std::vector<Supplied>& things);

/// What has changed from `before` to `after`, both of one model, whose records are the same.
Effect EffectOf(const Supply& before, const Supply& after);

}  // namespace dtsdb::analysis
