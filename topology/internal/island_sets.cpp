#include "topology/internal/island_sets.h"

#include <utility>

namespace dtsdb::internal {

int IslandSets::Reach(int bs) {
  int& place = At(m_placeOf, bs);
  if (place != -1) return place;
  place = Count();
  m_sections.push_back(bs);
  m_parents.push_back(place);
  m_sets.emplace_back();
  return place;
}

int IslandSets::SetOf(int place) const {
  while (At(m_parents, place) != place) place = At(m_parents, place);
  return place;
}

/// The smaller goes into the larger: no place comes to stand more than log n steps from the one that its set is known
/// by.
void IslandSets::Join(int place, int other) {
  int set = SetOf(place);
  int joined = SetOf(other);
  if (set == joined) return;
  if (SizeOf(set) < SizeOf(joined)) std::swap(set, joined);
  At(m_parents, joined) = set;
  Set& into = At(m_sets, set);
  const Set taken = std::move(At(m_sets, joined));
  into.size += taken.size;
  if (into.unitAt == -1) into.unitAt = taken.unitAt;
  into.waiting.insert(into.waiting.end(), taken.waiting.begin() + static_cast<std::ptrdiff_t>(taken.next),
                      taken.waiting.end());
}

int IslandSets::TakeWaiting(int set) {
  Set& from = At(m_sets, set);
  return from.next < from.waiting.size() ? from.waiting[from.next++] : -1;
}

}  // namespace dtsdb::internal
