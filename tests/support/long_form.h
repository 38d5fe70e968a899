/// \file
/// Tests that try much more when somebody asks for it.
#pragma once

#include <cstdlib>
#include <vector>

namespace dtsdb::test {

/// Whether the environment asks for the long form of the tests of faults: FAULTS=all.
inline bool IsLongForm() { return std::getenv("FAULTS") != nullptr; }

/// At most `most` of the numbers from 1 to `last`, evenly spread, the first and the last one among them.
inline std::vector<long> Spread(long last, long most) {
  std::vector<long> numbers;
  const long count = last < most ? last : most;
  for (long i = 0; i < count; ++i) numbers.push_back(count == 1 ? last : 1 + i * (last - 1) / (count - 1));
  return numbers;
}

}  // namespace dtsdb::test
