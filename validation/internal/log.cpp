#include "validation/internal/log.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringConverter>

#include "include/internal/standard_streams.h"
#include "model/text.h"

namespace dtsdb::internal {

void ValidationLog::Begin(LogSink sink) {
  m_path = QFileInfo(m_file).absoluteFilePath();
  m_sink = std::move(sink);
  if (!m_sink) Open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Append);
}

void ValidationLog::Continue(const ValidationLog& other) {
  m_findings = other.m_findings;
  m_sink = other.m_sink;
  m_path = other.m_path;
  m_file.setFileName(m_path);
  if (other.m_file.isOpen()) Open(QIODevice::WriteOnly | QIODevice::Append);
}

/// Opens the log such that every write goes to its end, whoever else writes into it. The stream passes bytes on.
void ValidationLog::Open(QIODevice::OpenMode mode) {
  const StandardStreamsKept kept;
  if (!m_file.open(mode)) return;
  m_stream.setDevice(&m_file);
  m_stream.setEncoding(QStringConverter::Latin1);
}

void ValidationLog::Close() {
  if (!m_file.isOpen()) return;
  m_stream.flush();
  m_file.close();
}

void ValidationLog::Flush() {
  if (m_file.isOpen()) m_stream.flush();
}

void ValidationLog::Release() {
  m_isHolding = false;
  for (const Held& held : std::exchange(m_held, {})) Report(held.table, held.tableName, held.id, held.message);
}

void ValidationLog::Drop() {
  m_isHolding = false;
  m_held.clear();
}

void ValidationLog::Report(const Message& message, int number) {
  LogText line = m_texts.Line(nullptr, QString(), message);
  for (QString* const text : {&line.real, &line.bytes}) {
    text->replace(QLatin1String("%1"), QString::number(number));  // '%' is no part of another character
  }
  Write({message.severity, KIND_NONE, QString(), message.field, line.real, message.code}, line.bytes);
}

void ValidationLog::Report(TableKind table, const char* tableName, const QString& id, const Message& message) {
  if (m_isHolding) {
    m_held.push_back({table, tableName, id, message});
    return;
  }
  const LogText line = m_texts.Line(tableName, id, message);
  Write({message.severity, table, id, message.field, line.real, message.code}, line.bytes);
}

/// Writes one line: stamp and `bytes`, the finding's text as it goes into the log.
void ValidationLog::Write(const Finding& finding, const QString& bytes) {
  m_findings.append(finding);
  if (finding.severity == Severity::kError) ++m_global[0].errors;
  if (m_sink) {
    const QByteArray line = IdToBytes(Stamp() + bytes + QLatin1Char('\n'));
    m_sink(LogKind::kValidation, {line.constData(), static_cast<std::size_t>(line.size())});
  } else if (m_file.isOpen()) {
    m_stream << Stamp() << bytes << '\n';
  }
}

/// The present time as it stands in front of a line.
const QString& ValidationLog::Stamp() {
  const qint64 second = QDateTime::currentSecsSinceEpoch();
  if (second != m_stampSecond) {  // a run writes many lines in one second, and local time is dear
    m_stampSecond = second;
    m_stamp = QDateTime::currentDateTime().toString(Qt::TextDate);
  }
  return m_stamp;
}

}  // namespace dtsdb::internal
