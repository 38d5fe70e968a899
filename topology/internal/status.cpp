#include "topology/internal/status.h"

#include <algorithm>

#include "include/chain.h"
#include "topology/internal/failure.h"

namespace dtsdb::internal {

/// Visits all records of some tables, one table after the other.
template <class... Records, class Visit>
void EquipmentStatus::ForAll(Visit visit) const {
  const auto visitAll = [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
  };
  (visitAll(m_network.Table<Records>()), ...);
}

bool EquipmentStatus::Update() const {
  for (int i = 0; i < m_network.Table<BUS>().GetCount(); ++i) {
    if (!UpdateBus(i)) return FailedIn("tpUpdateStatus");
  }
  ForAll<UN, LD, CP>([&](auto& device) { UpdateShunt(device); });
  ForAll<LN, XF, DLN, ZBR>([&](auto& branch) { UpdateBranch(branch); });
  ForAll<CB>([&](CB& cb) { UpdateBreaker(cb); });
  FindAllAstray();
  return true;
}

/// The order in which levels are visited leaves no trace: only buses are logged, in the order of their table.
bool EquipmentStatus::UpdateChanged() const {
  CollectLevels();
  for (const int rank : m_changes->BusesOfLevels(m_network)) {
    if (!UpdateBus(rank)) return FailedIn("tpUpdateStatus");
  }
  m_changes->astray.clear();
  for (const int kv : m_changes->levels.Numbers()) {
    if (UpdateLevel(kv)) m_changes->astray.push_back(kv);
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

/// Updates what stands on the nodes of a level, but its buses. True when something there names a section of another
/// level, or one that is out of use.
bool EquipmentStatus::UpdateLevel(int kv) const {
  bool astray = false;
  m_network.ForEachShunt(kv, [&](auto& device, int) {
    UpdateShunt(device);
    astray = astray || IsAstray(kv, device.ibs);
    return true;
  });
  m_network.ForEachNode(kv, [&](int nd) {
    astray = astray || IsAstray(kv, m_network.Node(nd).ibs);
    return m_network.ForEachEnd<LN, XF, DLN, ZBR>(nd, [&](auto& branch, int, auto&, int) {
      UpdateBranch(branch);
      astray = astray || IsAstray(kv, nd != branch.ind ? branch.izbs : branch.ibs);
      return true;
    });
  });
  for (const R_KV_CB& row : Chain(m_network.Table<R_KV_CB>(), m_network.Level(kv).r_kv_cb)) {
    UpdateBreaker(m_network.Table<CB>().GetPh(row.icb));
  }
  return astray;
}

/// True when `bs`, which something on level `kv` names, is no section of that level.
bool EquipmentStatus::IsAstray(int kv, int bs) const {
  return bs != m_sections.Dead() && m_sections.Has(bs) && m_sections[bs].ikv != kv;
}

/// Notes the levels where something is astray.
void EquipmentStatus::FindAllAstray() const {
  if (m_changes == nullptr) return;
  std::vector<int>& found = m_changes->astray;
  found.clear();
  const auto check = [&](int nd, int bs) {
    const int kv = m_network.LevelOfNode(nd);
    if (kv != -1 && IsAstray(kv, bs)) found.push_back(kv);
  };
  auto& nodes = m_network.Table<ND>();
  for (int i = 0; i < nodes.GetCount(); ++i) check(nodes.LgToPh(i), nodes[i].ibs);
  ForAll<UN, LD, CP>([&](const auto& device) { check(device.ind, device.ibs); });
  ForAll<LN, XF, DLN, ZBR>([&](const auto& branch) {
    check(branch.ind, branch.ibs);
    check(branch.iznd, branch.izbs);
  });
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
}

/// The bus with the logical number `rank`.
bool EquipmentStatus::UpdateBus(int rank) const {
  auto& buses = m_network.Table<BUS>();
  BUS& bus = buses[rank];
  const int old = bus.ibs;
  bus.ibs = m_network.Node(bus.ind).ibs;
  SetBit(bus.tp_status, SHUNT_DEAD, m_sections.IsDead(bus.ibs));
  if (!m_log.IsOn() || bus.ibs == old) return true;
  return m_log.Record({KIND_BUS, buses.LgToPh(rank), bus.tp_status, old, bus.ibs, "BS"});
}

template <class Device>
void EquipmentStatus::UpdateShunt(Device& device) const {
  SetBit(device.tp_status, SHUNT_DEAD, m_sections.IsDead(device.ibs));
}

template <class Branch>
void EquipmentStatus::UpdateBranch(Branch& branch) const {
  SetBit(branch.tp_status, TP_BOTH_DEAD, m_sections.IsDead(branch.ibs) && m_sections.IsDead(branch.izbs));
}

void EquipmentStatus::UpdateBreaker(CB& cb) const {
  cb.ibs = m_network.Node(cb.ind).ibs;
  cb.izbs = m_network.Node(cb.iznd).ibs;
  SetBit(cb.tp_status, TP_END1_ISOLATED, m_sections.IsIsolated(cb.ibs));
  SetBit(cb.tp_status, TP_END2_ISOLATED, m_sections.IsIsolated(cb.izbs));
  SetBit(cb.tp_status, TP_BOTH_DEAD, m_sections.IsDead(cb.ibs) && m_sections.IsDead(cb.izbs));
}

}  // namespace dtsdb::internal
