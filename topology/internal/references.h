/// \file
/// The reference of each live island.
#pragma once

#include "topology/internal/network.h"

namespace dtsdb::internal {

/// Gives each live island a reference and returns the number of islands whose reference had to be chosen; 0 with one
/// line on the standard output when there is no live island.
///
/// Reads BS `island`, UN and LD as the last run has stored them. Writes the reference fields of ISLAND, UN `ref` and
/// UN_REF_CHOSEN in UN `status`.
int SetReferences(const Network& network);

}  // namespace dtsdb::internal
