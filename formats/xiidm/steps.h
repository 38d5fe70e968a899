/// \file
/// The steps of the mapping, in the order in which they are taken: each finds its objects, names their records and
/// fills in the rows.
#pragma once

#include <vector>

#include "formats/xiidm/mapping.h"

namespace dtsdb::tools::xiidm {

/// Companies, districts, stations, levels and the names of nodes.
void MapContainers(Mapping& mapping);
/// Breakers, and the zero-impedance branches on closed ones that keep their nodes apart.
void MapSwitches(Mapping& mapping);
/// Lines, tie lines and boundary lines.
void MapLines(Mapping& mapping);
/// Windings.
void MapTransformers(Mapping& mapping);
/// DC lines. Returns the converters that belong to none, with one or two ends.
std::vector<int> MapDcLines(Mapping& mapping);
/// Buses, units, loads and shunt devices; each of `converters` is a unit or a load by its power.
void MapDevices(Mapping& mapping, const std::vector<int>& converters);

}  // namespace dtsdb::tools::xiidm
