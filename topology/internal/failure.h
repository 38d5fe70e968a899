/// \file
/// How a stage reports that it failed.
#pragma once

#include <QtGlobal>

namespace dtsdb::internal {

/// Writes that `stage` failed at the caller's source line. Always false, the result of a failed stage.
[[gnu::cold]] inline bool FailedIn(const char* stage, const char* word = "failed", int line = __builtin_LINE()) {
  qDebug("TP:%s at (%d) in %s.\n", word, line, stage);
  return false;
}

}  // namespace dtsdb::internal
