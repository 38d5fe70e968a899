#include "validation/internal/run_graph.h"

#include "validation/internal/device_kinds.h"

namespace dtsdb::internal {

bool RunGraph::RelateZbr(int level, int zbr) {
  if (m_bulk == nullptr) {
    return Relate<R_KV_ZBR>(m_model, level, m_model.m_kvTable->GetPh(level).id, zbr, m_model.m_zbrTable->GetPh(zbr).id);
  }
  m_bulk->RelateZbr(level, zbr);
  return true;
}

int RunGraph::InsertNode(const QString& nd, int* pNd, const QString& kv, int mask) {
  return m_bulk != nullptr ? m_bulk->InsertNode(nd, pNd, kv, mask) : internal::InsertNode(m_model, nd, pNd, kv, mask);
}

int RunGraph::InsertBranch(int kind, const BranchEnds& ends) {
  if (m_bulk == nullptr) return internal::InsertBranch(m_model, kind, ends);
  int result = INSERT_DONE;
  ForEachBranch([&]<class Branch>() {
    if (kind == kKindOf<typename BranchKind<Branch>::End>) result = m_bulk->InsertBranch<Branch>(ends);
  });
  return result;
}

int RunGraph::InsertLine(int kind, const QString& st, const QString& zst, const BranchEnds& ends) {
  for (const BranchEnds::End& end : {ends.from, ends.to}) {
    *end.nodeNumber = -1;
    *end.number = -1;
  }
  struct Place {
    const BranchEnds::End& end;
    const QString& station;
    int missing;
  };
  for (const Place& place : {Place{ends.from, st, INSERT_NO_FROM_NODE}, Place{ends.to, zst, INSERT_NO_TO_NODE}}) {
    const int node = NumberOf<ND>(place.end.node);
    if (node == -1) return place.missing;
    *place.end.nodeNumber = node;
    const int station = StationOfLevel(LevelOfNode(node));
    if (station == -1 || station != NumberOf<ST>(place.station)) return INSERT_OTHER_STATION;
  }
  return InsertBranch(kind, ends);
}

}  // namespace dtsdb::internal
