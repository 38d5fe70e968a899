#include "model/threads.h"

#include <QtGlobal>
#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

namespace dtsdb {
namespace {

int CountOfEnvironment() {
  bool isNumber = false;
  const int count = qEnvironmentVariableIntValue("DTSDB_THREADS", &isNumber);
  return isNumber && count >= 1 && count <= kMostThreads ? count : 1;
}

std::atomic<int>& CurrentCount() {
  static std::atomic<int> count = CountOfEnvironment();
  return count;
}

/// Set on a thread while it is one of several that work together.
thread_local bool isOneOfSeveral = false;

/// Calls `work(number)`; returns what it throws.
std::exception_ptr Try(const std::function<void(int)>& work, int number) {
  const bool before = std::exchange(isOneOfSeveral, true);
  std::exception_ptr thrown;
  try {
    work(number);
  } catch (...) {
    thrown = std::current_exception();
  }
  isOneOfSeveral = before;
  return thrown;
}

}  // namespace

int ThreadCount() { return isOneOfSeveral ? 1 : CurrentCount().load(); }
void SetThreadCount(int count) { CurrentCount() = std::clamp(count, 1, kMostThreads); }

void RunOnThreads(int count, const std::function<void(int)>& work) {
  if (count == 1) return work(0);
  if (count < 1) return;
  std::vector<std::exception_ptr> thrown(static_cast<std::size_t>(count));
  const auto run = [&](int number) { thrown[static_cast<std::size_t>(number)] = Try(work, number); };
  int made = 1;
  {
    std::vector<std::jthread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    try {
      for (; made < count; ++made) threads.emplace_back(run, made);
    } catch (const std::system_error&) {
      // As many as there are do the work; the caller's thread comes to the rest below.
    }
    run(0);
  }
  for (; made < count; ++made) run(made);
  for (const std::exception_ptr& each : thrown) {
    if (each != nullptr) std::rethrow_exception(each);
  }
}

void ForEachTask(int count, const std::function<void(int)>& task) {
  const int threads = std::min(ThreadCount(), count);
  if (threads <= 1) {
    for (int i = 0; i < count; ++i) task(i);
    return;
  }
  std::vector<std::exception_ptr> thrown(static_cast<std::size_t>(count));
  std::atomic<int> next = 0;
  RunOnThreads(threads, [&](int) {
    for (int i = next++; i < count; i = next++) {
      thrown[static_cast<std::size_t>(i)] = Try(task, i);
      if (thrown[static_cast<std::size_t>(i)] != nullptr) next = count;
    }
  });
  for (const std::exception_ptr& each : thrown) {
    if (each != nullptr) std::rethrow_exception(each);
  }
}

void RunTasks(const std::vector<std::function<void()>>& tasks) {
  ForEachTask(static_cast<int>(tasks.size()), [&tasks](int i) { tasks[static_cast<std::size_t>(i)](); });
}

}  // namespace dtsdb
