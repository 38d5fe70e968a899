/// \file
/// Powers as results show them.
#pragma once

#include "formats/cell.h"

namespace dtsdb::tools {

/// A power in MW or Mvar, rounded to 0.001, what the data are good for. Never -0, and no sign before nan.
Cell PowerCell(double power);

}  // namespace dtsdb::tools
