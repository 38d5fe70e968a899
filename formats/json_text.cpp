#include "formats/json_text.h"

#include <nlohmann/json.hpp>

namespace dtsdb::tools {
namespace {

bool IsFinite(const Number& number) { return number.digits.find_first_not_of("0123456789+-.e") == std::string::npos; }

}  // namespace

std::string JsonText(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string JsonCell(const Cell& cell) {
  if (const auto* text = std::get_if<std::string>(&cell)) return JsonText(*text);
  if (const auto* number = std::get_if<Number>(&cell)) {
    return IsFinite(*number) ? number->digits : JsonText(number->digits);
  }
  if (const auto* yes = std::get_if<bool>(&cell)) return *yes ? "true" : "false";
  return "null";
}

}  // namespace dtsdb::tools
