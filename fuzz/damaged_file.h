/// \file
/// Files that bytes choose: any, or a good one with damage in single places.
#pragma once

#include <cstddef>
#include <string>

#include "fuzz/byte_source.h"

namespace dtsdb::fuzz {

/// The first byte chooses: an even one makes the rest the file; an odd one takes `good`, which isn't empty, and the
/// rest, cut into five bytes each, puts single bytes at places of it.
inline std::string AnyFile(ByteSource bytes, const std::string& good) {
  if (bytes.Byte() % 2 == 0) return std::string(bytes.Rest());
  std::string file = good;
  while (!bytes.IsEmpty()) {
    std::size_t place = 0;
    for (int i = 0; i < 4; ++i) place = place * 256 + static_cast<std::size_t>(bytes.Byte());
    file[place % file.size()] = static_cast<char>(bytes.Byte());
  }
  return file;
}

}  // namespace dtsdb::fuzz
