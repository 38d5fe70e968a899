/// \file
/// The log of the breaker flow.
#pragma once

#include <QByteArray>
#include <sstream>

namespace dtsdb::internal {

/// Lines for the log. They are written when this goes: to the program's sink, or else to "cbFlow.txt" in the working
/// directory that the program had when the library was loaded, there in one piece whatever other threads write. Text is
/// in the encoding of identities.
class FlowLogLines {
 public:
  FlowLogLines();
  FlowLogLines(const FlowLogLines&) = delete;
  FlowLogLines& operator=(const FlowLogLines&) = delete;
  ~FlowLogLines();

  template <class T>
  FlowLogLines& operator<<(const T& value) {
    m_text << value;
    return *this;
  }

 private:
  std::ostringstream m_text;
};

/// Opens "cbFlow.txt" and empties it, once for the program, unless the program has set a sink. Where that can't be done
/// there is no log, and its lines are lost.
void OpenFlowLog();

/// A UTF-8 literal of our own sources in the encoding of identities, for the log.
QByteArray LogBytes(const char* utf8);

}  // namespace dtsdb::internal
