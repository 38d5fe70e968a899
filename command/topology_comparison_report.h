/// \file
/// The topology of a CGMES set beside the one that the set publishes, as a report.
#pragma once

#include "command/render.h"
#include "formats/cgmes/topology_comparison.h"

namespace dtsdb::tools {

/// True when nothing differs but by design.
bool IsAsPublished(const cgmes::TopologyComparison& comparison);

/// The sheets differences and by_design.
Report ComparisonReport(const cgmes::TopologyComparison& comparison);

}  // namespace dtsdb::tools
