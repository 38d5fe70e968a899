/// \file
/// The image of one table in the object file.
#pragma once

#include "include/template.h"
#include "model/basic_types.h"
#include "model/qarchive.h"

namespace dtsdb {

/// Stores a table and loads one, checking all that is read (docs/object-file.md gives the format).
///
/// Loading goes into a table of its own, so that a refused archive leaves the real one as it was.
template <class T>
class TableImage {
 public:
  static void Store(tTable<T>& table, QArchive& ar) {
    table.Settle();
    for (const int head :
         {table.m_size, table.m_head, table.m_tail, table.m_first, table.m_last, table.m_count, table.m_bOrdered}) {
      ar << i32{head};
    }
    for (int i = 0; i < table.m_size; ++i) {
      ar << i32{table.m_pPhToLg[i]} << i32{table.m_pLgToPh[i]} << i32{table.m_pNext[i]} << i32{table.m_pPrev[i]};
    }
    for (int i = table.m_head; i != -1; i = table.m_pNext[i]) table.m_pData[i].Serialize(ar);
  }

  static void Load(tTable<T>& table, QArchive& ar) {
    ar.SetPlace(T::kTableName, -1);
    tTable<T> loaded;
    if (LoadNumbers(loaded, ar) && LoadRecords(loaded, ar)) Exchange(table, loaded);
  }

  /// Exchanges the contents of two tables; each keeps its growth step.
  static void Exchange(tTable<T>& a, tTable<T>& b) { a.Swap(b); }

 private:
  static constexpr int kBytesPerSlot = 16;

  static bool Refuse(QArchive& ar, const char* what) {
    ar.Refuse(QString::fromLatin1(what));
    return false;
  }

  static bool LoadNumbers(tTable<T>& table, QArchive& ar) {
    i32 size = 0;
    ar >> size;
    if (ar.status() != QDataStream::Ok) return Refuse(ar, "the table is missing");
    if (size < 0 || size > ar.BytesLeft() / kBytesPerSlot) {
      return Refuse(ar, "the number of slots doesn't fit the file");
    }
    table.SetSize(size);
    if (table.GetSize() != size) return Refuse(ar, "there is no memory for the slots");
    i32 head[6] = {};
    for (i32& number : head) ar >> number;
    for (int i = 0; i < size; ++i) {
      ar >> table.m_pPhToLg[i] >> table.m_pLgToPh[i] >> table.m_pNext[i] >> table.m_pPrev[i];
    }
    if (ar.status() != QDataStream::Ok) return Refuse(ar, "the file ends among the numbers");
    table.m_head = head[0];
    table.m_tail = head[1];
    table.m_first = head[2];
    table.m_last = head[3];
    table.m_count = head[4];
    table.m_bOrdered = head[5];
    return CheckNumbers(table, ar);
  }

  static bool CheckNumbers(tTable<T>& table, QArchive& ar) {
    const int size = table.m_size;
    if (table.m_count < 0 || table.m_count > size || (table.m_bOrdered != 0 && table.m_bOrdered != 1)) {
      return Refuse(ar, "the head of the table is damaged");
    }
    for (int i = 0; i < size; ++i) {
      for (const int* array : {table.m_pPhToLg, table.m_pLgToPh, table.m_pNext, table.m_pPrev}) {
        if (array[i] < -1 || array[i] >= size) return Refuse(ar, "a number leads out of the table");
      }
    }
    if (!CheckUsed(table)) return Refuse(ar, "the chain of records is damaged");
    if (!CheckFree(table)) return Refuse(ar, "the chain of free slots is damaged");
    return true;
  }

  static bool IsSlotOrNone(const tTable<T>& table, int slot) { return slot >= -1 && slot < table.m_size; }

  /// The used chain visits `m_count` slots, linked both ways and numbered in order.
  static bool CheckUsed(const tTable<T>& table) {
    if (!IsSlotOrNone(table, table.m_head)) return false;
    int before = -1;
    int n = 0;
    for (int i = table.m_head; i != -1; i = table.m_pNext[i]) {
      if (n >= table.m_count || table.m_pPrev[i] != before) return false;
      if (table.m_pPhToLg[i] != n || table.m_pLgToPh[n] != i) return false;
      before = i;
      ++n;
    }
    return n == table.m_count && before == table.m_tail;
  }

  /// The free chain visits all other slots. Their back links are never walked; a slot left by shrinking bears its
  /// own number, any other none.
  static bool CheckFree(const tTable<T>& table) {
    if (!IsSlotOrNone(table, table.m_first)) return false;
    const int count = table.m_count;
    int last = -1;
    int n = 0;
    for (int i = table.m_first; i != -1; i = table.m_pNext[i]) {
      const int lg = table.m_pPhToLg[i];
      const bool used = lg >= 0 && lg < count && table.m_pLgToPh[lg] == i;
      if (used || n >= table.m_size - count || (lg != -1 && lg != i)) return false;
      last = i;
      ++n;
    }
    for (int i = count; i < table.m_size; ++i) {
      if (table.m_pLgToPh[i] != -1 && table.m_pLgToPh[i] != i) return false;
    }
    return n == table.m_size - count && last == table.m_last;
  }

  static bool LoadRecords(tTable<T>& table, QArchive& ar) {
    int row = 0;
    const T* before = nullptr;
    for (int i = table.m_head; i != -1; i = table.m_pNext[i]) {
      ar.SetPlace(T::kTableName, row++);
      T& record = table.m_pData[i];
      record.Serialize(ar);
      if (ar.IsRefused()) return false;
      if (before != nullptr && !(*before < record)) table.m_bStrict = false;
      before = &record;
    }
    return true;
  }
};

template <class T>
void tTable<T>::Serialize(QArchive& ar) {
  if (ar.IsStoring()) {
    TableImage<T>::Store(*this, ar);
  } else {
    TableImage<T>::Load(*this, ar);
  }
}

}  // namespace dtsdb
