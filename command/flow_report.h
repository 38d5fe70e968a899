/// \file
/// What a breaker flow run found out, laid out as sheets.
#pragma once

#include <string>
#include <unordered_map>

#include "breakerflow/cbflow.h"
#include "command/render.h"

namespace dtsdb::tools {

/// By a breaker's identity: the voltage level that it stands in, both as the database has them.
using LevelOfBreaker = std::unordered_map<std::string, std::string>;

/// Number of sets that `flow` refused to compute.
int RefusedSets(const cbFlow& flow);

/// The results of `flow` after its run: the sheets
///  - sets: the sets of nodes that closed breakers join, with their balance and state;
///  - breakers: the closed live breakers of each set, their class and flow; those of a set that wasn't computed have
///    neither.
/// Powers are rounded to 0.001.
Report FlowReport(const cbFlow& flow, const LevelOfBreaker& levels);

}  // namespace dtsdb::tools
