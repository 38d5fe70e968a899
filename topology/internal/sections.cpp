#include "topology/internal/sections.h"

namespace dtsdb::internal {

int Sections::EndOf(int kv) const {
  const int count = m_levels.AllCount();
  if (count > 0 && m_levels.All(count - 1) == kv) return Dead();
  const int place = m_levels.PlaceOf(kv);
  if (place < 0 || place + 1 >= count) return -1;
  const int end = m_network.Level(m_levels.All(place + 1)).ibs;
  return Has(end) ? end : -1;
}

bool Sections::MakeFragment(int kv, u32 bits, int* bs) const {
  const int end = EndOf(kv);
  if (end == -1) return false;
  int made = m_list[end].prev;
  if (!Insert(&made)) return false;
  BS& section = Edit(made);
  section.ikv = kv;
  section.island = ISLAND_NOT_PLACED;
  section.ibsl = -1;
  section.status |= bits;
  *bs = made;
  return true;
}

/// An open end can name a proper section all the same, which is then in no island of which anything is known.
/// Kept: K49.
void Sections::CopyIsland(int from, int to) const {
  const int island = m_list[from].island;
  Edit(to).island = island;
  if (m_changes != nullptr && !(m_list[to].status & BS_ISOLATED))
    m_changes->islands.state = IslandMemory::State::kUnknown;
}

void Sections::Blank(int bs) const {
  BS& section = Edit(bs);
  if (m_changes != nullptr) {
    m_changes->levels.Add(section.ikv);
    if (!(section.status & BS_ISOLATED)) m_changes->islands.lost.Add(section.island);
  }
  section.island = ISLAND_NOT_PLACED;
  section.ikv = -1;
  section.status = 0;
}

void Sections::GiveBack(int bs) const {
  Blank(bs);
  Delete(&bs);
}

void Sections::Retire(int bs) const {
  Blank(bs);
  BS& section = Edit(bs);
  section.flags &= ~BS_UNCLAIMED;
  section.prev = -1;
}

void Sections::GiveBackHeld() const {
  GLOBAL& global = m_network.Global();
  const int head = global.bs_live;
  const int first = m_list[head].next;
  const int last = m_list[head].prev;
  if (first == head) return;
  const bool whole = m_list.Walk(first, head, [&](int bs) {
    Retire(bs);
    return true;
  });
  BS& holding = Edit(head);
  holding.next = holding.prev = head;
  if (!whole) return;  // a damaged ring: its sections are lost to this run rather than the free list broken
  Edit(last).next = global.bs_free;
  global.bs_free = first;
}

}  // namespace dtsdb::internal
