/// \file
/// Tests that try something at every place, one after the other.
#pragma once

#include <cstddef>

namespace dtsdb::test {

/// The distance between the places that a test of every place takes: it takes all of them. Under the sanitizers, where
/// each costs many times as much, it takes every seventh, which still has each bit of a byte in turn.
#ifdef DTSDB_FEWER_CASES
inline constexpr std::size_t kPlaceStep = 7;
#else
inline constexpr std::size_t kPlaceStep = 1;
#endif

}  // namespace dtsdb::test
