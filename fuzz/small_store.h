/// \file
/// A folder in memory for the store files of a fuzz target.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "fuzz/require.h"

namespace dtsdb::fuzz {

/// A folder in /dev/shm, where it exists, that is removed with it.
class StoreFolder {
 public:
  StoreFolder() {
    const bool hasMemory = std::filesystem::is_directory("/dev/shm");
    m_path = (hasMemory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path()) / "fuzz-XXXXXX";
    std::string name = m_path.string();
    Require(::mkdtemp(name.data()) != nullptr, "a folder for store files");
    m_path = name;
  }
  StoreFolder(const StoreFolder&) = delete;
  StoreFolder& operator=(const StoreFolder&) = delete;
  ~StoreFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  std::string File(const char* name = "store.fdb") const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};

}  // namespace dtsdb::fuzz
