/// \file
/// The topology of a model as a report.
#pragma once

#include <QList>
#include <string>
#include <vector>

#include "analysis/topology.h"
#include "command/render.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {

/// The live islands.
Sheet IslandSheet(const std::vector<analysis::Island>& islands);

/// What a run has found out about the model: its findings, and the zero-impedance branches that it has left out. Texts
/// are in `language`.
Sheet RunFindingSheet(const QList<Finding>& findings, const std::vector<std::string>& leftOut, Language language);

/// The sheets islands, sections, contents, dead and findings, these in `language`.
Report TopologyReport(const analysis::Topology& topology, Language language);

}  // namespace dtsdb::tools
