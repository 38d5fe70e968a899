/// \file
/// Folders replaced as a whole: at every moment the old one or the new one is there.
#pragma once

#include <filesystem>
#include <string>

#include "formats/temporary_folder.h"

namespace dtsdb::tools {

/// A new folder beside a target, under a hidden name, that is to take the target's place.
///
/// The two are exchanged in one step. Where the file system can't do that, the old one first goes to .NAME.dtsdb-was
/// and then the new one to its place. A process that is killed between these two steps leaves only .NAME.dtsdb-was;
/// RecoverFolder puts it back.
class FolderReplacement {
 public:
  /// Makes the folder, with the permissions of `target` where that exists. `target` is a path without links. Recovers
  /// it first. Throws Failure when that can't be done.
  explicit FolderReplacement(const std::filesystem::path& target);

  /// The folder to fill.
  const std::filesystem::path& Path() const { return m_folder.Path(); }

  /// Makes a file in it. Throws Failure when it can't be written.
  void Write(const std::string& name, const std::string& bytes) const;

  /// Makes it take the place of the target when all of it is on the disk; the files of the target are removed when the
  /// disk has the new place, too. Throws Failure, and leaves the target as it was, when that can't be done.
  void TakePlace();

 private:
  std::filesystem::path m_target;
  TemporaryFolder m_folder;
};

/// Ends what a killed process has left halfway of replacing `target`, a path without links: puts the old folder back
/// when there is none in its place, else removes it. What a living process has halfway is waited for.
void RecoverFolder(const std::filesystem::path& target);

}  // namespace dtsdb::tools
