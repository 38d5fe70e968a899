/// \file
/// The bus-section list: which section each branch end lies on, and what hangs on each section.
#include "topology/walks.h"

namespace dtsdb {

TP::BranchSide TP::SideOf(int kv, int nd, int* bs, bool open, bool out) const {
  BranchSide side{kv, nd, bs, open, false, false};
  const int section = SectionAt(side);
  const bool isolated = open || (Section(section).status & BS_ISOLATED);
  side.hasFragment = isolated && section != Global().bs_dead;
  side.cut = isolated || out;
  return side;
}

/// The section that a branch end stands on now: an open end what the branch holds, a closed one that of its node.
int TP::SectionAt(const BranchSide& side) const { return side.open ? *side.bs : Node(side.nd).ibs; }

bool TP::ToggleFragment(const BranchSide& side) { return tpBsFragment(side.kv, side.nd, side.bs, side.open) == 1; }

/// Makes the fragments of a branch's two ends that are missing and removes those that are there without need.
bool TP::AdjustFragments(const BranchSide& own, const BranchSide& other) {
  return (!own.IsDue(other) || ToggleFragment(own)) && (!other.IsDue(own) || ToggleFragment(other));
}

/// Works out one branch end as seen from node `nd` of voltage level `kv`: its isolation bits, and with them the
/// fragments of both ends. Runs once from each end; the second run finds the work done.
int TP::tpBsBranch(int kv, int nd, unsigned* endFlags, int endBit, int ind, int iznd, unsigned* status, int outBit,
                   int open1Bit, int open2Bit, unsigned* tpStatus, int iso1Bit, int iso2Bit, int bothBit, int* ibs,
                   int* izbs) {
  const bool atEnd2 = nd != ind;
  const int otherNd = atEnd2 ? ind : iznd;
  const bool out = *status & static_cast<u32>(outBit);
  const bool open1 = *status & static_cast<u32>(open1Bit);
  const bool open2 = *status & static_cast<u32>(open2Bit);
  const BranchSide own = SideOf(kv, nd, atEnd2 ? izbs : ibs, atEnd2 ? open2 : open1, out);
  const BranchSide other = SideOf(KvOfNode(otherNd), otherNd, atEnd2 ? ibs : izbs, atEnd2 ? open1 : open2, out);

  const u32 iso1 = static_cast<u32>(iso1Bit);
  const u32 iso2 = static_cast<u32>(iso2Bit);
  SetBit(*endFlags, static_cast<u32>(endBit), own.cut);
  SetBit(*tpStatus, atEnd2 ? iso2 : iso1, own.cut);
  SetBit(*tpStatus, static_cast<u32>(bothBit), (*tpStatus & iso1) && (*tpStatus & iso2));
  return AdjustFragments(own, other) ? 1 : FailedIn("tpBsBranch");
}

namespace {

/// True when end 2 of a branch is open.
template <class Branch>
bool IsEnd2Open(const Branch& branch, int, tTable<LN>&) {
  return branch.status & BranchKind<Branch>::open2;
}

/// The same for a zero-impedance branch reads, deliberately, the line of the same number.
template <>
bool IsEnd2Open(const ZBR&, int number, tTable<LN>& lines) {
  return lines.GetPh(number).status & BranchKind<ZBR>::open2;
}

}  // namespace

/// Gives the closed ends of the branches in the changed voltage levels the sections of their nodes.
void TP::tpAssignBsToDouble() {
  const auto assign = [&](auto& branch, int number, auto&, int) {
    using Kind = BranchKind<std::remove_reference_t<decltype(branch)>>;
    const bool open1 = branch.status & Kind::open1;
    const bool bothOpen = open1 && (branch.status & Kind::open2);
    if ((branch.status & Kind::out) || bothOpen) {
      branch.ibs = branch.izbs = Global().bs_dead;
    } else if (open1) {
      branch.izbs = Node(branch.iznd).ibs;
    } else if (IsEnd2Open(branch, number, *m_lnTable)) {
      branch.ibs = Node(branch.ind).ibs;
    } else {
      branch.ibs = Node(branch.ind).ibs;
      branch.izbs = Node(branch.iznd).ibs;
    }
    return true;
  };
  for (int k = 0; k < m_changedKvCount; ++k) {
    if (m_changedKvs[k] < 0) continue;
    ForEachNode(m_changedKvs[k], [&](int nd) { return ForEachEnd<LN, XF, DLN, ZBR>(nd, assign); });
  }
}

/// Rebuilds the list of the changed voltage levels between its fixed marks, the entries of stations and voltage
/// levels. A full run works out the branch ends first; an incremental one has done so where something changed.
int TP::tpBslBuild(bool allnew) {
  for (int k = 0; allnew && k < m_changedKvCount; ++k) {
    if (!WorkOutBranchEnds(m_changedKvs[k])) return FailedIn("tpBslBuild");
  }
  tpAssignBsToDouble();
  for (int k = 0; k < m_changedKvCount; ++k) {
    const int kv = m_changedKvs[k];
    if (kv < 0) continue;
    if (!ClearStretch(kv) || !ListSections(kv) || !ListShunts(kv) || !ListBranchEnds(kv)) return FailedIn("tpBslBuild");
  }
  return 1;
}

bool TP::WorkOutBranchEnds(int kv) {
  return ForEachNode(kv, [&](int nd) {
    return ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](auto& branch, int, auto& end, int) {
      using Kind = BranchKind<std::remove_reference_t<decltype(branch)>>;
      return tpBsBranch(kv, nd, &end.flags, END_ISOLATED, branch.ind, branch.iznd, &branch.status, Kind::out,
                        Kind::open1, Kind::open2, &branch.tp_status, TP_END1_ISOLATED, TP_END2_ISOLATED, TP_BOTH_DEAD,
                        &branch.ibs, &branch.izbs) == 1;
    });
  });
}

/// Deletes what stands behind the entry of a voltage level, up to the next fixed mark.
bool TP::ClearStretch(int kv) {
  const auto entries = Entries();
  const int own = m_kvTable->GetPh(kv).ibsl;
  int cursor = entries[own].next;
  for (int left = entries.Size(); left > 0 && entries.Has(cursor); --left) {
    const int kind = entries[cursor].kind;
    if (kind == KIND_ST || kind == KIND_KV || cursor == Global().bsl_head) return true;
    tpListDelete(KIND_BSL, &cursor);
  }
  return false;
}

/// Lists the sections of a voltage level in ring order behind its entry.
bool TP::ListSections(int kv) {
  const KV& level = m_kvTable->GetPh(kv);
  const int end = EndOfKv(kv);
  int cursor = level.ibsl;
  return end != -1 && Sections().Walk(level.ibs, end, [&](int bs) {
    if (!tpListInsert(KIND_BSL, &cursor)) return false;
    Entries()[cursor].kind = KIND_BS;
    Entries()[cursor].ref = bs;
    Section(bs).ibsl = cursor;
    return true;
  });
}

/// Lists an entry right behind that of section `bs`: what hangs on a section stands there newest first.
bool TP::Hang(int bs, int kind, int ref) {
  int cursor = Section(bs).ibsl;
  if (cursor == -1 || !tpListInsert(KIND_BSL, &cursor)) return false;
  Entries()[cursor].kind = static_cast<u8>(kind);
  Entries()[cursor].ref = ref;
  return true;
}

bool TP::ListShunts(int kv) {
  return ForEachShunt(kv, [&](auto& device, int number) {
    using Device = std::remove_reference_t<decltype(device)>;
    return tpBslShunt(kv, number, device.ind, &device.ibs, KindOf<Device>, &device.status, SHUNT_OFF, SHUNT_ISOLATED,
                      &device.tp_status, SHUNT_DEAD) == 1;
  });
}

/// Works out and lists one shunt device. A device that is switched off is listed under the section of its node all the
/// same, with its isolation bit set; one on no section isn't.
int TP::tpBslShunt([[maybe_unused]] int kv, int ref, int nd, int* bs, int kind, unsigned* status, int offBit,
                   int isoBit, unsigned* tpStatus, int deadBit) {
  const int dead = Global().bs_dead;
  const int section = Node(nd).ibs;
  const bool off = *status & static_cast<u32>(offBit);
  const bool lost = section == dead || off || (Section(section).status & BS_ISOLATED);
  SetBit(*status, static_cast<u32>(isoBit), lost);
  SetBit(*tpStatus, static_cast<u32>(deadBit), lost);
  *bs = off ? dead : section;
  if (section == dead || Hang(section, kind, ref)) return 1;
  return FailedIn("tpBslShunt");
}

bool TP::ListBranchEnds(int kv) {
  return ForEachNode(kv, [&](int nd) {
    return ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](auto& branch, int, auto& end, int number) {
      using End = std::remove_reference_t<decltype(end)>;
      return tpBslBranch(kv, nd, number, KindOf<End>, branch.ind, branch.iznd, &branch.ibs, &branch.izbs) == 1;
    });
  });
}

/// Lists one branch end under its section, if it has one.
int TP::tpBslBranch([[maybe_unused]] int kv, int nd, int ref, int kind, int ind, [[maybe_unused]] int iznd, int* ibs,
                    int* izbs) {
  const int section = nd != ind ? *izbs : *ibs;
  if (section == Global().bs_dead || Hang(section, kind, ref)) return 1;
  return FailedIn("tpBslBranch");
}

}  // namespace dtsdb
