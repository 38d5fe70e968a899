// Compiled, never run: the columns of the row classes lie where other programs expect them. In a 32-bit program that is
// every offset; elsewhere, where a pointer is wider, the types.

#include <cstddef>
#include <type_traits>

#include "rtdb/volma_rtdb.h"

namespace dtsdb {
namespace {

// What compiles this defines for which programs, so that a compiler that takes no notice of it doesn't pass.
static_assert(sizeof(void*) == DTSDB_POINTER_SIZE);

// Set by the test of this check itself.
#ifndef DTSDB_OFFSET_ERROR
#define DTSDB_OFFSET_ERROR 0
#endif

constexpr bool kIsFor32Bits = sizeof(void*) == 4;

#define COLUMN(row, offset, column, ...)                                                 \
  static_assert(std::is_same_v<decltype(row::column), __VA_ARGS__>,                      \
                #row "." #column " is not of the type " #__VA_ARGS__);                   \
  static_assert(!kIsFor32Bits || offsetof(row, column) == (offset) + DTSDB_OFFSET_ERROR, \
                #row "." #column " isn't at " #offset)
#define SIZE(row, bytes) static_assert(!kIsFor32Bits || sizeof(row) == (bytes), #row " isn't of " #bytes " bytes")
#include "tests/rtdb/layout/places.h"

}  // namespace
}  // namespace dtsdb
