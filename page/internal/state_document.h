/// \file
/// The documents on the grid as a whole: its summary, its state and its findings.
#pragma once

#include "page/internal/grid_state.h"
#include "page/internal/json.h"

namespace dtsdb::page::internal {

/// How much of what there is.
Json SummaryJson(const GridState& state);
Json StateJson(const GridState& state);
/// The map; an empty picture without a topology.
Json MapJson(const GridState& state);
Json FindingsJson(const Grid& grid);

}  // namespace dtsdb::page::internal
