/// \file
/// The file format of LMDB 0.9 on machines of 64 bits, as far as the check on opening reads it.
///
/// A file is a row of pages of equal size. Pages 0 and 1 are the heads: transaction N writes head N % 2, so one head
/// names the newest state and the other the one before. A state is two trees: the main tree, whose entries are the
/// trees of the tables, and the free tree, whose entries list the pages that each transaction freed.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace dtsdb::internal::rtdb::format {

constexpr std::uint32_t kMagic = 0xBEEFC0DE;
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kPageHeader = 16;
constexpr std::size_t kNodeHeader = 8;
constexpr std::size_t kLongestKey = 511;
/// As many levels as a cursor of LMDB can hold.
constexpr int kDeepestTree = 32;
/// The root of an empty tree.
constexpr std::uint64_t kNoPage = ~std::uint64_t{0};

enum PageFlags : std::uint16_t { kBranch = 1, kLeaf = 2, kOverflow = 4, kMeta = 8 };
enum NodeFlags : std::uint16_t { kBigData = 1, kSubTree = 2 };
/// The kind of a tree's keys. The environment's own flags stand in the free tree's record too.
enum TreeFlags : std::uint16_t { kByteKeys = 0, kIntegerKeys = 0x08, kFileWithoutFolder = 0x4000 };

/// The record of a tree.
struct Tree {
  std::uint32_t pad;  ///< in the free tree's record: the size of a page
  std::uint16_t flags;
  std::uint16_t depth;
  std::uint64_t branchPages;
  std::uint64_t leafPages;
  std::uint64_t overflowPages;
  std::uint64_t entries;
  std::uint64_t root;
};

/// The beginning of a head's page.
struct Head {
  std::uint64_t number;
  std::uint16_t pad;
  std::uint16_t pageFlags;
  std::uint32_t bounds;
  std::uint32_t magic;
  std::uint32_t version;
  std::uint64_t address;
  std::uint64_t mapSize;
  Tree free;
  Tree main;
  std::uint64_t lastPage;  ///< that was ever taken; the file is shorter where the last ones were never written
  std::uint64_t transaction;
};

static_assert(sizeof(Tree) == 48 && sizeof(Head) == 152, "as LMDB lays them out");

/// Stands in the page of a head, kPutBackOffset behind its beginning, when the disk has refused the head of transaction
/// `transaction`: LMDB then puts the number of the head before back, but not its trees.
struct PutBack {
  char word[8] = {'p', 'u', 't', ' ', 'b', 'a', 'c', 'k'};
  std::uint64_t transaction = 0;
};
/// In a sector of its own.
constexpr std::uint64_t kPutBackOffset = 512;

using Heads = std::array<Head, 2>;

/// The head that LMDB takes for the newest where no other program has the file open.
inline const Head& NewestOf(const Heads& heads) { return heads[heads[0].transaction < heads[1].transaction ? 1 : 0]; }
inline const Head& OlderOf(const Heads& heads) { return heads[heads[0].transaction < heads[1].transaction ? 0 : 1]; }

template <class T>
T Get(const char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

}  // namespace dtsdb::internal::rtdb::format
