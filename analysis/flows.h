/// \file
/// The power through the breakers of a model.
#pragma once

#include "analysis/error.h"
#include "analysis/model.h"
#include "breakerflow/flows.h"

namespace dtsdb::analysis {

/// Works out the power through every closed breaker. A model without a topology is validated and gets one first
/// (WorkOutTopology); one that has it is left as it is. An Error when the model has errors or no topology can be had.
/// Identities in the result are raw bytes (model/text.h).
Result<Flows> WorkOutFlows(Model& model, const FlowSettings& settings = {});

}  // namespace dtsdb::analysis
