/// \file
/// The classes of pictures/style.css and the symbols that things on a map have.
#pragma once

#include <string>

namespace dtsdb::pictures::internal {

inline constexpr int kTiers = 6;

/// The tier of a voltage in kV, 0 the highest: stations have the symbol and lines the width of their tier.
int TierOf(float voltage);
/// "t0" to "t5".
std::string TierClass(int tier);
/// "place-0" to "place-5".
std::string PlaceSymbol(int tier);

/// "live s3", or "dead" for an island below 0. There are eight colours.
std::string IslandClass(int island);
/// "island 3", or "dead".
std::string IslandText(int island);

/// "220 kV", or "voltage unknown" for 0.
std::string VoltageText(float voltage);

}  // namespace dtsdb::pictures::internal
