/// \file
/// The operations of tTable on all slots at once: size, bulk load, compaction. Comes with include/table_impl.h.
#pragma once

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "include/hoare_order.h"
#include "include/table.h"

namespace dtsdb {

/// False when there is no memory for `n` slots.
template <class T>
bool tTable<T>::Slots::Allocate(int n) {
  const auto size = static_cast<std::size_t>(n);
  try {
    records.reserve(size);
    for (auto* numbers : {&lgToPh, &phToLg, &next, &prev}) numbers->resize(size);
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

template <class T>
void tTable<T>::PointIntoSlots() {
  m_pData = m_slots.records.data();
  m_pLgToPh = m_slots.lgToPh.data();
  m_pPhToLg = m_slots.phToLg.data();
  m_pNext = m_slots.next.data();
  m_pPrev = m_slots.prev.data();
}

/// Makes the first `n` records, and some more, so that a walk over new slots makes them in few steps.
template <class T>
void tTable<T>::MakeRecords(int n) {
  constexpr int kMadeAtOnce = 64;
  if (n <= m_made) return;
  m_made = m_size - n < kMadeAtOnce ? m_size : n + kMadeAtOnce;
  m_slots.records.resize(static_cast<std::size_t>(m_made));
}

/// Replaces the storage by new storage for `nSize` slots, into which the records of the used chain and the numbers
/// of the old slots go. False, and nothing changed, when there is no memory.
template <class T>
bool tTable<T>::Reallocate(int nSize) {
  Slots fresh;
  if (!DTSDB_TABLE_ASSERT(fresh.Allocate(nSize), "memory for the slots")) return false;

  m_made = std::min(m_made, nSize);
  fresh.records.resize(static_cast<std::size_t>(m_made));
  for (int i = m_head; i != -1; i = m_pNext[i]) fresh.records[static_cast<std::size_t>(i)] = std::move(m_pData[i]);
  const int kept = std::min(m_size, nSize);
  std::copy_n(m_pLgToPh, kept, fresh.lgToPh.data());
  std::copy_n(m_pPhToLg, kept, fresh.phToLg.data());
  std::copy_n(m_pNext, kept, fresh.next.data());
  std::copy_n(m_pPrev, kept, fresh.prev.data());
  m_slots = std::move(fresh);
  PointIntoSlots();
  m_capacity = nSize;
  return true;
}

/// Chains the slots from `nFrom` up to, not including, `nTo` one behind the other.
template <class T>
void tTable<T>::ChainSlots(int nFrom, int nTo) {
  for (int i = nFrom; i < nTo; ++i) {
    m_pNext[i] = i + 1;
    m_pPrev[i] = i - 1;
  }
}

template <class T>
void tTable<T>::SetSize(int nNewSize) {
  if (!DTSDB_TABLE_ASSERT(nNewSize >= 0, "nNewSize >= 0")) return;
  NoteChange();
  if (nNewSize == 0) {
    m_order.Clear();
    m_used.clear();
    m_slots = Slots();
    PointIntoSlots();
    m_capacity = m_made = 0;
    m_first = m_last = m_head = m_tail = -1;
    m_size = m_count = 0;
    m_bOrdered = 1;
    m_bStrict = true;
  } else if (nNewSize > m_size) {
    Grow(nNewSize);
  } else if (nNewSize < m_size) {
    Shrink(nNewSize);
  }
}

template <class T>
void tTable<T>::Grow(int nNewSize) {
  const int oldSize = m_size;
  if (nNewSize > m_capacity) {
    const int half = std::min(m_capacity / 2, std::numeric_limits<int>::max() - m_capacity);
    if (!Reallocate(std::max(nNewSize, m_capacity + half)) && !Reallocate(nNewSize)) return;
  } else {
    // New storage would have given the free slots default records: so does growth into storage at hand.
    for (int i = m_first; i != -1; i = m_pNext[i]) {
      if (i < m_made) m_pData[i] = T();
    }
  }
  std::fill(m_pLgToPh + oldSize, m_pLgToPh + nNewSize, -1);
  std::fill(m_pPhToLg + oldSize, m_pPhToLg + nNewSize, -1);
  ChainSlots(oldSize, nNewSize);
  if (m_first != -1) {
    m_pNext[m_last] = oldSize;
  } else {
    m_first = oldSize;
  }
  m_last = nNewSize - 1;
  // The back link of the first new slot stays that to the slot below it. Kept: K03.
  m_pPrev[m_first] = -1;
  m_pNext[m_last] = -1;
  m_size = nNewSize;
  if (oldSize == 0) m_bOrdered = 1;
  if (!m_order.IsEmpty()) m_used.resize(static_cast<std::size_t>(m_size), false);
}

template <class T>
void tTable<T>::Shrink(int nNewSize) {
  const int kept = std::min(m_count, nNewSize);
  std::unique_ptr<T[]> data(new (std::nothrow) T[static_cast<std::size_t>(kept)]);
  if (!DTSDB_TABLE_ASSERT(data != nullptr, "memory for the slots")) return;
  int n = 0;
  for (int i = m_head; n < kept; i = m_pNext[i]) data[static_cast<std::size_t>(n++)] = std::move(m_pData[i]);

  m_order.Clear();
  m_used.clear();
  m_head = m_tail = -1;  // empty, whatever the records contain. Kept: K01.
  m_count = 0;
  m_bOrdered = 1;
  m_bStrict = true;
  m_size = 0;
  if (!Reallocate(nNewSize)) return SetSize(0);
  m_size = nNewSize;
  MakeRecords(kept);
  std::move(data.get(), data.get() + kept, m_pData);
  for (int i = 0; i < m_size; ++i) Number(i, i);
  ChainSlots(0, m_size);
  m_first = 0;
  m_last = m_size - 1;
  m_pNext[m_last] = -1;
}

/// True when the `n` records at `p` are in order and no two are equal.
template <class T>
bool tTable<T>::IsStrict(const T* p, int n) {
  return std::adjacent_find(p, p + n, [](const T& a, const T& b) { return !(a < b); }) == p + n;
}

/// Makes the first `n` slots, 1 or more, the used chain in slot order, and the others the free chain.
template <class T>
void tTable<T>::NumberInOrder(int n) {
  m_order.Clear();
  m_used.clear();
  ChainSlots(0, m_size);
  for (int i = 0; i < n; ++i) Number(i, i);
  std::fill(m_pLgToPh + n, m_pLgToPh + m_size, -1);
  std::fill(m_pPhToLg + n, m_pPhToLg + m_size, -1);
  m_count = n;
  m_head = 0;
  m_tail = n - 1;
  m_pNext[m_tail] = -1;
  m_first = m_last = -1;
  if (n != m_size) {
    m_first = n;
    m_last = m_size - 1;
    m_pNext[m_last] = -1;
    m_pPrev[m_first] = -1;
  }
  m_bOrdered = 1;
}

template <class T>
bool tTable<T>::SetData(T* p, int n, bool bSorted) {
  if (!BeginSetData(n)) return n < 1;
  NoteOrder(p, n, !bSorted);
  const int made = std::min(n, m_made);
  for (int i = 0; i < made; ++i) m_pData[i] = p[i];  // `p` may lie in this table, at or behind slot i
  m_slots.records.insert(m_slots.records.end(), p + made, p + n);
  m_made = std::max(n, m_made);
  NumberInOrder(n);
  return true;
}

template <class T>
bool tTable<T>::SetData(std::vector<T>&& records) {
  const int n = static_cast<int>(records.size());
  if (!BeginSetData(n)) return n < 1;
  NoteOrder(records.data(), n, true);
  if (records.capacity() < static_cast<std::size_t>(m_size)) {
    MakeRecords(n);
    std::move(records.begin(), records.end(), m_pData);
  } else {
    // What lies in the slots behind them stays.
    for (int i = n; i < m_made; ++i) records.push_back(std::move(m_pData[i]));
    m_slots.records = std::move(records);
    PointIntoSlots();
    m_made = std::max(m_made, n);
    m_capacity = static_cast<int>(std::min(m_slots.records.capacity(), static_cast<std::size_t>(m_capacity)));
  }
  NumberInOrder(n);
  return true;
}

/// Empties the table and makes room for `n` records. False when there is nothing more to do: no records, or no room.
template <class T>
bool tTable<T>::BeginSetData(int n) {
  NoteChange();
  if (m_count != 0) Clear();
  if (!DTSDB_TABLE_ASSERT(n >= 1, "n >= 1")) return false;
  if (m_size < n) SetSize(n);
  return m_size >= n;
}

/// Notes whether the `n` records at `p` ascend strictly; where they don't, sorts them if that is asked for.
template <class T>
void tTable<T>::NoteOrder(T* p, int n, bool sorts) {
  m_bStrict = IsStrict(p, n);
  if (m_bStrict || !sorts) return;
  QuickSort(p, 0, n - 1);
  m_bStrict = IsStrict(p, n);
}

/// Sorts `p[nLow]` to `p[nHigh]` in the order of HoareSort.
template <class T>
void tTable<T>::QuickSort(T* p, int nLow, int nHigh) {
  if (nLow >= nHigh) return;
  T* const first = p + nLow;
  const std::vector<int> order = HoareOrder(nHigh - nLow + 1, [first](int a, int b) { return first[a] < first[b]; });
  std::vector<T> sorted;
  sorted.reserve(order.size());
  for (const int from : order) sorted.push_back(std::move(first[from]));
  std::move(sorted.begin(), sorted.end(), first);
}

template <class T>
bool tTable<T>::SetDataTail(const T* p, int n) {
  if (!DTSDB_TABLE_ASSERT(n >= 1, "n >= 1")) return true;
  NoteChange();
  if (m_size < n) SetSize(n);
  if (m_size < n) return false;
  while (m_count > n) Unlink(m_tail);
  while (m_count < n) {
    const int slot = Link(m_tail, -1);
    m_pData[slot] = p[slot];
  }
  m_bOrdered = 1;
  return true;
}

template <class T>
void tTable<T>::Clear() {
  NoteChange();
  if (m_count == 0) return;
  m_order.Clear();
  m_used.clear();
  std::fill_n(m_pLgToPh, m_size, -1);
  std::fill_n(m_pPhToLg, m_size, -1);
  ChainSlots(0, m_size);
  m_count = 0;
  m_head = m_tail = -1;
  m_first = 0;
  m_last = m_size - 1;
  m_pPrev[m_first] = -1;
  m_pNext[m_last] = -1;
  m_bOrdered = 1;
  m_bStrict = true;
}

template <class T>
bool tTable<T>::IsCompact() const {
  if (!m_order.IsEmpty() || !m_bStrict) return false;
  for (int i = 0; i < m_count; ++i) {
    if (m_pLgToPh[i] != i) return false;
  }
  return IsStrict(m_pData, m_count);
}

template <class T>
void tTable<T>::Compact() {
  NoteChange();
  m_bOrdered = 1;
  if (m_count == 0) return;
  const int n = m_count;
  if (IsCompact()) return NumberInOrder(n);
  std::unique_ptr<T[]> records(new (std::nothrow) T[static_cast<std::size_t>(n)]);
  if (!DTSDB_TABLE_ASSERT(records != nullptr, "memory for the slots")) return;
  CopyOut(records.get(), n);
  Clear();
  SetData(records.get(), n, false);
}

template <class T>
bool tTable<T>::CopyOut(T* p, int n) {
  if (n != m_count) return false;
  for (int i = m_head; i != -1; i = m_pNext[i]) *p++ = m_pData[i];
  return true;
}

/// Exchanges everything but the growth step and the change counts with `other`, for both of which this is a change.
template <class T>
void tTable<T>::Swap(tTable& other) {
  NoteChange();
  other.NoteChange();
  std::swap(m_slots, other.m_slots);
  std::swap(m_made, other.m_made);
  PointIntoSlots();
  other.PointIntoSlots();
  std::swap(m_bOrdered, other.m_bOrdered);
  std::swap(m_size, other.m_size);
  std::swap(m_first, other.m_first);
  std::swap(m_last, other.m_last);
  std::swap(m_head, other.m_head);
  std::swap(m_tail, other.m_tail);
  std::swap(m_count, other.m_count);
  std::swap(m_capacity, other.m_capacity);
  std::swap(m_bStrict, other.m_bStrict);
  std::swap(m_order, other.m_order);
  std::swap(m_place, other.m_place);
  std::swap(m_used, other.m_used);
}

template <class T>
tChildNode* tTable<T>::ChildList(int nHead) const requires HasChildNumber<T> {
  tChildNode* first = nullptr;
  if constexpr (HasChildNumber<T>) {  // clang 14 compiles the body for every table that is instantiated as a whole
    tChildNode** end = &first;
    // No more steps than slots: damaged links can lead in a circle.
    for (int steps = 0; nHead != -1 && steps < m_size; ++steps) {
      if (!DTSDB_TABLE_ASSERT(nHead >= 0 && nHead < m_size, "nPh >= 0 && nPh < m_size")) break;
      const T& row = GetPh(nHead);
      *end = new tChildNode;
      (*end)->value = row.ChildNumber();
      end = &(*end)->next;
      nHead = row.next;
    }
  }
  return first;
}

}  // namespace dtsdb
