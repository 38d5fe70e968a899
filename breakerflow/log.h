/// \file
/// The log of the breaker flow.
#pragma once

#include <QByteArray>
#include <ostream>

namespace dtsdb {

/// The log of all cbFlow objects, "cbFlow.txt" in the working directory, truncated when the library is loaded. Text is
/// GBK. Where the file can't be written there is no log, and what goes here is lost.
std::ostream& FlowLog();

/// The path of the log, asked for once; null for none. A weak symbol: a program that shows the findings itself and
/// wants no file in its working directory, such as the command, defines its own.
const char* FlowLogPath();

/// A UTF-8 literal of our own sources in GBK, for the log.
QByteArray LogBytes(const char* utf8);

}  // namespace dtsdb
