/// \file
/// Numbers by name.
#pragma once

#include <QHash>
#include <QStringView>
#include <cstddef>
#include <vector>

#include "model/basic_types.h"

namespace dtsdb::internal {

/// Finds the numbers of names that are all different. The texts are others' and must outlive it.
class NameIndex {
 public:
  /// Makes room for `n` names at once.
  void Reserve(std::size_t n) {
    m_names.reserve(n);
    if (2 * n > m_slots.size()) Rehash(2 * n);
  }

  int Count() const { return static_cast<int>(m_names.size()); }
  QStringView operator[](int number) const { return m_names[static_cast<std::size_t>(number)]; }
  const std::vector<QStringView>& Names() const { return m_names; }

  /// The number of `name`, -1 if it isn't there.
  int Find(QStringView name) const {
    if (m_slots.empty()) return -1;
    const u32 hash = HashOf(name);
    for (std::size_t at = hash & m_mask; m_slots[at].number != -1; at = (at + 1) & m_mask) {
      if (m_slots[at].hash == hash && (*this)[m_slots[at].number] == name) return m_slots[at].number;
    }
    return -1;
  }

  /// Fetches where Find of `name` will look first.
  void Fetch(QStringView name) const {
    if (!m_slots.empty()) __builtin_prefetch(&m_slots[HashOf(name) & m_mask]);
  }

  /// Gives `name`, which isn't there yet, the next number, counted from 0; returns it.
  int Add(QStringView name) {
    if (2 * (m_names.size() + 1) > m_slots.size()) Rehash(4 * (m_names.size() + 1));
    const int number = Count();
    m_names.push_back(name);
    Place({HashOf(name), number});
    return number;
  }

 private:
  struct Slot {
    u32 hash = 0;
    int number = -1;
  };
  static constexpr std::size_t kLeastSlots = 16;

  static u32 HashOf(QStringView name) { return static_cast<u32>(qHash(name, QHashSeed::globalSeed())); }

  void Place(const Slot& slot) {
    std::size_t at = slot.hash & m_mask;
    while (m_slots[at].number != -1) at = (at + 1) & m_mask;
    m_slots[at] = slot;
  }

  void Rehash(std::size_t atLeast) {
    std::size_t size = kLeastSlots;
    while (size < atLeast) size *= 2;
    const std::vector<Slot> before = std::exchange(m_slots, std::vector<Slot>(size));
    m_mask = size - 1;
    for (const Slot& slot : before) {
      if (slot.number != -1) Place(slot);
    }
  }

  std::vector<QStringView> m_names;  // by number
  std::vector<Slot> m_slots;         // a power of two, at most half of them taken
  std::size_t m_mask = 0;
};

}  // namespace dtsdb::internal
