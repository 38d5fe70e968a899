/// \file
/// Numbers of a station's parts as places in its lists.
#pragma once

#include <cstddef>

namespace dtsdb::pictures::internal {

/// The place of what has this number, which isn't -1.
constexpr std::size_t Place(int number) { return static_cast<std::size_t>(number); }

}  // namespace dtsdb::pictures::internal
