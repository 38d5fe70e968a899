/// \file
/// For callers that edit a model: the thirteen record classes as a list, and how a new record is prepared.
#pragma once

#include <string_view>
#include <type_traits>

#include "model/record_bits.h"
#include "validation/nmd.h"

namespace dtsdb {

/// The record classes that NMD adds and removes: E(class), parents in front of what names them.
#define DTSDB_EDITED_RECORDS(E) E(CO) E(DV) E(ST) E(KV) E(BUS) E(LD) E(UN) E(CP) E(CB) E(XF) E(ZBR) E(LN) E(DLN)

/// \name NMD's additions and removals by record class
///@{
#define DTSDB_EDIT_BY_CLASS(T)                                              \
  inline bool AddRecord(NMD& nmd, T& record) { return nmd.Add##T(record); } \
  inline bool RemoveRecord(NMD& nmd, const T& record) { return nmd.Remove##T(record.id); }
DTSDB_EDITED_RECORDS(DTSDB_EDIT_BY_CLASS)
#undef DTSDB_EDIT_BY_CLASS
///@}

/// A record with two ends, whose numbers stand in fields that BranchKind names.
template <class Record>
concept HasEnds = requires {
  BranchKind<Record>::fromEnd;
};

/// True for a field that holds the number of another record: the whole numbers called `i...` or `r_...`, and those of a
/// branch's ends.
template <class Record, class Type>
bool IsLink(const Field<Record, Type>& field) {
  if constexpr (std::is_same_v<Type, i32>) {
    if constexpr (HasEnds<Record>) {
      if (field.member == BranchKind<Record>::fromEnd || field.member == BranchKind<Record>::toEnd) return true;
    }
    const std::string_view name = field.name;
    return name.starts_with('i') || name.starts_with("r_");
  } else {
    return false;
  }
}

/// Sets the numbers of other records to -1, none, as a careful caller does with a new record before it is added: an
/// addition resolves the numbers that it needs and leaves the others as they came.
template <class Record>
void ClearLinks(Record& record) {
  Record::ForEachField([&record]<class Type>(const Field<Record, Type>& field) {
    if constexpr (std::is_same_v<Type, i32>) {
      if (IsLink(field)) record.*field.member = -1;
    }
  });
}

}  // namespace dtsdb
