/// \file
/// The result of an outage screening as sheets.
#pragma once

#include <cstddef>

#include "analysis/screening.h"
#include "command/render.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {

/// How many of the outages cost something, and those that cost most: `most` of them.
Report ScreeningReport(const analysis::Screening& screening, std::size_t most, Language language);

}  // namespace dtsdb::tools
