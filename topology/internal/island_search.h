/// \file
/// The search for the islands after runs that may have left them as they were.
#pragma once

#include <vector>

#include "topology/internal/branch_link.h"
#include "topology/internal/island_part.h"
#include "topology/internal/island_sets.h"
#include "topology/internal/islands.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// What has come of a search.
enum class IslandOutcome {
  kDone,   ///< the islands are as Islands::Sort would leave them
  kLeft,   ///< nothing has changed, and Islands::Sort has to work them out
  kFailed  ///< the log has no room
};

/// One search, from the sections that runs have touched.
///
/// Any connection that is new or gone has an end on a voltage level that a run had. So each part that an island of
/// before has come to consist of has one of the sections on these levels or beyond a branch from there, the *touched*
/// ones. What hangs together there directly is put into one set; sets of one island of before are searched in step,
/// until they meet or one of them is a part of its own.
///
/// Of what can become of the islands one thing at most is followed up, the *turn*: with two of them the order of the
/// log and the numbers depend on more than is known here.
///
/// Reads what Islands reads. Writes what Islands writes.
class IslandSearch {
 public:
  IslandSearch(const State& state, IslandMemory* memory)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_links(state),
        m_islandWriter(state),
        m_part(state, &memory->gathered),
        m_memory(memory),
        m_sets(memory->placeOf) {}

  IslandOutcome Run();

 private:
  struct Bearer {
    int island;
    int place;
  };
  struct Firsts {
    int ofAll = -1;
    int ofIsland = -1;
  };
  enum class Turn {
    kNone,
    kPartGoes,     ///< an island has come apart, and one part has no unit in service, or both have one
    kDeadJoins,    ///< what was dead hangs together with an island
    kIslandsJoin,  ///< two islands do
    kDeadWakes,    ///< what was dead has a unit in service
    kIslandDies    ///< an island has none left
  };

  bool FindSets();
  bool TouchSections(int kv);
  bool TouchEnds(int kv);
  bool TouchLink(const BranchLink& link);
  void Touch(int bs);
  bool AreFragmentsHeld() const;
  bool JoinTouched();
  bool ReadFrom(int place);
  bool Advance(int place);

  void NoteBearers();
  bool AreIslandsLost() const;
  bool JoinIslands();
  bool JoinIsland(const Bearer* first, const Bearer* last);
  bool FindUnits();
  bool FindUnit(int island, int place);
  bool HasOldUnit(int island) const;
  bool NumberSets();
  bool SetTurn(Turn turn, int island, int place);

  bool PlanTurn();
  bool PlanPart();
  bool PlanDeadJoining();
  bool PlanIslandsJoining();
  bool PlanWaking();
  bool PlanDying();
  bool GatherWhole(int seed, int island);
  bool FindFirst(int place, int island, Firsts* firsts) const;
  bool IsKeptBefore(int bs) const;
  bool IsLastIsland() const { return m_turnIsland == m_count - 1; }
  bool Write();

  bool IsIn(int bs, int place) const { return m_sets.Has(bs) && IsSame(m_sets.PlaceOf(bs), place); }
  bool IsSame(int place, int other) const { return m_sets.SetOf(place) == m_sets.SetOf(other); }
  template <class T>
  static T& At(std::vector<T>& values, int i) {
    return values[static_cast<std::size_t>(i)];
  }

  Network m_network;
  Sections m_sections;
  Entries m_entries;
  BranchLinks m_links;
  Islands m_islandWriter;
  IslandPart m_part;
  IslandMemory* m_memory;
  IslandSets m_sets;
  bool m_damaged = false;
  int m_touched = 0;              // so many places are of touched sections: the first ones
  std::vector<int> m_holders;     // by touched place: of a fragment the section that leads to it, else -1
  std::vector<Bearer> m_bearers;  // the touched sections of live islands, by island
  std::vector<int> m_islands;     // by place, for the one that a set is known by: its island

  Turn m_turn = Turn::kNone;
  int m_turnIsland = ISLAND_DEAD;  // the island that it happens to
  int m_turnPlace = -1;            // a place of the set that it happens to
  int m_restPlace = -1;            // when an island has come apart: a place of its other part
  int m_partIsland = ISLAND_DEAD;  // the island that m_part comes to be in
  int m_count = 0;                 // how many islands there are
};

}  // namespace dtsdb::internal
