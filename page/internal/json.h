/// \file
/// JSON as the documents contain it: members in the order in which they are added.
#pragma once

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "page/documents.h"

namespace dtsdb::page::internal {

using Json = nlohmann::ordered_json;

/// The text of a value; bytes that are no UTF-8 become U+FFFD.
inline std::string TextOf(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

/// MW or Mvar with three decimals; null for what is no finite number.
inline Json PowerJson(double power) {
  if (!std::isfinite(power)) return nullptr;
  return std::round(power * 1000) / 1000 + 0.0;  // no -0
}

/// A number, null for a negative one, which stands for none.
inline Json NumberOrNull(int number) { return number >= 0 ? Json(number) : Json(nullptr); }

inline Json ToJson(const Thing& thing) {
  return {{"table", thing.table}, {"id", thing.id}, {"station", thing.station}};
}

}  // namespace dtsdb::page::internal
