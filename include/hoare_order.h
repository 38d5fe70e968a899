/// \file
/// The order in which a bulk load leaves records, equal ones included.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

namespace dtsdb {

/// A record's place among the others: equal records have equal ranks.
struct RankedRecord {
  int rank = 0;  ///< place that it is ordered by
  int from = 0;  ///< slot that it comes from
};

/// Hoare's partition with the middle record as pivot, on `p[nLow]` to `p[nHigh]`; not stable.
inline void HoareSort(RankedRecord* p, int nLow, int nHigh) {
  while (nLow < nHigh) {
    const int pivot = p[nLow + (nHigh - nLow) / 2].rank;
    int i = nLow;
    int j = nHigh;
    do {
      while (p[i].rank < pivot) ++i;
      while (pivot < p[j].rank) --j;
      if (i <= j) std::swap(p[i++], p[j--]);
    } while (i <= j);
    // The shorter part first, so that the depth stays below log2 n. The parts don't touch: their order is free.
    if (j - nLow < nHigh - i) {
      HoareSort(p, nLow, j);
      nLow = i;
    } else {
      HoareSort(p, i, nHigh);
      nHigh = j;
    }
  }
}

/// Where each of `n` records comes from when they are sorted by HoareSort; `below(a, b)` compares those at a and b.
///
/// How that sort goes shows only in the order of equal records. So it runs on ranks, where a comparison is one of
/// ints, and not at all when no two records are equal: inputs that make it quadratic then cost n log n as well.
inline std::vector<int> HoareOrder(int n, const std::function<bool(int, int)>& below) {
  std::vector<int> order(static_cast<std::size_t>(n));
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&below](int a, int b) { return below(a, b); });

  std::vector<RankedRecord> ranked(order.size());
  int rank = 0;
  for (std::size_t k = 0; k < order.size(); ++k) {
    if (k > 0 && below(order[k - 1], order[k])) ++rank;
    ranked[static_cast<std::size_t>(order[k])] = {rank, order[k]};
  }
  if (rank + 1 == n) return order;

  HoareSort(ranked.data(), 0, n - 1);
  std::transform(ranked.begin(), ranked.end(), order.begin(), [](const RankedRecord& record) { return record.from; });
  return order;
}

}  // namespace dtsdb
