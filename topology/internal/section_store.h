/// \file
/// The names of the sections, and how a run's work arrays become the tables BS and BSL.
#pragma once

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Names the sections and stores them.
///
/// Reads the sections, the entries, the buses and the identities of what hangs on the sections. Writes BS `name` in the
/// work arrays and the tables BS and BSL.
class SectionStore {
 public:
  explicit SectionStore(const State& state)
      : m_network(state.network), m_sections(state.Sections()), m_entries(state.Entries()) {}

  /// Names the sections and stores both work arrays, of BS without most of the never used entries at its end. False
  /// when the section ring is damaged or a table takes no more rows.
  bool NameAndStore() const;
  /// Names each section after the last bus in it, else after what hangs on it.
  void Name() const;

 private:
  void NameByEquipment(BS& section) const;
  int UsedCount() const;

  Network m_network;
  Sections m_sections;
  Entries m_entries;
};

}  // namespace dtsdb::internal
