#include "topology/internal/section_store.h"

#include <algorithm>

#include "model/threads.h"

namespace dtsdb::internal {

bool SectionStore::NameAndStore() const {
  Name();
  if (!FindHighest()) return false;
  const int used = UsedCount();
  const int entries = m_entries.Size();
  m_changes->allUnstored = true;
  bool hasSections = false;
  bool hasEntries = false;
  RunTasks({[&] { hasEntries = m_network.Table<BSL>().SetData(m_entries.List().Data(entries), entries, true); },
            [&] { hasSections = m_network.Table<BS>().SetData(m_sections.List().Data(used), used, true); }});
  if (!hasSections || !hasEntries) return false;
  m_changes->End(m_network, m_sections.Size(), m_entries.Size());
  return true;
}

bool SectionStore::NameAndStoreChanged() const {
  NameChanged();
  FollowHighest();
  auto& sections = m_network.Table<BS>();
  const int used = UsedCount();
  if (!sections.SetDataTail(m_sections.List().Data(used), used)) return false;
  for (const int bs : m_changes->sections.Numbers()) {
    if (bs < sections.GetCount()) sections.GetPh(bs) = m_sections[bs];
  }
  for (const int n : m_changes->entries.Numbers()) {
    m_network.Table<BSL>().GetPh(n) = m_entries[n];
    m_changes->unstored.Add(n);
  }
  m_changes->End(m_network, m_sections.Size(), m_entries.Size());
  return true;
}

void SectionStore::Name() const {
  auto& buses = m_network.Table<BUS>();
  for (int i = 0; i < buses.GetCount(); ++i) NameByBus(buses[i]);
  std::vector<int> unnamed;
  for (int bs = 0; bs < m_sections.List().ReachedCount(); ++bs) NameIfUnnamed(bs, &unnamed);
  if (m_changes != nullptr) m_changes->unnamed = std::move(unnamed);
}

/// A section that hasn't changed keeps its name, or gets none again: a level's stretch of the list is rebuilt as a
/// whole, and with it all its sections have changed.
void SectionStore::NameChanged() const {
  for (const int rank : m_changes->BusesOfLevels(m_network)) NameByBus(m_network.Table<BUS>()[rank]);
  for (const int bs : m_changes->unnamed) m_sections.Edit(bs);
  std::vector<int> unnamed;
  for (const int bs : m_changes->sections.Numbers()) NameIfUnnamed(bs, &unnamed);
  m_changes->unnamed = std::move(unnamed);
}

void SectionStore::NameByBus(const BUS& bus) const {
  if (bus.ibs <= 0) return;
  const bool named = m_sections.Has(bus.ibs) && m_sections[bus.ibs].name == bus.id &&
                     m_sections[bus.ibs].name.isNull() == bus.id.isNull();
  if (!named) m_sections.Edit(bus.ibs).name = bus.id;
}

/// Names a section that no bus has named and that has an entry in the list. Notes it if it is out of use and stays
/// without a name.
void SectionStore::NameIfUnnamed(int bs, std::vector<int>* unnamed) const {
  const BS& section = m_sections[bs];
  // Only a full run empties the names: a slot taken again can have one of its former use. Kept: K54.
  if (!section.name.isEmpty() || section.ibsl == -1) return;
  const QString* const name = NameOfEquipment(section);
  if (name != nullptr) m_sections.Edit(bs).name = *name;
  if (section.name.isEmpty() && section.ikv < 0) unnamed->push_back(bs);
}

/// The identity of the first line or winding end behind the section's entry in the list, else of the first unit,
/// load or shunt device. The search goes on to the next section's entry and so can leave the voltage level when
/// the section is its last (Kept: K40); other kinds of entry are passed over. Null when there is none.
const QString* SectionStore::NameOfEquipment(const BS& section) const {
  const QString* device = nullptr;
  const QString* end = nullptr;
  bool atNext = false;
  const bool around = m_entries.Walk(m_entries[section.ibsl].next, section.ibsl, [&](int n) {
    const BSL& entry = m_entries[n];
    const auto idOf = [&]<class Record>(tTable<Record>& table) { return &table.GetPh(entry.ref).id; };
    atNext = entry.kind == KIND_BS;
    if (entry.kind == KIND_LN2) end = idOf(m_network.Table<LN2>());
    if (entry.kind == KIND_XF2) end = idOf(m_network.Table<XF2>());
    if (device == nullptr) {
      if (entry.kind == KIND_UN) device = idOf(m_network.Table<UN>());
      if (entry.kind == KIND_LD) device = idOf(m_network.Table<LD>());
      if (entry.kind == KIND_CP) device = idOf(m_network.Table<CP>());
    }
    return !atNext && end == nullptr;
  });
  if (end != nullptr) return end;
  return atNext || around ? device : nullptr;
}

/// Finds the highest number in the section ring. False when the ring is damaged.
bool SectionStore::FindHighest() const {
  const int dead = m_sections.Dead();
  int highest = 0;
  const bool whole = m_sections.Walk(m_sections[dead].next, dead, [&](int bs) {
    highest = std::max(highest, bs);
    return true;
  });
  m_changes->highest = highest;
  return whole;
}

/// Brings the highest number in the section ring up to date. A section stands there while it belongs to a level.
void SectionStore::FollowHighest() const {
  int& highest = m_changes->highest;
  for (const int bs : m_changes->sections.Numbers()) {
    if (m_sections[bs].ikv >= 0) highest = std::max(highest, bs);
  }
  while (highest > 0 && m_sections[highest].ikv < 0) --highest;
}

/// How many sections the BS table shows: up to the first free one above all that are in use, and one more. What the
/// free list has in front of that one are numbers that were in use since the last full run.
int SectionStore::UsedCount() const {
  int firstFree = m_sections.Size();
  m_sections.Walk(m_network.Global().bs_free, -1, [&](int bs) {
    if (bs > m_changes->highest) firstFree = bs;
    return bs <= m_changes->highest;
  });
  return std::min(firstFree + 2, m_sections.Size());
}

}  // namespace dtsdb::internal
