#include "validation/internal/name_order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace dtsdb::internal {
namespace {

/// A name, with the part of it that is being compared as one number.
struct Entry {
  std::uint64_t key;
  int place;
};

/// Sorts names by parts of a few characters: first all by their first part, then those that are equal so far by the
/// next one, and so on.
class PartSort {
 public:
  explicit PartSort(std::span<const QStringView> names) : m_names(names), m_entries(names.size()) {
    for (std::size_t i = 0; i < m_entries.size(); ++i) m_entries[i] = {0, static_cast<int>(i)};
  }

  std::vector<int> Order() {
    Sort(m_entries, 0);
    std::vector<int> order(m_entries.size());
    std::transform(m_entries.begin(), m_entries.end(), order.begin(), [](const Entry& entry) { return entry.place; });
    return order;
  }

 private:
  static constexpr std::size_t kFew = 8;

  const QStringView& NameOf(const Entry& entry) const { return m_names[static_cast<std::size_t>(entry.place)]; }

  /// Sorts `entries`, whose names are equal up to character `at`.
  void Sort(std::span<Entry> entries, qsizetype at) {
    if (entries.size() <= kFew) return SortWhole(entries);
    at = CommonLength(entries, at);
    const qsizetype length = TakeParts(entries, at);
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    for (auto first = entries.begin(); first != entries.end();) {
      const auto last = std::find_if(first, entries.end(), [first](const Entry& e) { return e.key != first->key; });
      const std::span<Entry> equal(first, last);
      first = last;
      if (equal.size() == 1) continue;
      // A name that has ended by here equals the others but for zero characters behind it.
      const bool goOn = std::all_of(equal.begin(), equal.end(),
                                    [&](const Entry& entry) { return NameOf(entry).size() > at + length; });
      if (goOn) {
        Sort(equal, at + length);
      } else {
        SortWhole(equal);
      }
    }
  }

  void SortWhole(std::span<Entry> entries) {
    std::sort(entries.begin(), entries.end(),
              [this](const Entry& a, const Entry& b) { return NameOf(a).compare(NameOf(b)) < 0; });
  }

  /// How many characters the names of `entries` have in common; `at` at least.
  qsizetype CommonLength(std::span<const Entry> entries, qsizetype at) const {
    const QStringView model = NameOf(entries.front());
    qsizetype common = model.size();
    for (const Entry& entry : entries) {
      const QStringView name = NameOf(entry);
      qsizetype same = at;
      const qsizetype most = std::min(common, name.size());
      while (same < most && name[same] == model[same]) ++same;
      common = same;
      if (common == at) break;
    }
    return common;
  }

  /// Sets the keys of `entries` to what stands from character `at` on; returns how many characters a key has: eight
  /// where all of them are single bytes, else four. Behind the end of a name come zeros.
  qsizetype TakeParts(std::span<Entry> entries, qsizetype at) const {
    constexpr qsizetype kBytes = 8;
    constexpr qsizetype kUnits = 4;
    unsigned all = 0;
    for (Entry& entry : entries) {
      const QStringView name = NameOf(entry);
      const qsizetype end = std::min(name.size(), at + kBytes);
      std::uint64_t key = 0;
      for (qsizetype i = at; i < end; ++i) {
        all |= name[i].unicode();
        key = key << 8 | name[i].unicode();
      }
      entry.key = end == at ? 0 : key << (8 * (kBytes - (end - at)));
    }
    if (all < 0x100) return kBytes;
    for (Entry& entry : entries) {
      const QStringView name = NameOf(entry);
      entry.key = 0;
      for (qsizetype i = at; i < at + kUnits; ++i)
        entry.key = entry.key << 16 | (i < name.size() ? name[i].unicode() : 0);
    }
    return kUnits;
  }

  std::span<const QStringView> m_names;
  std::vector<Entry> m_entries;
};

}  // namespace

std::vector<int> NameOrder(std::span<const QStringView> names) { return PartSort(names).Order(); }

}  // namespace dtsdb::internal
