#include "page/event_hub.h"

#include <utility>

namespace dtsdb::page {

EventText MakeEvent(const std::string& name, const std::string& data) {
  return std::make_shared<const std::string>("event: " + name + "\ndata: " + data + "\n\n");
}

EventText EventStream::Take(std::chrono::milliseconds longest) {
  std::unique_lock lock(m_mutex);
  m_changed.wait_for(lock, longest, [this] { return m_ended || !m_waiting.empty(); });
  if (m_waiting.empty()) return nullptr;
  EventText event = std::move(m_waiting.front());
  m_waiting.pop_front();
  return event;
}

bool EventStream::HasEnded() const {
  const std::lock_guard lock(m_mutex);
  return m_ended;
}

void EventStream::Put(const EventText& event, const EventText& goOn) {
  {
    const std::lock_guard lock(m_mutex);
    const bool isFull = m_waiting.size() >= kMostWaiting;
    if (isFull) m_waiting.clear();
    m_waiting.push_back(isFull ? goOn : event);
  }
  m_changed.notify_one();
}

void EventStream::End() {
  {
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_waiting.clear();
  }
  m_changed.notify_one();
}

std::shared_ptr<EventStream> EventHub::Open() {
  const std::lock_guard lock(m_mutex);
  if (m_ended || OpenStreams().size() >= m_mostStreams) return nullptr;
  auto stream = std::make_shared<EventStream>();
  for (const EventText& event : m_greeting) stream->m_waiting.push_back(event);
  m_streams.push_back(stream);
  return stream;
}

void EventHub::Greet(std::vector<EventText> greeting) {
  const std::lock_guard lock(m_mutex);
  m_greeting = std::move(greeting);
}

void EventHub::Send(const EventText& event, const EventText& goOn) {
  const std::lock_guard lock(m_mutex);
  for (const auto& stream : OpenStreams()) stream->Put(event, goOn);
}

void EventHub::End() {
  const std::lock_guard lock(m_mutex);
  m_ended = true;
  for (const auto& stream : OpenStreams()) stream->End();
}

std::vector<std::shared_ptr<EventStream>> EventHub::OpenStreams() {
  std::erase_if(m_streams, [](const std::weak_ptr<EventStream>& stream) { return stream.expired(); });
  std::vector<std::shared_ptr<EventStream>> open;
  for (const auto& stream : m_streams) {
    if (auto held = stream.lock()) open.push_back(std::move(held));
  }
  return open;
}

}  // namespace dtsdb::page
