/// \file
/// What differs between two states of one grid.
#pragma once

#include <set>

#include "page/documents.h"
#include "page/internal/grid_state.h"

namespace dtsdb::page::internal {

/// The nodes and equipment whose state differs, and the stations that are dead in one of the two; both states have a
/// topology. Numbers of sections and islands don't count, nor do powers.
std::set<RecordKey> ChangedRecords(const GridState& before, const GridState& after);

/// The whole account. A picture differs too where only a power does.
Changes ChangesBetween(const GridState& before, const GridState& after);

}  // namespace dtsdb::page::internal
