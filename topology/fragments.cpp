/// \file
/// Fragments, the sections that stand for a dead branch end; what hangs on a section; the log of a run.
#include <QDateTime>

#include "topology/walks.h"

namespace dtsdb {

/// Makes a section with the marks `bits` the last one of voltage level `kv`. False, and nothing changed, when the
/// level isn't listed or the sections have run out.
bool TP::MakeFragment(int kv, u32 bits, int* bs) {
  const int end = EndOfKv(kv);
  if (end == -1) return false;
  int made = Section(end).prev;
  if (!tpListInsert(KIND_BS, &made)) return false;
  BS& section = Section(made);
  section.ikv = kv;
  section.island = ISLAND_NOT_PLACED;
  section.ibsl = -1;
  section.status |= bits;
  *bs = made;
  return true;
}

/// Gives a section back to the free list.
void TP::GiveBack(int bs) {
  BS& section = Section(bs);
  section.ikv = -1;
  section.island = ISLAND_NOT_PLACED;
  section.status = 0;
  tpListDelete(KIND_BS, &bs);
}

/// Makes or removes the fragment of the branch end at node `nd`; `*bs` is the branch's section at that end and `open`
/// says that the end is open. The fragment of an open end belongs to the branch alone; the fragment of a closed one
/// takes all nodes of the group.
int TP::tpBsFragment(int kv, int nd, int* bs, bool open) {
  if (EndOfKv(kv) == -1) return FailedIn("tpBsFragment");
  if (Section(*bs).status & BS_BROKEN) {
    GiveBack(*bs);
    *bs = Global().bs_dead;
    return 1;
  }
  const bool done = open ? MakeFragment(kv, BS_ISOLATED | BS_BROKEN, bs) : ToggleGroupFragment(kv, nd, bs);
  return done ? 1 : FailedIn("tpBsFragment");
}

int TP::tpBsFragment(int kv, int nd) {
  int bs = -1;
  if (EndOfKv(kv) == -1 || !ToggleGroupFragment(kv, nd, &bs)) return FailedIn("tpBsFragment");
  return 1;
}

int TP::tpAddBrokenBs(int kv, [[maybe_unused]] int nd, int& bs) {
  return MakeFragment(kv, BS_ISOLATED | BS_BROKEN, &bs) ? 1 : FailedIn("tpAddBrokenBs");
}

/// Moves the group of node `nd` from the dead head to a fragment of its own, or from its section, which is given
/// back, to the dead head. `*bs` becomes the section that the group then stands on.
bool TP::ToggleGroupFragment(int kv, int nd, int* bs) {
  const int dead = Global().bs_dead;
  const int old = Node(nd).ibs;
  int now = dead;
  if (old != dead) {
    GiveBack(old);
  } else if (!MakeFragment(kv, BS_ISOLATED, &now)) {
    return false;
  }
  *bs = now;
  return ForEachInGroup(nd, [&](int member) {
    Node(member).ibs = now;
    return m_allnew || RecordFragmentMove(member, now, old, kv);
  });
}

/// Records a move in CHND, where a node stands once in a run, with its first old section and its last new one.
bool TP::RecordFragmentMove(int nd, int newBs, int oldBs, int kv) {
  for (int i = 0; i < m_chndTable->GetCount(); ++i) {
    CHND& moved = (*m_chndTable)[i];
    if (moved.ind != nd) continue;
    moved.ibs_new = newBs;
    return true;
  }
  return RecordMove(nd, newBs, oldBs, kv);
}

/// The section at the other end of the branch that owns end record `end`, seen from section `bs`; the dead head when
/// the end is isolated.
template <class Branch>
int TP::FarSection(int end, int bs) const {
  using Kind = BranchKind<Branch>;
  const auto& record = Table<typename Kind::End>().GetPh(end);
  if (record.flags & END_ISOLATED) return Global().bs_dead;
  const Branch& branch = Table<Branch>().GetPh(record.*Kind::owner);
  return branch.ibs == bs ? branch.izbs : branch.ibs;
}

/// What hangs on section `bs`, read from the list: the last unit in service, -1 for none; how many loads and shunt
/// devices in service; and the sections that its branches lead to, one for each branch. Room for kMaxNeighbours
/// sections is needed at `neighbours`, and as many fail the call.
int TP::tpBsNeighbor(int bs, int* un, int* devices, int* count, int* neighbours) {
  *un = -1;
  *devices = 0;
  *count = 0;
  const int own = Section(bs).ibsl;
  if (own == -1) return 1;

  const int dead = Global().bs_dead;
  const auto addNeighbour = [&](int section) {
    if (section == dead) return;
    if (*count < kMaxNeighbours) neighbours[(*count)++] = section;
  };
  const auto entries = Entries();
  bool stopped = false;
  const bool around = entries.Walk(entries[own].next, own, [&](int n) {
    const int ref = entries[n].ref;
    switch (entries[n].kind) {
      case KIND_CP:
        if (!(m_cpTable->GetPh(ref).status & SHUNT_ISOLATED)) ++*devices;
        break;
      case KIND_LD:
        if (!(m_ldTable->GetPh(ref).status & SHUNT_ISOLATED)) ++*devices;
        break;
      case KIND_UN:
        if (!(m_unTable->GetPh(ref).status & SHUNT_ISOLATED)) *un = ref;
        break;
      case KIND_LN2:
        addNeighbour(FarSection<LN>(ref, bs));
        break;
      case KIND_XF2:
        addNeighbour(FarSection<XF>(ref, bs));
        break;
      case KIND_ZBR2:
        addNeighbour(FarSection<ZBR>(ref, bs));
        break;
      case KIND_DLN2:
        addNeighbour(FarSection<DLN>(ref, bs));
        break;
      default:
        stopped = true;
    }
    return !stopped;
  });
  if ((!stopped && !around) || *count >= kMaxNeighbours) return FailedIn("tpBsNeighbor");
  return 1;
}

namespace {

/// Looks for the table of kind `kind` among those of `Records` and takes the identity of record `ref` from it.
template <class Record>
bool TakeName(tTable<Record>& table, int kind, int ref, QString* name) {
  if (kind != KindOf<Record>) return false;
  *name = table.GetPh(ref).id;
  return true;
}

}  // namespace

/// Adds a row to the log of the run: what happened to record `ref` of the table of kind `kind`. Gives 0 without a word
/// for a kind that isn't logged. Ends of zero-impedance branches, deliberately, are not.
int TP::tpTpl(int ref, int kind, int status, int oldValue, int newValue, const char* text) {
  TPL row;
  row.id = m_tplTable->GetCount();
  row.kind = kind;
  row.n1 = status;
  row.n2 = newValue;
  row.n3 = oldValue;
  row.time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  row.event = QString::fromLatin1(text);
  const auto takeName = [&](auto&... tables) { return (TakeName(tables, kind, ref, &row.name) || ...); };
  if (kind == KIND_BS) {
    row.name = QString::number(ref);
  } else if (!takeName(*m_ldTable, *m_cpTable, *m_unTable, *m_ln2Table, *m_dln2Table, *m_xf2Table, *m_xfTable,
                       *m_lnTable, *m_dlnTable, *m_zbrTable, *m_busTable)) {
    return 0;
  }
  return m_tplTable->Add(row) != -1 ? 1 : FailedIn("tpTpl");
}

}  // namespace dtsdb
