/// \file
/// How the objects of a set hang together, found once: what stands at whose terminals, and what is published of them.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "formats/cgmes/classes.h"
#include "formats/cgmes/objects.h"
#include "formats/import/inflow.h"

namespace dtsdb::tools::cgmes {

using Power = Inflow;

/// The connections of `objects`, which must live as long as this and stay as they are.
class Connections {
 public:
  explicit Connections(const Objects& objects);

  /// How objects of this object's class are mapped.
  const ClassRow& RowOf(int object) const { return *m_rows[At(m_rowOf, object)]; }
  /// The objects of a role, in the order of their numbers.
  std::vector<int> WithRole(Role role) const;

  /// The terminals of a piece of equipment, by their sequence numbers.
  std::span<const int> TerminalsOf(int equipment) const;
  /// The connectivity node of a terminal, Objects::kNone without one.
  int NodeOf(int terminal) const { return m_objects.Target(terminal, kTerminalNode); }
  /// The terminals on a connectivity node.
  std::span<const int> TerminalsAt(int node) const;
  /// The equipment of a terminal, Objects::kNone without it.
  int EquipmentOf(int terminal) const { return m_objects.Target(terminal, kTerminalEquipment); }

  /// False where the equipment is published as out of service.
  bool IsInService(int equipment) const;
  bool IsConnected(int terminal) const { return !m_objects.IsFalse(terminal, kTerminalConnected); }
  /// True when the equipment of this terminal is in service and the terminal is connected.
  bool IsOn(int terminal) const { return IsConnected(terminal) && IsInService(EquipmentOf(terminal)); }
  /// True when a switch doesn't conduct: it is open or out of service, or a terminal isn't connected.
  bool IsOpen(int equipment) const;
  /// What flows into the equipment at a terminal: as published, else for equipment with one terminal as the
  /// steady-state hypothesis has it.
  Power FlowInto(int terminal) const;

  /// The one object whose `property` refers to `target`, Objects::kNone without one; of several the first. For the
  /// properties in kInverse only.
  int ReferringTo(int target, Property property) const;

  /// The number that `property` of `object` is, 0 without it.
  double Number(int object, Property property) const { return m_objects.Number(object, property).value_or(0); }

 private:
  /// Lists of numbers, one after the other.
  struct Lists {
    std::vector<int> begin;
    std::vector<int> members;

    std::span<const int> Of(int owner) const;
  };

  template <class T>
  static T At(const std::vector<T>& values, int place) {
    return values[static_cast<std::size_t>(place)];
  }
  void FindRows();
  void FindInverses();
  Lists TerminalsBy(const std::vector<int>& terminals, Property owner) const;
  std::optional<Power> Published(int terminal) const;
  Power OfShunt(int shunt) const;

  const Objects& m_objects;
  std::vector<const ClassRow*> m_rows;  // by class, one for no class at the end
  std::vector<std::size_t> m_rowOf;     // by object
  Lists m_ofEquipment;
  Lists m_atNode;
  std::vector<std::vector<int>> m_inverse;  // by place in kInverse, then by object
};

}  // namespace dtsdb::tools::cgmes
