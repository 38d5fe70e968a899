/// \file
/// The islands after a run that changes little of them, at a cost that follows what it has changed.
#pragma once

#include "topology/internal/island_search.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Follows up what the runs since the last search for islands mean for them, where they stay as they were or one thing
/// happens to one of them. All else is left to Islands::Sort, whose results these are.
///
/// Reads what Islands reads. Writes what Islands writes, and the record of changes.
class IslandUpdate {
 public:
  explicit IslandUpdate(const State& state);

  /// Before a run: makes the islands found last the ground for the next ones, if they can be.
  void Prepare() const;
  /// Brings the islands up to date, if that can be done so.
  IslandOutcome Follow() const;
  /// After a run: `found`, its islands are worked out; else what it has changed is recorded for the next one.
  void Close(bool found) const;

 private:
  bool AreLinksRegular() const;
  void Begin() const;
  void NoteFirstSections() const;
  void NoteLevels() const;

  State m_state;
  Changes* m_changes;
};

}  // namespace dtsdb::internal
