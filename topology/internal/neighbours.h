/// \file
/// What hangs on a section.
#pragma once

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

}  // namespace dtsdb::internal
