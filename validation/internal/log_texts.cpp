#include "validation/internal/log_texts.h"

#include "model/table_info.h"
#include "model/text.h"

namespace dtsdb::internal {
namespace {

/// What every message of a severity begins with.
const char* Opening(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return "--NMD 错误:";
    case Severity::kWarning:
      return "--NMD 警告:";
    case Severity::kNotice:
      break;
  }
  return "--NMD 提示:";
}

}  // namespace

const LogText& LogTexts::Literal(const char* utf8) {
  const auto [place, isNew] = m_literals.try_emplace(utf8);
  if (isNew) place->second = {QString::fromUtf8(utf8), IdFromLiteral(utf8)};
  return place->second;
}

const LogText& LogTexts::Identity(const QString& id) {
  if (id != m_lastId) {
    m_lastId = id;
    m_lastIdentity = {TextFromId(id), id};
  }
  return m_lastIdentity;
}

LogText LogTexts::Line(const char* table, const QString& id, const Message& message) {
  LogText line = Literal(Opening(message.severity));
  if (table != nullptr) {
    line += Literal(table);
    if (message.names) {
      line += Literal(" ");
      line += Identity(id);
    }
  }
  line += Literal(message.text);
  return line;
}

}  // namespace dtsdb::internal
