/// \file
/// The second step of a utility: its switchyards, and what is open or out of service.
#pragma once

#include "generate/generator.h"
#include "generate/plan.h"
#include "generate/random.h"

namespace dtsdb::tools {

/// Chooses an arrangement for each level, and what of the switches, lines and transformers is open or out of service.
/// Lays out the points.
void PlanSwitching(Plan& plan, const GeneratorOptions& options, Random& random);

/// Closes again what parts the network: afterwards all levels of the grid hang together. What only feeds loads stays
/// as it was drawn, and may be dead.
void KeepTogether(Plan& plan);

}  // namespace dtsdb::tools
