/// \file
/// The verdict of a run, in the single row of GLOBAL.
#pragma once

#include "model/dtsdb.h"
#include "validation/internal/log.h"

namespace dtsdb::internal {

/// Makes a new GLOBAL record, with no verdict yet and no topology. Only `f1` outlives a run.
void StartVerdict(tTable<GLOBAL>& global);

/// Warns of every node that joins nothing. Devices of one kind without ends count once, however many there are.
void WarnOfIdleNodes(DTSDB& model, ValidationLog& log);

/// Records whether the run found errors, and reports it.
void EndVerdict(GLOBAL& verdict, ValidationLog& log);

}  // namespace dtsdb::internal
