/// \file
/// The document on one station: its diagram and the state of what is in it.
#pragma once

#include <QString>

#include "analysis/error.h"
#include "page/internal/grid_state.h"
#include "page/internal/json.h"

namespace dtsdb::page::internal {

/// The station `id`, raw bytes. The state has a topology.
analysis::Result<Json> StationJson(const GridState& state, const QString& id);

}  // namespace dtsdb::page::internal
