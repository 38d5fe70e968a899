/// \file
/// A walk over the pages of one state of a store, in a file that LMDB has not vouched for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "rtdb/internal/file_format.h"

namespace dtsdb::internal::rtdb {

/// Reads pages of a mapped file, none of them beyond its end, and reports whether they are what the head's trees need.
/// It reads the header of each page, and the header and key of each entry, not the rows.
class PageWalk {
 public:
  /// `file`: the mapped file of `size` bytes, which must stay while the walk is in use. `head`: one that is plausible
  /// for a file of this size, see SoundHead.
  PageWalk(const char* file, std::size_t size, const format::Head& head);

  /// Whether LMDB can read and change the state: every page that a tree leads to is there once, its entries fill it
  /// without gap or overlap, keys ascend, the trees' records count what is there, and the free list names pages that
  /// nothing uses, among them all those beyond the end of the file.
  bool Sound();

  /// The number of the last transaction that freed pages, which is the last key of the free tree: 0 if none did.
  /// Nothing if there is no way to it. Looks at the last page of each level only.
  std::optional<std::uint64_t> LastFreeing();

 private:
  enum Kind : std::uint8_t { kFreeTree, kMainTree, kTable };
  /// A page that has been looked at: its entries fill it.
  struct Page {
    const char* bytes = nullptr;
    std::size_t count = 0;
    const char* Node(std::size_t index) const;
  };

  bool SoundTree(const format::Tree& tree, Kind kind);
  bool SoundPage(std::uint64_t number, int depth, Kind kind, format::Tree& found);
  bool SoundBranch(const Page& page, int depth, Kind kind, format::Tree& found);
  bool SoundLeaf(const Page& page, Kind kind, format::Tree& found);
  bool SoundData(const char* node, Kind kind, format::Tree& found);
  bool TakeOverflow(std::uint64_t first, std::size_t size, format::Tree& found);
  bool Ascends(const char* node, Kind kind, bool separator);
  bool CollectFreePages(const char* node, const char* data);
  bool SoundFreePages();
  std::optional<Page> PageAt(std::uint64_t number, int depth);
  bool Filled(const char* page, std::size_t count, std::size_t upper, bool leaf);
  std::optional<std::size_t> NodeSize(const char* page, std::size_t offset, bool leaf) const;
  bool Take(std::uint64_t page, std::uint64_t count);

  const char* m_file;
  const format::Head& m_head;
  std::size_t m_pageSize;
  std::size_t m_largestNode;
  std::uint64_t m_filePages;
  std::vector<bool> m_used;
  std::vector<std::uint64_t> m_free;
  /// By half the offset in a page: the size of the entry that begins there. Zeros between two pages; a fault ends the
  /// walk.
  std::vector<std::uint16_t> m_sizeAt;
  /// The key before the next one of the tree. The next may be equal to a separator, which stands above its page.
  std::string_view m_lastKey;
  bool m_mayEqual = true;
};

/// Whether a head's numbers can be those of a file of `size` bytes.
bool SoundHead(const format::Head& head, std::uint64_t size);

}  // namespace dtsdb::internal::rtdb
