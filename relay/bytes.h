/// \file
/// Numbers and texts one behind the other in bytes, little-endian.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace dtsdb::relay {

/// Appends to bytes.
class ByteWriter {
 public:
  explicit ByteWriter(std::string& bytes) : m_bytes(bytes) {}

  template <std::unsigned_integral T>
  void Put(T value) {
    for (std::size_t i = 0; i < sizeof(T); ++i) m_bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
  }
  void Put(std::string_view bytes) { m_bytes.append(bytes); }
  /// The length in `Length` bytes, then the bytes.
  template <std::unsigned_integral Length>
  void PutCounted(std::string_view bytes) {
    Put(static_cast<Length>(bytes.size()));
    Put(bytes);
  }

 private:
  std::string& m_bytes;
};

/// Reads bytes, never beyond their end: from there on everything is 0 or empty, and IsGood is false.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : m_rest(bytes) {}

  template <std::unsigned_integral T>
  T Get() {
    const std::string_view bytes = Get(sizeof(T));
    T value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      value = static_cast<T>(value | (T{static_cast<unsigned char>(bytes[i])} << (8 * i)));
    }
    return value;
  }
  std::string_view Get(std::size_t size) {
    if (size > m_rest.size()) {
      m_good = false;
      m_rest = {};
      return {};
    }
    const std::string_view bytes = m_rest.substr(0, size);
    m_rest.remove_prefix(size);
    return bytes;
  }
  template <std::unsigned_integral Length>
  std::string_view GetCounted() {
    return Get(std::size_t{Get<Length>()});
  }

  bool IsGood() const { return m_good; }
  /// Whether everything was there and nothing is left.
  bool IsDone() const { return m_good && m_rest.empty(); }
  std::size_t Left() const { return m_rest.size(); }

 private:
  std::string_view m_rest;
  bool m_good = true;
};

}  // namespace dtsdb::relay
