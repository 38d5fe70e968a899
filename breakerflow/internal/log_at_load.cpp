// Part of the shared library alone: programs that load it have the log, emptied, from then on. A program that is linked
// with the static library gets the log with its first cbFlow, unless it has set a sink before.
#include "breakerflow/internal/log.h"

namespace dtsdb::internal {
namespace {

[[maybe_unused]] const bool kOpenedWithTheLibrary = (OpenFlowLog(), true);

}  // namespace
}  // namespace dtsdb::internal
