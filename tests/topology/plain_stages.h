/// \file
/// The stages of an incremental run that go by a record of changes, in their plain form over whole tables: the judge of
/// the forms that the library uses.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::test {

/// An incremental run that looks at everything each time. The stages that only look at the levels of the run are those
/// of the library.
class PlainRun {
 public:
  explicit PlainRun(const internal::State& state) : m_state(state) {}

  /// As TP::tpChange.
  bool Run() const;
  /// As TP::tpAllnew, along the chains of relation rows.
  bool RunAnew() const;

 private:
  bool RunStages() const;
  bool SortIslands(bool* changed) const;
  bool UpdateStatus() const;
  void NameSections() const;
  void NameByEquipment(BS& section) const;
  int UsedCount() const;
  bool Store() const;

  const internal::State& m_state;
};

}  // namespace dtsdb::test
