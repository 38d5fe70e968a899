/// \file
/// What the islands mean for the equipment.
#pragma once

#include <vector>

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Carries sections and islands into the status of buses, devices, branches and breakers.
///
/// Reads the sections and the nodes. Writes `ibs` of buses; `ibs` and `izbs` of breakers; `tp_status` of all six, but
/// of branches only the bit of both ends: those of the single ends are the work of BranchEnds and stay. In an
/// incremental run writes TPL. Notes in the record of changes which levels have to be looked at again.
class EquipmentStatus {
 public:
  explicit EquipmentStatus(const State& state)
      : m_network(state.network),
        m_levels(state.levels),
        m_sections(state.Sections()),
        m_log(state.Log()),
        m_changes(state.arrays ? &state.arrays->changes : nullptr) {}

  /// Goes over all equipment. False, with a line through qDebug, when the log has no room.
  bool Update() const;
  /// The same, for the equipment alone that the record of changes leads to.
  bool UpdateChanged() const;

 private:
  class Standing;
  class Copied;
  static constexpr int kNoLevel = -2;  // below what a section can have

  void CollectLevels() const;
  bool UpdateLevel(const Standing& view, int kv) const;
  template <class View>
  bool UpdateBus(const View& view, int rank) const;
  template <class... Records, class Visit>
  void ForAll(Visit visit) const;
  template <class View>
  static bool IsAstray(const View& view, int kv, int bs);
  void FindAllAstray(const Copied& view) const;

  Network m_network;
  Levels m_levels;
  Sections m_sections;
  ChangeLog m_log;
  Changes* m_changes;
};

}  // namespace dtsdb::internal
