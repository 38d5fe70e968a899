/// \file
/// How many random cases a test tries.
#pragma once

namespace dtsdb::test {

/// `usual` cases; in slow programs, such as those under the sanitizers, a quarter of them.
#ifdef DTSDB_FEWER_CASES
constexpr unsigned Cases(unsigned usual) { return (usual + 3) / 4; }
#else
constexpr unsigned Cases(unsigned usual) { return usual; }
#endif

}  // namespace dtsdb::test
