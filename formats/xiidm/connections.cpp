#include "formats/xiidm/connections.h"

#include <fmt/format.h>

#include "formats/import/groups.h"
#include "formats/text_layout.h"

namespace dtsdb::tools::xiidm {
namespace {

long long Key(int level, int number) { return (static_cast<long long>(level) << 32) | number; }

/// An end as a message has it: "" for the one end of a device.
std::string Side(int side) { return side == 0 ? "" : fmt::format(" at end {}", side); }

/// True when an object has this end: the second one of a converter and those of a tie line may be missing.
bool HasEnd(const Objects& objects, int object, int side) {
  const Role role = objects.RoleOf(object);
  if (role == Role::kTieLine) return !objects.Has(object, kBoundary1);
  if (role != Role::kConverter || side < 2) return true;
  return objects.Has(object, AtSide(kNode, side)) || objects.Has(object, AtSide(kBus, side)) ||
         objects.Has(object, AtSide(kConnectableBus, side));
}

}  // namespace

Connections::Connections(const Network& network) : m_network(network) {
  AddBuses();
  m_ofObject.reserve(static_cast<std::size_t>(network.objects.Count()));
  for (int object = 0; object < network.objects.Count(); ++object) AddTerminals(object);
  MoveDisconnected();
  Join();
  for (Terminal& terminal : m_terminals) terminal.node = Joined(terminal.node);
}

void Connections::AddBuses() {
  for (const int bus : m_network.objects.WithRole(Role::kBus)) {
    m_ofBus.emplace(bus, static_cast<int>(m_nodes.size()));
    m_nodes.push_back({m_network.objects.Parent(bus), kNone, bus});
  }
}

void Connections::AddTerminals(int object) {
  const ElementRow& row = m_network.objects.RowOf(object);
  const int begin = static_cast<int>(m_terminals.size());
  for (int i = 0; i < row.ends; ++i) {
    const int side = row.ends == 1 ? 0 : i + 1;
    if (HasEnd(m_network.objects, object, side)) m_terminals.push_back(MakeTerminal(object, side));
  }
  m_ofObject.emplace_back(begin, static_cast<int>(m_terminals.size()) - begin);
}

Terminal Connections::MakeTerminal(int object, int side) {
  const Objects& objects = m_network.objects;
  const int level = LevelOf(object, side);
  if (objects.Has(object, AtSide(kNode, side))) {
    const int number = NodeNumberOf(objects.Text(object, AtSide(kNode, side))).value_or(0);
    return {object, side, level, NodeOf(level, number), true};
  }
  std::string_view bus = objects.Text(object, AtSide(kBus, side));
  const bool isConnected = !bus.empty();
  if (!isConnected) bus = objects.Text(object, AtSide(kConnectableBus, side));
  if (bus.empty()) m_network.Refuse(object, "it is on no node and on no bus" + Side(side));
  return {object, side, level, BusOf(object, side, level, bus), isConnected};
}

int Connections::LevelOf(int object, int side) const {
  const Objects& objects = m_network.objects;
  if (objects.RowOf(object).isInLevel) return objects.Parent(object);
  const std::string_view id = objects.Text(object, AtSide(kLevel, side));
  const int level = objects.Find(id);
  if (level == kNone || objects.RoleOf(level) != Role::kLevel) {
    m_network.Refuse(object, fmt::format("the voltage level {}{} isn't in the file", Quoted(id), Side(side)));
  }
  return level;
}

int Connections::BusOf(int object, int side, int level, std::string_view id) const {
  const int bus = m_network.objects.Find(id);
  const auto found = m_ofBus.find(bus);
  if (found == m_ofBus.end() || m_network.objects.Parent(bus) != level) {
    m_network.Refuse(object, fmt::format("the bus {}{} isn't in the voltage level {}", Quoted(id), Side(side),
                                         Quoted(m_network.objects.Id(level))));
  }
  return found->second;
}

int Connections::NodeOf(int level, int number) {
  const auto [place, isNew] = m_byNumber.emplace(Key(level, number), static_cast<int>(m_nodes.size()));
  if (isNew) m_nodes.push_back({level, number, kNone});
  return place->second;
}

int Connections::FindNode(int level, int number) const {
  const auto found = m_byNumber.find(Key(level, number));
  return found == m_byNumber.end() ? kNone : Joined(found->second);
}

/// What stands behind an open switch of our own export, at its end 2, is on the node at its end 1, but not connected.
void Connections::MoveDisconnected() {
  std::unordered_map<int, int> before;  // by the node behind the switch
  for (const int device : m_network.objects.WithRole(Role::kSwitch)) {
    if (!m_network.objects.IsTrue(device, kOwnDisconnects) || !m_network.objects.IsTrue(device, kOpen)) continue;
    before.emplace(End(device, 1).node, End(device, 0).node);
  }
  if (before.empty()) return;
  for (Terminal& terminal : m_terminals) {
    const auto found = before.find(terminal.node);
    if (found == before.end() || m_network.objects.RoleOf(terminal.object) == Role::kSwitch) continue;
    terminal.node = found->second;
    terminal.isConnected = false;
  }
}

void Connections::Join() {
  std::vector<std::pair<int, int>> joined;
  for (const InternalConnection& connection : m_network.connections) {
    joined.emplace_back(NodeOf(connection.level, connection.node1), NodeOf(connection.level, connection.node2));
  }
  Groups groups(m_nodes.size());
  const auto numberOf = [this](int node) { return m_nodes[static_cast<std::size_t>(node)].number; };
  for (const auto& [node1, node2] : joined) {  // that with the lower number stands for both
    const int a = groups.Of(node1);
    const int b = groups.Of(node2);
    groups.Join(numberOf(a) < numberOf(b) ? b : a, numberOf(a) < numberOf(b) ? a : b);
  }
  m_parent.reserve(m_nodes.size());
  for (int i = 0; i < static_cast<int>(m_nodes.size()); ++i) m_parent.push_back(groups.Of(i));
  for (const NodeName& named : m_network.nodeNames) {
    const int node = FindNode(named.level, named.node);
    if (node != kNone) m_nodes[static_cast<std::size_t>(node)].name = named.name;
  }
}

std::span<const Terminal> Connections::TerminalsOf(int object) const {
  const auto& [begin, count] = m_ofObject[static_cast<std::size_t>(object)];
  return std::span(m_terminals).subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(count));
}

Inflow Connections::FlowInto(const Terminal& terminal) const {
  return {m_network.objects.NumberOrZero(terminal.object, AtSide(kP, terminal.side)),
          m_network.objects.NumberOrZero(terminal.object, AtSide(kQ, terminal.side))};
}

}  // namespace dtsdb::tools::xiidm
