#include "analysis/internal/certainty.h"

#include <set>
#include <type_traits>

#include "analysis/internal/points.h"
#include "formats/field_text.h"
#include "topology/component_types.h"

namespace dtsdb::analysis::internal {
namespace {

template <class Component>
Doubt DoubtFor(RunReason reason, const Component& component) {
  return {reason, std::string(Component::kTableName) + " " + tools::IdText(component.id)};
}

/// Goes over the changes and the levels that they reach, until there is a doubt.
class Search {
 public:
  explicit Search(DTSDB& database) : m_database(database) {}

  std::optional<Doubt> Run(const std::vector<ComponentChange>& changes) {
    for (const ComponentChange& change : changes) TakeChange(change);
    const std::set<int> changed = m_levels;
    for (const int level : changed) LookAtLevel(level, true);
    for (const int level : m_levels) {
      if (!changed.contains(level)) LookAtLevel(level, false);
    }
    return m_doubt;
  }

 private:
  void TakeChange(const ComponentChange& change) {
    WithComponentType(change.type, [&](const auto& type) {
      using Component = typename std::remove_cvref_t<decltype(type)>::Record;
      tTable<Component>& table = TableOf<Component>(m_database);
      if (change.number < 0 || change.number >= table.GetSize()) return;
      const Component& component = table.GetPh(change.number);
      if constexpr (std::is_same_v<Component, ZBR>) {
        Note(RunReason::kZeroImpedance, component);
      } else if constexpr (requires { BranchKind<Component>::kOut; }) {
        if (type.bit != BranchKind<Component>::kOut) Note(RunReason::kOpenEnd, component);
      }
      AddLevelOf(component.ind);
      if constexpr (requires { component.iznd; }) AddLevelOf(component.iznd);
    });
  }

  /// The branches on the nodes of a level; with `goOn` also the levels that the run may draw in.
  void LookAtLevel(int level, bool goOn) {
    const KV& record = m_database.m_kvTable->GetPh(level);
    for (const R_KV_ND& row : Chain(*m_database.m_rKvNdTable, record.r_kv_nd)) {
      if (m_doubt) return;
      ForEachEndOn<ZBR>(m_database, row.ind,
                        [&](const ZBR& branch, const ZBR2&) { Note(RunReason::kZeroImpedance, branch); });
      ForEachEndOn<CB>(m_database, row.ind, [&](const CB& breaker, const CB2&) {
        if (breaker.flags & CB_ZBR) Note(RunReason::kZeroImpedance, breaker);
      });
      LookAtBranches<LN>(row.ind, goOn);
      LookAtBranches<XF>(row.ind, goOn);
      LookAtBranches<DLN>(row.ind, goOn);
    }
  }

  template <class Branch>
  void LookAtBranches(int nd, bool goOn) {
    using Kind = BranchKind<Branch>;
    ForEachEndOn<Branch>(m_database, nd, [&](const Branch& branch, const auto&) {
      if (branch.status & (Kind::kOpen1 | Kind::kOpen2)) Note(RunReason::kOpenEnd, branch);
      const int other = branch.ind == nd ? branch.iznd : branch.ind;
      if (goOn && !IsInSection(other)) AddLevelOf(other);
    });
  }

  /// True when the node stands on a proper section, no fragment.
  bool IsInSection(int nd) const {
    const int section = m_database.m_ndTable->GetPh(nd).ibs;
    return section > 0 && !(m_database.m_bsTable->GetPh(section).status & BS_ISOLATED);
  }

  void AddLevelOf(int nd) {
    const int row = m_database.m_ndTable->GetPh(nd).r_kv_nd;
    if (row >= 0) m_levels.insert(m_database.m_rKvNdTable->GetPh(row).ikv);
  }

  template <class Component>
  void Note(RunReason reason, const Component& component) {
    if (!m_doubt) m_doubt = DoubtFor(reason, component);
  }

  DTSDB& m_database;
  std::set<int> m_levels;
  std::optional<Doubt> m_doubt;
};

}  // namespace

std::optional<Doubt> DoubtAbout(const std::vector<ComponentChange>& changes, DTSDB& database) {
  return Search(database).Run(changes);
}

}  // namespace dtsdb::analysis::internal
