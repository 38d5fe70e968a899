/// \file
/// Walking the rows of a parent without building a list.
#pragma once

#include <limits>
#include <type_traits>
#include <utility>

#include "include/template.h"

namespace dtsdb {

/// Bounds the steps that all walks along chains on this thread take together, as long as it lives. A walk that has used
/// up the last one ends there, and walks begun later are empty.
///
/// For a run over a model whose chains are damaged: where each of them runs through the whole table, the bound of a
/// single walk alone would leave a time that grows with the square of the table.
class ChainLimit {
 public:
  static constexpr long long kNone = std::numeric_limits<long long>::max();  ///< as good as no limit

  /// Sets the limit for this thread, until this is destroyed.
  explicit ChainLimit(long long steps) : m_before(std::exchange(s_left, steps)) {}
  ChainLimit(const ChainLimit&) = delete;
  ChainLimit& operator=(const ChainLimit&) = delete;
  ~ChainLimit() { s_left = m_before; }

  /// The steps that are left.
  static long long& Left() { return s_left; }

 private:
  static inline constinit thread_local long long s_left = kNone;
  long long m_before;
};

/// The rows of a relation chain, for a range-based for: `for (R_KV_ND& row : Chain(table, kv.r_kv_nd))`.
///
/// The walk ends at -1, at a number outside the table (with its warning) and after as many steps as the table has
/// slots: damaged links can lead in a circle. A ChainLimit can end it earlier. Of a const table, `Row` is const and so
/// are the rows; several threads may walk then.
template <class Row>
class Chain {
 public:
  /// The table of the rows, const with them.
  using Table = std::conditional_t<std::is_const_v<Row>, const tTable<std::remove_const_t<Row>>, tTable<Row>>;

  /// The chain of `table` that begins at `head`, -1 for an empty one. The table must outlive it.
  Chain(Table& table, int head) : m_table(table), m_head(head) {}

  /// Where a walk is.
  class Iterator {
   public:
    /// At row `number` of the table, -1 for the end.
    Iterator(Table* table, int number)
        : m_table(table), m_number(ChainLimit::Left() > 0 ? number : -1), m_left(table->GetSize()) {
      Check();
    }
    /// What a range-based for needs.
    Row& operator*() const { return m_table->GetPh(m_number); }
    bool operator!=(std::nullptr_t) const { return m_number != -1; }
    Iterator& operator++() {
      const bool goesOn = --m_left > 0 && --*m_leftInAll > 0;
      m_number = goesOn ? m_table->GetPh(m_number).next : -1;
      Check();
      return *this;
    }

   private:
    void Check() {
      if (m_number != -1 && !DTSDB_ASSERT(m_number >= 0 && m_number < m_table->GetSize(), "nPh >= 0 && nPh < m_size")) {
        m_number = -1;
      }
    }
    Table* m_table;
    int m_number;
    int m_left;
    long long* m_leftInAll = &ChainLimit::Left();
  };

  /// What a range-based for needs.
  Iterator begin() const { return Iterator(&m_table, m_head); }
  std::nullptr_t end() const { return nullptr; }

 private:
  Table& m_table;
  int m_head;
};
/// The row class follows from the table.
template <class Row>
Chain(tTable<Row>&, int) -> Chain<Row>;
template <class Row>
Chain(const tTable<Row>&, int) -> Chain<const Row>;

/// Number of rows in the chain that begins at `head`.
template <class Row>
int ChainLength(const tTable<Row>& table, int head) {
  int length = 0;
  for ([[maybe_unused]] const Row& row : Chain(table, head)) ++length;
  return length;
}

/// True when the chains of all `parents`, whose heads are `head`, have together no more rows than there are: so it is
/// where each row belongs to one of them.
template <class Row, class Parent>
bool ChainsFit(tTable<Row>& rows, tTable<Parent>& parents, int Parent::*head) {
  const int size = rows.GetSize();
  int left = rows.GetCount();
  for (int i = 0; i < parents.GetCount(); ++i) {
    for (int row = parents[i].*head; row >= 0 && row < size; row = rows.GetPh(row).next) {
      if (left-- == 0) return false;
    }
  }
  return true;
}

}  // namespace dtsdb
