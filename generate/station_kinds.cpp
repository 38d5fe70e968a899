#include "generate/station_kinds.h"

namespace dtsdb::tools {
namespace {

constexpr DeviceDraw kNone{};

// Each row: the voltage, then units, loads, capacitors as {percent of the stations, {least, most}}.

constexpr LevelKind kMainStation[] = {
    {Tier::k500, {10, {1, 1}}, kNone, kNone},
    {Tier::k220, {10, {1, 2}}, {10, {1, 1}}, kNone},
    {Tier::k35, kNone, kNone, {100, {1, 2}}},
};
constexpr LevelKind kHub[] = {
    {Tier::k220, {20, {1, 2}}, {5, {1, 1}}, kNone},
    {Tier::k110, {5, {1, 1}}, {30, {1, 1}}, kNone},
    {Tier::k35, kNone, {20, {1, 2}}, {40, {1, 1}}},
};
constexpr LevelKind kTown[] = {
    {Tier::k110, kNone, kNone, kNone},
    {Tier::k35, {5, {1, 1}}, {30, {1, 1}}, kNone},
    {Tier::k10, kNone, {100, {1, 2}}, {40, {1, 1}}},
};
constexpr LevelKind kSubstation[] = {
    {Tier::k110, kNone, kNone, kNone},
    {Tier::k10, kNone, {100, {1, 3}}, {25, {1, 1}}},
};
constexpr LevelKind kVillage[] = {
    {Tier::k35, {5, {1, 1}}, kNone, kNone},
    {Tier::k10, kNone, {100, {1, 2}}, {20, {1, 1}}},
};
constexpr LevelKind kLargePlant[] = {
    {Tier::k500, {100, {1, 2}}, kNone, kNone},
};
constexpr LevelKind kPlant[] = {
    {Tier::k220, {100, {1, 3}}, {50, {1, 1}}, kNone},
};
constexpr LevelKind kSmallPlant[] = {
    {Tier::k110, {45, {1, 2}}, {70, {1, 2}}, kNone},
};

constexpr StationKind kKinds[] = {
    {3, 60, kMainStation}, {10, 30, kHub},      {5, 20, kTown}, {38, 35, kSubstation},
    {15, 15, kVillage},    {1, 0, kLargePlant}, {3, 0, kPlant}, {25, 0, kSmallPlant},
};

constexpr int SumOfShares() {
  int sum = 0;
  for (const StationKind& kind : kKinds) sum += kind.share;
  return sum;
}
static_assert(SumOfShares() == 100);

}  // namespace

std::span<const StationKind> StationKinds() { return kKinds; }

}  // namespace dtsdb::tools
