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

/// `text` on one line: control characters are shown as \n, \t or \xNN, so that no identity can break a line or
/// command the terminal. Bytes that are no UTF-8 become U+FFFD.
std::string OneLine(std::string_view text);

/// A number of things, as in "1 error" and "2 errors".
std::string Counted(long long number, std::string_view noun);

/// `text` in single quotes for a message, on one line, shortened when very long.
std::string Quoted(std::string_view text);

}  // namespace dtsdb::tools
