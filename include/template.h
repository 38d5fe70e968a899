/// \file
/// The containers of the network model: tTable, the table that every kind of record lives in, tArray and Matrix.
#pragma once

#include <algorithm>
#include <cassert>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "include/check.h"
#include "include/hoare_order.h"
#include "include/matrix.h"
#include "include/slot_order.h"

namespace dtsdb {

class QArchive;
template <class T>
class TableImage;

/// A node of the list that tTable::ChildList gives. It owns the nodes behind it.
struct tChildNode {
  int value = -1;              ///< number of a child record
  tChildNode* next = nullptr;  ///< next node, null at the end

  tChildNode() = default;
  tChildNode(const tChildNode&) = delete;
  tChildNode& operator=(const tChildNode&) = delete;

  /// Deletes the nodes behind this one, one by one: a chain of any length needs no deep recursion.
  ~tChildNode() {
    while (next != nullptr) {
      tChildNode* const behind = next;
      next = behind->next;
      behind->next = nullptr;
      delete behind;
    }
  }
};

/// A relation row: it names a child record by number.
template <class T>
concept HasChildNumber = requires(const T& row) {
  row.ChildNumber();
};

/// A table of records kept sorted by `T::operator<`, each under two numbers.
///
/// The physical number is the record's slot: it stays while other records come and go. The logical number is its
/// rank in the order, 0 to GetCount() - 1. After Compact and SetData the two are equal.
///
/// `T` offers a default constructor, assignment, `operator==` and `operator<`. Records are found by binary search
/// with these two. The table owns its records; a reference to one holds until the table grows, shrinks or is
/// filled anew. One thread at a time.
///
/// A number out of range writes one warning (DTSDB_ASSERT) and reaches no foreign memory: the operation then
/// works on a spare default record, fresh at each use, or gives -1.
///
/// Cost: access by number is two array reads. Appending in order is one comparison. An insertion or removal
/// elsewhere renumbers what stands behind it; in a large table that is put off until a number is asked for, so
/// that a series of n such calls takes about n log n.
template <class T>
class tTable {
 public:
  tTable() = default;
  tTable(const tTable&) = delete;
  tTable& operator=(const tTable&) = delete;
  virtual ~tTable() { Release(); }

  /// Number of records.
  int GetCount() const { return m_count; }
  /// Number of slots.
  int GetSize() const { return m_size; }
  /// True when slot `nPh` holds a record.
  bool IsUsed(int nPh) const;

  /// The record with logical number `nLg`.
  T& operator[](int nLg) {
    if (!DTSDB_ASSERT(nLg >= 0 && nLg < m_count, "nLg >=0 && nLg < m_count")) return Spare();
    Settle();
    return m_pData[m_pLgToPh[nLg]];
  }

  /// The same access, as the searches use it.
  T& GetAt(int nIndex) {
    if (!DTSDB_ASSERT(nIndex >= 0 && nIndex < m_count, "nIndex >= 0 && nIndex < m_count")) return Spare();
    Settle();
    return m_pData[m_pLgToPh[nIndex]];
  }

  /// What lies in slot `nPh`, used or free.
  T& GetPh(int nPh) {
    if (!DTSDB_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return Spare();
    return m_pData[nPh];
  }

  /// The physical number of the record with logical number `nLg`.
  int LgToPh(int nLg) {
    if (!DTSDB_ASSERT(nLg >= 0 && nLg < m_count, "nLg >= 0 && nLg < m_count")) return -1;
    Settle();
    return m_pLgToPh[nLg];
  }

  /// The logical number of the record in slot `nPh`, -1 for a free slot.
  int PhToLg(int nPh) {
    if (!DTSDB_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return -1;
    Settle();
    return m_pPhToLg[nPh];
  }

  /// The physical number of a record equal to `rec`, -1 if there is none.
  int Find(const T& rec);

  /// Inserts a copy of `rec` at its place; gives its physical number, or -1 when an equal record exists or no
  /// slot can be had. A table without a free slot grows first, also for a record that is then refused.
  int Add(const T& rec);

  /// Removes the record in slot `nPh`; gives the logical number that it had, or -1 when the slot was free.
  int Remove(int nPh);

  /// Changes the number of slots. Growing keeps all records and numbers. A smaller size, deliberately, leaves a
  /// table that reports itself empty, with the numbers of the copied records still standing; 0 frees everything.
  void SetSize(int nNewSize);

  /// Number of slots by which a full table grows in Add; a negative `n` sets 10.
  void SetGrowBy(int n) { m_nGrowBy = n < 0 ? kDefaultGrowBy : n; }

  /// Replaces the contents with copies of the `n` records at `p`, `n` at least 1. Unless `bSorted`, sorts the
  /// caller's array first. Doesn't look for equal records. Gives true, whatever the records (false without memory).
  bool SetData(T* p, int n, bool bSorted);

  /// Empties the table. The slots and what lies in them stay.
  void Clear();

  /// Moves the records so that physical and logical numbers are equal.
  void Compact();

  /// Stores or loads the whole table with its numbering (docs/object-file.md). Defined in model/table_image.h.
  void Serialize(QArchive& ar);

  /// For a table of relation rows: the child numbers of the chain that starts at row `nHead`, in chain order.
  /// The caller deletes the first node, and with it the list. Null for `nHead` -1.
  tChildNode* ChildList(int nHead) requires HasChildNumber<T>;

 private:
  friend class TableImage<T>;
  static constexpr int kDefaultGrowBy = 10;
  /// So many records are renumbered at once; more behind the place of change, and numbering is put off.
  static constexpr int kRenumberAtOnce = 512;

  int Locate(const T& rec, int* pPPh, int* pPh);
  int Link(int nPPh, int nPh);
  void Unlink(int nPh);
  bool CopyOut(T* p, int n);
  void QuickSort(T* p, int nLow, int nHigh);

  static T& Spare() {
    static thread_local T spare;
    spare = T();
    return spare;
  }

  int Search(const T& rec, int* pLeft, int* pRight);
  void Release();
  bool Reallocate(int nSize);
  void Grow(int nNewSize);
  void Shrink(int nNewSize);
  void ChainSlots(int nFrom, int nTo);
  void NumberInOrder(int n);
  bool IsCompact() const;
  static bool IsStrict(const T* p, int n);
  void Number(int nPh, int nLg);
  void NumberFrom(int nPh, int nLg);
  bool PutOffNumbering(int nPh);
  int RankWhilePutOff(int nPh);
  void SettleNumbers();
  void Settle() {
    if (!m_order.IsEmpty()) SettleNumbers();
  }
  SlotOrder::Place PlaceOf(const T& rec) const {
    return m_order.LowerBound([&](int nPh) { return m_pData[nPh] < rec; });
  }
  void Swap(tTable& other);

  T* m_pData = nullptr;
  int m_nGrowBy = kDefaultGrowBy;
  int m_bOrdered = 1;
  int* m_pLgToPh = nullptr;
  int* m_pPhToLg = nullptr;
  int* m_pNext = nullptr;
  int* m_pPrev = nullptr;
  int m_size = 0;
  int m_first = -1;
  int m_last = -1;
  int m_head = -1;
  int m_tail = -1;
  int m_count = 0;

  // Behind what the table shows.
  int m_capacity = 0;        // slots allocated; those from m_size on hold default records
  bool m_bStrict = true;     // the records are in order and no two are equal
  SlotOrder m_order;         // the order while numbering is put off, else empty
  SlotOrder::Place m_place;  // where Locate last looked in m_order
  std::vector<bool> m_used;  // which slots are used while numbering is put off
};

/// A plain fixed array, for building a record on the side. An index out of range ends a checking build.
template <class T>
class tArray {
 public:
  explicit tArray(int n) {
    if (n <= 0) return;
    m_pData = new T[static_cast<std::size_t>(n)];
    m_size = n;
    std::fill_n(m_pData, n, T());
  }
  tArray(const tArray&) = delete;
  tArray& operator=(const tArray&) = delete;
  ~tArray() {
    delete[] m_pData;
    m_pData = nullptr;
    m_size = 0;
  }

  T& operator[](int i) {
    assert(i >= 0 && i < m_size);
    return m_pData[i];
  }

 private:
  T* m_pData = nullptr;
  int m_size = 0;
};

// tTable: searching

/// The search over the logical numbers. Gives the logical number of a record equal to `rec`, or -1 and in `pLeft`,
/// `pRight` the neighbours of its place. Which of several equal records is found follows from the choice of `mid`.
template <class T>
int tTable<T>::Search(const T& rec, int* pLeft, int* pRight) {
  *pLeft = -1;
  *pRight = -1;
  int low = 0;
  int high = m_count - 1;
  int n = m_count;
  while (low <= high) {
    const int half = n / 2;
    if (half == 0) {
      if (n == 0) return -1;
      if (rec == GetAt(low)) return low;
      *(rec < GetAt(low) ? pRight : pLeft) = low;
      return -1;
    }
    const bool odd = n % 2 != 0;
    const int mid = odd ? low + half : low + half - 1;
    if (rec == GetAt(mid)) return mid;
    if (rec < GetAt(mid)) {
      *pRight = mid;
      high = mid - 1;
      n = odd ? half : half - 1;
    } else {
      *pLeft = mid;
      low = mid + 1;
      n = half;
    }
  }
  return -1;
}

template <class T>
int tTable<T>::Find(const T& rec) {
  if (!m_order.IsEmpty()) {
    const int nPh = m_order.At(PlaceOf(rec));
    return nPh != -1 && rec == m_pData[nPh] ? nPh : -1;
  }
  int left = -1;
  int right = -1;
  const int nLg = Search(rec, &left, &right);
  return nLg == -1 ? -1 : m_pLgToPh[nLg];
}

/// Finds the place of `rec` in the used chain: the slots that would stand before and behind it, each -1 at that
/// end. Gives the physical number of an equal record, then with its neighbours, or -1.
template <class T>
int tTable<T>::Locate(const T& rec, int* pPPh, int* pPh) {
  *pPPh = -1;
  *pPh = -1;
  if (m_count == 0) return -1;
  if (m_pData[m_tail] < rec) {
    *pPPh = m_tail;
    return -1;
  }
  if (rec < m_pData[m_head]) {
    *pPh = m_head;
    m_place = SlotOrder::Place();
    return -1;
  }
  if (!m_order.IsEmpty()) {
    m_place = PlaceOf(rec);
    const int nPh = m_order.At(m_place);
    if (nPh != -1) {
      *pPPh = m_pPrev[nPh];
      *pPh = nPh;
      if (!(rec == m_pData[nPh])) return -1;
      *pPh = m_pNext[nPh];
      return nPh;
    }
    SettleNumbers();  // a key was changed under the table: go by the numbers
  }
  int left = -1;
  int right = -1;
  const int nLg = Search(rec, &left, &right);
  if (nLg != -1) {
    const int nPh = m_pLgToPh[nLg];
    *pPPh = m_pPrev[nPh];
    *pPh = m_pNext[nPh];
    return nPh;
  }
  if (left != -1) *pPPh = m_pLgToPh[left];
  if (right != -1) *pPh = m_pLgToPh[right];
  return -1;
}

// tTable: adding and removing

template <class T>
int tTable<T>::Add(const T& rec) {
  if (m_first == -1) {
    // `rec` may lie in this table, which is about to move.
    const T copy = rec;  // NOLINT(performance-unnecessary-copy-initialization)
    const int room = std::numeric_limits<int>::max() - m_size;
    SetSize(m_size + std::min(m_nGrowBy, room));
    if (m_first == -1) return -1;
    return Add(copy);
  }
  int before = -1;
  int behind = -1;
  if (Locate(rec, &before, &behind) >= 0) return -1;
  const int nPh = Link(before, behind);
  if (nPh == -1) return -1;
  m_pData[nPh] = rec;
  m_bOrdered = 0;
  return nPh;
}

/// Takes the first free slot into the used chain between `nPPh` and `nPh`; gives it, or -1 when none is free.
template <class T>
int tTable<T>::Link(int nPPh, int nPh) {
  if (m_first == -1) return -1;
  if (nPh != -1 && m_order.IsEmpty() && m_count - m_pPhToLg[nPh] > kRenumberAtOnce) PutOffNumbering(nPh);

  const int p = m_first;
  m_first = m_pNext[p];
  if (m_first != -1) {
    m_pPrev[m_first] = -1;
  } else {
    m_last = -1;
  }

  if (nPPh == -1) {
    if (nPh == -1) {
      DTSDB_ASSERT(m_head == -1, "m_head == -1");
      DTSDB_ASSERT(m_tail == -1, "m_tail == -1");
    } else {
      DTSDB_ASSERT(nPh == m_head, "nPh == m_head");
    }
    m_head = p;
  } else {
    m_pNext[nPPh] = p;
  }
  if (nPh == -1) {
    if (nPPh != -1) DTSDB_ASSERT(nPPh == m_tail, "nPPh == m_tail");
    m_tail = p;
  } else {
    m_pPrev[nPh] = p;
  }
  m_pNext[p] = nPh;
  m_pPrev[p] = nPPh;

  if (!m_order.IsEmpty()) {
    m_used[p] = true;
    if (nPh == -1) {
      m_order.Append(p);
    } else {
      m_order.Insert(m_place, p);
    }
  } else if (nPh == -1) {
    Number(p, m_count);
  } else {
    NumberFrom(p, m_pPhToLg[nPh]);
  }
  ++m_count;
  return p;
}

template <class T>
int tTable<T>::Remove(int nPh) {
  if (!DTSDB_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return -1;
  if (!IsUsed(nPh)) return -1;
  if (m_order.IsEmpty() && m_count - m_pPhToLg[nPh] > kRenumberAtOnce) PutOffNumbering(nPh);
  const int nLg = m_order.IsEmpty() ? m_pPhToLg[nPh] : RankWhilePutOff(nPh);
  Unlink(nPh);
  m_bOrdered = 0;
  return nLg;
}

/// Takes slot `nPh` out of the used chain and puts it in front of the free chain. While numbering is put off,
/// m_place is its place.
template <class T>
void tTable<T>::Unlink(int nPh) {
  const int before = m_pPrev[nPh];
  const int behind = m_pNext[nPh];
  if (before == -1 && behind == -1) DTSDB_ASSERT(m_count == 1, "m_count == 1");
  if (before == -1) {
    m_head = behind;
  } else {
    m_pNext[before] = behind;
  }
  if (behind == -1) {
    m_tail = before;
  } else {
    m_pPrev[behind] = before;
  }

  if (!m_order.IsEmpty()) {
    m_order.Erase(m_place);
    m_used[nPh] = false;
  } else if (behind != -1) {
    NumberFrom(behind, m_pPhToLg[nPh]);
  }
  m_pPhToLg[nPh] = -1;
  m_pLgToPh[m_count - 1] = -1;

  if (m_first == -1) {
    DTSDB_ASSERT(m_last == -1, "m_last == -1");
    m_last = nPh;
  } else {
    m_pPrev[m_first] = nPh;
  }
  m_pNext[nPh] = m_first;
  m_pPrev[nPh] = -1;
  m_first = nPh;
  --m_count;
}

// tTable: numbering

template <class T>
void tTable<T>::Number(int nPh, int nLg) {
  m_pLgToPh[nLg] = nPh;
  m_pPhToLg[nPh] = nLg;
}

/// Numbers the used chain from slot `nPh` on, starting with `nLg`.
template <class T>
void tTable<T>::NumberFrom(int nPh, int nLg) {
  for (; nPh != -1; nPh = m_pNext[nPh]) Number(nPh, nLg++);
}

/// Puts numbering off and stands on slot `nPh`. False, and nothing changed, when the records are in no strict
/// order: then only the numbers say which of them is which.
template <class T>
bool tTable<T>::PutOffNumbering(int nPh) {
  if (!m_bStrict) return false;
  m_used.assign(static_cast<std::size_t>(m_size), false);
  for (int i = m_head; i != -1; i = m_pNext[i]) {
    m_order.Append(i);
    m_used[static_cast<std::size_t>(i)] = true;
  }
  m_place = PlaceOf(m_pData[nPh]);
  if (m_order.At(m_place) == nPh) return true;
  SettleNumbers();  // a key was changed under the table: go by the numbers
  m_bStrict = false;
  return false;
}

/// The rank of used slot `nPh`, with m_place set to its place.
template <class T>
int tTable<T>::RankWhilePutOff(int nPh) {
  m_place = PlaceOf(m_pData[nPh]);
  if (m_order.At(m_place) == nPh) return m_order.Rank(m_place);
  SettleNumbers();
  m_bStrict = false;
  return m_pPhToLg[nPh];
}

template <class T>
void tTable<T>::SettleNumbers() {
  m_order.Clear();
  m_used.clear();
  if (m_head != -1) NumberFrom(m_head, 0);
}

template <class T>
bool tTable<T>::IsUsed(int nPh) const {
  if (!DTSDB_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return false;
  if (!m_order.IsEmpty()) return m_used[static_cast<std::size_t>(nPh)];
  const int nLg = m_pPhToLg[nPh];  // a slot left by shrinking is numbered and free
  return nLg >= 0 && nLg < m_count && m_pLgToPh[nLg] == nPh;
}

// tTable: size and bulk operations

template <class T>
void tTable<T>::Release() {
  delete[] std::exchange(m_pData, nullptr);
  delete[] std::exchange(m_pLgToPh, nullptr);
  delete[] std::exchange(m_pPhToLg, nullptr);
  delete[] std::exchange(m_pNext, nullptr);
  delete[] std::exchange(m_pPrev, nullptr);
  m_capacity = 0;
}

/// Replaces the storage by new storage for `nSize` slots, into which the records of the used chain and the numbers
/// of the old slots go. False, and nothing changed, when there is no memory.
template <class T>
bool tTable<T>::Reallocate(int nSize) {
  const auto n = static_cast<std::size_t>(nSize);
  std::unique_ptr<T[]> data(new (std::nothrow) T[n]);
  std::unique_ptr<int[]> numbers[4];
  for (auto& array : numbers) array.reset(new (std::nothrow) int[n]);
  const bool had = data && numbers[0] && numbers[1] && numbers[2] && numbers[3];
  if (!DTSDB_ASSERT(had, "memory for the slots")) return false;

  for (int i = m_head; i != -1; i = m_pNext[i]) data[static_cast<std::size_t>(i)] = std::move(m_pData[i]);
  int* const old[4] = {m_pLgToPh, m_pPhToLg, m_pNext, m_pPrev};
  for (int k = 0; k < 4; ++k) {
    if (old[k] != nullptr) std::copy_n(old[k], std::min(m_size, nSize), numbers[k].get());
  }
  Release();
  m_pData = data.release();
  m_pLgToPh = numbers[0].release();
  m_pPhToLg = numbers[1].release();
  m_pNext = numbers[2].release();
  m_pPrev = numbers[3].release();
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
  if (!DTSDB_ASSERT(nNewSize >= 0, "nNewSize >= 0")) return;
  if (nNewSize == 0) {
    m_order.Clear();
    m_used.clear();
    Release();
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
    for (int i = m_first; i != -1; i = m_pNext[i]) m_pData[i] = T();
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
  if (!DTSDB_ASSERT(data != nullptr, "memory for the slots")) return;
  int n = 0;
  for (int i = m_head; n < kept; i = m_pNext[i]) data[static_cast<std::size_t>(n++)] = std::move(m_pData[i]);

  m_order.Clear();
  m_used.clear();
  m_head = m_tail = -1;  // deliberately empty, whatever the records say
  m_count = 0;
  m_bOrdered = 1;
  m_bStrict = true;
  m_size = 0;
  if (!Reallocate(nNewSize)) return SetSize(0);
  m_size = nNewSize;
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
  if (m_count != 0) Clear();
  if (!DTSDB_ASSERT(n >= 1, "n >= 1")) return true;
  if (m_size < n) SetSize(n);
  if (m_size < n) return false;
  m_bStrict = IsStrict(p, n);
  if (!bSorted && !m_bStrict) {
    QuickSort(p, 0, n - 1);
    m_bStrict = IsStrict(p, n);
  }
  for (int i = 0; i < n; ++i) m_pData[i] = p[i];  // `p` may lie in this table, at or behind slot i
  NumberInOrder(n);
  return true;
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
void tTable<T>::Clear() {
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
  m_bOrdered = 1;
  if (m_count == 0) return;
  const int n = m_count;
  if (IsCompact()) return NumberInOrder(n);
  std::unique_ptr<T[]> records(new (std::nothrow) T[static_cast<std::size_t>(n)]);
  if (!DTSDB_ASSERT(records != nullptr, "memory for the slots")) return;
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

/// Exchanges everything but the growth step with `other`.
template <class T>
void tTable<T>::Swap(tTable& other) {
  std::swap(m_pData, other.m_pData);
  std::swap(m_bOrdered, other.m_bOrdered);
  std::swap(m_pLgToPh, other.m_pLgToPh);
  std::swap(m_pPhToLg, other.m_pPhToLg);
  std::swap(m_pNext, other.m_pNext);
  std::swap(m_pPrev, other.m_pPrev);
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
tChildNode* tTable<T>::ChildList(int nHead) requires HasChildNumber<T> {
  tChildNode* first = nullptr;
  if constexpr (HasChildNumber<T>) {  // clang 14 compiles the body for every table that is instantiated as a whole
    tChildNode** end = &first;
    // No more steps than slots: damaged links can lead in a circle.
    for (int steps = 0; nHead != -1 && steps < m_size; ++steps) {
      if (!DTSDB_ASSERT(nHead >= 0 && nHead < m_size, "nPh >= 0 && nPh < m_size")) break;
      *end = new tChildNode;
      (*end)->value = m_pData[nHead].ChildNumber();
      end = &(*end)->next;
      nHead = m_pData[nHead].next;
    }
  }
  return first;
}

}  // namespace dtsdb
