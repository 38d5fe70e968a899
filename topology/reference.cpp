/// \file
/// The reference of each live island.
#include "model/text.h"
#include "topology/walks.h"

namespace dtsdb {
namespace {

/// Neither switched off nor isolated.
template <class Device>
bool IsInService(const Device& device) {
  return !(device.status & (SHUNT_OFF | SHUNT_ISOLATED));
}

void SetReference(ISLAND& island, const UN& unit, int number) {
  island.ref_un = number;
  island.ref_ibs = unit.ibs;
  island.ref_a = unit.a;
  island.ref_id = unit.id;
}

}  // namespace

/// The live island that section `bs` lies in, if it has no reference yet; null otherwise.
ISLAND* TP::IslandWithoutReference(int bs) const {
  const int number = IslandOf(bs);
  if (number < 0) return nullptr;
  ISLAND& island = m_islandTable->GetPh(number);
  return island.ref_ibs < 2 ? &island : nullptr;
}

int TP::tpSetRefUN() {
  if (m_islandTable->GetCount() == 0) {
    PrintText(QStringLiteral("网络拓扑没有成功或者无活岛可用!"));
    return 0;
  }
  for (int i = 0; i < m_unTable->GetCount(); ++i) {
    UN& unit = (*m_unTable)[i];
    unit.status &= ~UN_REF_CHOSEN;
    if (!IsInService(unit)) continue;
    ISLAND* const island = IslandWithoutReference(unit.ibs);
    if (island != nullptr && unit.ref == 0) SetReference(*island, unit, m_unTable->LgToPh(i));
  }
  for (int i = 0; i < m_ldTable->GetCount(); ++i) {
    const LD& load = (*m_ldTable)[i];
    if (!IsInService(load)) continue;
    ISLAND* const island = IslandWithoutReference(load.ibs);
    if (island != nullptr && load.ref == 0) island->ref_ibs = load.ibs;
  }
  return ChooseReferences();
}

/// Gives each island that has no reference its unit with the greatest margin; a later unit wins a tie, and one with a
/// negative margin can't win. Gives how many were chosen.
int TP::ChooseReferences() {
  struct Choice {
    int unit = -1;  // logical number
    f32 margin = 0.0F;
  };
  std::vector<Choice> choices(static_cast<std::size_t>(m_islandTable->GetCount()));
  for (int i = 0; i < m_unTable->GetCount(); ++i) {
    const UN& unit = (*m_unTable)[i];
    const int island = IslandOf(unit.ibs);
    if (island < 0 || island >= m_islandTable->GetCount() || (unit.status & SHUNT_ISOLATED)) continue;
    Choice& choice = choices[static_cast<std::size_t>(island)];
    const f32 margin = unit.pmax - unit.pcur;
    if (margin >= choice.margin) choice = {i, margin};
  }
  int chosen = 0;
  for (int i = 0; i < m_islandTable->GetCount(); ++i) {
    ISLAND& island = (*m_islandTable)[i];
    const int unit = choices[static_cast<std::size_t>(i)].unit;
    if (island.ref_ibs >= 0 || unit == -1) continue;
    UN& reference = (*m_unTable)[unit];
    SetReference(island, reference, m_unTable->LgToPh(unit));
    reference.ref = 0;
    reference.status |= UN_REF_CHOSEN;
    ++chosen;
  }
  return chosen;
}

}  // namespace dtsdb
