/// \file
/// Identities that are read in the wrong encoding.
#pragma once

#include <string>

#include "model/dtsdb.h"

namespace dtsdb::tools {

/// What a user should know who reads `model` in the wrong encoding: its texts are not valid in the one that is set
/// (CurrentIdEncoding), and are in the other. Empty where that isn't so. Looks at the first texts that aren't ASCII.
std::string EncodingHint(DTSDB& model);

}  // namespace dtsdb::tools
