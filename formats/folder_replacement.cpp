#include "formats/folder_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>

#include "formats/files.h"
#include "include/write_whole.h"
#include "model/whole_file.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

/// Another program may make or remove the target between two steps: then all is tried again, so many times.
constexpr int kAttempts = 100;
constexpr std::chrono::milliseconds kPause(1);

fs::path OldPlace(const fs::path& target) {
  return target.parent_path() / ("." + target.filename().string() + ".dtsdb-was");
}

mode_t ModeFor(const fs::path& target) {
  struct stat status {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  return exists ? status.st_mode & 07777U : 0777U;
}

/// Renames one folder. Returns the error number, 0 for none. `flags` are those of renameat2.
int Rename(const fs::path& from, const fs::path& to, unsigned flags = 0) {
  const int result = flags == 0 ? ::rename(from.c_str(), to.c_str())
                                : ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags);
  return result == 0 ? 0 : errno;
}

bool IsUnsupported(int error) { return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP; }
bool IsTaken(int error) { return error == ENOTEMPTY || error == EEXIST; }

/// Puts the old folder back, or removes it when another one has its place. False when it is locked: then another
/// process is replacing the target.
bool PutBack(const fs::path& target) {
  const fs::path old = OldPlace(target);
  const FolderLock lock(old);
  if (lock.IsHeldElsewhere()) return false;
  if (lock.Folder().IsOpen() && IsTaken(Rename(old, target))) RemoveFolder(old.c_str());
  return true;
}

/// Renames a folder, and back when the disk can't take it up: nothing may be removed that a power failure brings back.
int MoveForGood(const fs::path& from, const fs::path& to, unsigned flags = 0) {
  if (const int error = Rename(from, to, flags); error != 0) return error;
  const int error = SyncFolder(to.parent_path().string());
  if (error != 0) Rename(to, from, flags);
  return error;
}

/// Replaces the target in two steps.
int ReplaceInSteps(const fs::path& folder, const fs::path& target) {
  PutBack(target);
  const fs::path old = OldPlace(target);
  int error = 0;
  {
    const FolderLock lock(target);  // goes along to the old place
    const int moved = Rename(target, old);
    if (moved != 0 && moved != ENOENT) return moved;
    error = MoveForGood(folder, target);
    if (error == 0 && moved == 0) RemoveFolder(old.c_str());
  }
  if (error != 0) PutBack(target);
  return error;
}

/// One attempt. Returns the error number, 0 for none.
int Replace(const fs::path& folder, const fs::path& target) {
  const int exchanged = MoveForGood(folder, target, RENAME_EXCHANGE);
  if (exchanged == ENOENT) return MoveForGood(folder, target);  // nothing stands there
  return IsUnsupported(exchanged) ? ReplaceInSteps(folder, target) : exchanged;
}

fs::path Recovered(const fs::path& target) {
  RecoverFolder(target);
  return target;
}

}  // namespace

void RecoverFolder(const fs::path& target) {
  const auto recover = [&target] {
    const SignalsHeld held;
    return PutBack(target);
  };
  for (int i = 0; i < kAttempts && !recover(); ++i) std::this_thread::sleep_for(kPause);
}

FolderReplacement::FolderReplacement(const fs::path& target)
    : m_target(Recovered(target)),
      m_folder(target.parent_path(), "." + target.filename().string() + ".", ModeFor(target), target) {}

void FolderReplacement::Write(const std::string& name, const std::string& bytes) const {
  QFile file(QtPath(Path() / name));
  const auto size = static_cast<qint64>(bytes.size());
  const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.flush();
  const auto refuse = [&](const std::string& why) { RefuseFile(m_target / name, "can't be written: " + why); };
  if (!isWritten) refuse(file.errorString().toStdString());
  if (const int error = SyncFile(file.handle()); error != 0) refuse(std::generic_category().message(error));
}

void FolderReplacement::TakePlace() {
  const SignalsHeld held;
  int error = SyncFolder(Path().string());
  if (error == 0) error = ENOTEMPTY;
  for (int i = 0; i < kAttempts && (IsTaken(error) || error == ENOENT); ++i) error = Replace(Path(), m_target);
  if (error != 0) RefuseFile(m_target, "can't be replaced: " + std::generic_category().message(error));
}

}  // namespace dtsdb::tools
