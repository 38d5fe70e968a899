/// \file
/// Powers as exchange formats have them.
#pragma once

#include <algorithm>
#include <limits>

namespace dtsdb::tools {

/// A power into the equipment, in MW and Mvar.
struct Inflow {
  double p = 0;
  double q = 0;
};

/// A number in the precision of the model's fields; one that is beyond them is the greatest that they have.
inline float Single(double number) {
  constexpr double kMost = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(number, -kMost, kMost));
}

}  // namespace dtsdb::tools
