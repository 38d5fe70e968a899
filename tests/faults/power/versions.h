/// \file
/// A file, folder or database that is written again and again, each time with another version of the same things: what
/// stands there shows which version it is, and whether it is a whole one.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

class dbDatabase;

namespace dtsdb::test {

enum class Kept { kObjectFile, kTextTables, kStore };

/// The name of each kind, which is also the name of what is written.
const char* NameOf(Kept kept);

/// Writes versions. A database stays open meanwhile.
class VersionWriter {
 public:
  /// Writes in `folder`.
  VersionWriter(Kept kept, const std::filesystem::path& folder);
  VersionWriter(const VersionWriter&) = delete;
  VersionWriter& operator=(const VersionWriter&) = delete;
  ~VersionWriter();

  /// Writes version `version`, a number from 1 on. Throws std::runtime_error when that fails.
  void Write(int version);

 private:
  void WriteRows(int version);

  Kept m_kept;
  std::filesystem::path m_path;
  std::unique_ptr<dbDatabase> m_database;
};

/// What stands there.
struct FoundVersion {
  int version = 0;    ///< 0: nothing
  std::string wrong;  ///< why it is no whole version, or empty
};
FoundVersion ReadVersion(Kept kept, const std::filesystem::path& folder);

}  // namespace dtsdb::test
