/// \file
/// The log of the validation, "nmd.log", and the findings that its lines are made from.
#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QTextStream>
#include <vector>

#include "include/log_sink.h"
#include "model/dtsdb.h"
#include "validation/finding.h"
#include "validation/internal/log_texts.h"

namespace dtsdb::internal {

/// Reports findings: keeps them, writes each as a line of the log, and counts the errors in GLOBAL.
///
/// Works on a file and a stream that it doesn't own. The file isn't opened when the program has set a sink for its
/// logs, which then takes the lines. Where it can't be opened, they go nowhere.
class ValidationLog {
 public:
  /// `global` is the table of the verdict.
  ValidationLog(QFile& file, QTextStream& stream, tTable<GLOBAL>& global)
      : m_file(file), m_stream(stream), m_global(global) {}
  ValidationLog(const ValidationLog&) = delete;
  ValidationLog& operator=(const ValidationLog&) = delete;
  /// Closes the file.
  ~ValidationLog() { Close(); }

  /// Begins a new log: in `sink`, or else in the file's place.
  void Begin(LogSink sink);
  /// Writes on in the log of `other` and takes over its findings.
  void Continue(const ValidationLog& other);
  void Flush();

  /// From here on reports wait: they are kept as they are, neither written nor counted.
  void Hold() { m_isHolding = true; }
  /// Reports what has waited, in its order, and lets none wait any more.
  void Release();
  /// Forgets what has waited, and lets none wait any more.
  void Drop();

  /// Reports about a record.
  template <class Record>
  void Report(const Record& record, const Message& message) {
    Report(kKindOf<Record>, Record::kTableName, record.id, message);
  }
  /// Reports about the run.
  void Report(const Message& message) { Report(KIND_NONE, nullptr, QString(), message); }
  /// Reports about the run, with a number in the place of "%1".
  void Report(const Message& message, int number);

  const QList<Finding>& Findings() const { return m_findings; }
  void ForgetFindings() { m_findings.clear(); }

 private:
  /// A report that waits.
  struct Held {
    TableKind table;
    const char* tableName;
    QString id;
    Message message;
  };

  void Open(QIODevice::OpenMode mode);
  void Close();
  void Report(TableKind table, const char* tableName, const QString& id, const Message& message);
  void Write(const Finding& finding, const QString& bytes);
  const QString& Stamp();

  QFile& m_file;
  QTextStream& m_stream;
  tTable<GLOBAL>& m_global;
  LogSink m_sink;
  QString m_path;  // absolute: a copy finds the log wherever the process has gone since
  qint64 m_stampSecond = -1;
  QString m_stamp;
  LogTexts m_texts;
  QList<Finding> m_findings;
  bool m_isHolding = false;
  std::vector<Held> m_held;
};

}  // namespace dtsdb::internal
