/// \file
/// Where the stations of a set stand on the map, from its profiles of geographical locations (GL).
#pragma once

#include <vector>

#include "formats/cgmes/mapping.h"
#include "formats/import_report.h"

namespace dtsdb::tools::cgmes {

/// Adds the position of each station that has one: the middle point of its own location, or else the mean of the middle
/// points of what lies in it. `parts` stay in their order.
void AddPositions(const Mapping& mapping, std::vector<ImportReport::Identity>& parts);

}  // namespace dtsdb::tools::cgmes
