/// \file
/// New records for NMD's additions.
#pragma once

#include <string_view>
#include <type_traits>

#include "model/record_bits.h"

namespace dtsdb {

/// A record with two ends, whose numbers stand in fields that BranchKind names.
template <class Record>
concept HasEnds = requires {
  BranchKind<Record>::fromEnd;
};

/// Sets the numbers of other records to -1, none, as a careful caller does with a new record before it is added: an
/// addition resolves the numbers that it needs and leaves the others as they came. These are the whole numbers called
/// `i...` or `r_...`, and those of a branch's ends.
template <class Record>
void ClearLinks(Record& record) {
  Record::ForEachField([&record](const auto& field) {
    if constexpr (std::is_same_v<typename std::decay_t<decltype(field)>::ValueType, i32>) {
      const std::string_view name = field.name;
      if (name.starts_with('i') || name.starts_with("r_")) record.*field.member = -1;
    }
  });
  if constexpr (HasEnds<Record>) {
    record.*BranchKind<Record>::fromEnd = -1;
    record.*BranchKind<Record>::toEnd = -1;
  }
}

}  // namespace dtsdb
