#include "topology/internal/section_store.h"

#include <algorithm>

namespace dtsdb::internal {

bool SectionStore::NameAndStore() const {
  Name();
  const int count = UsedCount();
  return count >= 0 && m_network.Table<BS>().SetData(m_sections.List().Data(), count, true) &&
         m_network.Table<BSL>().SetData(m_entries.List().Data(), m_entries.Size(), true);
}

void SectionStore::Name() const {
  auto& buses = m_network.Table<BUS>();
  for (int i = 0; i < buses.GetCount(); ++i) {
    const BUS& bus = buses[i];
    if (bus.ibs > 0) m_sections[bus.ibs].name = bus.id;
  }
  for (int bs = 0; bs < m_sections.Size(); ++bs) {
    BS& section = m_sections[bs];
    // Only a full run empties the names: a slot taken again can have one of its former use. Kept: K54.
    if (section.name.isEmpty() && section.ibsl != -1) NameByEquipment(section);
  }
}

/// Names a section after the first line or winding end behind its entry in the list, else after the first unit,
/// load or shunt device. The search goes on to the next section's entry and so can leave the voltage level when
/// the section is its last (Kept: K40); other kinds of entry are passed over. Without any the name stays as it is.
void SectionStore::NameByEquipment(BS& section) const {
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
  if (end != nullptr) {
    section.name = *end;
  } else if ((atNext || around) && device != nullptr) {
    section.name = *device;
  }
}

/// How many sections the BS table shows: up to the first free one above all that are in use, and one more. -1 when
/// the ring is damaged.
int SectionStore::UsedCount() const {
  const int dead = m_sections.Dead();
  int highest = 0;
  const bool whole = m_sections.Walk(m_sections[dead].next, dead, [&](int bs) {
    highest = std::max(highest, bs);
    return true;
  });
  if (!whole) return -1;
  int firstFree = m_sections.Size();
  m_sections.Walk(m_network.Global().bs_free, -1, [&](int bs) {
    if (bs > highest) firstFree = bs;
    return bs <= highest;
  });
  return std::min(firstFree + 2, m_sections.Size());
}

}  // namespace dtsdb::internal
