/// \file
/// The one place where an exception becomes an Error.
#pragma once

#include <exception>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "analysis/error.h"
#include "formats/failure.h"

namespace dtsdb::analysis::internal {

inline ErrorCode CodeOf(const tools::Failure& failure) {
  switch (failure.Code()) {
    case tools::kExitFile:
      return ErrorCode::kFile;
    case tools::kExitFaults:
      return ErrorCode::kFaultyModel;
    default:
      return ErrorCode::kUsage;
  }
}

/// What `work` returns, a Result; an exception that it throws becomes an Error about `place`.
template <class Work>
std::invoke_result_t<Work> Guarded(const std::string& place, Work work) {
  try {
    return work();
  } catch (const tools::Failure& failure) {
    return tl::unexpected(Error{CodeOf(failure), failure.what(), place});
  } catch (const std::bad_alloc&) {
    return tl::unexpected(Error{ErrorCode::kInternal, "there is not enough memory", place});
  } catch (const std::exception& error) {
    return tl::unexpected(Error{ErrorCode::kInternal, error.what(), place});
  }
}

}  // namespace dtsdb::analysis::internal
