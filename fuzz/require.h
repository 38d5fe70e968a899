/// \file
/// How a fuzz target reports that something is wrong.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace dtsdb::fuzz {

/// Ends the run with one line unless `condition` holds: the fuzzer keeps the input that led here.
inline void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not true: %s\n", what);
  std::abort();
}

}  // namespace dtsdb::fuzz
