/// \file
/// A value as it stands in one place of a result: with its kind, and not yet in any format.
#pragma once

#include <string>
#include <variant>

namespace dtsdb::tools {

/// A number by its digits, as NumberText makes them; so no format rounds it. May be nan or inf.
struct Number {
  std::string digits;
};

/// Nothing, a text (UTF-8), a number, or yes or no.
using Cell = std::variant<std::monostate, std::string, Number, bool>;

Cell NumberCell(long long number);
/// A text, nothing for an empty one.
Cell TextOrNothing(const std::string& text);

/// What a cell holds as plain text, empty for nothing.
std::string CellText(const Cell& cell);

}  // namespace dtsdb::tools
