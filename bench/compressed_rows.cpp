#include "bench/compressed_rows.h"

#include <cstddef>

#include "model/branch_kinds.h"
#include "model/record_bits.h"

namespace dtsdb::bench {
namespace {

/// Calls `visit` with the two nodes of each closed breaker.
template <class Visitor>
void ForEachBreaker(const DTSDB& network, Visitor visit) {
  const tTable<CB>& breakers = *network.m_cbTable;
  for (int i = 0; i < breakers.GetCount(); ++i) {
    if ((breakers[i].flags & CB_OPEN) == 0) visit(breakers[i].ind, breakers[i].iznd);
  }
}

/// Calls `visit` with the two nodes of each branch in service.
template <class Branch, class Visitor>
void ForEachBranch(const tTable<Branch>& branches, Visitor visit) {
  using Kind = BranchKind<Branch>;
  for (int i = 0; i < branches.GetCount(); ++i) {
    const Branch& branch = branches[i];
    if ((branch.status & (Kind::kOut | Kind::kOpen1 | Kind::kOpen2)) == 0) visit(branch.ind, branch.iznd);
  }
}

template <class Visitor>
void ForEachLink(const DTSDB& network, Visitor visit) {
  ForEachBreaker(network, visit);
  ForEachBranch(*network.m_lnTable, visit);
  ForEachBranch(*network.m_dlnTable, visit);
  ForEachBranch(*network.m_xfTable, visit);
  ForEachBranch(*network.m_zbrTable, visit);
}

std::size_t At(int number) { return static_cast<std::size_t>(number); }

}  // namespace

CompressedRows RowsOf(const DTSDB& network) {
  CompressedRows rows;
  rows.first.assign(At(network.m_ndTable->GetSize()) + 2, 0);
  // Counted two places on, so that filling a row moves its start to where it belongs.
  ForEachLink(network, [&rows](int from, int to) {
    ++rows.first[At(from) + 2];
    ++rows.first[At(to) + 2];
  });
  for (std::size_t i = 2; i < rows.first.size(); ++i) rows.first[i] += rows.first[i - 1];
  rows.neighbours.resize(At(rows.first.back()));
  ForEachLink(network, [&rows](int from, int to) {
    rows.neighbours[At(rows.first[At(from) + 1]++)] = to;
    rows.neighbours[At(rows.first[At(to) + 1]++)] = from;
  });
  rows.first.pop_back();
  return rows;
}

int FindComponents(const CompressedRows& rows, std::vector<int>& component) {
  const std::size_t nodes = rows.first.size() - 1;
  component.assign(nodes, -1);
  std::vector<int> queue;
  queue.reserve(nodes);
  int count = 0;
  for (std::size_t start = 0; start < nodes; ++start) {
    if (component[start] >= 0) continue;
    queue.assign(1, static_cast<int>(start));
    component[start] = count;
    for (std::size_t next = 0; next < queue.size(); ++next) {
      const std::size_t node = At(queue[next]);
      for (int i = rows.first[node]; i < rows.first[node + 1]; ++i) {
        const int neighbour = rows.neighbours[At(i)];
        if (component[At(neighbour)] >= 0) continue;
        component[At(neighbour)] = count;
        queue.push_back(neighbour);
      }
    }
    ++count;
  }
  return count;
}

}  // namespace dtsdb::bench
