/// \file
/// Messages to the user.
#pragma once

#include <string>

namespace dtsdb::tools {

/// Writes one line (UTF-8) on the standard error, in the terminal's encoding.
void WriteMessage(const std::string& line);

}  // namespace dtsdb::tools
