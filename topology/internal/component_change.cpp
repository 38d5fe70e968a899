#include "topology/internal/component_change.h"

#include <type_traits>

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool ComponentChange::FollowAll(bool* islandChanged) const {
  *islandChanged = false;
  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    const int kv = m_levels.Changed(k);
    if (kv < 0) continue;
    bool levelChanged = false;
    const ChangeReach reach{islandChanged, &levelChanged};
    if (!FollowBranches(kv, reach) || !FollowShunts(kv, reach)) return FailedIn("tpComponentChanged");
    if (levelChanged) *islandChanged = true;
  }
  return true;
}

bool ComponentChange::FollowBranches(int kv, const ChangeReach& reach) const {
  return m_network.ForEachNode(kv, [&](int nd) {
    return m_network.ForEachEnd<LN, DLN, ZBR, XF>(nd, [&](auto& branch, int, auto&, int number) {
      using Kind = BranchKind<std::remove_reference_t<decltype(branch)>>;
      using End = typename Kind::End;
      auto& ends = m_network.Table<End>();
      const EndVisit visit{number,
                           kKindOf<End>,
                           {{&ends.GetPh(branch.*Kind::kFromEnd).flags, END_ISOLATED},
                            {&ends.GetPh(branch.*Kind::kToEnd).flags, END_ISOLATED}}};
      return FollowBranch(kv, nd, ViewOf(branch), visit, reach);
    });
  });
}

bool ComponentChange::FollowShunts(int kv, const ChangeReach& reach) const {
  return m_network.ForEachShunt(kv,
                                [&](auto& device, int number) { return FollowShunt(ViewOf(device, number), reach); });
}

/// The two sides of a branch, with the sections that they stood on and stand on.
struct ComponentChange::Sides {
  BranchSide near;
  BranchSide far;
  int oldNear = *near.end.bs;
  int oldFar = *far.end.bs;
  int nearBs = -1;
  int farBs = -1;
};

///     near  far    fragments
///     cut   cut    each end that stands on one gives it back
///     cut   live   the near end gets one, with the far end's island
///     live  cut    the far end gets one, with the near end's island, and its voltage level is drawn into the run
///     live  live   none is there
///
/// Each case goes by what the ends name from the run before: an open end that names a section gets no fragment.
/// Kept: K49.
bool ComponentChange::FollowBranch(int kv, int nd, const BranchView& branch, const EndVisit& visit,
                                   const ChangeReach& reach) const {
  const int nearEnd = branch.EndAt(nd);
  const int farEnd = 1 - nearEnd;
  const BranchEnd& facing = branch.ends[farEnd];
  const BranchSide near = m_fragments.SideOf(branch.EndFrom(nearEnd, nd), branch.out);
  Sides sides{near, m_fragments.SideOf(facing, branch.out)};
  const EndMemory& memory = visit.memory[nearEnd];
  const bool nearWas = memory.IsIsolated();
  const bool farWas = visit.memory[farEnd].IsIsolated();

  if (!AdjustFragments(kv, sides)) return FailedIn("tpBranchChanged");
  sides.nearBs = m_fragments.SectionAt(near.end);
  sides.farBs = m_fragments.SectionAt(facing);
  if (nearWas != near.cut) {
    memory.SetIsolated(near.cut);
    branch.SetIsolated(nearEnd, near.cut);
  }
  CompareEnd(sides, nearWas, farWas, reach.islands);
  branch.SetBothIsolated();

  if (sides.oldNear == sides.nearBs) return true;
  *reach.level = true;
  return m_log.Record({visit.kind, visit.number, *branch.tpStatus, sides.oldNear, sides.nearBs, "BS"}) ||
         FailedIn("tpBranchChanged");
}

/// Makes the fragments that are missing and removes those that are there without need. The near end is on level `kv`.
bool ComponentChange::AdjustFragments(int kv, const Sides& sides) const {
  if (sides.near.IsDue(sides.far) && !m_fragments.Toggle(kv, sides.near.end)) return false;
  if (!sides.far.IsDue(sides.near)) return true;
  const int farKv = m_network.LevelOfNode(sides.far.end.nd);
  if (!m_fragments.Toggle(farKv, sides.far.end)) return false;
  m_levels.AddChangedOnce(farKv);
  return true;
}

/// Compares the near end with its memory: whether the islands have to be worked out again, and else which island a
/// section takes over from the other end.
void ComponentChange::CompareEnd(const Sides& sides, bool nearWas, bool farWas, bool* islandChanged) const {
  const auto& [near, far, oldNear, oldFar, nearBs, farBs] = sides;
  if (nearWas == near.cut) {
    if (near.NeedsFragment(far) && near.IsDue(far)) {
      m_sections.CopyIsland(farBs, nearBs);
    } else if (far.NeedsFragment(near) && far.IsDue(near)) {
      m_sections.CopyIsland(nearBs, farBs);
    }
    return;
  }
  const int island = m_sections[oldNear].island;
  if (near.cut) {
    if (!farWas && island >= ISLAND_DEAD) *islandChanged = true;
    if (!far.cut) m_sections.CopyIsland(farBs, nearBs);
  } else if (far.cut) {
    m_sections.CopyIsland(nearBs, farBs);
  } else if (island != m_sections[oldFar].island || island == ISLAND_DEAD) {
    *islandChanged = true;  // closing within one live island leaves the islands as they are
  }
}

/// Only a unit makes an island live, so only a unit asks for new islands by itself.
bool ComponentChange::FollowShunt(const ShuntView& device, const ChangeReach& reach) const {
  int now = m_network.Node(device.nd).ibs;
  const bool isLost = device.off || m_sections.IsIsolated(now);
  if (device.IsIsolated() != isLost) {
    device.SetIsolated(isLost);
    if (isLost && device.off) now = m_sections.Dead();
    const int island = m_sections[*device.bs].island;
    const bool matters = isLost ? island > ISLAND_DEAD : island == ISLAND_DEAD;
    if (device.kind == KIND_UN && matters) *reach.islands = true;
  }
  if (*device.bs == now) return true;
  // A device that stays off is logged here as well, as if it had moved. Kept: K53.
  *reach.level = true;
  if (!m_log.Record({device.kind, device.number, *device.tpStatus, *device.bs, now, "BS"})) {
    return FailedIn("tpShuntChanged");
  }
  *device.bs = now;
  return true;
}

}  // namespace dtsdb::internal
