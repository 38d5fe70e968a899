/// \file
/// The voltages of a generated utility, and how large what stands on each is.
#pragma once

#include <array>
#include <cstddef>

namespace dtsdb::tools {

/// A whole number from `low` to `high`, both included.
struct Range {
  int low = 0;
  int high = 0;
};

/// The higher voltage first.
enum class Tier { k500, k220, k110, k35, k10 };
inline constexpr int kTiers = 5;

struct TierData {
  int kv;           ///< base voltage in kV
  Range unitSize;   ///< MW, the greatest output of a unit
  Range load;       ///< MW
  Range capacitor;  ///< Mvar
  int transit;      ///< MW, the most that a branch beyond those of a tree carries round the meshes
};

inline constexpr std::array<TierData, kTiers> kTierData{{
    {500, {300, 600}, {100, 300}, {60, 120}, 120},
    {220, {50, 200}, {30, 120}, {20, 60}, 40},
    {110, {10, 60}, {5, 40}, {5, 20}, 12},
    {35, {5, 20}, {2, 10}, {2, 10}, 2},
    {10, {2, 10}, {1, 6}, {1, 4}, 1},
}};

constexpr const TierData& DataOf(Tier tier) { return kTierData[static_cast<std::size_t>(tier)]; }

}  // namespace dtsdb::tools
