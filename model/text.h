/// \file
/// Every conversion between the model's identity texts, real text and the terminal.
///
/// An identity text holds raw bytes in a QString, one byte to one QChar: no byte is ever lost or changed on its way
/// through the model. What the bytes mean is one setting of the process: GBK, or UTF-8. Real text is Unicode. Only the
/// functions here turn the one into the other.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string_view>

namespace dtsdb {

/// What the bytes of identities mean.
enum class IdEncoding { kGbk, kUtf8 };

/// The encoding in effect. Until the program sets one it is that of the environment variable DTSDB_ENCODING, "gbk" or
/// "utf-8", and GBK where there is none; a variable with another value is warned of once and counts as none. May be
/// called on any thread.
IdEncoding CurrentIdEncoding();
/// Sets the encoding for all models, realtime databases and logs of this process. For the start of a program, before
/// the first model is read: nothing that has been made of identities before is made anew.
void SetIdEncoding(IdEncoding encoding);
/// The encoding that is called `name`, "gbk" or "utf-8" in letters of any case; nothing for any other.
std::optional<IdEncoding> FindIdEncoding(std::string_view name);
/// "GBK" or "UTF-8".
const char* NameOf(IdEncoding encoding);

/// Raw bytes as an identity text. Null for null.
QString IdFromBytes(const char* bytes);
QString IdFromBytes(const QByteArray& bytes);
/// The bytes of an identity text.
QByteArray IdToBytes(const QString& id);

/// The real text of an identity. Bytes that are not valid in the encoding become U+FFFD.
QString TextFromId(const QString& id);
/// The same, or nothing when the bytes are not valid.
std::optional<QString> ExactTextFromId(const QString& id);
/// The identity of a real text, or nothing when the encoding can't hold it. U+FFFD, the mark of bytes that are no text,
/// is in no identity.
std::optional<QString> IdFromText(const QString& text);
/// The identity of a text given as a UTF-8 literal of our own sources; null when the encoding can't hold it.
QString IdFromLiteral(const char* utf8);

/// Real text from bytes of an encoding that isn't that of identities, such as what a user has written. Bytes that are
/// not valid become U+FFFD.
QString TextFromBytes(const QByteArray& bytes, IdEncoding encoding);
/// The same, or nothing when the bytes are not valid.
std::optional<QString> ExactTextFromBytes(const QByteArray& bytes, IdEncoding encoding);

/// Real text in the encoding of the terminal, as the locale names it; what it can't show becomes '?'.
QByteArray TerminalBytes(const QString& text);
/// Writes real text on the standard output in the terminal's encoding, with a line feed at its end; nothing if empty.
void PrintText(const QString& text);

}  // namespace dtsdb
