/// \file
/// The linked lists that the topology keeps in flat arrays.
#pragma once

#include "include/check.h"
#include "model/records.h"
#include "topology/internal/number_set.h"
#include "topology/internal/work_array.h"

namespace dtsdb::internal {

/// A view of an array of BS or BSL entries that refer to each other by index through `next` and `prev`.
///
/// Every access by a number that came out of a record goes through here: a number outside the array reaches a
/// spare default entry (fresh at each use, with a warning), and a walk never takes more steps than there are
/// entries. Entries are only written through Edit and the operations on links, which note them in the set of changed
/// ones. The view owns nothing and is as cheap to copy as a pointer.
template <class Entry>
class WorkList {
 public:
  /// `array` is null where there is none: the list is then empty. `changed` is null where nobody wants to know.
  WorkList(WorkArray<Entry>* array, NumberSet* changed) : m_array(array), m_changed(changed) {}

  int Size() const { return m_array != nullptr ? m_array->Size() : 0; }
  /// So many of them were reached. The entries behind them are free, each leads to the next one.
  int ReachedCount() const { return m_array != nullptr ? m_array->Made() : 0; }
  /// The first `n` entries, at most Size().
  Entry* Data(int n) const {
    m_array->MakeTo(n);
    return m_array->Data();
  }
  bool Has(int n) const { return n >= 0 && n < Size(); }

  const Entry& operator[](int n) const { return At(n); }
  /// The entry, to be changed.
  Entry& Edit(int n) const {
    Entry& entry = At(n);
    Note(n);
    return entry;
  }

  /// Takes the first entry of the free list and links it behind `*cursor`, which becomes the new entry. False, and
  /// nothing changed, when the free list is empty or the cursor stands on no entry of a ring.
  bool Insert(i32* free, int* cursor) const {
    const int taken = *free;
    if (!Has(taken) || !Has(*cursor)) return false;
    const int behind = At(*cursor).next;
    if (!Has(behind) || At(*cursor).prev == -1) return false;
    *free = At(taken).next;
    Link(taken, *cursor, behind);
    *cursor = taken;
    return true;
  }

  /// Links entry `n`, which is in no ring, in front of `behind`.
  void InsertBefore(int n, int behind) const {
    if (Has(n) && Has(behind)) Link(n, (*this)[behind].prev, behind);
  }

  /// Unlinks entry `*cursor`, makes it the first of the free list and moves the cursor to the entry that followed.
  void Delete(i32* free, int* cursor) const {
    const int deleted = *cursor;
    if (!Has(deleted)) return;
    *cursor = At(deleted).next;
    Unlink(deleted);
    Entry& entry = Edit(deleted);
    entry.next = *free;
    entry.prev = -1;
    *free = deleted;
  }

  /// Makes the neighbours of entry `n` neighbours of each other. The entry's own links stay.
  void Unlink(int n) const {
    const int behind = (*this)[n].next;
    const int before = (*this)[n].prev;
    if (Has(before)) Edit(before).next = behind;
    if (Has(behind)) Edit(behind).prev = before;
  }

  /// Visits the entries from `first` up to, not including, `end` along `next`, until `visit(n)` returns false. The
  /// next entry is noted before the visit, which may therefore unlink the entry. False when the visit ended the
  /// walk, when a link leads outside the array, or when the walk takes more steps than there are entries.
  template <class Visit>
  bool Walk(int first, int end, Visit visit) const {
    int left = Size();
    for (int n = first; n != end;) {
      if (!Has(n) || left-- == 0) return false;
      const int next = At(n).next;
      if (!visit(n)) return false;
      n = next;
    }
    return true;
  }

 private:
  void Link(int n, int before, int behind) const {
    Edit(before).next = n;
    Edit(behind).prev = n;
    Entry& entry = Edit(n);
    entry.next = behind;
    entry.prev = before;
  }

  Entry& At(int n) const {
    if (n >= 0 && n < ReachedCount()) return m_array->Data()[n];
    if (!DTSDB_ASSERT(Has(n), "n >= 0 && n < m_size")) return Spare();
    return m_array->Reach(n);
  }
  void Note(int n) const {
    if (m_changed != nullptr) m_changed->Add(n);
  }

  static Entry& Spare() {
    static thread_local Entry spare;
    spare = Entry();
    return spare;
  }

  WorkArray<Entry>* m_array;
  NumberSet* m_changed;
};

}  // namespace dtsdb::internal
