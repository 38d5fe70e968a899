/// \file
/// Files and folders, with failures told in one line.
#pragma once

#include <QString>
#include <filesystem>
#include <string>

namespace dtsdb::tools {

/// A path as Qt takes it.
QString QtPath(const std::filesystem::path& path);

/// The bytes of a file. Throws Failure when it can't be read.
std::string ReadFile(const std::filesystem::path& path);

/// Makes a file with `bytes`. Throws Failure when it can't be written.
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

/// Refuses to go on because of the file or folder `path`.
[[noreturn]] void RefuseFile(const std::filesystem::path& path, const std::string& what);

/// A new folder beside another one, under a hidden name; removed with all that is in it unless moved away.
class SiblingFolder {
 public:
  explicit SiblingFolder(const std::filesystem::path& beside);
  SiblingFolder(const SiblingFolder&) = delete;
  SiblingFolder& operator=(const SiblingFolder&) = delete;
  ~SiblingFolder();

  const std::filesystem::path& Path() const { return m_path; }

  /// Makes this folder take the place of `target`, which is a folder or doesn't exist. Throws Failure, and leaves
  /// `target` as it was, when that can't be done.
  void TakePlaceOf(const std::filesystem::path& target);

 private:
  std::filesystem::path m_path;
};

/// Makes a new temporary folder the current one for as long as it lives, for what writes files where it stands.
class TemporaryCurrentFolder {
 public:
  TemporaryCurrentFolder();
  TemporaryCurrentFolder(const TemporaryCurrentFolder&) = delete;
  TemporaryCurrentFolder& operator=(const TemporaryCurrentFolder&) = delete;
  ~TemporaryCurrentFolder();

 private:
  std::filesystem::path m_before;
  std::filesystem::path m_path;
};

}  // namespace dtsdb::tools
