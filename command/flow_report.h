/// \file
/// The results of a breaker flow, laid out as sheets.
#pragma once

#include "breakerflow/flows.h"
#include "command/render.h"

namespace dtsdb::tools {

/// True when every set was computed, and none lacks a voltage that its loops need.
bool IsWhole(const Flows& flows);

/// The sheets
///  - sets: the sets of nodes that closed breakers join, with their balance and state;
///  - breakers: the closed live breakers of each set, their class, flow and state; those of a set that wasn't computed
///    have neither class nor flow, those without a voltage have nan.
/// Powers are rounded to 0.001.
Report FlowReport(const Flows& flows);

}  // namespace dtsdb::tools
