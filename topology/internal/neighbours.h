/// \file
/// What hangs on a section.
#pragma once

#include <vector>

#include "topology/internal/entries.h"
#include "topology/internal/sections.h"

namespace dtsdb::internal {

/// So many neighbours there is room for; a section that has as many fails. Kept: K38.
inline constexpr int kMaxNeighbours = 100;

/// What hangs on a section.
struct Neighbours {
  int unit = -1;                 ///< the last unit in service, -1 for none
  int devices = 0;               ///< loads and shunt devices in service; not counted on a FlatNetwork
  int count = 0;                 ///< sections that branches lead to, one for each branch
  int sections[kMaxNeighbours];  ///< these
};

/// Reads from the bus-section list what hangs on section `bs`. False, with a line through qDebug, when the list is
/// damaged or there are kMaxNeighbours sections or more.
///
/// Reads the sections, the entries, the devices' `status`, the end records and the branches' `ibs` and `izbs`; writes
/// nothing.
bool FindNeighbours(const Network& network, const Sections& sections, const Entries& entries, int bs,
                    Neighbours* found);
/// The same without the line.
bool ReadNeighbours(const Network& network, const Sections& sections, const Entries& entries, int bs,
                    Neighbours* found);

/// The same for all sections of the section ring, read at once in its order and held: a search for islands comes to
/// them in an order of its own, and what hangs on a section lies scattered.
class AllNeighbours {
 public:
  /// All four must outlive it and stay as they are. On a FlatNetwork.
  AllNeighbours(const Network& network, const Sections& sections, const Entries& entries);
  /// FindNeighbours, but for the devices.
  bool Find(int bs, Neighbours* found) const;

 private:
  struct Place {
    int first = 0;
    int count = kUnknown;
    int unit = -1;
  };
  static constexpr int kUnknown = -1;

  const Network& m_network;
  const Sections& m_sections;
  const Entries& m_entries;
  std::vector<Place> m_places;  // by section
  std::vector<int> m_found;
};

}  // namespace dtsdb::internal
