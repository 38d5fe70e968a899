#include "model/text.h"

#include <langinfo.h>
#include <locale.h>

#include <QStringConverter>
#include <cstdio>

namespace dtsdb {
namespace {

// The codec of the installation's texts. Not "GB18030": that one also takes what the installation can't show.
constexpr const char* kCodec = "GBK";

bool IsAscii(const QString& text) {
  for (const QChar c : text) {
    if (c.unicode() >= 0x80) return false;
  }
  return true;
}

/// Real text from GBK bytes.
QString Decode(const QByteArray& bytes) {
  constexpr QChar kByteFF(0xF8F5);  // what the codec makes of the byte 0xFF, which is no character of GBK
  QStringDecoder decoder(kCodec);
  QString text = decoder(bytes + '\n');  // half a character at the end would wait for the other half
  text.chop(1);
  return text.replace(kByteFF, QChar(QChar::ReplacementCharacter));
}

/// The encoding that the environment's locale names, whether or not the program has taken that locale on. A locale
/// that knows only ASCII doesn't describe the terminal: then UTF-8.
QByteArray TerminalEncoding() {
  QByteArray name = "UTF-8";
  const locale_t environment = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (environment == nullptr) return name;
  const QByteArray codeset = nl_langinfo_l(CODESET, environment);
  if (codeset != "ANSI_X3.4-1968" && QStringEncoder(codeset.constData()).isValid()) name = codeset;
  freelocale(environment);
  return name;
}

}  // namespace

QString IdFromBytes(const char* bytes) { return QString::fromLatin1(bytes); }
QString IdFromBytes(const QByteArray& bytes) { return QString::fromLatin1(bytes); }
QByteArray IdToBytes(const QString& id) { return id.toLatin1(); }

QString TextFromId(const QString& id) {
  if (IsAscii(id)) return id;
  return Decode(IdToBytes(id));
}

std::optional<QString> ExactTextFromId(const QString& id) {
  const QString text = TextFromId(id);
  if (IsAscii(id)) return text;
  const std::optional<QString> back = IdFromText(text);
  if (!back || *back != id) return std::nullopt;
  return text;
}

std::optional<QString> IdFromText(const QString& text) {
  if (IsAscii(text)) return text;
  QStringEncoder encoder(kCodec);
  const QByteArray bytes = encoder(text);
  if (encoder.hasError()) return std::nullopt;
  if (Decode(bytes) != text) return std::nullopt;
  return IdFromBytes(bytes);
}

QString IdFromLiteral(const char* utf8) { return IdFromText(QString::fromUtf8(utf8)).value_or(QString()); }

QByteArray TerminalBytes(const QString& text) {
  static const QByteArray encoding = TerminalEncoding();
  QStringEncoder encoder(encoding.constData());
  return encoder(text);
}

void PrintText(const QString& text) {
  if (text.isEmpty()) return;
  const QByteArray bytes = TerminalBytes(text.endsWith(u'\n') ? text : text + u'\n');
  std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

}  // namespace dtsdb
