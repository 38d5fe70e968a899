#include "topology/internal/node_pass.h"

#include "topology/internal/failure.h"

namespace dtsdb::internal {
namespace {

/// The rule of what makes a group of nodes a bus section: two branch ends, or one branch end and a device.
bool IsSection(int branchEnds, u32 nodeFlags) {
  const bool shunt = nodeFlags & (ND_HAS_UN | ND_HAS_LD | ND_HAS_CP);
  return branchEnds > 1 || (branchEnds == 1 && shunt);
}

/// A breaker that carries a zero-impedance branch never merges its nodes: the branch stands between them.
bool CanMerge(u32 breakerFlags) { return !(breakerFlags & CB_ZBR); }
bool Merges(u32 breakerFlags) { return !(breakerFlags & (CB_ZBR | CB_OPEN)); }

}  // namespace

bool NodePass::LayBaseSections() {
  const GLOBAL& global = m_network.Global();
  BS& dead = m_sections.Edit(global.bs_dead);
  dead.next = dead.prev = global.bs_dead;
  dead.island = ISLAND_DEAD;
  dead.status |= BS_ISOLATED | BS_DEAD;
  BS& live = m_sections.Edit(global.bs_live);
  live.next = live.prev = global.bs_live;

  auto& nodes = m_network.Table<ND>();
  for (int i = 0; i < nodes.GetCount(); ++i) {
    const NodeView node = m_network.Node(nodes.LgToPh(i));
    node.ibs = node.ibs0 = global.bs_dead;
    node.flags |= ND_MARK;
  }

  int section = global.bs_dead;
  for (int k = 0; k < m_levels.AllCount(); ++k) {
    const int kv = m_levels.All(k);
    m_network.Level(kv).ibs = global.bs_free;
    const bool placed = m_network.ForEachNode(kv, [&](int first) {
      if (!(m_network.Node(first).flags & ND_MARK)) return true;
      if (!m_sections.Insert(&section)) return false;
      BS& base = m_sections.Edit(section);
      base.flags |= BS_BASE;
      base.ikv = kv;
      m_network.GrowGroup(first, CanMerge, [&](int nd) { m_network.Node(nd).ibs = m_network.Node(nd).ibs0 = section; });
      return true;
    });
    if (!placed) return FailedIn("tpNodeInit", "Failed");
  }
  return true;
}

/// Sections given back meanwhile stay out of the free list until the end, so that no number is used twice within a
/// pass.
bool NodePass::Sort(bool allnew) {
  GLOBAL& global = m_network.Global();
  const int tail = global.bs_free;
  if (!m_sections.Has(tail) || m_sections[tail].next == -1) return FailedIn("tpNodeSort");
  global.bs_free = m_sections[tail].next;
  int givenBack = tail;
  auto& moves = m_network.Table<CHND>();
  if (moves.GetCount() > 0) moves.Clear();

  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    const int kv = m_levels.Changed(k);
    if (kv >= 0 && !SortLevel(kv, &givenBack, allnew)) return FailedIn("tpNodeSort");
  }
  m_sections.Edit(tail).next = global.bs_free;
  global.bs_free = givenBack;
  return true;
}

bool NodePass::SortLevel(int kv, int* givenBack, bool allnew) {
  MarkNodes(kv);
  const int end = m_sections.EndOf(kv);
  if (end == -1 || !SetSectionsAside(kv, end, givenBack)) return false;

  return m_network.ForEachNode(kv, [&](int first) {
    if (!(m_network.Node(first).flags & ND_MARK)) return true;
    u32 flags = 0;
    int branchEnds = 0;
    m_network.GrowGroup(first, Merges, [&](int nd) {
      const NodeView node = m_network.Node(nd);
      flags |= node.flags;
      branchEnds += m_network.EndCount(nd);  // out of service or not
      if (m_network.LevelOfNode(nd) == kv) CountMarked(node.ibs0, -1);
    });
    return IsSection(branchEnds, flags) ? GiveSection(first, kv, end, allnew) : TakeSection(first, kv, allnew);
  });
}

/// How many nodes of the voltage level being sorted belong to base section `bs` and still carry ND_MARK; null for what
/// is no section.
int* NodePass::MarkedNodes(int bs) {
  const bool known = m_markedNodes != nullptr && bs >= 0 && static_cast<std::size_t>(bs) < m_markedNodes->size();
  return known ? &(*m_markedNodes)[static_cast<std::size_t>(bs)] : nullptr;
}

/// Counts `step` more of them.
void NodePass::CountMarked(int bs, int step) {
  if (int* const marked = MarkedNodes(bs)) *marked += step;
}

/// Sets ND_MARK on all nodes of a voltage level and counts them by base section.
void NodePass::MarkNodes(int kv) {
  m_network.ForEachNode(kv, [&](int nd) {
    const NodeView node = m_network.Node(nd);
    node.flags &= ~ND_MARK;
    if (int* const marked = MarkedNodes(node.ibs0)) *marked = 0;
    return true;
  });
  m_network.ForEachNode(kv, [&](int nd) {
    const NodeView node = m_network.Node(nd);
    if (!(node.flags & ND_MARK) && m_network.LevelOfNode(nd) == kv) CountMarked(node.ibs0, 1);
    node.flags |= ND_MARK;
    return true;
  });
}

/// Readies the sections of a voltage level for being claimed. The fragments of the last run go back, in front of
/// `*givenBack`; base sections stay where they are; sections that an earlier run added wait in the holding ring.
bool NodePass::SetSectionsAside(int kv, int end, int* givenBack) {
  const auto& list = m_sections.List();
  const int live = m_sections.Live();
  return list.Walk(m_network.Level(kv).ibs, end, [&](int bs) {
    BS& section = list.Edit(bs);
    if (section.status & BS_ISOLATED) {
      list.Unlink(bs);
      m_sections.Retire(bs);
      section.next = *givenBack;
      *givenBack = bs;
      return true;
    }
    section.flags |= BS_UNCLAIMED;
    if (section.flags & BS_BASE) return true;
    list.Unlink(bs);
    list.InsertBefore(bs, list[live].next);
    return true;
  });
}

/// Puts the nodes of a group on section `bs`, the dead head for an illegal group; an incremental run records each
/// node that thereby moves. False when a record can't be had.
bool NodePass::MoveToSection(int nd, int bs, int kv, bool allnew) {
  const bool dead = bs == m_sections.Dead();
  return m_network.ForEachInGroup(nd, [&](int member) {
    const NodeView node = m_network.Node(member);
    if (!allnew && node.ibs != bs && !m_log.RecordMove(member, bs, node.ibs, kv)) return false;
    node.ibs = bs;
    SetBit(node.flags, ND_DEAD, dead);
    return true;
  });
}

/// The section that a legal group whose base section is taken goes to, unlinked: the lowest unclaimed one that its
/// nodes stand on, else a new one. -1 when the sections have run out.
int NodePass::UnlinkSectionFor(int nd) {
  const auto& list = m_sections.List();
  const int top = list.Size() - 1;
  int lowest = top;
  m_network.ForEachInGroup(nd, [&](int member) {
    const int bs = m_network.Node(member).ibs;
    if (bs < lowest && (list[bs].flags & BS_UNCLAIMED)) lowest = bs;
    return true;
  });
  if (lowest < top) {
    list.Unlink(lowest);
    return lowest;
  }
  GLOBAL& global = m_network.Global();
  const int taken = global.bs_free;
  if (!list.Has(taken) || list[taken].next == -1) return -1;
  global.bs_free = list[taken].next;
  list.Edit(taken).ibsl = -1;
  return taken;
}

/// The base section stays where it is in the ring; any other takes its place in front of `end`.
bool NodePass::GiveSection(int nd, int kv, int end, bool allnew) {
  const int base = m_network.Node(nd).ibs0;
  const bool keepsBase = m_sections[base].flags & BS_UNCLAIMED;
  const int bs = keepsBase ? base : UnlinkSectionFor(nd);
  if (bs == -1 || !MoveToSection(nd, bs, kv, allnew)) return FailedIn("tpBslegal");
  if (!keepsBase) {
    m_sections.List().InsertBefore(bs, end);
    m_sections.Edit(bs).ikv = kv;
  }
  Claim(bs);
  return true;
}

/// When no group is left that could claim its base section, that one stays in the ring as a section without nodes: it
/// keeps its place, since the voltage level's range may begin with it. A failure bears the same word as that of a legal
/// group. Kept: K41.
bool NodePass::TakeSection(int nd, int kv, bool allnew) {
  if (!MoveToSection(nd, m_sections.Dead(), kv, allnew)) return FailedIn("tpBslegal");
  const int base = m_network.Node(nd).ibs0;
  const int* const marked = MarkedNodes(base);
  if ((m_sections[base].flags & BS_UNCLAIMED) && (marked == nullptr || *marked == 0)) Claim(base);
  return true;
}

void NodePass::Claim(int bs) {
  BS& section = m_sections.Edit(bs);
  section.flags &= ~BS_UNCLAIMED;
  section.status &= ~BS_ISOLATED;
}

int NodePass::SectionNear(int kv, int nd) const {
  m_network.ForEachNode(kv, [&](int member) {
    m_network.NodeRecord(member).n1 = 0;
    return true;
  });
  int found = -1;
  for (int group = nd; group != -1 && found == -1; group = FirstReached(kv)) {
    m_network.ForEachInGroup(group, [&](int member) {
      m_network.ForEachBreaker(member, [&](const CB& cb, int) {
        const int other = OtherNode(cb, member);
        const int section = m_network.Node(other).ibs;
        if (found == -1 && !m_sections.IsIsolated(section)) found = section;
        if (found == -1 && m_network.NodeRecord(other).n1 == 0) m_network.NodeRecord(other).n1 = -1;
      });
      m_network.NodeRecord(member).n1 = 1;
      return found == -1;
    });
    m_network.NodeRecord(group).n1 = 1;
  }
  return found != -1 ? found : m_network.Node(nd).ibs0;
}

/// The first node of the voltage level that SectionNear has reached and not visited, -1 for none.
int NodePass::FirstReached(int kv) const {
  int reached = -1;
  m_network.ForEachNode(kv, [&](int nd) {
    if (m_network.NodeRecord(nd).n1 < 0) reached = nd;
    return reached == -1;
  });
  return reached;
}

}  // namespace dtsdb::internal
