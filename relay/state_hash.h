/// \file
/// A number for the contents of a database, which follows each change without a look at all rows.
#pragma once

#include <cstdint>
#include <string_view>

#include "rtdb/reference.h"

namespace dtsdb::relay {

/// The sum of the hashes of all rows, in 128 bits. Two states with one hash are taken for the same.
struct StateHash {
  std::uint64_t low = 0;
  std::uint64_t high = 0;

  bool operator==(const StateHash&) const = default;
  StateHash& operator+=(const StateHash& other);
  StateHash& operator-=(const StateHash& other);
};

/// The hash of one row: of its table, its number and its bytes as they lie in a message.
StateHash HashOf(std::string_view table, oid_t number, std::string_view row);

}  // namespace dtsdb::relay
