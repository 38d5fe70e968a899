/// \file
/// From the results of the analysis layer to the command's way of ending.
#pragma once

#include <type_traits>
#include <utility>

#include "analysis/error.h"
#include "formats/failure.h"

namespace dtsdb::tools {

/// The exit code for an error.
inline ExitCode ExitCodeOf(analysis::ErrorCode code) {
  switch (code) {
    case analysis::ErrorCode::kUsage:
    case analysis::ErrorCode::kUnknownComponent:
      return kExitUsage;
    case analysis::ErrorCode::kFile:
    case analysis::ErrorCode::kInternal:
      return kExitFile;
    default:
      return kExitFaults;
  }
}

/// The value of a result; an error ends the command with its line.
template <class T>
T Take(analysis::Result<T> result) {
  if (!result) throw Failure(ExitCodeOf(result.error().code), result.error().message);
  if constexpr (!std::is_void_v<T>) return std::move(*result);
}

}  // namespace dtsdb::tools
