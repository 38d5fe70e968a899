/// \file
/// What kinds of stations a generated utility has.
#pragma once

#include <span>

#include "generate/voltage_tiers.h"

namespace dtsdb::tools {

/// So many devices on a level, in so many percent of the stations; none in the others.
struct DeviceDraw {
  int percent = 0;
  Range count;
};

struct LevelKind {
  Tier tier;
  DeviceDraw units;
  DeviceDraw loads;
  DeviceDraw capacitors;
};

struct StationKind {
  int share;                          ///< of 100 stations
  int twoTransformers;                ///< percent that have two side by side between the same levels; the others one
  std::span<const LevelKind> levels;  ///< one to three, the highest voltage first
};

/// All kinds. The first three are those of the stations 0, 1 and 2, in whose reach every voltage is found.
std::span<const StationKind> StationKinds();

}  // namespace dtsdb::tools
