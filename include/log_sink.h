/// \file
/// Where the logs of the library go.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

namespace dtsdb {

/// The logs of the library.
enum class LogKind {
  kValidation,   ///< that of NMD, by default the file "nmd.log"
  kBreakerFlow,  ///< that of cbFlow, by default the file "cbFlow.txt"
};

/// Takes what would stand in a log's file: whole lines in the encoding of identities (model/text.h), each ended by a
/// line feed. Must not throw.
using LogSink = std::function<void(LogKind log, std::string_view bytes)>;

/// The sink in effect; empty while the logs are files.
inline LogSink& CurrentLogSink() {
  static LogSink sink;
  return sink;
}

/// Lets the logs of this program go to `sink` in place of files, which are then neither made nor emptied; with an empty
/// one they are files again. For the start of a program: an NMD keeps the sink that was in effect when it was made, and
/// "cbFlow.txt" is opened when the first cbFlow is made without one; the shared library opens it when it is loaded. Not
/// while other threads use the library; the sink is called on every thread that does.
///
///     dtsdb::SetLogSink([](dtsdb::LogKind, std::string_view) {});  // no logs
inline void SetLogSink(LogSink sink) { CurrentLogSink() = std::move(sink); }

}  // namespace dtsdb
