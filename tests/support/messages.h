/// \file
/// Catching what the library writes through Qt's message functions and on the standard output.
#pragma once

#include <QStringList>
#include <QtGlobal>
#include <mutex>

namespace dtsdb::test {

/// Collects every qWarning and qDebug line for as long as it lives, instead of letting it go to stderr. Lines may come
/// from several threads; they are looked at when these have ended. One at a time.
class MessageCatcher {
 public:
  MessageCatcher() {
    Lines().clear();
    m_before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
      static std::mutex mutex;
      const std::lock_guard lock(mutex);
      Lines().append(text);
    });
  }
  MessageCatcher(const MessageCatcher&) = delete;
  MessageCatcher& operator=(const MessageCatcher&) = delete;
  ~MessageCatcher() { qInstallMessageHandler(m_before); }

  /// The lines so far, without level or time, line feeds kept.
  static QStringList& Lines() {
    static QStringList lines;
    return lines;
  }

 private:
  QtMessageHandler m_before = nullptr;
};

}  // namespace dtsdb::test
