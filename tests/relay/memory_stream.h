/// \file
/// A stream in memory, which fails when a test wants it to.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "relay/stream.h"

namespace dtsdb::relay::test {

/// What a server keeps of a stream. It outlives the programs that use it.
struct KeptMessages {
  std::map<std::uint64_t, std::string> messages;
  std::uint64_t last = 0;
  std::optional<std::string> pulse;

  std::uint64_t First() const { return messages.empty() ? last + 1 : messages.begin()->first; }
};

class MemoryStream final : public Stream {
 public:
  /// `step` is called in front of each call and, with true, behind each storing; it may throw.
  MemoryStream(
      KeptMessages& kept, std::function<void(bool stored)> step = [](bool) {}, std::size_t mostBytes = 4096)
      : m_kept(kept), m_step(std::move(step)), m_mostBytes(mostBytes) {}

  StreamRange Range() override {
    m_step(false);
    return {m_kept.First(), m_kept.last};
  }
  void Append(std::string_view bytes, std::uint64_t last) override {
    m_step(false);
    if (last != m_kept.last) throw StreamError(StreamError::Kind::kMoved, "another last message");
    m_kept.messages[++m_kept.last] = std::string(bytes);
    m_step(true);
  }
  std::optional<std::string> Read(std::uint64_t number) override {
    m_step(false);
    const auto found = m_kept.messages.find(number);
    if (found == m_kept.messages.end()) return {};
    return found->second;
  }
  void DiscardBelow(std::uint64_t number) override {
    m_step(false);
    m_kept.messages.erase(m_kept.messages.begin(), m_kept.messages.lower_bound(number));
  }
  std::size_t MostBytes() override { return m_mostBytes; }
  void SendPulse(std::string_view bytes) override { m_kept.pulse = std::string(bytes); }
  void Wait(std::chrono::milliseconds) override { m_step(false); }
  std::optional<std::string> TakePulse() override { return std::exchange(m_kept.pulse, std::nullopt); }

 private:
  KeptMessages& m_kept;
  std::function<void(bool)> m_step;
  std::size_t m_mostBytes;
};

}  // namespace dtsdb::relay::test
