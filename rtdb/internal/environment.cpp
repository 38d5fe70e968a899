#include "rtdb/internal/environment.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "include/internal/new_file.h"
#include "include/internal/standard_streams.h"
#include "rtdb/internal/file_check.h"
#include "rtdb/internal/lock_file.h"
#include "rtdb/internal/snapshot.h"
#include "rtdb/internal/store.h"
#include "rtdb/internal/store_copy.h"

namespace dtsdb::internal::rtdb {
namespace {

constexpr MDB_dbi kMaxTables = 512;
constexpr unsigned kMaxReaders = 1000;
constexpr std::size_t kLargestMap = sizeof(void*) > 4 ? std::size_t{1} << 36 : std::size_t{1} << 30;
constexpr std::size_t kSmallestMap = std::size_t{1} << 26;
constexpr int kAttempts = 10;

/// On a memory file system there is nothing to wait for. On a disk a commit waits for its rows but not for the head
/// that makes them the newest state: a power failure may lose the last commit, never more.
unsigned SyncFlag(int file) {
  struct statfs about {};
  if (::fstatfs(file, &about) != 0) return MDB_NOMETASYNC;
  const bool memory = about.f_type == TMPFS_MAGIC || about.f_type == RAMFS_MAGIC;
  return memory ? MDB_NOSYNC : MDB_NOMETASYNC;
}

/// LMDB calls a write that a full disk cut short an input/output error.
int WithoutSpaceNamed(int result, int file) {
  struct statfs about {};
  if (result != EIO || ::fstatfs(file, &about) != 0) return result;
  constexpr auto kNextToNothing = 65536;
  return about.f_bavail * static_cast<std::uint64_t>(about.f_bsize) < kNextToNothing ? ENOSPC : result;
}

}  // namespace

/// The environments of this process by file. Never destroyed: databases may be closed late.
struct Environment::Registry {
  std::mutex mutex;
  std::map<FileId, Environment*> files;

  Environment* Find(const std::string& path) const {
    const auto id = IdOf(path);
    const auto found = id ? files.find(*id) : files.end();
    return found != files.end() && found->second->OfThisProcess() ? found->second : nullptr;
  }
  bool UsesLock(FileId lock) const {
    return std::any_of(files.begin(), files.end(), [lock](const auto& file) {
      return file.second->OfThisProcess() && file.second->m_file.LockFile() == lock;
    });
  }
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
  const auto found = known.files.find(environment->m_file.Id());
  if (found != known.files.end() && found->second == environment) known.files.erase(found);
  delete environment;
}

std::shared_ptr<Environment> Environment::Open(const std::string& path, bool readOnly, std::size_t sizeLimit,
                                               Status& status) {
  Registry& known = Known();
  const std::lock_guard lock(known.mutex);
  if (Environment* environment = known.Find(path)) return Share(environment);
  std::unique_ptr<Environment, void (*)(Environment*)> opened(new Environment, [](Environment* e) { delete e; });
  status = opened->OpenFile(path, readOnly, sizeLimit);
  if (!status) return nullptr;
  if (!opened->m_isCopy) known.files[opened->m_file.Id()] = opened.get();
  return Share(opened.release());
}

Environment::~Environment() { CloseFile(); }

void Environment::CloseFile() {
  // A forked process must leave its parent's environment alone.
  if (m_env != nullptr && OfThisProcess()) mdb_env_close(m_env);
  m_env = nullptr;
}

bool Environment::OfThisProcess() const { return m_process == ::getpid(); }

/// Programs that remove or replace the file meanwhile cause another attempt.
Status Environment::OpenFile(const std::string& path, bool readOnly, std::size_t sizeLimit) {
  m_process = ::getpid();
  const StandardStreamsKept kept;
  Status status;
  bool retry = true;
  for (int attempt = 0; retry && attempt < kAttempts; ++attempt) {
    CloseFile();
    m_file = StoreFile();
    status = m_file.Open(path, readOnly);
    if (!status) return status;
    bool copy = false;
    const bool exists = !m_file.IsEmpty();
    status = OpenShared(readOnly, sizeLimit, retry, copy);
    if (copy) return OpenCopy(sizeLimit);
    if (status && exists) status = CheckOpened();
  }
  return status;
}

/// Opens the file beside other programs. `retry` becomes true when the file has gone from its place meanwhile, `copy`
/// when this program can only read a copy.
Status Environment::OpenShared(bool readOnly, std::size_t sizeLimit, bool& retry, bool& copy) {
  retry = false;
  OpeningGuard guard(m_file.Fd());
  if (const int error = guard.Take(); error != 0) return OpenRefused(Path(), std::strerror(error));
  if (Status status = m_file.CheckPlace(); !status) {
    retry = true;
    return status;
  }
  if (Status status = m_file.CheckSingleName(); !status) return status;
  if (!readOnly) m_file.EmptyIfUnfinished();
  const bool isNew = m_file.IsEmpty();
  if (isNew && !m_file.MayWrite()) return OpenRefused(Path(), "a store without tables");
  LockOutcome lock = PrepareLockFile(m_file, [](FileId id) { return Known().UsesLock(id); });
  copy = readOnly && lock.noRight;
  Status status = std::move(lock.status);
  if (status) {
    m_readOnly = !m_file.MayWrite();
    const unsigned flags = m_readOnly ? static_cast<unsigned>(MDB_RDONLY) : SyncFlag(m_file.Fd());
    status = OpenChecked(m_file.RealPath(), sizeLimit, flags);
    // The heads of a new file are written once before the first commit, which doesn't wait for them.
    const int error = status && isNew && flags == MDB_NOMETASYNC ? m_file.SyncNew() : 0;
    if (error != 0) status = OpenRefused(Path(), std::strerror(error));
  }
  if (!status) {
    m_file.RemoveIfNew();
    return status;
  }
  const int error = m_file.Mark();
  if (error != 0) return OpenRefused(Path(), std::strerror(error));
  // What LMDB has opened by the paths is what the locks were made for.
  status = m_file.CheckPlace();
  if (status && IdOf(m_file.LockPath()) != m_file.LockFile()) {
    status = OpenRefused(m_file.LockPath(), "replaced while the store was opened");
  }
  retry = !status;
  return status;
}

/// Opens a copy of the store, for reading.
Status Environment::OpenCopy(std::size_t sizeLimit) {
  m_readOnly = true;
  m_isCopy = true;
  const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (std::chrono::steady_clock::now() < patience) {
    Snapshot snapshot;
    if (const int error = snapshot.Take(m_file.Fd()); error != 0) return OpenRefused(Path(), std::strerror(error));
    Status status = OpenChecked(snapshot.Path(), sizeLimit, MDB_RDONLY | MDB_NOLOCK);
    if (status && snapshot.IsWhole(m_env, m_file.Fd())) return CheckOpened();
    // What is wrong with a copy may come from a commit in between.
    if (!status && snapshot.IsNewest(m_file.Fd())) return status;
    CloseFile();
  }
  return OpenRefused(Path(),
                     "other programs write too fast for a copy of the store, which a reader takes that may not "
                     "write " +
                         m_file.LockPath() + "; give it the right to write that file");
}

Status Environment::OpenChecked(const std::string& path, std::size_t sizeLimit, unsigned flags) {
  std::string wrong = CheckFileHead(path);
  if (!wrong.empty()) return OpenRefused(Path(), wrong);
  std::size_t size = sizeLimit != 0 ? sizeLimit : kLargestMap;
  int result = 0;
  for (bool again = true; again;) {
    result = TryMapSize(path, size, flags);
    const bool isTooLarge = result == ENOMEM && sizeLimit == 0 && size > kSmallestMap;
    if (isTooLarge) size /= 2;
    again = isTooLarge || result == EINTR;
  }
  return result == MDB_SUCCESS ? Status() : OpenRefused(Path(), Reason(result));
}

Status Environment::CheckOpened() {
  int dead = 0;
  mdb_reader_check(m_env, &dead);
  const std::string wrong = CheckPages(m_env);
  return wrong.empty() ? Status() : OpenRefused(Path(), wrong);
}

int Environment::TryMapSize(const std::string& path, std::size_t size, unsigned flags) {
  int result = mdb_env_create(&m_env);
  if (result != MDB_SUCCESS) return result;
  mdb_env_set_maxdbs(m_env, kMaxTables);
  mdb_env_set_maxreaders(m_env, kMaxReaders);
  mdb_env_set_mapsize(m_env, size);
  result = mdb_env_open(m_env, path.c_str(), flags | MDB_NOSUBDIR | MDB_NOTLS, kFileMode);
  if (result != MDB_SUCCESS) {
    mdb_env_close(m_env);
    m_env = nullptr;
    return result;
  }
  // LMDB leaves this one of its descriptors open for programs that are started from this one.
  mdb_filehandle_t file = -1;
  if (mdb_env_get_fd(m_env, &file) == MDB_SUCCESS) ::fcntl(file, F_SETFD, FD_CLOEXEC);
  return MDB_SUCCESS;
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

/// Begins by `start`; `undo` ends what has begun on a file that others no longer see.
template <class Start, class Undo>
Status Environment::BeginWith(Start start, Undo undo) {
  if (!OfThisProcess()) {
    return Status::Error(dbErrors::DatabaseOpenError, Path() + ": opened before this process was forked; open it anew");
  }
  Beginning beginning(*this);
  int result = start();
  if (result == MDB_MAP_RESIZED && beginning.TakeNewSize()) result = start();
  if (result == MDB_READERS_FULL) {
    int dead = 0;
    mdb_reader_check(m_env, &dead);
    result = start();
  }
  // Looked at once the transaction has begun, since a writer may have waited for long.
  if (Status status = m_file.CheckPlace(); !status) {
    if (result == MDB_SUCCESS) undo();
    return status;
  }
  if (result != MDB_SUCCESS) return LmdbError(result, Path(), "begin of a transaction");
  beginning.Keep();
  return {};
}

Status Environment::Begin(bool write, MDB_txn*& transaction) {
  const auto undo = [&] { mdb_txn_abort(std::exchange(transaction, nullptr)); };
  if (!write) return BeginWith([&] { return mdb_txn_begin(m_env, nullptr, MDB_RDONLY, &transaction); }, undo);
  if (m_readOnly) return Status::Error(dbErrors::DatabaseReadOnly, Path() + ": may only be read");
  if (m_writer == std::this_thread::get_id()) {
    return Status::Error(dbErrors::Deadlock,
                         Path() + ": this thread already writes to the store through another database");
  }
  CheckReaders();
  Status status = BeginWith([&] { return mdb_txn_begin(m_env, nullptr, 0, &transaction); }, undo);
  if (status) m_writer = std::this_thread::get_id();
  return status;
}

Status Environment::Renew(MDB_txn* transaction) {
  return BeginWith([&] { return mdb_txn_renew(transaction); }, [&] { mdb_txn_reset(transaction); });
}

void Environment::Reset(MDB_txn* transaction) {
  if (!OfThisProcess()) return;
  mdb_txn_reset(transaction);
  Ended();
}

Status Environment::Commit(MDB_txn* transaction, bool write) {
  if (!OfThisProcess()) return {};
  if (write) m_writer = std::thread::id();
  const std::uint64_t number = mdb_txn_id(transaction);
  const int committed = mdb_txn_commit(transaction);
  if (write && committed > 0) NoteRefusedHead(m_env, number);
  const int result = WithoutSpaceNamed(committed, m_file.Fd());
  Ended();
  return result == MDB_SUCCESS ? Status() : LmdbError(result, Path(), "commit");
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

bool Environment::IsOpenHere(const std::string& path) {
  Registry& known = Known();
  const std::lock_guard lock(known.mutex);
  return known.Find(path) != nullptr;
}

Status Environment::CopyTo(const NewFile& copy, const std::string& target, bool compact) {
  const int file = copy.Fd();
  int result = MDB_MAP_RESIZED;
  for (int attempt = 0; result == MDB_MAP_RESIZED && attempt < kAttempts; ++attempt) {
    // While a transaction runs here no other one of the process follows a new size of the store under the copying.
    MDB_txn* held = nullptr;
    if (Status status = Begin(false, held); !status) return status;
    result = ::ftruncate(file, 0) == 0 && ::lseek(file, 0, SEEK_SET) == 0 ? MDB_SUCCESS : errno;
    if (result == MDB_SUCCESS) result = mdb_env_copyfd2(m_env, file, compact ? MDB_CP_COMPACT : 0);
    Abort(held, false);
  }
  if (result == MDB_SUCCESS && compact) {
    // A compact copy counts its transactions anew, and the numbers of rows follow them.
    MDB_envinfo info{};
    mdb_env_info(m_env, &info);
    result = AmendCopy(copy.Path(), (info.me_last_txnid + std::uint64_t{1}) * Store::kRowsPerTransaction);
  }
  result = WithoutSpaceNamed(result, file);
  return result == MDB_SUCCESS ? Status() : LmdbError(result, Path(), ("backup to " + target).c_str());
}

Status Environment::Copy(const std::string& target, bool compact) {
  if (m_writer == std::this_thread::get_id()) {
    return Status::Error(dbErrors::Deadlock, Path() +
                                                 ": this thread has changes that are not committed; commit before a "
                                                 "backup");
  }
  const StandardStreamsKept kept;
  const auto refused = [&](int error) {
    return Status::Error(dbErrors::FileError, Path() + ": backup to " + target + ": " + std::strerror(error));
  };
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(target, error);
  if (error) return refused(error.value());
  if (IdOf(place) == m_file.Id()) return Status::Error(dbErrors::FileError, target + ": is the store itself");
  NewFile copy(place.string());
  if (const int failed = copy.Make(kFileMode); failed != 0) return refused(failed);
  if (Status status = CopyTo(copy, target, compact); !status) return status;
  const int failed = copy.Replace();
  return failed == 0 ? Status() : refused(failed);
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

bool Environment::IsSharedHere() const {
  const std::lock_guard lock(Known().mutex);
  return m_users > 1;
}

bool SoleUse::Take(const Environment& file) {
  if (file.IsSharedHere()) return false;
  // Programs that open the file mark it while they have the guard.
  m_guard.emplace(file.m_file.Fd());
  if (m_guard->Take(std::chrono::milliseconds(0)) != 0 || file.m_file.MarkedBy() != 0) m_guard.reset();
  return Held();
}

}  // namespace dtsdb::internal::rtdb
