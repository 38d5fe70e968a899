/// \file
/// Numbers of an object file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dtsdb::tools {

/// The number of 4 bytes at `at`, which must be in `bytes`.
inline std::uint32_t BigEndian32(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < sizeof(number); ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

}  // namespace dtsdb::tools
