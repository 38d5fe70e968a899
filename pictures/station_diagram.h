/// \file
/// The single-line diagram of a station.
#pragma once

#include "pictures/picture.h"
#include "pictures/station.h"

namespace dtsdb::pictures {

/// What a diagram shows besides.
struct DiagramOptions {
  bool flows = false;  ///< powers with arrows at feeders and switches, where they are known
};

/// Draws a station from its tables alone: levels one below the other by their voltage, buses as horizontal bars, bays
/// as chains from the bars to their feeders, rings and rows of breakers as such, transformers between the levels. Every
/// record of the station is one element, but a line one for each end in the station. Symbols and labels don't overlap.
/// The same station gives the same picture.
Picture DrawStation(const Station& station, const DiagramOptions& options = {});

}  // namespace dtsdb::pictures
