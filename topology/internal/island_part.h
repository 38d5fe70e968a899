/// \file
/// Part of an island, as the search for all islands would come upon it.
#pragma once

#include <vector>

#include "topology/internal/neighbours.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Gathers sections that hang together, and knows how sections follow each other in the section ring.
///
/// Reads the sections, the list and, through it, branches and devices. Writes nothing but the set that it is lent.
class IslandPart {
 public:
  IslandPart(const State& state, NumberSet* gathered)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_levels(state.levels),
        m_gathered(gathered) {
    m_gathered->Reset(m_sections.Size());
  }

  /// Makes the part those of the sections reached from `seed` that `accepts(bs)` takes, in the order in which
  /// Islands::Sort reaches them. False when the list is damaged.
  template <class Accepts>
  bool Gather(int seed, Accepts accepts) {
    m_gathered->Reset(m_sections.Size());
    m_part.clear();
    return Add(seed, accepts);
  }
  /// Adds those reached from another seed.
  template <class Accepts>
  bool Add(int seed, Accepts accepts);

  const std::vector<int>& Part() const { return m_part; }
  bool Has(int bs) const { return m_gathered->Has(bs); }

  /// True when section `bs` stands in front of section `other` in the section ring.
  bool IsBefore(int bs, int other) const;

 private:
  Network m_network;
  Sections m_sections;
  Entries m_entries;
  Levels m_levels;
  NumberSet* m_gathered;
  std::vector<int> m_part;
};

/// Of the neighbours of a section the last one is visited first, with all that it leads to.
template <class Accepts>
bool IslandPart::Add(int seed, Accepts accepts) {
  if (m_gathered->Has(seed)) return true;
  m_gathered->Add(seed);
  std::vector<int> waiting = {seed};
  while (!waiting.empty()) {
    const int bs = waiting.back();
    waiting.pop_back();
    m_part.push_back(bs);
    Neighbours found;
    if (!ReadNeighbours(m_network, m_sections, m_entries, bs, &found)) return false;
    for (int i = 0; i < found.count; ++i) {
      const int next = found.sections[i];
      if (!m_sections.Has(next) || m_gathered->Has(next) || !accepts(next)) continue;
      m_gathered->Add(next);
      waiting.push_back(next);
    }
  }
  return true;
}

}  // namespace dtsdb::internal
