#include "topology/internal/references.h"

#include <vector>

#include "model/text.h"

namespace dtsdb::internal {
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

int IslandOf(const Network& network, int bs) { return network.Table<BS>().GetPh(bs).island; }

/// The live island that section `bs` lies in, if it has no reference yet; null otherwise.
ISLAND* IslandWithoutReference(const Network& network, int bs) {
  const int number = IslandOf(network, bs);
  if (number < 0) return nullptr;
  ISLAND& island = network.Table<ISLAND>().GetPh(number);
  return island.ref_ibs < 2 ? &island : nullptr;
}

/// The unit with the greatest margin of an island.
struct Choice {
  int unit = -1;  ///< logical number
  f32 margin = 0.0F;
};

/// By island: a later unit wins a tie, and one with a negative margin can't win.
std::vector<Choice> GreatestMargins(const Network& network) {
  auto& units = network.Table<UN>();
  const int islands = network.Table<ISLAND>().GetCount();
  std::vector<Choice> choices(static_cast<std::size_t>(islands));
  for (int i = 0; i < units.GetCount(); ++i) {
    const UN& unit = units[i];
    const int island = IslandOf(network, unit.ibs);
    if (island < 0 || island >= islands || (unit.status & SHUNT_ISOLATED)) continue;
    Choice& choice = choices[static_cast<std::size_t>(island)];
    const f32 margin = unit.pmax - unit.pcur;
    if (margin >= choice.margin) choice = {i, margin};
  }
  return choices;
}

/// Gives each island that has no reference its unit with the greatest margin, and returns how many it gave.
int ChooseReferences(const Network& network) {
  auto& units = network.Table<UN>();
  auto& islands = network.Table<ISLAND>();
  const std::vector<Choice> choices = GreatestMargins(network);
  int chosen = 0;
  for (int i = 0; i < islands.GetCount(); ++i) {
    ISLAND& island = islands[i];
    const int unit = choices[static_cast<std::size_t>(i)].unit;
    if (island.ref_ibs >= 0 || unit == -1) continue;
    UN& reference = units[unit];
    SetReference(island, reference, units.LgToPh(unit));
    reference.ref = 0;
    reference.status |= UN_REF_CHOSEN;
    ++chosen;
  }
  return chosen;
}

}  // namespace

int SetReferences(const Network& network) {
  if (network.Table<ISLAND>().GetCount() == 0) {
    PrintText(QStringLiteral("网络拓扑没有成功或者无活岛可用!"));
    return 0;
  }
  auto& units = network.Table<UN>();
  for (int i = 0; i < units.GetCount(); ++i) {
    UN& unit = units[i];
    unit.status &= ~UN_REF_CHOSEN;
    if (!IsInService(unit)) continue;
    ISLAND* const island = IslandWithoutReference(network, unit.ibs);
    if (island != nullptr && unit.ref == 0) SetReference(*island, unit, units.LgToPh(i));
  }
  auto& loads = network.Table<LD>();
  for (int i = 0; i < loads.GetCount(); ++i) {
    const LD& load = loads[i];
    if (!IsInService(load)) continue;
    ISLAND* const island = IslandWithoutReference(network, load.ibs);
    // The island so gets no reference unit, and none is looked for. Kept: K39.
    if (island != nullptr && load.ref == 0) island->ref_ibs = load.ibs;
  }
  return ChooseReferences(network);
}

}  // namespace dtsdb::internal
