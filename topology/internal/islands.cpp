#include "topology/internal/islands.h"

#include <optional>
#include <utility>

#include "topology/internal/failure.h"
#include "topology/internal/neighbours.h"

namespace dtsdb::internal {

bool Islands::Sort(bool* changed) {
  std::vector<int> unitAt;
  const bool done = SortAll(changed, &unitAt);
  if (m_memory == nullptr) return done;
  m_memory->state = done ? IslandMemory::State::kFound : IslandMemory::State::kUnknown;
  m_memory->unitAt = std::move(unitAt);
  m_memory->rows = m_network.Table<ISLAND>().ChangeCount();
  return done;
}

/// Collects in a ring all sections that branches in service join to `seed`, and notes one with a unit, -1 for none.
/// Loads and shunt devices alone make no island live. `find(bs, found)` is FindNeighbours.
template <class Find>
bool Islands::Gather(IslandRing& ring, int seed, Find find, int* unitAt) {
  ring.Begin(seed);
  int bs = seed;
  do {
    Neighbours found;
    if (!find(bs, &found)) return false;
    if (found.unit >= 0) *unitAt = bs;
    for (int i = 0; i < found.count; ++i) {
      if (ring.IsFree(found.sections[i])) ring.Join(found.sections[i], bs);
    }
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

/// Notes for each island a section with a unit in service.
bool Islands::SortAll(bool* changed, std::vector<int>* unitAt) {
  *changed = false;
  auto& islands = m_network.Table<ISLAND>();
  islands.Clear();
  const int dead = m_sections.Dead();
  if (m_sections[dead].island != ISLAND_DEAD) m_sections.Edit(dead).island = ISLAND_DEAD;
  IslandRing ring(m_sections.List(), dead);
  if (!ring.IsWhole()) return FailedIn("tpBsSort");
  std::optional<AllNeighbours> all;
  if (m_network.IsFlat()) all.emplace(m_network, m_sections, m_entries);
  const auto find = [&](int bs, Neighbours* found) {
    return all ? all->Find(bs, found) : FindNeighbours(m_network, m_sections, m_entries, bs, found);
  };

  while (!ring.IsEmpty()) {
    const int seed = ring.Seed(islands.GetCount());
    // Fragments are left that nothing leads to. Kept: K51.
    if (seed == -1) return FailedIn("tpBsSort", "infinite loop-failed");
    int unit = -1;
    if (!Gather(ring, seed, find, &unit)) return FailedIn("tpBsNeighbor");
    const bool done = unit != -1 ? MakeLive(ring, seed, changed) : MakeDead(ring, seed);
    if (!done) return FailedIn("tpBsSort");
    if (unit != -1) unitAt->push_back(unit);
  }
  return true;
}

/// Adds an island record. False when there is no room.
bool Islands::AddRow() {
  auto& islands = m_network.Table<ISLAND>();
  ISLAND record;
  record.id = islands.GetCount();
  record.ref_ibs = record.ref_un = -1;
  record.ref_id = record.name = QStringLiteral("");
  return islands.Add(record) != -1;
}

bool Islands::FillRows(int count) {
  m_network.Table<ISLAND>().Clear();
  for (int i = 0; i < count; ++i) {
    if (!AddRow()) return false;
  }
  return true;
}

/// Adds an island record and gives its number to the sections of the ring.
bool Islands::MakeLive(const IslandRing& ring, int seed, bool* changed) {
  const int number = m_network.Table<ISLAND>().GetCount();
  if (!AddRow()) return false;

  int bs = seed;
  do {
    const int old = m_sections[bs].island;
    if (old >= 0 && old != number) *changed = true;
    if (!Put(bs, number)) return false;
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

bool Islands::MakeDead(const IslandRing& ring, int seed) {
  int bs = seed;
  do {
    if (!Put(bs, ISLAND_DEAD)) return false;
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

bool Islands::Put(int bs, int island) {
  const int old = m_sections[bs].island;
  if (island != ISLAND_DEAD) {
    if (old == ISLAND_DEAD && !LogSwitch(bs, "BSLIVE")) return false;
    m_sections.MakeLive(bs, island);
    return true;
  }
  if (old >= 0 && !LogSwitch(bs, "BSDEAD")) return false;
  if (old != ISLAND_DEAD) m_sections.MakeDead(bs);
  return true;
}

/// Logs that a section has changed between live and dead, and draws its voltage level into the run. Neither a full run
/// nor a fragment does so.
bool Islands::LogSwitch(int bs, const char* word) {
  const BS& section = m_sections[bs];
  if (!m_log.IsOn() || (section.status & BS_ISOLATED)) return true;
  if (!m_log.Record({KIND_BS, bs, section.status, bs, bs, word})) return false;
  if (m_network.HasLevel(section.ikv)) m_levels.AddChangedOnce(section.ikv);
  return true;
}

}  // namespace dtsdb::internal
