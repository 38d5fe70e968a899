/// \file
/// Removing old rows from the logs in a realtime database.
#pragma once

#include <optional>
#include <string>

#include "command/commands.h"

namespace dtsdb::tools {

struct PruneOptions {
  ModelName database;
  std::string table;
  std::string before;
  std::optional<int> keep;
};

/// Adds the subcommand prune to `rtdb`.
void AddRtdbPrune(CommandLine& rtdb, Action& action);

}  // namespace dtsdb::tools
