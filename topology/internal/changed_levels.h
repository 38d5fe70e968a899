/// \file
/// Which voltage levels the waiting changes reach.
#pragma once

#include "topology/component_types.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Follows the waiting changes up.
///
/// Reads TPTRACE, the components and their relations. Writes the levels of the run, TPL and TPTRACE, which is empty
/// afterwards.
class ChangedLevels {
 public:
  explicit ChangedLevels(const State& state) : m_network(state.network), m_levels(state.levels), m_log(state.Log()) {}

  /// Makes the voltage levels that the waiting changes reach those of the run, logs the changes, and takes them from
  /// TPTRACE. A failure leaves them there and has written its line through qDebug.
  bool Find() const;

 private:
  template <class Component>
  bool Follow(const ComponentType<Component>& type, int number) const;
  template <class Component>
  bool Log(const ComponentType<Component>& type, int number) const;

  Network m_network;
  Levels m_levels;
  ChangeLog m_log;
};

}  // namespace dtsdb::internal
