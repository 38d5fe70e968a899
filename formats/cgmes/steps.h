/// \file
/// The steps of the mapping, in the order in which they are taken: each finds its objects, names their records and
/// fills in the rows.
#pragma once

#include <vector>

#include "formats/cgmes/mapping.h"

namespace dtsdb::tools::cgmes {

/// Companies, districts, stations, levels and the names of nodes. A set without connectivity nodes is refused: throws
/// Failure.
void MapContainers(Mapping& mapping);
/// Measurement points, for the equipment that comes behind.
void MapMeasurements(Mapping& mapping);
/// Breakers, and the zero-impedance branches on closed ones that keep their nodes apart.
void MapSwitches(Mapping& mapping);
/// Lines and what counts as one.
void MapLines(Mapping& mapping);
/// Windings.
void MapTransformers(Mapping& mapping);
/// DC lines. Returns the converters that belong to none.
std::vector<int> MapDcLines(Mapping& mapping);
/// Buses, units, loads and shunt devices; each of `converters` is a unit or a load by its power.
void MapDevices(Mapping& mapping, const std::vector<int>& converters);

}  // namespace dtsdb::tools::cgmes
