#include "analysis/internal/way_back.h"

#include <set>

#include "analysis/internal/zero_impedance.h"
#include "formats/field_text.h"
#include "topology/component_types.h"

namespace dtsdb::analysis::internal {
namespace {

using States = std::vector<bool>;

/// Which components of the type are open, off or out of service, by logical number.
template <class Type>
States StatesOf(DTSDB& database, const Type& type) {
  tTable<typename Type::Record>& table = TableOf<typename Type::Record>(database);
  States states;
  for (int i = 0; i < table.GetCount(); ++i) states.push_back((table[i].*type.word & type.bit) != 0);
  return states;
}

States MarksOf(DTSDB& database) {
  States marks;
  const tTable<ZBR>& branches = *database.m_zbrTable;
  for (int i = 0; i < branches.GetCount(); ++i) marks.push_back((branches[i].tp_status & ZBR_OUT_WITH_BREAKER) != 0);
  return marks;
}

/// Collects the events, and keeps account of the zero-impedance branches that go along with their breakers.
class WayBack {
 public:
  WayBack(DTSDB& database, bool followsBreakers)
      : m_database(database),
        m_follows(followsBreakers),
        m_out(StatesOf(database, std::get<kZbrServiceType - 1>(kComponentTypes))),
        m_marks(MarksOf(database)) {}

  /// Brings branches that were out with their breaker, and aren't now, where opening the breaker takes them out again.
  void PrepareBranches(const States& out, const States& marks) {
    if (!m_follows) return;
    for (std::size_t i = 0; i < marks.size(); ++i) {
      if (!marks[i] || !out[i] || (m_out[i] && m_marks[i])) continue;
      if (m_out[i]) SwitchBranch(i, true);
      m_toOpenAgain.insert(Branch(i).icb);
    }
  }

  void RestoreBreakers(const States& open) {
    tTable<CB>& breakers = *m_database.m_cbTable;
    for (std::size_t i = 0; i < open.size(); ++i) {
      const int logical = static_cast<int>(i);
      const int number = breakers.LgToPh(logical);
      const bool isOpen = (breakers[logical].flags & CB_OPEN) != 0;
      if (open[i] == isOpen && !(isOpen && m_toOpenAgain.contains(number))) continue;
      Add(kBreakerType, !open[i], breakers[logical].id);
      if (m_follows) FollowBreaker(number, !open[i]);
    }
  }

  /// An event for a branch that is out already takes the mark from it.
  void RestoreBranches(const States& out, const States& marks) {
    for (std::size_t i = 0; i < out.size(); ++i) {
      if (m_out[i] != out[i] || (m_follows && m_marks[i] && !marks[i])) SwitchBranch(i, !out[i]);
    }
  }

  /// Components of any other type.
  template <class Type>
  void Restore(const Type& type, const States& off) {
    const States now = StatesOf(m_database, type);
    for (std::size_t i = 0; i < off.size(); ++i) {
      if (now[i] == off[i]) continue;
      Add(type.code, !off[i], TableOf<typename Type::Record>(m_database)[static_cast<int>(i)].id);
    }
  }

  std::vector<SwitchEvent> Events() const { return m_events; }

 private:
  void Add(int type, bool on, const QString& id) { m_events.push_back({type, on, tools::IdText(id)}); }

  const ZBR& Branch(std::size_t i) { return (*m_database.m_zbrTable)[static_cast<int>(i)]; }

  void SwitchBranch(std::size_t i, bool on) {
    Add(kZbrServiceType, on, Branch(i).id);
    m_out[i] = !on;
    m_marks[i] = false;
  }

  /// What the careful switching does with the branches on breaker `number`.
  void FollowBreaker(int number, bool on) {
    for (std::size_t i = 0; i < m_out.size(); ++i) {
      if (Branch(i).icb != number || !(on ? m_marks[i] : !m_out[i])) continue;
      m_out[i] = !on;
      m_marks[i] = !on;
    }
  }

  DTSDB& m_database;
  bool m_follows;
  States m_out;    // of the zero-impedance branches, behind the events so far
  States m_marks;  // likewise
  std::set<int> m_toOpenAgain;
  std::vector<SwitchEvent> m_events;
};

}  // namespace

SwitchStates::SwitchStates(DTSDB& database) : m_marks(MarksOf(database)) {
  const auto take = [&](const auto& type) { m_off[static_cast<std::size_t>(type.code)] = StatesOf(database, type); };
  std::apply([&](const auto&... types) { (take(types), ...); }, kComponentTypes);
}

std::vector<SwitchEvent> SwitchStates::EventsBack(DTSDB& database, bool followsBreakers) const {
  WayBack way(database, followsBreakers);
  way.PrepareBranches(m_off[kZbrServiceType], m_marks);
  way.RestoreBreakers(m_off[kBreakerType]);
  way.RestoreBranches(m_off[kZbrServiceType], m_marks);
  const auto restore = [&](const auto& type) {
    if (type.code == kBreakerType || type.code == kZbrServiceType) return;
    way.Restore(type, m_off[static_cast<std::size_t>(type.code)]);
  };
  std::apply([&](const auto&... types) { (restore(types), ...); }, kComponentTypes);
  return way.Events();
}

}  // namespace dtsdb::analysis::internal
