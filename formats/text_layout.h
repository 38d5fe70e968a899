/// \file
/// Texts laid out for people: how wide they stand on a terminal, and what can't be shown made visible.
#pragma once

#include <string>
#include <string_view>

namespace dtsdb::tools {

/// Number of columns that UTF-8 `text` takes on a terminal: two for the wide characters of East Asian scripts, none
/// for combining marks, one for the rest.
int DisplayWidth(std::string_view text);

/// `text` filled up with blanks to `width` columns, behind it or, for `toRight`, in front of it.
std::string Padded(std::string_view text, int width, bool toRight = false);

/// Whether a character sets the direction of the text around it. With one of them an identity would be shown in another
/// order than it has.
inline bool TurnsText(char16_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

/// `text` on one line: control characters are shown as \n, \t or \xNN, so that no identity can break a line or
/// command the terminal; separators of lines and characters that turn text as \uNNNN. Bytes that are no UTF-8 become
/// U+FFFD.
std::string OneLine(std::string_view text);

/// A number of things, as in "1 error" and "2 errors".
std::string Counted(long long number, std::string_view noun);

/// `text` in single quotes for a message, on one line, shortened when very long.
std::string Quoted(std::string_view text);

}  // namespace dtsdb::tools
