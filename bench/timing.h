/// \file
/// Timing on the wall clock, for what waits for files.
#pragma once

#include <chrono>

namespace dtsdb::bench {

/// How long `job` takes.
template <class Job>
double Milliseconds(Job&& job) {
  const auto begin = std::chrono::steady_clock::now();
  job();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace dtsdb::bench
