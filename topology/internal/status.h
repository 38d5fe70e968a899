/// \file
/// What the islands mean for the equipment.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Carries sections and islands into the status of buses, devices, branches and breakers.
///
/// Reads the sections and the nodes. Writes `ibs` of buses; `ibs` and `izbs` of breakers; `tp_status` of all six, but
/// of branches only the bit of both ends: those of the single ends are the work of BranchEnds and stay. In an
/// incremental run writes TPL.
class EquipmentStatus {
 public:
  explicit EquipmentStatus(const State& state)
      : m_network(state.network), m_sections(state.Sections()), m_log(state.Log()) {}

  /// False, with a line through qDebug, when the log has no room.
  bool Update() const;

 private:
  bool UpdateBuses() const;
  template <class Device>
  void UpdateShunts() const;
  template <class Branch>
  void UpdateBranches() const;
  void UpdateBreakers() const;

  Network m_network;
  Sections m_sections;
  ChangeLog m_log;
};

}  // namespace dtsdb::internal
