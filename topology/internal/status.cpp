#include "topology/internal/status.h"

#include <algorithm>

#include "include/chain.h"
#include "topology/internal/failure.h"

namespace dtsdb::internal {

/// What the status goes by, read where it stands.
class EquipmentStatus::Standing {
 public:
  Standing(const Network& network, const Sections& sections) : m_network(network), m_sections(sections) {}
  int SectionOf(int nd) const { return m_network.Node(nd).ibs; }
  bool IsDead(int bs) const { return m_sections.IsDead(bs); }
  bool IsIsolated(int bs) const { return m_sections.IsIsolated(bs); }
  /// The level of a section; that of none for the head, and for what is no section.
  int LevelOf(int bs) const { return bs != m_sections.Dead() && m_sections.Has(bs) ? m_sections[bs].ikv : kNoLevel; }

 protected:
  const Network& m_network;
  const Sections& m_sections;
};

/// The same with the sections side by side, for a pass over everything: it comes back to each several times, and their
/// records are wide.
class EquipmentStatus::Copied : public Standing {
 public:
  Copied(const Network& network, const Sections& sections) : Standing(network, sections) {
    const int reached = sections.List().ReachedCount();
    m_states.reserve(static_cast<std::size_t>(reached));
    for (int bs = 0; bs < reached; ++bs) {
      m_states.push_back({Standing::LevelOf(bs), sections.IsDead(bs), sections.IsIsolated(bs)});
    }
  }
  bool IsDead(int bs) const { return Has(bs) ? At(bs).dead : Standing::IsDead(bs); }
  bool IsIsolated(int bs) const { return Has(bs) ? At(bs).isolated : Standing::IsIsolated(bs); }
  int LevelOf(int bs) const { return Has(bs) ? At(bs).level : Standing::LevelOf(bs); }

 private:
  struct SectionState {
    int level;
    bool dead;
    bool isolated;
  };
  bool Has(int bs) const { return bs >= 0 && static_cast<std::size_t>(bs) < m_states.size(); }
  const SectionState& At(int bs) const { return m_states[static_cast<std::size_t>(bs)]; }

  std::vector<SectionState> m_states;  // by section
};

namespace {

void PutBit(u32& word, u32 bit, bool on) { Put(word, on ? word | bit : word & ~bit); }

template <class View, class Device>
void UpdateShunt(const View& view, Device& device) {
  PutBit(device.tp_status, SHUNT_DEAD, view.IsDead(device.ibs));
}

template <class View, class Branch>
void UpdateBranch(const View& view, Branch& branch) {
  PutBit(branch.tp_status, TP_BOTH_DEAD, view.IsDead(branch.ibs) && view.IsDead(branch.izbs));
}

template <class View>
void UpdateBreaker(const View& view, CB& cb) {
  Put(cb.ibs, view.SectionOf(cb.ind));
  Put(cb.izbs, view.SectionOf(cb.iznd));
  PutBit(cb.tp_status, TP_END1_ISOLATED, view.IsIsolated(cb.ibs));
  PutBit(cb.tp_status, TP_END2_ISOLATED, view.IsIsolated(cb.izbs));
  PutBit(cb.tp_status, TP_BOTH_DEAD, view.IsDead(cb.ibs) && view.IsDead(cb.izbs));
}

}  // namespace

/// Visits all records of some tables, one table after the other.
template <class... Records, class Visit>
void EquipmentStatus::ForAll(Visit visit) const {
  const auto visitAll = [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
  };
  (visitAll(m_network.Table<Records>()), ...);
}

/// The bus with the logical number `rank`.
template <class View>
bool EquipmentStatus::UpdateBus(const View& view, int rank) const {
  auto& buses = m_network.Table<BUS>();
  BUS& bus = buses[rank];
  const int old = bus.ibs;
  Put(bus.ibs, view.SectionOf(bus.ind));
  PutBit(bus.tp_status, SHUNT_DEAD, view.IsDead(bus.ibs));
  if (!m_log.IsOn() || bus.ibs == old) return true;
  return m_log.Record({KIND_BUS, buses.LgToPh(rank), bus.tp_status, old, bus.ibs, "BS"});
}

bool EquipmentStatus::Update() const {
  const Copied view(m_network, m_sections);
  for (int i = 0; i < m_network.Table<BUS>().GetCount(); ++i) {
    if (!UpdateBus(view, i)) return FailedIn("tpUpdateStatus");
  }
  ForAll<UN, LD, CP>([&](auto& device) { UpdateShunt(view, device); });
  m_network.ForEachBranch<LN, XF, DLN, ZBR>([&](auto& branch) { UpdateBranch(view, branch); });
  ForAll<CB>([&](CB& cb) { UpdateBreaker(view, cb); });
  FindAllAstray(view);
  return true;
}

/// The order in which levels are visited leaves no trace: only buses are logged, in the order of their table.
bool EquipmentStatus::UpdateChanged() const {
  CollectLevels();
  const Standing view(m_network, m_sections);
  for (const int rank : m_changes->BusesOfLevels(m_network)) {
    if (!UpdateBus(view, rank)) return FailedIn("tpUpdateStatus");
  }
  m_changes->astray.clear();
  for (const int kv : m_changes->levels.Numbers()) {
    if (UpdateLevel(view, kv)) m_changes->astray.push_back(kv);
  }
  return true;
}

/// The levels with anything that stands on a section which has changed: those of the run, those of the sections before
/// and after, and those where something names a section of another level.
void EquipmentStatus::CollectLevels() const {
  NumberSet& levels = m_changes->levels;
  for (int k = 0; k < m_levels.ChangedCount(); ++k) levels.Add(m_levels.Changed(k));
  for (const int bs : m_changes->sections.Numbers()) levels.Add(m_sections[bs].ikv);
  for (const int kv : m_changes->astray) {
    levels.Add(kv);
    m_network.ForEachNode(kv, [&](int nd) {
      const int bs = m_network.Node(nd).ibs;
      if (m_sections.Has(bs)) levels.Add(m_sections[bs].ikv);  // whose name may be that of a bus of either level
      return true;
    });
  }
}

/// True when `bs`, which something on level `kv` names, is a section and not one of that level.
template <class View>
bool EquipmentStatus::IsAstray(const View& view, int kv, int bs) {
  const int level = view.LevelOf(bs);
  return level != kNoLevel && level != kv;
}

/// Updates what stands on the nodes of a level, but its buses. True when something there names a section of another
/// level, or one that is out of use.
bool EquipmentStatus::UpdateLevel(const Standing& view, int kv) const {
  bool astray = false;
  m_network.ForEachShunt(kv, [&](auto& device, int) {
    UpdateShunt(view, device);
    astray = astray || IsAstray(view, kv, device.ibs);
    return true;
  });
  m_network.ForEachNode(kv, [&](int nd) {
    astray = astray || IsAstray(view, kv, m_network.Node(nd).ibs);
    return m_network.ForEachEnd<LN, XF, DLN, ZBR>(nd, [&](auto& branch, int, auto&, int) {
      UpdateBranch(view, branch);
      astray = astray || IsAstray(view, kv, nd != branch.ind ? branch.izbs : branch.ibs);
      return true;
    });
  });
  for (const R_KV_CB& row : Chain(m_network.Table<R_KV_CB>(), m_network.Level(kv).r_kv_cb)) {
    UpdateBreaker(view, m_network.Table<CB>().GetPh(row.icb));
  }
  return astray;
}

/// Notes the levels where something is astray.
void EquipmentStatus::FindAllAstray(const Copied& view) const {
  if (m_changes == nullptr) return;
  std::vector<int>& found = m_changes->astray;
  found.clear();
  const auto check = [&](int nd, int bs) {
    const int kv = m_network.LevelOfNode(nd);
    if (kv != -1 && IsAstray(view, kv, bs)) found.push_back(kv);
  };
  auto& nodes = m_network.Table<ND>();
  for (int i = 0; i < nodes.GetCount(); ++i) check(nodes.LgToPh(i), view.SectionOf(nodes.LgToPh(i)));
  ForAll<UN, LD, CP>([&](const auto& device) { check(device.ind, device.ibs); });
  m_network.ForEachBranch<LN, XF, DLN, ZBR>([&](const auto& branch) {
    check(branch.ind, branch.ibs);
    check(branch.iznd, branch.izbs);
  });
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

}  // namespace dtsdb::internal
