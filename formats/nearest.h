/// \file
/// "Did you mean": the known names nearest to one that isn't known.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::tools {

/// Number of characters to insert, delete, replace or exchange with their neighbour that turn `a` into `b`, upper
/// and lower case counting as equal. Both are UTF-8. Returns `limit` + 1 for anything above `limit`.
int EditDistance(const std::string& a, const std::string& b, int limit);

/// The up to three of `known` that `name` may have been meant for, nearest first, equally near ones in the order of
/// `known`.
std::vector<std::string> Nearest(const std::string& name, const std::vector<std::string>& known);

/// The end of a message on the unknown `name`: "; did you mean A, B or C?", or empty when nothing is near.
std::string DidYouMean(const std::string& name, const std::vector<std::string>& known);

}  // namespace dtsdb::tools
