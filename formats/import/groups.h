/// \file
/// Things that are joined two by two, as groups.
#pragma once

#include <cstddef>
#include <numeric>
#include <vector>

namespace dtsdb::tools {

/// The numbers from 0 on in groups, each alone at first.
class Groups {
 public:
  explicit Groups(std::size_t count) : m_parent(count) { std::iota(m_parent.begin(), m_parent.end(), 0); }

  /// The number that stands for the group of `number`.
  int Of(int number) {
    while (Parent(number) != number) {
      Parent(number) = Parent(Parent(number));
      number = Parent(number);
    }
    return number;
  }
  /// Puts the group of `a` into that of `b`; what stands for the latter stands for both.
  void Join(int a, int b) { Parent(Of(a)) = Of(b); }

 private:
  int& Parent(int number) { return m_parent[static_cast<std::size_t>(number)]; }

  std::vector<int> m_parent;
};

}  // namespace dtsdb::tools
