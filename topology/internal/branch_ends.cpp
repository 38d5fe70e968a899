#include "topology/internal/branch_ends.h"

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool BranchEnds::WorkOutLevel(int kv) const {
  return m_network.ForEachEndOnLevel(kv, [&](int nd, auto& branch, int, auto& end, int) {
    return WorkOut(kv, nd, ViewOf(branch), {&end.flags, END_ISOLATED});
  });
}

bool BranchEnds::WorkOut(int kv, int nd, const BranchView& branch, const EndMemory& memory) const {
  const int ownEnd = branch.EndAt(nd);
  const BranchEnd& facing = branch.ends[1 - ownEnd];
  const BranchSide own = m_fragments.SideOf(branch.EndFrom(ownEnd, nd), branch.out);
  const BranchSide other = m_fragments.SideOf(facing, branch.out);

  memory.SetIsolated(own.cut);
  branch.SetIsolated(ownEnd, own.cut);
  branch.SetBothIsolated();
  // The fragments that are missing are made, and those that are there without need removed.
  const bool adjusted = (!own.IsDue(other) || m_fragments.Toggle(kv, own.end)) &&
                        (!other.IsDue(own) || m_fragments.Toggle(m_network.LevelOfNode(facing.nd), other.end));
  return adjusted || FailedIn("tpBsBranch");
}

/// True when end 2 of a branch is open. For a zero-impedance branch the line of the same number is read. Kept: K37.
template <class Branch>
bool BranchEnds::IsEnd2Open(const Branch& branch, [[maybe_unused]] int number) const {
  if constexpr (kKindOf<Branch> == KIND_ZBR) {
    return m_network.Table<LN>().GetPh(number).status & BranchKind<ZBR>::kOpen2;
  } else {
    return branch.status & BranchKind<Branch>::kOpen2;
  }
}

template <class Branch>
void BranchEnds::AssignSections(Branch& branch, int number) const {
  using Kind = BranchKind<Branch>;
  const bool open1 = branch.status & Kind::kOpen1;
  const bool bothOpen = open1 && (branch.status & Kind::kOpen2);
  if ((branch.status & Kind::kOut) || bothOpen) {
    branch.ibs = branch.izbs = m_sections.Dead();
  } else if (open1) {
    branch.izbs = m_network.Node(branch.iznd).ibs;
  } else if (IsEnd2Open(branch, number)) {
    branch.ibs = m_network.Node(branch.ind).ibs;
  } else {
    branch.ibs = m_network.Node(branch.ind).ibs;
    branch.izbs = m_network.Node(branch.iznd).ibs;
  }
}

void BranchEnds::AssignSections() const {
  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    if (m_levels.Changed(k) < 0) continue;
    m_network.ForEachEndOnLevel(m_levels.Changed(k), [&](int, auto& branch, int number, auto&, int) {
      AssignSections(branch, number);
      return true;
    });
  }
}

}  // namespace dtsdb::internal
