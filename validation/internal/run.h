/// \file
/// A validation run from its start to its verdict.
#pragma once

#include "validation/internal/row_checks.h"

namespace dtsdb::internal {

/// How a run puts what it makes into the tables. The results are the same.
enum class Making {
  kAtOnce,    ///< in the end, where the model allows it: BulkGraph
  kOneByOne,  ///< addition by addition
};

/// A whole run. False when a table took no more rows.
bool RunValidation(RowChecks& checks, Making making = Making::kAtOnce);

/// Puts the tables in order for a run: compacts the input, empties and sizes what is derived, makes a new GLOBAL
/// record, resets the links of the input.
void StartRun(DTSDB& model);

/// The twelve checks, until a table takes no more rows; false then.
bool RunChecks(RowChecks& checks);

/// Warns of idle nodes, turns all numbers into logical ones, compacts what has grown, and gives the verdict.
void EndRun(RowChecks& checks);

}  // namespace dtsdb::internal
