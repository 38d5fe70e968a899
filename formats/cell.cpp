#include "formats/cell.h"

#include <fmt/format.h>

namespace dtsdb::tools {

Cell NumberCell(long long number) { return Number{fmt::format("{}", number)}; }

Cell TextOrNothing(const std::string& text) { return text.empty() ? Cell() : Cell(text); }

std::string CellText(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  if (const auto* number = std::get_if<Number>(&cell)) return number->digits;
  if (const auto* yes = std::get_if<bool>(&cell)) return *yes ? "true" : "false";
  return "";
}

}  // namespace dtsdb::tools
