/// \file
/// Values as JSON, written by their digits so that no number is rounded.
#pragma once

#include <string>

#include "formats/cell.h"

namespace dtsdb::tools {

/// UTF-8 text as a JSON string with its quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonText(const std::string& text);

/// A cell as a JSON value: null for nothing. Numbers that JSON lacks, nan and inf, become strings.
std::string JsonCell(const Cell& cell);

}  // namespace dtsdb::tools
