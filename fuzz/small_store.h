/// \file
/// A folder in memory for the store files of a fuzz target, and the bytes of a small store.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "fuzz/any_model.h"
#include "fuzz/require.h"
#include "rtdb/volma_rtdb.h"

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

  void Empty() const {
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) std::filesystem::remove_all(entry.path());
  }

 private:
  std::filesystem::path m_path;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// The bytes of a store with the small model.
inline std::string SmallStore() {
  const StoreFolder folder;
  dbDatabase database;
  Require(database.open(folder.File().c_str(), folder.File().c_str()), "the good store opens");
  DTSDB model;
  FillSmallModel(model);
  model.WriteFastdb(&database);
  database.close();
  return ReadFile(folder.File());
}

}  // namespace dtsdb::fuzz
