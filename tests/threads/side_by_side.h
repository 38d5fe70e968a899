/// \file
/// Threads that begin at the same moment.
#pragma once

#include <barrier>
#include <functional>
#include <thread>
#include <vector>

namespace dtsdb::test {

/// How many there are, unless a test needs another number.
inline constexpr int kThreads = 4;

/// Calls `work(0)` on the caller's thread, and `work(1)` to `work(count - 1)` each on a thread of its own. None begins
/// before all are there.
inline void SideBySide(int count, const std::function<void(int)>& work) {
  std::barrier start(count);
  const auto run = [&work, &start](int i) {
    start.arrive_and_wait();
    work(i);
  };
  std::vector<std::jthread> threads;
  for (int i = 1; i < count; ++i) threads.emplace_back(run, i);
  run(0);
}

}  // namespace dtsdb::test
