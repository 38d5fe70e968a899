/// \file
/// The effect of switching as a part of a report.
#pragma once

#include "analysis/effect.h"
#include "command/render.h"

namespace dtsdb::tools {

/// Adds the facts and lines that sum the effect up, and the sheets effect and island_changes.
void AddEffect(Report& report, const analysis::Effect& effect);

}  // namespace dtsdb::tools
