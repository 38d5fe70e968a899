/// \file
/// The full run.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Works out everything from nothing: the stages one after the other on all voltage levels.
///
/// Reads GLOBAL `valid`. Makes the work arrays and both lists of levels anew; writes GLOBAL `time` and the heads of the
/// lists, KV `ibsl`, the sections of the branches, and everything that the stages write.
class FullRun {
 public:
  explicit FullRun(const State& state) : m_state(state) {}

  /// True when the run went through, and when there was nothing to do: on a model that isn't validated with success one
  /// line is written on the standard output. A failure has written its line through qDebug.
  bool Run() const;
  /// The same along the chains of relation rows: how Run goes over a damaged model.
  bool RunAlongChains() const;

 private:
  bool IsValid() const;
  bool WorkOut() const;
  void ResetSections() const;
  void ResetEntries() const;
  bool BuildSkeleton() const;
  void ListLevel(int kv, int* cursor) const;
  bool RunStages() const;

  State m_state;
};

}  // namespace dtsdb::internal
