#include "validation/internal/logical_numbers.h"

#include <type_traits>

#include "validation/internal/device_kinds.h"
#include "validation/internal/relations.h"

namespace dtsdb::internal {
namespace {

/// What becomes of the number of a child's own row.
enum class OwnRow {
  kConverted,
  kFromPlace,  ///< it becomes the number of the row at the child's own place, unless the child has no row
  kLeft,       ///< it stays physical
};

/// Other programs know the numbers so.
template <class Row>
inline constexpr OwnRow kOwnRow = OwnRow::kConverted;
// Kept: K12.
template <>
inline constexpr OwnRow kOwnRow<R_DV_LN> = OwnRow::kFromPlace;
template <>
inline constexpr OwnRow kOwnRow<R_DV_DLN> = OwnRow::kFromPlace;
// Kept: K14.
template <>
inline constexpr OwnRow kOwnRow<R_ND_XF2> = OwnRow::kLeft;

/// Replaces physical numbers of `targets`, held in `field` of every record, by logical ones.
template <class Record, class Target>
void ToLogical(tTable<Record>& records, i32 Record::*field, tTable<Target>& targets) {
  for (int i = 0; i < records.GetCount(); ++i) {
    i32& number = records[i].*field;
    if (number != -1) number = targets.PhToLg(number);
  }
}

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
  if constexpr (kOwnRow<Row> == OwnRow::kFromPlace) {
    for (int i = 0; i < children.GetCount(); ++i) {
      i32& own = children[i].*R::kOwn;
      if (own != -1) own = rows.PhToLg(i);
    }
  }
}

template <class Branch>
void BranchToLogical(DTSDB& model) {
  using Kind = BranchKind<Branch>;
  auto& branches = TableOf<Branch>(model);
  ToLogical(branches, &Branch::ind, *model.m_ndTable);
  ToLogical(branches, &Branch::iznd, *model.m_ndTable);
  if constexpr (std::is_same_v<Branch, ZBR>) {
    // The numbers of its ends stay physical. Kept: K15.
    ToLogical(branches, &ZBR::icb, *model.m_cbTable);
  } else {
    ToLogical(branches, Kind::kFromEnd, TableOf<typename Kind::End>(model));
    ToLogical(branches, Kind::kToEnd, TableOf<typename Kind::End>(model));
  }
}

}  // namespace

void NumbersToLogical(DTSDB& model) {
  ForEachRelation([&model]<class Row>() {
    LinksToLogical<Row>(model);
    OwnToLogical<Row>(model);
  });
  ForEachShunt([&model]<class Shunt>() { ToLogical(TableOf<Shunt>(model), &Shunt::ind, *model.m_ndTable); });
  ForEachBranch([&model]<class Branch>() { BranchToLogical<Branch>(model); });
}

}  // namespace dtsdb::internal
