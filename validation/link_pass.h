/// \file
/// The link pass: tying children to the parents whose identity they name. Part of the implementation of NMD.
#pragma once

#include <algorithm>
#include <numeric>
#include <vector>

#include "model/text.h"
#include "validation/messages.h"
#include "validation/nmd.h"

namespace dtsdb {

/// How the children of relation `Row` name their parent (`key`), what is said of a child whose parent is missing
/// (`missing`), and the reason to stop when the relation's table takes no more rows (`full`; not all of these texts
/// are built alike).
template <class Row>
struct Link;

#define DTSDB_LINK(Row, keyField, missingParent, fullText)                                 \
  template <>                                                                              \
  struct Link<Row> {                                                                       \
    static constexpr QString Relation<Row>::Child::*key = &Relation<Row>::Child::keyField; \
    static constexpr const Message& missing = missingParent;                               \
    static constexpr const char* full = fullText;                                          \
  };
DTSDB_LINK(R_CO_DV, co, message::kUnknownCompany, "R_CO_DV关系表已满.\n")
DTSDB_LINK(R_DV_ST, dv, message::kUnknownDistrict, "R_DV_ST关系表已满.\n")
DTSDB_LINK(R_DV_LN, dv, message::kUnknownDistrict, "R_DV_LN表空间.\n")
DTSDB_LINK(R_DV_DLN, dv, message::kUnknownDistrict, "R_DV_DLN表空间.\n")
DTSDB_LINK(R_ST_KV, st, message::kUnknownStation, "R_ST_KV关系表已满.\n")
DTSDB_LINK(R_ST_XF, st, message::kUnknownStation, "R_ST_XF表空间已满.\n")
DTSDB_LINK(R_KV_LD, kv, message::kUnknownLevel, "R_KV_LD关系表已满.\n")
DTSDB_LINK(R_KV_UN, kv, message::kUnknownLevel, "R_KV_UN关系表已满.\n")
DTSDB_LINK(R_KV_CP, kv, message::kUnknownLevel, "R_KV_CP关系表已满.\n")
DTSDB_LINK(R_KV_BUS, kv, message::kUnknownLevel, "R_KV_BUS关系表已满.\n")
DTSDB_LINK(R_KV_CB, kv, message::kUnknownLevel, "R_KV_CB关系表已满.\n")
#undef DTSDB_LINK

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

  /// Calls `visit` with the logical number of each child of `parent`, until it gives false; gives what it gave.
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

/// Adds the row that ties `child` to `parent`, stores its number in the child and puts it into the parent's chain:
/// directly behind the head, so that a chain runs from the first row through all others, last added first. The head
/// of a chain that begins goes to parent record `headTaker`. False when the table takes no more rows.
template <class Row>
bool NMD::Relate(int parent, const QString& parentId, int child, const QString& childId, int headTaker) {
  using R = Relation<Row>;
  tTable<Row>& rows = Table<Row>();
  Row row(parentId, childId);
  row.*R::parentNumber = parent;
  row.*R::childNumber = child;
  row.next = -1;
  row.prev = -1;
  const int number = rows.Add(row);
  if (number == -1) return false;
  Table<typename R::Child>().GetPh(child).*R::own = number;

  tTable<typename R::Parent>& parents = Table<typename R::Parent>();
  const int head = parents.GetPh(parent).*R::head;
  if (head == -1) {
    parents.GetPh(headTaker).*R::head = number;
    return true;
  }
  const int behind = rows.GetPh(head).next;
  rows.GetPh(number).next = behind;
  rows.GetPh(number).prev = head;
  if (behind != -1) rows.GetPh(behind).prev = number;
  rows.GetPh(head).next = number;
  return true;
}

/// Ties every child of relation `Row` to the parent that it names; a parent without identity has no children. A
/// child whose parent is missing keeps the -1 of StartDetect. False when the relation takes no more rows, which
/// means that a pair stands in the tables twice.
template <class Row>
bool NMD::LinkPass() {
  using R = Relation<Row>;
  tTable<typename R::Parent>& parents = Table<typename R::Parent>();
  tTable<typename R::Child>& children = Table<typename R::Child>();
  const ChildrenByParent<typename R::Child> byParent(children, Link<Row>::key);
  for (int i = 0; i < parents.GetCount(); ++i) {
    const int number = parents.LgToPh(i);
    const QString id = parents.GetPh(number).id;
    if (id.isEmpty()) continue;
    parents.GetPh(number).*R::head = -1;
    const bool linked = byParent.Visit(id, [&](int lg) {
      const int child = children.LgToPh(lg);
      return Relate<Row>(number, id, child, children.GetPh(child).id);
    });
    if (!linked) {
      m_lastError = QString::fromUtf8(Link<Row>::full);
      return false;
    }
  }
  return true;
}

}  // namespace dtsdb
