/// \file
/// The operations of tTable. Needed where a table of a new record class is instantiated; the 46 tables of a model are
/// compiled in model/.
#pragma once

#include <algorithm>
#include <limits>
#include <vector>

#include "include/table.h"
#include "include/table_bulk_impl.h"

namespace dtsdb {

// tTable: searching

/// The search over the logical numbers. Returns the logical number of a record equal to `rec`, or -1 and in `pLeft`,
/// `pRight` the neighbours of its place. Which of several equal records is found follows from the choice of `mid`.
template <class T>
int tTable<T>::Search(const T& rec, int* pLeft, int* pRight) const {
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
int tTable<T>::Find(const T& rec) const {
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
/// end. Returns the physical number of an equal record, then with its neighbours, or -1.
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
  NoteChange();
  return nPh;
}

/// Takes the first free slot into the used chain between `nPPh` and `nPh`; returns it, or -1 when none is free.
template <class T>
int tTable<T>::Link(int nPPh, int nPh) {
  if (m_first == -1) return -1;
  if (nPh != -1 && m_order.IsEmpty() && m_count - m_pPhToLg[nPh] > kRenumberAtOnce) PutOffNumbering(nPh);

  const int p = m_first;
  MakeRecords(p + 1);
  m_first = m_pNext[p];
  if (m_first != -1) {
    m_pPrev[m_first] = -1;
  } else {
    m_last = -1;
  }

  if (nPPh == -1) {
    if (nPh == -1) {
      DTSDB_TABLE_ASSERT(m_head == -1, "m_head == -1");
      DTSDB_TABLE_ASSERT(m_tail == -1, "m_tail == -1");
    } else {
      DTSDB_TABLE_ASSERT(nPh == m_head, "nPh == m_head");
    }
    m_head = p;
  } else {
    m_pNext[nPPh] = p;
  }
  if (nPh == -1) {
    if (nPPh != -1) DTSDB_TABLE_ASSERT(nPPh == m_tail, "nPPh == m_tail");
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
  if (!DTSDB_TABLE_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return -1;
  if (!IsUsed(nPh)) return -1;
  if (m_order.IsEmpty() && m_count - m_pPhToLg[nPh] > kRenumberAtOnce) PutOffNumbering(nPh);
  const int nLg = m_order.IsEmpty() ? m_pPhToLg[nPh] : RankWhilePutOff(nPh);
  Unlink(nPh);
  m_bOrdered = 0;
  NoteChange();
  return nLg;
}

/// Takes slot `nPh` out of the used chain and puts it in front of the free chain. While numbering is put off,
/// m_place is its place.
template <class T>
void tTable<T>::Unlink(int nPh) {
  const int before = m_pPrev[nPh];
  const int behind = m_pNext[nPh];
  if (before == -1 && behind == -1) DTSDB_TABLE_ASSERT(m_count == 1, "m_count == 1");
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
    DTSDB_TABLE_ASSERT(m_last == -1, "m_last == -1");
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
/// order: then only the numbers distinguish them.
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

/// The rank of slot `nPh` while numbering is put off, -1 for a free slot.
template <class T>
int tTable<T>::RankOf(int nPh) const {
  if (!m_used[static_cast<std::size_t>(nPh)]) return m_pPhToLg[nPh];
  const SlotOrder::Place place = PlaceOf(m_pData[nPh]);
  if (m_order.At(place) == nPh) return m_order.Rank(place);
  int rank = 0;  // a key was changed under the table: go by the chain
  for (int i = m_pPrev[nPh]; i != -1; i = m_pPrev[i]) ++rank;
  return rank;
}

template <class T>
void tTable<T>::SettleNumbers() {
  m_order.Clear();
  m_used.clear();
  if (m_head != -1) NumberFrom(m_head, 0);
}

template <class T>
bool tTable<T>::IsUsed(int nPh) const {
  if (!DTSDB_TABLE_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return false;
  if (!m_order.IsEmpty()) return m_used[static_cast<std::size_t>(nPh)];
  const int nLg = m_pPhToLg[nPh];  // a slot left by shrinking is numbered and free
  return nLg >= 0 && nLg < m_count && m_pLgToPh[nLg] == nPh;
}

}  // namespace dtsdb
