/// \file
/// Server-sent events: from the one who notices a change to all who watch.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace dtsdb::page {

/// An event as its viewers get it.
using EventText = std::shared_ptr<const std::string>;

/// The text of an event. `data` is one line.
EventText MakeEvent(const std::string& name, const std::string& data);

/// What waits for one viewer. At most kMostWaiting events do: a viewer that is slower gets, in the place of all that it
/// has missed, one event from which it goes on.
class EventStream {
 public:
  static constexpr std::size_t kMostWaiting = 64;

  /// The next event; none when there was none for so long, or the stream has ended.
  EventText Take(std::chrono::milliseconds longest);
  /// True when no event will come any more.
  bool HasEnded() const;

 private:
  friend class EventHub;

  void Put(const EventText& event, const EventText& goOn);
  void End();

  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<EventText> m_waiting;
  bool m_ended = false;
};

/// Hands events to all open streams. Any thread may call it; nothing here waits for a viewer.
class EventHub {
 public:
  explicit EventHub(std::size_t mostStreams) : m_mostStreams(mostStreams) {}

  /// A stream that begins with what Greet was last given; null when as many as allowed are open. It is open for as long
  /// as the caller keeps it.
  std::shared_ptr<EventStream> Open();
  /// Sets the events that a new stream begins with.
  void Greet(std::vector<EventText> greeting);
  /// Sends an event. `goOn` is what a viewer gets that has too many waiting.
  void Send(const EventText& event, const EventText& goOn);
  /// Ends all streams, and those that are opened later.
  void End();

 private:
  std::vector<std::shared_ptr<EventStream>> OpenStreams();

  std::size_t m_mostStreams;
  std::mutex m_mutex;
  std::vector<std::weak_ptr<EventStream>> m_streams;
  std::vector<EventText> m_greeting;
  bool m_ended = false;
};

}  // namespace dtsdb::page
