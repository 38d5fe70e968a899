/// \file
/// Scripts by which a shell completes the command line of a program.
#pragma once

#include <string>

#include "command/outline.h"

namespace dtsdb::tools {

// Each returns a script for one shell, to be read by it or put where it looks for completions. Subcommands and options
// are completed, values by what help lists for them, everything else by the names of files.
std::string BashCompletion(const CommandOutline& program);
std::string ZshCompletion(const CommandOutline& program);
std::string FishCompletion(const CommandOutline& program);

}  // namespace dtsdb::tools
