/// \file
/// The islands after a run that leaves them as they were, at a cost that follows what it has changed.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Follows up what the runs since the last search for islands mean for them, where each island keeps its number and no
/// section but a new one becomes live or dead. All else is left to Islands::Sort, whose results these are.
///
/// Reads what Islands reads. Writes BS `island` and BS_DEAD of touched sections, ISLAND and the record of changes.
class IslandUpdate {
 public:
  explicit IslandUpdate(const State& state);

  /// Before a run: makes the islands found last the ground for the next ones, if they can be.
  void Prepare() const;
  /// Brings the islands up to date. False, and nothing changed, when this can't be done so.
  bool Follow() const;
  /// After a run: `found`, its islands are worked out; else what it has changed is recorded for the next one.
  void Close(bool found) const;

 private:
  bool AreLinksRegular() const;
  void Begin() const;
  void NoteLevels() const;

  State m_state;
  Changes* m_changes;
};

}  // namespace dtsdb::internal
