/// \file
/// The end of a run: from physical numbers, which survive insertions, to logical ones.
#pragma once

#include "model/dtsdb.h"

namespace dtsdb::internal {

/// Replaces the numbers in all that a run has made by logical numbers: links of relations, nodes and ends of devices.
/// Reads and writes these fields only.
void NumbersToLogical(DTSDB& model);

}  // namespace dtsdb::internal
