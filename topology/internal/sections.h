/// \file
/// The bus sections: the section ring, the holding ring and the free list.
#pragma once

#include "topology/internal/changes.h"
#include "topology/internal/levels.h"
#include "topology/internal/network.h"
#include "topology/internal/work_list.h"

namespace dtsdb::internal {

/// The BS entries of the work arrays. In the section ring the sections of a voltage level stand next to each other, the
/// levels in the order of Levels::All; the holding ring has what a run has set aside.
///
/// Reads and writes the sections, the record of changes and GLOBAL `bs_free`; reads GLOBAL `bs_dead` and `bs_live`, KV
/// `ibs` and the list of all levels. As cheap to copy as a few pointers.
class Sections {
 public:
  /// `changes` is null where there are no work arrays.
  Sections(const WorkList<BS>& list, const Network& network, const Levels& levels, Changes* changes)
      : m_list(list), m_network(network), m_levels(levels), m_changes(changes) {}

  int Size() const { return m_list.Size(); }
  bool Has(int bs) const { return m_list.Has(bs); }
  const BS& operator[](int bs) const { return m_list[bs]; }
  /// The section, to be changed.
  BS& Edit(int bs) const { return m_list.Edit(bs); }
  const WorkList<BS>& List() const { return m_list; }

  /// The head of the section ring, on which nodes without a section stand.
  int Dead() const { return m_network.Global().bs_dead; }
  /// The head of the holding ring.
  int Live() const { return m_network.Global().bs_live; }
  /// In no live island.
  bool IsDead(int bs) const { return m_list[bs].island < 0; }
  /// The dead head, or a fragment.
  bool IsIsolated(int bs) const { return (m_list[bs].status & BS_ISOLATED) != 0; }
  /// The section that ends the stretch of level `kv` in the section ring: the first one of the level that follows, or
  /// the head. -1 when `kv` isn't listed or the one that follows has no section.
  int EndOf(int kv) const;

  /// WorkList::Walk over the sections.
  template <class Visit>
  bool Walk(int first, int end, Visit visit) const {
    return m_list.Walk(first, end, visit);
  }

  /// Takes a section from the free list and links it behind `*cursor`, which becomes the new section. False, and
  /// nothing changed, when none is free or the cursor stands in no ring.
  bool Insert(int* cursor) const { return m_list.Insert(&m_network.Global().bs_free, cursor); }
  /// Gives section `*cursor` back to the free list and moves the cursor to the one that followed.
  void Delete(int* cursor) const { m_list.Delete(&m_network.Global().bs_free, cursor); }

  void MakeLive(int bs, int island) const {
    if (m_list[bs].island == island && !(m_list[bs].status & BS_DEAD)) return;
    BS& section = Edit(bs);
    section.island = island;
    section.status &= ~BS_DEAD;
  }
  void MakeDead(int bs) const {
    BS& section = Edit(bs);
    section.island = ISLAND_DEAD;
    section.status |= BS_DEAD;
  }
  /// Gives section `to`, a fragment, the island of section `from`.
  void CopyIsland(int from, int to) const;

  /// Makes a section with the marks `bits` the last one of level `kv`, with the number `*bs`. False, and nothing
  /// changed, when the level isn't listed or the sections have run out.
  bool MakeFragment(int kv, u32 bits, int* bs) const;
  /// Takes a section out of use and gives it back to the free list.
  void GiveBack(int bs) const;
  /// Takes a section that no group has claimed out of use; its links are the caller's.
  void Retire(int bs) const;
  /// Gives the sections that wait in the holding ring back to the free list, in ring order in front of the others.
  void GiveBackHeld() const;

  /// Gives the record of changes up.
  void GiveUpRecord() const {
    if (m_changes != nullptr) m_changes->GiveUp();
  }

 private:
  void Blank(int bs) const;

  WorkList<BS> m_list;
  Network m_network;
  Levels m_levels;
  Changes* m_changes;
};

}  // namespace dtsdb::internal
