/// \file
/// A small record for table tests, and a look at everything that a table holds.
#pragma once

#include <ostream>
#include <utility>
#include <vector>

#include "include/template.h"

namespace dtsdb::test {

/// A record of which only the key is compared; the tag distinguishes equal ones.
struct Rec {
  int key = 0;
  int tag = 0;

  Rec() = default;
  Rec(int k, int t = 0) : key(k), tag(t) {}
  bool operator==(const Rec& other) const { return key == other.key; }
  bool operator<(const Rec& other) const {
    ++comparisons;
    return key < other.key;
  }

  static inline long comparisons = 0;  ///< calls of `operator<` since the program began
};

/// All members of a table, its slots as key and tag.
struct TableState {
  int size = 0;
  int growBy = 10;
  int ordered = 1;
  int first = -1;
  int last = -1;
  int head = -1;
  int tail = -1;
  int count = 0;
  std::vector<int> lgToPh;
  std::vector<int> phToLg;
  std::vector<int> next;
  std::vector<int> prev;
  std::vector<std::pair<int, int>> contents;

  bool operator==(const TableState&) const = default;
};

inline void PrintTo(const TableState& s, std::ostream* out) {
  *out << "size " << s.size << " growBy " << s.growBy << " ordered " << s.ordered << " first " << s.first << " last "
       << s.last << " head " << s.head << " tail " << s.tail << " count " << s.count;
  for (std::size_t i = 0; i < s.contents.size() && i < 60; ++i) {
    *out << "\n  " << i << ": lgToPh " << s.lgToPh[i] << " phToLg " << s.phToLg[i] << " next " << s.next[i] << " prev "
         << s.prev[i] << " key " << s.contents[i].first << " tag " << s.contents[i].second;
  }
}
inline std::ostream& operator<<(std::ostream& out, const TableState& state) {
  PrintTo(state, &out);
  return out;
}

inline std::vector<std::pair<int, int>> KeysAndTags(const Rec* p, int n) {
  std::vector<std::pair<int, int>> pairs;
  for (int i = 0; i < n; ++i) pairs.emplace_back(p[i].key, p[i].tag);
  return pairs;
}

}  // namespace dtsdb::test

namespace dtsdb {

/// For the records of these tests the friend that stores a table is one that shows it.
template <>
class TableImage<test::Rec> {
 public:
  /// Everything that the table holds. Numbers that were put off are written.
  static test::TableState State(tTable<test::Rec>& t) {
    t.Settle();
    t.MakeRecords(t.m_size);
    const auto copy = [&t](const int* p) { return std::vector<int>(p, p + t.m_size); };
    return {t.m_size,
            t.m_nGrowBy,
            t.m_bOrdered,
            t.m_first,
            t.m_last,
            t.m_head,
            t.m_tail,
            t.m_count,
            copy(t.m_pLgToPh),
            copy(t.m_pPhToLg),
            copy(t.m_pNext),
            copy(t.m_pPrev),
            test::KeysAndTags(t.m_pData, t.m_size)};
  }
  static int Ordered(const tTable<test::Rec>& t) { return t.m_bOrdered; }
  static int FirstFree(const tTable<test::Rec>& t) { return t.m_first; }
  static bool IsNumberingPutOff(const tTable<test::Rec>& t) { return !t.m_order.IsEmpty(); }
};

}  // namespace dtsdb

namespace dtsdb::test {

using Table = tTable<Rec>;
using Probe = TableImage<Rec>;

}  // namespace dtsdb::test
