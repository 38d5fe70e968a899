#include "tests/topology/plain_stages.h"

#include <QDateTime>
#include <algorithm>
#include <vector>

#include "topology/internal/changed_levels.h"
#include "topology/internal/component_change.h"
#include "topology/internal/failure.h"
#include "topology/internal/full_run.h"
#include "topology/internal/neighbours.h"
#include "topology/internal/node_pass.h"
#include "topology/internal/section_list.h"

namespace dtsdb::test {

using internal::FailedIn;
using internal::Network;
using internal::SetBit;

bool PlainRun::Run() const {
  const Network& network = m_state.network;
  network.Table<TPL>().Clear();
  const int waiting = network.Table<TPTRACE>().GetCount();
  if (m_state.levels.IsEmpty() || waiting >= 50) return RunAnew() || FailedIn("tpChange");
  if (waiting == 0) return true;
  if (!internal::ChangedLevels(m_state).Find()) return FailedIn("tpChange");
  m_state.allnew = false;
  if (!RunStages()) return FailedIn("tpChange");
  network.Global().u1 = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  return true;
}

bool PlainRun::RunAnew() const { return internal::FullRun(m_state).RunAlongChains(); }

bool PlainRun::RunStages() const {
  if (!internal::NodePass(m_state).Sort(false)) return false;
  bool islandChanged = false;
  if (!internal::ComponentChange(m_state).FollowAll(&islandChanged)) return false;
  if (!internal::SectionList(m_state).Build(false)) return false;
  if (islandChanged && !SortIslands(&islandChanged)) return false;
  m_state.Sections().GiveBackHeld();
  if (!UpdateStatus()) return FailedIn("tpUpdateStatus");
  NameSections();
  return Store();
}

namespace {

/// Takes the sections of islands out of a copy of the section ring.
struct RingCopy {
  std::vector<int> next;
  std::vector<int> prev;

  /// Copies the links of the sections. A section that its neighbours don't refer back to counts as taken.
  explicit RingCopy(const internal::Sections& sections) {
    for (int n = 0; n < sections.Size(); ++n) {
      const int behind = sections[n].next;
      const int before = sections[n].prev;
      const bool linked =
          sections.Has(behind) && sections.Has(before) && sections[behind].prev == n && sections[before].next == n;
      next.push_back(behind);
      prev.push_back(linked ? before : -1);
    }
  }
  bool IsFree(int bs) const { return bs >= 0 && bs < static_cast<int>(prev.size()) && prev.at(At(bs)) >= 0; }
  void TakeOut(int bs) {
    next[At(prev[At(bs)])] = next[At(bs)];
    if (prev[At(next[At(bs)])] != -1) prev[At(next[At(bs)])] = prev[At(bs)];
    prev[At(bs)] = -1;
  }
  static std::size_t At(int bs) { return static_cast<std::size_t>(bs); }
};

}  // namespace

bool PlainRun::SortIslands(bool* changed) const {
  const Network& network = m_state.network;
  const internal::Sections sections = m_state.Sections();
  const internal::ChangeLog log = m_state.Log();
  BS* const bs = m_state.bs;
  auto& islands = network.Table<ISLAND>();
  *changed = false;
  islands.Clear();
  const int dead = sections.Dead();
  bs[dead].island = ISLAND_DEAD;
  RingCopy ring(sections);
  const auto next = [&](int n) -> int& { return ring.next[RingCopy::At(n)]; };
  const bool whole = ring.IsFree(dead) && sections.Walk(next(dead), dead, [&](int n) { return ring.IsFree(n); });
  if (!whole) return FailedIn("tpBsSort");
  const auto seedOf = [&](auto accepts) {
    for (int n = next(dead); n != dead; n = next(n)) {
      if (!(bs[n].status & BS_ISOLATED) && accepts(n)) return n;
    }
    return -1;
  };
  const auto logSwitch = [&](int n, const char* word) {
    if (!log.IsOn() || (bs[n].status & BS_ISOLATED)) return true;
    if (!log.Record({KIND_BS, n, bs[n].status, n, n, word})) return false;
    bool stands = !network.HasLevel(bs[n].ikv);
    for (int k = 0; k < m_state.levels.ChangedCount(); ++k) stands = stands || m_state.levels.Changed(k) == bs[n].ikv;
    if (!stands) m_state.levels.AddChanged(bs[n].ikv);
    return true;
  };

  while (next(dead) != dead) {
    const int due = islands.GetCount();
    int seed = seedOf([&](int n) { return bs[n].island == due; });
    if (seed == -1) seed = seedOf([](int) { return true; });
    if (seed == -1) return FailedIn("tpBsSort", "infinite loop-failed");
    ring.TakeOut(seed);
    next(seed) = seed;
    std::vector<int> members = {seed};
    int un = -1;
    int visited = seed;
    do {
      internal::Neighbours found;
      if (!internal::FindNeighbours(network, sections, m_state.Entries(), visited, &found)) {
        return FailedIn("tpBsNeighbor");
      }
      if (found.unit >= 0) un = found.unit;
      for (int i = 0; i < found.count; ++i) {
        const int w = found.sections[i];
        if (!ring.IsFree(w)) continue;
        ring.TakeOut(w);
        next(w) = next(visited);
        next(visited) = w;
      }
      visited = next(visited);
    } while (visited != seed);

    int number = ISLAND_DEAD;
    if (un >= 0) {
      ISLAND record;
      record.id = islands.GetCount();
      record.ref_ibs = record.ref_un = -1;
      record.ref_id = record.name = QStringLiteral("");
      number = islands.Add(record);
      if (number == -1) return FailedIn("tpBsSort");
    }
    int n = seed;
    do {
      const int old = bs[n].island;
      if (un >= 0) {
        if (old >= 0 && old != number) *changed = true;
        if (old == ISLAND_DEAD && !logSwitch(n, "BSLIVE")) return FailedIn("tpBsSort");
        bs[n].island = number;
        bs[n].status &= ~BS_DEAD;
      } else if (old != ISLAND_DEAD) {
        if (old >= 0 && !logSwitch(n, "BSDEAD")) return FailedIn("tpBsSort");
        bs[n].island = ISLAND_DEAD;
        bs[n].status |= BS_DEAD;
      }
      n = next(n);
    } while (n != seed);
  }
  return true;
}

bool PlainRun::UpdateStatus() const {
  const Network& network = m_state.network;
  const internal::Sections sections = m_state.Sections();
  const internal::ChangeLog log = m_state.Log();
  auto& buses = network.Table<BUS>();
  for (int i = 0; i < buses.GetCount(); ++i) {
    BUS& bus = buses[i];
    const int old = bus.ibs;
    bus.ibs = network.Node(bus.ind).ibs;
    SetBit(bus.tp_status, SHUNT_DEAD, sections.IsDead(bus.ibs));
    if (!log.IsOn() || bus.ibs == old) continue;
    if (!log.Record({KIND_BUS, buses.LgToPh(i), bus.tp_status, old, bus.ibs, "BS"})) return false;
  }
  const auto devices = [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      SetBit(table[i].tp_status, SHUNT_DEAD, sections.IsDead(table[i].ibs));
    }
  };
  devices(network.Table<UN>());
  devices(network.Table<LD>());
  devices(network.Table<CP>());
  const auto branches = [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      SetBit(table[i].tp_status, TP_BOTH_DEAD, sections.IsDead(table[i].ibs) && sections.IsDead(table[i].izbs));
    }
  };
  branches(network.Table<LN>());
  branches(network.Table<XF>());
  branches(network.Table<DLN>());
  branches(network.Table<ZBR>());
  auto& breakers = network.Table<CB>();
  for (int i = 0; i < breakers.GetCount(); ++i) {
    CB& cb = breakers[i];
    cb.ibs = network.Node(cb.ind).ibs;
    cb.izbs = network.Node(cb.iznd).ibs;
    SetBit(cb.tp_status, TP_END1_ISOLATED, sections.IsIsolated(cb.ibs));
    SetBit(cb.tp_status, TP_END2_ISOLATED, sections.IsIsolated(cb.izbs));
    SetBit(cb.tp_status, TP_BOTH_DEAD, sections.IsDead(cb.ibs) && sections.IsDead(cb.izbs));
  }
  return true;
}

void PlainRun::NameSections() const {
  auto& buses = m_state.network.Table<BUS>();
  for (int i = 0; i < buses.GetCount(); ++i) {
    if (buses[i].ibs > 0) m_state.bs[buses[i].ibs].name = buses[i].id;
  }
  for (int n = 0; n < m_state.Sections().List().ReachedCount(); ++n) {
    if (m_state.bs[n].name.isEmpty() && m_state.bs[n].ibsl != -1) NameByEquipment(m_state.bs[n]);
  }
}

void PlainRun::NameByEquipment(BS& section) const {
  const Network& network = m_state.network;
  const internal::Entries entries = m_state.Entries();
  const QString* device = nullptr;
  bool ends = false;
  const auto noteDevice = [&](const QString& id) {
    if (device == nullptr) device = &id;
  };
  const bool around = entries.Walk(entries[section.ibsl].next, section.ibsl, [&](int n) {
    const BSL& entry = entries[n];
    ends = entry.kind == KIND_BS;
    if (entry.kind == KIND_LN2) section.name = network.Table<LN2>().GetPh(entry.ref).id;
    if (entry.kind == KIND_XF2) section.name = network.Table<XF2>().GetPh(entry.ref).id;
    if (entry.kind == KIND_LN2 || entry.kind == KIND_XF2) {
      device = nullptr;
      ends = true;
    }
    if (entry.kind == KIND_UN) noteDevice(network.Table<UN>().GetPh(entry.ref).id);
    if (entry.kind == KIND_LD) noteDevice(network.Table<LD>().GetPh(entry.ref).id);
    if (entry.kind == KIND_CP) noteDevice(network.Table<CP>().GetPh(entry.ref).id);
    return !ends;
  });
  if ((ends || around) && device != nullptr) section.name = *device;
}

int PlainRun::UsedCount() const {
  const internal::Sections sections = m_state.Sections();
  const int dead = sections.Dead();
  int highest = 0;
  const bool whole = sections.Walk(sections[dead].next, dead, [&](int n) {
    highest = std::max(highest, n);
    return true;
  });
  if (!whole) return -1;
  int firstFree = sections.Size();
  sections.Walk(m_state.network.Global().bs_free, -1, [&](int n) {
    if (n > highest) firstFree = n;
    return n <= highest;
  });
  return std::min(firstFree + 2, sections.Size());
}

bool PlainRun::Store() const {
  const int count = UsedCount();
  return count >= 0 && m_state.network.Table<BS>().SetData(m_state.Sections().List().Data(count), count, true) &&
         m_state.network.Table<BSL>().SetData(m_state.Entries().List().Data(m_state.Entries().Size()),
                                              m_state.Entries().Size(), true);
}

}  // namespace dtsdb::test
