/// \file
/// The objects of a set that an export of the topology names beside the model's records.
#pragma once

#include <vector>

#include "formats/cgmes/mapping.h"
#include "formats/import_report.h"

namespace dtsdb::tools::cgmes {

/// Terminals by node, base voltages, connectivity nodes without equipment, the topological nodes of the border, and the
/// profiles that an export depends on; by kind (part_of) and identity.
std::vector<ImportReport::Identity> TopologyParts(const Mapping& mapping);

}  // namespace dtsdb::tools::cgmes
