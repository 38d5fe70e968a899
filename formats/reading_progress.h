/// \file
/// How far the reading of a model has come.
#pragma once

#include <cstdint>
#include <functional>

namespace dtsdb::tools {

/// Called again and again while a model is read, with the bytes of its files that have been read and those that there
/// are. May be empty. Must not throw.
using ReadingProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

}  // namespace dtsdb::tools
