/// \file
/// The rows of a relation, planned before they are made.
#pragma once

#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace dtsdb::internal {

/// Which rows a relation will have, in which order and how chained.
///
/// A row is known by its item: the number that it has when rows are added one by one, or the number of its child where
/// each child has one row at most. Items are added in ascending order. Numbers that are returned are logical.
class RowPlan {
 public:
  static constexpr int kNone = -1;

  RowPlan() = default;
  /// `parents` has the number of each item's parent, below `parentCount`; -1 for an item without a row.
  RowPlan(std::vector<int> parents, int parentCount) : m_parents(std::move(parents)), m_parentCount(parentCount) {}

  /// Orders the rows by parent and child. `byChild(i)` is the i-th item in the order of their children; `parentRank`
  /// turns the number of a parent into its place among the parents.
  template <class ByChild, class ParentRank>
  void Sort(ByChild byChild, ParentRank parentRank) {
    std::vector<int> next(static_cast<std::size_t>(m_parentCount) + 1, 0);
    for (const int parent : m_parents) {
      if (parent != kNone) ++next[static_cast<std::size_t>(parentRank(parent)) + 1];
    }
    std::partial_sum(next.begin(), next.end(), next.begin());
    m_order.resize(static_cast<std::size_t>(next.back()));
    m_ranks.assign(m_parents.size(), kNone);
    for (int i = 0; i < static_cast<int>(m_parents.size()); ++i) {
      const int item = byChild(i);
      const int parent = ParentOf(item);
      if (parent == kNone) continue;
      const int lg = next[static_cast<std::size_t>(parentRank(parent))]++;
      m_order[static_cast<std::size_t>(lg)] = item;
      m_ranks[static_cast<std::size_t>(item)] = lg;
    }
  }

  /// Chains the rows of each parent, as Relate does: each goes directly behind the first.
  void MakeChains() {
    m_heads.assign(static_cast<std::size_t>(m_parentCount), kNone);
    m_next.assign(m_parents.size(), kNone);
    m_prev.assign(m_parents.size(), kNone);
    for (std::size_t item = 0; item < m_parents.size(); ++item) {
      if (m_parents[item] == kNone) continue;
      const int row = static_cast<int>(item);
      int& head = m_heads[static_cast<std::size_t>(m_parents[item])];
      if (head == kNone) {
        head = row;
        continue;
      }
      int& behind = m_next[static_cast<std::size_t>(head)];
      if (behind != kNone) m_prev[static_cast<std::size_t>(behind)] = row;
      m_next[item] = behind;
      m_prev[item] = head;
      behind = row;
    }
  }

  /// Number of rows.
  int Count() const { return static_cast<int>(m_order.size()); }
  /// The parent of an item, -1 none.
  int ParentOf(int item) const { return m_parents[static_cast<std::size_t>(item)]; }
  int ItemAt(int lg) const { return m_order[static_cast<std::size_t>(lg)]; }
  int RankOf(int item) const { return m_ranks[static_cast<std::size_t>(item)]; }
  int HeadOf(int parent) const { return RankOrNone(m_heads[static_cast<std::size_t>(parent)]); }
  int NextOf(int item) const { return RankOrNone(m_next[static_cast<std::size_t>(item)]); }
  int PrevOf(int item) const { return RankOrNone(m_prev[static_cast<std::size_t>(item)]); }

 private:
  int RankOrNone(int item) const { return item == kNone ? kNone : RankOf(item); }

  std::vector<int> m_parents;
  int m_parentCount = 0;
  std::vector<int> m_order;  // items by logical number
  std::vector<int> m_ranks;  // logical numbers by item
  std::vector<int> m_heads;  // items by parent
  std::vector<int> m_next;   // items by item
  std::vector<int> m_prev;
};

}  // namespace dtsdb::internal
