/// \file
/// tTable, the table that every kind of record lives in. What isn't inline here is in include/table_impl.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "include/check.h"
#include "include/child_list.h"
#include "include/slot_order.h"

/// The table's warnings name the header that its users include.
#define DTSDB_TABLE_ASSERT(condition, text) DTSDB_ASSERT_IN("template", condition, text)

namespace dtsdb {

class QArchive;
template <class T>
class TableImage;
template <class T>
class TableFiller;

/// A table of records kept sorted by `T::operator<`, each under two numbers.
///
/// The physical number is the record's slot: it stays while other records come and go. The logical number is its
/// rank in the order, 0 to GetCount() - 1. After Compact and SetData the two are equal.
///
/// `T` offers a default constructor, assignment, `operator==` and `operator<`. Records are found by binary search
/// with these two. The table owns its records; a reference to one holds until the table grows, shrinks or is
/// filled anew.
///
/// One thread at a time may use a table that changes. Several threads may read one through a const reference, which
/// changes nothing; call Settle first: a const access to numbers that are put off is right, but a walk.
///
/// A number out of range writes one warning (DTSDB_ASSERT) and reaches no foreign memory: the operation then
/// works on a spare default record, fresh at each use, or returns -1.
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
  virtual ~tTable() = default;

  /// Number of records.
  int GetCount() const { return m_count; }
  /// Number of slots.
  int GetSize() const { return m_size; }
  /// True when slot `nPh` holds a record.
  bool IsUsed(int nPh) const;

  /// A number that grows with every Add and Remove that succeeds, every SetSize, SetData, Clear, Compact and load by
  /// Serialize. What is written through a reference to a record leaves it as it is, unless NoteChange is called.
  std::uint64_t ChangeCount() const { return m_changes; }
  void NoteChange() { ++m_changes; }

  /// Writes the numbers that were put off. Needed only before a table is handed to others to read.
  void Settle() {
    if (!m_order.IsEmpty()) SettleNumbers();
  }

  /// The record with logical number `nLg`.
  T& operator[](int nLg) {
    Settle();
    return const_cast<T&>(std::as_const(*this)[nLg]);
  }
  const T& operator[](int nLg) const {
    if (!DTSDB_TABLE_ASSERT(nLg >= 0 && nLg < m_count, "nLg >=0 && nLg < m_count")) return Spare();
    return m_pData[SlotOf(nLg)];
  }

  /// The same access, as the searches use it.
  T& GetAt(int nIndex) {
    Settle();
    return const_cast<T&>(std::as_const(*this).GetAt(nIndex));
  }
  const T& GetAt(int nIndex) const {
    if (!DTSDB_TABLE_ASSERT(nIndex >= 0 && nIndex < m_count, "nIndex >= 0 && nIndex < m_count")) return Spare();
    return m_pData[SlotOf(nIndex)];
  }

  /// What lies in slot `nPh`, used or free.
  T& GetPh(int nPh) {
    if (nPh >= m_made && nPh < m_size) MakeRecords(nPh + 1);
    return const_cast<T&>(std::as_const(*this).GetPh(nPh));
  }
  const T& GetPh(int nPh) const {
    if (nPh >= 0 && nPh < m_made) return m_pData[nPh];
    DTSDB_TABLE_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size");
    return Spare();  // what a slot that was never reached holds, too
  }

  /// The physical number of the record with logical number `nLg`.
  int LgToPh(int nLg) {
    Settle();
    return std::as_const(*this).LgToPh(nLg);
  }
  int LgToPh(int nLg) const {
    if (!DTSDB_TABLE_ASSERT(nLg >= 0 && nLg < m_count, "nLg >= 0 && nLg < m_count")) return -1;
    return SlotOf(nLg);
  }

  /// The logical number of the record in slot `nPh`, -1 for a free slot.
  int PhToLg(int nPh) {
    Settle();
    return std::as_const(*this).PhToLg(nPh);
  }
  int PhToLg(int nPh) const {
    if (!DTSDB_TABLE_ASSERT(nPh >= 0 && nPh < m_size, "nPh >= 0 && nPh < m_size")) return -1;
    return m_order.IsEmpty() ? m_pPhToLg[nPh] : RankOf(nPh);
  }

  /// The physical number of a record equal to `rec`, -1 if there is none.
  int Find(const T& rec) const;

  /// Inserts a copy of `rec` at its place; returns its physical number, or -1 when an equal record exists or no
  /// slot can be had. A table without a free slot grows first, also for a record that is then refused.
  /// Kept: K02.
  int Add(const T& rec);

  /// Removes the record in slot `nPh`; returns the logical number that it had, or -1 when the slot was free.
  int Remove(int nPh);

  /// Changes the number of slots. Growing keeps all records and numbers. A smaller size leaves a table that
  /// reports itself empty, with the numbers of the copied records still standing; 0 frees everything. Kept: K01.
  void SetSize(int nNewSize);

  /// Number of slots by which a full table grows in Add; a negative `n` sets 10.
  void SetGrowBy(int n) { m_nGrowBy = n < 0 ? kDefaultGrowBy : n; }

  /// Replaces the contents with copies of the `n` records at `p`, `n` at least 1. Unless `bSorted`, sorts the
  /// caller's array first. Doesn't look for equal records. Returns true, whatever the records (false without memory).
  bool SetData(T* p, int n, bool bSorted);
  /// SetData(records.data(), n, false) for all n of `records`, which are taken over instead of copied. Cheapest where
  /// `records` has room for GetSize() records.
  bool SetData(std::vector<T>&& records);

  /// SetData(p, n, true) for a table that SetData(p, GetCount(), true) has filled, where these records at `p` are still
  /// what they were: only the others are copied, and only their slots change. Returns what SetData would.
  bool SetDataTail(const T* p, int n);

  /// Empties the table. The slots and what lies in them stay.
  void Clear();

  /// Moves the records so that physical and logical numbers are equal.
  void Compact();

  /// Stores or loads the whole table with its numbering (docs/object-file.md). Defined in model/table_image.h.
  void Serialize(QArchive& ar);

  /// For a table of relation rows: the child numbers of the chain that starts at row `nHead`, in chain order.
  /// The caller deletes the first node, and with it the list. Null for `nHead` -1.
  tChildNode* ChildList(int nHead) const requires HasChildNumber<T>;

 private:
  friend class TableImage<T>;
  friend class TableFiller<T>;
  static constexpr int kDefaultGrowBy = 10;
  /// So many records are renumbered at once; more behind the place of change, and numbering is put off.
  static constexpr int kRenumberAtOnce = 512;

  /// The arrays that the pointers below point into.
  struct Slots {
    std::vector<T> records;  ///< as many as were reached, with room for all slots: they never move
    std::vector<int> lgToPh;
    std::vector<int> phToLg;
    std::vector<int> next;
    std::vector<int> prev;

    bool Allocate(int n);
  };

  int Locate(const T& rec, int* pPPh, int* pPh);
  int Link(int nPPh, int nPh);
  void Unlink(int nPh);
  bool CopyOut(T* p, int n);
  bool BeginSetData(int n);
  void NoteOrder(T* p, int n, bool sorts);
  void QuickSort(T* p, int nLow, int nHigh);

  static T& Spare() {
    static thread_local T spare;
    spare = T();
    return spare;
  }

  int Search(const T& rec, int* pLeft, int* pRight) const;
  void PointIntoSlots();
  bool Reallocate(int nSize);
  void MakeRecords(int n);
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
  int RankOf(int nPh) const;
  int SlotOf(int nLg) const { return m_order.IsEmpty() ? m_pLgToPh[nLg] : m_order.AtRank(nLg); }
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
  Slots m_slots;
  std::uint64_t m_changes = 0;
  int m_made = 0;            // records that exist; the slots behind them were never reached
  int m_capacity = 0;        // slots that there is room for
  bool m_bStrict = true;     // the records are in order and no two are equal
  SlotOrder m_order;         // the order while numbering is put off, else empty
  SlotOrder::Place m_place;  // where Locate last looked in m_order
  std::vector<bool> m_used;  // which slots are used while numbering is put off
};

}  // namespace dtsdb
