#include "rtdb/internal/page_walk.h"

#include <algorithm>
#include <bit>

namespace dtsdb::internal::rtdb {
namespace {

using namespace format;

/// No address space maps more: it bounds what a damaged head can make LMDB ask for.
constexpr std::uint64_t kAddressable = std::uint64_t{1} << 47;

bool IsPageSize(std::uint32_t size) { return std::has_single_bit(size) && size >= 512 && size <= 65536; }

/// Whether a tree's record can be meant at all: an empty tree has nothing, another one has a root within the file.
bool SoundRecord(const Tree& tree, std::uint64_t lastPage) {
  if (tree.root == kNoPage) {
    return tree.depth == 0 && tree.branchPages == 0 && tree.leafPages == 0 && tree.overflowPages == 0 &&
           tree.entries == 0;
  }
  return tree.root >= 2 && tree.root <= lastPage && tree.depth >= 1 && tree.depth <= kDeepestTree;
}

std::size_t KeySize(const char* node) { return Get<std::uint16_t>(node + 6); }
std::uint16_t FlagsOf(const char* node) { return Get<std::uint16_t>(node + 4); }
std::string_view KeyOf(const char* node) { return {node + kNodeHeader, KeySize(node)}; }

std::size_t DataSize(const char* node) {
  return Get<std::uint16_t>(node) | static_cast<std::size_t>(Get<std::uint16_t>(node + 2)) << 16;
}

/// The page that an entry of a branch leads to.
std::uint64_t ChildOf(const char* node) { return DataSize(node) | static_cast<std::uint64_t>(FlagsOf(node)) << 32; }

std::uint64_t TransactionOf(std::string_view key) { return key.empty() ? 0 : Get<std::uint64_t>(key.data()); }

}  // namespace

bool SoundHead(const Head& head, std::uint64_t size) {
  if (head.pageFlags != kMeta || head.magic != kMagic || head.version != kVersion) return false;
  const std::uint32_t pageSize = head.free.pad;
  if (!IsPageSize(pageSize) || head.mapSize >= kAddressable) return false;
  if (head.lastPage < 1 || head.lastPage >= head.mapSize / pageSize) return false;
  // Pages beyond the end of the file are listed as free within it.
  if (head.lastPage >= size / pageSize + size / sizeof(std::uint64_t)) return false;
  if ((head.free.flags & ~kFileWithoutFolder) != kIntegerKeys) return false;
  if (head.main.flags != kByteKeys || head.main.pad != 0) return false;
  if (!SoundRecord(head.free, head.lastPage) || !SoundRecord(head.main, head.lastPage)) return false;
  return head.transaction > 0 || (head.lastPage == 1 && head.free.root == kNoPage && head.main.root == kNoPage);
}

PageWalk::PageWalk(const char* file, std::size_t size, const Head& head)
    : m_file(file),
      m_head(head),
      m_pageSize(head.free.pad),
      m_largestNode((((m_pageSize - kPageHeader) / 2) & ~std::size_t{1}) - sizeof(std::uint16_t)),
      m_filePages(std::min<std::uint64_t>(size / m_pageSize, head.lastPage + 1)),
      m_sizeAt(m_pageSize / 2, 0) {}

const char* PageWalk::Page::Node(std::size_t index) const {
  return bytes + Get<std::uint16_t>(bytes + kPageHeader + 2 * index);
}

bool PageWalk::Sound() {
  m_used.assign(m_head.lastPage + 1, false);
  m_used[0] = m_used[1] = true;
  return SoundTree(m_head.main, kMainTree) && SoundTree(m_head.free, kFreeTree) && SoundFreePages();
}

bool PageWalk::SoundTree(const Tree& tree, Kind kind) {
  if (!SoundRecord(tree, m_head.lastPage)) return false;
  if (kind == kTable && (tree.flags != kByteKeys || tree.pad != 0)) return false;
  if (tree.root == kNoPage) return true;
  const std::string_view outerKey = std::exchange(m_lastKey, {});
  m_mayEqual = false;
  Tree found{};
  if (!SoundPage(tree.root, tree.depth, kind, found)) return false;
  m_lastKey = outerKey;
  m_mayEqual = false;
  return found.entries == tree.entries && found.branchPages == tree.branchPages && found.leafPages == tree.leafPages &&
         found.overflowPages == tree.overflowPages;
}

bool PageWalk::Take(std::uint64_t page, std::uint64_t count) {
  if (page >= m_filePages || count > m_filePages - page) return false;
  for (std::uint64_t i = page; i < page + count; ++i) {
    if (m_used[i]) return false;
    m_used[i] = true;
  }
  return true;
}

std::optional<PageWalk::Page> PageWalk::PageAt(std::uint64_t number, int depth) {
  if (number < 2 || number >= m_filePages) return std::nullopt;
  const char* page = m_file + number * m_pageSize;
  const bool leaf = depth == 1;
  const std::size_t lower = Get<std::uint16_t>(page + 12);
  const std::size_t upper = Get<std::uint16_t>(page + 14);
  if (Get<std::uint64_t>(page) != number || Get<std::uint16_t>(page + 10) != (leaf ? kLeaf : kBranch)) return {};
  if (lower < kPageHeader || lower % 2 != 0 || lower > upper || upper > m_pageSize) return std::nullopt;
  const std::size_t count = (lower - kPageHeader) / 2;
  if (count < (leaf ? 1 : 2)) return std::nullopt;
  return Filled(page, count, upper, leaf) ? std::optional(Page{page, count}) : std::nullopt;
}

/// Whether the entries fill the page from `upper` to its end without gap or overlap.
bool PageWalk::Filled(const char* page, std::size_t count, std::size_t upper, bool leaf) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t offset = Get<std::uint16_t>(page + kPageHeader + 2 * i);
    const auto size = NodeSize(page, offset, leaf);
    if (!size) return false;
    m_sizeAt[offset / 2] = static_cast<std::uint16_t>(*size);
  }
  std::size_t end = upper;
  for (std::size_t i = 0; i < count; ++i) {
    if (end >= m_pageSize || end % 2 != 0) return false;
    const std::size_t size = std::exchange(m_sizeAt[end / 2], std::uint16_t{0});
    // None begins here, or two begin in one place.
    if (size == 0) return false;
    end += size;
  }
  return end == m_pageSize;
}

/// An entry's size in its page, or nothing if it doesn't fit there.
std::optional<std::size_t> PageWalk::NodeSize(const char* page, std::size_t offset, bool leaf) const {
  if (offset % 2 != 0 || offset + kNodeHeader > m_pageSize) return std::nullopt;
  const char* node = page + offset;
  if (KeySize(node) > kLongestKey) return std::nullopt;
  std::size_t size = kNodeHeader + KeySize(node);
  if (leaf) {
    size += (FlagsOf(node) & kBigData) != 0 ? sizeof(std::uint64_t) : DataSize(node);
    if (size > m_largestNode || KeySize(node) == 0) return std::nullopt;
  }
  size += size % 2;
  return offset + size <= m_pageSize ? std::optional(size) : std::nullopt;
}

bool PageWalk::SoundPage(std::uint64_t number, int depth, Kind kind, Tree& found) {
  const auto page = PageAt(number, depth);
  if (!page || !Take(number, 1)) return false;
  return depth > 1 ? SoundBranch(*page, depth, kind, found) : SoundLeaf(*page, kind, found);
}

bool PageWalk::SoundBranch(const Page& page, int depth, Kind kind, Tree& found) {
  ++found.branchPages;
  for (std::size_t i = 0; i < page.count; ++i) {
    const char* node = page.Node(i);
    // LMDB never looks at a branch's first key.
    if (i > 0 && !Ascends(node, kind, true)) return false;
    if (!SoundPage(ChildOf(node), depth - 1, kind, found)) return false;
  }
  return true;
}

bool PageWalk::SoundLeaf(const Page& page, Kind kind, Tree& found) {
  ++found.leafPages;
  found.entries += page.count;
  for (std::size_t i = 0; i < page.count; ++i) {
    const char* node = page.Node(i);
    if (!Ascends(node, kind, false) || !SoundData(node, kind, found)) return false;
  }
  return true;
}

bool PageWalk::Ascends(const char* node, Kind kind, bool separator) {
  const std::string_view key = KeyOf(node);
  bool higher = false;
  bool equal = false;
  if (kind == kFreeTree) {
    if (key.size() != sizeof(std::uint64_t)) return false;
    higher = TransactionOf(key) > TransactionOf(m_lastKey);
    equal = key == m_lastKey;
  } else {
    const int order = key.compare(m_lastKey);
    higher = order > 0;
    equal = order == 0;
  }
  const bool ascends = higher || (equal && m_mayEqual);
  m_lastKey = key;
  m_mayEqual = separator;
  return ascends;
}

bool PageWalk::SoundData(const char* node, Kind kind, Tree& found) {
  const char* data = node + kNodeHeader + KeySize(node);
  switch (FlagsOf(node)) {
    case 0:
      break;
    case kBigData: {
      const auto first = Get<std::uint64_t>(data);
      if (!TakeOverflow(first, DataSize(node), found)) return false;
      data = m_file + first * m_pageSize + kPageHeader;
      break;
    }
    case kSubTree:
      return kind == kMainTree && DataSize(node) == sizeof(Tree) && SoundTree(Get<Tree>(data), kTable);
    default:
      return false;
  }
  return kind != kFreeTree || CollectFreePages(node, data);
}

/// A value that was changed twice in a transaction keeps its pages, though the second one may need less.
bool PageWalk::TakeOverflow(std::uint64_t first, std::size_t size, Tree& found) {
  if (first < 2 || first >= m_filePages) return false;
  const char* page = m_file + first * m_pageSize;
  const auto pages = Get<std::uint32_t>(page + 12);
  if (Get<std::uint64_t>(page) != first || Get<std::uint16_t>(page + 10) != kOverflow) return false;
  if (pages < (kPageHeader + size + m_pageSize - 1) / m_pageSize) return false;
  found.overflowPages += pages;
  return Take(first, pages);
}

bool PageWalk::CollectFreePages(const char* node, const char* data) {
  const std::uint64_t room = DataSize(node) / sizeof(std::uint64_t);
  if (room == 0 || TransactionOf(KeyOf(node)) > m_head.transaction) return false;
  const auto count = Get<std::uint64_t>(data);
  if (count >= room) return false;
  std::uint64_t above = m_head.lastPage + 1;
  for (std::uint64_t i = 1; i <= count; ++i) {
    const auto page = Get<std::uint64_t>(data + i * sizeof(std::uint64_t));
    if (page < 2 || page >= above) return false;
    m_free.push_back(above = page);
  }
  return true;
}

bool PageWalk::SoundFreePages() {
  std::uint64_t beyond = 0;
  for (const std::uint64_t page : m_free) {
    if (m_used[page]) return false;
    m_used[page] = true;
    if (page >= m_filePages) ++beyond;
  }
  return beyond == m_head.lastPage + 1 - m_filePages;
}

std::optional<std::uint64_t> PageWalk::LastFreeing() {
  const Tree& tree = m_head.free;
  if (tree.root == kNoPage) return 0;
  std::uint64_t number = tree.root;
  for (int depth = tree.depth;; --depth) {
    const auto page = PageAt(number, depth);
    if (!page) return std::nullopt;
    const char* last = page->Node(page->count - 1);
    if (depth > 1) {
      number = ChildOf(last);
      continue;
    }
    if (KeySize(last) != sizeof(std::uint64_t)) return std::nullopt;
    return TransactionOf(KeyOf(last));
  }
}

}  // namespace dtsdb::internal::rtdb
