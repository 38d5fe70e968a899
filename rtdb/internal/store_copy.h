/// \file
/// Whole copies of a store: what is changed in one before programs use it as a store of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "rtdb/reference.h"

namespace dtsdb::internal::rtdb {

/// Makes the copy at `path`, which nobody else has open, forget which tables have changed when: as a store of its own
/// it counts its transactions anew, and a number must not come again with other rows. `firstRow`, where given, is below
/// all numbers of rows that are inserted into it from then on. Returns LMDB's result.
int AmendCopy(const std::string& path, std::optional<oid_t> firstRow);

}  // namespace dtsdb::internal::rtdb
