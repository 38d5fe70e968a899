#include "rtdb/environment.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>

#include "rtdb/file_check.h"

namespace dtsdb::rtdb {
namespace {

constexpr MDB_dbi kMaxTables = 512;
constexpr unsigned kMaxReaders = 1000;
/// Room for kMaxReaders: LMDB takes 64 bytes for each, and a head.
constexpr off_t kLockFileSize = 65536;
constexpr std::size_t kLargestMap = sizeof(void*) > 4 ? std::size_t{1} << 36 : std::size_t{1} << 30;
constexpr std::size_t kSmallestMap = std::size_t{1} << 26;
constexpr mode_t kFileMode = 0664;

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

/// On a memory file system there is nothing to wait for. On a disk a commit waits for its rows but not for the head
/// that makes them the newest state: a power failure may lose the last commit, never more.
unsigned SyncFlag(const std::string& path) {
  struct statfs about {};
  if (::statfs(FolderOf(path).c_str(), &about) != 0) return MDB_NOMETASYNC;
  const bool memory = about.f_type == TMPFS_MAGIC || about.f_type == RAMFS_MAGIC;
  return memory ? MDB_NOSYNC : MDB_NOMETASYNC;
}

/// LMDB calls a write that a full disk cut short an input/output error.
int WithoutSpaceNamed(int result, const std::string& path) {
  struct statfs about {};
  if (result != EIO || ::statfs(FolderOf(path).c_str(), &about) != 0) return result;
  constexpr auto kNextToNothing = 65536;
  return about.f_bavail * static_cast<std::uint64_t>(about.f_bsize) < kNextToNothing ? ENOSPC : result;
}

/// Gives the lock file its room on the disk. LMDB writes to it through memory, where a full disk kills the process.
/// A file that others may have open keeps its size.
int ReserveLockFile(const std::string& path) {
  const int fd = ::open((path + "-lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
  if (fd < 0) return errno;
  struct stat about {};
  int result = ::fstat(fd, &about) == 0 ? 0 : errno;
  const off_t size = about.st_size == 0 ? kLockFileSize : about.st_size;
  if (result == 0 && about.st_blocks * 512 < size) result = ::posix_fallocate(fd, 0, size);
  ::close(fd);
  return result;
}

Status Refused(const std::string& path, const std::string& why) {
  return Status::Error(dbDatabase::DatabaseOpenError, path + ": " + why);
}

}  // namespace

/// The environments of this process by file. Never destroyed: databases may be closed late.
struct Environment::Registry {
  std::mutex mutex;
  std::map<std::pair<dev_t, ino_t>, Environment*> files;
};

Environment::Registry& Environment::Known() {
  static auto* const registry = new Registry;
  return *registry;
}

std::shared_ptr<Environment> Environment::Share(Environment* environment) {
  ++environment->m_users;
  return {environment, &Environment::Release};
}

void Environment::Release(Environment* environment) {
  Registry& known = Known();
  const std::lock_guard lock(known.mutex);
  if (--environment->m_users > 0) return;
  const auto found = known.files.find(environment->m_id);
  if (found != known.files.end() && found->second == environment) known.files.erase(found);
  delete environment;
}

std::shared_ptr<Environment> Environment::Open(const std::string& path, bool readOnly, std::size_t sizeLimit,
                                               Status& status) {
  Registry& known = Known();
  const std::lock_guard lock(known.mutex);
  struct stat about {};
  const bool exists = ::stat(path.c_str(), &about) == 0;
  if (exists) {
    const auto found = known.files.find({about.st_dev, about.st_ino});
    if (found != known.files.end() && found->second->OfThisProcess()) return Share(found->second);
  } else if (readOnly || errno != ENOENT) {
    status = Refused(path, std::strerror(errno));
    return nullptr;
  }
  std::unique_ptr<Environment, void (*)(Environment*)> opened(new Environment(path), [](Environment* e) { delete e; });
  status = opened->OpenFile(exists, readOnly, sizeLimit);
  if (!status) return nullptr;
  if (::stat(path.c_str(), &about) != 0) {
    status = Refused(path, std::strerror(errno));
    return nullptr;
  }
  opened->m_id = {about.st_dev, about.st_ino};
  known.files[opened->m_id] = opened.get();
  return Share(opened.release());
}

Environment::~Environment() {
  // A forked process must leave its parent's environment alone.
  if (m_env != nullptr && OfThisProcess()) mdb_env_close(m_env);
}

bool Environment::OfThisProcess() const { return m_process == ::getpid(); }

Status Environment::OpenFile(bool exists, bool readOnly, std::size_t sizeLimit) {
  m_process = ::getpid();
  m_readOnly = readOnly && ::access(m_path.c_str(), W_OK) != 0;
  if (exists) {
    std::string wrong = CheckFileHead(m_path);
    if (!wrong.empty()) return Refused(m_path, wrong);
  }
  if (!exists && ::access(FolderOf(m_path).c_str(), F_OK) != 0) return Refused(m_path, "no such folder");
  int result = ReserveLockFile(m_path);
  if (result != 0) return Refused(m_path + "-lock", std::strerror(result));
  const unsigned flags = MDB_NOSUBDIR | MDB_NOTLS | (m_readOnly ? static_cast<unsigned>(MDB_RDONLY) : SyncFlag(m_path));
  std::size_t size = sizeLimit != 0 ? sizeLimit : kLargestMap;
  while ((result = TryMapSize(size, flags)) == ENOMEM && sizeLimit == 0 && size > kSmallestMap) size /= 2;
  if (result != MDB_SUCCESS) return Refused(m_path, Reason(result));
  int dead = 0;
  mdb_reader_check(m_env, &dead);
  if (exists) {
    std::string wrong = CheckPages(m_env);
    if (!wrong.empty()) return Refused(m_path, wrong);
  }
  return {};
}

int Environment::TryMapSize(std::size_t size, unsigned flags) {
  int result = mdb_env_create(&m_env);
  if (result != MDB_SUCCESS) return result;
  mdb_env_set_maxdbs(m_env, kMaxTables);
  mdb_env_set_maxreaders(m_env, kMaxReaders);
  mdb_env_set_mapsize(m_env, size);
  result = mdb_env_open(m_env, m_path.c_str(), flags, kFileMode);
  if (result != MDB_SUCCESS) {
    mdb_env_close(m_env);
    m_env = nullptr;
  }
  return result;
}

/// Counts a transaction that begins, and lets go of it unless it is kept.
class Environment::Beginning {
 public:
  explicit Beginning(Environment& environment) : m_environment(environment) {
    const std::lock_guard lock(m_environment.m_mutex);
    ++m_environment.m_active;
  }
  Beginning(const Beginning&) = delete;
  Beginning& operator=(const Beginning&) = delete;
  ~Beginning() {
    if (!m_kept) m_environment.Ended();
  }
  void Keep() { m_kept = true; }

  /// Another program has made the store larger: follows it, which no other transaction of the process may run beside.
  bool TakeNewSize() {
    const std::lock_guard lock(m_environment.m_mutex);
    return m_environment.m_active == 1 && mdb_env_set_mapsize(m_environment.m_env, 0) == MDB_SUCCESS;
  }

 private:
  Environment& m_environment;
  bool m_kept = false;
};

template <class Start>
Status Environment::BeginWith(Start start) {
  if (!OfThisProcess()) {
    return Status::Error(dbDatabase::DatabaseOpenError,
                         m_path + ": opened before this process was forked; open it anew");
  }
  Beginning beginning(*this);
  int result = start();
  if (result == MDB_MAP_RESIZED && beginning.TakeNewSize()) result = start();
  if (result == MDB_READERS_FULL) {
    int dead = 0;
    mdb_reader_check(m_env, &dead);
    result = start();
  }
  if (result != MDB_SUCCESS) return LmdbError(result, m_path, "begin of a transaction");
  beginning.Keep();
  return {};
}

Status Environment::Begin(bool write, MDB_txn*& transaction) {
  if (!write) return BeginWith([&] { return mdb_txn_begin(m_env, nullptr, MDB_RDONLY, &transaction); });
  if (m_readOnly) return Status::Error(dbDatabase::DatabaseReadOnly, m_path + ": may only be read");
  if (m_writer == std::this_thread::get_id()) {
    return Status::Error(dbDatabase::Deadlock,
                         m_path + ": this thread already writes to the store through another database");
  }
  CheckReaders();
  Status status = BeginWith([&] { return mdb_txn_begin(m_env, nullptr, 0, &transaction); });
  if (status) m_writer = std::this_thread::get_id();
  return status;
}

Status Environment::Renew(MDB_txn* transaction) {
  return BeginWith([&] { return mdb_txn_renew(transaction); });
}

void Environment::Reset(MDB_txn* transaction) {
  if (!OfThisProcess()) return;
  mdb_txn_reset(transaction);
  Ended();
}

Status Environment::Commit(MDB_txn* transaction, bool write) {
  if (!OfThisProcess()) return {};
  if (write) m_writer = std::thread::id();
  const int result = WithoutSpaceNamed(mdb_txn_commit(transaction), m_path);
  Ended();
  return result == MDB_SUCCESS ? Status() : LmdbError(result, m_path, "commit");
}

void Environment::Abort(MDB_txn* transaction, bool write) {
  if (!OfThisProcess()) return;
  if (write) m_writer = std::thread::id();
  mdb_txn_abort(transaction);
  Ended();
}

void Environment::Free(MDB_txn* transaction) const {
  if (OfThisProcess()) mdb_txn_abort(transaction);
}

void Environment::Ended() {
  const std::lock_guard lock(m_mutex);
  --m_active;
}

void Environment::CheckReaders() {
  // Pages that a killed reader has held come back to the writers within a second.
  using std::chrono::steady_clock;
  const auto now = steady_clock::now().time_since_epoch();
  const steady_clock::duration last(m_lastReaderCheck.load());
  if (now - last < std::chrono::seconds(1)) return;
  m_lastReaderCheck = now.count();
  int dead = 0;
  mdb_reader_check(m_env, &dead);
}

}  // namespace dtsdb::rtdb
