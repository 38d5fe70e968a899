// Compiled, never run: the columns of the twin classes lie where other programs expect them. In a 32-bit program
// that is every offset; elsewhere, where a pointer is wider, the order.

#include <cstddef>
#include <iterator>
#include <string_view>
#include <type_traits>

#include "rtdb/volma_rtdb.h"
#include "tests/rtdb/layout/places.h"

namespace dtsdb {
namespace {

// Who compiles this says for which programs, so that a compiler that takes no notice of it doesn't pass.
static_assert(sizeof(void*) == DTSDB_POINTER_SIZE);

#define DTSDB_CHECK_TYPE(twin, offset, column, ...)                  \
  static_assert(std::is_same_v<decltype(twin::column), __VA_ARGS__>, \
                #twin "." #column " is not of the type " #__VA_ARGS__);
DTSDB_TWIN_PLACES(DTSDB_CHECK_TYPE)

struct Place {
  std::string_view twin;
  std::size_t offset;
  std::size_t size;
};

#define DTSDB_PLACE(twin, offset, column, ...) {#twin, offsetof(twin, column), sizeof(twin::column)},
constexpr Place kPlaces[] = {DTSDB_TWIN_PLACES(DTSDB_PLACE)};

/// True when each column of a twin starts behind the one before it.
constexpr bool AreInOrder() {
  for (std::size_t i = 1; i < std::size(kPlaces); ++i) {
    const Place& before = kPlaces[i - 1];
    const bool isSameTwin = before.twin == kPlaces[i].twin;
    if (isSameTwin && kPlaces[i].offset < before.offset + before.size) return false;
    if (!isSameTwin && kPlaces[i].offset != 0) return false;
  }
  return true;
}
static_assert(AreInOrder(), "the columns of a twin are not in the order of the installation's tables");

/// What is listed of `twin`: the number of its columns and of the bytes that they take up.
struct Listed {
  int columns = 0;
  std::size_t bytes = 0;

  explicit constexpr Listed(std::string_view twin) {
    for (const Place& place : kPlaces) {
      if (place.twin != twin) continue;
      ++columns;
      bytes += place.size;
    }
  }
};

#define DTSDB_COUNT_COLUMN(...) +1
#define DTSDB_CHECK_COLUMNS(T, twin, writer)                                                                           \
  static_assert(DTSDB_FIELDS_##T(DTSDB_COUNT_COLUMN, DTSDB_COUNT_COLUMN, DTSDB_COUNT_COLUMN) == Listed(#twin).columns, \
                #twin " has columns that are not listed");
DTSDB_TWINS(DTSDB_CHECK_COLUMNS)

#if __SIZEOF_POINTER__ == 4

// Set by the test of this check itself.
#ifndef DTSDB_OFFSET_ERROR
#define DTSDB_OFFSET_ERROR 0
#endif

#define DTSDB_CHECK_OFFSET(twin, offset, column, ...) \
  static_assert(offsetof(twin, column) == (offset) + DTSDB_OFFSET_ERROR, #twin "." #column " isn't at " #offset);
DTSDB_TWIN_PLACES(DTSDB_CHECK_OFFSET)

#define DTSDB_CHECK_SIZE(T, twin, writer) static_assert(sizeof(twin) == Listed(#twin).bytes, #twin " has gaps");
DTSDB_TWINS(DTSDB_CHECK_SIZE)

#endif

}  // namespace
}  // namespace dtsdb
