/// \file
/// The node pass: which nodes are electrically one point, and which of these groups are bus sections.
#include "topology/walks.h"

namespace dtsdb {
namespace {

/// The rule of what makes a group of nodes a bus section: two branch ends, or one branch end and a device.
bool IsSection(int branchEnds, u32 nodeFlags) {
  const bool shunt = nodeFlags & (ND_HAS_UN | ND_HAS_LD | ND_HAS_CP);
  return branchEnds > 1 || (branchEnds == 1 && shunt);
}

/// A breaker that carries a zero-impedance branch never merges its nodes: the branch stands between them.
bool CanMerge(const CB& cb) { return !(cb.flags & CB_ZBR); }
bool Merges(const CB& cb) { return !(cb.flags & (CB_ZBR | CB_OPEN)); }

}  // namespace

/// Lays down the base sections: the groups of nodes that would be one point if every breaker were closed.
int TP::tpNodeInit() {
  GLOBAL& global = Global();
  BS& dead = Section(global.bs_dead);
  dead.next = dead.prev = global.bs_dead;
  dead.island = ISLAND_DEAD;
  dead.status |= BS_ISOLATED | BS_DEAD;
  BS& live = Section(global.bs_live);
  live.next = live.prev = global.bs_live;

  for (int i = 0; i < m_ndTable->GetCount(); ++i) {
    ND& node = (*m_ndTable)[i];
    node.ibs = node.ibs0 = global.bs_dead;
    node.flags |= ND_MARK;
  }

  int section = global.bs_dead;
  for (int k = 0; k < m_allKvCount; ++k) {
    const int kv = m_allKvs[k];
    m_kvTable->GetPh(kv).ibs = global.bs_free;
    const bool placed = ForEachNode(kv, [&](int first) {
      if (!(Node(first).flags & ND_MARK)) return true;
      if (!tpListInsert(KIND_BS, &section)) return false;
      Section(section).flags |= BS_BASE;
      Section(section).ikv = kv;
      GrowGroup(first, CanMerge, [&](int nd) { Node(nd).ibs = Node(nd).ibs0 = section; });
      return true;
    });
    if (!placed) return FailedIn("tpNodeInit", "Failed");
  }
  return 1;
}

/// Regroups the nodes of the changed voltage levels by the breakers as they stand. Sections given back meanwhile stay
/// out of the free list until the end, so that no number is used twice within a pass.
int TP::tpNodeSort(bool allnew) {
  GLOBAL& global = Global();
  const int tail = global.bs_free;
  if (!Sections().Has(tail) || Section(tail).next == -1) return FailedIn("tpNodeSort");
  global.bs_free = Section(tail).next;
  int givenBack = tail;
  if (m_chndTable->GetCount() > 0) m_chndTable->Clear();

  for (int k = 0; k < m_changedKvCount; ++k) {
    const int kv = m_changedKvs[k];
    if (kv >= 0 && !SortKv(kv, &givenBack, allnew)) return FailedIn("tpNodeSort");
  }
  Section(tail).next = global.bs_free;
  global.bs_free = givenBack;
  return 1;
}

bool TP::SortKv(int kv, int* givenBack, bool allnew) {
  MarkNodes(kv);
  const int end = EndOfKv(kv);
  if (end == -1 || !SetSectionsAside(kv, end, givenBack)) return false;

  return ForEachNode(kv, [&](int first) {
    if (!(Node(first).flags & ND_MARK)) return true;
    u32 flags = 0;
    int branchEnds = 0;
    GrowGroup(first, Merges, [&](int nd) {
      const ND& node = Node(nd);
      flags |= node.flags;
      branchEnds += ChainLength(*m_rNdLn2Table, node.r_nd_ln2) + ChainLength(*m_rNdXf2Table, node.r_nd_xf2) +
                    ChainLength(*m_rNdDln2Table, node.r_nd_dln2) + ChainLength(*m_rNdZbr2Table, node.r_nd_zbr2);
      if (KvOfNode(nd) == kv) --MarkedNodes(node.ibs0);
    });
    const int done =
        IsSection(branchEnds, flags) ? tpLegalBs(first, kv, end, allnew) : tpIllegalBs(first, kv, end, allnew);
    return done == 1;
  });
}

/// How many nodes of the voltage level being sorted belong to base section `bs` and still carry ND_MARK.
int& TP::MarkedNodes(int bs) {
  static thread_local int none;
  none = 0;
  const bool known = m_work && bs >= 0 && static_cast<std::size_t>(bs) < m_work->markedNodes.size();
  return known ? m_work->markedNodes[static_cast<std::size_t>(bs)] : none;
}

/// Sets ND_MARK on all nodes of a voltage level and counts them by base section.
void TP::MarkNodes(int kv) {
  ForEachNode(kv, [&](int nd) {
    Node(nd).flags &= ~ND_MARK;
    MarkedNodes(Node(nd).ibs0) = 0;
    return true;
  });
  ForEachNode(kv, [&](int nd) {
    ND& node = Node(nd);
    if (!(node.flags & ND_MARK) && KvOfNode(nd) == kv) ++MarkedNodes(node.ibs0);
    node.flags |= ND_MARK;
    return true;
  });
}

/// Readies the sections of a voltage level for being claimed. The fragments of the last run go back, in front of
/// `*givenBack`; base sections stay where they are; sections that an earlier run added wait in the holding ring.
bool TP::SetSectionsAside(int kv, int end, int* givenBack) {
  const auto sections = Sections();
  const int live = Global().bs_live;
  return sections.Walk(m_kvTable->GetPh(kv).ibs, end, [&](int bs) {
    BS& section = sections[bs];
    if (section.status & BS_ISOLATED) {
      section.island = ISLAND_NOT_PLACED;
      section.ikv = -1;
      section.status = 0;
      section.flags &= ~BS_UNCLAIMED;
      sections.Unlink(bs);
      section.next = *givenBack;
      section.prev = -1;
      *givenBack = bs;
      return true;
    }
    section.flags |= BS_UNCLAIMED;
    if (section.flags & BS_BASE) return true;
    sections.Unlink(bs);
    sections.InsertBefore(bs, sections[live].next);
    return true;
  });
}

/// Puts the nodes of a group on section `bs`, the head `bs_dead` for an illegal group; an incremental run records each
/// node that thereby moves. False when a record can't be had.
bool TP::MoveToSection(int nd, int bs, int kv, bool allnew) {
  const bool dead = bs == Global().bs_dead;
  return ForEachInGroup(nd, [&](int member) {
    ND& node = Node(member);
    if (!allnew && node.ibs != bs && !RecordMove(member, bs, node.ibs, kv)) return false;
    node.ibs = bs;
    SetBit(node.flags, ND_DEAD, dead);
    return true;
  });
}

/// Adds a CHND record: node `nd` of voltage level `kv` has moved.
bool TP::RecordMove(int nd, int newBs, int oldBs, int kv) {
  CHND moved;
  moved.id = m_chndTable->GetCount();
  moved.ind = nd;
  moved.ibs_new = newBs;
  moved.ibs_old = oldBs;
  moved.ikv = kv;
  return m_chndTable->Add(moved) != -1;
}

/// The section that a legal group whose base section is taken goes to, unlinked: the lowest unclaimed one that its
/// nodes stand on, else a new one. -1 when the sections have run out.
int TP::UnlinkSectionFor(int nd) {
  const auto sections = Sections();
  const int top = m_bsSize - 1;
  int lowest = top;
  ForEachInGroup(nd, [&](int member) {
    const int bs = Node(member).ibs;
    if (bs < lowest && (sections[bs].flags & BS_UNCLAIMED)) lowest = bs;
    return true;
  });
  if (lowest < top) {
    sections.Unlink(lowest);
    return lowest;
  }
  GLOBAL& global = Global();
  const int taken = global.bs_free;
  if (!sections.Has(taken) || sections[taken].next == -1) return -1;
  global.bs_free = sections[taken].next;
  sections[taken].ibsl = -1;
  return taken;
}

/// Gives a legal group its section, the one that it had where that can be. The base section stays where it is in the
/// ring; any other takes its place in front of `end`.
int TP::tpLegalBs(int nd, int kv, int end, bool allnew) {
  const int base = Node(nd).ibs0;
  const bool keepsBase = Section(base).flags & BS_UNCLAIMED;
  const int bs = keepsBase ? base : UnlinkSectionFor(nd);
  if (bs == -1 || !MoveToSection(nd, bs, kv, allnew)) return FailedIn("tpBslegal");
  if (!keepsBase) {
    Sections().InsertBefore(bs, end);
    Section(bs).ikv = kv;
  }
  Claim(bs);
  return 1;
}

/// Puts an illegal group on the dead head. When no group is left that could claim its base section, that one stays
/// in the ring as a section without nodes: it keeps its place, since the voltage level's range may begin with it.
int TP::tpIllegalBs(int nd, int kv, [[maybe_unused]] int end, bool allnew) {
  if (!MoveToSection(nd, Global().bs_dead, kv, allnew)) return FailedIn("tpBslegal");  // deliberately the same word
  const int base = Node(nd).ibs0;
  if ((Section(base).flags & BS_UNCLAIMED) && MarkedNodes(base) == 0) Claim(base);
  return 1;
}

void TP::Claim(int bs) {
  Section(bs).flags &= ~BS_UNCLAIMED;
  Section(bs).status &= ~BS_ISOLATED;
}

/// A section for node `nd`: one that a breaker, open or closed, leads to from its group or, failing that, from a group
/// so reached; else its base section. Always gives 1.
int TP::tpNodeConnect(int kv, int nd, int* bs) {
  ForEachNode(kv, [&](int member) {
    Node(member).n1 = 0;
    return true;
  });
  *bs = -1;
  for (int group = nd; group != -1 && *bs == -1; group = FirstReached(kv)) {
    ForEachInGroup(group, [&](int member) {
      ForEachBreaker(member, [&](const CB& cb, int) {
        const int other = OtherNode(cb, member);
        const int section = Node(other).ibs;
        if (*bs == -1 && !(Section(section).status & BS_ISOLATED)) *bs = section;
        if (*bs == -1 && Node(other).n1 == 0) Node(other).n1 = -1;
      });
      Node(member).n1 = 1;
      return *bs == -1;
    });
    Node(group).n1 = 1;
  }
  if (*bs == -1) *bs = Node(nd).ibs0;
  return 1;
}

/// The first node of the voltage level that tpNodeConnect has reached and not visited, -1 for none.
int TP::FirstReached(int kv) const {
  int reached = -1;
  ForEachNode(kv, [&](int nd) {
    if (Node(nd).n1 < 0) reached = nd;
    return reached == -1;
  });
  return reached;
}

}  // namespace dtsdb
