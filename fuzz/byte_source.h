/// \file
/// Bytes as decisions: what builds a model or chooses calls takes its numbers from them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace dtsdb::fuzz {

/// Cuts numbers and texts from bytes that it doesn't own. Behind their end everything is 0 and empty.
class ByteSource {
 public:
  ByteSource(const std::uint8_t* data, std::size_t size) : m_bytes(reinterpret_cast<const char*>(data), size) {}
  explicit ByteSource(std::string_view bytes) : m_bytes(bytes) {}

  bool IsEmpty() const { return m_bytes.empty(); }

  int Byte() {
    if (IsEmpty()) return 0;
    const auto byte = static_cast<unsigned char>(m_bytes.front());
    m_bytes.remove_prefix(1);
    return byte;
  }
  /// A number from 0 to `n` - 1; `n` is at least 1 and at most 65536.
  int Below(int n) { return n <= 256 ? Byte() % n : (Byte() * 256 + Byte()) % n; }
  bool Chance(int percent) { return Below(100) >= 100 - percent; }
  /// The bytes to the next zero byte, which is taken too.
  std::string_view Text() {
    const std::string_view text = m_bytes.substr(0, m_bytes.find('\0'));
    m_bytes.remove_prefix(std::min(m_bytes.size(), text.size() + 1));
    return text;
  }
  std::string_view Rest() const { return m_bytes; }

 private:
  std::string_view m_bytes;
};

}  // namespace dtsdb::fuzz
