#include "analysis/internal/points.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <vector>

#include "formats/field_text.h"

namespace dtsdb::analysis::internal {
namespace {

/// So many branch ends that lead somewhere are too many for a section.
constexpr int kTooManyNeighbours = 100;

template <class Branch>
int EndsOn(DTSDB& database, int nd) {
  using Row = typename BranchKind<Branch>::Row;
  return ChainLength(TableOf<Row>(database), database.m_ndTable->GetPh(nd).*Relation<Row>::kHead);
}

/// Counts, by section, the ends of a class of branch that lead to another section.
template <class Branch>
void CountNeighbours(DTSDB& database, std::vector<int>& counts) {
  using Kind = BranchKind<Branch>;
  tTable<Branch>& branches = TableOf<Branch>(database);
  const auto count = [&](int end, int from, int to) {
    const bool isolated = (TableOf<typename Kind::End>(database).GetPh(end).flags & END_ISOLATED) != 0;
    const bool known = from > 0 && static_cast<std::size_t>(from) < counts.size();
    if (!isolated && known && to > 0) ++counts[static_cast<std::size_t>(from)];
  };
  for (int i = 0; i < branches.GetCount(); ++i) {
    const Branch& branch = branches[i];
    count(branch.*Kind::kFromEnd, branch.ibs, branch.izbs);
    count(branch.*Kind::kToEnd, branch.izbs, branch.ibs);
  }
}

/// The greatest number that a node or branch has for its section, and one more.
std::size_t SectionCount(DTSDB& database) {
  int greatest = 0;
  const auto take = [&](int number) { greatest = std::max(greatest, number); };
  for (int i = 0; i < database.m_ndTable->GetCount(); ++i) take((*database.m_ndTable)[i].ibs);
  return static_cast<std::size_t>(greatest) + 1;
}

}  // namespace

bool IsSectionPoint(DTSDB& database, int nd) {
  std::set<int> reached = {nd};
  std::vector<int> waiting = {nd};
  int ends = 0;
  u32 flags = 0;
  while (!waiting.empty()) {
    const int node = waiting.back();
    waiting.pop_back();
    ends += EndsOn<LN>(database, node) + EndsOn<XF>(database, node) + EndsOn<DLN>(database, node) +
            EndsOn<ZBR>(database, node);
    flags |= database.m_ndTable->GetPh(node).flags;
    ForEachEndOn<CB>(database, node, [&](const CB& breaker, const CB2&) {
      if (breaker.flags & (CB_OPEN | CB_ZBR)) return;
      const int other = breaker.ind == node ? breaker.iznd : breaker.ind;
      if (reached.insert(other).second) waiting.push_back(other);
    });
  }
  return ends > 1 || (ends == 1 && (flags & (ND_HAS_UN | ND_HAS_LD | ND_HAS_CP)) != 0);
}

std::vector<int> IslandsOfNodes(DTSDB& database) {
  tTable<ND>& nodes = *database.m_ndTable;
  std::vector<int> islands;
  for (int i = 0; i < nodes.GetCount(); ++i) {
    const int section = nodes[i].ibs;
    const bool known = section > 0 && section < database.m_bsTable->GetSize();
    islands.push_back(known ? database.m_bsTable->GetPh(section).island : -1);
  }
  return islands;
}

std::string CrowdedSection(DTSDB& database) {
  std::vector<int> counts(SectionCount(database));
  CountNeighbours<LN>(database, counts);
  CountNeighbours<XF>(database, counts);
  CountNeighbours<DLN>(database, counts);
  CountNeighbours<ZBR>(database, counts);
  for (int i = 0; i < database.m_ndTable->GetCount(); ++i) {
    const ND& node = (*database.m_ndTable)[i];
    if (node.ibs <= 0 || counts[static_cast<std::size_t>(node.ibs)] < kTooManyNeighbours) continue;
    const KV& level = database.m_kvTable->GetPh(database.m_rKvNdTable->GetPh(node.r_kv_nd).ikv);
    return fmt::format("the section of node {} in station {}, voltage level {}", tools::IdText(node.id),
                       tools::IdText(level.st), tools::IdText(level.id));
  }
  return "";
}

}  // namespace dtsdb::analysis::internal
