/// \file
/// How many threads the long operations may use, and the one way in which the library makes them.
#pragma once

#include <functional>
#include <vector>

namespace dtsdb {

/// The most threads that can be asked for.
inline constexpr int kMostThreads = 256;

/// How many threads an operation over a whole model may use: what SetThreadCount has set, or else the environment
/// variable DTSDB_THREADS, a number from 1 to kMostThreads, or else 1. On a thread that works for RunOnThreads it is 1,
/// so that threads don't multiply.
int ThreadCount();

/// Lets operations over whole models use `count` threads, the caller's among them: NMD::DetectAll, full runs of TP
/// and DTSDB::ReadFastdb. Below 1 it is 1, beyond kMostThreads that. Holds for the process, from the next
/// operation on; any thread may call it at any time.
///
/// Results, their order, logs and files are the same with any number. The threads end before the operation returns,
/// and see nothing of the model afterwards. With 1 no thread is made.
void SetThreadCount(int count);

/// Calls `work(0)` on the caller's thread and `work(1)` to `work(count - 1)` on threads of their own; returns when all
/// have returned. What the system has no thread for is called on the caller's thread afterwards. Of what is thrown the
/// exception of the lowest number is thrown on.
void RunOnThreads(int count, const std::function<void(int)>& work);

/// Calls `task(0)` to `task(count - 1)` once each, on up to ThreadCount() threads, which take them in this order;
/// returns when all have returned. After an exception no further task begins, and that of the lowest number is thrown
/// on: the same one with any number of threads.
void ForEachTask(int count, const std::function<void(int)>& task);
/// The same with tasks of several kinds.
void RunTasks(const std::vector<std::function<void()>>& tasks);

}  // namespace dtsdb
