/// \file
/// The last step of a utility: names, and rows of the tables.
#pragma once

#include "formats/input_rows.h"
#include "generate/plan.h"

namespace dtsdb::tools {

/// Puts into `rows` what `plan` holds, with a measurement point for each measured value.
void PutPlan(InputRows& rows, const Plan& plan);

}  // namespace dtsdb::tools
