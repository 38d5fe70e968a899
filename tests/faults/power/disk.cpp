#include "tests/faults/power/disk.h"

#include <algorithm>
#include <cstring>

#include "tests/support/bytes.h"

namespace dtsdb::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSector = 512;

/// Changes of the entries of a folder.
bool IsEntry(ChangeKind kind) {
  return kind == ChangeKind::kEnter || kind == ChangeKind::kRename || kind == ChangeKind::kExchange ||
         kind == ChangeKind::kRemove;
}

/// Inodes are used again for other files: gives each file and folder a number of its own.
class Numbers {
 public:
  void Replace(ChangeHead& head) {
    if (head.kind == ChangeKind::kMake) m_numbers[head.inode] = ++m_last;
    for (std::uint64_t* const inode : {&head.inode, &head.folder, &head.otherFolder}) *inode = Of(*inode);
  }

 private:
  std::uint64_t Of(std::uint64_t inode) {
    if (inode == 0) return 0;
    const auto [number, isNew] = m_numbers.try_emplace(inode, m_last + 1);
    if (isNew) ++m_last;
    return number->second;
  }

  std::map<std::uint64_t, std::uint64_t> m_numbers;
  std::uint64_t m_last = 0;
};

}  // namespace

std::vector<Change> ReadChanges(const fs::path& record) {
  const std::string bytes = ReadBytes(record);
  std::vector<Change> changes;
  Numbers numbers;
  std::size_t at = 0;
  const auto take = [&](std::size_t size) {
    at += size;
    return bytes.substr(at - size, size);
  };
  while (at + sizeof(ChangeHead) <= bytes.size()) {
    Change change;
    std::memcpy(&change.head, bytes.data() + at, sizeof(ChangeHead));
    at += sizeof(ChangeHead);
    change.name = take(change.head.nameSize);
    change.otherName = take(change.head.otherNameSize);
    change.data = take(change.head.dataSize);
    numbers.Replace(change.head);
    changes.push_back(std::move(change));
  }
  return changes;
}

Survival Survival::Whole(bool survives) {
  Survival survival;
  survival.m_way = survives ? Way::kAll : Way::kNone;
  return survival;
}

Survival Survival::Single(int place, bool alone) {
  Survival survival;
  survival.m_way = alone ? Way::kOnly : Way::kAllBut;
  survival.m_place = place;
  return survival;
}

Survival Survival::Chance(unsigned seed) {
  Survival survival;
  survival.m_way = Way::kChance;
  survival.m_random.seed(seed + 1);
  return survival;
}

bool Survival::Survives() {
  const int place = m_asked++;
  switch (m_way) {
    case Way::kAll:
      return true;
    case Way::kNone:
      return false;
    case Way::kAllBut:
      return place != m_place;
    case Way::kOnly:
      return place == m_place;
    case Way::kChance:
      break;
  }
  return m_random() % 2 == 0;
}

std::vector<std::pair<std::size_t, std::size_t>> Survival::PartsOf(std::size_t size) {
  if (m_way != Way::kChance || m_random() % 4 != 0) return {{0, size}};
  std::vector<std::pair<std::size_t, std::size_t>> parts;
  for (std::size_t at = 0; at < size; at += kSector) {
    if (m_random() % 2 == 0) parts.emplace_back(at, std::min(kSector, size - at));
  }
  return parts;
}

bool Survival::ForgetsSize() { return m_way == Way::kChance && m_random() % 5 == 0; }

Disk::Disk(const std::vector<Change>& changes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const Change& change = changes[i];
    const ChangeKind kind = change.head.kind;
    if (kind == ChangeKind::kMark) {
      m_mark = static_cast<int>(change.head.offset);
    } else if (kind == ChangeKind::kMake) {
      NodeOf(change.head.inode).isFolder = change.head.offset == 1;
    } else if (kind == ChangeKind::kSync) {
      Node& node = NodeOf(change.head.inode);
      node.confirmed.insert(node.confirmed.end(), node.pending.begin(), node.pending.end());
      node.pending.clear();
    } else {
      if (m_root == 0 && IsEntry(kind)) m_root = change.head.folder;
      NodeOf(IsEntry(kind) ? change.head.folder : change.head.inode).pending.push_back(&change);
    }
  }
  for (const auto& [inode, node] : m_nodes) m_pending += static_cast<int>(node.pending.size());
}

void Disk::Apply(const Change& change, Entries& entries) {
  const auto inodeAt = [&](const std::string& name) { return entries.contains(name) ? entries.at(name) : 0; };
  switch (change.head.kind) {
    case ChangeKind::kEnter:
      entries[change.name] = change.head.inode;
      break;
    case ChangeKind::kRemove:
      entries.erase(change.name);
      break;
    case ChangeKind::kRename:
      if (entries.contains(change.name)) entries[change.otherName] = inodeAt(change.name);
      entries.erase(change.name);
      break;
    case ChangeKind::kExchange:
      if (entries.contains(change.name) && entries.contains(change.otherName)) {
        std::swap(entries[change.name], entries[change.otherName]);
      }
      break;
    default:
      break;
  }
}

/// Writes what survives of `change`, all of it without `survival`.
void Disk::Write(const Change& change, std::string& bytes, Survival* survival) {
  const auto offset = static_cast<std::size_t>(change.head.offset);
  if (change.head.kind == ChangeKind::kSize) {
    bytes.resize(offset);
    return;
  }
  const std::size_t size = change.data.size();
  if (bytes.size() < offset + size) bytes.resize(offset + size);
  using Parts = std::vector<std::pair<std::size_t, std::size_t>>;
  for (const auto& [at, length] : survival == nullptr ? Parts{{0, size}} : survival->PartsOf(size)) {
    bytes.replace(offset + at, length, change.data, at, length);
  }
}

std::string Disk::BytesOf(std::uint64_t inode, Survival& survival) const {
  std::string bytes;
  const auto found = m_nodes.find(inode);
  if (found == m_nodes.end()) return bytes;
  for (const Change* change : found->second.confirmed) Write(*change, bytes, nullptr);
  const std::size_t size = bytes.size();
  for (const Change* change : found->second.pending) {
    if (survival.Survives()) Write(*change, bytes, &survival);
  }
  if (bytes.size() > size && survival.ForgetsSize()) bytes.resize(size);
  return bytes;
}

Disk::Entries Disk::EntriesOf(std::uint64_t inode, Survival& survival) const {
  Entries entries;
  const auto found = m_nodes.find(inode);
  if (found == m_nodes.end()) return entries;
  for (const Change* change : found->second.confirmed) Apply(*change, entries);
  for (const Change* change : found->second.pending) {
    if (survival.Survives()) Apply(*change, entries);
  }
  return entries;
}

void Disk::MakeFolder(std::uint64_t inode, Survival& survival, const fs::path& path) const {
  for (const auto& [name, entry] : EntriesOf(inode, survival)) {
    const auto node = m_nodes.find(entry);
    if (node != m_nodes.end() && node->second.isFolder) {
      fs::create_directory(path / name);
      MakeFolder(entry, survival, path / name);
    } else {
      WriteBytes(path / name, BytesOf(entry, survival));
    }
  }
}

void Disk::Make(Survival survival, const fs::path& folder) const { MakeFolder(m_root, survival, folder); }

}  // namespace dtsdb::test
