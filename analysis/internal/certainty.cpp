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

/// True when the branch is in service with an open end. One that is out has no fragment, whatever its ends are.
template <class Branch>
bool HasOpenEnd(const Branch& branch) {
  using Kind = BranchKind<Branch>;
  return (branch.status & Kind::kOut) == 0 && (branch.status & (Kind::kOpen1 | Kind::kOpen2)) != 0;
}

/// Goes over the changes and the levels that they reach, until there is a doubt.
class Search {
 public:
  explicit Search(DTSDB& database) : m_database(database) {}

  std::optional<Doubt> Run(const std::vector<ComponentChange>& changes) {
    for (const ComponentChange& change : changes) TakeChange(change);
    const std::set<int> changed = m_levels;
    for (const int level : changed) LookAtLevel(level, !m_isQuiet);
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
        using Kind = BranchKind<Component>;
        if ((component.status & (Kind::kOpen1 | Kind::kOpen2)) != 0 || type.bit != Kind::kOut) {
          Note(RunReason::kOpenEnd, component);
        }
        m_isQuiet = m_isQuiet && StandsOnSections(component);
      } else if constexpr (std::is_same_v<Component, CB>) {
        m_isQuiet = false;
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
      ForEachEndOn<ZBR>(m_database, row.ind, [&](const ZBR& branch, const ZBR2&) {
        if (!m_isQuiet || !IsQuiet(branch, row.ind)) Note(RunReason::kZeroImpedance, branch);
      });
      ForEachEndOn<CB>(m_database, row.ind, [&](const CB& breaker, const CB2&) {
        if (!m_isQuiet && (breaker.flags & CB_ZBR) != 0) Note(RunReason::kZeroImpedance, breaker);
      });
      LookAtBranches<LN>(row.ind, goOn);
      LookAtBranches<XF>(row.ind, goOn);
      LookAtBranches<DLN>(row.ind, goOn);
    }
  }

  template <class Branch>
  void LookAtBranches(int nd, bool goOn) {
    ForEachEndOn<Branch>(m_database, nd, [&](const Branch& branch, const auto&) {
      if (HasOpenEnd(branch)) Note(RunReason::kOpenEnd, branch);
      const int other = branch.ind == nd ? branch.iznd : branch.ind;
      if (goOn && !IsInSection(other)) AddLevelOf(other);
    });
  }

  /// True when a run finds nothing to do at a zero-impedance branch on node `nd` where no node moves: it is in service
  /// between proper sections, and names its own ends (docs/kept-behaviour.md, K15).
  bool IsQuiet(const ZBR& branch, int nd) const {
    using Kind = BranchKind<ZBR>;
    const bool isIn = (branch.status & (Kind::kOut | Kind::kOpen1 | Kind::kOpen2)) == 0;
    const auto owner = [&](int end) { return &m_database.m_zbrTable->GetPh(m_database.m_zbr2Table->GetPh(end).izbr); };
    const bool hasOwnEnds = owner(branch.zbr2) == &branch && owner(branch.zzbr2) == &branch;
    return isIn && hasOwnEnds && (branch.ind == nd || branch.iznd == nd) && StandsOnSections(branch);
  }

  template <class Branch>
  bool StandsOnSections(const Branch& branch) const {
    return IsInSection(branch.ind) && IsInSection(branch.iznd);
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
  bool m_isQuiet = true;  ///< nothing changes but devices and whole branches between proper sections: no node moves
  std::optional<Doubt> m_doubt;
};

}  // namespace

std::optional<Doubt> DoubtAbout(const std::vector<ComponentChange>& changes, DTSDB& database) {
  return Search(database).Run(changes);
}

}  // namespace dtsdb::analysis::internal
