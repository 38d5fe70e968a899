/// \file
/// The names of the sections, and how a run's work arrays become the tables BS and BSL.
#pragma once

#include <vector>

#include "topology/internal/state.h"

namespace dtsdb::internal {

/// Names the sections and stores them.
///
/// Reads the sections, the entries, the buses and the identities of what hangs on the sections. Writes BS `name` in the
/// work arrays and the tables BS and BSL, and closes the record of changes.
class SectionStore {
 public:
  explicit SectionStore(const State& state)
      : m_network(state.network),
        m_sections(state.Sections()),
        m_entries(state.Entries()),
        m_changes(state.arrays ? &state.arrays->changes : nullptr) {}

  /// Names the sections and stores both work arrays, of BS without most of the never used entries at its end. False
  /// when the section ring is damaged or a table takes no more rows.
  bool NameAndStore() const;
  /// The same, for the sections and entries alone that the record of changes names, into tables that are as the last
  /// call left them.
  bool NameAndStoreChanged() const;
  /// Names each section after the last bus in it, else after what hangs on it.
  void Name() const;

 private:
  void NameChanged() const;
  void NameByBus(const BUS& bus) const;
  void NameIfUnnamed(int bs, std::vector<int>* unnamed) const;
  const QString* NameOfEquipment(const BS& section) const;
  bool FindHighest() const;
  void FollowHighest() const;
  int UsedCount() const;

  Network m_network;
  Sections m_sections;
  Entries m_entries;
  Changes* m_changes;
};

}  // namespace dtsdb::internal
