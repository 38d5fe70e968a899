/// \file
/// Islands: which sections hang together, which of them are live, and what follows for the equipment.
#include "topology/island_ring.h"
#include "topology/walks.h"

namespace dtsdb {

IslandRing::IslandRing(const WorkList<BS>& sections, int head)
    : m_sections(sections),
      m_head(head),
      m_next(At(sections.Size())),
      m_prev(At(sections.Size())),
      m_firstOf(At(sections.Size()), -1),
      m_nextOf(At(sections.Size()), -1) {
  for (int n = 0; n < sections.Size(); ++n) {
    const int next = sections[n].next;
    const int prev = sections[n].prev;
    const bool linked =
        sections.Has(next) && sections.Has(prev) && sections[next].prev == n && sections[prev].next == n;
    m_next[At(n)] = next;
    m_prev[At(n)] = linked ? prev : -1;
  }
  m_whole = IsFree(head) && sections.Walk(Next(head), head, [&](int bs) {
    if (!(sections[bs].status & BS_ISOLATED)) m_inOrder.push_back(bs);
    return IsFree(bs);
  });
  for (auto bs = m_inOrder.rbegin(); bs != m_inOrder.rend(); ++bs) {
    const int island = sections[*bs].island;
    if (!sections.Has(island)) continue;
    m_nextOf[At(*bs)] = m_firstOf[At(island)];
    m_firstOf[At(island)] = *bs;
  }
}

int IslandRing::Seed(int number) {
  if (m_sections.Has(number)) {
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

/// Gives every section its island. The island that bore a number last time gets it again where it is found when that
/// number is due. `*changed` tells whether a section with an island number got another one.
int TP::tpBsSort(bool* changed) {
  *changed = false;
  m_islandTable->Clear();
  const int dead = Global().bs_dead;
  Section(dead).island = ISLAND_DEAD;
  IslandRing ring(Sections(), dead);
  if (!ring.IsWhole()) return FailedIn("tpBsSort");

  std::vector<bool> listedKvs(static_cast<std::size_t>(m_kvTable->GetSize()), false);
  for (int k = 0; !m_allnew && k < m_changedKvCount; ++k) {
    if (HasSlot(*m_kvTable, m_changedKvs[k])) listedKvs[static_cast<std::size_t>(m_changedKvs[k])] = true;
  }
  while (!ring.IsEmpty()) {
    const int seed = ring.Seed(m_islandTable->GetCount());
    if (seed == -1) return FailedIn("tpBsSort", "infinite loop-failed");  // fragments that nothing leads to
    int un = -1;
    if (!GatherIsland(ring, seed, &un)) return FailedIn("tpBsNeighbor");
    const bool done = un >= 0 ? MakeLive(ring, seed, listedKvs, changed) : MakeDead(ring, seed, listedKvs);
    if (!done) return FailedIn("tpBsSort");
  }
  return 1;
}

/// Collects in a ring all sections that branches in service join to `seed`, and notes a unit among them, -1 for none.
/// Loads and shunt devices alone make no island live.
bool TP::GatherIsland(IslandRing& ring, int seed, int* un) {
  ring.Begin(seed);
  int bs = seed;
  do {
    int unit = -1;
    int devices = 0;
    int count = 0;
    int neighbours[kMaxNeighbours];
    if (!tpBsNeighbor(bs, &unit, &devices, &count, neighbours)) return false;
    if (unit >= 0) *un = unit;
    for (int i = 0; i < count; ++i) {
      if (ring.IsFree(neighbours[i])) ring.Join(neighbours[i], bs);
    }
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

/// Adds an island record and gives its number to the sections of the ring.
bool TP::MakeLive(const IslandRing& ring, int seed, std::vector<bool>& listedKvs, bool* changed) {
  ISLAND record;
  record.id = m_islandTable->GetCount();
  record.ref_ibs = record.ref_un = -1;
  record.ref_id = record.name = QStringLiteral("");
  const int number = m_islandTable->Add(record);
  if (number == -1) return false;

  int bs = seed;
  do {
    BS& section = Section(bs);
    if (section.island != number) {
      if (section.island >= 0) *changed = true;
      if (section.island == ISLAND_DEAD && !LogSwitch(bs, "BSLIVE", listedKvs)) return false;
      section.island = number;
    }
    section.status &= ~BS_DEAD;
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

bool TP::MakeDead(const IslandRing& ring, int seed, std::vector<bool>& listedKvs) {
  int bs = seed;
  do {
    BS& section = Section(bs);
    if (section.island != ISLAND_DEAD) {
      if (section.island >= 0 && !LogSwitch(bs, "BSDEAD", listedKvs)) return false;
      section.status |= BS_DEAD;
      section.island = ISLAND_DEAD;
    }
    bs = ring.Next(bs);
  } while (bs != seed);
  return true;
}

/// Logs that a section has changed between live and dead, and draws its voltage level into the run. Neither a full run
/// nor a fragment does so.
bool TP::LogSwitch(int bs, const char* event, std::vector<bool>& listedKvs) {
  const BS& section = Section(bs);
  if (m_allnew || (section.status & BS_ISOLATED)) return true;
  if (!tpTpl(bs, KIND_BS, static_cast<int>(section.status), bs, bs, event)) return false;
  if (HasSlot(*m_kvTable, section.ikv) && !listedKvs[static_cast<std::size_t>(section.ikv)]) {
    listedKvs[static_cast<std::size_t>(section.ikv)] = true;
    AddChangedKv(section.ikv);
  }
  return true;
}

/// Carries the islands into the status of buses, devices, branches and breakers.
int TP::tpUpdateStatus() {
  if (!UpdateBuses()) return FailedIn("tpUpdateStatus");
  UpdateShunts<UN>();
  UpdateShunts<LD>();
  UpdateShunts<CP>();
  UpdateBranches<LN>();
  UpdateBranches<XF>();
  UpdateBranches<DLN>();
  UpdateBranches<ZBR>();
  UpdateBreakers();
  return 1;
}

bool TP::UpdateBuses() {
  for (int i = 0; i < m_busTable->GetCount(); ++i) {
    BUS& bus = (*m_busTable)[i];
    const int old = bus.ibs;
    bus.ibs = Node(bus.ind).ibs;
    SetBit(bus.tp_status, SHUNT_DEAD, IsDead(bus.ibs));
    if (m_allnew || bus.ibs == old) continue;
    if (!tpTpl(m_busTable->LgToPh(i), KIND_BUS, static_cast<int>(bus.tp_status), old, bus.ibs, "BS")) return false;
  }
  return true;
}

template <class Device>
void TP::UpdateShunts() {
  auto& table = Table<Device>();
  for (int i = 0; i < table.GetCount(); ++i) SetBit(table[i].tp_status, SHUNT_DEAD, IsDead(table[i].ibs));
}

/// The bits of the single ends are the work of tpBsBranch and stay.
template <class Branch>
void TP::UpdateBranches() {
  auto& table = Table<Branch>();
  for (int i = 0; i < table.GetCount(); ++i) {
    Branch& branch = table[i];
    SetBit(branch.tp_status, TP_BOTH_DEAD, IsDead(branch.ibs) && IsDead(branch.izbs));
  }
}

void TP::UpdateBreakers() {
  for (int i = 0; i < m_cbTable->GetCount(); ++i) {
    CB& cb = (*m_cbTable)[i];
    cb.ibs = Node(cb.ind).ibs;
    cb.izbs = Node(cb.iznd).ibs;
    SetBit(cb.tp_status, TP_END1_ISOLATED, IsIsolated(cb.ibs));
    SetBit(cb.tp_status, TP_END2_ISOLATED, IsIsolated(cb.izbs));
    SetBit(cb.tp_status, TP_BOTH_DEAD, IsDead(cb.ibs) && IsDead(cb.izbs));
  }
}

/// True when closed breakers other than `cb` join its two nodes within the voltage level. A breaker that carries a
/// zero-impedance branch counts as well. False for a breaker without a voltage level.
bool TP::tpFindPassPath(int cb) {
  const CB& breaker = m_cbTable->GetPh(cb);
  const int kv = KvThrough<R_KV_CB>(breaker.r_kv_cb);
  if (kv == -1) return false;
  const int from = breaker.ind;
  const int to = breaker.iznd;
  ForEachNode(kv, [&](int nd) {
    Node(nd).flags |= ND_MARK;
    return true;
  });
  Node(to).flags &= ~ND_MARK;
  std::vector<int> reached = {to};
  bool found = false;
  while (!reached.empty() && !found) {
    const int nd = reached.back();
    reached.pop_back();
    ForEachBreaker(nd, [&](const CB& other, int number) {
      if (number == cb || (other.flags & CB_OPEN)) return;
      const int next = OtherNode(other, nd);
      found = found || next == from;
      if (found || !(Node(next).flags & ND_MARK)) return;
      Node(next).flags &= ~ND_MARK;
      reached.push_back(next);
    });
  }
  return found;
}

}  // namespace dtsdb
