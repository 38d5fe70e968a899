/// \file
/// The first step of a utility: what stands where.
#pragma once

#include "generate/generator.h"
#include "generate/plan.h"
#include "generate/random.h"

namespace dtsdb::tools {

/// Gives the empty `plan` its stations, their levels, devices and transformers.
void PlanStations(Plan& plan, const GeneratorOptions& options, Random& random);

/// Joins the stations by lines and DC lines. Each but the first gets a line of its highest voltage to one before it,
/// so that all are one network.
void PlanLines(Plan& plan, const GeneratorOptions& options, Random& random);

}  // namespace dtsdb::tools
