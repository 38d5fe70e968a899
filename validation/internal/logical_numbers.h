/// \file
/// The end of a run: from physical numbers, which survive insertions, to logical ones.
#pragma once

#include <type_traits>

#include "model/branch_kinds.h"
#include "validation/internal/relations.h"

namespace dtsdb::internal {

/// Replaces the numbers in all that a run has made by logical numbers: links of relations, nodes and ends of devices.
/// Reads and writes these fields only.
void NumbersToLogical(DTSDB& model);

// The steps that a run made at once has in common with it

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

/// Replaces physical numbers of `targets`, held in `field` of every record, by logical ones: `targets` is a table or
/// whatever has its PhToLg.
template <class Record, class Targets>
void ToLogical(tTable<Record>& records, i32 Record::*field, Targets& targets) {
  for (int i = 0; i < records.GetCount(); ++i) {
    i32& number = records[i].*field;
    if (number != -1) number = targets.PhToLg(number);
  }
}

/// The numbers of their own rows, in the children of a relation whose row numbers come from OwnRow::kFromPlace.
template <class Row, class Rows>
void OwnFromPlace(DTSDB& model, Rows& rows) {
  using R = Relation<Row>;
  auto& children = TableOf<typename R::Child>(model);
  for (int i = 0; i < children.GetCount(); ++i) {
    i32& own = children[i].*R::kOwn;
    if (own != -1) own = rows.PhToLg(i);
  }
}

/// The numbers of nodes and ends, in the branches of one kind.
template <class Branch, class Nodes, class Ends>
void BranchToLogical(DTSDB& model, Nodes& nodes, Ends& ends) {
  using Kind = BranchKind<Branch>;
  const auto turn = [](i32& number, auto& targets) {
    if (number != -1) number = targets.PhToLg(number);
  };
  auto& branches = TableOf<Branch>(model);
  for (int i = 0; i < branches.GetCount(); ++i) {
    Branch& branch = branches[i];
    turn(branch.ind, nodes);
    turn(branch.iznd, nodes);
    if constexpr (std::is_same_v<Branch, ZBR>) {
      turn(branch.icb, *model.m_cbTable);  // the numbers of its ends stay physical. Kept: K15.
    } else {
      turn(branch.*Kind::kFromEnd, ends);
      turn(branch.*Kind::kToEnd, ends);
    }
  }
}

}  // namespace dtsdb::internal
