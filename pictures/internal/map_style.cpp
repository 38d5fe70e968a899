#include "pictures/internal/map_style.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace dtsdb::pictures::internal {
namespace {

constexpr int kColours = 8;
constexpr std::array<float, kTiers - 1> kFrom = {450, 300, 180, 90, 30};  // kV; lower ones are the last tier

}  // namespace

int TierOf(float voltage) {
  const auto* const found = std::find_if(kFrom.begin(), kFrom.end(), [=](float from) { return voltage >= from; });
  return static_cast<int>(found - kFrom.begin());
}

std::string TierClass(int tier) { return fmt::format("t{}", tier); }
std::string PlaceSymbol(int tier) { return fmt::format("place-{}", tier); }

std::string IslandClass(int island) { return island < 0 ? "dead" : fmt::format("live s{}", island % kColours); }
std::string IslandText(int island) { return island < 0 ? "dead" : fmt::format("island {}", island); }

std::string VoltageText(float voltage) { return voltage > 0 ? fmt::format("{:g} kV", voltage) : "voltage unknown"; }

}  // namespace dtsdb::pictures::internal
