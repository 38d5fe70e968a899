/// \file
/// The way from the states of one model to those of another.
#pragma once

#include "analysis/switching.h"
#include "model/dtsdb.h"

namespace dtsdb::analysis::internal {

/// The events that lead from the states in `from` to those in `to`, and what they don't reach. Both are validated;
/// `copy` is a copy of `from`, which is used up.
Way WayBetween(DTSDB& from, DTSDB& to, DTSDB& copy);

}  // namespace dtsdb::analysis::internal
