#include "tests/support/places.h"

namespace dtsdb::test {

const char* TestProgram() { return TEST_PROGRAM; }

}  // namespace dtsdb::test
