#include "command/log_file.h"

#include <cerrno>
#include <cstring>

#include "formats/files.h"
#include "include/log_sink.h"

namespace dtsdb::tools {
namespace {

void LogNothing(LogKind, std::string_view) {}

}  // namespace

LogFile::LogFile(const std::string& path) : m_path(path) {
  SetLogSink(LogNothing);
  if (m_path.empty()) return;
  m_file.open(m_path, std::ios::binary | std::ios::trunc);
  if (!m_file) RefuseFile(m_path, std::string("can't be written: ") + std::strerror(errno));
  SetLogSink([this](LogKind, std::string_view bytes) { m_file << bytes; });
}

LogFile::~LogFile() { SetLogSink(LogNothing); }

void LogFile::Close() {
  SetLogSink(LogNothing);
  if (m_path.empty()) return;
  m_file.close();
  if (!m_file) RefuseFile(m_path, std::string("can't be written: ") + std::strerror(errno));
}

}  // namespace dtsdb::tools
