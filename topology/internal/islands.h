/// \file
/// Islands: which sections hang together, and which of them are live.
#pragma once

#include <vector>

#include "topology/internal/island_ring.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Gives every section its island.
///
/// Reads the section ring, the bus-section list and, through it, branches and devices. Writes BS `island` and BS_DEAD;
/// ISLAND; in an incremental run TPL and the levels of the run, which those of sections that become live or dead join.
/// A failed call has written its line through qDebug.
class Islands {
 public:
  explicit Islands(const State& state)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_levels(state.levels),
        m_log(state.Log()),
        m_memory(state.arrays ? &state.arrays->changes.islands : nullptr) {}

  /// Works out the islands. The island that bore a number last time gets it again where it is found when that number is
  /// due. `*changed`: a section with an island number got another one.
  bool Sort(bool* changed);

  /// Puts a section into an island, ISLAND_DEAD for none. False, with a line through qDebug, when the log has no room.
  bool Put(int bs, int island);
  /// Fills ISLAND with rows for so many islands, without references. False when there is no room.
  bool FillRows(int count);

 private:
  bool SortAll(bool* changed, std::vector<int>* unitAt);
  template <class Find>
  static bool Gather(IslandRing& ring, int seed, Find find, int* unitAt);
  bool MakeLive(const IslandRing& ring, int seed, bool* changed);
  bool MakeDead(const IslandRing& ring, int seed);
  bool AddRow();
  bool LogSwitch(int bs, const char* word);

  Network m_network;
  Sections m_sections;
  Entries m_entries;
  Levels m_levels;
  ChangeLog m_log;
  IslandMemory* m_memory;
};

}  // namespace dtsdb::internal
