/// \file
/// The image of one table in the object file.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <vector>

#include "include/template.h"
#include "model/archive_bytes.h"
#include "model/basic_types.h"
#include "model/qarchive.h"

namespace dtsdb {

/// Stores a table and loads one, checking all that is read (docs/object-file.md describes the format).
///
/// Loading goes into a table of its own, so that a refused archive leaves the real one as it was.
template <class T>
class TableImage {
 public:
  /// Writes the table to the archive.
  static void Store(tTable<T>& table, QArchive& ar) {
    table.Settle();
    internal::ArchiveWriter writer(ar);
    const i32 head[] = {table.m_size, table.m_head,  table.m_tail,    table.m_first,
                        table.m_last, table.m_count, table.m_bOrdered};
    writer.PutNumbers(head, sizeof(i32), std::size(head));
    for (int i = 0; i < table.m_size; ++i) {
      const i32 slot[] = {table.m_pPhToLg[i], table.m_pLgToPh[i], table.m_pNext[i], table.m_pPrev[i]};
      writer.PutNumbers(slot, sizeof(i32), std::size(slot));
    }
    for (int i = table.m_head; i != -1; i = table.m_pNext[i]) writer.PutRecord(&table.m_pData[i], Runs());
  }

  /// Reads the table from the archive. One that is refused leaves the table half read.
  static void Load(tTable<T>& table, QArchive& ar) {
    ar.SetPlace(T::kTableName, -1);
    tTable<T> loaded;
    if (LoadNumbers(loaded, ar) && LoadRecords(loaded, ar)) Exchange(table, loaded);
  }

  /// Exchanges the contents of two tables; each keeps its growth step.
  static void Exchange(tTable<T>& a, tTable<T>& b) { a.Swap(b); }

 private:
  static constexpr int kBytesPerSlot = 16;

  static std::span<const internal::FieldRun> Runs() {
    static const std::vector<internal::FieldRun> runs = internal::FieldRunsOf(T::Fields());
    return runs;
  }

  static bool Refuse(QArchive& ar, const char* what) {
    ar.Refuse(QString::fromLatin1(what));
    return false;
  }

  /// The numbers of a table as the file contains them.
  struct Numbers {
    i32 size = 0;
    i32 head = -1, tail = -1, first = -1, last = -1, count = 0, ordered = 1;
    std::vector<int> phToLg, lgToPh, next, prev;
  };

  static bool LoadNumbers(tTable<T>& table, QArchive& ar) {
    Numbers numbers;
    if (!ReadNumbers(numbers, ar) || !CheckNumbers(numbers, ar)) return false;
    table.SetSize(numbers.size);  // not before: a slot takes many times the memory that its numbers take in the file
    if (table.GetSize() != numbers.size) return Refuse(ar, "there is no memory for the slots");
    std::copy(numbers.phToLg.begin(), numbers.phToLg.end(), table.m_pPhToLg);
    std::copy(numbers.lgToPh.begin(), numbers.lgToPh.end(), table.m_pLgToPh);
    std::copy(numbers.next.begin(), numbers.next.end(), table.m_pNext);
    std::copy(numbers.prev.begin(), numbers.prev.end(), table.m_pPrev);
    for (int i = numbers.head; i != -1; i = numbers.next[i]) table.MakeRecords(i + 1);
    table.m_head = numbers.head;
    table.m_tail = numbers.tail;
    table.m_first = numbers.first;
    table.m_last = numbers.last;
    table.m_count = numbers.count;
    table.m_bOrdered = numbers.ordered;
    return true;
  }

  static bool ReadNumbers(Numbers& numbers, QArchive& ar) {
    ar >> numbers.size;
    if (ar.status() != QDataStream::Ok) return Refuse(ar, "the table is missing");
    if (numbers.size < 0 || numbers.size > ar.BytesLeft() / kBytesPerSlot) {
      return Refuse(ar, "the number of slots doesn't fit the file");
    }
    ar >> numbers.head >> numbers.tail >> numbers.first >> numbers.last >> numbers.count >> numbers.ordered;
    const auto size = static_cast<std::size_t>(numbers.size);
    for (auto* array : {&numbers.phToLg, &numbers.lgToPh, &numbers.next, &numbers.prev}) array->resize(size);
    if (!ReadSlots(numbers, ar)) {
      for (std::size_t i = 0; i < size; ++i) {
        ar >> numbers.phToLg[i] >> numbers.lgToPh[i] >> numbers.next[i] >> numbers.prev[i];
      }
    }
    return ar.status() == QDataStream::Ok || Refuse(ar, "the file ends among the numbers");
  }

  /// Reads the slots in larger pieces; false, and nothing read, where they must be read number by number.
  static bool ReadSlots(Numbers& numbers, QArchive& ar) {
    if (ar.status() != QDataStream::Ok || !ar.HasPositions()) return false;
    internal::ArchiveReader reader(*ar.device());
    const qint64 begin = reader.Position();
    for (std::size_t i = 0; i < numbers.phToLg.size(); ++i) {
      i32 slot[4];
      if (!reader.TakeNumbers(slot, sizeof(i32), std::size(slot))) {
        reader.LeaveAt(begin);
        return false;
      }
      numbers.phToLg[i] = slot[0];
      numbers.lgToPh[i] = slot[1];
      numbers.next[i] = slot[2];
      numbers.prev[i] = slot[3];
    }
    reader.LeaveAt(reader.Position());
    return true;
  }

  static bool CheckNumbers(const Numbers& numbers, QArchive& ar) {
    const int size = numbers.size;
    if (numbers.count < 0 || numbers.count > size || (numbers.ordered != 0 && numbers.ordered != 1)) {
      return Refuse(ar, "the head of the table is damaged");
    }
    for (const auto* array : {&numbers.phToLg, &numbers.lgToPh, &numbers.next, &numbers.prev}) {
      const bool inside = std::all_of(array->begin(), array->end(), [size](int n) { return n >= -1 && n < size; });
      if (!inside) return Refuse(ar, "a number leads out of the table");
    }
    if (!CheckUsed(numbers)) return Refuse(ar, "the chain of records is damaged");
    if (!CheckFree(numbers)) return Refuse(ar, "the chain of free slots is damaged");
    return true;
  }

  static bool IsSlotOrNone(const Numbers& numbers, int slot) { return slot >= -1 && slot < numbers.size; }

  /// The used chain visits `count` slots, linked both ways and numbered in order.
  static bool CheckUsed(const Numbers& numbers) {
    if (!IsSlotOrNone(numbers, numbers.head)) return false;
    int before = -1;
    int n = 0;
    for (int i = numbers.head; i != -1; i = numbers.next[i]) {
      if (n >= numbers.count || numbers.prev[i] != before) return false;
      if (numbers.phToLg[i] != n || numbers.lgToPh[n] != i) return false;
      before = i;
      ++n;
    }
    return n == numbers.count && before == numbers.tail;
  }

  /// The free chain visits all other slots. Their back links are never walked; a slot left by shrinking bears its
  /// own number, any other none.
  static bool CheckFree(const Numbers& numbers) {
    if (!IsSlotOrNone(numbers, numbers.first)) return false;
    const int count = numbers.count;
    int last = -1;
    int n = 0;
    for (int i = numbers.first; i != -1; i = numbers.next[i]) {
      const int lg = numbers.phToLg[i];
      const bool used = lg >= 0 && lg < count && numbers.lgToPh[lg] == i;
      if (used || n >= numbers.size - count || (lg != -1 && lg != i)) return false;
      last = i;
      ++n;
    }
    for (int i = count; i < numbers.size; ++i) {
      if (numbers.lgToPh[i] != -1 && numbers.lgToPh[i] != i) return false;
    }
    return n == numbers.size - count && last == numbers.last;
  }

  static bool LoadRecords(tTable<T>& table, QArchive& ar) {
    std::optional<internal::ArchiveReader> reader;
    if (ar.HasPositions() && table.m_count > 0) reader.emplace(*ar.device());
    int row = 0;
    const T* before = nullptr;
    for (int i = table.m_head; i != -1; i = table.m_pNext[i]) {
      T& record = table.m_pData[i];
      if (!LoadRecord(record, row++, reader, ar)) return false;
      if (before != nullptr && !(*before < record)) table.m_bStrict = false;
      before = &record;
    }
    if (reader) reader->LeaveAt(reader->Position());
    return true;
  }

  /// Loads a record through `reader`; where there is none, or it can't, field by field.
  static bool LoadRecord(T& record, int row, std::optional<internal::ArchiveReader>& reader, QArchive& ar) {
    if (reader) {
      const qint64 begin = reader->Position();
      if (reader->TakeRecord(&record, Runs())) return true;
      reader->LeaveAt(begin);
      reader.reset();
    }
    ar.SetPlace(T::kTableName, row);
    record.Serialize(ar);
    return !ar.IsRefused();
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
