/// \file
/// Backing a realtime database up and restoring it.
#pragma once

#include "command/commands.h"

namespace dtsdb::tools {

/// Adds the subcommands backup and restore to `rtdb`.
void AddRtdbBackup(CommandLine& rtdb, Action& action);

}  // namespace dtsdb::tools
