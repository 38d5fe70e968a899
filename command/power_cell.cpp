#include "command/power_cell.h"

#include <cmath>

#include "formats/field_text.h"

namespace dtsdb::tools {

Cell PowerCell(double power) {
  if (std::isnan(power)) return Number{"nan"};
  if (!std::isfinite(power)) return Number{NumberText(power)};
  const double rounded = std::round(power * 1000) / 1000;
  return Number{NumberText(rounded == 0 ? 0.0 : rounded)};
}

}  // namespace dtsdb::tools
