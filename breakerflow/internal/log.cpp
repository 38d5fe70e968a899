#include "breakerflow/internal/log.h"

#include <fstream>
#include <locale>

#include "include/internal/standard_streams.h"
#include "model/text.h"

namespace dtsdb {

[[gnu::weak]] const char* FlowLogPath() { return "cbFlow.txt"; }

namespace internal {
namespace {

std::ofstream Open(const char* path) {
  const StandardStreamsKept kept;
  std::ofstream stream;
  stream.imbue(std::locale::classic());  // numbers look the same whatever the program's locale
  if (path != nullptr) stream.open(path, std::ios::out | std::ios::trunc);
  return stream;
}

/// Opens the log with the library, not at the first line: programs change their working directory.
[[maybe_unused]] const std::ostream& kOpenedWithTheLibrary = FlowLog();

}  // namespace

std::ostream& FlowLog() {
  static std::ofstream stream = Open(FlowLogPath());
  return stream;
}

QByteArray LogBytes(const char* utf8) { return IdToBytes(IdFromLiteral(utf8)); }

}  // namespace internal
}  // namespace dtsdb
