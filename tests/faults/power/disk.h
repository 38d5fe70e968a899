/// \file
/// What a disk may contain after a power failure.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/faults/record.h"

namespace dtsdb::test {

/// A change of the disk as the fault library has written it down.
struct Change {
  ChangeHead head{};
  std::string name;
  std::string otherName;
  std::string data;
};

std::vector<Change> ReadChanges(const std::filesystem::path& record);

/// Decides which of the changes that the disk had not confirmed have reached it.
class Survival {
 public:
  /// All, or none.
  static Survival Whole(bool survives);
  /// All but the one at place `place` among them, or it alone.
  static Survival Single(int place, bool alone);
  /// Each by chance, and now and then a write in part.
  static Survival Chance(unsigned seed);

  bool Survives();
  /// Which part of a write of `size` bytes has reached the disk, in sectors of 512 bytes.
  std::vector<std::pair<std::size_t, std::size_t>> PartsOf(std::size_t size);
  /// Whether the disk still has the size of before, although it has what was written behind it.
  bool ForgetsSize();

 private:
  enum class Way { kAll, kNone, kAllBut, kOnly, kChance };
  Way m_way = Way::kAll;
  int m_place = 0;
  int m_asked = 0;
  std::minstd_rand m_random;
};

/// A folder on a disk whose power fails.
///
/// What a program has written to a file reaches the disk when it is synchronised, or earlier, in any order and in any
/// part; so do the entries of a folder when the folder is. What was written twice to one place gets there in that
/// order. File systems promise more, each another thing; nothing here relies on it.
class Disk {
 public:
  /// The disk after the first `count` of `changes`, which begin with an empty folder.
  Disk(const std::vector<Change>& changes, std::size_t count);

  /// How many changes aren't confirmed.
  int Pending() const { return m_pending; }
  /// The last mark of the program.
  int Mark() const { return m_mark; }
  /// Makes what the disk contains in the empty folder `folder`.
  void Make(Survival survival, const std::filesystem::path& folder) const;

 private:
  struct Node {
    bool isFolder = false;
    std::vector<const Change*> confirmed;
    std::vector<const Change*> pending;
  };
  /// Entries of a folder.
  using Entries = std::map<std::string, std::uint64_t>;

  static void Apply(const Change& change, Entries& entries);
  static void Write(const Change& change, std::string& bytes, Survival* survival);
  std::string BytesOf(std::uint64_t inode, Survival& survival) const;
  Entries EntriesOf(std::uint64_t inode, Survival& survival) const;
  void MakeFolder(std::uint64_t inode, Survival& survival, const std::filesystem::path& path) const;
  Node& NodeOf(std::uint64_t inode) { return m_nodes[inode]; }

  std::map<std::uint64_t, Node> m_nodes;
  std::uint64_t m_root = 0;
  int m_pending = 0;
  int m_mark = 0;
};

}  // namespace dtsdb::test
