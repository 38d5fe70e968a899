/// \file
/// The log of the breaker flow.
#pragma once

#include <QByteArray>
#include <ostream>

#include "breakerflow/log.h"

namespace dtsdb::internal {

/// The log of all cbFlow objects, "cbFlow.txt" in the working directory, truncated when the library is loaded. Text is
/// GBK. Where the file can't be written there is no log, and what goes here is lost.
std::ostream& FlowLog();

/// A UTF-8 literal of our own sources in GBK, for the log.
QByteArray LogBytes(const char* utf8);

}  // namespace dtsdb::internal
