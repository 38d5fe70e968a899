/// \file
/// The topology of a model as a report.
#pragma once

#include <QList>
#include <string>
#include <vector>

#include "analysis/topology.h"
#include "command/render.h"

namespace dtsdb::tools {

/// The live islands.
Sheet IslandSheet(const std::vector<analysis::Island>& islands);

/// What a run has found out about the model: its findings, and the zero-impedance branches that it has left out.
Sheet RunFindingSheet(const QList<Finding>& findings, const std::vector<std::string>& leftOut);

/// The sheets islands, sections, contents, dead and findings.
Report TopologyReport(const analysis::Topology& topology);

}  // namespace dtsdb::tools
