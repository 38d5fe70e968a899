#include "tests/faults/fault_notes.h"

#include "tests/faults/fault_plan.h"

namespace dtsdb::test::fault {

bool Records() { return ThePlan().record != -1; }

namespace {

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

}  // namespace

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
  if (place.Name() == kMarkFile) {
    char number[32] = {};
    std::memcpy(number, data.data(), std::min(data.size(), sizeof number - 1));
    Put({ChangeKind::kMark, 0, 0, 0, static_cast<std::uint64_t>(std::atoi(number)), 0, 0, 0});
  } else {
    Put({ChangeKind::kWrite, InodeOf(file), 0, 0, static_cast<std::uint64_t>(offset), 0, 0, 0}, {}, {}, data);
    const bool isSynchronised = (::fcntl(file, F_GETFL) & O_DSYNC) != 0;
    if (isSynchronised) Put({ChangeKind::kSync, InodeOf(file), 0, 0, 0, 0, 0, 0});
  }
}

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
  if (!place.IsBelow() || place.Name() == kMarkFile) return;
  Put({kind, kind == ChangeKind::kEnter ? place.Inode() : 0, place.Folder(), 0, 0, 0, 0, 0}, place.Name());
}

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

}  // namespace dtsdb::test::fault
