#include "topology/internal/branch_link.h"

namespace dtsdb::internal {

/// True for the section of the end's node, on the node's own level.
bool BranchLinks::IsProper(const End& end) const {
  return m_network.Node(end.nd).ibs == end.bs && end.bs != m_sections.Dead() && m_sections.Has(end.bs) &&
         !m_sections.IsIsolated(end.bs) && m_sections[end.bs].ikv == m_network.LevelOfNode(end.nd);
}

/// True for a fragment on the level of the end's node.
bool BranchLinks::IsFragment(const End& end) const {
  return end.bs != m_sections.Dead() && m_sections.Has(end.bs) && m_sections.IsIsolated(end.bs) &&
         m_sections[end.bs].ikv >= 0 && m_sections[end.bs].ikv == m_network.LevelOfNode(end.nd);
}

BranchLink BranchLinks::Join(const End& from, const End& to) const {
  BranchLink link;
  const End* const ends[] = {&from, &to};
  for (int i = 0; i < 2; ++i) {
    const End& end = *ends[i];
    const End& other = *ends[1 - i];
    if (!end.isolated) {
      if (!IsProper(end)) return link;
      link.ends[i] = end.bs;
    } else if (end.bs != m_sections.Dead()) {
      if (other.isolated || !IsFragment(end)) return link;
      link.fragment = end.bs;
      link.holder = other.bs;
    }
  }
  link.isRegular = true;
  return link;
}

}  // namespace dtsdb::internal
