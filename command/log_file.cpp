#include "command/log_file.h"

#include "formats/files.h"
#include "include/log_sink.h"

namespace dtsdb::tools {
namespace {

void LogNothing(LogKind, std::string_view) {}

}  // namespace

LogFile::LogFile(const std::string& path) : m_path(path) {
  SetLogSink(LogNothing);
  if (m_path.empty()) return;
  m_file.emplace(QtPath(m_path));
  if (!m_file->Open()) Refuse();
  SetLogSink([this](LogKind, std::string_view bytes) {
    m_hasLines = true;
    m_file->Device().write(bytes.data(), static_cast<qint64>(bytes.size()));  // a failure stays with the device
  });
}

LogFile::~LogFile() {
  SetLogSink(LogNothing);
  if (m_file && m_hasLines) m_file->Finish();  // the command has failed, which is reported already
}

void LogFile::Close() {
  SetLogSink(LogNothing);
  if (m_file && !m_file->Finish()) Refuse();
  m_file.reset();
}

void LogFile::Refuse() const { RefuseFile(m_path, "can't be written: " + m_file->Error().toStdString()); }

}  // namespace dtsdb::tools
