#include "topology/internal/island_search.h"

#include <algorithm>

#include "topology/internal/islands.h"
#include "topology/internal/neighbours.h"

namespace dtsdb::internal {

bool IslandSearch::Run() {
  for (const int kv : m_memory->levels.Numbers()) {
    if (!TouchSections(kv) || !TouchEnds(kv)) return false;
  }
  m_touched = m_sets.Count();
  if (!AreFragmentsHeld() || !JoinTouched()) return false;
  NoteBearers();
  if (AreIslandsLost() || !JoinIslands() || !FindUnits() || !NumberSets()) return false;
  Write();
  return true;
}

void IslandSearch::Touch(int bs) {
  if (m_sets.Reach(bs) == static_cast<int>(m_holders.size())) m_holders.push_back(-1);
}

/// Touches all sections of a level.
bool IslandSearch::TouchSections(int kv) {
  const auto& list = m_sections.List();
  const int end = m_sections.EndOf(kv);
  return end != -1 && list.Walk(m_network.Level(kv).ibs, end, [&](int bs) {
    const int next = list[bs].next;
    if (!list.Has(next) || list[next].prev != bs) return false;
    Touch(bs);
    return true;
  });
}

/// Touches the sections at both ends of all branches on the nodes of a level.
bool IslandSearch::TouchEnds(int kv) {
  return m_network.ForEachNode(kv, [&](int nd) {
    const int bs = m_network.Node(nd).ibs;
    if (bs != m_sections.Dead() && (!m_sections.Has(bs) || m_sections[bs].ikv != kv)) return false;
    return m_network.ForEachEnd<LN, XF, DLN, ZBR>(
        nd, [&](const auto& branch, int, auto&, int) { return TouchLink(m_links.Of(branch)); });
  });
}

bool IslandSearch::TouchLink(const BranchLink& link) {
  if (!link.isRegular) return false;
  for (const int bs : link.ends) {
    if (bs != -1) Touch(bs);
  }
  if (link.fragment == -1) return true;
  Touch(link.fragment);
  int& holder = At(m_holders, m_sets.PlaceOf(link.fragment));
  if (holder != -1 && holder != link.holder) return false;
  holder = link.holder;
  return true;
}

/// False when a fragment is left that nothing leads to.
bool IslandSearch::AreFragmentsHeld() const {
  for (int place = 0; place < m_touched; ++place) {
    if (m_sections.IsIsolated(m_sets.Section(place)) && m_holders[static_cast<std::size_t>(place)] == -1) return false;
  }
  return true;
}

/// Joins what hangs together directly.
bool IslandSearch::JoinTouched() {
  for (int place = 0; place < m_touched; ++place) {
    const int holder = At(m_holders, place);
    if (holder != -1) {
      m_sets.Join(place, m_sets.PlaceOf(holder));
    } else if (!ReadFrom(place)) {
      return false;
    }
  }
  return true;
}

/// Reads what hangs on the section at a place: joins what was reached before, lets the rest wait.
bool IslandSearch::ReadFrom(int place) {
  const int bs = m_sets.Section(place);
  Neighbours found;
  if (!ReadNeighbours(m_network, m_sections, m_entries, bs, &found)) return false;
  if (found.unit >= 0) m_sets.NoteUnit(m_sets.SetOf(place), bs);
  for (int i = 0; i < found.count; ++i) {
    const int other = found.sections[i];
    if (!m_sections.Has(other) || m_sections[other].ikv < 0) return false;
    if (m_sections.IsIsolated(other)) continue;
    if (m_sets.Has(other)) {
      m_sets.Join(place, m_sets.PlaceOf(other));
    } else {
      m_sets.Await(m_sets.SetOf(place), other);
    }
  }
  return true;
}

/// Reaches the section that a set has waited for longest. False when none waits.
bool IslandSearch::Advance(int set) {
  const int bs = m_sets.TakeWaiting(set);
  if (bs == -1) return false;
  const bool isNew = !m_sets.Has(bs);
  const int place = m_sets.Reach(bs);
  m_sets.Join(set, place);
  return !isNew || ReadFrom(place);
}

/// Notes which touched sections were in which live island.
void IslandSearch::NoteBearers() {
  for (int place = 0; place < m_touched; ++place) {
    const BS& section = m_sections[m_sets.Section(place)];
    if (section.island >= 0 && !(section.status & BS_ISOLATED)) m_bearers.push_back({section.island, place});
  }
  std::sort(m_bearers.begin(), m_bearers.end(), [](const Bearer& a, const Bearer& b) { return a.island < b.island; });
}

/// True when an island may have gone as a whole: sections were taken out of use, and it has no touched one.
bool IslandSearch::AreIslandsLost() const {
  const auto isLost = [&](int island) {
    const auto found = std::lower_bound(m_bearers.begin(), m_bearers.end(), island,
                                        [](const Bearer& bearer, int number) { return bearer.island < number; });
    return island >= 0 && (found == m_bearers.end() || found->island != island);
  };
  const std::vector<int>& lost = m_memory->lost.Numbers();
  if (std::any_of(lost.begin(), lost.end(), isLost)) return true;
  const int held = m_sections.Live();
  return !m_sections.Walk(m_sections[held].next, held, [&](int bs) {
    return (m_sections[bs].status & BS_ISOLATED) || !isLost(m_sections[bs].island);
  });
}

/// Finds out what hangs together in each island of before. False when one has come apart.
bool IslandSearch::JoinIslands() {
  const Bearer* const end = m_bearers.data() + m_bearers.size();
  for (const Bearer* first = m_bearers.data(); first != end;) {
    const Bearer* const last =
        std::find_if(first, end, [&](const Bearer& bearer) { return bearer.island != first->island; });
    if (!JoinIsland(first, last)) return false;
    first = last;
  }
  return true;
}

/// Searches from the sets of the bearers of one island, always from the smallest, until all are one.
bool IslandSearch::JoinIsland(const Bearer* first, const Bearer* last) {
  for (;;) {
    int smallest = m_sets.SetOf(first->place);
    bool several = false;
    for (const Bearer* bearer = first + 1; bearer != last; ++bearer) {
      const int set = m_sets.SetOf(bearer->place);
      if (set == m_sets.SetOf(first->place)) continue;
      several = true;
      if (m_sets.SizeOf(set) < m_sets.SizeOf(smallest)) smallest = set;
    }
    if (!several) return true;
    if (!Advance(smallest)) return false;
  }
}

/// Makes sure that each touched island still has a unit in service.
bool IslandSearch::FindUnits() {
  int island = ISLAND_DEAD;
  for (const Bearer& bearer : m_bearers) {
    if (bearer.island == island) continue;
    island = bearer.island;
    if (static_cast<std::size_t>(island) >= m_memory->unitAt.size()) return false;
    if (IsUntouched(At(m_memory->unitAt, island), island)) continue;
    while (m_sets.UnitOf(m_sets.SetOf(bearer.place)) == -1) {
      if (!Advance(m_sets.SetOf(bearer.place))) return false;
    }
    At(m_memory->unitAt, island) = m_sets.UnitOf(m_sets.SetOf(bearer.place));
  }
  return true;
}

/// True when nothing that stands on section `bs` of an island can have changed.
bool IslandSearch::IsUntouched(int bs, int island) const {
  const BS& section = m_sections[bs];
  return section.island == island && section.ikv >= 0 && !m_memory->levels.Has(section.ikv);
}

/// Gives each set the number of its island. False when islands have joined, or when something dead has become live.
bool IslandSearch::NumberSets() {
  m_islands.assign(static_cast<std::size_t>(m_sets.Count()), ISLAND_DEAD);
  for (const Bearer& bearer : m_bearers) {
    int& island = At(m_islands, m_sets.SetOf(bearer.place));
    if (island != ISLAND_DEAD && island != bearer.island) return false;
    island = bearer.island;
  }
  for (int place = 0; place < m_touched; ++place) {
    const int set = m_sets.SetOf(place);
    const BS& section = m_sections[m_sets.Section(place)];
    const bool wasDead = section.island == ISLAND_DEAD && !(section.status & BS_ISOLATED);
    if (At(m_islands, set) != ISLAND_DEAD ? wasDead : m_sets.UnitOf(set) != -1) return false;
  }
  return true;
}

/// As Islands::Sort does.
void IslandSearch::Write() {
  const int dead = m_sections.Dead();
  if (m_sections[dead].island != ISLAND_DEAD) m_sections.Edit(dead).island = ISLAND_DEAD;
  for (int place = 0; place < m_touched; ++place) {
    const int bs = m_sets.Section(place);
    const int island = At(m_islands, m_sets.SetOf(place));
    if (island != ISLAND_DEAD) {
      m_sections.MakeLive(bs, island);
    } else if (m_sections[bs].island != ISLAND_DEAD) {
      m_sections.MakeDead(bs);
    }
  }
  auto& islands = m_network.Table<ISLAND>();
  for (int i = 0; i < islands.GetCount(); ++i) islands[i] = Islands::Record(i);
  islands.NoteChange();
  m_memory->rows = islands.ChangeCount();
}

}  // namespace dtsdb::internal
