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
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "tests/faults/fault_notes.h"
#include "tests/faults/fault_plan.h"

namespace {

using dtsdb::test::CallKind;
using dtsdb::test::ChangeKind;
using dtsdb::test::fault::BeganAt;
using dtsdb::test::fault::FileFails;
using dtsdb::test::fault::InodeOf;
using dtsdb::test::fault::Next;
using dtsdb::test::fault::NoteEntry;
using dtsdb::test::fault::NoteFile;
using dtsdb::test::fault::NoteNew;
using dtsdb::test::fault::NoteRename;
using dtsdb::test::fault::NoteWrite;
using dtsdb::test::fault::PathFails;
using dtsdb::test::fault::Place;
using dtsdb::test::fault::RealClose;
using dtsdb::test::fault::RealWrite;
using dtsdb::test::fault::Records;
using dtsdb::test::fault::ThePlan;

int OpenAt(int folder, const char* path, int flags, mode_t mode) {
  if (PathFails(CallKind::kOpen, folder, path)) return -1;
  struct stat about {};
  const bool watches = Records() && (flags & (O_CREAT | O_TRUNC)) != 0;
  const bool isNew = watches && ::fstatat(folder, path, &about, AT_SYMLINK_NOFOLLOW) != 0;
  static int (*next)(int, const char*, int, ...) = nullptr;
  const int file = Next(next, "openat64")(folder, path, flags, mode);
  if (Records() && file != -1 && (flags & O_TMPFILE) == O_TMPFILE && Place(file).IsBelow())
    NoteNew(InodeOf(file), false);
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

}  // namespace

extern "C" {

#define WITH_MODE(flags)                                            \
  mode_t mode = 0;                                                  \
  if (((flags)&O_CREAT) != 0 || ((flags)&O_TMPFILE) == O_TMPFILE) { \
    va_list more;                                                   \
    va_start(more, flags);                                          \
    mode = va_arg(more, mode_t);                                    \
    va_end(more);                                                   \
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

}  // extern "C"
