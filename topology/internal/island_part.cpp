#include "topology/internal/island_part.h"

namespace dtsdb::internal {

/// The levels follow each other as in the list of all, the sections of a level as they are linked.
bool IslandPart::IsBefore(int bs, int other) const {
  const int kv = m_sections[bs].ikv;
  const int otherKv = m_sections[other].ikv;
  if (kv != otherKv) return m_levels.PlaceOf(kv) < m_levels.PlaceOf(otherKv);
  int first = other;
  m_sections.Walk(m_network.Level(kv).ibs, m_sections.EndOf(kv), [&](int n) {
    first = n;
    return n != bs && n != other;
  });
  return first == bs && bs != other;
}

}  // namespace dtsdb::internal
