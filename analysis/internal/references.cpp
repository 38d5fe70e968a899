#include "analysis/internal/references.h"

#include "formats/field_text.h"
#include "model/record_bits.h"

namespace dtsdb::analysis::internal {
namespace {

template <class Device>
bool IsInService(const Device& device) {
  return (device.status & (SHUNT_OFF | SHUNT_ISOLATED)) == 0;
}

template <class Device>
std::string TextOf(const Device& device) {
  return std::string(Device::kTableName) + " " + tools::IdText(device.id);
}

}  // namespace

References::References(DTSDB& tables) : m_tables(tables), m_atStart(Read()) {
  const tTable<UN>& units = *tables.m_unTable;
  for (int i = 0; i < units.GetCount(); ++i) {
    const UN& unit = units.GetPh(i);
    m_marks.push_back({unit.ref, unit.status & UN_REF_CHOSEN});
  }
}

Reference References::AtStart(int island) const {
  const bool known = island >= 0 && static_cast<std::size_t>(island) < m_atStart.size();
  return known ? m_atStart[static_cast<std::size_t>(island)] : Reference();
}

bool References::Has(int island, const Reference& reference) const {
  const auto has = [&](const auto& device) {
    return IsInService(device) && m_tables.m_bsTable->GetPh(device.ibs).island == island;
  };
  if (reference.unit >= 0) return has(m_tables.m_unTable->GetPh(reference.unit));
  return reference.load >= 0 && has(m_tables.m_ldTable->GetPh(reference.load));
}

std::vector<Reference> References::Choose(TP& tp) {
  tTable<ISLAND>& islands = *m_tables.m_islandTable;
  if (islands.GetCount() == 0) return {};
  for (int i = 0; i < islands.GetCount(); ++i) {
    islands[i].ref_ibs = islands[i].ref_un = -1;
    islands[i].ref_id = QString();
  }
  tp.tpSetRefUN();
  std::vector<Reference> chosen = Read();
  tTable<UN>& units = *m_tables.m_unTable;
  for (std::size_t i = 0; i < m_marks.size(); ++i) {
    UN& unit = units.GetPh(static_cast<int>(i));
    unit.ref = m_marks[i].ref;
    unit.status = (unit.status & ~UN_REF_CHOSEN) | m_marks[i].chosen;
  }
  return chosen;
}

std::string References::Text(const Reference& reference) const {
  if (reference.unit >= 0) return TextOf(m_tables.m_unTable->GetPh(reference.unit));
  return reference.load >= 0 ? TextOf(m_tables.m_ldTable->GetPh(reference.load)) : "";
}

/// The reference unit of each live island; where a section is the reference, the load that has made it one.
std::vector<Reference> References::Read() const {
  const tTable<ISLAND>& islands = *m_tables.m_islandTable;
  std::vector<Reference> references;
  bool needLoads = false;
  for (int i = 0; i < islands.GetCount(); ++i) {
    references.push_back({islands[i].ref_un, -1});
    needLoads = needLoads || (islands[i].ref_un < 0 && islands[i].ref_ibs >= 0);
  }
  const tTable<LD>& loads = *m_tables.m_ldTable;
  for (int i = loads.GetCount() - 1; needLoads && i >= 0; --i) {
    const LD& load = loads.GetPh(i);
    const int island = m_tables.m_bsTable->GetPh(load.ibs).island;
    if (island < 0 || island >= islands.GetCount() || !IsInService(load) || load.ref != 0) continue;
    Reference& reference = references[static_cast<std::size_t>(island)];
    if (reference.unit < 0 && islands[island].ref_ibs == load.ibs) reference.load = i;
  }
  return references;
}

}  // namespace dtsdb::analysis::internal
