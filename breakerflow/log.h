/// \file
/// Where the log of the breaker flow goes.
#pragma once

namespace dtsdb {

/// The path of the log, asked for once; null for none. A weak symbol: a program that shows the findings itself and
/// wants no file in its working directory, such as the command, defines its own.
const char* FlowLogPath();

}  // namespace dtsdb
