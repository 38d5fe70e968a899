/// \file
/// How many random cases a test tries.
#pragma once

namespace dtsdb::test {

/// `usual` cases; under the sanitizers, where each costs many times as much, a quarter of them.
#ifdef DTSDB_SANITIZE
constexpr unsigned Cases(unsigned usual) { return (usual + 3) / 4; }
#else
constexpr unsigned Cases(unsigned usual) { return usual; }
#endif

}  // namespace dtsdb::test
