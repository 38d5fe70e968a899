#include "formats/cgmes/connections.h"

#include <algorithm>
#include <iterator>

namespace dtsdb::tools::cgmes {
namespace {

/// References by which the object that refers is looked for.
constexpr Property kInverse[] = {kFlowTerminal, kVoltageNode,   kStatusEquipment, kSectionsShunt,
                                 kEndTerminal,  kAnalogOfValue, kDiscreteOfValue, kElectronicsUnitConnection};

std::size_t PlaceOf(Property property) {
  return static_cast<std::size_t>(std::find(std::begin(kInverse), std::end(kInverse), property) - std::begin(kInverse));
}

}  // namespace

std::span<const int> Connections::Lists::Of(int owner) const {
  const auto place = static_cast<std::size_t>(owner);
  const auto first = static_cast<std::size_t>(begin[place]);
  return std::span(members).subspan(first, static_cast<std::size_t>(begin[place + 1]) - first);
}

Connections::Connections(const Objects& objects) : m_objects(objects) {
  FindRows();
  FindInverses();
  std::vector<int> terminals;
  for (int i = 0; i < objects.Count(); ++i) {
    if (objects.Has(i, kTerminalEquipment)) terminals.push_back(i);
  }
  const auto sequence = [&objects](int terminal) {
    const auto number = objects.Number(terminal, kTerminalNumber);
    return number ? *number : objects.Number(terminal, kTerminalNumberOld).value_or(0);
  };
  std::stable_sort(terminals.begin(), terminals.end(), [&](int a, int b) { return sequence(a) < sequence(b); });
  m_ofEquipment = TerminalsBy(terminals, kTerminalEquipment);
  m_atNode = TerminalsBy(terminals, kTerminalNode);
}

void Connections::FindRows() {
  for (int i = 0; i < m_objects.ClassCount(); ++i) m_rows.push_back(&RowOfClass(m_objects.ClassName(i)));
  m_rows.push_back(&RowOfClass(""));
  for (int i = 0; i < m_objects.Count(); ++i) {
    const int type = m_objects.Class(i);
    m_rowOf.push_back(type == kNone ? m_rows.size() - 1 : static_cast<std::size_t>(type));
  }
}

void Connections::FindInverses() {
  const auto count = static_cast<std::size_t>(m_objects.Count());
  m_inverse.assign(std::size(kInverse), std::vector<int>(count, kNone));
  for (int i = 0; i < m_objects.Count(); ++i) {
    m_objects.ForEachTarget(i, [this, i](Property property, int target) {
      const std::size_t place = PlaceOf(property);
      if (place == std::size(kInverse)) return;
      int& referring = m_inverse[place][static_cast<std::size_t>(target)];
      if (referring == kNone) referring = i;
    });
  }
}

/// Sorts terminals into lists by what their property `owner` refers to; each list keeps their order.
Connections::Lists Connections::TerminalsBy(const std::vector<int>& terminals, Property owner) const {
  Lists lists;
  lists.begin.assign(static_cast<std::size_t>(m_objects.Count()) + 1, 0);
  for (const int terminal : terminals) {
    const int target = m_objects.Target(terminal, owner);
    if (target != kNone) ++lists.begin[static_cast<std::size_t>(target) + 1];
  }
  for (std::size_t i = 1; i < lists.begin.size(); ++i) lists.begin[i] += lists.begin[i - 1];
  lists.members.resize(static_cast<std::size_t>(lists.begin.back()));
  std::vector<int> next = lists.begin;
  for (const int terminal : terminals) {
    const int target = m_objects.Target(terminal, owner);
    if (target == kNone) continue;
    lists.members[static_cast<std::size_t>(next[static_cast<std::size_t>(target)]++)] = terminal;
  }
  return lists;
}

std::vector<int> Connections::WithRole(Role role) const {
  std::vector<int> objects;
  for (int i = 0; i < m_objects.Count(); ++i) {
    if (RowOf(i).role == role) objects.push_back(i);
  }
  return objects;
}

std::span<const int> Connections::TerminalsOf(int equipment) const { return m_ofEquipment.Of(equipment); }
std::span<const int> Connections::TerminalsAt(int node) const { return m_atNode.Of(node); }

int Connections::ReferringTo(int target, Property property) const {
  return target == kNone ? kNone : At(m_inverse[PlaceOf(property)], target);
}

bool Connections::IsInService(int equipment) const {
  if (m_objects.Has(equipment, kInService)) return !m_objects.IsFalse(equipment, kInService);
  return !m_objects.IsFalse(ReferringTo(equipment, kStatusEquipment), kStatusInService);
}

bool Connections::IsOpen(int equipment) const {
  const Property position = m_objects.Has(equipment, kSwitchOpen) ? kSwitchOpen : kSwitchNormalOpen;
  const std::span<const int> terminals = TerminalsOf(equipment);
  return m_objects.IsTrue(equipment, position) ||
         !std::all_of(terminals.begin(), terminals.end(), [this](int terminal) { return IsOn(terminal); });
}

std::optional<Power> Connections::Published(int terminal) const {
  const int flow = ReferringTo(terminal, kFlowTerminal);
  if (flow == kNone) return std::nullopt;
  return Power{Number(flow, kFlowP), Number(flow, kFlowQ)};
}

/// What a shunt compensator takes at its nominal voltage.
Power Connections::OfShunt(int shunt) const {
  const int published = ReferringTo(shunt, kSectionsShunt);
  const double sections = published == kNone ? Number(shunt, kShuntSections) : Number(published, kSectionsCount);
  const double u = Number(shunt, kShuntNominalU);
  return {0, -Number(shunt, kShuntB) * sections * u * u};
}

Power Connections::FlowInto(int terminal) const {
  if (const std::optional<Power> published = Published(terminal)) return *published;
  const int equipment = EquipmentOf(terminal);
  if (equipment == kNone || TerminalsOf(equipment).size() != 1) return {};
  const ClassRow& row = RowOf(equipment);
  if (row.role == Role::kShunt && row.q == kPropertyCount) return OfShunt(equipment);
  if (row.p == kLoadP && !m_objects.Has(equipment, kLoadP)) {
    return {Number(equipment, kLoadFixedP), Number(equipment, kLoadFixedQ)};
  }
  return {Number(equipment, row.p), Number(equipment, row.q)};
}

}  // namespace dtsdb::tools::cgmes
