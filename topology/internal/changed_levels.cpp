#include "topology/internal/changed_levels.h"

#include <type_traits>

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool ChangedLevels::Find() const {
  m_levels.EmptyChanged();
  auto& trace = m_network.Table<TPTRACE>();
  for (int i = 0; i < trace.GetCount(); ++i) {
    const TPTRACE& row = trace[i];
    if (row.n1 == -1) continue;
    bool followed = true;
    WithComponentType(row.type, [&](const auto& type) { followed = Follow(type, row.n1); });
    if (!followed) return FailedIn("tpChangedKv");
  }
  trace.Clear();
  return true;
}

namespace {

/// The voltage level that owns a component, -1 for none.
template <class Component>
int LevelOf(const Network& network, const Component& component) {
  using Row = ParentRow<Component>;
  return network.LevelThrough<Row>(component.*Relation<Row>::kOwn);
}

}  // namespace

/// Follows up the change of component `number`. False when its voltage level isn't to be found. Breakers aren't logged.
template <class Component>
bool ChangedLevels::Follow(const ComponentType<Component>& type, int number) const {
  auto& table = m_network.Table<Component>();
  if (!HasSlot(table, number)) return false;
  const Component& component = table.GetPh(number);
  if constexpr (requires { BranchKind<Component>::kOut; }) {
    const int kv = m_network.LevelOfNode(component.ind);
    const int otherKv = m_network.LevelOfNode(component.iznd);
    if (kv == -1 || otherKv == -1 || !Log(type, number)) return false;
    m_levels.AddChangedPair(kv, otherKv);
  } else {
    const int kv = LevelOf(m_network, component);
    if (kv == -1) return false;
    if constexpr (std::is_same_v<Component, CB>) {
      m_levels.AddChangedPlain(kv);
    } else {
      if (!Log(type, number)) return false;
      m_levels.AddChangedPair(kv, -1);
    }
  }
  return true;
}

/// Logs what the status of a component now is, and the sections that it stood on until now.
template <class Component>
bool ChangedLevels::Log(const ComponentType<Component>& type, int number) const {
  const Component& component = m_network.Table<Component>().GetPh(number);
  const u32 status = component.*type.word;
  int otherBs = -1;
  if constexpr (requires { component.izbs; }) {
    if (type.bothEnds) otherBs = component.izbs;
  }
  const char* const word = status & type.bit ? type.whenSet : type.whenClear;
  return m_log.Record({kKindOf<Component>, number, status, component.ibs, otherBs, word});
}

}  // namespace dtsdb::internal
