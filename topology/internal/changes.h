/// \file
/// The record of what has changed since the results were stored last.
#pragma once

#include <cstdint>
#include <vector>

#include "topology/internal/island_memory.h"
#include "topology/internal/network.h"
#include "topology/internal/number_set.h"

namespace dtsdb::internal {

/// What a run has changed, so that its last stages needn't go over whole tables.
///
/// The sets are filled where the work arrays are written: by WorkList::Edit and the links of WorkList, and by
/// Sections::Blank. They are only to be trusted unless `all`.
///
/// The tables are known to be what the arrays were stored as while their change counts stand still: then only the rows
/// of the record have to be stored.
struct Changes {
  /// Everything counts as changed: there was no run yet, a caller has filled a table of results anew, or the record was
  /// given up.
  bool all = true;

  NumberSet sections;  ///< written since the last storing
  NumberSet entries;   ///< the same of the list
  NumberSet levels;    ///< whose equipment has to be looked at: that sections were taken from, and more at the end

  /// Levels where something names a section that isn't the level's: an open branch end can, after its section was given
  /// back. What happens to that section concerns the level, though nothing else leads there.
  std::vector<int> astray;
  /// Sections out of use that have an entry noted and no name: they can still get one.
  std::vector<int> unnamed;
  /// The highest number in the section ring when it was stored last.
  int highest = 0;
  IslandMemory islands;

  /// Entries written into their table since the list was last stored in a realtime database.
  NumberSet unstored;
  bool allUnstored = true;  ///< all of them count as such

  /// Lets everything count as changed until the next full run, which begins on arrays of its own: a run has failed or
  /// another TP has run, a table that runs read was filled anew, or the list has come to stand as the sets can't
  /// express.
  void GiveUp() { all = m_givenUp = true; }

  /// Begins a run: `all` becomes true unless the tables are as the last run has left them.
  void Begin(const Network& network);
  /// Ends a run whose results are stored, of arrays of these sizes: the sets are empty, and nothing counts as changed.
  void End(const Network& network, int sectionCount, int entryCount);

  /// Notes that the list has been stored in a realtime database.
  void NoteStored();
  /// True when `unstored` has all entries that have changed since: only runs have written their table.
  bool KnowsUnstored(const tTable<BSL>& list) const { return !allUnstored && list.ChangeCount() == m_counts.entries; }

  /// The logical numbers of the buses of `levels`, rising.
  std::vector<int> BusesOfLevels(const Network& network) const;

 private:
  struct Counts {
    std::uint64_t input = 0;
    std::uint64_t sections = 0;
    std::uint64_t entries = 0;
    bool operator==(const Counts&) const = default;
  };
  static Counts CountsOf(const Network& network);

  Counts m_counts;
  int m_entryCount = 0;
  bool m_givenUp = false;
};

}  // namespace dtsdb::internal
