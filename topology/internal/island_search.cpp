#include "topology/internal/island_search.h"

#include <algorithm>
#include <utility>

#include "topology/internal/neighbours.h"

namespace dtsdb::internal {

IslandOutcome IslandSearch::Run() {
  m_count = static_cast<int>(m_memory->unitAt.size());
  if (!FindSets() || !PlanTurn()) return IslandOutcome::kLeft;
  return Write() ? IslandOutcome::kDone : IslandOutcome::kFailed;
}

bool IslandSearch::FindSets() {
  for (const int kv : m_memory->levels.Numbers()) {
    if (!TouchSections(kv) || !TouchEnds(kv)) return false;
  }
  m_touched = m_sets.Count();
  if (!AreFragmentsHeld() || !JoinTouched()) return false;
  NoteBearers();
  return !AreIslandsLost() && JoinIslands() && FindUnits() && NumberSets() && !m_damaged;
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

/// Reaches the section that the set of a place has waited for longest. False when none waits: the set is complete.
bool IslandSearch::Advance(int place) {
  const int bs = m_sets.TakeWaiting(m_sets.SetOf(place));
  if (bs == -1) return false;
  const bool isNew = !m_sets.Has(bs);
  const int reached = m_sets.Reach(bs);
  m_sets.Join(place, reached);
  if (isNew && !ReadFrom(reached)) m_damaged = true;
  return true;
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

/// Finds out what hangs together in each island of before. False when more has come apart than can be followed.
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

/// Searches from the sets of the bearers of one island, always from the smallest, until all are one or one of two is
/// complete.
bool IslandSearch::JoinIsland(const Bearer* first, const Bearer* last) {
  int complete = -1;  // a place of the complete set
  for (;;) {
    int open = -1;  // a place of a set that isn't complete, of the smallest one in the end
    bool several = false;
    for (const Bearer* bearer = first; bearer != last; ++bearer) {
      const int set = m_sets.SetOf(bearer->place);
      if (set == open || (complete != -1 && IsSame(set, complete))) continue;
      several = several || open != -1;
      if (open == -1 || m_sets.SizeOf(set) < m_sets.SizeOf(open)) open = set;
    }
    if (open == -1) return false;
    if (!several) {
      m_restPlace = complete != -1 ? open : m_restPlace;
      return complete == -1 || SetTurn(Turn::kPartGoes, first->island, complete);
    }
    if (Advance(open)) continue;
    if (complete != -1) return false;
    complete = open;
  }
}

/// Notes what happens to island `island` of before, at the set of a place. False when something else does already.
bool IslandSearch::SetTurn(Turn turn, int island, int place) {
  if (m_turn != Turn::kNone) return false;
  m_turn = turn;
  m_turnIsland = island;
  m_turnPlace = place;
  return true;
}

/// Makes sure that each touched island still has a unit in service, or lets it die.
bool IslandSearch::FindUnits() {
  int island = ISLAND_DEAD;
  for (const Bearer& bearer : m_bearers) {
    if (bearer.island == island) continue;
    island = bearer.island;
    if (island >= m_count) return false;
    const bool isApart = m_turn == Turn::kPartGoes && m_turnIsland == island;
    if (FindUnit(island, isApart ? m_restPlace : bearer.place)) continue;
    if (!isApart) {
      if (!SetTurn(Turn::kIslandDies, island, bearer.place)) return false;
      continue;
    }
    std::swap(m_turnPlace, m_restPlace);  // the part that was taken for the rest is complete now, and goes
    if (!FindUnit(island, m_restPlace)) return false;
  }
  return true;
}

/// Makes sure that the set of a place, of an island of before, has a unit in service.
bool IslandSearch::FindUnit(int island, int place) {
  if (HasOldUnit(island) && !(m_turn == Turn::kPartGoes && IsIn(At(m_memory->unitAt, island), m_turnPlace)))
    return true;
  while (m_sets.UnitOf(m_sets.SetOf(place)) == -1) {
    if (!Advance(place)) return false;
  }
  At(m_memory->unitAt, island) = m_sets.UnitOf(m_sets.SetOf(place));
  return true;
}

/// True when nothing that stands on the section known to have a unit can have changed.
bool IslandSearch::HasOldUnit(int island) const {
  const BS& section = m_sections[m_memory->unitAt[static_cast<std::size_t>(island)]];
  return section.island == island && section.ikv >= 0 && !m_memory->levels.Has(section.ikv);
}

/// Gives each set the number of its island, the lowest of several. False when that takes more than one turn.
bool IslandSearch::NumberSets() {
  m_islands.assign(static_cast<std::size_t>(m_sets.Count()), ISLAND_DEAD);
  for (const Bearer& bearer : m_bearers) {
    int& island = At(m_islands, m_sets.SetOf(bearer.place));
    if (island == bearer.island) continue;
    // From the lowest number on: what is there is lower.
    if (island != ISLAND_DEAD) {
      const bool known = m_turn == Turn::kIslandsJoin && m_turnIsland == bearer.island;
      if (!known && !SetTurn(Turn::kIslandsJoin, bearer.island, bearer.place)) return false;
    } else {
      island = bearer.island;
    }
  }
  for (int place = 0; place < m_touched; ++place) {
    const int set = m_sets.SetOf(place);
    const BS& section = m_sections[m_sets.Section(place)];
    if (section.status & BS_ISOLATED) continue;
    const int island = At(m_islands, set);
    if (island != ISLAND_DEAD && section.island == ISLAND_DEAD) {
      const bool known = m_turn == Turn::kDeadJoins && IsSame(m_turnPlace, place);
      if (!known && !SetTurn(Turn::kDeadJoins, island, place)) return false;
    } else if (island == ISLAND_DEAD && m_sets.UnitOf(set) != -1) {
      const bool known = m_turn == Turn::kDeadWakes && IsSame(m_turnPlace, place);
      if (!known && !SetTurn(Turn::kDeadWakes, ISLAND_DEAD, place)) return false;
    }
  }
  return true;
}

bool IslandSearch::PlanTurn() {
  switch (m_turn) {
    case Turn::kNone:
      return true;
    case Turn::kPartGoes:
      return PlanPart();
    case Turn::kDeadJoins:
      return PlanDeadJoining();
    case Turn::kIslandsJoin:
      return PlanIslandsJoining();
    case Turn::kDeadWakes:
      return PlanWaking();
    case Turn::kIslandDies:
      return PlanDying();
  }
  return false;
}

/// Finds the first sections, in the section ring, of the set of a place. False when one of them was in an island other
/// than `island`.
bool IslandSearch::FindFirst(int place, int island, Firsts* firsts) const {
  const auto take = [&](int bs, int* first) {
    if (*first == -1 || m_part.IsBefore(bs, *first)) *first = bs;
  };
  for (int other = 0; other < m_sets.Count(); ++other) {
    const int bs = m_sets.Section(other);
    if (!IsSame(other, place) || m_sections.IsIsolated(bs)) continue;
    take(bs, &firsts->ofAll);
    if (m_sections[bs].island == island) {
      take(bs, &firsts->ofIsland);
    } else if (m_sections[bs].island != ISLAND_NOT_PLACED) {
      return false;
    }
  }
  return true;
}

/// Makes all that hangs together with `seed` the part, which comes to be in island `island`.
bool IslandSearch::GatherWhole(int seed, int island) {
  m_partIsland = island;
  return seed != -1 && m_part.Gather(seed, [](int) { return true; });
}

/// A part with a unit becomes the last island, where the rest keeps the number: it has to come first. A part without
/// one dies; a section that was in no island before is its first one only where the search comes to the part at the
/// end.
bool IslandSearch::PlanPart() {
  Firsts firsts;
  if (!FindFirst(m_turnPlace, m_turnIsland, &firsts)) return false;
  const int set = m_sets.SetOf(m_turnPlace);
  const int unitAt = m_sets.UnitOf(set);
  const bool isClear = unitAt == -1 && firsts.ofAll == firsts.ofIsland;
  if (!isClear && !IsKeptBefore(firsts.ofIsland)) return false;
  At(m_islands, set) = unitAt != -1 ? m_count : ISLAND_DEAD;
  if (!GatherWhole(firsts.ofAll, At(m_islands, set))) return false;
  if (unitAt == -1) return true;
  m_memory->unitAt.push_back(unitAt);
  m_memory->firstAt.push_back(firsts.ofIsland);
  ++m_count;
  return true;
}

/// True when the rest of an island that has come apart is known to have a section in front of section `bs` of the part.
bool IslandSearch::IsKeptBefore(int bs) const {
  const auto isBefore = [&](int other) {
    const BS& section = m_sections[other];
    return section.island == m_turnIsland && section.ikv >= 0 && !(section.status & BS_ISOLATED) &&
           m_part.IsBefore(other, bs);
  };
  const int early = m_memory->firstAt[static_cast<std::size_t>(m_turnIsland)];
  if (early != -1 && !IsIn(early, m_turnPlace) && isBefore(early)) return true;
  for (int place = 0; place < m_sets.Count(); ++place) {
    if (IsSame(place, m_restPlace) && isBefore(m_sets.Section(place))) return true;
  }
  return false;
}

/// What joins has to hang on the island by one section: there the search for islands enters it, wherever it begins.
bool IslandSearch::PlanDeadJoining() {
  const auto isOutside = [&](int bs) { return m_sections.IsIsolated(bs) || m_sections[bs].island != m_turnIsland; };
  if (!m_part.Gather(m_sets.Section(m_turnPlace), isOutside)) return false;
  int entry = -1;
  for (const int bs : m_part.Part()) {
    Neighbours found;
    if (!ReadNeighbours(m_network, m_sections, m_entries, bs, &found)) return false;
    const bool leadsIn =
        std::any_of(found.sections, found.sections + found.count, [&](int n) { return !isOutside(n); });
    if (!leadsIn) continue;
    if (entry != -1) return false;
    entry = bs;
  }
  for (int place = 0; place < m_touched; ++place) {
    const int bs = m_sets.Section(place);
    const bool joins = IsSame(place, m_turnPlace) && !m_sections.IsIsolated(bs) && m_sections[bs].island == ISLAND_DEAD;
    if (joins && !m_part.Has(bs)) return false;
  }
  m_partIsland = m_turnIsland;
  return entry != -1 && m_part.Gather(entry, isOutside);
}

/// The later number goes, which has to be the last one.
bool IslandSearch::PlanIslandsJoining() {
  if (!IsLastIsland()) return false;
  m_partIsland = At(m_islands, m_sets.SetOf(m_turnPlace));
  const auto isInIsland = [&](int bs) { return m_sections.IsIsolated(bs) || m_sections[bs].island == m_turnIsland; };
  bool isFirst = true;
  for (const Bearer& bearer : m_bearers) {
    if (bearer.island != m_turnIsland) continue;
    const int bs = m_sets.Section(bearer.place);
    if (!(isFirst ? m_part.Gather(bs, isInIsland) : m_part.Add(bs, isInIsland))) return false;
    isFirst = false;
  }
  m_memory->unitAt.pop_back();
  m_memory->firstAt.pop_back();
  --m_count;
  return true;
}

/// The new island is the last one.
bool IslandSearch::PlanWaking() {
  while (Advance(m_turnPlace)) {
  }
  Firsts firsts;
  if (m_damaged || !FindFirst(m_turnPlace, ISLAND_DEAD, &firsts) || !GatherWhole(firsts.ofAll, m_count)) return false;
  m_memory->unitAt.push_back(m_sets.UnitOf(m_sets.SetOf(m_turnPlace)));
  m_memory->firstAt.push_back(firsts.ofAll);
  At(m_islands, m_sets.SetOf(m_turnPlace)) = m_count++;
  return true;
}

/// The number goes, which has to be the last one.
bool IslandSearch::PlanDying() {
  Firsts firsts;
  if (!IsLastIsland() || !FindFirst(m_turnPlace, m_turnIsland, &firsts)) return false;
  if (!GatherWhole(firsts.ofIsland, ISLAND_DEAD)) return false;
  At(m_islands, m_sets.SetOf(m_turnPlace)) = ISLAND_DEAD;
  m_memory->unitAt.pop_back();
  m_memory->firstAt.pop_back();
  --m_count;
  return true;
}

/// Only the part can be logged: it goes first. Of what is dead several sets can turn out to be in it.
bool IslandSearch::Write() {
  const int dead = m_sections.Dead();
  if (m_sections[dead].island != ISLAND_DEAD) m_sections.Edit(dead).island = ISLAND_DEAD;
  for (const int bs : m_part.Part()) {
    if (!m_islandWriter.Put(bs, m_partIsland)) return false;
  }
  for (int place = 0; place < m_touched; ++place) {
    const int bs = m_sets.Section(place);
    if (!m_part.Has(bs) && !m_islandWriter.Put(bs, At(m_islands, m_sets.SetOf(place)))) return false;
  }
  const bool filled = m_islandWriter.FillRows(m_count);
  m_memory->rows = m_network.Table<ISLAND>().ChangeCount();
  return filled;
}

}  // namespace dtsdb::internal
