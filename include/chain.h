/// \file
/// Walking the rows of a parent without building a list.
#pragma once

#include "include/template.h"

namespace dtsdb {

/// The rows of a relation chain, for a range-based for: `for (R_KV_ND& row : Chain(table, kv.r_kv_nd))`.
///
/// The walk ends at -1, at a number outside the table (with its warning) and after as many steps as the table has
/// slots: damaged links can lead in a circle.
template <class Row>
class Chain {
 public:
  Chain(tTable<Row>& table, int head) : m_table(table), m_head(head) {}

  class Iterator {
   public:
    Iterator(tTable<Row>* table, int number) : m_table(table), m_number(number), m_left(table->GetSize()) { Check(); }
    Row& operator*() const { return m_table->GetPh(m_number); }
    bool operator!=(std::nullptr_t) const { return m_number != -1; }
    Iterator& operator++() {
      m_number = --m_left > 0 ? m_table->GetPh(m_number).next : -1;
      Check();
      return *this;
    }

   private:
    void Check() {
      if (m_number != -1 && !DTSDB_ASSERT(m_number >= 0 && m_number < m_table->GetSize(), "nPh >= 0 && nPh < m_size")) {
        m_number = -1;
      }
    }
    tTable<Row>* m_table;
    int m_number;
    int m_left;
  };

  Iterator begin() const { return Iterator(&m_table, m_head); }
  std::nullptr_t end() const { return nullptr; }

 private:
  tTable<Row>& m_table;
  int m_head;
};

/// Number of rows in the chain that begins at `head`.
template <class Row>
int ChainLength(tTable<Row>& table, int head) {
  int length = 0;
  for ([[maybe_unused]] const Row& row : Chain(table, head)) ++length;
  return length;
}

}  // namespace dtsdb
