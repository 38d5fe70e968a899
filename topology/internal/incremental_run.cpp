#include "topology/internal/incremental_run.h"

#include <QDateTime>

#include "topology/internal/changed_levels.h"
#include "topology/internal/component_change.h"
#include "topology/internal/failure.h"
#include "topology/internal/full_run.h"
#include "topology/internal/island_update.h"
#include "topology/internal/islands.h"
#include "topology/internal/node_pass.h"
#include "topology/internal/section_list.h"
#include "topology/internal/section_store.h"
#include "topology/internal/status.h"

namespace dtsdb::internal {
namespace {

/// From so many waiting changes on a full run is preferred, after which they still wait. Kept: K48.
constexpr int kMaxChanges = 50;

/// Follows up what has become of the islands, or works all of them out.
bool SortIslands(const State& state, const IslandUpdate& update) {
  const IslandOutcome outcome = update.Follow();
  if (outcome == IslandOutcome::kFailed) return FailedIn("tpBsSort");
  bool renumbered = false;
  return outcome == IslandOutcome::kDone || Islands(state).Sort(&renumbered);
}

}  // namespace

bool IncrementalRun::Run() const {
  const Network& network = m_state.network;
  network.Table<TPL>().Clear();
  const int waiting = network.Table<TPTRACE>().GetCount();
  if (m_state.levels.IsEmpty() || waiting >= kMaxChanges) return FullRun(m_state).Run() || FailedIn("tpChange");
  if (waiting == 0) return true;
  if (network.Global().valid == 0) {
    qDebug("TP:errors in real database at (%d).\n", __LINE__);
    return true;
  }
  if (!ChangedLevels(m_state).Find()) return FailedIn("tpChange");
  m_state.allnew = false;
  if (!RunStages()) return false;
  network.Global().u1 = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  return true;
}

/// The last two stages go by the record of changes, and over everything where that isn't to be trusted.
bool IncrementalRun::RunStages() const {
  Changes& changes = m_state.arrays->changes;
  changes.Begin(m_state.network);
  const IslandUpdate islands(m_state);
  islands.Prepare();
  if (!NodePass(m_state).Sort(false)) return FailedIn("tpChange");
  bool islandChanged = false;
  if (!ComponentChange(m_state).FollowAll(&islandChanged)) return FailedIn("tpChange");
  if (!SectionList(m_state).Build(false)) return FailedIn("tpChange");
  if (islandChanged && !SortIslands(m_state, islands)) return FailedIn("tpChange");
  m_state.Sections().GiveBackHeld();
  islands.Close(islandChanged);
  const EquipmentStatus status(m_state);
  if (!(changes.all ? status.Update() : status.UpdateChanged())) return FailedIn("tpChange");
  const SectionStore store(m_state);
  return (changes.all ? store.NameAndStore() : store.NameAndStoreChanged()) || FailedIn("tpChange");
}

}  // namespace dtsdb::internal
