/// \file
/// The tables as the stages reach them, and how they walk over nodes, breakers, branch ends and shunt devices.
#pragma once

#include "include/chain.h"
#include "model/dtsdb.h"
#include "model/record_bits.h"

namespace dtsdb::internal {

/// Sets or clears `bit` in `word`.
inline void SetBit(u32& word, u32 bit, bool on) { word = on ? word | bit : word & ~bit; }

/// True when `number` is that of a slot of `table`.
template <class T>
bool HasSlot(const tTable<T>& table, int number) {
  return number >= 0 && number < table.GetSize();
}

/// The node at the other end of a breaker.
inline int OtherNode(const CB& cb, int nd) { return cb.ind == nd ? cb.iznd : cb.ind; }

/// A view of the tables, as cheap to copy as a pointer. Every number that came out of a record may be wrong: a record
/// is reached through GetPh, and every walk ends.
///
/// The walks only read, but for GrowGroup, which writes ND `next` and ND_MARK.
class Network {
 public:
  explicit Network(DTSDB& tables) : m_tables(&tables) {}

  /// All 46 tables.
  DTSDB& Tables() const { return *m_tables; }
  /// The table of record class `T`.
  template <class T>
  tTable<T>& Table() const {
    return TableOf<T>(*m_tables);
  }
  GLOBAL& Global() const { return Table<GLOBAL>().GetPh(0); }
  ND& Node(int nd) const { return Table<ND>().GetPh(nd); }
  KV& Level(int kv) const { return Table<KV>().GetPh(kv); }
  bool HasLevel(int kv) const { return HasSlot(Table<KV>(), kv); }

  /// Visits the nodes of a voltage level in list order, by number, until `visit` returns false; false then. A row that
  /// names no slot of ND is passed over.
  template <class Visit>
  bool ForEachNode(int kv, Visit visit) const;

  /// Visits the breakers on a node: `visit(cb, number)`.
  template <class Visit>
  void ForEachBreaker(int nd, Visit visit) const;

  /// Makes the ring of the group of node `first` and visits its nodes as they come: all nodes still carrying ND_MARK
  /// that breakers accepted by `joins` lead to. Each loses its mark and stands in the ring behind the node that led
  /// to it.
  template <class Joins, class Visit>
  void GrowGroup(int first, Joins joins, Visit visit) const;

  /// Visits the nodes of a ring by number, beginning with `first`, until `visit` returns false. False then, and when
  /// the ring doesn't close.
  template <class Visit>
  bool ForEachInGroup(int first, Visit visit) const;

  /// Visits the ends of the branches on a node, one class after the other in the order given:
  /// `visit(branch, branchNumber, end, endNumber)`, until it returns false; false then.
  template <class... Branches, class Visit>
  bool ForEachEnd(int nd, Visit visit) const {
    return (ForEachEndOf<Branches>(nd, visit) && ...);
  }

  /// Visits the units, then the loads, then the shunt devices of a voltage level: `visit(device, number)`, until it
  /// returns false; false then.
  template <class Visit>
  bool ForEachShunt(int kv, Visit visit) const;

  /// The voltage level that row `row` of the relation `Row` belongs to, -1 for none.
  template <class Row>
  int LevelThrough(int row) const;

  /// The voltage level of a node, -1 for none.
  int LevelOfNode(int nd) const { return HasSlot(Table<ND>(), nd) ? LevelThrough<R_KV_ND>(Node(nd).r_kv_nd) : -1; }

 private:
  template <class Branch, class Visit>
  bool ForEachEndOf(int nd, Visit& visit) const;

  DTSDB* m_tables;
};

template <class Visit>
bool Network::ForEachNode(int kv, Visit visit) const {
  const auto& nodes = Table<ND>();
  for (const R_KV_ND& row : Chain(Table<R_KV_ND>(), Level(kv).r_kv_nd)) {
    if (HasSlot(nodes, row.ind) && !visit(row.ind)) return false;
  }
  return true;
}

template <class Visit>
void Network::ForEachBreaker(int nd, Visit visit) const {
  for (const R_ND_CB2& row : Chain(Table<R_ND_CB2>(), Node(nd).r_nd_cb2)) {
    const int cb = Table<CB2>().GetPh(row.icb2).icb;
    visit(Table<CB>().GetPh(cb), cb);
  }
}

template <class Joins, class Visit>
void Network::GrowGroup(int first, Joins joins, Visit visit) const {
  Node(first).flags &= ~ND_MARK;
  Node(first).next = first;
  int nd = first;
  do {
    visit(nd);
    ND& node = Node(nd);
    ForEachBreaker(nd, [&](const CB& cb, int) {
      if (!joins(cb)) return;
      const int joined = OtherNode(cb, nd);
      ND& other = Node(joined);
      if (!(other.flags & ND_MARK)) return;
      other.flags &= ~ND_MARK;
      other.next = node.next;
      node.next = joined;
    });
    nd = node.next;
  } while (nd != first);
}

template <class Visit>
bool Network::ForEachInGroup(int first, Visit visit) const {
  const auto& nodes = Table<ND>();
  int nd = first;
  for (int left = nodes.GetSize(); left > 0 && HasSlot(nodes, nd); --left) {
    const int next = Node(nd).next;
    if (!visit(nd)) return false;
    if (next == first) return true;
    nd = next;
  }
  return false;
}

template <class Branch, class Visit>
bool Network::ForEachEndOf(int nd, Visit& visit) const {
  using Kind = BranchKind<Branch>;
  using Row = typename Kind::Row;
  for (const Row& row : Chain(Table<Row>(), Node(nd).*Relation<Row>::kHead)) {
    auto& end = Table<typename Kind::End>().GetPh(row.ChildNumber());
    const int branch = end.*Kind::kOwner;
    if (!visit(Table<Branch>().GetPh(branch), branch, end, row.ChildNumber())) return false;
  }
  return true;
}

template <class Visit>
bool Network::ForEachShunt(int kv, Visit visit) const {
  const KV& level = Level(kv);
  const auto visitAll = [&]<class Row>(tTable<Row>& table) {
    auto& devices = Table<typename Relation<Row>::Child>();
    for (const Row& row : Chain(table, level.*Relation<Row>::kHead)) {
      if (!visit(devices.GetPh(row.ChildNumber()), row.ChildNumber())) return false;
    }
    return true;
  };
  return visitAll(Table<R_KV_UN>()) && visitAll(Table<R_KV_LD>()) && visitAll(Table<R_KV_CP>());
}

template <class Row>
int Network::LevelThrough(int row) const {
  auto& rows = Table<Row>();
  if (!HasSlot(rows, row)) return -1;
  const int kv = rows.GetPh(row).ikv;
  return HasLevel(kv) ? kv : -1;
}

}  // namespace dtsdb::internal
