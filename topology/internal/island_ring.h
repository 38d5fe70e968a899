/// \file
/// The section ring as the search for islands takes it apart.
#pragma once

#include <vector>

#include "topology/internal/work_list.h"

namespace dtsdb::internal {

/// A copy of the links of all sections that were ever in use. In it each section that an island takes leaves the
/// section ring and joins the ring of its island, without harm to the sections themselves.
class IslandRing {
 public:
  /// Copies the links of `sections`, whose ring runs through `head`. An entry that its neighbours don't refer back to
  /// counts as taken.
  IslandRing(const WorkList<BS>& sections, int head);

  /// False when the copied ring doesn't close.
  bool IsWhole() const { return m_whole; }
  /// True when no section is left in the section ring.
  bool IsEmpty() const { return m_next[At(m_head)] == m_head; }
  /// True when `bs` stands in a ring and no island has taken it.
  bool IsFree(int bs) const { return bs >= 0 && At(bs) < m_prev.size() && m_prev[At(bs)] >= 0; }

  /// The section from which to search for island `number`: the first one of the section ring that bore this number
  /// before, else the first one. Fragments are passed over. -1 when only fragments are left.
  int Seed(int number);

  /// Takes `bs` out of the section ring and makes it a ring of its own.
  void Begin(int bs);
  /// Takes `bs` out of the section ring and links it right behind `member` of an island.
  void Join(int bs, int member);
  /// The section behind `bs`.
  int Next(int bs) const { return m_next[At(bs)]; }

 private:
  static std::size_t At(int bs) { return static_cast<std::size_t>(bs); }

  int m_head;
  bool m_whole;
  std::vector<int> m_next;
  std::vector<int> m_prev;

  // What spares Seed a walk around the ring: the proper sections in ring order, and those that bore an island number
  // chained by that number. Both are only ever read forwards, since a section that has left doesn't come back.
  std::vector<int> m_inOrder;
  std::size_t m_first = 0;
  std::vector<int> m_firstOf;
  std::vector<int> m_nextOf;
};

}  // namespace dtsdb::internal
