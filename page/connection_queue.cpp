#include "page/connection_queue.h"

#include <utility>

namespace dtsdb::page {
namespace {

thread_local bool t_isRefusing = false;

}  // namespace

ConnectionQueue::ConnectionQueue(std::size_t threads, std::size_t mostWaiting, std::atomic<std::size_t>& waiting)
    : m_mostWaiting(mostWaiting), m_count(waiting) {
  for (std::size_t i = 0; i < threads; ++i) m_threads.emplace_back([this] { Work(); });
}

void ConnectionQueue::enqueue(std::function<void()> work) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_waiting.size() < m_mostWaiting) {
      m_waiting.push_back(std::move(work));
      m_count = m_waiting.size();
      work = nullptr;
    }
  }
  if (!work) {
    m_changed.notify_one();
    return;
  }
  t_isRefusing = true;
  work();
  t_isRefusing = false;
}

/// What waits is worked off first.
void ConnectionQueue::shutdown() {
  {
    const std::lock_guard lock(m_mutex);
    m_ends = true;
  }
  m_changed.notify_all();
  for (std::thread& thread : m_threads) thread.join();
}

bool ConnectionQueue::IsRefusing() { return t_isRefusing; }

void ConnectionQueue::Work() {
  for (;;) {
    std::function<void()> work;
    {
      std::unique_lock lock(m_mutex);
      m_changed.wait(lock, [this] { return m_ends || !m_waiting.empty(); });
      if (m_waiting.empty()) return;
      work = std::move(m_waiting.front());
      m_waiting.pop_front();
      m_count = m_waiting.size();
    }
    work();
  }
}

}  // namespace dtsdb::page
