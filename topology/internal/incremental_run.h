/// \file
/// The incremental run.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Brings the topology up to date after the changes that wait in TPTRACE: the stages on the voltage levels that these
/// reach.
///
/// Reads TPTRACE and GLOBAL `valid`. Writes GLOBAL `u1`, TPL and CHND, and everything that the stages write.
class IncrementalRun {
 public:
  explicit IncrementalRun(const State& state) : m_state(state) {}

  /// True when the run went through, and when there was nothing to do. Gives way to a full run when there was none yet
  /// or too many changes wait. A failure has written its line through qDebug.
  bool Run() const;

 private:
  bool RunStages() const;

  const State& m_state;
};

}  // namespace dtsdb::internal
