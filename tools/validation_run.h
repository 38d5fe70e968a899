/// \file
/// Validating a model on the way to something else.
#pragma once

#include <string>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// True when the model bears the mark of a validation that found no error.
bool IsMarkedGood(DTSDB& database);

/// Number of errors that the last validation counted.
int ErrorCount(DTSDB& database);

/// Validates the model unless it is marked good, without leaving a log. A Failure with exit code EXIT_FAULTS, that
/// tells how to see the faults of `model`, the path it came from, when it isn't good.
void RequireGood(DTSDB& database, const std::string& model);

}  // namespace dtsdb::tools
