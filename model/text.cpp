#include "model/text.h"

#include <langinfo.h>
#include <locale.h>

#include <QDebug>
#include <QStringConverter>
#include <atomic>
#include <cstdio>

namespace dtsdb {
namespace {

constexpr const char* kVariable = "DTSDB_ENCODING";
// Not "GB18030": that one also takes what an installation with GBK can't show.
constexpr const char* kGbkCodec = "GBK";

constexpr int kNotSet = -1;

/// What the program has set, kNotSet or an IdEncoding.
std::atomic<int>& Setting() {
  static std::atomic<int> setting{kNotSet};
  return setting;
}

/// The encoding that DTSDB_ENCODING names, read once.
IdEncoding EnvironmentEncoding() {
  static const IdEncoding named = [] {
    const QByteArray name = qgetenv(kVariable);
    const auto found = FindIdEncoding({name.constData(), static_cast<std::size_t>(name.size())});
    if (!found && !name.isEmpty()) {
      qWarning("%s is '%s', which is no encoding of identities: gbk is taken. It can be gbk or utf-8.", kVariable,
               name.constData());
    }
    return found.value_or(IdEncoding::kGbk);
  }();
  return named;
}

bool IsAscii(const QString& text) {
  for (const QChar c : text) {
    if (c.unicode() >= 0x80) return false;
  }
  return true;
}

QString DecodeGbk(const QByteArray& bytes) {
  constexpr QChar kByteFF(0xF8F5);  // what the codec makes of the byte 0xFF, which is no character of GBK
  QStringDecoder decoder(kGbkCodec);
  QString text = decoder(bytes + '\n');  // half a character at the end would wait for the other half
  text.chop(1);
  return text.replace(kByteFF, QChar(QChar::ReplacementCharacter));
}

QStringDecoder Utf8Decoder() {
  using Flag = QStringConverter::Flag;
  return QStringDecoder(QStringConverter::Utf8, Flag::Stateless | Flag::ConvertInitialBom);  // U+FEFF is a character
}

/// The bytes of a real text, or nothing when the encoding can't hold it.
std::optional<QByteArray> Encode(const QString& text, IdEncoding encoding) {
  if (text.contains(QChar(QChar::ReplacementCharacter))) return std::nullopt;
  QByteArray bytes;
  if (encoding == IdEncoding::kUtf8) {
    bytes = text.toUtf8();
  } else {
    QStringEncoder encoder(kGbkCodec);
    bytes = encoder(text);
    if (encoder.hasError()) return std::nullopt;
  }
  if (TextFromBytes(bytes, encoding) != text) return std::nullopt;
  return bytes;
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

IdEncoding CurrentIdEncoding() {
  const int set = Setting().load(std::memory_order_relaxed);
  return set == kNotSet ? EnvironmentEncoding() : static_cast<IdEncoding>(set);
}

void SetIdEncoding(IdEncoding encoding) { Setting().store(static_cast<int>(encoding), std::memory_order_relaxed); }

std::optional<IdEncoding> FindIdEncoding(std::string_view name) {
  for (const IdEncoding encoding : {IdEncoding::kGbk, IdEncoding::kUtf8}) {
    const QLatin1String known(NameOf(encoding));
    if (known.compare(QLatin1String(name.data(), static_cast<qsizetype>(name.size())), Qt::CaseInsensitive) == 0) {
      return encoding;
    }
  }
  return std::nullopt;
}

const char* NameOf(IdEncoding encoding) { return encoding == IdEncoding::kUtf8 ? "UTF-8" : "GBK"; }

QString IdFromBytes(const char* bytes) { return QString::fromLatin1(bytes); }
QString IdFromBytes(const QByteArray& bytes) { return QString::fromLatin1(bytes); }
QByteArray IdToBytes(const QString& id) { return id.toLatin1(); }

QString TextFromBytes(const QByteArray& bytes, IdEncoding encoding) {
  if (encoding == IdEncoding::kUtf8) return Utf8Decoder()(bytes);
  return DecodeGbk(bytes);
}

std::optional<QString> ExactTextFromBytes(const QByteArray& bytes, IdEncoding encoding) {
  if (encoding == IdEncoding::kUtf8) {
    QStringDecoder decoder = Utf8Decoder();
    QString text = decoder(bytes);
    if (decoder.hasError()) return std::nullopt;
    return text;
  }
  QString text = DecodeGbk(bytes);
  if (Encode(text, encoding) != bytes) return std::nullopt;
  return text;
}

QString TextFromId(const QString& id) {
  if (IsAscii(id)) return id;
  return TextFromBytes(IdToBytes(id), CurrentIdEncoding());
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
  const std::optional<QByteArray> bytes = Encode(text, CurrentIdEncoding());
  if (!bytes) return std::nullopt;
  return IdFromBytes(*bytes);
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
