#include "validation/internal/graph.h"

#include <bit>

#include "include/chain.h"
#include "validation/internal/device_kinds.h"
#include "validation/internal/hierarchy.h"
#include "validation/internal/relations.h"

namespace dtsdb::internal {

// Nodes

int InsertNode(DTSDB& model, const QString& nd, int* pNd, const QString& kv, int mask) {
  const u32 mark = mask > 0 ? static_cast<u32>(mask) : 0;
  *pNd = NumberOf<ND>(model, nd);
  if (*pNd != -1) {
    if (model.m_kvTable->GetPh(LevelOfNode(model, *pNd)).id != kv) return INSERT_OTHER_LEVEL;
    model.m_ndTable->GetPh(*pNd).flags |= mark;
    return INSERT_DONE;
  }

  const int level = NumberOf<KV>(model, kv);
  if (level == -1) return INSERT_NO_LEVEL;
  ND node(nd);
  node.flags = mark;
  ResetLinks(node);
  const int number = model.m_ndTable->Add(node);
  if (number == -1) return INSERT_TABLE_FULL;
  *pNd = number;
  return Relate<R_KV_ND>(model, level, kv, number, nd) ? INSERT_DONE : INSERT_TABLE_FULL;
}

// Branches

namespace {

/// Makes one end of a branch and chains it on its node. False when a table takes no more rows; what was made so far
/// stays.
template <class Branch>
bool InsertEnd(DTSDB& model, const BranchEnds& ends, bool isTo) {
  using Kind = BranchKind<Branch>;
  const BranchEnds::End& place = isTo ? ends.to : ends.from;
  const typename Kind::End end = EndOf(TableOf<Branch>(model).GetPh(ends.branch), ends.branch, ends.id, isTo);
  const int number = TableOf<typename Kind::End>(model).Add(end);
  *place.number = number;
  return number != -1 && Relate<typename Kind::Row>(model, *place.nodeNumber, place.node, number, end.id);
}

}  // namespace

int InsertBranch(DTSDB& model, int kind, const BranchEnds& ends) {
  *ends.from.number = -1;
  *ends.to.number = -1;
  if (*ends.from.nodeNumber == *ends.to.nodeNumber) return INSERT_SAME_NODE;
  int result = INSERT_DONE;
  ForEachBranch([&]<class Branch>() {
    if (kind != kKindOf<typename BranchKind<Branch>::End>) return;
    const bool made = InsertEnd<Branch>(model, ends, false) && InsertEnd<Branch>(model, ends, true);
    result = made ? INSERT_DONE : INSERT_TABLE_FULL;
  });
  return result;
}

int DeviceCount(DTSDB& model, const ND& node, u32 marks) {
  int count = std::popcount(node.flags & marks);
  ForEachBranch([&]<class Branch>() {
    using Row = typename BranchKind<Branch>::Row;
    const int head = node.*Relation<Row>::kHead;
    for (auto row = Chain(TableOf<Row>(model), head).begin(); count < 2 && row != nullptr; ++row) ++count;
  });
  return count;
}

}  // namespace dtsdb::internal
