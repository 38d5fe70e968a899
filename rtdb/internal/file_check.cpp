#include "rtdb/internal/file_check.h"

#include <fcntl.h>
#include <lmdb.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include "include/write_whole.h"
#include "rtdb/internal/page_walk.h"
#include "rtdb/internal/store_file.h"

namespace dtsdb::internal::rtdb {
namespace {

using namespace format;

constexpr char kForeign[] = "not a store of the realtime database";
constexpr char kOtherVersion[] = "written by another version of LMDB";
constexpr char kDamaged[] = "the store is damaged; put a copy of it in its place";
constexpr char kUnfinished[] = "empty, since the program that made it was stopped in between; remove it";
constexpr char kOvertaken[] = "other programs write too fast for a look at its pages";
constexpr char kOtherFile[] = "other programs still use the store that was here before; close it there first";

/// A fault may be a head that another program writes at this moment. It is one of the file if it is still there later.
constexpr int kLooks = 2;
/// Attempts where other programs have come in between for sure.
constexpr int kPatientLooks = 100;

void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

/// The file in memory, for reading.
class Mapping {
 public:
  Mapping(int fd, std::size_t size) : m_bytes(::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd, 0)), m_size(size) {}
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;
  ~Mapping() {
    if (Done()) ::munmap(m_bytes, m_size);
  }
  bool Done() const { return m_bytes != MAP_FAILED; }
  const char* Bytes() const { return static_cast<const char*>(m_bytes); }
  std::size_t Size() const { return m_size; }

 private:
  void* m_bytes;
  std::size_t m_size;
};

bool ReadHead(int fd, std::uint64_t offset, Head& head) {
  return ReadWhole(fd, &head, sizeof(head), static_cast<off_t>(offset)) == static_cast<ssize_t>(sizeof(head));
}

bool HasMagic(int fd, std::uint64_t offset) {
  Head head;
  return ReadHead(fd, offset, head) && head.magic == kMagic;
}

/// Reads both heads as they stood at one moment. False if they can't be read.
bool ReadHeads(int fd, Heads& heads) {
  Heads before{};
  for (int attempt = 0; attempt < kPatientLooks; ++attempt) {
    if (!ReadHead(fd, 0, heads[0]) || !ReadHead(fd, heads[0].free.pad, heads[1])) return false;
    if (attempt > 0 && std::memcmp(&heads, &before, sizeof(heads)) == 0) return true;
    before = heads;
  }
  return false;
}

std::uint64_t PutBackPlace(const Head& head) { return head.number * head.free.pad + kPutBackOffset; }

/// Whether `note` marks the older head as what LMDB leaves where the disk refuses a head: the old number and the trees
/// of the refused commit. Nothing in it is used.
bool Marks(const PutBack& note, const Head& older) {
  const bool isFirst = older.transaction == 0 && older.number == 1;
  PutBack expected;
  expected.transaction = isFirst ? 1 : older.transaction + 2;
  return std::memcmp(&note, &expected, sizeof(note)) == 0;
}

bool IsRefused(int fd, const Head& older) {
  PutBack note;
  const auto place = static_cast<off_t>(PutBackPlace(older));
  return ReadWhole(fd, &note, sizeof(note), place) == static_cast<ssize_t>(sizeof(note)) && Marks(note, older);
}

bool IsRefused(std::string_view file, const Head& older) {
  const std::uint64_t place = PutBackPlace(older);
  if (file.size() < sizeof(PutBack) || place > file.size() - sizeof(PutBack)) return false;
  return Marks(Get<PutBack>(file.data() + place), older);
}

/// Whether both heads are plausible for a file of this size, and are those of two transactions in a row. Transaction N
/// writes head N % 2, and the size and the last page never shrink. The disk may have refused the older one.
bool SoundHeads(const Heads& heads, std::uint64_t size, bool isOlderRefused) {
  if (heads[0].number != 0 || heads[1].number != 1 || heads[0].free.pad != heads[1].free.pad) return false;
  const Head& newest = NewestOf(heads);
  const Head& older = OlderOf(heads);
  if (!SoundHead(newest, size) || !(isOlderRefused || SoundHead(older, size))) return false;
  if (newest.transaction == 0) return true;
  return newest.transaction == older.transaction + 1 && heads[1].transaction % 2 == 1 &&
         newest.mapSize >= older.mapSize && newest.lastPage >= older.lastPage;
}

/// Each transaction but the first frees pages, and notes them in its free tree. So a damaged number doesn't fit its own
/// free tree, and a state can't pass for an older one.
bool FitsItsTransaction(const char* file, std::size_t size, const Head& head) {
  const auto last = PageWalk(file, size, head).LastFreeing();
  return last && (*last == head.transaction || (head.transaction <= 1 && *last == 0));
}

/// The state before the newest is read by nobody, so its pages are not looked through. After a power failure some may
/// have been written over. But a newest state whose number was lowered must not pass for it: the last commit would be
/// lost without a word. One that the disk refused, which was reported, is noted.
bool CanBeOlder(std::string_view file, const Head& head) {
  if (IsRefused(file, head)) return true;
  const auto last = PageWalk(file.data(), file.size(), head).LastFreeing();
  return last != head.transaction + 2;
}

/// Whether LMDB can work on the state of `transaction`, and on the one that the other head names.
bool SoundState(std::string_view file, const Heads& heads, std::uint64_t transaction) {
  if (!SoundHeads(heads, file.size(), IsRefused(file, OlderOf(heads)))) return false;
  const Head& head = heads[transaction % 2];
  const Head& other = heads[1 - transaction % 2];
  if (!FitsItsTransaction(file.data(), file.size(), head) || !PageWalk(file.data(), file.size(), head).Sound()) {
    return false;
  }
  // Pages of the states beside ours stay as they are while our transaction is open.
  return other.transaction > transaction ? FitsItsTransaction(file.data(), file.size(), other)
                                         : CanBeOlder(file, other);
}

/// What a look at the state of a read transaction found.
struct Look {
  bool overtaken = false;  ///< writers have overwritten the state's head since
  std::uint64_t newest = 0;
  std::string wrong;
};

Look LookAtPages(MDB_env* env, MDB_txn* transaction) {
  mdb_filehandle_t fd;
  mdb_env_get_fd(env, &fd);
  const std::uint64_t number = mdb_txn_id(transaction);
  Look look;
  Heads heads;
  if (!ReadHeads(fd, heads)) return {.wrong = kDamaged};
  look.newest = NewestOf(heads).transaction;
  look.overtaken = heads[number % 2].transaction != number;
  if (look.overtaken) return look;
  struct stat about {};
  if (::fstat(fd, &about) != 0) return {.wrong = std::strerror(errno)};
  const Mapping file(fd, static_cast<std::size_t>(about.st_size));
  if (!file.Done()) return {.wrong = std::strerror(errno)};
  if (!SoundState({file.Bytes(), file.Size()}, heads, number)) look.wrong = kDamaged;
  return look;
}

/// Begins a read transaction, following the size that another program may have given the store meanwhile.
int BeginLook(MDB_env* env, MDB_txn*& transaction) {
  const int result = mdb_txn_begin(env, nullptr, MDB_RDONLY, &transaction);
  if (result != MDB_MAP_RESIZED || mdb_env_set_mapsize(env, 0) != MDB_SUCCESS) return result;
  return mdb_txn_begin(env, nullptr, MDB_RDONLY, &transaction);
}

/// Whether a page, as far as it is there, is nothing but a head of transaction 0, or nothing but zeros.
bool IsNewPage(const char* page, std::size_t size, bool& isHead) {
  const auto isZero = [](char byte) { return byte == 0; };
  if (std::all_of(page, page + size, isZero)) return true;
  if (size < sizeof(Head) || !std::all_of(page + sizeof(Head), page + size, isZero)) return false;
  const auto head = Get<Head>(page);
  isHead = true;
  return head.magic == kMagic && head.pageFlags == kMeta && head.transaction == 0;
}

/// The file's head as it is now: what is wrong with it, or null.
const char* LookAtHeads(int fd, std::uint64_t size) {
  Head first;
  const auto usualPage = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
  if (IsUnfinished(fd)) return kUnfinished;
  const bool known = ReadHead(fd, 0, first) && first.magic == kMagic;
  if (!known) return HasMagic(fd, usualPage) ? kDamaged : kForeign;
  Heads heads;
  if (!ReadHeads(fd, heads)) return kDamaged;
  if (heads[0].version != kVersion && heads[0].version == heads[1].version) return kOtherVersion;
  return SoundHeads(heads, size, IsRefused(fd, OlderOf(heads))) ? nullptr : kDamaged;
}

}  // namespace

void NoteRefusedHead(MDB_env* env, std::uint64_t transaction) {
  MDB_stat about{};
  mdb_filehandle_t file = -1;
  if (mdb_env_stat(env, &about) != MDB_SUCCESS || mdb_env_get_fd(env, &file) != MDB_SUCCESS) return;
  PutBack refused;
  refused.transaction = transaction;
  const std::uint64_t page = transaction % 2 * about.ms_psize;
  // Where this is refused, too, the next opening refuses the store.
  if (WriteWhole(file, &refused, sizeof(refused), static_cast<off_t>(page + kPutBackOffset)) == 0) ::fdatasync(file);
}

bool IsUnfinished(int fd) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  std::vector<char> bytes(2 * page + 1);
  const ssize_t size = ReadWhole(fd, bytes.data(), bytes.size(), 0);
  if (size <= 0 || static_cast<std::size_t>(size) > 2 * page) return false;
  const std::size_t first = std::min(page, static_cast<std::size_t>(size));
  bool isFirst = false;
  bool isSecond = false;
  return IsNewPage(bytes.data(), first, isFirst) &&
         IsNewPage(bytes.data() + page, static_cast<std::size_t>(size) - first, isSecond) && !(isFirst && isSecond);
}

std::string CheckFileHead(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  const char* wrong = nullptr;
  for (int look = 0; look < (wrong == kUnfinished ? kPatientLooks : kLooks); ++look) {
    if (look > 0) Pause();
    struct stat about {};
    if (!file.IsOpen() || ::fstat(file.Get(), &about) != 0) return std::strerror(errno);
    if (!S_ISREG(about.st_mode)) return kForeign;
    if (about.st_size == 0) return {};
    wrong = LookAtHeads(file.Get(), static_cast<std::uint64_t>(about.st_size));
    if (wrong == nullptr) return {};
  }
  return wrong;
}

std::string CheckPages(MDB_env* env) {
  int faults = 0;
  bool written = false;
  std::uint64_t newest = 0;
  for (int attempt = 0; attempt < kPatientLooks; ++attempt) {
    MDB_txn* transaction = nullptr;
    const int result = BeginLook(env, transaction);
    if (result != MDB_SUCCESS) return mdb_strerror(result);
    const Look look = LookAtPages(env, transaction);
    mdb_txn_abort(transaction);
    if (!look.overtaken) {
      if (look.wrong.empty() || ++faults == kLooks) return look.wrong;
      Pause();
    }
    written = written || (attempt > 0 && look.newest != newest);
    newest = look.newest;
  }
  // Nobody writes this file, yet the lock file names a transaction that it does not have.
  return written ? kOvertaken : kOtherFile;
}

std::string CheckBytes(std::string_view file) {
  if (file.size() < sizeof(Head)) return kForeign;
  Heads heads{};
  heads[0] = Get<Head>(file.data());
  if (heads[0].magic != kMagic) return kForeign;
  const std::size_t second = heads[0].free.pad;
  if (second > file.size() || file.size() - second < sizeof(Head)) return kDamaged;
  heads[1] = Get<Head>(file.data() + second);
  return SoundState(file, heads, NewestOf(heads).transaction) ? "" : kDamaged;
}

std::string CheckWholeFile(int file) {
  struct stat about {};
  if (::fstat(file, &about) != 0) return std::strerror(errno);
  if (about.st_size == 0) return kForeign;
  const Mapping mapping(file, static_cast<std::size_t>(about.st_size));
  return mapping.Done() ? CheckBytes({mapping.Bytes(), mapping.Size()}) : std::strerror(errno);
}

}  // namespace dtsdb::internal::rtdb
