#include "validation/internal/logical_numbers.h"

#include "validation/internal/device_kinds.h"

namespace dtsdb::internal {
namespace {

/// The links between the rows of a relation.
template <class Row>
void ChainsToLogical(tTable<Row>& rows) {
  ToLogical(rows, &Row::next, rows);
  ToLogical(rows, &Row::prev, rows);
}

/// The heads of a relation's chains, its links and its two numbers. A number into a table that was compacted at the
/// start of the run is the same in both numberings and stays what it is.
template <class Row>
void LinksToLogical(DTSDB& model) {
  using R = Relation<Row>;
  auto& rows = TableOf<Row>(model);
  auto& parents = TableOf<typename R::Parent>(model);
  ToLogical(parents, R::kHead, rows);
  ToLogical(rows, R::kParentNumber, parents);
  ToLogical(rows, R::kChildNumber, TableOf<typename R::Child>(model));
  ChainsToLogical(rows);
  // Once more: the links of these rows are known to other programs in this form. Kept: K13.
  if constexpr (std::is_same_v<Row, R_KV_ZBR>) ChainsToLogical(rows);
}

/// The number of its own row, in every child.
template <class Row>
void OwnToLogical(DTSDB& model) {
  using R = Relation<Row>;
  auto& rows = TableOf<Row>(model);
  auto& children = TableOf<typename R::Child>(model);
  if constexpr (kOwnRow<Row> == OwnRow::kConverted) ToLogical(children, R::kOwn, rows);
  if constexpr (kOwnRow<Row> == OwnRow::kFromPlace) OwnFromPlace<Row>(model, rows);
}

}  // namespace

void NumbersToLogical(DTSDB& model) {
  ForEachRelation([&model]<class Row>() {
    LinksToLogical<Row>(model);
    OwnToLogical<Row>(model);
  });
  ForEachShunt([&model]<class Shunt>() { ToLogical(TableOf<Shunt>(model), &Shunt::ind, *model.m_ndTable); });
  ForEachBranch([&model]<class Branch>() {
    BranchToLogical<Branch>(model, *model.m_ndTable, TableOf<typename BranchKind<Branch>::End>(model));
  });
}

}  // namespace dtsdb::internal
