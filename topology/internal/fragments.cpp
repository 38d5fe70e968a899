#include "topology/internal/fragments.h"

#include "topology/internal/failure.h"

namespace dtsdb::internal {

BranchSide Fragments::SideOf(const BranchEnd& end, bool out) const {
  const int section = SectionAt(end);
  const bool isolated = end.open || m_sections.IsIsolated(section);
  return {end, isolated && section != m_sections.Dead(), isolated || out};
}

bool Fragments::Toggle(int kv, const BranchEnd& end) const {
  if (m_sections.EndOf(kv) == -1) return FailedIn("tpBsFragment");
  if (m_sections[*end.bs].status & BS_BROKEN) {
    m_sections.GiveBack(*end.bs);
    *end.bs = m_sections.Dead();
    return true;
  }
  const bool done =
      end.open ? m_sections.MakeFragment(kv, BS_ISOLATED | BS_BROKEN, end.bs) : MoveGroup(kv, end.nd, end.bs);
  return done || FailedIn("tpBsFragment");
}

bool Fragments::ToggleGroup(int kv, int nd) const {
  int bs = -1;
  return (m_sections.EndOf(kv) != -1 && MoveGroup(kv, nd, &bs)) || FailedIn("tpBsFragment");
}

bool Fragments::AddBroken(int kv, int* bs) const {
  return m_sections.MakeFragment(kv, BS_ISOLATED | BS_BROKEN, bs) || FailedIn("tpAddBrokenBs");
}

/// Moves the group of node `nd` from the dead head to a fragment of its own, or from its section, which is given
/// back, to the dead head. `*bs` becomes the section that the group then stands on.
bool Fragments::MoveGroup(int kv, int nd, int* bs) const {
  const int dead = m_sections.Dead();
  const int old = m_network.Node(nd).ibs;
  int now = dead;
  if (old != dead) {
    m_sections.GiveBack(old);
  } else if (!m_sections.MakeFragment(kv, BS_ISOLATED, &now)) {
    return false;
  }
  *bs = now;
  return m_network.ForEachInGroup(nd, [&](int member) {
    m_network.Node(member).ibs = now;
    return !m_log.IsOn() || m_log.RecordLastMove(member, now, old, kv);
  });
}

}  // namespace dtsdb::internal
