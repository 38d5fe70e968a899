/// \file
/// Why the last operation of an NMD failed.
#pragma once

#include <QString>

#include "validation/internal/message.h"

namespace dtsdb::internal {

/// The last error: its text, which is the owner's, and its code.
class LastError {
 public:
  explicit LastError(QString& text) : m_text(text) {}
  LastError(const LastError&) = delete;
  LastError& operator=(const LastError&) = delete;
  ~LastError() = default;

  /// Takes over the code alone: the text is the owner's.
  void TakeCodeOf(const LastError& other) { m_code = other.m_code; }

  /// Sets the code, and the text unless the reason has none. Always returns false.
  bool Set(const Reason& reason) {
    m_code = reason.code;
    if (reason.text != nullptr) m_text = QString::fromUtf8(reason.text);
    return false;
  }
  /// Null before the first error.
  const char* Code() const { return m_code; }

 private:
  QString& m_text;
  const char* m_code = nullptr;
};

}  // namespace dtsdb::internal
