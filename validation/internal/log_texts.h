/// \file
/// How a line of the log is put together.
#pragma once

#include <QString>
#include <unordered_map>

#include "validation/internal/messages.h"

namespace dtsdb::internal {

/// A text in its two forms: as people read it, and as raw bytes for the log (one byte to one QChar).
struct LogText {
  QString real;
  QString bytes;

  LogText& operator+=(const LogText& other) {
    real += other.real;
    bytes += other.bytes;
    return *this;
  }
};

/// Turns texts into their two forms. Literals are converted once.
class LogTexts {
 public:
  /// The message about the record `id` of the table called `table`, a literal; null for a message about the run.
  LogText Line(const char* table, const QString& id, const Message& message);

 private:
  /// `utf8` is a literal: it is remembered by its address.
  const LogText& Literal(const char* utf8);
  /// The two forms of an identity; the bytes are those it holds, valid or not.
  const LogText& Identity(const QString& id);

  std::unordered_map<const void*, LogText> m_literals;
  QString m_lastId;  // messages about one record follow each other
  LogText m_lastIdentity;
};

}  // namespace dtsdb::internal
