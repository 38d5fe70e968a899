#include "rtdb/internal/lock_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "include/write_whole.h"

namespace dtsdb::internal::rtdb {
namespace {

/// What stands at the end of a lock file. Smaller than one of LMDB's records of a reader, so that LMDB, which takes
/// as many readers as the file has room for, leaves it alone.
struct Owner {
  char word[8] = {'r', 't', 'd', 'b', 'l', 'o', 'c', 'k'};
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
};
constexpr off_t kReaderSize = 64;
/// More than a thousand readers and LMDB's own head, within whole pages.
constexpr off_t kOwnerOffset = 65536 - kReaderSize;
constexpr off_t kLockFileSize = kOwnerOffset + static_cast<off_t>(sizeof(Owner));
static_assert(sizeof(Owner) < kReaderSize && kOwnerOffset % kReaderSize == 0);

class Preparation {
 public:
  Preparation(StoreFile& store, const std::function<bool(FileId)>& usedHere)
      : m_store(store), m_path(store.LockPath()), m_usedHere(usedHere), m_user(store.MarkedBy()) {}

  LockOutcome Run() {
    const auto found = IdOf(m_path);
    if (!found) return m_user != 0 ? UsedElsewhere() : Make();
    if (m_usedHere(*found)) return m_user != 0 ? UsedElsewhere() : Replace();
    const Descriptor lock(::open(m_path.c_str(), O_RDWR | O_CLOEXEC));
    if (!lock.IsOpen()) return Failed(errno);
    return Take(lock.Get());
  }

 private:
  enum class Belongs { kHere, kElsewhere, kUnknown };

  LockOutcome Take(int lock) {
    const pid_t holder = HolderOf(lock);
    Belongs belongs = OwnerOf(lock);
    if (m_user != 0) {
      const bool shared = holder != 0 && belongs != Belongs::kElsewhere && !m_store.IsEmpty();
      return shared ? Note(lock) : UsedElsewhere();
    }
    // Nobody has this file open. Whoever holds the lock file has a store that stood here before; without an owner in
    // it, it may also be in use by one of LMDB's own programs.
    if (m_store.IsEmpty()) belongs = Belongs::kElsewhere;
    if (holder == 0) return belongs == Belongs::kHere && HasItsRoom(lock) ? Note(lock) : Fill(lock);
    return belongs == Belongs::kElsewhere ? Replace() : Note(lock);
  }

  /// The process that holds the lock by which LMDB knows whether a lock file is in use, or 0.
  static pid_t HolderOf(int lock) {
    struct flock held {};
    held.l_type = F_WRLCK;
    held.l_whence = SEEK_SET;
    held.l_len = 1;
    return ::fcntl(lock, F_GETLK, &held) == 0 && held.l_type != F_UNLCK ? held.l_pid : 0;
  }

  Owner OwnerHere() const {
    Owner owner;
    owner.device = m_store.Id().device;
    owner.inode = m_store.Id().inode;
    return owner;
  }

  Belongs OwnerOf(int lock) const {
    const Owner here = OwnerHere();
    Owner found;
    if (ReadWhole(lock, &found, sizeof(found), kOwnerOffset) != static_cast<ssize_t>(sizeof(found)) ||
        std::memcmp(found.word, here.word, sizeof(here.word)) != 0) {
      return Belongs::kUnknown;
    }
    return found.device == here.device && found.inode == here.inode ? Belongs::kHere : Belongs::kElsewhere;
  }

  LockOutcome Make() {
    // One who can't write the store must not make a lock file: it would be his, and lock out those who can.
    if (!m_store.MayWrite()) return Failed(EACCES);
    const Descriptor lock(::open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
    return lock.IsOpen() ? Fill(lock.Get()) : Failed(errno);
  }

  /// Leaves the lock file to the programs that use it, without a name.
  LockOutcome Replace() { return ::unlink(m_path.c_str()) == 0 ? Make() : Failed(errno); }

  static bool HasItsRoom(int lock) {
    struct stat about {};
    return ::fstat(lock, &about) == 0 && about.st_size == kLockFileSize && about.st_blocks * 512 >= about.st_size;
  }

  /// Gives a lock file that nobody uses its room on the disk: LMDB writes to it through memory, where a full disk
  /// kills the process. LMDB makes all of it anew but the owner.
  LockOutcome Fill(int lock) {
    if (::ftruncate(lock, 0) != 0) return Failed(errno);
    if (const int error = ::posix_fallocate(lock, 0, kLockFileSize); error != 0) return Failed(error);
    const Owner owner = OwnerHere();
    if (const int error = WriteWhole(lock, &owner, sizeof(owner), kOwnerOffset); error != 0) return Failed(error);
    return Note(lock);
  }

  LockOutcome Note(int lock) {
    // A descriptor of this kind can be closed without an end to the locks that LMDB will have.
    Descriptor look(::open(m_path.c_str(), O_PATH | O_CLOEXEC));
    const auto id = look.IsOpen() ? IdOf(look.Get()) : std::nullopt;
    if (!id) return Failed(errno);
    if (id != IdOf(lock)) return Failed(ESTALE);
    m_store.SetLockFile(std::move(look));
    return {};
  }

  LockOutcome UsedElsewhere() const {
    return {OpenRefused(m_store.Name(), "process " + std::to_string(m_user) +
                                            " has the store open with another lock file than " + m_path +
                                            "; end the programs that use the store")};
  }

  LockOutcome Failed(int error) const {
    return {OpenRefused(m_path, std::strerror(error)), error == EACCES || error == EPERM || error == EROFS};
  }

  StoreFile& m_store;
  std::string m_path;
  const std::function<bool(FileId)>& m_usedHere;
  pid_t m_user;
};

}  // namespace

LockOutcome PrepareLockFile(StoreFile& store, const std::function<bool(FileId)>& usedHere) {
  return Preparation(store, usedHere).Run();
}

}  // namespace dtsdb::internal::rtdb
