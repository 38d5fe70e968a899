/// \file
/// Filling a table with records whose order is known.
#pragma once

#include <algorithm>
#include <limits>

#include "include/table.h"

namespace dtsdb {

/// Puts records into an empty table at once, without comparing them.
///
/// The table comes out as it would by that many calls of Add and a Compact: the same slots and numbers.
template <class T>
class TableFiller {
 public:
  /// True when the records of `table` are in order and no two are equal. Right after a Compact.
  static bool IsStrict(const tTable<T>& table) { return table.m_bStrict; }

  /// True when Add makes room where there is none.
  static bool CanGrow(const tTable<T>& table) { return table.m_nGrowBy > 0; }

  /// Gives `table`, which holds no records and can grow, the slots that it would have after `n` additions. It stays
  /// empty, with the numbers that its slots have then.
  static void Grow(tTable<T>& table, int n) {
    const long long missing = static_cast<long long>(n) - table.m_size;
    if (missing <= 0) return;
    const long long steps = (missing - 1) / table.m_nGrowBy + 1;
    table.SetSize(static_cast<int>(std::min<long long>(table.m_size + steps * table.m_nGrowBy, kMost)));
  }

  /// Calls `make(lg, record)` for each of the `n` records in logical order, after Grow. `make` sets all fields, such
  /// that the records ascend strictly.
  template <class Make>
  static void Fill(tTable<T>& table, int n, Make make) {
    if (n == 0) return table.Compact();
    table.NoteChange();
    table.MakeRecords(n);
    for (int lg = 0; lg < n; ++lg) make(lg, table.m_pData[lg]);
    table.NumberInOrder(n);
    table.m_bStrict = true;
  }

 private:
  static constexpr long long kMost = std::numeric_limits<int>::max();
};

}  // namespace dtsdb
