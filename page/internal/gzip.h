/// \file
/// Bytes packed by gzip.
#pragma once

#include <string>

namespace dtsdb::page::internal {

/// `bytes` packed, without a name and a time: the same bytes give the same result.
std::string Gzip(const std::string& bytes);

}  // namespace dtsdb::page::internal
