#include "validation/messages.h"

#include "model/text.h"

namespace dtsdb {
namespace {

const char* Word(Severity severity) {
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

/// The table's name; null for KIND_NONE.
const char* TableName(TableKind table) {
  static constexpr const char* kNames[] = {nullptr,
#define DTSDB_TABLE_NAME(T, member, key, meaning) T::kTableName,
                                           DTSDB_TABLES(DTSDB_TABLE_NAME)
#undef DTSDB_TABLE_NAME
  };
  return kNames[table];
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

LogText LogTexts::Opening(Severity severity) { return Literal(Word(severity)); }

LogText LogTexts::Line(TableKind table, const QString& id, const Message& message) {
  LogText line = Opening(message.severity);
  if (table != KIND_NONE) {
    line += Literal(TableName(table));
    if (message.names) {
      line += Literal(" ");
      line += Identity(id);
    }
  }
  line += Literal(message.text);
  return line;
}

}  // namespace dtsdb
