/// \file
/// Whole files, byte for byte.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace dtsdb::test {

/// The bytes of a file; empty when it can't be read.
inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Writes a file anew.
inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace dtsdb::test
