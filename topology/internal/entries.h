/// \file
/// The entries of the bus-section list.
#pragma once

#include "topology/internal/network.h"
#include "topology/internal/work_list.h"

namespace dtsdb::internal {

/// The BSL entries of the work arrays: one ring through a head, and a free list.
///
/// Reads and writes the entries and GLOBAL `bsl_free`; reads GLOBAL `bsl_head`. As cheap to copy as a few pointers.
class Entries {
 public:
  Entries(const WorkList<BSL>& list, const Network& network) : m_list(list), m_network(network) {}

  int Size() const { return m_list.Size(); }
  bool Has(int n) const { return m_list.Has(n); }
  const BSL& operator[](int n) const { return m_list[n]; }
  /// The entry, to be changed.
  BSL& Edit(int n) const { return m_list.Edit(n); }
  const WorkList<BSL>& List() const { return m_list; }
  int Head() const { return m_network.Global().bsl_head; }

  /// WorkList::Walk over the entries.
  template <class Visit>
  bool Walk(int first, int end, Visit visit) const {
    return m_list.Walk(first, end, visit);
  }

  /// Takes an entry from the free list and links it behind `*cursor`, which becomes the new entry. False, and nothing
  /// changed, when none is free or the cursor stands on no entry of the ring.
  bool Insert(int* cursor) const { return m_list.Insert(&m_network.Global().bsl_free, cursor); }
  /// The same, for record `ref` of the table of kind `kind`.
  bool Insert(int* cursor, int kind, int ref) const {
    if (!Insert(cursor)) return false;
    BSL& entry = Edit(*cursor);
    entry.kind = static_cast<u8>(kind);
    entry.ref = ref;
    return true;
  }
  /// Gives entry `*cursor` back to the free list and moves the cursor to the one that followed.
  void Delete(int* cursor) const { m_list.Delete(&m_network.Global().bsl_free, cursor); }

 private:
  WorkList<BSL> m_list;
  Network m_network;
};

}  // namespace dtsdb::internal
