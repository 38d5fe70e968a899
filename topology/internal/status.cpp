#include "topology/internal/status.h"

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool EquipmentStatus::Update() const {
  if (!UpdateBuses()) return FailedIn("tpUpdateStatus");
  UpdateShunts<UN>();
  UpdateShunts<LD>();
  UpdateShunts<CP>();
  UpdateBranches<LN>();
  UpdateBranches<XF>();
  UpdateBranches<DLN>();
  UpdateBranches<ZBR>();
  UpdateBreakers();
  return true;
}

bool EquipmentStatus::UpdateBuses() const {
  auto& buses = m_network.Table<BUS>();
  for (int i = 0; i < buses.GetCount(); ++i) {
    BUS& bus = buses[i];
    const int old = bus.ibs;
    bus.ibs = m_network.Node(bus.ind).ibs;
    SetBit(bus.tp_status, SHUNT_DEAD, m_sections.IsDead(bus.ibs));
    if (!m_log.IsOn() || bus.ibs == old) continue;
    if (!m_log.Record({KIND_BUS, buses.LgToPh(i), bus.tp_status, old, bus.ibs, "BS"})) return false;
  }
  return true;
}

template <class Device>
void EquipmentStatus::UpdateShunts() const {
  auto& devices = m_network.Table<Device>();
  for (int i = 0; i < devices.GetCount(); ++i) {
    SetBit(devices[i].tp_status, SHUNT_DEAD, m_sections.IsDead(devices[i].ibs));
  }
}

template <class Branch>
void EquipmentStatus::UpdateBranches() const {
  auto& branches = m_network.Table<Branch>();
  for (int i = 0; i < branches.GetCount(); ++i) {
    Branch& branch = branches[i];
    SetBit(branch.tp_status, TP_BOTH_DEAD, m_sections.IsDead(branch.ibs) && m_sections.IsDead(branch.izbs));
  }
}

void EquipmentStatus::UpdateBreakers() const {
  auto& breakers = m_network.Table<CB>();
  for (int i = 0; i < breakers.GetCount(); ++i) {
    CB& cb = breakers[i];
    cb.ibs = m_network.Node(cb.ind).ibs;
    cb.izbs = m_network.Node(cb.iznd).ibs;
    SetBit(cb.tp_status, TP_END1_ISOLATED, m_sections.IsIsolated(cb.ibs));
    SetBit(cb.tp_status, TP_END2_ISOLATED, m_sections.IsIsolated(cb.izbs));
    SetBit(cb.tp_status, TP_BOTH_DEAD, m_sections.IsDead(cb.ibs) && m_sections.IsDead(cb.izbs));
  }
}

}  // namespace dtsdb::internal
