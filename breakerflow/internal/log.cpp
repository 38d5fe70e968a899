#include "breakerflow/internal/log.h"

#include <filesystem>
#include <fstream>
#include <locale>
#include <mutex>

#include "include/internal/standard_streams.h"
#include "include/log_sink.h"
#include "model/text.h"

namespace dtsdb::internal {
namespace {

/// The log's file by its whole path: a program may have gone to another directory when it is opened.
const std::filesystem::path& LogPath() {
  static const std::filesystem::path path = [] {
    std::error_code error;
    const std::filesystem::path name = "cbFlow.txt";
    const std::filesystem::path whole = std::filesystem::absolute(name, error);
    return error ? name : whole;
  }();
  return path;
}

/// Worked out with the library, not at the first use.
[[maybe_unused]] const std::filesystem::path& kKnownWithTheLibrary = LogPath();

/// The file, opened at the first call.
std::ofstream& LogFile() {
  static std::ofstream file = [] {
    const StandardStreamsKept kept;
    return std::ofstream(LogPath(), std::ios::out | std::ios::trunc);
  }();
  return file;
}

}  // namespace

FlowLogLines::FlowLogLines() { m_text.imbue(std::locale::classic()); }  // numbers look the same in every locale

FlowLogLines::~FlowLogLines() {
  const std::string_view text = m_text.view();
  if (text.empty()) return;
  if (const LogSink& sink = CurrentLogSink()) {
    sink(LogKind::kBreakerFlow, text);
  } else {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    LogFile() << text << std::flush;
  }
}

void OpenFlowLog() {
  if (!CurrentLogSink()) LogFile();
}

QByteArray LogBytes(const char* utf8) { return IdToBytes(IdFromLiteral(utf8)); }

}  // namespace dtsdb::internal
