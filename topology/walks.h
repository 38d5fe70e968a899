/// \file
/// How the stages of the topology walk over nodes, breakers and branch ends. Part of class TP.
#pragma once

#include <QtGlobal>
#include <type_traits>

#include "include/chain.h"
#include "topology/tp.h"

namespace dtsdb {

/// Writes that `stage` failed at the caller's source line. Always gives 0, the result of a failed stage.
[[gnu::cold]] inline int FailedIn(const char* stage, const char* word = "failed", int line = __builtin_LINE()) {
  qDebug("TP:%s at (%d) in %s.\n", word, line, stage);
  return 0;
}

/// Sets or clears `bit` in `word`.
inline void SetBit(u32& word, u32 bit, bool on) { word = on ? word | bit : word & ~bit; }

/// True when `number` is that of a slot of `table`.
template <class T>
bool HasSlot(const tTable<T>& table, int number) {
  return number >= 0 && number < table.GetSize();
}

/// The node at the other end of a breaker.
inline int OtherNode(const CB& cb, int nd) { return cb.ind == nd ? cb.iznd : cb.ind; }

/// The table of record class `T`.
template <class T>
tTable<T>& TP::Table() const {
#define DTSDB_PICK_TABLE(Record, table, key, meaning) \
  if constexpr (std::is_same_v<T, Record>) return *(table);
  DTSDB_TABLES(DTSDB_PICK_TABLE)
#undef DTSDB_PICK_TABLE
}

/// Visits the nodes of a voltage level in list order, by number, until `visit` gives false; false then. A row that
/// names no slot of ND is passed over.
template <class Visit>
bool TP::ForEachNode(int kv, Visit visit) const {
  for (const R_KV_ND& row : Chain(*m_rKvNdTable, m_kvTable->GetPh(kv).r_kv_nd)) {
    if (HasSlot(*m_ndTable, row.ind) && !visit(row.ind)) return false;
  }
  return true;
}

/// Visits the breakers on a node: `visit(cb, number)`.
template <class Visit>
void TP::ForEachBreaker(int nd, Visit visit) const {
  for (const R_ND_CB2& row : Chain(*m_rNdCb2Table, Node(nd).r_nd_cb2)) {
    const int cb = m_cb2Table->GetPh(row.icb2).icb;
    visit(m_cbTable->GetPh(cb), cb);
  }
}

/// Makes the ring of the group of node `first` and visits its nodes as they come: all nodes still carrying ND_MARK
/// that breakers accepted by `joins` lead to. Each loses its mark and stands in the ring behind the node that led
/// to it.
template <class Joins, class Visit>
void TP::GrowGroup(int first, Joins joins, Visit visit) const {
  Node(first).flags &= ~ND_MARK;
  Node(first).next = first;
  int nd = first;
  do {
    visit(nd);
    ForEachBreaker(nd, [&](const CB& cb, int) {
      const int joined = OtherNode(cb, nd);
      if (!joins(cb) || !(Node(joined).flags & ND_MARK)) return;
      Node(joined).flags &= ~ND_MARK;
      Node(joined).next = Node(nd).next;
      Node(nd).next = joined;
    });
    nd = Node(nd).next;
  } while (nd != first);
}

/// Visits the nodes of a ring by number, beginning with `first`, until `visit` gives false. False then, and when
/// the ring doesn't close.
template <class Visit>
bool TP::ForEachInGroup(int first, Visit visit) const {
  int nd = first;
  for (int left = m_ndTable->GetSize(); left > 0 && HasSlot(*m_ndTable, nd); --left) {
    const int next = Node(nd).next;
    if (!visit(nd)) return false;
    if (next == first) return true;
    nd = next;
  }
  return false;
}

/// Visits the ends of all branches of one class on a node: `visit(branch, branchNumber, end, endNumber)`.
template <class Branch, class Visit>
bool TP::ForEachEndOf(int nd, Visit visit) const {
  using Kind = BranchKind<Branch>;
  using Row = typename Kind::Row;
  for (const Row& row : Chain(Table<Row>(), Node(nd).*Relation<Row>::head)) {
    auto& end = Table<typename Kind::End>().GetPh(row.ChildNumber());
    const int branch = end.*Kind::owner;
    if (!visit(Table<Branch>().GetPh(branch), branch, end, row.ChildNumber())) return false;
  }
  return true;
}

/// The same for several classes of branch, one class after the other.
template <class... Branches, class Visit>
bool TP::ForEachEnd(int nd, Visit visit) const {
  return (ForEachEndOf<Branches>(nd, visit) && ...);
}

/// The voltage level that row `row` of the relation `Row` belongs to, -1 for none.
template <class Row>
int TP::KvThrough(int row) const {
  auto& rows = Table<Row>();
  if (!HasSlot(rows, row)) return -1;
  const int kv = rows.GetPh(row).ikv;
  return HasSlot(*m_kvTable, kv) ? kv : -1;
}

/// The voltage level of a node, -1 for none.
inline int TP::KvOfNode(int nd) const { return HasSlot(*m_ndTable, nd) ? KvThrough<R_KV_ND>(Node(nd).r_kv_nd) : -1; }

/// Visits the units, then the loads, then the shunt devices of a voltage level: `visit(device, number)`.
template <class Visit>
bool TP::ForEachShunt(int kv, Visit visit) const {
  const KV& level = m_kvTable->GetPh(kv);
  const auto visitAll = [&]<class Row>(tTable<Row>& table) {
    auto& devices = Table<typename Relation<Row>::Child>();
    for (const Row& row : Chain(table, level.*Relation<Row>::head)) {
      if (!visit(devices.GetPh(row.ChildNumber()), row.ChildNumber())) return false;
    }
    return true;
  };
  return visitAll(*m_rKvUnTable) && visitAll(*m_rKvLdTable) && visitAll(*m_rKvCpTable);
}

/// One end of a branch as its fragment is decided on. A fragment is only for a branch with exactly one live end, and
/// stands for the other one.
struct TP::BranchSide {
  int kv;
  int nd;
  int* bs;           ///< the branch's section at this end
  bool open;         ///< the end itself is open
  bool hasFragment;  ///< it stands on a fragment
  bool cut;          ///< no power passes: open, on no proper section, or the branch is out of service

  bool NeedsFragment(const BranchSide& facing) const { return cut && !facing.cut; }
  /// The fragment is missing, or there without need.
  bool IsDue(const BranchSide& facing) const { return hasFragment != NeedsFragment(facing); }
};

}  // namespace dtsdb
