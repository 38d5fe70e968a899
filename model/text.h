/// \file
/// Every conversion between the model's identity texts, real text and the terminal.
///
/// An identity text holds raw GBK bytes in a QString, one byte to one QChar: no byte is ever lost or changed on
/// its way through the model. Real text is Unicode. Only the functions here turn the one into the other.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace dtsdb {

/// Raw bytes as an identity text. Null for null.
QString IdFromBytes(const char* bytes);
QString IdFromBytes(const QByteArray& bytes);
/// The bytes of an identity text.
QByteArray IdToBytes(const QString& id);

/// The real text of an identity. Bytes that are no valid GBK become U+FFFD.
QString TextFromId(const QString& id);
/// The same, or nothing when the bytes are no valid GBK.
std::optional<QString> ExactTextFromId(const QString& id);
/// The identity of a real text, or nothing when GBK can't hold it.
std::optional<QString> IdFromText(const QString& text);
/// The identity of a text that GBK holds, given as a UTF-8 literal of our own sources.
QString IdFromLiteral(const char* utf8);

/// Real text in the encoding of the terminal, as the locale names it; what it can't show becomes '?'.
QByteArray TerminalBytes(const QString& text);
/// Writes real text on the standard output in the terminal's encoding, with a line feed at its end; nothing if empty.
void PrintText(const QString& text);

}  // namespace dtsdb
