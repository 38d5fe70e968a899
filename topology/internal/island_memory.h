/// \file
/// What the islands found last allow to conclude about the next ones.
#pragma once

#include <cstdint>
#include <vector>

#include "topology/internal/number_set.h"

namespace dtsdb::internal {

/// What is known of the islands between two runs, and what the runs have changed since they were worked out.
struct IslandMemory {
  enum class State {
    kUnknown,    ///< the islands can't be concluded from those before
    kFound,      ///< the last run has worked all of them out
    kFollowable  ///< and what has changed since is recorded here
  };
  State state = State::kUnknown;

  NumberSet levels;         ///< where sections, branch ends or devices may have changed
  NumberSet lost;           ///< islands from which a section was taken out of use
  std::vector<int> unitAt;  ///< by island: one of its sections that has a unit in service
  /// By island: a section that was the first of it in the section ring, or came early, -1 for none.
  std::vector<int> firstAt;
  /// Change count of ISLAND when its rows were written.
  std::uint64_t rows = 0;
  /// By section, -1 between two searches: where the search for islands keeps what it has reached.
  std::vector<int> placeOf;
  /// The same for a part of an island.
  NumberSet gathered;

  /// Begins the record of changes, of so many levels and sections.
  void Follow(int levelCount, int sectionCount) {
    levels.Reset(levelCount);
    lost.Reset(sectionCount);
    placeOf.resize(static_cast<std::size_t>(sectionCount), -1);
    state = State::kFollowable;
  }
};

}  // namespace dtsdb::internal
