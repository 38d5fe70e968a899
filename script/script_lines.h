/// \file
/// Scripts as lines of words: the one set of rules for edit scripts and switch scripts (docs/command.md).
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/failure.h"

namespace dtsdb::tools {

/// The words of a line, parted by blanks and tabs.
///
/// What stands between two double quotes, or at the beginning of a word between two single ones, belongs to one word,
/// blanks included; two of these quotes in there stand for one. A single quote elsewhere is a character like any other.
/// A note begins with a '#' that is the first character of the line, blanks apart, or a word of its own. A Failure of
/// usage when a quote isn't closed.
std::vector<std::string> SplitWords(std::string_view line);

/// `text` as one word of a line, in quotes where it needs them. A Failure of usage when no line can hold it: it has a
/// line feed.
std::string ScriptWord(const std::string& text);

/// Calls `visit(number, line)` with each line of the script `bytes`, numbered from 1, without its line feed. A byte
/// order mark in front of the first is passed over. A Failure in `visit` becomes one with the exit code `code` that
/// names `file` and the line.
void ForEachLine(const std::string& file, std::string_view bytes, ExitCode code,
                 const std::function<void(int number, std::string_view line)>& visit);

}  // namespace dtsdb::tools
