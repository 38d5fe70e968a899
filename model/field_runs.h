/// \file
/// The fields of a record class as an object file takes them: in runs that are moved at once.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "model/field_info.h"

namespace dtsdb::internal {

/// A text, or numbers of one width that lie behind each other.
struct FieldRun {
  std::size_t offset;  ///< of the first in the record
  std::size_t width;   ///< of a number in bytes; 0 for a text
  std::size_t count;   ///< of the numbers
};

/// The runs of a record with these fields, in order.
std::vector<FieldRun> FieldRunsOf(std::span<const FieldInfo> fields);

/// Copies `count` numbers of `width` bytes and turns the bytes of each around: between the memory and an object file,
/// which is big-endian.
void CopyTurned(void* to, const void* from, std::size_t width, std::size_t count);

}  // namespace dtsdb::internal
