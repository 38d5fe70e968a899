/// \file
/// What the fault library writes down of a program's changes to a disk, in their order, and what it counts.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

namespace dtsdb::test {

/// The kinds of calls that can be made to fail.
enum class CallKind : int { kOpen, kRead, kWrite, kSync, kRename, kMap, kSize, kClose, kRemove, kMakeFolder, kMemory };
inline constexpr int kCallKinds = 11;

/// The library counts in memory that it shares with the test.
struct CallCounts {
  std::array<std::atomic<long>, kCallKinds> calls;
  std::atomic<long> failed;  ///< calls that were made to fail
};

/// One change. A file and a folder are meant by their inodes, an entry of a folder by the folder's inode and its name.
enum class ChangeKind : std::uint8_t {
  kMake,      ///< a file with the number `inode` is new, a folder where `offset` is 1
  kEnter,     ///< an entry: folder `folder`, name `name` leads to `inode`
  kWrite,     ///< `data` at `offset` of `inode`
  kSize,      ///< the size of `inode` becomes `offset`
  kSync,      ///< `inode`, file or folder, is on the disk as it is
  kRename,    ///< entry `name` of `folder` becomes `otherName` of `otherFolder`
  kExchange,  ///< the two entries change places
  kRemove,    ///< entry `name` of `folder`
  kMark,      ///< the program has reached point `offset`
};

/// The head of a change in the record; the two names and the data follow it.
struct ChangeHead {
  ChangeKind kind;
  std::uint64_t inode;
  std::uint64_t folder;
  std::uint64_t otherFolder;
  std::uint64_t offset;
  std::uint32_t nameSize;
  std::uint32_t otherNameSize;
  std::uint32_t dataSize;
};

/// A file of this name makes a mark of every number that is written to it as text.
inline constexpr const char* kMarkFile = "mark";

}  // namespace dtsdb::test
