/// \file
/// What the fault library writes down of a program's changes to a disk. Nothing where the environment names no record.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "tests/faults/record.h"

namespace dtsdb::test::fault {

bool Records();

std::uint64_t InodeOf(int file);

/// A write of `size` bytes that has been done; less than 1 for none.
void NoteWrite(int file, const void* bytes, ssize_t size, off64_t offset);
/// Where a write without an offset has begun that has just ended.
off64_t BeganAt(int file, ssize_t size);
/// A change of an open file, if `result` is 0.
void NoteFile(ChangeKind kind, int file, std::uint64_t offset, int result);
/// A change of an entry.
void NoteEntry(ChangeKind kind, int folder, const char* path);
/// Inodes are used again: what is new begins empty.
void NoteNew(std::uint64_t inode, bool isFolder);
/// A rename; `flags` are those of renameat2.
void NoteRename(int from, const char* old, int to, const char* renewed, unsigned flags);

}  // namespace dtsdb::test::fault
