/// \file
/// Whether a breaker has a parallel path.
#pragma once

#include "topology/internal/network.h"

namespace dtsdb::internal {

/// True when closed breakers other than `cb` join its two nodes within the voltage level. A breaker that carries a
/// zero-impedance branch counts as well. False for a breaker without a voltage level.
///
/// Reads the breakers; writes ND_MARK of the level's nodes.
bool HasParallelPath(const Network& network, int cb);

}  // namespace dtsdb::internal
