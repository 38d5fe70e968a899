/// \file
/// The search for the islands after runs that may have left them as they were.
#pragma once

#include <vector>

#include "topology/internal/branch_link.h"
#include "topology/internal/island_sets.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// One search, from the sections that runs have touched.
///
/// Any connection that is new or gone has an end on a voltage level that a run had. So each part that an island of
/// before has come to consist of has one of the sections on these levels or beyond a branch from there, the *touched*
/// ones. What hangs together there directly is put into one set; sets of one island of before are searched in step,
/// until they meet.
///
/// Reads what Islands reads. Writes BS `island` and BS_DEAD of touched sections, and ISLAND.
class IslandSearch {
 public:
  IslandSearch(const State& state, IslandMemory* memory)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_links(state),
        m_memory(memory),
        m_sets(memory->placeOf) {}

  /// Writes the islands. False, and nothing changed, when they don't stay as they were.
  bool Run();

 private:
  struct Bearer {
    int island;
    int place;
  };

  bool TouchSections(int kv);
  bool TouchEnds(int kv);
  bool TouchLink(const BranchLink& link);
  void Touch(int bs);
  bool AreFragmentsHeld() const;
  bool JoinTouched();
  bool ReadFrom(int place);
  bool Advance(int set);
  void NoteBearers();
  bool AreIslandsLost() const;
  bool JoinIslands();
  bool JoinIsland(const Bearer* first, const Bearer* last);
  bool FindUnits();
  bool IsUntouched(int bs, int island) const;
  bool NumberSets();
  void Write();

  template <class T>
  static T& At(std::vector<T>& values, int i) {
    return values[static_cast<std::size_t>(i)];
  }

  Network m_network;
  Sections m_sections;
  Entries m_entries;
  BranchLinks m_links;
  IslandMemory* m_memory;
  IslandSets m_sets;
  int m_touched = 0;              // so many places are of touched sections: the first ones
  std::vector<int> m_holders;     // by touched place: of a fragment the section that leads to it, else -1
  std::vector<Bearer> m_bearers;  // the touched sections of live islands, by island
  std::vector<int> m_islands;     // by place, for the one that a set is known by: its island
};

}  // namespace dtsdb::internal
