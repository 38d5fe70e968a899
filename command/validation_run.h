/// \file
/// Validating a model on the way to something else.
#pragma once

#include <QList>

#include "command/render.h"
#include "formats/model_name.h"
#include "model/dtsdb.h"
#include "validation/finding.h"

namespace dtsdb::tools {

/// True when the model bears the mark of a validation that found no error.
bool IsMarkedGood(DTSDB& database);

/// Number of errors that the last validation counted.
int ErrorCount(DTSDB& database);

/// Validates the model unless it is marked good. A Failure with exit code kExitFaults, that
/// describes how to see the faults of `model` when it isn't good.
void RequireGood(DTSDB& database, const ModelName& model);

/// The findings about records, down to the weight `least`; the notices report only that a run began and ended.
Sheet FindingSheet(const QList<Finding>& findings, Severity least);

}  // namespace dtsdb::tools
