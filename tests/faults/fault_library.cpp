// A library that is loaded before all others (LD_PRELOAD) and makes calls of the system fail, for tests. The
// environment describes what it does:
//
//   FAULT_FOLDER   only calls on files below this folder count; it is given as a path without links
//   FAULT_COUNTS   a file with room for CallCounts, mapped and counted in
//   FAULT_KIND     the number of a CallKind: calls of this kind fail
//   FAULT_AT       which of them fails, from 1 on; 0 for none
//   FAULT_ERROR    the number of the error; 0 for a write or read of fewer bytes than asked for
//   FAULT_STAYS    when set, all calls of the kind fail from that one on
//   FAULT_RECORD   a file that changes of the disk are written down in, see record.h
//
// Memory counts from main on: what fails before it the program can't answer for.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "tests/faults/record.h"

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

using dtsdb::test::CallCounts;
using dtsdb::test::CallKind;
using dtsdb::test::ChangeHead;
using dtsdb::test::ChangeKind;

/// The next function of this name, that of the C library.
template <class Function>
Function* Next(Function*& known, const char* name) {
  if (known == nullptr) known = reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
  return known;
}

/// What the environment asks for. Filled by the first call that needs it; nothing in it needs to be destroyed.
struct Plan {
  char folder[PATH_MAX] = {};
  std::size_t folderSize = 0;
  CallCounts* counts = nullptr;
  int kind = -1;
  long at = 0;
  int error = 0;
  bool stays = false;
  int record = -1;

  Plan() {
    const int before = errno;
    if (const char* text = std::getenv("FAULT_FOLDER")) {
      folderSize = std::min(std::strlen(text), sizeof folder - 1);
      std::memcpy(folder, text, folderSize);
    }
    kind = Number("FAULT_KIND", -1);
    at = Number("FAULT_AT", 0);
    error = Number("FAULT_ERROR", 0);
    stays = std::getenv("FAULT_STAYS") != nullptr;
    if (const char* path = std::getenv("FAULT_COUNTS")) MapCounts(path);
    if (const char* path = std::getenv("FAULT_RECORD")) OpenRecord(path);
    errno = before;
  }

  static int Number(const char* name, int none) {
    const char* const text = std::getenv(name);
    return text == nullptr ? none : std::atoi(text);
  }
  void MapCounts(const char* path);
  void OpenRecord(const char* path);
};

Plan& ThePlan() {
  static Plan plan;
  return plan;
}

int RealOpen(const char* path, int flags, mode_t mode) {
  static int (*next)(const char*, int, ...) = nullptr;
  return Next(next, "open64")(path, flags, mode);
}
ssize_t RealWrite(int file, const void* bytes, std::size_t size) {
  static ssize_t (*next)(int, const void*, std::size_t) = nullptr;
  return Next(next, "write")(file, bytes, size);
}
int RealClose(int file) {
  static int (*next)(int) = nullptr;
  return Next(next, "close")(file);
}

void Plan::MapCounts(const char* path) {
  const int file = RealOpen(path, O_RDWR | O_CLOEXEC, 0);
  static void* (*next)(void*, std::size_t, int, int, int, off64_t) = nullptr;
  void* const at_ = Next(next, "mmap64")(nullptr, sizeof(CallCounts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  RealClose(file);
  if (at_ != MAP_FAILED) counts = static_cast<CallCounts*>(at_);
}

/// Under a high number, so that the program's own descriptors are what they would be.
void Plan::OpenRecord(const char* path) {
  const int file = RealOpen(path, O_WRONLY | O_APPEND | O_CLOEXEC, 0);
  record = ::fcntl(file, F_DUPFD_CLOEXEC, 900);
  RealClose(file);
}

/// What an open descriptor or a path leads to, as a path.
class Place {
 public:
  explicit Place(int file) {
    char link[32];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    Take(::readlink(link, m_path, sizeof m_path - 1));
  }
  Place(int folder, const char* path) {
    if (path == nullptr) return;
    if (path[0] != '/') {
      if (folder == AT_FDCWD) {
        Take(::getcwd(m_path, sizeof m_path) == nullptr ? -1 : static_cast<ssize_t>(std::strlen(m_path)));
      } else {
        *this = Place(folder);
      }
      Add("/");
    }
    Add(path);
  }

  std::string_view Path() const { return {m_path, m_size}; }
  std::string_view Name() const { return Path().substr(Path().rfind('/') + 1); }
  bool IsBelow() const {
    const Plan& plan = ThePlan();
    return plan.folderSize != 0 && m_size >= plan.folderSize &&
           std::memcmp(m_path, plan.folder, plan.folderSize) == 0;
  }
  /// The inode of the folder that it is in, or 0.
  std::uint64_t Folder() const {
    char folder[PATH_MAX + 2];
    const std::size_t size = Path().rfind('/');
    std::memcpy(folder, m_path, size);
    folder[size] = '\0';
    struct stat about {};
    return ::stat(folder, &about) == 0 ? about.st_ino : 0;
  }
  std::uint64_t Inode() const {
    struct stat about {};
    return ::lstat(m_path, &about) == 0 ? about.st_ino : 0;
  }

 private:
  void Take(ssize_t size) {
    m_size = size > 0 ? static_cast<std::size_t>(size) : 0;
    m_path[m_size] = '\0';
  }
  void Add(const char* text) {
    const std::size_t size = std::min(std::strlen(text), sizeof m_path - 1 - m_size);
    std::memcpy(m_path + m_size, text, size);
    Take(static_cast<ssize_t>(m_size + size));
  }

  char m_path[PATH_MAX] = {};
  std::size_t m_size = 0;
};

/// Counts a call. True when it is one that is to fail.
bool Fails(CallKind kind) {
  Plan& plan = ThePlan();
  if (plan.counts == nullptr) return false;
  const long number = ++plan.counts->calls[static_cast<std::size_t>(kind)];
  if (static_cast<int>(kind) != plan.kind || plan.at == 0) return false;
  if (number != plan.at && (!plan.stays || number < plan.at)) return false;
  ++plan.counts->failed;
  return true;
}

/// Whether the call of `kind` on `place` is to fail; errno is then the error, else what it was.
bool Fails(CallKind kind, const Place& place) {
  if (!place.IsBelow() || !Fails(kind)) return false;
  errno = ThePlan().error;
  return true;
}

/// Keeps errno as it is.
class ErrnoKept {
 public:
  ErrnoKept() : m_errno(errno) {}
  ErrnoKept(const ErrnoKept&) = delete;
  ErrnoKept& operator=(const ErrnoKept&) = delete;
  ~ErrnoKept() { errno = m_errno; }

 private:
  int m_errno;
};

bool FileFails(CallKind kind, int file) {
  const int before = errno;
  if (Fails(kind, Place(file))) return true;
  errno = before;
  return false;
}
bool PathFails(CallKind kind, int folder, const char* path) {
  const int before = errno;
  if (Fails(kind, Place(folder, path))) return true;
  errno = before;
  return false;
}

bool Records() { return ThePlan().record != -1; }

void Put(ChangeHead head, std::string_view name = {}, std::string_view otherName = {}, std::string_view data = {}) {
  const ErrnoKept kept;
  head.nameSize = static_cast<std::uint32_t>(name.size());
  head.otherNameSize = static_cast<std::uint32_t>(otherName.size());
  head.dataSize = static_cast<std::uint32_t>(data.size());
  const int record = ThePlan().record;
  RealWrite(record, &head, sizeof head);
  for (const std::string_view part : {name, otherName, data}) {
    if (!part.empty()) RealWrite(record, part.data(), part.size());
  }
}

std::uint64_t InodeOf(int file) {
  struct stat about {};
  return ::fstat(file, &about) == 0 ? about.st_ino : 0;
}

void NoteWrite(int file, const void* bytes, ssize_t size, off64_t offset) {
  if (!Records() || size <= 0) return;
  const ErrnoKept kept;
  const Place place(file);
  if (!place.IsBelow()) return;
  const std::string_view data(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
  if (place.Name() == dtsdb::test::kMarkFile) {
    char number[32] = {};
    std::memcpy(number, data.data(), std::min(data.size(), sizeof number - 1));
    Put({ChangeKind::kMark, 0, 0, 0, static_cast<std::uint64_t>(std::atoi(number)), 0, 0, 0});
  } else {
    Put({ChangeKind::kWrite, InodeOf(file), 0, 0, static_cast<std::uint64_t>(offset), 0, 0, 0}, {}, {}, data);
  }
}

/// Where a write without an offset has begun that has just ended.
off64_t BeganAt(int file, ssize_t size) { return Records() ? ::lseek64(file, 0, SEEK_CUR) - size : 0; }

void NoteFile(ChangeKind kind, int file, std::uint64_t offset, int result) {
  if (!Records() || result != 0) return;
  const ErrnoKept kept;
  if (Place(file).IsBelow()) Put({kind, InodeOf(file), 0, 0, offset, 0, 0, 0});
}

void NoteEntry(ChangeKind kind, int folder, const char* path) {
  if (!Records()) return;
  const ErrnoKept kept;
  const Place place(folder, path);
  if (!place.IsBelow() || place.Name() == dtsdb::test::kMarkFile) return;
  Put({kind, kind == ChangeKind::kEnter ? place.Inode() : 0, place.Folder(), 0, 0, 0, 0, 0}, place.Name());
}

/// Inodes are used again: what is new begins empty.
void NoteNew(std::uint64_t inode, bool isFolder) {
  if (Records()) Put({ChangeKind::kMake, inode, 0, 0, isFolder ? 1U : 0U, 0, 0, 0});
}

void NoteRename(int from, const char* old, int to, const char* renewed, unsigned flags) {
  if (!Records()) return;
  const ErrnoKept kept;
  const Place place(from, old);
  const Place other(to, renewed);
  if (!place.IsBelow()) return;
  const ChangeKind kind = (flags & RENAME_EXCHANGE) != 0 ? ChangeKind::kExchange : ChangeKind::kRename;
  Put({kind, 0, place.Folder(), other.Folder(), 0, 0, 0, 0}, place.Name(), other.Name());
}

int OpenAt(int folder, const char* path, int flags, mode_t mode) {
  if (PathFails(CallKind::kOpen, folder, path)) return -1;
  struct stat about {};
  const bool watches = Records() && (flags & (O_CREAT | O_TRUNC)) != 0;
  const bool isNew = watches && ::fstatat(folder, path, &about, AT_SYMLINK_NOFOLLOW) != 0;
  static int (*next)(int, const char*, int, ...) = nullptr;
  const int file = Next(next, "openat64")(folder, path, flags, mode);
  if (Records() && file != -1 && (flags & O_TMPFILE) == O_TMPFILE && Place(file).IsBelow()) NoteNew(InodeOf(file), false);
  if (watches && file != -1) {
    if (isNew && Place(file).IsBelow()) NoteNew(InodeOf(file), false);
    if (isNew) NoteEntry(ChangeKind::kEnter, folder, path);
    if (!isNew && (flags & O_TRUNC) != 0) NoteFile(ChangeKind::kSize, file, 0, 0);
  }
  return file;
}

/// The size of a write or read that may be cut short: half of it.
std::size_t Cut(CallKind kind, int file, std::size_t size, bool& fails) {
  fails = FileFails(kind, file);
  if (!fails || ThePlan().error != 0) return size;
  fails = false;
  return size > 1 ? size / 2 : size;
}

bool armed = false;  // once main has begun

bool MemoryFails() {
  if (!armed || !Fails(CallKind::kMemory)) return false;
  errno = ENOMEM;
  return true;
}

int (*realMain)(int, char**, char**) = nullptr;

int MainWithFaults(int argc, char** argv, char** environment) {
  ThePlan();
  armed = true;
  const int result = realMain(argc, argv, environment);
  armed = false;
  return result;
}

}  // namespace

extern "C" {

int __libc_start_main(int (*program)(int, char**, char**), int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*loader)(), void* stack) {
  realMain = program;
  static int (*next)(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(), void*) = nullptr;
  return Next(next, "__libc_start_main")(MainWithFaults, argc, argv, init, fini, loader, stack);
}

#define WITH_MODE(flags)                                    \
  mode_t mode = 0;                                          \
  if (((flags) & O_CREAT) != 0 || ((flags) & O_TMPFILE) == O_TMPFILE) { \
    va_list more;                                           \
    va_start(more, flags);                                  \
    mode = va_arg(more, mode_t);                            \
    va_end(more);                                           \
  }

int open(const char* path, int flags, ...) {
  WITH_MODE(flags)
  return OpenAt(AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  WITH_MODE(flags)
  return OpenAt(AT_FDCWD, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
  WITH_MODE(flags)
  return OpenAt(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
  WITH_MODE(flags)
  return OpenAt(folder, path, flags, mode);
}
int __open_2(const char* path, int flags) { return OpenAt(AT_FDCWD, path, flags, 0); }
int __open64_2(const char* path, int flags) { return OpenAt(AT_FDCWD, path, flags, 0); }
int __openat_2(int folder, const char* path, int flags) { return OpenAt(folder, path, flags, 0); }
int __openat64_2(int folder, const char* path, int flags) { return OpenAt(folder, path, flags, 0); }

FILE* fopen64(const char* path, const char* mode) {
  if (PathFails(CallKind::kOpen, AT_FDCWD, path)) return nullptr;
  static FILE* (*next)(const char*, const char*) = nullptr;
  return Next(next, "fopen64")(path, mode);
}
FILE* fopen(const char* path, const char* mode) { return fopen64(path, mode); }

ssize_t write(int file, const void* bytes, std::size_t size) {
  bool fails = false;
  size = Cut(CallKind::kWrite, file, size, fails);
  if (fails) return -1;
  const ssize_t written = RealWrite(file, bytes, size);
  NoteWrite(file, bytes, written, BeganAt(file, written));
  return written;
}
ssize_t pwrite64(int file, const void* bytes, std::size_t size, off64_t offset) {
  bool fails = false;
  size = Cut(CallKind::kWrite, file, size, fails);
  if (fails) return -1;
  static ssize_t (*next)(int, const void*, std::size_t, off64_t) = nullptr;
  const ssize_t written = Next(next, "pwrite64")(file, bytes, size, offset);
  NoteWrite(file, bytes, written, offset);
  return written;
}
ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset) {
  return pwrite64(file, bytes, size, offset);
}
ssize_t pwritev64(int file, const struct iovec* parts, int count, off64_t offset) {
  bool fails = false;
  const std::size_t first = Cut(CallKind::kWrite, file, parts[0].iov_len, fails);
  if (fails) return -1;
  if (first != parts[0].iov_len) return pwrite64(file, parts[0].iov_base, first, offset);
  static ssize_t (*next)(int, const struct iovec*, int, off64_t) = nullptr;
  const ssize_t written = Next(next, "pwritev64")(file, parts, count, offset);
  ssize_t left = written;
  for (int i = 0; i < count && left > 0; ++i) {
    const ssize_t part = std::min(left, static_cast<ssize_t>(parts[i].iov_len));
    NoteWrite(file, parts[i].iov_base, part, offset + (written - left));
    left -= part;
  }
  return written;
}
ssize_t pwritev(int file, const struct iovec* parts, int count, off_t offset) {
  return pwritev64(file, parts, count, offset);
}
ssize_t writev(int file, const struct iovec* parts, int count) {
  bool fails = false;
  const std::size_t first = Cut(CallKind::kWrite, file, parts[0].iov_len, fails);
  if (fails) return -1;
  if (first != parts[0].iov_len) count = 1;
  struct iovec cut = parts[0];
  cut.iov_len = first;
  static ssize_t (*next)(int, const struct iovec*, int) = nullptr;
  const ssize_t written = Next(next, "writev")(file, count == 1 ? &cut : parts, count);
  const off64_t began = BeganAt(file, written);
  ssize_t left = written;
  for (int i = 0; i < count && left > 0; ++i) {
    const ssize_t part = std::min(left, static_cast<ssize_t>(parts[i].iov_len));
    NoteWrite(file, parts[i].iov_base, part, began + (written - left));
    left -= part;
  }
  return written;
}

ssize_t read(int file, void* bytes, std::size_t size) {
  bool fails = false;
  size = Cut(CallKind::kRead, file, size, fails);
  if (fails) return -1;
  static ssize_t (*next)(int, void*, std::size_t) = nullptr;
  return Next(next, "read")(file, bytes, size);
}
ssize_t pread64(int file, void* bytes, std::size_t size, off64_t offset) {
  bool fails = false;
  size = Cut(CallKind::kRead, file, size, fails);
  if (fails) return -1;
  static ssize_t (*next)(int, void*, std::size_t, off64_t) = nullptr;
  return Next(next, "pread64")(file, bytes, size, offset);
}
ssize_t pread(int file, void* bytes, std::size_t size, off_t offset) { return pread64(file, bytes, size, offset); }
ssize_t __read_chk(int file, void* bytes, std::size_t size, std::size_t) { return read(file, bytes, size); }

int fsync(int file) {
  if (FileFails(CallKind::kSync, file)) return -1;
  static int (*next)(int) = nullptr;
  const int result = Next(next, "fsync")(file);
  NoteFile(ChangeKind::kSync, file, 0, result);
  return result;
}
int fdatasync(int file) {
  if (FileFails(CallKind::kSync, file)) return -1;
  static int (*next)(int) = nullptr;
  const int result = Next(next, "fdatasync")(file);
  NoteFile(ChangeKind::kSync, file, 0, result);
  return result;
}

int renameat2(int from, const char* old, int to, const char* renewed, unsigned flags) {
  if (PathFails(CallKind::kRename, from, old)) return -1;
  static int (*next)(int, const char*, int, const char*, unsigned) = nullptr;
  const int result = Next(next, "renameat2")(from, old, to, renewed, flags);
  if (result == 0) NoteRename(from, old, to, renewed, flags);
  return result;
}
int renameat(int from, const char* old, int to, const char* renewed) { return renameat2(from, old, to, renewed, 0); }
int rename(const char* old, const char* renewed) { return renameat2(AT_FDCWD, old, AT_FDCWD, renewed, 0); }
int linkat(int from, const char* old, int to, const char* renewed, int flags) {
  if (PathFails(CallKind::kRename, to, renewed)) return -1;
  static int (*next)(int, const char*, int, const char*, int) = nullptr;
  const int result = Next(next, "linkat")(from, old, to, renewed, flags);
  if (result == 0) NoteEntry(ChangeKind::kEnter, to, renewed);
  return result;
}
int link(const char* old, const char* renewed) { return linkat(AT_FDCWD, old, AT_FDCWD, renewed, 0); }

void* mmap64(void* address, std::size_t size, int access, int flags, int file, off64_t offset) {
  if (file >= 0 && FileFails(CallKind::kMap, file)) return MAP_FAILED;
  static void* (*next)(void*, std::size_t, int, int, int, off64_t) = nullptr;
  return Next(next, "mmap64")(address, size, access, flags, file, offset);
}
void* mmap(void* address, std::size_t size, int access, int flags, int file, off_t offset) {
  return mmap64(address, size, access, flags, file, offset);
}

int ftruncate64(int file, off64_t size) {
  if (FileFails(CallKind::kSize, file)) return -1;
  static int (*next)(int, off64_t) = nullptr;
  const int result = Next(next, "ftruncate64")(file, size);
  NoteFile(ChangeKind::kSize, file, static_cast<std::uint64_t>(size), result);
  return result;
}
int ftruncate(int file, off_t size) { return ftruncate64(file, size); }
int fallocate64(int file, int mode, off64_t offset, off64_t size) {
  if (FileFails(CallKind::kSize, file)) return -1;
  static int (*next)(int, int, off64_t, off64_t) = nullptr;
  return Next(next, "fallocate64")(file, mode, offset, size);
}
int fallocate(int file, int mode, off_t offset, off_t size) { return fallocate64(file, mode, offset, size); }
int posix_fallocate64(int file, off64_t offset, off64_t size) {
  const int before = errno;
  if (FileFails(CallKind::kSize, file)) {
    errno = before;  // the error is what it returns
    return ThePlan().error;
  }
  static int (*next)(int, off64_t, off64_t) = nullptr;
  return Next(next, "posix_fallocate64")(file, offset, size);
}
int posix_fallocate(int file, off_t offset, off_t size) { return posix_fallocate64(file, offset, size); }

/// The descriptor is closed even where that fails, as Linux does it.
int close(int file) {
  const bool fails = FileFails(CallKind::kClose, file);
  const int error = errno;
  const int result = RealClose(file);
  if (!fails) return result;
  errno = error;
  return -1;
}
int fclose(FILE* file) {
  const bool fails = FileFails(CallKind::kClose, ::fileno(file));
  const int error = errno;
  static int (*next)(FILE*) = nullptr;
  const int result = Next(next, "fclose")(file);
  if (!fails) return result;
  errno = error;
  return EOF;
}

int unlinkat(int folder, const char* path, int flags) {
  if (PathFails(CallKind::kRemove, folder, path)) return -1;
  static int (*next)(int, const char*, int) = nullptr;
  const int result = Next(next, "unlinkat")(folder, path, flags);
  if (result == 0) NoteEntry(ChangeKind::kRemove, folder, path);
  return result;
}
int unlink(const char* path) { return unlinkat(AT_FDCWD, path, 0); }
int rmdir(const char* path) { return unlinkat(AT_FDCWD, path, AT_REMOVEDIR); }

int mkdirat(int folder, const char* path, mode_t mode) {
  if (PathFails(CallKind::kMakeFolder, folder, path)) return -1;
  static int (*next)(int, const char*, mode_t) = nullptr;
  const int result = Next(next, "mkdirat")(folder, path, mode);
  if (result == 0 && Records() && Place(folder, path).IsBelow()) NoteNew(Place(folder, path).Inode(), true);
  if (result == 0) NoteEntry(ChangeKind::kEnter, folder, path);
  return result;
}
int mkdir(const char* path, mode_t mode) { return mkdirat(AT_FDCWD, path, mode); }

void* malloc(std::size_t size) { return MemoryFails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) { return MemoryFails() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* old, std::size_t size) { return MemoryFails() ? nullptr : __libc_realloc(old, size); }
void* memalign(std::size_t place, std::size_t size) { return MemoryFails() ? nullptr : __libc_memalign(place, size); }
void* aligned_alloc(std::size_t place, std::size_t size) { return memalign(place, size); }
int posix_memalign(void** made, std::size_t place, std::size_t size) {
  if (MemoryFails()) return ENOMEM;
  *made = __libc_memalign(place, size);
  return *made == nullptr ? ENOMEM : 0;
}

}  // extern "C"
