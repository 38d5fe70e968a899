/// \file
/// The base voltages at the ends of lines.
#pragma once

#include "model/records.h"

namespace dtsdb::tools {

/// A line joins levels of one base voltage. Where it leads from `from` to a level `to` of another, `vbase` of one of
/// them becomes 0, which isn't compared: that of `from` when it `isMade`, no voltage level of a station, else that of
/// `to`. Returns the level that was changed, null for none.
KV* PartVoltages(KV& from, KV& to, bool isMade);

}  // namespace dtsdb::tools
