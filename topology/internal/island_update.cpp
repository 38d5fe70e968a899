#include "topology/internal/island_update.h"

#include "topology/internal/branch_link.h"
#include "topology/internal/island_search.h"

namespace dtsdb::internal {

IslandUpdate::IslandUpdate(const State& state) : m_state(state), m_changes(&state.arrays->changes) {}

void IslandUpdate::Prepare() const {
  IslandMemory& memory = m_changes->islands;
  const bool trusted = !m_changes->all && m_changes->astray.empty();
  if (trusted && memory.state == IslandMemory::State::kFollowable) return;
  const bool found = trusted && memory.state == IslandMemory::State::kFound;
  memory.state = IslandMemory::State::kUnknown;
  if (!found || !AreLinksRegular()) return;
  NoteFirstSections();
  Begin();
}

/// Notes the first section of each island in the section ring.
void IslandUpdate::NoteFirstSections() const {
  IslandMemory& memory = m_changes->islands;
  memory.firstAt.assign(memory.unitAt.size(), -1);
  const Sections sections = m_state.Sections();
  const int head = sections.Dead();
  sections.Walk(sections[head].next, head, [&](int bs) {
    const int island = sections[bs].island;
    if (island < 0 || sections.IsIsolated(bs) || static_cast<std::size_t>(island) >= memory.firstAt.size()) return true;
    int& first = memory.firstAt[static_cast<std::size_t>(island)];
    if (first == -1) first = bs;
    return true;
  });
}

/// Begins the record of what changes the islands.
void IslandUpdate::Begin() const {
  m_changes->islands.Follow(m_state.network.Table<KV>().GetSize(), m_state.Sections().Size());
}

/// Looks at all branches.
bool IslandUpdate::AreLinksRegular() const {
  const BranchLinks links(m_state);
  std::vector<int> holders(static_cast<std::size_t>(m_state.Sections().Size()), -1);
  const auto areRegular = [&]<class Branch>(tTable<Branch>& branches) {
    for (int i = 0; i < branches.GetCount(); ++i) {
      const BranchLink link = links.Of(branches[i]);
      if (!link.isRegular) return false;
      if (link.fragment == -1) continue;
      int& holder = holders[static_cast<std::size_t>(link.fragment)];
      if (holder != -1 && holder != link.holder) return false;
      holder = link.holder;
    }
    return true;
  };
  const Network& network = m_state.network;
  return areRegular(network.Table<LN>()) && areRegular(network.Table<XF>()) && areRegular(network.Table<DLN>()) &&
         areRegular(network.Table<ZBR>());
}

IslandOutcome IslandUpdate::Follow() const {
  IslandMemory& memory = m_changes->islands;
  NoteLevels();
  const bool canFollow = memory.state == IslandMemory::State::kFollowable && !m_changes->all &&
                         memory.rows == m_state.network.Table<ISLAND>().ChangeCount();
  if (!canFollow) return IslandOutcome::kLeft;
  return IslandSearch(m_state, &memory).Run();
}

void IslandUpdate::Close(bool found) const {
  IslandMemory& memory = m_changes->islands;
  if (!found) return NoteLevels();
  if (memory.state == IslandMemory::State::kFollowable) Begin();
}

/// Records the levels of the run. Where it has taken a section from another level, the list doesn't show what became of
/// it.
void IslandUpdate::NoteLevels() const {
  IslandMemory& memory = m_changes->islands;
  const Levels& levels = m_state.levels;
  for (int k = 0; k < levels.ChangedCount(); ++k) memory.levels.Add(levels.Changed(k));
  for (const int kv : m_changes->levels.Numbers()) {
    if (!levels.IsChanged(kv)) memory.state = IslandMemory::State::kUnknown;
  }
}

}  // namespace dtsdb::internal
