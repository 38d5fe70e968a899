#include "topology/internal/island_ring.h"

#include "model/record_bits.h"

namespace dtsdb::internal {

IslandRing::IslandRing(const WorkList<BS>& sections, int head)
    : m_head(head),
      m_next(At(sections.ReachedCount())),
      m_prev(At(sections.ReachedCount())),
      m_firstOf(At(sections.ReachedCount()), -1),
      m_nextOf(At(sections.ReachedCount()), -1) {
  const int count = sections.ReachedCount();
  const auto isReached = [count](int n) { return n >= 0 && n < count; };
  for (int n = 0; n < count; ++n) {
    const int next = sections[n].next;
    const int prev = sections[n].prev;
    const bool linked = isReached(next) && isReached(prev) && sections[next].prev == n && sections[prev].next == n;
    m_next[At(n)] = next;
    m_prev[At(n)] = linked ? prev : -1;
  }
  m_whole = IsFree(head) && sections.Walk(Next(head), head, [&](int bs) {
    if (!(sections[bs].status & BS_ISOLATED)) m_inOrder.push_back(bs);
    return IsFree(bs);
  });
  for (auto bs = m_inOrder.rbegin(); bs != m_inOrder.rend(); ++bs) {
    const int island = sections[*bs].island;
    if (!isReached(island)) continue;
    m_nextOf[At(*bs)] = m_firstOf[At(island)];
    m_firstOf[At(island)] = *bs;
  }
}

int IslandRing::Seed(int number) {
  if (number >= 0 && At(number) < m_firstOf.size()) {
    int& bearer = m_firstOf[At(number)];
    while (bearer != -1 && !IsFree(bearer)) bearer = m_nextOf[At(bearer)];
    if (bearer != -1) return bearer;
  }
  while (m_first < m_inOrder.size() && !IsFree(m_inOrder[m_first])) ++m_first;
  return m_first < m_inOrder.size() ? m_inOrder[m_first] : -1;
}

void IslandRing::Begin(int bs) {
  int& prevOfNext = m_prev[At(m_next[At(bs)])];
  m_next[At(m_prev[At(bs)])] = m_next[At(bs)];
  if (prevOfNext != -1) prevOfNext = m_prev[At(bs)];
  m_next[At(bs)] = bs;
  m_prev[At(bs)] = -1;
}

void IslandRing::Join(int bs, int member) {
  Begin(bs);
  m_next[At(bs)] = m_next[At(member)];
  m_next[At(member)] = bs;
}

}  // namespace dtsdb::internal
