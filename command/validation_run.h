/// \file
/// Validating a model on the way to something else.
#pragma once

#include "formats/model_name.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// True when the model bears the mark of a validation that found no error.
bool IsMarkedGood(const DTSDB& database);

/// Validates the model unless it is marked good. A Failure with exit code kExitFaults, that
/// describes how to see the faults of `model` when it isn't good.
void RequireGood(const DTSDB& database, const ModelName& model);

}  // namespace dtsdb::tools
