/// \file
/// The relations: the list of them, their rows and chains, and the pass that ties children to the parents they name.
#pragma once

#include <algorithm>
#include <numeric>
#include <type_traits>
#include <vector>

#include "model/dtsdb.h"
#include "validation/internal/messages.h"

namespace dtsdb::internal {

/// How the children of relation `Row` name their parent.
template <class Row>
struct ParentName {
  using Child = typename Relation<Row>::Child;
  QString Child::*key;
  Message missing;  ///< reported of a child whose parent doesn't exist
  Reason full;      ///< why the link pass stops when the relation takes no more rows
};

/// The relations whose children name their parent. A zero-impedance branch doesn't: its level is that of its breaker.
template <class Row>
inline constexpr ParentName<Row> kParentName = {};
template <>
inline constexpr ParentName<R_CO_DV> kParentName<R_CO_DV> = {&DV::co, message::kUnknownCompany, reason::kCoDvFull};
template <>
inline constexpr ParentName<R_DV_ST> kParentName<R_DV_ST> = {&ST::dv, message::kUnknownDistrict<ST>, reason::kDvStFull};
template <>
inline constexpr ParentName<R_DV_LN> kParentName<R_DV_LN> = {&LN::dv, message::kUnknownDistrict<LN>, reason::kDvLnFull};
template <>
inline constexpr ParentName<R_DV_DLN> kParentName<R_DV_DLN> = {&DLN::dv, message::kUnknownDistrict<DLN>,
                                                               reason::kDvDlnFull};
template <>
inline constexpr ParentName<R_ST_KV> kParentName<R_ST_KV> = {&KV::st, message::kUnknownStation<KV>, reason::kStKvFull};
template <>
inline constexpr ParentName<R_ST_XF> kParentName<R_ST_XF> = {&XF::st, message::kUnknownStation<XF>, reason::kStXfFull};
template <>
inline constexpr ParentName<R_KV_LD> kParentName<R_KV_LD> = {&LD::kv, message::kUnknownLevel<LD>, reason::kKvLdFull};
template <>
inline constexpr ParentName<R_KV_UN> kParentName<R_KV_UN> = {&UN::kv, message::kUnknownLevel<UN>, reason::kKvUnFull};
template <>
inline constexpr ParentName<R_KV_CP> kParentName<R_KV_CP> = {&CP::kv, message::kUnknownLevel<CP>, reason::kKvCpFull};
template <>
inline constexpr ParentName<R_KV_BUS> kParentName<R_KV_BUS> = {&BUS::kv, message::kUnknownLevel<BUS>,
                                                               reason::kKvBusFull};
template <>
inline constexpr ParentName<R_KV_CB> kParentName<R_KV_CB> = {&CB::kv, message::kUnknownLevel<CB>, reason::kKvCbFull};

/// Sets the links of a record in all relations to -1, none: up to its parent and down to its children.
template <class Record>
void ResetLinks(Record& record) {
  ForEachRelation([&record]<class Row>() {
    using R = Relation<Row>;
    if constexpr (std::is_same_v<typename R::Parent, Record>) record.*R::kHead = -1;
    if constexpr (std::is_same_v<typename R::Child, Record>) record.*R::kOwn = -1;
  });
}

/// Adds the row that ties `child` to `parent`, stores its number in the child and puts it into the parent's chain:
/// directly behind the head, so that a chain runs from the first row through all others, last added first. The head
/// of a chain that begins goes to parent record `headTaker`. False when the table takes no more rows.
template <class Row>
bool Relate(DTSDB& model, int parent, const QString& parentId, int child, const QString& childId, int headTaker) {
  using R = Relation<Row>;
  tTable<Row>& rows = TableOf<Row>(model);
  Row row(parentId, childId);
  row.*R::kParentNumber = parent;
  row.*R::kChildNumber = child;
  row.next = -1;
  row.prev = -1;
  const int number = rows.Add(row);
  if (number == -1) return false;
  TableOf<typename R::Child>(model).GetPh(child).*R::kOwn = number;

  tTable<typename R::Parent>& parents = TableOf<typename R::Parent>(model);
  const int head = parents.GetPh(parent).*R::kHead;
  if (head == -1) {
    parents.GetPh(headTaker).*R::kHead = number;
    return true;
  }
  const int behind = rows.GetPh(head).next;
  rows.GetPh(number).next = behind;
  rows.GetPh(number).prev = head;
  if (behind != -1) rows.GetPh(behind).prev = number;
  rows.GetPh(head).next = number;
  return true;
}

/// The same, with the head where it belongs.
template <class Row>
bool Relate(DTSDB& model, int parent, const QString& parentId, int child, const QString& childId) {
  return Relate<Row>(model, parent, parentId, child, childId, parent);
}

/// Records of a table sorted by the name that they give to their parent: finds a parent's children without a walk
/// over all of them. Children of one parent stand in logical order.
template <class Child>
class ChildrenByParent {
 public:
  ChildrenByParent(tTable<Child>& table, QString Child::*key)
      : m_table(table), m_key(key), m_sorted(static_cast<std::size_t>(table.GetCount())) {
    std::iota(m_sorted.begin(), m_sorted.end(), 0);
    std::stable_sort(m_sorted.begin(), m_sorted.end(), [this](int a, int b) { return KeyOf(a) < KeyOf(b); });
  }

  /// Calls `visit` with the logical number of each child of `parent`, until it returns false; returns what it returned.
  template <class Visitor>
  bool Visit(const QString& parent, Visitor visit) const {
    auto child = std::partition_point(m_sorted.begin(), m_sorted.end(), [&](int lg) { return KeyOf(lg) < parent; });
    for (; child != m_sorted.end() && KeyOf(*child) == parent; ++child) {
      if (!visit(*child)) return false;
    }
    return true;
  }

 private:
  const QString& KeyOf(int lg) const { return m_table[lg].*m_key; }

  tTable<Child>& m_table;
  QString Child::*m_key;
  std::vector<int> m_sorted;
};

/// Ties every child of relation `Row` to the parent that it names; a parent without identity has no children. A
/// child whose parent is missing keeps the -1 of the run's start. False when the relation takes no more rows, which
/// means that a pair stands in the tables twice.
template <class Row>
bool LinkPass(DTSDB& model) {
  using R = Relation<Row>;
  tTable<typename R::Parent>& parents = TableOf<typename R::Parent>(model);
  tTable<typename R::Child>& children = TableOf<typename R::Child>(model);
  const ChildrenByParent<typename R::Child> byParent(children, kParentName<Row>.key);
  for (int i = 0; i < parents.GetCount(); ++i) {
    const int number = parents.LgToPh(i);
    const QString id = parents.GetPh(number).id;
    if (id.isEmpty()) continue;
    parents.GetPh(number).*R::kHead = -1;
    const bool linked = byParent.Visit(id, [&](int lg) {
      const int child = children.LgToPh(lg);
      return Relate<Row>(model, number, id, child, children.GetPh(child).id);
    });
    if (!linked) return false;
  }
  return true;
}

}  // namespace dtsdb::internal
