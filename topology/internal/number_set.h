/// \file
/// A set of small numbers that costs what is in it.
#pragma once

#include <cstddef>
#include <vector>

namespace dtsdb::internal {

/// Numbers from 0 to a size, each at most once, in the order in which they were added.
class NumberSet {
 public:
  /// Empties the set and gives it the size `size`. Where it has that size, this costs what is in it.
  void Reset(int size) {
    for (const int n : m_numbers) m_has[static_cast<std::size_t>(n)] = false;
    m_numbers.clear();
    if (m_has.size() != static_cast<std::size_t>(size)) m_has.assign(static_cast<std::size_t>(size), false);
  }
  /// Adds `n`. One outside the size is passed over.
  void Add(int n) {
    if (n < 0 || static_cast<std::size_t>(n) >= m_has.size() || m_has[static_cast<std::size_t>(n)]) return;
    m_has[static_cast<std::size_t>(n)] = true;
    m_numbers.push_back(n);
  }
  bool Has(int n) const {
    return n >= 0 && static_cast<std::size_t>(n) < m_has.size() && m_has[static_cast<std::size_t>(n)];
  }
  const std::vector<int>& Numbers() const { return m_numbers; }

 private:
  std::vector<int> m_numbers;
  std::vector<bool> m_has;
};

}  // namespace dtsdb::internal
