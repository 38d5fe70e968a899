/// \file
/// The threads of the server, and the connections that wait for one.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "page/internal/http.h"

namespace dtsdb::page {

/// A pool of threads with a bounded queue. A connection beyond it is handled at once, by the thread that has accepted
/// it, and finds out that it is refused.
class ConnectionQueue : public httplib::TaskQueue {
 public:
  /// `waiting` is kept at the number of connections that wait; it must outlive the queue.
  ConnectionQueue(std::size_t threads, std::size_t mostWaiting, std::atomic<std::size_t>& waiting);

  void enqueue(std::function<void()> work) override;
  void shutdown() override;

  /// True within the work of a connection that is refused.
  static bool IsRefusing();

 private:
  void Work();

  std::size_t m_mostWaiting;
  std::atomic<std::size_t>& m_count;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<std::function<void()>> m_waiting;
  bool m_ends = false;
  std::vector<std::thread> m_threads;
};

}  // namespace dtsdb::page
