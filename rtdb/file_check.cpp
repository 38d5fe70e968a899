#include "rtdb/file_check.h"

#include <fcntl.h>
#include <lmdb.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace dtsdb::rtdb {
namespace {

// The file format of LMDB 0.9 on machines of 64 bits.
constexpr std::uint32_t kMagic = 0xBEEFC0DE;
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kPageHeader = 16;
constexpr std::size_t kNodeHeader = 8;
constexpr std::uint64_t kNoPage = ~std::uint64_t{0};
enum PageFlags : std::uint16_t { kBranch = 1, kLeaf = 2, kOverflow = 4, kMeta = 8 };
enum NodeFlags : std::uint16_t { kBigData = 1, kSubTree = 2 };

struct Tree {
  std::uint32_t pageSize;
  std::uint16_t flags;
  std::uint16_t depth;
  std::uint64_t branchPages;
  std::uint64_t leafPages;
  std::uint64_t overflowPages;
  std::uint64_t entries;
  std::uint64_t root;
};

struct Meta {
  std::uint32_t magic;
  std::uint32_t version;
  std::uint64_t address;
  std::uint64_t mapSize;
  Tree free;
  Tree main;
  std::uint64_t lastPage;
  std::uint64_t transaction;
};

static_assert(sizeof(Tree) == 48 && sizeof(Meta) == 136, "as LMDB lays them out");

template <class T>
T Get(const char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : m_fd(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  int Get() const { return m_fd; }

 private:
  int m_fd;
};

bool ReadMeta(int fd, std::uint64_t offset, Meta& meta) {
  char page[kPageHeader + sizeof(Meta)];
  if (::pread(fd, page, sizeof(page), static_cast<off_t>(offset)) != static_cast<ssize_t>(sizeof(page))) return false;
  if ((Get<std::uint16_t>(page + 10) & kMeta) == 0) return false;
  meta = Get<Meta>(page + kPageHeader);
  return true;
}

bool IsPageSize(std::uint32_t size) { return std::has_single_bit(size) && size >= 512 && size <= 65536; }

/// The last pages of a large transaction may never have been written, but not many times the file.
bool IsLastPage(std::uint64_t page, std::uint64_t fileSize, std::uint32_t pageSize) {
  return page >= 1 && page <= 2 * (fileSize / pageSize) + (1U << 20);
}

/// Walks the trees of one state of the store.
class PageWalk {
 public:
  PageWalk(const char* file, std::uint64_t size, const Meta& meta)
      : m_file(file),
        m_pageSize(meta.free.pageSize),
        m_pages(std::min(size / m_pageSize, meta.lastPage + 1)),
        m_lastPage(meta.lastPage),
        m_used(m_lastPage + 1, false) {
    m_used[0] = m_used[1] = true;
  }

  bool Sound(const Meta& meta) {
    m_freeTree = false;
    if (!SoundTree(meta.main)) return false;
    m_freeTree = true;
    return SoundTree(meta.free) && SoundFreePages();
  }

 private:
  bool SoundTree(const Tree& tree) {
    if (tree.root == kNoPage) return tree.entries == 0;
    std::uint64_t entries = 0;
    return tree.depth >= 1 && tree.depth <= 32 && SoundPage(tree.root, tree.depth, entries) && entries == tree.entries;
  }

  bool Take(std::uint64_t page, std::uint64_t count) {
    if (page >= m_pages || count > m_pages - page) return false;
    for (std::uint64_t i = page; i < page + count; ++i) {
      if (m_used[i]) return false;
      m_used[i] = true;
    }
    return true;
  }

  bool SoundPage(std::uint64_t number, int depth, std::uint64_t& entries) {
    if (!Take(number, 1)) return false;
    const char* page = m_file + number * m_pageSize;
    const auto kind = Get<std::uint16_t>(page + 10);
    const std::size_t lower = Get<std::uint16_t>(page + 12);
    const std::size_t upper = Get<std::uint16_t>(page + 14);
    if (Get<std::uint64_t>(page) != number || kind != (depth == 1 ? kLeaf : kBranch)) return false;
    if (lower < kPageHeader || lower % 2 != 0 || lower > upper || upper > m_pageSize) return false;
    const std::size_t count = (lower - kPageHeader) / 2;
    if (count == 0 || (kind == kBranch && count < 2)) return false;
    if (kind == kLeaf) entries += count;
    return SoundNodes(page, count, upper) && SoundContents(page, count, depth, entries);
  }

  /// A node's size in its page, or nothing if it doesn't fit there.
  std::optional<std::size_t> NodeSize(const char* page, std::size_t offset, bool leaf) const {
    if (offset % 2 != 0 || offset + kNodeHeader > m_pageSize) return std::nullopt;
    const char* node = page + offset;
    std::size_t size = kNodeHeader + Get<std::uint16_t>(node + 6);
    if (leaf) size += (Get<std::uint16_t>(node + 4) & kBigData) != 0 ? sizeof(std::uint64_t) : DataSize(node);
    size += size % 2;
    return offset + size <= m_pageSize ? std::optional(size) : std::nullopt;
  }

  static std::size_t DataSize(const char* node) {
    return Get<std::uint16_t>(node) | static_cast<std::size_t>(Get<std::uint16_t>(node + 2)) << 16;
  }

  /// The nodes fill the page's end without gap or overlap.
  bool SoundNodes(const char* page, std::size_t count, std::size_t upper) {
    m_extents.clear();
    const bool leaf = Get<std::uint16_t>(page + 10) == kLeaf;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t offset = Get<std::uint16_t>(page + kPageHeader + 2 * i);
      const auto size = NodeSize(page, offset, leaf);
      if (!size) return false;
      m_extents.emplace_back(offset, *size);
    }
    std::sort(m_extents.begin(), m_extents.end());
    std::size_t end = upper;
    for (const auto& [offset, size] : m_extents) {
      if (offset != end) return false;
      end += size;
    }
    return end == m_pageSize;
  }

  bool SoundContents(const char* page, std::size_t count, int depth, std::uint64_t& entries) {
    for (std::size_t i = 0; i < count; ++i) {
      const char* node = page + Get<std::uint16_t>(page + kPageHeader + 2 * i);
      if (depth > 1) {
        const std::uint64_t child = DataSize(node) | static_cast<std::uint64_t>(Get<std::uint16_t>(node + 4)) << 32;
        if (!SoundPage(child, depth - 1, entries)) return false;
      } else if (!SoundLeafNode(node)) {
        return false;
      }
    }
    return true;
  }

  bool SoundLeafNode(const char* node) {
    const auto flags = Get<std::uint16_t>(node + 4);
    const std::size_t keySize = Get<std::uint16_t>(node + 6);
    const char* data = node + kNodeHeader + keySize;
    const std::size_t size = DataSize(node);
    if (keySize == 0 || keySize > 511) return false;
    if (flags == kBigData) {
      const auto first = Get<std::uint64_t>(data);
      const std::uint64_t pages = (kPageHeader + size + m_pageSize - 1) / m_pageSize;
      if (!Take(first, pages)) return false;
      const char* page = m_file + first * m_pageSize;
      if (Get<std::uint64_t>(page) != first || Get<std::uint16_t>(page + 10) != kOverflow ||
          Get<std::uint32_t>(page + 12) != pages) {
        return false;
      }
      data = page + kPageHeader;
    } else if (flags == kSubTree) {
      return !m_freeTree && size == sizeof(Tree) && SoundTree(Get<Tree>(data));
    } else if (flags != 0) {
      return false;
    }
    return !m_freeTree || CollectFreePages(data, size, keySize);
  }

  bool CollectFreePages(const char* data, std::size_t size, std::size_t keySize) {
    if (keySize != sizeof(std::uint64_t) || size < sizeof(std::uint64_t)) return false;
    const auto count = Get<std::uint64_t>(data);
    if (count > size / sizeof(std::uint64_t) - 1) return false;
    std::uint64_t above = m_lastPage + 1;
    for (std::uint64_t i = 1; i <= count; ++i) {
      const auto page = Get<std::uint64_t>(data + i * sizeof(std::uint64_t));
      if (page < 2 || page >= above) return false;
      m_free.push_back(above = page);
    }
    return true;
  }

  /// No page is both free and in use, or free twice.
  bool SoundFreePages() {
    for (const std::uint64_t page : m_free) {
      if (m_used[page]) return false;
      m_used[page] = true;
    }
    return true;
  }

  const char* m_file;
  std::size_t m_pageSize;
  std::uint64_t m_pages;  ///< that the file really has
  std::uint64_t m_lastPage;
  std::vector<bool> m_used;
  std::vector<std::uint64_t> m_free;
  std::vector<std::pair<std::size_t, std::size_t>> m_extents;
  bool m_freeTree = false;
};

/// The head of the state that a read transaction sees, or nothing when writers have overwritten it since.
std::optional<Meta> MetaOf(int fd, std::uint32_t pageSize, std::uint64_t transaction) {
  for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{pageSize}}) {
    Meta meta;
    if (ReadMeta(fd, offset, meta) && meta.transaction == transaction) return meta;
  }
  return std::nullopt;
}

std::string CheckState(MDB_env* env, MDB_txn* transaction, bool& overtaken) {
  mdb_filehandle_t fd;
  MDB_stat stat;
  mdb_env_get_fd(env, &fd);
  mdb_env_stat(env, &stat);
  const auto meta = MetaOf(fd, stat.ms_psize, mdb_txn_id(transaction));
  overtaken = !meta;
  if (!meta) return {};
  struct stat file {};
  if (::fstat(fd, &file) != 0) return std::strerror(errno);
  const auto size = static_cast<std::size_t>(file.st_size);
  void* map = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd, 0);
  if (map == MAP_FAILED) return std::strerror(errno);
  const bool sound = IsLastPage(meta->lastPage, size, stat.ms_psize) &&
                     PageWalk(static_cast<const char*>(map), size, *meta).Sound(*meta);
  ::munmap(map, size);
  // A head that was being overwritten while it was read is no fault of the file.
  const auto again = MetaOf(fd, stat.ms_psize, mdb_txn_id(transaction));
  overtaken = !sound && (!again || std::memcmp(&*again, &*meta, sizeof(Meta)) != 0);
  return sound ? "" : "the store is damaged";
}

}  // namespace

std::string CheckFileHead(const std::string& path) {
  static const char* const kForeign = "not a store of the realtime database";
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat about {};
  if (file.Get() < 0 || ::fstat(file.Get(), &about) != 0) return std::strerror(errno);
  if (!S_ISREG(about.st_mode)) return kForeign;
  if (about.st_size == 0) return {};
  Meta meta;
  if (!ReadMeta(file.Get(), 0, meta) || meta.magic != kMagic) return kForeign;
  if (meta.version != kVersion) return "written by another version of LMDB";
  const std::uint32_t pageSize = meta.free.pageSize;
  if (!IsPageSize(pageSize)) return "the store is damaged";
  for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{pageSize}}) {
    if (!ReadMeta(file.Get(), offset, meta) || meta.magic != kMagic || meta.version != kVersion ||
        meta.free.pageSize != pageSize ||
        !IsLastPage(meta.lastPage, static_cast<std::uint64_t>(about.st_size), pageSize)) {
      return "the store is damaged";
    }
  }
  return {};
}

std::string CheckPages(MDB_env* env) {
  // A writer that commits twice in between overwrites the head that belongs to our transaction: look again.
  for (int attempt = 0; attempt < 100; ++attempt) {
    MDB_txn* transaction = nullptr;
    const int result = mdb_txn_begin(env, nullptr, MDB_RDONLY, &transaction);
    if (result != MDB_SUCCESS) return mdb_strerror(result);
    bool overtaken = false;
    std::string wrong = CheckState(env, transaction, overtaken);
    mdb_txn_abort(transaction);
    if (!overtaken) return wrong;
  }
  return "other programs write too fast for a look at its pages";
}

}  // namespace dtsdb::rtdb
