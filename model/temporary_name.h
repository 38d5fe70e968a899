/// \file
/// Names of files and folders that are being written, by which what a killed program has left is known.
#pragma once

#include <string>
#include <string_view>

namespace dtsdb {

/// A name that is hardly in use: FRONTdtsdb- and six hexadecimal digits. FRONT is empty or begins and ends with a dot.
std::string NewTemporaryName(const std::string& front);

/// Whether NewTemporaryName returns such names.
bool IsTemporaryName(std::string_view name);

}  // namespace dtsdb
