/// \file
/// What the regrouped nodes of the changed voltage levels and the states of the components mean for branch ends and
/// shunt devices: fragments, isolation, the log, and whether the islands have to be worked out again.
#include <algorithm>

#include "topology/walks.h"

namespace dtsdb {

/// Goes over the changed voltage levels, those included that it adds on the way. A branch with both ends in them is
/// seen once from each end.
int TP::tpComponentChanged(bool* islandChanged) {
  *islandChanged = false;
  for (int k = 0; k < m_changedKvCount; ++k) {
    const int kv = m_changedKvs[k];
    if (kv < 0) continue;
    bool kvChanged = false;
    if (!BranchesChanged(kv, islandChanged, &kvChanged) || !ShuntsChanged(kv, islandChanged, &kvChanged)) {
      return FailedIn("tpComponentChanged");
    }
    if (kvChanged) *islandChanged = true;
  }
  return 1;
}

bool TP::BranchesChanged(int kv, bool* islandChanged, bool* kvChanged) {
  return ForEachNode(kv, [&](int nd) {
    return ForEachEnd<LN, DLN, ZBR, XF>(nd, [&](auto& branch, int, auto&, int number) {
      using Kind = BranchKind<std::remove_reference_t<decltype(branch)>>;
      auto& ends = Table<typename Kind::End>();
      return tpBranchChanged(kv, nd, number, KindOf<typename Kind::End>, END_ISOLATED,
                             &ends.GetPh(branch.*Kind::fromEnd).flags, &ends.GetPh(branch.*Kind::toEnd).flags,
                             branch.ind, branch.iznd, &branch.ibs, &branch.izbs, &branch.status, Kind::out, Kind::open1,
                             Kind::open2, &branch.tp_status, TP_END1_ISOLATED, TP_END2_ISOLATED, TP_BOTH_DEAD,
                             islandChanged, kvChanged) == 1;
    });
  });
}

bool TP::ShuntsChanged(int kv, bool* islandChanged, bool* kvChanged) {
  return ForEachShunt(kv, [&](auto& device, int number) {
    return tpShuntChanged(number, device.ind, &device.ibs, KindOf<std::remove_reference_t<decltype(device)>>,
                          &device.status, SHUNT_OFF, SHUNT_ISOLATED, &device.tp_status, SHUNT_DEAD, kvChanged,
                          islandChanged) == 1;
  });
}

void TP::AddChangedKvOnce(int kv) {
  int* const end = m_changedKvs + m_changedKvCount;
  if (std::find(m_changedKvs, end, kv) == end) AddChangedKv(kv);
}

/// One branch as seen from its end at node `nd`. The memory of an end, bit `endBit` of its record, tells how it was
/// when last worked out; only the visit from an end changes its memory.
///
///     near  far    fragments
///     cut   cut    each end that stands on one gives it back
///     cut   live   the near end gets one, with the far end's island
///     live  cut    the far end gets one, with the near end's island, and its voltage level is drawn into the run
///     live  live   none is there
int TP::tpBranchChanged(int kv, int nd, int end, int kind, int endBit, unsigned* endFlags1, unsigned* endFlags2,
                        int nd1, int nd2, int* bs1, int* bs2, unsigned* status, int offBit, int open1Bit, int open2Bit,
                        unsigned* tpStatus, int tp1Bit, int tp2Bit, int tpBothBit, bool* islandChanged,
                        bool* kvChanged) {
  const bool atEnd2 = nd != nd1;
  const int farNd = atEnd2 ? nd1 : nd2;
  const auto has = [](u32 word, int bit) { return (word & static_cast<u32>(bit)) != 0; };
  const bool out = has(*status, offBit);
  const bool open1 = has(*status, open1Bit);
  const bool open2 = has(*status, open2Bit);
  const BranchSide near = SideOf(kv, nd, atEnd2 ? bs2 : bs1, atEnd2 ? open2 : open1, out);
  const BranchSide far = SideOf(KvOfNode(farNd), farNd, atEnd2 ? bs1 : bs2, atEnd2 ? open1 : open2, out);
  const int oldNear = *near.bs;
  const int oldFar = *far.bs;
  u32& nearFlags = atEnd2 ? *endFlags2 : *endFlags1;
  const bool nearWas = has(nearFlags, endBit);
  const bool farWas = has(atEnd2 ? *endFlags1 : *endFlags2, endBit);

  if (near.IsDue(far) && !ToggleFragment(near)) return FailedIn("tpBranchChanged");
  if (far.IsDue(near)) {
    if (!ToggleFragment(far)) return FailedIn("tpBranchChanged");
    AddChangedKvOnce(far.kv);
  }
  const int nearBs = SectionAt(near);
  const int farBs = SectionAt(far);
  const auto giveIsland = [&](int from, int to) { Section(to).island = Section(from).island; };

  if (nearWas != near.cut) {
    SetBit(nearFlags, static_cast<u32>(endBit), near.cut);
    SetBit(*tpStatus, static_cast<u32>(atEnd2 ? tp2Bit : tp1Bit), near.cut);
    const int island = Section(oldNear).island;
    if (!near.cut) {
      // Closing within one live island leaves the islands as they are.
      if (far.cut) {
        giveIsland(nearBs, farBs);
      } else if (island != Section(oldFar).island || island == ISLAND_DEAD) {
        *islandChanged = true;
      }
    } else {
      if (!farWas && island >= ISLAND_DEAD) *islandChanged = true;
      if (!far.cut) giveIsland(farBs, nearBs);
    }
  } else if (near.NeedsFragment(far) && near.IsDue(far)) {
    giveIsland(farBs, nearBs);
  } else if (far.NeedsFragment(near) && far.IsDue(near)) {
    giveIsland(nearBs, farBs);
  }
  SetBit(*tpStatus, static_cast<u32>(tpBothBit), has(*tpStatus, tp1Bit) && has(*tpStatus, tp2Bit));

  if (oldNear == nearBs) return 1;
  *kvChanged = true;
  return tpTpl(end, kind, static_cast<int>(*tpStatus), oldNear, nearBs, "BS") ? 1 : FailedIn("tpBranchChanged");
}

/// One shunt device. Only a unit makes an island live, so only a unit asks for new islands by itself.
int TP::tpShuntChanged(int device, int nd, int* bs, int kind, unsigned* status, int offBit, int isolatedBit,
                       unsigned* tpStatus, int tpDeadBit, bool* kvChanged, bool* islandChanged) {
  int now = Node(nd).ibs;
  const u32 isolated = static_cast<u32>(isolatedBit);
  const bool off = (*status & static_cast<u32>(offBit)) != 0;
  const bool wasLost = (*status & isolated) != 0;
  const bool isLost = off || (Section(now).status & BS_ISOLATED);

  if (wasLost != isLost) {
    SetBit(*status, isolated, isLost);
    SetBit(*tpStatus, static_cast<u32>(tpDeadBit), isLost);
    if (isLost && off) now = Global().bs_dead;
    const int island = Section(*bs).island;
    const bool matters = isLost ? island > ISLAND_DEAD : island == ISLAND_DEAD;
    if (kind == KIND_UN && matters) *islandChanged = true;
  }
  if (*bs == now) return 1;
  *kvChanged = true;
  if (!tpTpl(device, kind, static_cast<int>(*tpStatus), *bs, now, "BS")) return FailedIn("tpShuntChanged");
  *bs = now;
  return 1;
}

}  // namespace dtsdb
