/// \file
/// Manual pages.
#pragma once

#include <string>

#include "command/outline.h"

namespace dtsdb::tools {

/// The manual page of a program or subcommand in the language of man(7), from what its help prints. `program` is the
/// whole program, whose options all its subcommands take; `version` stands at the foot of the page, `date` as
/// YYYY-MM-DD.
std::string ManPage(const CommandOutline& command, const CommandOutline& program, const std::string& version,
                    const std::string& date);

/// The name of the file that holds the page, such as "dtsdb-rtdb-ls.1".
std::string ManPageFile(const CommandOutline& command);

}  // namespace dtsdb::tools
