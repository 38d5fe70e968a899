#include "rtdb/internal/tree_salvage.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "rtdb/internal/page_walk.h"

namespace dtsdb::internal::rtdb {
namespace {

using namespace format;

constexpr std::size_t kSmallestPage = 512;
constexpr std::size_t kLargestPage = 65536;

}  // namespace

TreeSalvage::TreeSalvage(std::string_view file) : m_file(file) {
  AddState(0, 0);
  for (std::size_t page = kSmallestPage; page <= kLargestPage; page *= 2) AddState(page, 1);
  std::stable_sort(m_states.begin(), m_states.end(), [this](const Head& a, const Head& b) { return Age(a) > Age(b); });
}

void TreeSalvage::AddState(std::uint64_t offset, std::uint64_t number) {
  if (offset > m_file.size() || m_file.size() - offset < sizeof(Head)) return;
  const auto head = Get<Head>(m_file.data() + offset);
  const std::size_t page = head.free.pad;
  if (head.number != number || (head.magic != kMagic && head.pageFlags != kMeta)) return;
  if (!std::has_single_bit(page) || page < kSmallestPage || page > kLargestPage) return;
  if ((number == 0 || page == offset) && m_file.size() / page > 2) m_states.push_back(head);
}

/// The number of a state's transaction: what its own pages show of it counts before what its head names.
std::uint64_t TreeSalvage::Age(const Head& state) const {
  const bool isPlausible = SoundHead(state, m_file.size());
  const auto shown = isPlausible ? PageWalk(m_file.data(), m_file.size(), state).LastFreeing() : std::nullopt;
  return shown.value_or(0) > 0 ? *shown : state.transaction;
}

void TreeSalvage::Begin(const Head& state) {
  m_pageSize = state.free.pad;
  m_read.assign(m_file.size() / m_pageSize + 1, false);
}

bool TreeSalvage::TakePages(std::uint64_t first, std::uint64_t count) {
  const std::uint64_t pages = m_file.size() / m_pageSize;
  if (first < 2 || first >= pages || count > pages - first) return false;
  for (std::uint64_t page = first; page < first + count; ++page) {
    if (m_read[page]) return false;
  }
  std::fill_n(m_read.begin() + static_cast<std::ptrdiff_t>(first), count, true);
  return true;
}

void TreeSalvage::Walk(const Tree& tree, const Visit& visit, const Fault& fault) {
  if (tree.root != kNoPage) WalkPage(tree.root, kDeepestTree, visit, fault);
}

void TreeSalvage::WalkPage(std::uint64_t number, int depth, const Visit& visit, const Fault& fault) {
  if (depth == 0 || !TakePages(number, 1)) return fault(number, {}, "a page lies outside the file or is used twice");
  const char* const page = m_file.data() + number * m_pageSize;
  const auto flags = Get<std::uint16_t>(page + 10);
  const std::size_t lower = Get<std::uint16_t>(page + 12);
  if (Get<std::uint64_t>(page) != number || (flags != kLeaf && flags != kBranch) || lower < kPageHeader ||
      lower % 2 != 0 || lower > m_pageSize) {
    return fault(number, {}, "the head of a page is damaged");
  }
  for (std::size_t at = kPageHeader; at < lower; at += 2) {
    WalkNode(number, Get<std::uint16_t>(page + at), flags == kLeaf, depth, visit, fault);
  }
}

void TreeSalvage::WalkNode(std::uint64_t number, std::size_t offset, bool leaf, int depth, const Visit& visit,
                           const Fault& fault) {
  const char* const node = m_file.data() + number * m_pageSize + offset;
  const std::size_t room = m_pageSize - std::min(m_pageSize, offset);
  if (offset < kPageHeader || room < kNodeHeader) return fault(number, {}, "an entry is damaged");
  if (!leaf) {
    const std::uint64_t child = Get<std::uint32_t>(node) | std::uint64_t{Get<std::uint16_t>(node + 4)} << 32;
    return WalkPage(child, depth - 1, visit, fault);
  }
  Entry entry;
  const std::size_t keySize = Get<std::uint16_t>(node + 6);
  if (keySize == 0 || keySize > kLongestKey || kNodeHeader + keySize > room) {
    return fault(number, {}, "an entry is damaged");
  }
  entry.key = {node + kNodeHeader, keySize};
  if (!DataOf(node, room, entry)) return fault(number, entry.key, "an entry is damaged");
  visit(entry);
}

bool TreeSalvage::DataOf(const char* node, std::size_t room, Entry& entry) {
  const std::size_t size = Get<std::uint32_t>(node);
  const std::size_t before = kNodeHeader + entry.key.size();
  const char* const data = node + before;
  const auto flags = Get<std::uint16_t>(node + 4);
  entry.isTree = flags == kSubTree;
  if (flags == kBigData) {
    if (room - before < sizeof(std::uint64_t)) return false;
    const auto first = Get<std::uint64_t>(data);
    const std::uint64_t pages = (kPageHeader + std::uint64_t{size} + m_pageSize - 1) / m_pageSize;
    if (!TakePages(first, pages)) return false;
    const char* const page = m_file.data() + first * m_pageSize;
    entry.data = {page + kPageHeader, size};
    return Get<std::uint64_t>(page) == first && Get<std::uint16_t>(page + 10) == kOverflow;
  }
  if ((flags != 0 && flags != kSubTree) || size > room - before) return false;
  entry.data = {data, size};
  return !entry.isTree || size == sizeof(Tree);
}

}  // namespace dtsdb::internal::rtdb
