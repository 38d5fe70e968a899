/// \file
/// The tables as the stages reach them, and how they walk over nodes, breakers, branch ends and shunt devices.
#pragma once

#include <algorithm>
#include <span>

#include "include/chain.h"
#include "model/dtsdb.h"
#include "model/record_bits.h"
#include "topology/internal/flat_network.h"

namespace dtsdb::internal {

/// Sets or clears `bit` in `word`.
inline void SetBit(u32& word, u32 bit, bool on) { word = on ? word | bit : word & ~bit; }

/// Writes a field that hasn't the value yet. After a run most have, and what isn't written needn't go back to memory.
template <class Value>
void Put(Value& field, Value value) {
  if (field != value) field = value;
}

/// True when `number` is that of a slot of `table`.
template <class T>
bool HasSlot(const tTable<T>& table, int number) {
  return number >= 0 && number < table.GetSize();
}

/// The node at the other end of a breaker.
inline int OtherNode(const CB& cb, int nd) { return cb.ind == nd ? cb.iznd : cb.ind; }

/// What the stages read and write of a node.
struct NodeView {
  i32& ibs;
  i32& ibs0;
  i32& next;
  u32& flags;
};

/// A view of the tables, as cheap to copy as a pointer. Every number that came out of a record may be wrong: a record
/// is reached through GetPh, and every walk ends.
///
/// The walks only read, but for GrowGroup, which writes ND `next` and ND_MARK. They go along the chains of relation
/// rows, or over a FlatNetwork made of them: then they come upon the same in the same order, sooner, and nodes and
/// branches are those that it has.
class Network {
 public:
  explicit Network(DTSDB& tables) : m_tables(&tables) {}
  /// `flat`, made of these tables, must outlive the view.
  Network(DTSDB& tables, FlatNetwork* flat) : m_tables(&tables), m_flat(flat) {}

  bool IsFlat() const { return m_flat != nullptr; }
  /// All 46 tables.
  DTSDB& Tables() const { return *m_tables; }
  /// The table of record class `T`.
  template <class T>
  tTable<T>& Table() const {
    return TableOf<T>(*m_tables);
  }
  GLOBAL& Global() const { return Table<GLOBAL>().GetPh(0); }
  [[gnu::always_inline]] NodeView Node(int nd) const {
    if (m_flat != nullptr && m_flat->HasNode(nd)) {
      FlatNode& node = m_flat->Node(nd);
      return {m_flat->SectionOf(nd), node.ibs0, node.next, node.flags};
    }
    ND& node = NodeRecord(nd);
    return {node.ibs, node.ibs0, node.next, node.flags};
  }
  ND& NodeRecord(int nd) const { return Table<ND>().GetPh(nd); }
  KV& Level(int kv) const { return Table<KV>().GetPh(kv); }
  bool HasLevel(int kv) const { return HasSlot(Table<KV>(), kv); }

  /// Visits the nodes of a voltage level in list order, by number, until `visit` returns false; false then. A row that
  /// names no slot of ND is passed over.
  template <class Visit>
  bool ForEachNode(int kv, Visit visit) const;

  /// Visits the breakers on a node: `visit(cb, number)`.
  template <class Visit>
  void ForEachBreaker(int nd, Visit visit) const;
  /// The same where the breakers' flags and what they lead to will do: `visit(joint)`.
  template <class Visit>
  void ForEachJoint(int nd, Visit visit) const;

  /// Makes the ring of the group of node `first` and visits its nodes as they come: all nodes still carrying ND_MARK
  /// that breakers lead to whose flags `joins` accepts. Each loses its mark and stands in the ring behind the node that
  /// led to it.
  template <class Joins, class Visit>
  void GrowGroup(int first, Joins joins, Visit visit) const;

  /// Visits the nodes of a ring by number, beginning with `first`, until `visit` returns false. False then, and when
  /// the ring doesn't close.
  template <class Visit>
  bool ForEachInGroup(int first, Visit visit) const;

  /// Visits the ends of the branches on a node, one class after the other in the order given:
  /// `visit(branch, branchNumber, end, endNumber)`, until it returns false; false then. Along the chains always.
  template <class... Branches, class Visit>
  bool ForEachEnd(int nd, Visit visit) const {
    return (ForEachEndOf<Branches>(nd, visit) && ...);
  }

  /// Visits the ends of the lines, windings, zero-impedance branches and DC lines, in this order, on each node of a
  /// level: `visit(nd, branch, branchNumber, end, endNumber)`, until it returns false; false then.
  template <class Visit>
  bool ForEachEndOnLevel(int kv, Visit visit) const;
  /// Visits all branches of some classes: `visit(branch)`.
  template <class... Branches, class Visit>
  void ForEachBranch(Visit visit) const;
  /// Visits the branch that has the end with this number: `visit(branch, end)`.
  template <class Branch, class Visit>
  void VisitBranchOfEnd(int number, Visit visit) const;
  /// How many ends of lines, windings, zero-impedance branches and DC lines stand on a node.
  int EndCount(int nd) const;

  /// Visits the units, then the loads, then the shunt devices of a voltage level: `visit(device, number)`, until it
  /// returns false; false then.
  template <class Visit>
  bool ForEachShunt(int kv, Visit visit) const;

  /// The voltage level that row `row` of the relation `Row` belongs to, -1 for none.
  template <class Row>
  int LevelThrough(int row) const;

  /// The voltage level of a node, -1 for none.
  [[gnu::always_inline]] int LevelOfNode(int nd) const {
    const int known = m_flat != nullptr && m_flat->HasNode(nd) ? m_flat->Node(nd).level : FlatNode::kNoLevel;
    if (known != FlatNode::kNoLevel) return known;
    return HasSlot(Table<ND>(), nd) ? LevelThrough<R_KV_ND>(NodeRecord(nd).r_kv_nd) : -1;
  }

 private:
  template <class Branch, class Visit>
  bool ForEachEndOf(int nd, Visit& visit) const;
  template <class Branch, class Visit>
  bool VisitEnd(const NodeEnd& end, Visit& visit) const;
  template <class Device, class Visit>
  bool ForEachDevice(int kv, Visit& visit) const;

  DTSDB* m_tables;
  FlatNetwork* m_flat = nullptr;
};

template <class Visit>
bool Network::ForEachNode(int kv, Visit visit) const {
  if (m_flat != nullptr) {
    const std::span<const int> nodes = m_flat->NodesOf(kv);
    return std::all_of(nodes.begin(), nodes.end(), visit);
  }
  const auto& nodes = Table<ND>();
  for (const R_KV_ND& row : Chain(Table<R_KV_ND>(), Level(kv).r_kv_nd)) {
    if (HasSlot(nodes, row.ind) && !visit(row.ind)) return false;
  }
  return true;
}

template <class Visit>
void Network::ForEachBreaker(int nd, Visit visit) const {
  for (const R_ND_CB2& row : Chain(Table<R_ND_CB2>(), NodeRecord(nd).r_nd_cb2)) {
    const int cb = Table<CB2>().GetPh(row.icb2).icb;
    visit(Table<CB>().GetPh(cb), cb);
  }
}

template <class Visit>
void Network::ForEachJoint(int nd, Visit visit) const {
  if (m_flat != nullptr) {
    for (const Joint& joint : m_flat->JointsOf(nd)) visit(joint);
  } else {
    ForEachBreaker(nd, [&](const CB& cb, int) { visit(Joint{OtherNode(cb, nd), cb.flags}); });
  }
}

template <class Joins, class Visit>
void Network::GrowGroup(int first, Joins joins, Visit visit) const {
  Node(first).flags &= ~ND_MARK;
  Node(first).next = first;
  int nd = first;
  do {
    visit(nd);
    const NodeView node = Node(nd);
    ForEachJoint(nd, [&](const Joint& joint) {
      if (!joins(joint.flags)) return;
      const NodeView other = Node(joint.node);
      if (!(other.flags & ND_MARK)) return;
      other.flags &= ~ND_MARK;
      other.next = node.next;
      node.next = joint.node;
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
  for (const Row& row : Chain(Table<Row>(), NodeRecord(nd).*Relation<Row>::kHead)) {
    auto& end = Table<typename Kind::End>().GetPh(row.ChildNumber());
    const int branch = end.*Kind::kOwner;
    if (!visit(Table<Branch>().GetPh(branch), branch, end, row.ChildNumber())) return false;
  }
  return true;
}

template <class Visit>
bool Network::ForEachEndOnLevel(int kv, Visit visit) const {
  if (m_flat == nullptr) {
    return ForEachNode(kv, [&](int nd) {
      return ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](auto& branch, int number, auto& end, int endNumber) {
        return visit(nd, branch, number, end, endNumber);
      });
    });
  }
  const std::span<const NodeEnd> ends = m_flat->EndsOf(kv);
  return std::all_of(ends.begin(), ends.end(), [&](const NodeEnd& end) {
    if (end.kind == KIND_LN2) return VisitEnd<LN>(end, visit);
    if (end.kind == KIND_XF2) return VisitEnd<XF>(end, visit);
    return end.kind == KIND_ZBR2 ? VisitEnd<ZBR>(end, visit) : VisitEnd<DLN>(end, visit);
  });
}

template <class Branch, class Visit>
bool Network::VisitEnd(const NodeEnd& end, Visit& visit) const {
  auto& record = m_flat->Ends<Branch>()[static_cast<std::size_t>(end.end)];
  auto& branch = m_flat->Branches<Branch>()[static_cast<std::size_t>(record.branch)];
  return visit(end.node, branch, record.branch, record, end.end);
}

template <class... Branches, class Visit>
void Network::ForEachBranch(Visit visit) const {
  const auto visitAll = [&]<class Branch>(tTable<Branch>& branches) {
    for (int i = 0; i < branches.GetCount(); ++i) {
      const int branch = branches.LgToPh(i);
      if (m_flat != nullptr) {
        visit(m_flat->Branches<Branch>()[static_cast<std::size_t>(branch)]);
      } else {
        visit(branches.GetPh(branch));
      }
    }
  };
  (visitAll(Table<Branches>()), ...);
}

template <class Branch, class Visit>
void Network::VisitBranchOfEnd(int number, Visit visit) const {
  using Kind = BranchKind<Branch>;
  if (m_flat != nullptr) {
    const auto& ends = m_flat->Ends<Branch>();
    if (number >= 0 && static_cast<std::size_t>(number) < ends.size()) {
      const auto& end = ends[static_cast<std::size_t>(number)];
      return visit(m_flat->Branches<Branch>()[static_cast<std::size_t>(end.branch)], end);
    }
  }
  const auto& end = Table<typename Kind::End>().GetPh(number);
  visit(Table<Branch>().GetPh(end.*Kind::kOwner), end);
}

inline int Network::EndCount(int nd) const {
  if (m_flat != nullptr) return m_flat->EndCountOf(nd);
  const auto count = [&]<class... Rows>() {
    return (ChainLength(Table<Rows>(), NodeRecord(nd).*Relation<Rows>::kHead) + ...);
  };
  return count.template operator()<R_ND_LN2, R_ND_XF2, R_ND_DLN2, R_ND_ZBR2>();
}

template <class Visit>
bool Network::ForEachShunt(int kv, Visit visit) const {
  return ForEachDevice<UN>(kv, visit) && ForEachDevice<LD>(kv, visit) && ForEachDevice<CP>(kv, visit);
}

template <class Device, class Visit>
bool Network::ForEachDevice(int kv, Visit& visit) const {
  auto& devices = Table<Device>();
  if (m_flat != nullptr) {
    const std::span<const int> numbers = m_flat->DevicesOf<Device>(kv);
    return std::all_of(numbers.begin(), numbers.end(),
                       [&](int number) { return visit(devices.GetPh(number), number); });
  }
  using Row = ParentRow<Device>;
  for (const Row& row : Chain(Table<Row>(), Level(kv).*Relation<Row>::kHead)) {
    if (!visit(devices.GetPh(row.ChildNumber()), row.ChildNumber())) return false;
  }
  return true;
}

template <class Row>
int Network::LevelThrough(int row) const {
  auto& rows = Table<Row>();
  if (!HasSlot(rows, row)) return -1;
  const int kv = rows.GetPh(row).ikv;
  return HasLevel(kv) ? kv : -1;
}

}  // namespace dtsdb::internal
