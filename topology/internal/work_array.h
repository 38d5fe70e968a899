/// \file
/// The flat arrays in which the topology keeps sections and list entries.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "model/record_bits.h"

namespace dtsdb::internal {

/// What a section is before its first use.
inline void Blank(BS& section) {
  section.name = QStringLiteral("");
  section.ikv = -1;
  section.island = ISLAND_NOT_PLACED;
  section.ibsl = -1;
}

/// What a list entry is before its first use.
inline void Blank(BSL& entry) {
  entry.kind = KIND_NONE;
  entry.ref = -1;
}

/// A fixed number of entries, at first all of them free: each leads to the next one.
///
/// Entries are made as they are reached. A network has room for many more sections than it ever has, and what isn't
/// made costs nothing. They never move.
template <class Entry>
class WorkArray {
 public:
  WorkArray() = default;
  explicit WorkArray(int size) : m_size(size) {
    m_entries.reserve(static_cast<std::size_t>(size));
    MakeTo(std::min(size, kMadeAtOnce));
  }

  int Size() const { return m_size; }
  /// So many, the first ones, are made.
  int Made() const { return m_made; }
  Entry* Data() { return m_entries.data(); }

  /// Entry `n`, which is one of them.
  Entry& Reach(int n) {
    if (n >= m_made) MakeTo(n + std::min(m_size - n, kMadeAtOnce));
    return m_entries[static_cast<std::size_t>(n)];
  }
  /// Makes the first `n`.
  void MakeTo(int n) {
    for (; m_made < n; ++m_made) {
      Entry& entry = m_entries.emplace_back(m_made);
      Blank(entry);
      entry.next = m_made + 1 < m_size ? m_made + 1 : -1;
      entry.prev = -1;
    }
  }

 private:
  static constexpr int kMadeAtOnce = 4096;
  int m_size = 0;
  int m_made = 0;
  std::vector<Entry> m_entries;
};

}  // namespace dtsdb::internal
