// The threads that work on whole models.

#include "model/threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace dtsdb::test {
namespace {

/// Sets the number of threads and puts the old one back.
class ThreadsInEffect {
 public:
  explicit ThreadsInEffect(int count) : m_before(ThreadCount()) { SetThreadCount(count); }
  ThreadsInEffect(const ThreadsInEffect&) = delete;
  ThreadsInEffect& operator=(const ThreadsInEffect&) = delete;
  ~ThreadsInEffect() { SetThreadCount(m_before); }

 private:
  int m_before;
};

TEST(Threads, CountStaysWithinItsBounds) {
  const ThreadsInEffect threads(0);
  EXPECT_EQ(ThreadCount(), 1);
  SetThreadCount(kMostThreads + 1);
  EXPECT_EQ(ThreadCount(), kMostThreads);
  SetThreadCount(3);
  EXPECT_EQ(ThreadCount(), 3);
}

TEST(Threads, EachTaskIsDoneOnce) {
  for (const int threads : {1, 2, 4}) {
    const ThreadsInEffect inEffect(threads);
    std::vector<std::atomic<int>> done(1000);
    ForEachTask(1000, [&](int i) { ++done[static_cast<std::size_t>(i)]; });
    for (const auto& count : done) ASSERT_EQ(count, 1) << threads;
  }
}

TEST(Threads, TasksOfSeveralKindsAreAllDone) {
  const ThreadsInEffect threads(2);
  std::atomic<int> sum = 0;
  RunTasks({[&] { sum += 1; }, [&] { sum += 10; }, [&] { sum += 100; }});
  EXPECT_EQ(sum, 111);
}

TEST(Threads, NumberZeroRunsOnTheCallersThread) {
  std::vector<std::thread::id> ids(4);
  RunOnThreads(4, [&](int number) { ids[static_cast<std::size_t>(number)] = std::this_thread::get_id(); });
  EXPECT_EQ(ids[0], std::this_thread::get_id());
  for (std::size_t i = 1; i < ids.size(); ++i) EXPECT_NE(ids[i], ids[0]);
}

TEST(Threads, NoThreadIsMadeWithOne) {
  const ThreadsInEffect threads(1);
  ForEachTask(10, [caller = std::this_thread::get_id()](int) { EXPECT_EQ(std::this_thread::get_id(), caller); });
}

TEST(Threads, DoNotMultiplyWithinATask) {
  const ThreadsInEffect threads(4);
  std::atomic<int> others = 0;
  ForEachTask(4, [&](int) {
    if (ThreadCount() != 1) ++others;
    ForEachTask(4, [&, outer = std::this_thread::get_id()](int) {
      if (std::this_thread::get_id() != outer) ++others;
    });
  });
  EXPECT_EQ(others, 0);
  EXPECT_EQ(ThreadCount(), 4);
}

TEST(Threads, ExceptionOfTheLowestTaskArrives) {
  for (const int threads : {1, 2, 4}) {
    const ThreadsInEffect inEffect(threads);
    for (int round = 0; round < 20; ++round) {
      std::string what;
      try {
        ForEachTask(100, [](int i) {
          if (i >= 7) throw std::runtime_error(std::to_string(i));
        });
      } catch (const std::runtime_error& error) {
        what = error.what();
      }
      ASSERT_EQ(what, "7") << threads;
    }
  }
}

TEST(Threads, ExceptionEndsTheTasksBehindIt) {
  const ThreadsInEffect threads(2);
  std::atomic<int> begun = 0;
  const auto fail = [&](int) {
    ++begun;
    throw std::runtime_error("");
  };
  EXPECT_THROW(ForEachTask(1000, fail), std::runtime_error);
  EXPECT_LE(begun, 2);
}

}  // namespace
}  // namespace dtsdb::test
